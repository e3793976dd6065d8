/// @file
/// Bank of scene analyzer results. The core fills the bank itself; the data here only name its entries.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbsceneanalyzer
{

/// Entry of the bank of scene analyzer results.
struct DBStartEndPayload
{
    INT32        dataID;  ///< 0 to 999
    StartEndType value;
    CHAR*        description;
};
TUNING_RECORD(DBStartEndPayload)
    MEMBER(dataID)
    MEMBER(value)
    MEMBER(description)
TUNING_RECORD_END

BANK_MODULE(KIRODBSceneAnalyzerType, DBStartEndPayload)

} // namespace kirodbsceneanalyzer

using kirodbsceneanalyzer::DBStartEndPayload;
