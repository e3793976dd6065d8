#include "core/base/ckirobankmanager.h"

#include <cstddef>
#include <cstring>
#include <iterator>

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "interface/kiroresults.h"

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
static_assert(
    []
    {
        INT32 next = 0;
        for (const BankDescription& rDescription : BankDescriptions)
        {
            if (rDescription.bankID != next++)
            {
                return false;
            }
        }
        return true;
    }(),
    "banks are listed in the order of their IDs");

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
