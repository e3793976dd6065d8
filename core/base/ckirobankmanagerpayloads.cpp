// Readers and writers of each bank by the type of its payload.

#include "core/base/ckirobankmanager.h"
#include "core/base/kirolog.h"
#include "interface/kiroresults.h"

using kirodbarbitrationlut::DBArbitrationLUTPayload;
using kirodbarbitrationorder::DBArbitrationOrderPayload;
using kirodbarbitrationrange::DBArbitrationRangePayload;
using kirodbarbitrationtable::DBArbitrationTablePayload;
using kirodbconvactivescd::DBConvActiveSCDPayload;
using kirodbconvbase::DBConvBasePayload;
using kirodbconvsettle::DBConvSettlePayload;
using kirodbconvstretch::DBConvStretchPayload;
using kirodbsnapshot::DBSnapshotPayload;

DBStartEndPayload* CKIROBankManager::GetDataSceneAnalyzer(INT32 dataID)
{
    DBStartEndPayload* pSlot = m_storageAnalyzers.Find(dataID);
    if (pSlot == nullptr)
    {
        STATS_LOG_ERROR("GetDataSceneAnalyzer Invalid data ID %d", dataID);
    }
    return pSlot;
}

DBFloatPayload* CKIROBankManager::GetDataStatsCalculator(INT32 dataID)
{
    DBFloatPayload* pSlot = m_storageCalculators.Find(dataID);
    if (pSlot == nullptr)
    {
        STATS_LOG_ERROR("GetDataStatsCalculator Invalid data ID %d", dataID);
    }
    return pSlot;
}

DBFloatPayload* CKIROBankManager::GetDataTriggers(INT32 dataID)
{
    DBFloatPayload* pSlot = m_storageTriggers.Find(dataID);
    if (pSlot == nullptr)
    {
        STATS_LOG_ERROR("GetDataTriggers Invalid data ID %d", dataID);
    }
    return pSlot;
}

template <typename Payload> Payload* CKIROBankManager::GetDequePayload(KIROBankIDType bankID, INT32 dataID)
{
    const BankData* pEntry = m_banks[bankID].Find(dataID);
    return (pEntry != nullptr) ? static_cast<Payload*>(pEntry->pPayload) : nullptr;
}

DBMeter1DWeightPayload* CKIROBankManager::GetDataMetering1D(INT32 dataID)
{
    return GetDequePayload<DBMeter1DWeightPayload>(BankIDMetering1D, dataID);
}

DBMeter2DWeightPayload* CKIROBankManager::GetDataMetering2D(INT32 dataID)
{
    return GetDequePayload<DBMeter2DWeightPayload>(BankIDMetering2D, dataID);
}

DBROIPayload* CKIROBankManager::GetDataROI(INT32 dataID)
{
    return GetDequePayload<DBROIPayload>(BankIDROITable, dataID);
}

DBArbitrationTablePayload* CKIROBankManager::GetDataArbitrationTable(INT32 dataID)
{
    return GetDequePayload<DBArbitrationTablePayload>(BankIDArbitrationTable, dataID);
}

DBArbitrationOrderPayload* CKIROBankManager::GetDataArbitrationOrder(INT32 dataID)
{
    return GetDequePayload<DBArbitrationOrderPayload>(BankIDArbitrationOrder, dataID);
}

DBArbitrationLUTPayload* CKIROBankManager::GetDataArbitrationLUT(INT32 dataID)
{
    return GetDequePayload<DBArbitrationLUTPayload>(BankIDArbitrationLUT, dataID);
}

DBArbitrationRangePayload* CKIROBankManager::GetDataArbitrationRange(INT32 dataID)
{
    return GetDequePayload<DBArbitrationRangePayload>(BankIDArbitrationRange, dataID);
}

DBConvBasePayload* CKIROBankManager::GetDataConvBase(INT32 dataID)
{
    return GetDequePayload<DBConvBasePayload>(BankIDConvBase, dataID);
}

DBConvStretchPayload* CKIROBankManager::GetDataConvStretch(INT32 dataID)
{
    return GetDequePayload<DBConvStretchPayload>(BankIDConvStretch, dataID);
}

DBConvSettlePayload* CKIROBankManager::GetDataConvSettle(INT32 dataID)
{
    return GetDequePayload<DBConvSettlePayload>(BankIDConvSettle, dataID);
}

DBActiveAnalyzersPayload* CKIROBankManager::GetDataActiveAnalyzers(INT32 dataID)
{
    return GetDequePayload<DBActiveAnalyzersPayload>(BankIDActiveAnalyzers, dataID);
}

DBActiveCalculatorsPayload* CKIROBankManager::GetDataActiveCalculators(INT32 dataID)
{
    return GetDequePayload<DBActiveCalculatorsPayload>(BankIDActiveCalculators, dataID);
}

DBConvActiveSCDPayload* CKIROBankManager::GetDataConvActiveSCD(INT32 dataID)
{
    return GetDequePayload<DBConvActiveSCDPayload>(BankIDConvActiveSCD, dataID);
}

DBSnapshotPayload* CKIROBankManager::GetDataSnapshot(INT32 dataID)
{
    return GetDequePayload<DBSnapshotPayload>(BankIDSnapshot, dataID);
}

KiroResult CKIROBankManager::SetDataMetering2D(const BankData& rData)
{
    return m_banks[BankIDMetering2D].SetBankData(rData);
}

KiroResult CKIROBankManager::SetDataConvBase(const BankData& rData)
{
    return m_banks[BankIDConvBase].SetBankData(rData);
}

KiroResult CKIROBankManager::SetDataConvStretch(const BankData& rData)
{
    return m_banks[BankIDConvStretch].SetBankData(rData);
}

KiroResult CKIROBankManager::SetDataConvSettle(const BankData& rData)
{
    return m_banks[BankIDConvSettle].SetBankData(rData);
}

KiroResult CKIROBankManager::SetDataSceneAnalyzer(const BankData& rData)
{
    const auto& rPayload = *static_cast<const DBStartEndPayload*>(rData.pPayload);
    return PublishAnalyzed(rPayload.dataID, rPayload.value, rPayload.description, rData.source);
}

KiroResult CKIROBankManager::SetDataStatsCalculator(const BankData& rData)
{
    const auto& rPayload = *static_cast<const DBFloatPayload*>(rData.pPayload);
    return PublishCalculated(rPayload.dataID, rPayload.value, rPayload.description, rData.source);
}

KiroResult CKIROBankManager::SetDataTriggers(const BankData& rData)
{
    const auto& rPayload = *static_cast<const DBFloatPayload*>(rData.pPayload);
    return PublishTrigger(rPayload.dataID, rPayload.value, rPayload.description, rData.source);
}

KiroResult CKIROBankManager::PublishAnalyzed(INT32 dataID, StartEnd value, const CHAR* pDescription,
                                             BankDataSourceType source)
{
    // An analyzer that publishes nothing writes to data ID -1.
    if (dataID != -1 && !m_storageAnalyzers.Store(dataID, value, pDescription, source))
    {
        STATS_LOG_ERROR("Data is not saved in Scene Analyzer DB with index %d", dataID);
        return ResultInvalidArgument;
    }
    return 0;
}

KiroResult CKIROBankManager::PublishCalculated(INT32 dataID, FLOAT value, const CHAR* pDescription,
                                               BankDataSourceType source)
{
    if (!m_storageCalculators.Store(dataID, value, pDescription, source))
    {
        STATS_LOG_ERROR("cannot store in stats calculator  bank; index %d must be smaller than %d and larger than 0",
                        dataID, static_cast<INT32>(BankSlotCount));
        return ResultInvalidArgument;
    }
    return 0;
}

KiroResult CKIROBankManager::PublishTrigger(INT32 dataID, FLOAT value, const CHAR* pDescription,
                                            BankDataSourceType source)
{
    if (!m_storageTriggers.Store(dataID, value, pDescription, source))
    {
        STATS_LOG_ERROR("cannot store in trigger bank; index %d must be smaller than %d and larger than 0", dataID,
                        static_cast<INT32>(BankSlotCount));
        return ResultInvalidArgument;
    }
    return 0;
}
