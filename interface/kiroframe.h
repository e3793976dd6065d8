/// @file
/// Records that pass through the stages of one frame. Arrays of three are indexed by AECAlgoExposureType, exposures are
/// ns times linear gain.
///
/// All records are the host's, and are followed during a call only.
#pragma once

#include "interface/kiroexposure.h"
#include "interface/kiroflash.h"
#include "interface/kirostats.h"
#include "schema/exposureindex.h"
#include "schema/kirodbarbitrationorder.h"
#include "schema/kirodbarbitrationtable.h"
#include "schema/tuningrecord.h"

/// A pair of bounds, start first.
typedef StartEndType StartEnd;

/// What the host knows of a frame when metering begins. The same record goes to runMeteringPreprocess and to
/// runMeteringPostprocess.
struct KIROMeteringInput
{
    BOOL   bStatsValid;             ///< 1: there are statistics of a known exposure; 0: targets of before stand
    UINT64 minAntibandingExposure;  ///< least exposure without bands; 0: no flicker
};
TUNING_RECORD(KIROMeteringInput)
    MEMBER(bStatsValid)
    MEMBER(minAntibandingExposure)
TUNING_RECORD_END

/// Targets of a frame, by the two metering calls; read by convergence and kept with the frame by runEndOfFrame.
struct KIROMeteringOutput
{
    /// As the analyzers decided, before antibanding and mixing; equal to exposures while metering is locked, and else
    /// not written in a skipped frame.
    UINT64 mtrExposures[3];
    /// Targets. A skipped frame has those of the frame before, or 10000000 where none is known; in others, short and
    /// long take the one of safe if no analyzer decides them. Antibanding, a lock of metering, a held bracket and
    /// mixMetering rewrite them, in this order.
    UINT64 exposures[3];
    /// 1 after runMeteringPreprocess: not metered, since statistics are not valid or the frame that they show is
    /// unknown, without exposure or a snapshot; analyzers need not run. After runMeteringPostprocess also for a held
    /// bracket.
    BOOL bIsMeteringSkipped;
};
TUNING_RECORD(KIROMeteringOutput)
    PER_EXPOSURE(mtrExposures)
    PER_EXPOSURE(exposures)
    MEMBER(bIsMeteringSkipped)
TUNING_RECORD_END

/// Result of a scene analyzer: output of runAnalyzer, and input of updateAnalyzerMgrOut where the host amends it.
struct KIROAnalyzerOutput
{
    CHAR*    pName;        ///< the tuning's, valid until the tuning changes; may be null
    FLOAT    luma;         ///< measured, on the scale of its channels
    FLOAT    confidence;   ///< as tuned; other analyzers may read it, the core decides nothing by it
    StartEnd target;       ///< wanted luma, on the same scale
    UINT64   sensitivity;  ///< exposure that brings luma to target.start; an input: not read, worked out anew
    /// Which exposure it decides. As an input it is taken for an AECAlgoExposureType: ExposureSafe starts from the long
    /// exposure of the statistics and ExposureLong from the safe one; with ExposureNone only the banks are amended.
    KIROExposureSelection type;
    KIROExposureSelection refType;  ///< neither written by runAnalyzer nor read
};
TUNING_RECORD(KIROAnalyzerOutput)
    ADDRESS(pName)
    MEMBER(luma)
    MEMBER(confidence)
    MEMBER(target)
    MEMBER(sensitivity)
    MEMBER(type)
    MEMBER(refType)
TUNING_RECORD_END

/// The parts of a precision flash, which the host makes of the triggers TriggerCtrlPrecisionFlash... (times in ms).
struct KIROPrecisionFlashInfo
{
    FLOAT  e1ToE1PlusE2;             ///< share of the exposure that the LED lights, above 0 and below 1
    UINT64 minFlashTime;             ///< shortest that the LED can burn, ns
    UINT64 maxExpoTime;              ///< longest exposure time, ns
    UINT64 rollingShutterDelayTime;  ///< delay of the LED, for which the unlit part must last, ns
};
TUNING_RECORD(KIROPrecisionFlashInfo)
    MEMBER(e1ToE1PlusE2)
    MEMBER(minFlashTime)
    MEMBER(maxExpoTime)
    MEMBER(rollingShutterDelayTime)
TUNING_RECORD_END

/// One control of the order list, applied to one exposure: argument of runArbitration. The host fills it, and hands the
/// same record to all controls of a list, with the results of each as the input of the next.
struct KIROArbitrationInput
{
    kirodbarbitrationorder::ArbitrationControl controlID;      ///< from the list
    KIROBankIDType                             controlBank;    ///< range, LUT or table bank; any other: ResultFailed
    INT32                                      controlDataID;  ///< from the list; entry of controlBank
    AECAlgoExposureType                        expType;        ///< the exposure; any other: ResultFailed
    KIROExposureSetType                        exposures[3];   ///< [expType] is split, zeros in it repaired in place
    KIROExposureRange                          range;          ///< limits so far; a corr of 0 becomes 1.0 in place
    KIROSensorRange                            sensorRange;    ///< what no control may leave
    /// Last exposure table used, by the core, for the controls behind it. Null at the beginning of a list; points into
    /// the tuning, valid until that changes.
    kirodbarbitrationtable::ExposureTableType* pTable;
    UINT64                                     indexZeroExposure;     ///< as in KIROArbitratedLimits
    BOOL                                       bIsConvRange;          ///< 1: limits only, no exposure need fit
    BOOL                                       bFPrecisionFlashFlag;  ///< 1: precisionFlashInfo bounds range entry 17
    KIROPrecisionFlashInfo                     precisionFlashInfo;    ///< read with that flag
};
TUNING_RECORD(KIROArbitrationInput)
    MEMBER(controlID)
    MEMBER(controlBank)
    MEMBER(controlDataID)
    NUMBER(expType)
    PER_EXPOSURE(exposures)
    MEMBER(range)
    MEMBER(sensorRange)
    ADDRESS(pTable)
    MEMBER(indexZeroExposure)
    MEMBER(bIsConvRange)
    MEMBER(bFPrecisionFlashFlag)
    MEMBER(precisionFlashInfo)
TUNING_RECORD_END

/// What runArbitration makes of one control. The host presets range with that of the input. With a result other than 0
/// the control does not apply and the host goes on with what it had.
struct KIROArbitrationOutput
{
    AECAlgoExposureType expType;      ///< of the input
    KIROExposureSetType exposureSet;  ///< zeros with result 0: a reference frame gave no answer, as with a failure
    KIROExposureRange   range;        ///< narrowed; an exposure table leaves it as the host preset it
    FLOAT deltaEVFromTarget;          ///< by the host: stops above its target; as preset it goes to the debug record
    FLOAT FPS;                        ///< by the host: frames per second; runExtension and runEndOfFrame read [0]
};
TUNING_RECORD(KIROArbitrationOutput)
    NUMBER(expType)
    MEMBER(exposureSet)
    MEMBER(range)
    MEMBER(deltaEVFromTarget)
    MEMBER(FPS)
TUNING_RECORD_END

/// Argument of RunConvProcess.
struct KIROConvergenceInput
{
    UINT64                frameID;             ///< not read
    KIROArbitratedLimits* pRange;              ///< the frame's limits, copied; null: ResultFailed
    UINT64                sensitivities[3];    ///< targets; the long ADRC of HDR rewrites short and long
    FLOAT                 luxIndex;            ///< decides nothing: the trigger TriggerCtrlLux does
    BOOL                  bIsMeteringSkipped;  ///< of metering; 1: the targets are taken over without convergence
    FLOAT                 mfhdrLongADRC;       ///< by the core: safe over long target of the long ADRC, 1.0 without it
};
TUNING_RECORD(KIROConvergenceInput)
    MEMBER(frameID)
    ADDRESS(pRange)
    PER_EXPOSURE(sensitivities)
    MEMBER(luxIndex)
    MEMBER(bIsMeteringSkipped)
    MEMBER(mfhdrLongADRC)
TUNING_RECORD_END

/// What convergence decided. The host hands the record to RunConvProcess, HandleExposureConstraints, RunConvSettle and
/// RunConvPostProcess, and may change it between them; from runExtension and runEndOfFrame on it is the frame's. With
/// ResultFailed of RunConvProcess, without limits or without a frame in the history, only convergedShortBlend is
/// written, and the host goes on with the record of the frame before.
struct KIROConvergenceOutput
{
    /// Within the limits. HandleExposureConstraints then sets safe between short and long (SensorHDR), and
    /// followMasterConvExposure sets all three, bSettle and bBrightnessSettle by the peer.
    UINT64 exposures[3];
    UINT64 lockedEV0Exposures[3];  ///< exposures at the AEC lock without EV; zeros while there is no lock
    FLOAT  predictiveGain;         ///< by which a stretch holds short below safe, to be made up for digitally; or 1.0
    BOOL   bBrightnessSettle;      ///< by RunConvSettle: safe has stood still for the tuned frames; 0 before
    BOOL   bSettle;                ///< by RunConvSettle: and short and long stand still; 0 before
    FLOAT  evMultiplier;           ///< factor of the user's EV
    FLOAT  shortStretchOffset;     ///< stretch of short, steps of 3 percent; 0 without one
    BOOL   bIsConvTargetFixed;     ///< the targets were taken over, by a lock, an EV change, a snapshot or the like
    BOOL   bIfConvProcRun;         ///< 1 if the speed law ran; the host hands it in as 0
    FLOAT  compensationDarkBoost;  ///< long over safe, with what HDR adds digitally; at least 1.0 but in full manual
    FLOAT  compensationADRC;       ///< safe over short, without predictiveGain
    FLOAT  mfhdrLongADRC;          ///< staggered and multi-frame HDR: safe over long, at least 1.0; 1.0 elsewhere
    FLOAT  convergedShortBlend;    ///< share of short in the blend of HDR, 0 to 1; 1.0 without the feature
};
TUNING_RECORD(KIROConvergenceOutput)
    PER_EXPOSURE(exposures)
    PER_EXPOSURE(lockedEV0Exposures)
    MEMBER(predictiveGain)
    MEMBER(bBrightnessSettle)
    MEMBER(bSettle)
    MEMBER(evMultiplier)
    MEMBER(shortStretchOffset)
    MEMBER(bIsConvTargetFixed)
    MEMBER(bIfConvProcRun)
    MEMBER(compensationDarkBoost)
    MEMBER(compensationADRC)
    MEMBER(mfhdrLongADRC)
    MEMBER(convergedShortBlend)
TUNING_RECORD_END

/// Argument of runExtension. Its pointers are read during the call only.
struct KIROExtensionInput
{
    KIROConvergenceOutput* pConvergenceOuts;   ///< null: counts as unsettled, the sensor's mode stays
    KIROArbitrationOutput* pArbitrationOuts;   ///< three, every exposure split; null is logged
    StatisticsStartUp      statisticsStartup;  ///< Invalid: stretch off, monitors anew, detectors wait for a settle
    KIROExtFlashInfo       flashInfo;          ///< zeros outside a flash
};
TUNING_RECORD(KIROExtensionInput)
    ADDRESS(pConvergenceOuts)
    ADDRESS(pArbitrationOuts)
    NUMBER(statisticsStartup)
    MEMBER(flashInfo)
TUNING_RECORD_END

/// Which frame runEndOfFrame completes.
struct KIROFrameInfo
{
    UINT64 frameID;   ///< of runStartOfFrame; not above the newest one in the history: the frame is not kept
    BOOL   bStartup;  ///< 1: the record is the start configuration of the mode, kept apart from its frames
};
TUNING_RECORD(KIROFrameInfo)
    MEMBER(frameID)
    MEMBER(bStartup)
TUNING_RECORD_END

/// Argument of runEndOfFrame without a use so far.
struct KIROPostProcessingInput
{
    INT input;  ///< not read
};
TUNING_RECORD(KIROPostProcessingInput)
    MEMBER(input)
TUNING_RECORD_END

/// Whether a scene change detector sees a change.
enum KIROSCDStateType : INT32
{
    KIROSCDStateMonitor      = 0,  ///< none since the last rebase
    KIROSCDStateSceneChange  = 1,  ///< the value has stood off its baseline for the tuned frames
    KIROSCDStateSCPostStable = 2,  ///< changed, and stable again
    KIROSCDStateMax          = 3   ///< number of states, never answered
};

/// Whether convergence waits for a change to pass. A rebase leads back to Off: by RebaseSCD, or by a settle after the
/// end.
enum KIROHoldTimeType : INT32
{
    KIROHoldTimeOff = 0,  ///< no hold
    KIROHoldTimeOn  = 1,  ///< convergence waits, if this detector is the active one
    KIROHoldTimeEnd = 2,  ///< the tuned time is over
    KIROHoldTimeMax = 3   ///< number of states, never answered
};

/// State of a scene change detector, by GetSCDOutput; untouched for an unknown ID. What its last run or rebase left.
struct KIROSCDOutput
{
    CHAR*            pName;    ///< the tuning's, valid until the tuning changes; null of a detector that is off
    KIROSCDStateType scState;  ///< change
    KIROHoldTimeType htState;  ///< hold
};
TUNING_RECORD(KIROSCDOutput)
    ADDRESS(pName)
    NUMBER(scState)
    NUMBER(htState)
TUNING_RECORD_END
