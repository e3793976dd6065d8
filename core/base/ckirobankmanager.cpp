#include "core/base/ckirobankmanager.h"

#include <cstddef>
#include <cstring>
#include <iterator>

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
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

namespace
{

struct BankDescription
{
    KIROBankIDType bankID;
    const CHAR*    pName;
    size_t         payloadSize;
};

template <typename Payload> constexpr BankDescription Describe(KIROBankIDType bankID, const CHAR* pName)
{
    static_assert(offsetof(Payload, dataID) == 0 && sizeof(Payload::dataID) == sizeof(INT32),
                  "a payload begins with its data ID");
    return {bankID, pName, sizeof(Payload)};
}

constexpr BankDescription BankDescriptions[] = {
#define BANK(bankID, Payload) Describe<Payload>(bankID, #bankID),
    KIRO_BANKS(BANK, BANK)
#undef BANK
};
static_assert(std::size(BankDescriptions) == BankCount);

}  // namespace

CKIROBankManager::CKIROBankManager() : m_context(0), m_bankCount(0)
{
    for (const BankDescription& rDescription : BankDescriptions)
    {
        m_banks[rDescription.bankID].Initialize(rDescription.bankID, rDescription.pName, rDescription.payloadSize);
        ++m_bankCount;
    }
}

CKIROBank* CKIROBankManager::GetInternalBank(KIROBankIDType bankID)
{
    if (static_cast<UINT32>(bankID) >= BankCount)
    {
        STATS_LOG_ERROR("invalid bank id %d", bankID);
        return nullptr;
    }
    if (static_cast<UINT32>(bankID) >= m_bankCount)
    {
        STATS_LOG_ERROR("bank id %d not ready yet", bankID);
        return nullptr;
    }
    return &m_banks[bankID];
}

VOID CKIROBankManager::RemoveData(KIROBankIDType bankID, BankDataSourceType source)
{
    CKIROBank* pBank = IsValueBank(bankID) ? nullptr : GetInternalBank(bankID);
    if (pBank != nullptr)
    {
        pBank->RemoveData(source);
    }
}

const CHAR* CKIROBankManager::GetBankName(KIROBankIDType bankID) const
{
    return (static_cast<UINT32>(bankID) < BankCount) ? m_banks[bankID].GetName() : "BankIDInvalid";
}

VOID CKIROBankManager::SetBankTuning(KIROBankIDType bankID, TunaraBankDataType* pTunedBank, VOID* pPayloads,
                                     UINT32 count)
{
    CKIROBank* pBank = GetInternalBank(bankID);
    if (pBank != nullptr)
    {
        pBank->SetTuning(pTunedBank, pPayloads, count);
    }
}

/// A module that no mode holds leaves its bank empty.
template <typename Record> VOID CKIROBankManager::SetBankRecord(KIROBankIDType bankID, Record* pRecord)
{
    if (pRecord != nullptr)
    {
        SetBankTuning(bankID, &pRecord->dataBank, pRecord->data, pRecord->dataCount);
    }
    else
    {
        SetBankTuning(bankID, nullptr, nullptr, 0);
    }
}

VOID CKIROBankManager::SetTuning(StatsTuningData* pTuningData)
{
    using namespace tuningaccess;
    m_storageTriggers.ForgetTuningTexts();
    m_storageCalculators.ForgetTuningTexts();
    m_storageAnalyzers.ForgetTuningTexts();
    SetBankRecord(BankIDMetering1D, Get_kirodb1dmeterweight(*pTuningData));
    SetBankRecord(BankIDMetering2D, Get_kirodb2dmeterweight(*pTuningData));
    SetBankRecord(BankIDROITable, Get_kirodbroi(*pTuningData));
    SetBankRecord(BankIDArbitrationOrder, Get_kirodbarbitrationorder(*pTuningData));
    SetBankRecord(BankIDArbitrationTable, Get_kirodbarbitrationtable(*pTuningData));
    SetBankRecord(BankIDArbitrationLUT, Get_kirodbarbitrationlut(*pTuningData));
    SetBankRecord(BankIDArbitrationRange, Get_kirodbarbitrationrange(*pTuningData));
    SetBankRecord(BankIDActiveAnalyzers, Get_kirodbactiveanalyzers(*pTuningData));
    SetBankRecord(BankIDConvBase, Get_kirodbconvbase(*pTuningData));
    SetBankRecord(BankIDConvStretch, Get_kirodbconvstretch(*pTuningData));
    SetBankRecord(BankIDConvSettle, Get_kirodbconvsettle(*pTuningData));
    SetBankRecord(BankIDConvActiveSCD, Get_kirodbconvactivescd(*pTuningData));
    SetBankRecord(BankIDActiveCalculators, Get_kirodbactivecalculators(*pTuningData));
    SetBankRecord(BankIDSnapshot, Get_kirodbsnapshot(*pTuningData));
}

VOID CKIROBankManager::RunBankStartOfFrame(UINT64 context)
{
    m_context = context;
    for (CKIROBank& rBank : m_banks)
    {
        rBank.SetContext(context);
    }
}

KiroResult CKIROBankManager::SetControlData(const KIROSetBankData* pSetData)
{
    if (pSetData == nullptr)
    {
        return ResultInvalidArgument;
    }
    CKIROBank* pBank = GetInternalBank(pSetData->bankID);
    if (pBank == nullptr)
    {
        return ResultNotFound;
    }
    // A negative size becomes a huge one and never matches.
    if (static_cast<size_t>(pSetData->nInSize) != pBank->GetPayloadSize())
    {
        STATS_LOG_ERROR("expected payload size %llu received %d", static_cast<UINT64>(pBank->GetPayloadSize()),
                        pSetData->nInSize);
        return ResultInvalidArgument;
    }
    if (pSetData->pData == nullptr)
    {
        STATS_LOG_ERROR("invalid null payload pointer");
        return ResultInvalidArgument;
    }
    BankData data{0, pSetData->pData, SourceControl};
    std::memcpy(&data.dataID, pSetData->pData, sizeof(data.dataID));
    switch (pSetData->bankID)
    {
    case BankIDStatsCalculator:
        return SetDataStatsCalculator(data);
    case BankIDTriggers:
        return SetDataTriggers(data);
    case BankIDSceneAnalyzer:
        return SetDataSceneAnalyzer(data);
    default:
        return pBank->SetBankData(data);
    }
}

KiroResult CKIROBankManager::GetControlData(KIROGetBankData* pGetData)
{
    if (pGetData == nullptr)
    {
        return ResultInvalidArgument;
    }
    CKIROBank* pBank = GetInternalBank(pGetData->bankID);
    if (pBank == nullptr)
    {
        STATS_LOG_ERROR("get bank failed bank ID %d pBank %p ppData %p", pGetData->bankID, static_cast<VOID*>(pBank),
                        static_cast<VOID*>(&pGetData->pData));
        return ResultFailed;
    }
    if (static_cast<size_t>(pGetData->nOutSize) != pBank->GetPayloadSize())
    {
        STATS_LOG_ERROR("get bank failed bank ID %d bank payload size %d provided size %d", pGetData->bankID,
                        static_cast<INT32>(pBank->GetPayloadSize()), pGetData->nOutSize);
        return ResultFailed;
    }
    switch (pGetData->bankID)
    {
    case BankIDStatsCalculator:
        pGetData->pData = GetDataStatsCalculator(pGetData->dataID);
        return (pGetData->pData != nullptr) ? 0 : ResultFailed;
    case BankIDTriggers:
        pGetData->pData = GetDataTriggers(pGetData->dataID);
        return (pGetData->pData != nullptr) ? 0 : ResultFailed;
    case BankIDSceneAnalyzer:
        pGetData->pData = GetDataSceneAnalyzer(pGetData->dataID);
        return (pGetData->pData != nullptr) ? 0 : ResultFailed;
    default:
        break;
    }
    BankData         data{pGetData->dataID, nullptr, SourceControl};
    const KiroResult result = pBank->GetBankData(data);
    if (result == 0)
    {
        pGetData->pData = data.pPayload;
    }
    return result;
}

KiroResult CKIROBankManager::SetControlDynamicData(KIRODynamicDataOperationType operation, KIROBankIDType bankID,
                                                   INT32 dataID)
{
    if (IsValueBank(bankID))
    {
        return 0;
    }
    CKIROBank* pBank = GetInternalBank(bankID);
    if (pBank == nullptr)
    {
        return ResultNotFound;
    }
    pBank->SetDynamicOverride(operation, dataID);
    return 0;
}

KiroResult CKIROBankManager::UtilGetFloatFromBank(const DataBankType* pBank, FLOAT& rValue, BOOL bLogError,
                                                  CHAR** ppDescription)
{
    rValue             = 0.0f;
    KiroResult result  = ResultFailed;
    const auto resolve = [&](FLOAT value, CHAR* pDescription)
    {
        rValue = value;
        result = 0;
        if (ppDescription != nullptr)
        {
            *ppDescription = pDescription;
        }
    };
    switch (pBank->bankID)
    {
    case BankIDStatsCalculator:
        if (const DBFloatPayload* pSlot = GetDataStatsCalculator(pBank->dataID))
        {
            resolve(pSlot->value, pSlot->description);
        }
        break;
    case BankIDTriggers:
        if (const DBFloatPayload* pSlot = GetDataTriggers(pBank->dataID))
        {
            resolve(pSlot->value, pSlot->description);
        }
        break;
    case BankIDSceneAnalyzer:
        if (const DBStartEndPayload* pSlot = GetDataSceneAnalyzer(pBank->dataID))
        {
            resolve(pSlot->value.start, pSlot->description);
        }
        break;
    case BankIDROITable:
        result = 0;
        if (const DBROIPayload* pROI = GetDataROI(pBank->dataID))
        {
            resolve(pROI->weight, pROI->description);
        }
        break;
    default:
        break;
    }
    if (result != 0 && bLogError == TRUE)
    {
        STATS_LOG_ERROR("Invalid bankID %d with dataID %d returning %.1f\n", pBank->bankID, pBank->dataID, rValue);
    }
    return result;
}

KiroResult CKIROBankManager::UtilGetStartEndFromBank(const DataBankType* pBank, StartEnd& rValue, BOOL bLogError)
{
    rValue            = {0.0f, 0.0f};
    KiroResult result = 0;
    switch (pBank->bankID)
    {
    case BankIDStatsCalculator:
        if (const DBFloatPayload* pSlot = m_storageCalculators.Find(pBank->dataID))
        {
            rValue = {pSlot->value, pSlot->value};
        }
        else
        {
            STATS_LOG_ERROR("BankIDStatsCalculator Invalid data ID %d", pBank->dataID);
            result = ResultInvalidArgument;
        }
        break;
    case BankIDTriggers:
        if (const DBFloatPayload* pSlot = m_storageTriggers.Find(pBank->dataID))
        {
            rValue = {pSlot->value, pSlot->value};
        }
        else
        {
            STATS_LOG_ERROR("BankIDTriggers Invalid data ID %d", pBank->dataID);
            result = ResultInvalidArgument;
        }
        break;
    case BankIDSceneAnalyzer:
        if (const DBStartEndPayload* pSlot = m_storageAnalyzers.Find(pBank->dataID))
        {
            rValue = pSlot->value;
        }
        else
        {
            STATS_LOG_ERROR("BankIDSceneAnalyzer Invalid data ID %d", pBank->dataID);
            result = ResultInvalidArgument;
        }
        break;
    case BankIDROITable:
        if (const DBROIPayload* pROI = GetDataROI(pBank->dataID))
        {
            rValue = {pROI->weight, pROI->weight};
        }
        break;
    default:
        result = ResultFailed;
        break;
    }
    if (result != 0 && bLogError == TRUE)
    {
        STATS_LOG_ERROR("Invalid bankID %d with dataID %d returning [%.1f, %.1f]\n", pBank->bankID, pBank->dataID,
                        rValue.start, rValue.end);
    }
    return result;
}

KiroResult CKIROBankManager::UtilSetStartEndToBank(const DataBankType* pBank, StartEnd value, const CHAR* pDescription,
                                                   BankDataType kind)
{
    StartEnd   stored;
    const bool bReadable = UtilGetStartEndFromBank(pBank, stored, FALSE) == 0;
    if (bReadable && kind == BankDataType::start)
    {
        stored.start = value.start;
    }
    else if (bReadable && kind == BankDataType::end)
    {
        stored.end = value.end;
    }
    else
    {
        stored = value;
    }

    switch (pBank->bankID)
    {
    case BankIDSceneAnalyzer:
    {
        DBStartEndPayload payload{pBank->dataID, stored, const_cast<CHAR*>(pDescription)};
        return SetDataSceneAnalyzer({pBank->dataID, &payload, SourceModuleMetering});
    }
    case BankIDTriggers:
        return PublishTrigger(pBank->dataID, stored.start, pDescription, SourceModuleMetering);
    default:
        STATS_LOG_ERROR("Invalid bank ID %d for Scene Analyzer Algorithm.\n", pBank->bankID);
        return ResultInvalidArgument;
    }
}

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
    BankData data{dataID, nullptr, SourceCore};
    return (m_banks[bankID].GetBankData(data) == 0) ? static_cast<Payload*>(data.pPayload) : nullptr;
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
    const INT32 dataID = static_cast<const DBStartEndPayload*>(rData.pPayload)->dataID;
    // An analyzer that publishes nothing writes to data ID -1.
    if (dataID != -1 && !m_storageAnalyzers.Store(rData))
    {
        STATS_LOG_ERROR("Data is not saved in Scene Analyzer DB with index %d", dataID);
        return ResultInvalidArgument;
    }
    return 0;
}

KiroResult CKIROBankManager::SetDataStatsCalculator(const BankData& rData)
{
    if (!m_storageCalculators.Store(rData))
    {
        STATS_LOG_ERROR("cannot store in stats calculator  bank; index %d must be smaller than %d and larger than 0",
                        static_cast<const DBFloatPayload*>(rData.pPayload)->dataID, static_cast<INT32>(BankSlotCount));
        return ResultInvalidArgument;
    }
    return 0;
}

KiroResult CKIROBankManager::SetDataTriggers(const BankData& rData)
{
    if (!m_storageTriggers.Store(rData))
    {
        STATS_LOG_ERROR("cannot store in trigger bank; index %d must be smaller than %d and larger than 0",
                        static_cast<const DBFloatPayload*>(rData.pPayload)->dataID, static_cast<INT32>(BankSlotCount));
        return ResultInvalidArgument;
    }
    return 0;
}

KiroResult CKIROBankManager::PublishTrigger(INT32 dataID, FLOAT value, const CHAR* pDescription,
                                            BankDataSourceType source)
{
    DBFloatPayload payload{dataID, value, const_cast<CHAR*>(pDescription)};
    return SetDataTriggers({dataID, &payload, source});
}
