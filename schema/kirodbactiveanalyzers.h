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

/// The module's record.
struct KIRODBActiveAnalyzersType
{
    UINT32                    SymbolTableID;
    module_versionStruct      module_version;
    parameter_versionStruct   parameter_version;
    TunaraBankDataType        dataBank;  ///< bankID is BankIDActiveAnalyzers
    UINT32                    dataCount;
    UINT32                    dataID;
    DBActiveAnalyzersPayload* data;  ///< at most 1000; the last one applies where no priority does
};
TUNING_RECORD(KIRODBActiveAnalyzersType)
    MODULE_HEADER
    MEMBER(dataBank)
    VARIABLE(data)
TUNING_RECORD_END

} // namespace kirodbactiveanalyzers

using kirodbactiveanalyzers::DBActiveAnalyzersPayload;
