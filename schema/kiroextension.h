/// @file
/// Tuning module kiroextension.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroextension
{

/// What a criterion makes of a bank value and of its value at the last rebase.
enum MonitorDataCalculatorType : INT32
{
    OriginalData                 = 0,
    AbsoluteDifference           = 1,
    AbsoluteDifferencePercentage = 2,
    Division                     = 3
};
TUNING_ENUM(MonitorDataCalculatorType)
    ENUMERATOR(OriginalData,
        "The present value itself. The only choice that tells anything in the monitor of three exposures, which is "
        "rebased in each frame just before it is checked.")
    ENUMERATOR(AbsoluteDifference,
        "How far the present value is from the one at the last rebase, in the unit of the value and without sign.")
    ENUMERATOR(AbsoluteDifferencePercentage,
        "How far the present value is from the one at the last rebase, as a share of the latter: 0.1 is 10 percent. A "
        "value near 0 at the rebase makes it huge, a negative one makes it negative.")
    ENUMERATOR(Division, "The present value over the one at the last rebase: 1 for no change, 2 for twice as much.")
TUNING_ENUM_END

/// One criterion of a scene: a value mapped to a score.
struct SceneCriterion
{
    DataBankType               dataBankSource;
    MonitorDataCalculatorType  postCalculation;
    UINT32                     triggersCount;
    UINT32                     triggersID;
    TriggerSystemEndLevelType* triggers;
};
TUNING_RECORD(SceneCriterion)
    MEMBER(dataBankSource,
        .meaning = "Bank entry that the criterion looks at; of a pair in BankIDSceneAnalyzer the start counts. One "
                   "that cannot be read counts as 0.",
        .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable)})
    MEMBER(postCalculation,
        .meaning = "What becomes of the value before it is scored: it is taken as it is, or as its change since the "
                   "last rebase.",
        .start = "OriginalData", .acts = Acts::Rebuilt)
    VARIABLE(triggers,
        .meaning = "Zones over the calculated value, in rising order, each with a score. Scores add up over the "
                   "criteria of a scene; a negative one holds the scene back.",
        .entries = AtLeast(1), .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// A scene: it passes when the scores of its criteria reach the threshold.
struct MonitorSceneConfiguration
{
    CHAR*           sceneDescription;
    UINT32          criteriaArrayCount;
    UINT32          criteriaArrayID;
    SceneCriterion* criteriaArray;
    float           passThreshold;
};
TUNING_RECORD(MonitorSceneConfiguration)
    MEMBER(sceneDescription,
        .meaning = "Name of the scene in logs.",
        .acts = Acts::Never)
    VARIABLE(criteriaArray,
        .meaning = "Criteria whose scores are added; without any the sum is 0. In the first scene of the monitor of "
                   "three exposures, values one to five also go to the host, in this order: two shares of the "
                   "histogram, DRC gain, ambient light, luma of faces.",
        .entries = AtLeast(0), .acts = Acts::Rebuilt)
    MEMBER(passThreshold,
        .meaning = "Sum of scores from which on the scene passes; doubled, twice the score is asked for. At 0 a scene "
                   "whose scores are all 0 passes.",
        .range = AtLeast(0), .odd = Any, .start = "1.0", .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// A monitor: it passes when any of its scenes does.
struct ExtensionGeneralizedMonitor
{
    CHAR*                      monitorDescription;
    UINT32                     scenesCount;
    UINT32                     scenesID;
    MonitorSceneConfiguration* scenes;
};
TUNING_RECORD(ExtensionGeneralizedMonitor)
    MEMBER(monitorDescription,
        .meaning = "Name of the monitor in logs.",
        .acts = Acts::Never)
    VARIABLE(scenes,
        .meaning = "Scenes of which one must pass for the monitor to pass; without scenes it never does. The host is "
                   "told of three scenes of the monitor of three exposures: with a fourth, its third flag is always "
                   "set.",
        .entries = AtLeast(1), .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// When flash is wanted. A lux index above end turns a flag on, below start off.
struct ExtensionFlagFlash
{
    StartEndType flashLuxTrigger;
    StartEndType flashFDReqestDelayLuxTrigger;
    BOOL         enableForceAFInLEDOnMode;
};
TUNING_RECORD(ExtensionFlagFlash)
    MEMBER(flashLuxTrigger,
        .meaning = "Range of the lux index that decides on flash in the LED mode Auto: wanted once the index is above "
                   "the end, no longer once it is below the start. Raised, flash waits for darker scenes; a wider "
                   "range keeps it from flickering.",
        .unit = Unit::LuxIndex, .range = AtLeast(0), .odd = Any)
    MEMBER(flashFDReqestDelayLuxTrigger,
        .meaning = "Range of the lux index that decides whether flash waits for the detection of faces, in any LED "
                   "mode: above the end it does, below the start it does not. Raised, only darker scenes wait.",
        .unit = Unit::LuxIndex, .range = AtLeast(0), .odd = Any)
    BOOLEAN(enableForceAFInLEDOnMode,
        .meaning = "With the LED mode On, the LED helps autofocus in any light; off, only where the lux index asks "
                   "for flash. In Auto both are the same.",
        .start = "true")
TUNING_RECORD_END

/// When a low-light snapshot is wanted.
struct ExtensionFlagLLS
{
    BOOL         enableLLS;
    StartEndType LLSLuxHysteresis;
};
TUNING_RECORD(ExtensionFlagLLS)
    BOOLEAN(enableLLS,
        .meaning = "Lets low-light snapshots be asked for by the lux index; off, they never are. Manual modes and "
                   "preflash ask for none.",
        .start = "true")
    MEMBER(LLSLuxHysteresis,
        .meaning = "Range of the lux index that decides on a low-light snapshot: wanted above the end, no longer "
                   "wanted below the start. Raised, it waits for darker scenes.",
        .unit = Unit::LuxIndex, .range = AtLeast(0), .odd = Any, .when = "enableLLS")
TUNING_RECORD_END

/// How the luma histogram is stretched.
struct ExtensionYHistStretch
{
    BOOL         enableYHistStretch;
    float        tempFilterStrength;
    DataBankType clampValue;
    DataBankType scalingValue;
};
TUNING_RECORD(ExtensionYHistStretch)
    BOOLEAN(enableYHistStretch,
        .meaning = "Tells the host to stretch the luma histogram by the two bank entries; off, it is told a clamp of "
                   "0 and a scaling of 1.0 at once.",
        .start = "true")
    MEMBER(tempFilterStrength,
        .meaning = "Share of the previous clamp and scaling in the new ones, frame by frame while convergence is "
                   "settled. 0 follows at once, values near 1 take many frames, 1 never moves.",
        .unit = Unit::Share, .range = {0, 1}, .start = "0.8", .when = "enableYHistStretch")
    MEMBER(clampValue,
        .meaning = "Entry whose start is the luma below which shadows become black. It is set to 0 before metering in "
                   "every frame, even with the stretch off, and each frame logs a warning where it is no entry of "
                   "BankIDSceneAnalyzer.",
        .refers = {ReadsBank(BankIDSceneAnalyzer)})
    MEMBER(scalingValue,
        .meaning = "Entry whose start is the factor by which the rest is stretched; below 1.0 nothing is stretched or "
                   "clamped. Like that of clampValue it is set to 0 before metering in every frame, and must be one "
                   "of BankIDSceneAnalyzer.",
        .refers = {ReadsBank(BankIDSceneAnalyzer)})
TUNING_RECORD_END

/// Whether a ZLL snapshot is wanted.
struct ExtensionFlagZLL
{
    BOOL enableZLLSnapshot;
    BOOL enforceZLLSetting;
};
TUNING_RECORD(ExtensionFlagZLL)
    BOOLEAN(enableZLLSnapshot,
        .meaning = "Tells the host that ZLL snapshots are on. The core itself does nothing else with it.",
        .start = "true")
    BOOLEAN(enforceZLLSetting,
        .meaning = "Tells the host that ZLL snapshots are enforced. The core itself does nothing else with it.",
        .start = "false")
TUNING_RECORD_END

/// The flags for capture decisions.
struct ExtensionFlagsMonitor
{
    ExtensionFlagFlash    flashFlag;
    ExtensionFlagLLS      LLSFlag;
    ExtensionYHistStretch YHistStretch;
    ExtensionFlagZLL      ZLLFlag;
};
TUNING_RECORD(ExtensionFlagsMonitor)
    MEMBER(flashFlag,
        .meaning = "When flash, its delay for faces and help of the LED for autofocus are wanted.")
    MEMBER(LLSFlag,
        .meaning = "When a low-light snapshot is wanted.")
    MEMBER(YHistStretch,
        .meaning = "How the luma histogram is stretched.")
    MEMBER(ZLLFlag,
        .meaning = "What the host is told of ZLL snapshots.")
TUNING_RECORD_END

/// When a snapshot of three exposures is worth it.
struct ExtensionMonitor3HDRSnapshot
{
    BOOL                        enable3HDRSnapshot;
    UINT32                      frameCounterEnter;
    ExtensionGeneralizedMonitor generalizedMonitor;
};
TUNING_RECORD(ExtensionMonitor3HDRSnapshot)
    BOOLEAN(enable3HDRSnapshot,
        .meaning = "Runs the monitor that finds scenes worth three exposures; off, only the host's own event asks for "
                   "them.",
        .start = "true")
    MEMBER(frameCounterEnter,
        .meaning = "Frames in a row that must have passed before the next passing one asks for three exposures. "
                   "Doubled, the decision takes twice as long and brief changes are ignored; at 0 one passing frame "
                   "is enough.",
        .unit = Unit::Frames, .range = AtLeast(0), .start = "5", .when = "enable3HDRSnapshot")
    MEMBER(generalizedMonitor,
        .meaning = "The monitor of three exposures; a frame passes when one of its scenes does.",
        .acts = Acts::Rebuilt, .when = "enable3HDRSnapshot")
TUNING_RECORD_END

/// How long the exposures of a bracketing session are held.
struct ExtensionMonitorEVBracketLock
{
    BOOL                        enableEVBracketLock;
    UINT32                      maxFrameNum;
    ExtensionGeneralizedMonitor generalizedMonitor;
};
TUNING_RECORD(ExtensionMonitorEVBracketLock)
    BOOLEAN(enableEVBracketLock,
        .meaning = "Lets a later bracket keep the exposures of an earlier one while the scene is the same; off, each "
                   "bracket is metered anew.",
        .start = "true")
    MEMBER(maxFrameNum,
        .meaning = "Frames after a rebase within which a bracket may keep the earlier exposures; doubled, they may be "
                   "kept for twice as long. The scene is checked six frames after a bracket at the earliest, so that "
                   "below 7 a bracket that stands alone keeps none, and below 6 no bracket does.",
        .unit = Unit::Frames, .range = AtLeast(7), .odd = AtLeast(0), .start = "300", .when = "enableEVBracketLock")
    MEMBER(generalizedMonitor,
        .meaning = "The monitor that passes while the scene is still that of the rebase; it is asked again once more "
                   "than five frames have gone by.",
        .acts = Acts::Rebuilt, .when = "enableEVBracketLock")
TUNING_RECORD_END

/// Which bulky parts go into the debug data.
struct ExtensionVerboseDebugDataEnable
{
    BOOL StatsList;
    BOOL SceneAnalyzer;
    BOOL StatsCalculator;
};
TUNING_RECORD(ExtensionVerboseDebugDataEnable)
    BOOLEAN(StatsList,
        .meaning = "Puts all statistics channels into the debug data, while the host asks for these; off, the "
                   "channels are left out.",
        .start = "true")
    BOOLEAN(SceneAnalyzer,
        .meaning = "Puts the components of the scene analyzers into the debug data, while the host asks for these; "
                   "off, the runs of analyzers are left out.",
        .start = "true", .acts = Acts::NextAnalysis)
    BOOLEAN(StatsCalculator,
        .meaning = "Puts the results of the statistics calculators into the debug data, while the host asks for "
                   "these; off, they are left out.",
        .start = "true", .acts = Acts::NextAnalysis)
TUNING_RECORD_END

/// The module.
struct KIROExtensionType
{
    UINT32                          SymbolTableID;
    module_versionStruct            module_version;
    parameter_versionStruct         parameter_version;
    UINT32                          moduleID;
    ExtensionFlagsMonitor           flagMonitor;
    ExtensionMonitor3HDRSnapshot    monitor3HDRSnapshot;
    ExtensionMonitorEVBracketLock   monitorEVBracketLock;
    ExtensionVerboseDebugDataEnable verboseDebugDataEnable;
};
TUNING_RECORD(KIROExtensionType)
    MODULE_HEADER("Flags for capture decisions, and the monitors that hold or start an HDR snapshot.")
    MEMBER(moduleID,
        .meaning = "Number by which tools tell the module. Read by no stage.",
        .unit = Unit::ID, .range = AtLeast(0), .start = "5", .acts = Acts::Never)
    MEMBER(flagMonitor,
        .meaning = "The flags for capture decisions.")
    MEMBER(monitor3HDRSnapshot,
        .meaning = "When a snapshot of three exposures is worth it.",
        .acts = Acts::Rebuilt)
    MEMBER(monitorEVBracketLock,
        .meaning = "How long a bracket keeps the exposures of an earlier one. An edit of any member of the module "
                   "ends a lock and makes the monitor learn anew.",
        .acts = Acts::Rebuilt)
    MEMBER(verboseDebugDataEnable,
        .meaning = "Which bulky parts go into the debug data.")
TUNING_RECORD_END

} // namespace kiroextension
