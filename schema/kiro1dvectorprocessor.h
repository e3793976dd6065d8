/// @file
/// Tuning module kiro1dvectorprocessor.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiro1dvectorprocessor
{

/// How the newest samples become one number.
enum FilteringMethodType : INT32
{
    MovingAverage = 0,
    FIR           = 1,
    MedianFilter  = 2
};
TUNING_ENUM(FilteringMethodType)
    ENUMERATOR(MovingAverage, "The mean of the samples: smooth, and late by half of the length.")
    ENUMERATOR(FIR, "The sum of the samples weighted with FIRCoefficients, over the sum of the coefficients in use.")
    ENUMERATOR(MedianFilter,
        "The middle one of the samples in order, of an even number the lower of the two in the middle: single "
        "outliers vanish.")
TUNING_ENUM_END

/// One filter.
struct FilterType
{
    FilteringMethodType method;
    UINT32              filterLength;
    UINT32              FIRCoefficientsCount;
    UINT32              FIRCoefficientsID;
    float*              FIRCoefficients;
};
TUNING_RECORD(FilterType)
    MEMBER(method,
        .meaning = "How the newest samples become one number; with any other number the output is 0.",
        .start = "MovingAverage", .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(filterLength,
        .meaning = "Newest samples that are filtered; doubled, the output is calmer and lags twice as long. 0 counts "
                   "as 1, above 300 it is cut to 300; after a start fewer are taken until there are as many.",
        .unit = Unit::Count, .range = {1, 300}, .odd = AtLeast(0), .start = "40", .acts = Acts::Rebuilt,
        .when = "enable")
    VARIABLE(FIRCoefficients,
        .meaning = "With FIR: weights of the samples, the newest first; samples beyond them, and weights beyond "
                   "filterLength, are left out. The sum is divided by that of the weights, or by 0.01 if that is "
                   "less; without weights the output is 0.",
        .unit = Unit::Factor, .range = Any, .entries = {1, 300}, .acts = Acts::Rebuilt, .when = "enable & method=FIR")
TUNING_RECORD_END

/// One processor.
struct VectorProcessorType
{
    BOOL         enable;
    CHAR*        description;
    DataBankType input;
    DataBankType output;
    FilterType   filtering;
};
TUNING_RECORD(VectorProcessorType)
    BOOLEAN(enable,
        .meaning = "On, the processor takes samples and publishes; off, its output entry keeps what it last held.",
        .start = "true", .acts = Acts::Rebuilt)
    MEMBER(description,
        .meaning = "Name of the processor in logs.",
        .acts = Acts::Never)
    MEMBER(input,
        .meaning = "Entry that the samples come from: of BankIDMetering1D as many new ones as the run is for, from "
                   "the front of the table, up to 300 from the host and one in a general run; of "
                   "BankIDStatsCalculator one per run. Any other bank is refused with a log.",
        .acts = Acts::Rebuilt, .refers = {ReadsBank(BankIDMetering1D, BankIDStatsCalculator)}, .when = "enable")
    MEMBER(output,
        .meaning = "Entry that receives the filtered number: of BankIDTriggers or BankIDStatsCalculator. Any other "
                   "bank is refused with a log.",
        .acts = Acts::Rebuilt, .refers = {WritesBank(BankIDTriggers, BankIDStatsCalculator)}, .when = "enable")
    MEMBER(filtering,
        .meaning = "How the samples become one number.",
        .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// The module's record.
struct KIRO1DVectorProcessorType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    VectorProcessorType     gyroVectorProcessor;
    UINT32                  vectorProcessorsCount;
    UINT32                  vectorProcessorsID;
    VectorProcessorType*    vectorProcessors;
};
TUNING_RECORD(KIRO1DVectorProcessorType)
    MODULE_HEADER("Vector processors: filters over time from one bank entry to another.")
    MEMBER(gyroVectorProcessor,
        .meaning = "Filter of the gyro samples; it runs when the host says that it has put new ones into the input "
                   "table, not by itself. An edit of any member of the module makes it forget its samples.",
        .acts = Acts::Rebuilt)
    VARIABLE(vectorProcessors,
        .meaning = "General filters, run in this order once in each frame with valid statistics, after the "
                   "calculators and before the analyzers. An edit of any member of the module makes all of them "
                   "forget their samples.",
        .entries = AtLeast(0), .acts = Acts::Rebuilt)
TUNING_RECORD_END

} // namespace kiro1dvectorprocessor
