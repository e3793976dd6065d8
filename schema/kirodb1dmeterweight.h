/// @file
/// Bank of one-dimensional metering weights, one weight per histogram bin.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodb1dmeterweight
{

/// One weight table for histograms.
struct DBMeter1DWeightPayload
{
    INT32 dataID;  ///< from 1
    CHAR* description;
    float weights[1025];  ///< by bin, from 0; also carries samples for a vector processor, newest first
};
TUNING_RECORD(DBMeter1DWeightPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(weights)
TUNING_RECORD_END

/// The module's record.
struct KIRODB1DMeterWeightType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    TunaraBankDataType      dataBank;  ///< bankID is BankIDMetering1D
    UINT32                  dataCount;
    UINT32                  dataID;
    DBMeter1DWeightPayload* data;  ///< at most 1000; the last one applies where no priority does
};
TUNING_RECORD(KIRODB1DMeterWeightType)
    MODULE_HEADER
    MEMBER(dataBank)
    VARIABLE(data)
TUNING_RECORD_END

} // namespace kirodb1dmeterweight

using kirodb1dmeterweight::DBMeter1DWeightPayload;
