#include "interface/ckirotriggermanager.h"

#include "core/base/ckirotriggerclasses.h"
#include "core/base/kirolog.h"
#include "core/ikirocontextmanager.h"

using kirodbsnapshot::DRCGainType;

namespace
{

constexpr INT32 LuxLevels   = 1;
constexpr INT32 OutputCount = 2;

}  // namespace

CKIROTriggerManager::CKIROTriggerManager(IKIROContextManager& rContextManager)
    : m_rContextManager(rContextManager), m_pSnapshotTuning(nullptr), m_pBracketingEVZeroTuning(nullptr),
      m_pBracketingEVPlusTuning(nullptr), m_pBracketingEVMinusTuning(nullptr), m_pNonBracketingTuning(nullptr),
      m_pBracketingEVZero(nullptr), m_pBracketingEVPlus(nullptr), m_pBracketingEVMinus(nullptr),
      m_pNonBracketing(nullptr)
{
}

CKIROTriggerManager::~CKIROTriggerManager()
{
    DeleteBracketingEVZeroTuning();
    DeleteBracketingEVPlusTuning();
    DeleteBracketingEVMinusTuning();
    DeleteNonBracketingTuning();
}

VOID CKIROTriggerManager::UpdateSnapshotDBTriggerSystems(UINT32 dataID)
{
    DBSnapshotPayload* pPayload = m_rContextManager.m_pBankManager->GetDataSnapshot(static_cast<INT32>(dataID));
    if (pPayload == nullptr)
    {
        STATS_LOG_ERROR("Dynamic snapshot payload is NULL");
        return;
    }
    m_pSnapshotTuning = pPayload;
}

VOID CKIROTriggerManager::GetSnapshotDBBracketingEVZero(const KIROGeneralizedTriggerSystemInput* pInput,
                                                        KIROGeneralizedTriggerSystemOutput&      rOutput)
{
    Answer(pInput, &CKIROTriggerManager::SetBracketingEVZeroTuning, &CKIROTriggerManager::m_pBracketingEVZero,
           "Failed to get trigger data - m_pBracketingEVZero is NuLL", rOutput);
}

VOID CKIROTriggerManager::GetSnapshotDBBracketingEVPlus(const KIROGeneralizedTriggerSystemInput* pInput,
                                                        KIROGeneralizedTriggerSystemOutput&      rOutput)
{
    Answer(pInput, &CKIROTriggerManager::SetBracketingEVPlusTuning, &CKIROTriggerManager::m_pBracketingEVPlus,
           "Failed to get trigger data - m_pBracketingEVPlus is NuLL", rOutput);
}

VOID CKIROTriggerManager::GetSnapshotDBBracketingEVMinus(const KIROGeneralizedTriggerSystemInput* pInput,
                                                         KIROGeneralizedTriggerSystemOutput&      rOutput)
{
    Answer(pInput, &CKIROTriggerManager::SetBracketingEVMinusTuning, &CKIROTriggerManager::m_pBracketingEVMinus,
           "Failed to get trigger data - m_pBracketingEVMinus is NuLL", rOutput);
}

VOID CKIROTriggerManager::GetSnapshotDBNonBracketing(const KIROGeneralizedTriggerSystemInput* pInput,
                                                     KIROGeneralizedTriggerSystemOutput&      rOutput)
{
    Answer(pInput, &CKIROTriggerManager::SetNonBracketingTuning, &CKIROTriggerManager::m_pNonBracketing,
           "Failed to get trigger data - m_pNonBracketing is NuLL", rOutput);
}

VOID CKIROTriggerManager::Answer(const KIROGeneralizedTriggerSystemInput* pInput,
                                 VOID (CKIROTriggerManager::*pSetTuning)(),
                                 CKIROTwoFloatsXML* CKIROTriggerManager::*ppTriggerData, const CHAR* pFailure,
                                 KIROGeneralizedTriggerSystemOutput& rOutput)
{
    rOutput.data[0]     = 0.0f;
    rOutput.data[1]     = 0.0f;
    rOutput.numOfOutput = OutputCount;
    if (pInput == nullptr)
    {
        STATS_LOG_ERROR("no input for the snapshot trigger system");
        return;
    }
    UpdateSnapshotDBTriggerSystems(pInput->dataID);
    (this->*pSetTuning)();
    CKIROTwoFloatsXML* pTriggerData = this->*ppTriggerData;
    if (pTriggerData == nullptr)
    {
        STATS_LOG_ERROR("%s", pFailure);
        return;
    }
    const auto* pGains = static_cast<const DRCGainType*>(pTriggerData->GetData(pInput->data[0], 0.0f, 0.0f));
    rOutput.data[0]    = pGains->ADRCGain;
    rOutput.data[1]    = pGains->darkBoostGain;
}

VOID CKIROTriggerManager::SetBracketingEVZeroTuning()
{
    DeleteBracketingEVZeroTuning();
    if (m_pSnapshotTuning != nullptr)
    {
        m_pBracketingEVZeroTuning = &m_pSnapshotTuning->value.bracketingConfig.zeroEVDRCConfig;
        m_pBracketingEVZero       = NewTriggerData(*m_pBracketingEVZeroTuning);
    }
}

VOID CKIROTriggerManager::SetBracketingEVPlusTuning()
{
    DeleteBracketingEVPlusTuning();
    if (m_pSnapshotTuning != nullptr)
    {
        m_pBracketingEVPlusTuning = &m_pSnapshotTuning->value.bracketingConfig.positiveEVDRCConfig;
        m_pBracketingEVPlus       = NewTriggerData(*m_pBracketingEVPlusTuning);
    }
}

VOID CKIROTriggerManager::SetBracketingEVMinusTuning()
{
    DeleteBracketingEVMinusTuning();
    if (m_pSnapshotTuning != nullptr)
    {
        m_pBracketingEVMinusTuning = &m_pSnapshotTuning->value.bracketingConfig.negativeEVDRCConfig;
        m_pBracketingEVMinus       = NewTriggerData(*m_pBracketingEVMinusTuning);
    }
}

VOID CKIROTriggerManager::SetNonBracketingTuning()
{
    DeleteNonBracketingTuning();
    if (m_pSnapshotTuning != nullptr)
    {
        m_pNonBracketingTuning = &m_pSnapshotTuning->value.nonBracketingConfig.DRCConfig;
        m_pNonBracketing       = NewTriggerData(*m_pNonBracketingTuning);
    }
}

/// @return null when no memory is left
CKIROTwoFloatsXML* CKIROTriggerManager::NewTriggerData(const ExposureConfigType& rTuning)
{
    const auto&                rDRC         = rTuning.fixedDRC;
    TavoPtr<CKIROTwoFloatsXML> pTriggerData = TavoNew<CKIROTwoFloatsXML>();
    if (pTriggerData != nullptr)
    {
        AECTriggerXMLData tree{
            rDRC.triggerSystem, {LuxLevels, sizeof(DRCGainType)}, static_cast<INT32>(rDRC.triggerSystemCount)};
        pTriggerData->SetData(&tree, KIROMLTwoFloatsDataType);
    }
    return pTriggerData.release();
}

// The objects are forgotten, not freed: each query abandons one (see the declaration for a way without).

VOID CKIROTriggerManager::DeleteBracketingEVZeroTuning()
{
    m_pBracketingEVZeroTuning = nullptr;
    m_pBracketingEVZero       = nullptr;
}

VOID CKIROTriggerManager::DeleteBracketingEVPlusTuning()
{
    m_pBracketingEVPlusTuning = nullptr;
    m_pBracketingEVPlus       = nullptr;
}

VOID CKIROTriggerManager::DeleteBracketingEVMinusTuning()
{
    m_pBracketingEVMinusTuning = nullptr;
    m_pBracketingEVMinus       = nullptr;
}

VOID CKIROTriggerManager::DeleteNonBracketingTuning()
{
    m_pNonBracketingTuning = nullptr;
    m_pNonBracketing       = nullptr;
}
