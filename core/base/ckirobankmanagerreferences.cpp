// References of the tuning to an entry of a bank: resolved into a number or a range, and written.

#include "core/base/ckirobankmanager.h"
#include "core/base/kirolog.h"
#include "interface/kiroresults.h"

namespace
{

StartEnd RangeOf(const DBFloatPayload& rPayload)
{
    return {rPayload.value, rPayload.value};
}

StartEnd RangeOf(const DBStartEndPayload& rPayload)
{
    return rPayload.value;
}

StartEnd RangeOf(const DBROIPayload& rPayload)
{
    return {rPayload.weight, rPayload.weight};
}

/// @return 0, or ResultInvalidArgument for an entry that is not there: then the value stays
template <typename Payload> KiroResult TakeRange(const Payload* pPayload, StartEnd& rValue)
{
    if (pPayload == nullptr)
    {
        return ResultInvalidArgument;
    }
    rValue = RangeOf(*pPayload);
    return 0;
}

/// @param ppDescription may be null
/// @return 0, or ResultFailed for an entry that is not there: then value and description stay
template <typename Payload> KiroResult TakeNumber(const Payload* pPayload, FLOAT& rValue, CHAR** ppDescription)
{
    if (pPayload == nullptr)
    {
        return ResultFailed;
    }
    rValue = RangeOf(*pPayload).start;
    if (ppDescription != nullptr)
    {
        *ppDescription = pPayload->description;
    }
    return 0;
}

/// @param pStored null for an entry that is not there; of one that is, the half that is not named stays
template <typename Payload> StartEnd Merge(const Payload* pStored, StartEnd value, BankDataType kind)
{
    if (pStored != nullptr && kind == BankDataType::start)
    {
        value.end = RangeOf(*pStored).end;
    }
    else if (pStored != nullptr && kind == BankDataType::end)
    {
        value.start = RangeOf(*pStored).start;
    }
    return value;
}

}  // namespace

template <typename Payload>
inline Payload* CKIROBankManager::FindSlot(ValueSlots<Payload>& rSlots, const DataBankType& rBank)
{
    Payload* pSlot = rSlots.Find(rBank.dataID);
    if (pSlot == nullptr)
    {
        STATS_LOG_ERROR("%s Invalid data ID %d", GetBankName(rBank.bankID), rBank.dataID);
    }
    return pSlot;
}

KiroResult CKIROBankManager::UtilGetFloatFromBank(const DataBankType* pBank, FLOAT& rValue, BOOL bLogError,
                                                  CHAR** ppDescription)
{
    rValue            = 0.0f;
    KiroResult result = ResultFailed;
    switch (pBank->bankID)
    {
    case BankIDStatsCalculator:
        result = TakeNumber(GetDataStatsCalculator(pBank->dataID), rValue, ppDescription);
        break;
    case BankIDTriggers:
        result = TakeNumber(GetDataTriggers(pBank->dataID), rValue, ppDescription);
        break;
    case BankIDSceneAnalyzer:
        result = TakeNumber(GetDataSceneAnalyzer(pBank->dataID), rValue, ppDescription);
        break;
    case BankIDROITable:
        (VOID) TakeNumber(GetDataROI(pBank->dataID), rValue, ppDescription);
        result = 0;
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
    KiroResult result = ResultFailed;
    switch (pBank->bankID)
    {
    case BankIDStatsCalculator:
        result = TakeRange(FindSlot(m_storageCalculators, *pBank), rValue);
        break;
    case BankIDTriggers:
        result = TakeRange(FindSlot(m_storageTriggers, *pBank), rValue);
        break;
    case BankIDSceneAnalyzer:
        result = TakeRange(FindSlot(m_storageAnalyzers, *pBank), rValue);
        break;
    case BankIDROITable:
        (VOID) TakeRange(GetDataROI(pBank->dataID), rValue);
        result = 0;
        break;
    default:
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
    switch (pBank->bankID)
    {
    case BankIDSceneAnalyzer:
        value = Merge(FindSlot(m_storageAnalyzers, *pBank), value, kind);
        return PublishAnalyzed(pBank->dataID, value, pDescription, SourceModuleMetering);
    case BankIDTriggers:
        value = Merge(FindSlot(m_storageTriggers, *pBank), value, kind);
        return PublishTrigger(pBank->dataID, value.start, pDescription, SourceModuleMetering);
    default:
        (VOID) UtilGetStartEndFromBank(pBank, value, FALSE);
        STATS_LOG_ERROR("Invalid bank ID %d for Scene Analyzer Algorithm.\n", pBank->bankID);
        return ResultInvalidArgument;
    }
}
