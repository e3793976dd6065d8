/// @file
/// Bank of run lists of scene analyzers.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbactiveanalyzers
{

/// One run list.
struct DBActiveAnalyzersPayload
{
    UINT32  dataID;  ///< from 1
    CHAR*   description;
    UINT32  analyzerIDCount;
    UINT32  analyzerIDID;
    UINT32* analyzerID;  ///< 0 to 999, in run order; of two analyzers of one exposure type the later decides
};
TUNING_RECORD(DBActiveAnalyzersPayload)
    MEMBER(dataID)
    MEMBER(description)
    VARIABLE(analyzerID)
TUNING_RECORD_END

BANK_MODULE(KIRODBActiveAnalyzersType, DBActiveAnalyzersPayload)

} // namespace kirodbactiveanalyzers

using kirodbactiveanalyzers::DBActiveAnalyzersPayload;
