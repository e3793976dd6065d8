/// @file
/// How scene analyzers address the banks: where their results go.
#pragma once

#include "core/base/ckirobankmanager.h"
#include "core/base/tuningvalues.h"
#include "schema/kirometeringsceneanalyzer.h"

namespace analyzerbank
{

/// @return false for an output without a bank or with a negative data ID, which turns a component off
bool IsOn(const DataBankType& rBank);

/// Merges a result with what the entry holds and stores it. A trigger takes the start.
/// @param pDescription kept by the bank, so it lives as long as the tuning; may be null
/// @param kind         which half is replaced; startEnd, or a failed read, replaces both
VOID SetToBank(CKIROBankManager& rBanks, const DataBankType& rBank, StartEnd value, const CHAR* pDescription,
               BankDataType kind);

using tuningvalues::CountOf;
using tuningvalues::TextOf;

}  // namespace analyzerbank
