/// @file
/// Parameters of the coded algorithms that scene analyzers can name.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirometeringsaalgorithm
{

/// Parameters of one algorithm.
struct SAAlgorithmType
{
    UINT32 ID;  ///< 1 lux index, 2 lux index of a flash snapshot, 3 precision flash
    CHAR*  description;
    UINT32 extensionParametersCount;
    UINT32 extensionParametersID;

    /// Algorithm 3, at least twelve: data IDs of the calculator results [0] foreground luma LED off, [1] LED on,
    /// [2] background luma LED off, [3] LED on; [4] data ID of the analyzer result that takes high to main flash;
    /// [5] and [6] not used; [7] data ID of the gyro LUT; [8] longest exposure time, [9] shortest flash time,
    /// [10] addition to the flash delay, all three in one unit, ms; [11] safety factor on the shortest flash time.
    float* extensionParameters;

    UINT32                             extensionTriggerSystemCount;
    UINT32                             extensionTriggerSystemID;
    TwoLevelDataBankTriggerSystemType* extensionTriggerSystem;  ///< 3: hysteresis by lux index and s since detection
};
TUNING_RECORD(SAAlgorithmType)
    MEMBER(ID)
    MEMBER(description)
    VARIABLE(extensionParameters)
    VARIABLE(extensionTriggerSystem)
TUNING_RECORD_END

/// The module's record.
struct KIROMeteringSAAlgorithmType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    UINT32                  SAAlgorithmCount;
    UINT32                  SAAlgorithmID;
    SAAlgorithmType*        SAAlgorithm;  ///< of two entries with one ID the later applies
};
TUNING_RECORD(KIROMeteringSAAlgorithmType)
    MODULE_HEADER
    VARIABLE(SAAlgorithm)
TUNING_RECORD_END

} // namespace kirometeringsaalgorithm
