/// @file
/// Tuning module kirometeringsaalgorithm.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirometeringsaalgorithm
{

/// Parameters of one algorithm.
struct SAAlgorithmType
{
    UINT32 ID;
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
    TwoLevelDataBankTriggerSystemType* extensionTriggerSystem;
};
TUNING_RECORD(SAAlgorithmType)
    MEMBER(ID,
        .meaning = "Coded algorithm that the entry is for; only 3, precision flash, reads its entry. Of two entries "
                   "with one ID the later applies.",
        .unit = Unit::ID, .range = {3, 3}, .odd = AtLeast(0), .start = "3", .acts = Acts::NewTuning,
        .refers = {Reads(Thing::Algorithm)})
    MEMBER(description,
        .meaning = "Text for the tuner; read by no stage.",
        .acts = Acts::Never)
    VARIABLE(extensionParameters,
        .meaning = "Algorithm 3, at least twelve: [0] to [3] calculator results (foreground luma LED off, on, "
                   "background luma LED off, on), [4] analyzer result that takes high to main flash, [7] LUT that "
                   "limits [8] by gyro and [8] itself, both ms, where 0 is the LUT that the context selects and an ID "
                   "without LUT leaves [8] alone, [8] longest exposure time, [9] shortest flash time and [10] "
                   "addition to the flash delay, all ms, [11] safety factor on [9]; [5] and [6] are not read. Of the "
                   "whole exposure the part with LED is at least [11] times [9] over [8] and at most 1 less delay "
                   "over [8], so that a longer [8] allows more splits; with fewer than twelve numbers none is looked "
                   "for.",
        .unit = Unit::Varies, .range = Any, .entries = AtLeast(0),
        .start = "[22, 23, 24, 25, 65, 0, 0, -1, 33, 2, 3, 1.2]")
    VARIABLE(extensionTriggerSystem,
        .meaning = "Algorithm 3, the first entry alone: hysteresis by lux index (level 1) and seconds since the last "
                   "precision flash scene (level 2); 0.2 lowers the thresholds of the next detection by a fifth. The "
                   "bank entries named in it are not read; without an entry there is no hysteresis.",
        .entries = {0, 1})
TUNING_RECORD_END

/// The module's record.
struct KIROMeteringSAAlgorithmType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    UINT32                  SAAlgorithmCount;
    UINT32                  SAAlgorithmID;
    SAAlgorithmType*        SAAlgorithm;
};
TUNING_RECORD(KIROMeteringSAAlgorithmType)
    MODULE_HEADER("Parameters of the coded algorithms that scene analyzers can name.")
    VARIABLE(SAAlgorithm,
        .meaning = "Parameters of coded algorithms, one entry per algorithm that has some. Which entry applies is "
                   "looked up when the scene analyzers are built; its numbers are read live.",
        .entries = AtLeast(0))
TUNING_RECORD_END

} // namespace kirometeringsaalgorithm
