// Operations of the driver that have no logic of their own.

#include "core/ckirocore.h"

KiroResult CKIROCore::setBankData(const KIROSetBankData* pModuleData)
{
    return m_contManager.m_pBankManager->SetControlData(pModuleData);
}

KiroResult CKIROCore::getBankData(KIROGetBankData* pData)
{
    return m_contManager.m_pBankManager->GetControlData(pData);
}

KiroResult CKIROCore::setDynamicBankData(KIRODynamicDataOperationType operation, KIROBankIDType bankID, INT32 dataID)
{
    return m_contManager.m_pBankManager->SetControlDynamicData(operation, bankID, dataID);
}

VOID CKIROCore::SetContextEvent(KIROTunaraEventType contextEvent, BOOL value)
{
    m_contManager.SetContextEvent(contextEvent, value);
}

BOOL CKIROCore::GetContextEvent(KIROTunaraEventType contextEvent)
{
    return m_contManager.GetContextEvent(contextEvent);
}

UINT64 CKIROCore::GetContextStatus()
{
    return m_contManager.GetContextStatus();
}

INT32 CKIROCore::GetFlashMaxCurrent()
{
    return m_contManager.GetInput()->maxLEDCurrent;
}

AECAlgoFlashCalibrationData CKIROCore::GetFlashCalibInfo()
{
    return m_contManager.GetInput()->flashCalibData;
}

VOID CKIROCore::RebaseSCD(UINT32 id)
{
    m_contManager.RebaseSCD(id);
}

BOOL CKIROCore::GetSCDOutput(UINT32 id, KIROSCDOutput& rSCDOutput)
{
    return m_contManager.GetSCDOutput(id, rSCDOutput);
}

UINT32 CKIROCore::GetFICData(VOID* pFICData)
{
    return m_pFICManager->GetFICData(pFICData);
}

VOID CKIROCore::run1DVectorProcess(kiroglobalelements::VectorProcessorUsageType type, UINT32 sampleCount)
{
    m_p1DVectorManager->Run1DVectorProcessors(type, sampleCount);
}

VOID CKIROCore::reset1DVectorProcessors(kiroglobalelements::VectorProcessorUsageType type)
{
    m_p1DVectorManager->Reset1DVectorProcessors(type);
}

VOID CKIROCore::SetMeteringLock(BOOL bLock)
{
    m_contManager.SetMeteringLock(bLock);
}
