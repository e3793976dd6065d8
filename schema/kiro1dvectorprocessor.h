/// @file
/// Vector processors: filters over time from one bank entry to another.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiro1dvectorprocessor
{

/// How the newest samples become one number.
enum FilteringMethodType : INT32
{
    MovingAverage = 0,
    FIR           = 1,
    MedianFilter  = 2  ///< of an even number of samples the lower of the two in the middle
};
TUNING_ENUM(FilteringMethodType)
    ENUMERATOR(MovingAverage)
    ENUMERATOR(FIR)
    ENUMERATOR(MedianFilter)
TUNING_ENUM_END

/// One filter.
struct FilterType
{
    FilteringMethodType method;
    UINT32              filterLength;  ///< samples, up to 300; 0 counts as 1
    UINT32              FIRCoefficientsCount;
    UINT32              FIRCoefficientsID;
    float*              FIRCoefficients;  ///< newest sample first; normalised by their sum
};
TUNING_RECORD(FilterType)
    MEMBER(method)
    MEMBER(filterLength)
    VARIABLE(FIRCoefficients)
TUNING_RECORD_END

/// One processor.
struct VectorProcessorType
{
    BOOL         enable;
    CHAR*        description;
    DataBankType input;   ///< BankIDMetering1D, several samples at once, or BankIDStatsCalculator, one
    DataBankType output;  ///< BankIDStatsCalculator or BankIDTriggers
    FilterType   filtering;
};
TUNING_RECORD(VectorProcessorType)
    BOOLEAN(enable)
    MEMBER(description)
    MEMBER(input)
    MEMBER(output)
    MEMBER(filtering)
TUNING_RECORD_END

/// The module's record.
struct KIRO1DVectorProcessorType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    VectorProcessorType     gyroVectorProcessor;  ///< runs when the host delivers gyro samples
    UINT32                  vectorProcessorsCount;
    UINT32                  vectorProcessorsID;
    VectorProcessorType*    vectorProcessors;  ///< run in this order in every metered frame
};
TUNING_RECORD(KIRO1DVectorProcessorType)
    MODULE_HEADER
    MEMBER(gyroVectorProcessor)
    VARIABLE(vectorProcessors)
TUNING_RECORD_END

} // namespace kiro1dvectorprocessor
