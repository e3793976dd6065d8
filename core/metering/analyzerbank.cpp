#include "core/metering/analyzerbank.h"

#include "core/base/kirolog.h"

namespace analyzerbank
{

bool IsOn(const DataBankType& rBank)
{
    return rBank.bankID != BankIDInvalid && rBank.dataID >= 0;
}

VOID SetToBank(CKIROBankManager& rBanks, const DataBankType& rBank, StartEnd value, const CHAR* pDescription,
               BankDataType kind)
{
    if (rBank.bankID != BankIDSceneAnalyzer && rBank.bankID != BankIDTriggers)
    {
        STATS_LOG_ERROR("Invalid bank ID %d for Scene Analyzer SetData.\n", rBank.bankID);
        return;
    }
    // A refused write has been logged; it costs the frame this entry and nothing else.
    (VOID) rBanks.UtilSetStartEndToBank(&rBank, value, pDescription, kind);
}

}  // namespace analyzerbank
