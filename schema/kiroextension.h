/// @file
/// Tuning module kiroextension: flags for capture decisions, and the monitors that hold or start an HDR snapshot.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroextension
{

/// What a criterion makes of a bank value and of its value at the last rebase.
enum MonitorDataCalculatorType : INT32
{
    OriginalData                 = 0,  ///< the present value
    AbsoluteDifference           = 1,
    AbsoluteDifferencePercentage = 2,  ///< difference over the rebased value, as a ratio
    Division                     = 3   ///< present over rebased value
};
TUNING_ENUM(MonitorDataCalculatorType)
    ENUMERATOR(OriginalData)
    ENUMERATOR(AbsoluteDifference)
    ENUMERATOR(AbsoluteDifferencePercentage)
    ENUMERATOR(Division)
TUNING_ENUM_END

/// One criterion of a scene: a value mapped to a score.
struct SceneCriterion
{
    DataBankType               dataBankSource;
    MonitorDataCalculatorType  postCalculation;
    UINT32                     triggersCount;  ///< at least 1
    UINT32                     triggersID;
    TriggerSystemEndLevelType* triggers;       ///< calculated value to score, in ascending trigger
};
TUNING_RECORD(SceneCriterion)
    MEMBER(dataBankSource)
    MEMBER(postCalculation)
    VARIABLE(triggers)
TUNING_RECORD_END

/// A scene: it passes when the scores of its criteria reach the threshold.
struct MonitorSceneConfiguration
{
    CHAR*           sceneDescription;  ///< name in logs
    UINT32          criteriaArrayCount;
    UINT32          criteriaArrayID;
    SceneCriterion* criteriaArray;
    float           passThreshold;     ///< sum of scores
};
TUNING_RECORD(MonitorSceneConfiguration)
    MEMBER(sceneDescription)
    VARIABLE(criteriaArray)
    MEMBER(passThreshold)
TUNING_RECORD_END

/// A monitor: it passes when any of its scenes does.
struct ExtensionGeneralizedMonitor
{
    CHAR*                      monitorDescription;  ///< name in logs
    UINT32                     scenesCount;
    UINT32                     scenesID;
    MonitorSceneConfiguration* scenes;
};
TUNING_RECORD(ExtensionGeneralizedMonitor)
    MEMBER(monitorDescription)
    VARIABLE(scenes)
TUNING_RECORD_END

/// When flash is wanted. A lux index above end turns a flag on, below start off.
struct ExtensionFlagFlash
{
    StartEndType flashLuxTrigger;
    StartEndType flashFDReqestDelayLuxTrigger;  ///< delay of the flash for face detection
    BOOL         enableForceAFInLEDOnMode;      ///< LED assist for AF follows the flash flag in LED mode On
};
TUNING_RECORD(ExtensionFlagFlash)
    MEMBER(flashLuxTrigger)
    MEMBER(flashFDReqestDelayLuxTrigger)
    BOOLEAN(enableForceAFInLEDOnMode)
TUNING_RECORD_END

/// When a low-light snapshot is wanted.
struct ExtensionFlagLLS
{
    BOOL         enableLLS;
    StartEndType LLSLuxHysteresis;  ///< lux index: on above end, off below start
};
TUNING_RECORD(ExtensionFlagLLS)
    BOOLEAN(enableLLS)
    MEMBER(LLSLuxHysteresis)
TUNING_RECORD_END

/// How the luma histogram is stretched.
struct ExtensionYHistStretch
{
    BOOL         enableYHistStretch;
    float        tempFilterStrength;  ///< weight of the previous values, 0 to 1
    DataBankType clampValue;
    DataBankType scalingValue;
};
TUNING_RECORD(ExtensionYHistStretch)
    BOOLEAN(enableYHistStretch)
    MEMBER(tempFilterStrength)
    MEMBER(clampValue)
    MEMBER(scalingValue)
TUNING_RECORD_END

/// Whether a ZLL snapshot is wanted.
struct ExtensionFlagZLL
{
    BOOL enableZLLSnapshot;
    BOOL enforceZLLSetting;
};
TUNING_RECORD(ExtensionFlagZLL)
    BOOLEAN(enableZLLSnapshot)
    BOOLEAN(enforceZLLSetting)
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
    MEMBER(flashFlag)
    MEMBER(LLSFlag)
    MEMBER(YHistStretch)
    MEMBER(ZLLFlag)
TUNING_RECORD_END

/// When a snapshot of three exposures is worth it.
struct ExtensionMonitor3HDRSnapshot
{
    BOOL                        enable3HDRSnapshot;
    UINT32                      frameCounterEnter;   ///< passing frames in a row; one more starts it
    ExtensionGeneralizedMonitor generalizedMonitor;
};
TUNING_RECORD(ExtensionMonitor3HDRSnapshot)
    BOOLEAN(enable3HDRSnapshot)
    MEMBER(frameCounterEnter)
    MEMBER(generalizedMonitor)
TUNING_RECORD_END

/// How long the exposures of a bracketing session are held.
struct ExtensionMonitorEVBracketLock
{
    BOOL                        enableEVBracketLock;
    UINT32                      maxFrameNum;         ///< frames after a rebase
    ExtensionGeneralizedMonitor generalizedMonitor;  ///< passes while the scene is the same
};
TUNING_RECORD(ExtensionMonitorEVBracketLock)
    BOOLEAN(enableEVBracketLock)
    MEMBER(maxFrameNum)
    MEMBER(generalizedMonitor)
TUNING_RECORD_END

/// Which bulky parts go into the debug data.
struct ExtensionVerboseDebugDataEnable
{
    BOOL StatsList;        ///< all statistics channels
    BOOL SceneAnalyzer;    ///< components of the scene analyzers
    BOOL StatsCalculator; ///< groups of the statistics calculators
};
TUNING_RECORD(ExtensionVerboseDebugDataEnable)
    BOOLEAN(StatsList)
    BOOLEAN(SceneAnalyzer)
    BOOLEAN(StatsCalculator)
TUNING_RECORD_END

/// The module.
struct KIROExtensionType
{
    UINT32                          SymbolTableID;
    module_versionStruct            module_version;
    parameter_versionStruct         parameter_version;
    UINT32                          moduleID;  ///< identifies the module to the tools
    ExtensionFlagsMonitor           flagMonitor;
    ExtensionMonitor3HDRSnapshot    monitor3HDRSnapshot;
    ExtensionMonitorEVBracketLock   monitorEVBracketLock;
    ExtensionVerboseDebugDataEnable verboseDebugDataEnable;
};
TUNING_RECORD(KIROExtensionType)
    MODULE_HEADER
    MEMBER(moduleID)
    MEMBER(flagMonitor)
    MEMBER(monitor3HDRSnapshot)
    MEMBER(monitorEVBracketLock)
    MEMBER(verboseDebugDataEnable)
TUNING_RECORD_END

} // namespace kiroextension
