/// @file
/// What hangs on a frame's result: flags for capture decisions, histogram stretch, switching. runExtension writes all
/// of it in each frame; without the tuning module kiroextension flags and stretch stay as they were.
///
/// A flag that goes by the lux index turns on above the end of a tuned range and off below its start. A lux index grows
/// as the scene darkens.
#pragma once

#include "platform/tavotypes.h"
#include "schema/tuningrecord.h"

/// What the host should do for a picture. Flags are 0 or 1; those by the lux index are frozen in preflash mode.
struct KIROExtFlagsMonitorOutput
{
    BOOL bFlashNeeded;         ///< LED mode Auto: by the lux index; On: 1; Off: 0
    BOOL bFDFlashDelayNeeded;  ///< flash waits for the detection of faces; by the lux index, in any LED mode
    BOOL bLEDAFNeeded;         ///< LED helps autofocus: by the lux index or, so tuned, as bFlashNeeded; Off: 0
    BOOL bLLSNeeded;           ///< low-light snapshot; by the lux index, 0 in manual modes and in preflash
    BOOL bZLLEnabled;          ///< ZLL snapshots are on, as tuned
    BOOL bZLLEnforced;         ///< ZLL snapshots are enforced, as tuned
};
TUNING_RECORD(KIROExtFlagsMonitorOutput)
    MEMBER(bFlashNeeded)
    MEMBER(bFDFlashDelayNeeded)
    MEMBER(bLEDAFNeeded)
    MEMBER(bLLSNeeded)
    MEMBER(bZLLEnabled)
    MEMBER(bZLLEnforced)
TUNING_RECORD_END

/// How the luma histogram is to be stretched. Both values are filtered over frames and move only in frames that have
/// settled by themselves; otherwise, and where the tuned bank entries cannot be read, those of before stand.
struct AECYHistStretchData
{
    BOOL  enable;   ///< as tuned
    FLOAT clamp;    ///< of the tuned bank entry, in its unit; 0 while off, at start-up and for a scaling below 1.0
    FLOAT scaling;  ///< at least 1.0, which leaves the histogram as it is and goes with a clamp of 0
};
TUNING_RECORD(AECYHistStretchData)
    MEMBER(enable)
    MEMBER(clamp)
    MEMBER(scaling)
TUNING_RECORD_END

/// Scenes that have a flag.
constexpr UINT32 InSensorHDR3ExpFlagCount = 3;

/// Which of the tuned scenes ask for three exposures.
struct InSensorHDR3ExpTriggeResult
{
    BOOL flags[InSensorHDR3ExpFlagCount];  ///< by scene; with more scenes than flags the last flag is 1
};
TUNING_RECORD(InSensorHDR3ExpTriggeResult)
    MEMBER(flags)
TUNING_RECORD_END

/// The first two criteria of the first tuned scene.
struct CDFSet
{
    FLOAT resultCDF0;  ///< value of the first
    FLOAT resultCDF5;  ///< value of the second
};
TUNING_RECORD(CDFSet)
    MEMBER(resultCDF0)
    MEMBER(resultCDF5)
TUNING_RECORD_END

/// What the decision rests on: the bank values behind the criteria of the first tuned scene, in their order. 0 where
/// the tuning has no such criterion, and in frames that decide nothing.
struct InSensorHDR3ExpTriggerInfo
{
    BOOL                        isTriggerInfoValid;  ///< 1 where such snapshots are tuned, but at start-up
    InSensorHDR3ExpTriggeResult finalTriggerResult;  ///< decisions; zeros while the snapshot is being taken
    CDFSet                      calculatedCDF;       ///< criteria 1 and 2
    FLOAT                       realDRCGain;         ///< criterion 3
    FLOAT                       ambientRaw;          ///< criterion 4
    FLOAT                       faceLuma;            ///< criterion 5
};
TUNING_RECORD(InSensorHDR3ExpTriggerInfo)
    MEMBER(isTriggerInfoValid)
    MEMBER(finalTriggerResult)
    MEMBER(calculatedCDF)
    MEMBER(realDRCGain)
    MEMBER(ambientRaw)
    MEMBER(faceLuma)
TUNING_RECORD_END

/// Whether a snapshot of three exposures is worth it.
struct KIROExt3HDRMonitorOutput
{
    InSensorHDR3ExpTriggerInfo IHDRTriggers;  ///< what the decision rests on
    BOOL bIs3HDRSnapshot;  ///< 1: a scene has passed for more than the tuned frames, or the snapshot is being taken
};
TUNING_RECORD(KIROExt3HDRMonitorOutput)
    MEMBER(IHDRTriggers)
    MEMBER(bIs3HDRSnapshot)
TUNING_RECORD_END

/// Output of runExtension.
struct KIROExtensionOutput
{
    KIROExtFlagsMonitorOutput monitoredFlags;        ///< for capture decisions
    AECYHistStretchData       histStretchData;       ///< for the image processor
    KIROExt3HDRMonitorOutput  snapshot3HDRTriggers;  ///< for capture decisions
    /// 1 for the binned mode of a hybrid HDR sensor, 0 for the full one: by the ADRC, and no sooner than the tuned
    /// frames behind the last switch. Stays 1 on other sensors.
    BOOL bIsSeamlessBinning;
};
TUNING_RECORD(KIROExtensionOutput)
    MEMBER(monitoredFlags)
    MEMBER(histStretchData)
    MEMBER(snapshot3HDRTriggers)
    MEMBER(bIsSeamlessBinning)
TUNING_RECORD_END
