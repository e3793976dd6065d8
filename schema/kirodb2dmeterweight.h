/// @file
/// Bank of two-dimensional metering weights.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodb2dmeterweight
{

/// One weight table over the frame.
struct DBMeter2DWeightPayload
{
    INT32 dataID;  ///< from 1
    CHAR* description;
    float weights[256];  ///< 16 rows of 16 from the upper left, row by row; from 0
};
TUNING_RECORD(DBMeter2DWeightPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(weights)
TUNING_RECORD_END

/// The module's record.
struct KIRODB2DMeterWeightType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    TunaraBankDataType      dataBank;  ///< bankID is BankIDMetering2D
    UINT32                  dataCount;
    UINT32                  dataID;
    DBMeter2DWeightPayload* data;  ///< at most 1000; the last one applies where no priority does
};
TUNING_RECORD(KIRODB2DMeterWeightType)
    MODULE_HEADER
    MEMBER(dataBank)
    VARIABLE(data)
TUNING_RECORD_END

} // namespace kirodb2dmeterweight

using kirodb2dmeterweight::DBMeter2DWeightPayload;
