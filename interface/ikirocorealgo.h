/// @file
/// The function table of the exposure core: all that a host calls.
///
/// The road of a frame, in the order of the calls. Each stage rests on what those before it have left; what a stage
/// that is left out would have written stays as the host's records and the banks have it; the frame's own record begins
/// with zeros at setStats. host/kirohost.cpp of the sources makes these calls.
///
///     create    CreateKiroCoreAlgo; setInput for pipeline delay, operation mode, HDR type and what else is known
///     start-up  GetStartUpExposure, one source after the other until one answers; runArbitration; runEndOfFrame with
///               bStartup. Again behind each operation mode that begins a history anew. From the second frame on, until
///               a decision has reached the sensor, statistics still show the start exposure: bStatsValid is 0 and
///               statisticsStartup StatisticsStartUpInvalid so long
///     frame 1   setInput for each setting that has changed
///           2   runStartOfFrame
///           3   setStats
///           4   runMeteringPreprocess
///           5   runAnalyzer for each ID of BankIDActiveAnalyzers, in its order, unless metering was skipped
///           6   runMeteringPostprocess
///           7   mixMetering
///           8   runArbitration along BankIDArbitrationOrder with bIsConvRange: the limits
///           9   RunConvProcess, followMasterConvExposure, HandleExposureConstraints, RunConvSettle, RunConvPostProcess
///          10   runArbitration along the same lists without bIsConvRange: gain and time, for the sensor
///          11   runExtension
///          12   runEndOfFrame
///     picture   2; setInput with KIROCoreSnapshot; 3; 4 to 6 if the statistics show the preview; exposures of the
///               host's choice; 10; 12; setInput with KIROCoreSnapshot and None. The preview's history stays as it was.
///               A picture with flash runs all of 2 to 12 behind getFlashCurrent, on statistics with and without LED
///
/// Calls that have no number here may stand between any two stages, not within one.
///
/// One camera alone may leave out 7 and followMasterConvExposure, and outside of SensorHDR HandleExposureConstraints;
/// it may make limits (8) and gain and time (10) itself. Without 11 there are no flags, its detectors do not run,
/// nothing is learned of the flash, and the triggers of gain, time, exposure and frame rate stay; where RunConvSettle
/// is never called, nothing counts as settled, and safe never rests. All else of 2 to 12 is needed in a preview frame,
/// and a runEndOfFrame with bStartup behind each mode that begins a history anew.
#pragma once

#include "interface/ikirodebugdata.h"
#include "interface/kirobankdata.h"
#include "interface/kiroextension.h"
#include "interface/kiroframe.h"
#include "interface/kiroresults.h"
#include "interface/kirosetinput.h"
#include "interface/kirotriggerdata.h"
#include "interface/statstuningdata.h"
#include "platform/tavocommonutils.h"

class IKIROCore;
struct AECAlgoGetParam;
struct KIROAlgoStartExposureInfo;

/// One table per instance, filled by CreateKiroCoreAlgo. Every function takes the table first. The host makes all calls
/// on one instance one at a time, on any thread.
///
/// Results are 0 for success, or those of interface/kiroresults.h. A null table or instance yields
/// ResultInvalidArgument, -1 (GetFlashMaxCurrent), an empty record (GetFlashCalibInfo), 0 (BOOL and counts), or has no
/// effect; the functions do not say it again, but what other null pointers do.
///
/// Records are the host's and need to live for the call, unless their field says more. Arrays of three exposures are
/// indexed by AECAlgoExposureType; exposures are gain times ns times correction. A stage never fails a frame: what is
/// missing in statistics or tuning is logged, and the stage goes on with the stand-in named here. A tuning module that
/// no mode holds counts as one of zeros.
struct IKIROCoreAlgo
{
    IKIROCore* pCore;  ///< the instance, for the library alone; DestroyInstance leaves the address as it is

    /// Makes an object that evaluates tuned zones, at any time. Needs no instance: pAlgo may be null.
    /// @param xmlType a type beyond KIROMLFloatArrayDataType or below 0 counts as KIROMLBaseDataType
    /// @return the host's, ended by its DestoryInstance; null when out of memory
    CKIROTriggerDataXML* (*createDataXml)(IKIROCoreAlgo* pAlgo, KIROMLDataType xmlType);

    /// Begins a frame: every data bank selects its data by the context status.
    /// @param frameID above the last one since the history began. Any other is logged, and the frame runs under the ID
    ///                of the one before. Differences of IDs count as frames: an ID that is passed over ages the history
    /// @return 0
    KiroResult (*runStartOfFrame)(IKIROCoreAlgo* pAlgo, UINT64 frameID);

    /// First stage of metering: calculators, lux index, detectors, maps from outside and table generation. In every
    /// frame behind setStats, with or without valid statistics.
    /// @param rOutput one record for all stages of metering. A metered frame changes the flag alone; a skipped one
    ///                takes over targets and lux index of the last preview frame or start configuration
    /// @return 0 if the frame is metered; ResultFailed if it is skipped: without valid statistics, without a frame in
    ///         the history that they belong to (the pipeline delay back; for a flash snapshot the frame kept without
    ///         LED), with an exposure of 0 in that frame, or if that frame is a picture, unless HDR3 is being taken
    KiroResult (*runMeteringPreprocess)(IKIROCoreAlgo* pAlgo, KIROMeteringInput& rInput, KIROMeteringOutput& rOutput);

    /// Runs one scene analyzer, behind a runMeteringPreprocess that has metered. The list to run, in its order, is the
    /// payload of data ID 0 of BankIDActiveAnalyzers: an analyzer may read what those before it have published. A
    /// measure that is missing reads as -1.0 in BankIDStatsCalculator; an analyzer does not fail for it.
    /// @param analyzerID   as tuned, 0 to 999; one above that runs and decides no exposure
    /// @param rAnalyzerOut receives the result; refType keeps the host's value
    /// @return 0; ResultFailed, with the output as it was, for an ID that the tuning does not have
    KiroResult (*runAnalyzer)(IKIROCoreAlgo* pAlgo, UINT32 analyzerID, KIROAnalyzerOutput& rAnalyzerOut);

    /// Replaces the decision of an analyzer that has run in this frame, before runMeteringPostprocess. The exposure is
    /// worked out anew, as target.start over luma times the exposure that the statistics were taken with; a ratio below
    /// 0.01 counts as 1. Luma, target and confidence go to the analyzer's banks as well.
    /// @param analyzerID  also the analyzer's position in the tuning, which must be the same
    /// @return 0, also for a null argument or an ID out of range: these are logged
    KiroResult (*updateAnalyzerMgrOut)(IKIROCoreAlgo* pAlgo, UINT32 analyzerID, KIROAnalyzerOutput* pAnalyzerIn);

    /// Last stage of metering, in every frame: of the active analyzers of each exposure type the last one decides its
    /// target. Without one, short and long take the safe target, and safe is 0. Then antibanding, the metering lock,
    /// and the hold of a bracket. Publishes the targets as triggers. A skipped frame keeps the targets that
    /// runMeteringPreprocess has set, unless the lock or a bracket replaces them.
    /// @param rInput  as in runMeteringPreprocess
    /// @param rOutput the same record
    /// @return 0
    KiroResult (*runMeteringPostprocess)(IKIROCoreAlgo* pAlgo, KIROMeteringInput& rInput, KIROMeteringOutput& rOutput);

    /// Mixes the targets with those of the peer, in every frame behind runMeteringPostprocess. Does nothing unless the
    /// tuning of the camera's role mixes and a peer is known.
    /// @param rOutput its exposures change, mtrExposures stay
    /// @return 0
    KiroResult (*mixMetering)(IKIROCoreAlgo* pAlgo, KIROMeteringOutput& rOutput);

    /// Publishes frame rate, time, gain and exposure as triggers; then what hangs on the frame's result: flags for
    /// captures, histogram stretch, switch of the sensor's mode, inline calibration of the flash; detectors before and
    /// after. Once a frame, when the exposures have been split.
    /// @param rInput  null arbitration outputs are logged: their triggers keep the values of the frame before
    /// @param rOutput all members are written; without the module kiroextension flags and stretch are those of the
    ///                frame before
    /// @return 0
    KiroResult (*runExtension)(IKIROCoreAlgo* pAlgo, KIROExtensionInput& rInput, KIROExtensionOutput& rOutput);

    /// Ends a frame: the record is saved and shared with other cameras. It becomes the start configuration of the
    /// running mode with bStartup; otherwise a picture, while setInput has announced a snapshot; otherwise a preview
    /// frame, from which the next ones are metered and converge. A frame ID that is not above the newest preview
    /// frame's is logged, and the frame is not saved.
    /// @param rInput           not read
    /// @param rMtrOut          its exposures are kept as the frame's targets
    /// @param rConvOut         settle flags, gains and offsets are kept
    /// @param pArbitrationOuts three. With null, which is logged, the frame keeps the exposures that runExtension was
    ///                         given, and other cameras are told nothing
    /// @return 0
    KiroResult (*runEndOfFrame)(IKIROCoreAlgo* pAlgo, KIROFrameInfo& rFrameInfo, KIROPostProcessingInput& rInput,
                                KIROMeteringOutput& rMtrOut, KIROConvergenceOutput& rConvOut,
                                KIROArbitrationOutput* pArbitrationOuts);

    /// On a camera whose tuned role is to follow, and which has a peer, replaces exposures, ADRC and dark boost
    /// compensation and the settle flags by the peer's. Does nothing on any other. In every frame behind RunConvProcess
    /// and before the calls that rest on the exposures; RunConvSettle decides the flags anew.
    /// @return 0
    KiroResult (*followMasterConvExposure)(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rConvOut);

    /// Reads an entry of a data bank; kirobankdata.h has the payload of each bank.
    /// @return 0; ResultInvalidArgument for null; ResultFailed for an unknown bank, for a size that is not the
    ///         payload's, and, with a null pData, for a data ID that a value bank does not have; ResultNotFound, with
    ///         pData as it was, for an entry that a tuned bank does not have. A tuned bank without entries yields 0 and
    ///         a null pData for data ID 0
    KiroResult (*getBankData)(IKIROCoreAlgo* pAlgo, KIROGetBankData* pData);

    /// Gives a setting; kirosetinput.h says what each one does. Its effect on the context status reaches the data banks
    /// at runStartOfFrame, and at the next of the stages runMeteringPreprocess, RunConvProcess, runArbitration and
    /// runExtension; that of a snapshot at once.
    /// @param pSetInputData its bResetFrameSkip is written
    /// @return 0; ResultFailed for null, for a null record behind it, for a payload that is too small, and for one with
    ///         a count beyond its array or a null array: what was set before then stays
    MNKResult (*setInput)(IKIROCoreAlgo* pAlgo, KIROSetInput* pSetInputData);

    /// Takes the frame's statistics in the place of those before, and begins the frame's record. In every frame, behind
    /// runStartOfFrame and before all that measures. Moves the events AECTorch, AECTorchChange and AECDepth.
    /// @param rStats kirostats.h says what must stay where it is until the next setStats
    /// @return 0; ResultInvalidInput for a list of more channels than it has room for, or of startup statistics, of
    ///         which nothing is taken; if the last channel is a grid without values; and if no grid channel was taken.
    ///         The frame goes on after it, with bStatsValid 0
    KiroResult (*setStats)(IKIROCoreAlgo* pAlgo, KIROStatsList& rStats);

    /// Writes an entry of a data bank. A value bank copies the payload; a tuned bank keeps the pointer, until another
    /// entry of that ID or another tuning takes its place. Data ID 0 of a tuned bank stands for the selected entry
    /// until the next selection. A bank of 1000 entries drops an entry of a new ID.
    /// @return 0; ResultNotFound for an unknown bank; ResultInvalidArgument for null, for a size that is not the
    ///         payload's, for a null payload, and for a data ID that a value bank does not have
    KiroResult (*setBankData)(IKIROCoreAlgo* pAlgo, const KIROSetBankData* pModuleData);

    /// @return mA, both LEDs together: 1000 at first, then what AECAlgoSetParamFlashMaximumCurrent or the last
    ///         getFlashCurrent, which puts the largest tuned current there, has left
    INT32 (*GetFlashMaxCurrent)(IKIROCoreAlgo* pAlgo);

    /// @return the ratios that AECAlgoSetParamFlashCalibrationData gave last; count 0 and null pointers before. The
    ///         arrays are the instance's: they change with that setting and end with the instance
    AECAlgoFlashCalibrationData (*GetFlashCalibInfo)(IKIROCoreAlgo* pAlgo);

    /// Picks the currents of the LEDs. For Low behind the change to preflash mode, for High behind the last preflash
    /// frame; Off switches both off without an estimate. With High and bBackupState the newest frame is kept as the one
    /// under the low LED, and the trigger TriggerFlashExpIncrease published. Takes the tuned table anew each time.
    /// @return 0; ResultFailed, with the output as it was, for a null argument or a table that is too large or not in
    ///         order of power. Without a table the result is 0, and the output zero but for its state
    KiroResult (*getFlashCurrent)(IKIROCoreAlgo* pAlgo, const KIROAlgoFlashInput* pFlashIn,
                                  KIROAlgoFlashOutput* pFlashOut);

    /// Tells whether the preflash must go on; for each frame that shows the low LED. Channels are found by the names of
    /// kiroflash.preflashStatsPreProcessing: level and saturation, grids of up to 256 regions.
    /// @param pFlashOffStats channels of the frame without LED, with a frame ID that is not 0; may be null
    /// @param pFlashLowStats channels of this frame; may be null
    /// @return 1 while the LED brings a region above its limit that was not bright without it; also if a channel or the
    ///         tuning is missing, with a log. Otherwise 0
    BOOL(*isPreflashMeteringNeeded)
    (IKIROCoreAlgo* pAlgo, const KIROCntStatsOut* pFlashOffStats, UINT32 offStatsNum,
     const KIROCntStatsOut* pFlashLowStats, UINT32 lowStatsNum);

    /// Proposes the exposures that a mode begins with, before its start-up frame; kirostartexposure.h has the sources.
    /// Settings that a source rests on (operation mode, light, camera, peer, EV) must have been given.
    /// @return 0; ResultFailed for null, and for a source that has no answer or is none; also for the master's
    ///         exposures (KIROStartExpDCFollow), which are filled all the same
    KiroResult (*GetStartUpExposure)(IKIROCoreAlgo* pAlgo, KIROAlgoStartExposureInfo* pStartInfo);

    /// Answers a typed query; aecalgogetparam.h has the queries and what each needs.
    /// @return 0; ResultInvalidArgument for null, for an empty list of outputs, and for an output that is missing or
    ///         too small; ResultUnsupportedQuery for a type that is not answered
    KiroResult (*queryMetaData)(IKIROCoreAlgo* pAlgo, AECAlgoGetParam* pQuery);

    /// Applies one control of the tuned order to one exposure. The host walks the payload of data ID 0 of
    /// BankIDArbitrationOrder: a list of controls for each exposure, one call for each enabled one. What a control
    /// yields, exposure and range, is the next one's input. Long comes before those whose list has
    /// ArbCtrlSHDRTimeRange, which reads its range. host/arbitrationwalk.cpp of the sources makes these calls, and puts
    /// user settings (FPS, manual) into the ranges.
    /// @param pInput the same record along a list; the core writes into it
    /// @param pOutput with the range of the input in it
    /// @return 0 if applied, but for ArbCtrlMatchHistory with an exposure of 0, which has no answer. ResultFailed:
    ///         null, unknown exposure or bank, no such table or LUT, a table of one knee, a range that is empty or
    ///         beyond the sensor, an exposure that does not fit and that the tuning does not resolve, a LUT that does
    ///         not apply, a missing reference frame, a camera that does not match times. ResultNotFound: no such range
    ///         or reference, no peer for ArbCtrlMasterTime. ResultNotFollowing: the camera of ArbCtrlMasterTime does
    ///         not follow. ResultNotApplicable: a reference for brackets alone, or for another EV. With any result but
    ///         0 the output is not to be used: exposure and range stay as they were before the control
    KiroResult (*runArbitration)(IKIROCoreAlgo* pAlgo, KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput);

    /// Moves the exposures of the frame before towards the targets. Without an entry in one of the banks
    /// BankIDConvBase, BankIDConvStretch and BankIDConvSettle they stay where they are, unless a lock, an EV or a
    /// skipped frame fixes them.
    /// @param rInput long ADRC writes into it
    /// @param rOutput all members are written but bIfConvProcRun, which must be 0 and is set to 1 where speeds applied
    /// @return 0; ResultFailed if pRange is null or the history has no frame, not even a start-up frame: of the output
    ///         convergedShortBlend alone is written then, and the exposures of the frame before stand
    KiroResult (*RunConvProcess)(IKIROCoreAlgo* pAlgo, KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput);

    /// Decides whether convergence counts as done, and sets the two flags; the next RunConvProcess rests by the same
    /// decision, not by the host's flags. Behind HandleExposureConstraints. Without the tuning of convergence the flags
    /// stay as they are.
    VOID (*RunConvSettle)(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput);

    /// Publishes DRC, ADRC and dark boost gain as triggers, and sets the event AECSettled to bSettle, which the host
    /// may have changed; once settled, clears AECEVChange and AECTorchChange and rebases the active detector if its
    /// hold has ended. Last of the convergence stages.
    VOID (*RunConvPostProcess)(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput);

    /// In HDR of three exposures in one frame (SensorHDR), puts safe between short and long by the tuned ratio, halfway
    /// in the log domain without the module kirohdrsensor. Does nothing in any other mode. Behind
    /// followMasterConvExposure.
    VOID (*HandleExposureConstraints)(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput);

    /// Destroys the instance. The table's memory stays allocated and must not be called through again; what the
    /// instance owned (bank slots, calibration arrays, its AECMultiCamInfo) is gone.
    VOID (*DestroyInstance)(IKIROCoreAlgo* pAlgo);

    /// Makes data ID 0 of a tuned bank stand for another entry than the context selects, for all who read it and over
    /// changes of tuning, until it is reset. A value bank ignores it.
    /// @param dataID 0 resets as well. An entry need not exist yet: as long as it does not, data ID 0 is not found
    /// @return 0; ResultNotFound for an unknown bank
    KiroResult (*setDynamicBankData)(IKIROCoreAlgo* pAlgo, KIRODynamicDataOperationType operation,
                                     KIROBankIDType bankID, INT32 dataID);

    /// @return the context status: bit n is set while the event n of KIROTunaraEventType is
    UINT64 (*GetContextStatus)(IKIROCoreAlgo* pAlgo);

    /// Sets an event of the context status with a value of 1, and clears it with any other. Reaches the data banks as a
    /// setting does (setInput). Settings move their own events (kirosetinput.h); stages move AECTorch, AECTorchChange,
    /// AECDepth, AECEVChange and AECSettled; a tuning moves AECHybridHDR. All others are the host's alone: AECDefault,
    /// AECHDRTypeSHDR3, AECFace, AECT2T, AECFirstConvergingAfterEvent, AECEVBracketing and AECCustomContext1 to 10; so
    /// is the setting of AECLock.
    VOID (*SetContextEvent)(IKIROCoreAlgo* pAlgo, KIROTunaraEventType contextEvent, BOOL value);

    /// @return 1 if the event is set, otherwise 0
    BOOL (*GetContextEvent)(IKIROCoreAlgo* pAlgo, KIROTunaraEventType contextEvent);

    /// Lets vector processors take samples from their tuned input and publish the filtered value. Gyro: behind a
    /// setBankData with the samples, before the frame that they belong to. Default: runMeteringPreprocess runs these by
    /// itself, with one sample for each metered frame.
    /// @param sampleCount new samples, newest first; 300 are taken at most, 0 does nothing
    VOID(*run1DVectorProcess)
    (IKIROCoreAlgo* pAlgo, kiroglobalelements::VectorProcessorUsageType type, UINT32 sampleCount);

    /// Makes the vector processors forget their samples; what they have published stays. Before their first run there
    /// are none, which is logged.
    VOID (*reset1DVectorProcessors)(IKIROCoreAlgo* pAlgo, kiroglobalelements::VectorProcessorUsageType type);

    /// With 1, holds the targets at those of the last preview frame from the next runMeteringPostprocess on, except for
    /// a flash snapshot; any other value ends it.
    VOID (*SetMeteringLock)(IKIROCoreAlgo* pAlgo, const BOOL bLock);

    /// Takes the present value of its trigger, or the tuned one, for the baseline of a scene change detector and brings
    /// it back to rest. Nothing happens for an ID that the tuning does not have, or a detector that is off.
    /// @param id as tuned; of detectors with one ID the last
    VOID (*RebaseSCD)(IKIROCoreAlgo* pAlgo, const UINT32 id);

    /// Reads the states of a scene change detector as its last run or rebase left them.
    /// @param id as tuned; of detectors with one ID the last
    /// @return 1; 0 with the output as it was for an ID that the tuning does not have
    BOOL (*GetSCDOutput)(IKIROCoreAlgo* pAlgo, const UINT32 id, KIROSCDOutput& rSCDOutput);

    /// Stores what inline calibration has learned, for AECAlgoSetParamFlashInlineCalibrationData of a later session;
    /// kirofic.h has the layout.
    /// @param pFICData room for the blob; null only asks for its size, which a frame may raise
    /// @return size of the blob in bytes
    UINT32 (*GetFICData)(IKIROCoreAlgo* pAlgo, VOID* pFICData);
};

/// The functions of the table by name, in its order: what goes over all of them is made of this list. FUNCTION(name) is
/// put down for each; those behind createDataXml are the operations of an instance.
// clang-format off
#define KIRO_CORE_FUNCTIONS(FUNCTION) FUNCTION(createDataXml) KIRO_CORE_OPERATIONS(FUNCTION)
#define KIRO_CORE_OPERATIONS(FUNCTION)                                                                                \
    FUNCTION(runStartOfFrame) FUNCTION(runMeteringPreprocess) FUNCTION(runAnalyzer) FUNCTION(updateAnalyzerMgrOut)    \
    FUNCTION(runMeteringPostprocess) FUNCTION(mixMetering) FUNCTION(runExtension) FUNCTION(runEndOfFrame)             \
    FUNCTION(followMasterConvExposure) FUNCTION(getBankData) FUNCTION(setInput) FUNCTION(setStats)                    \
    FUNCTION(setBankData) FUNCTION(GetFlashMaxCurrent) FUNCTION(GetFlashCalibInfo) FUNCTION(getFlashCurrent)          \
    FUNCTION(isPreflashMeteringNeeded) FUNCTION(GetStartUpExposure) FUNCTION(queryMetaData) FUNCTION(runArbitration)  \
    FUNCTION(RunConvProcess) FUNCTION(RunConvSettle) FUNCTION(RunConvPostProcess)                                     \
    FUNCTION(HandleExposureConstraints) FUNCTION(DestroyInstance) FUNCTION(setDynamicBankData)                        \
    FUNCTION(GetContextStatus) FUNCTION(SetContextEvent) FUNCTION(GetContextEvent) FUNCTION(run1DVectorProcess)       \
    FUNCTION(reset1DVectorProcessors) FUNCTION(SetMeteringLock) FUNCTION(RebaseSCD) FUNCTION(GetSCDOutput)            \
    FUNCTION(GetFICData)
// clang-format on

#define KIRO_COUNT_FUNCTION(name) +1
static_assert(sizeof(IKIROCoreAlgo) == sizeof(IKIROCore*) + sizeof(VOID*) * (KIRO_CORE_FUNCTIONS(KIRO_COUNT_FUNCTION)),
              "a function of the table is not in the list");
#undef KIRO_COUNT_FUNCTION

/// What a create parameter is. The core reads the logger's alone.
enum AECAlgoCreateParamsType : INT32
{
    AECAlgoCreateParamsInvalid                = -1,         ///< ignored
    AECAlgoCreateParamsLoggerFunctionPtr      = 0,          ///< a StatsLogger, itself in pCreateParam
    AECAlgoCreateParamTypeSessionHandle       = 1,          ///< ignored
    AECAlgoCreateParamTypeCameraOpenIndicator = 2,          ///< ignored
    AECAlgoCreateParamTypeCameraInfo          = 3,          ///< ignored
    AECCreateParamsTypeTuningData             = 4,          ///< ignored; the tuning is an argument of its own
    AECAlgoCreateParamTypeCount               = 5,          ///< ignored
    AECAlgoCreateParamsMax                    = 2147483647  ///< ignored
};

/// One create parameter, the host's; needed for the call alone.
struct AECAlgoCreateParam
{
    VOID*                   pCreateParam;       ///< of the logger: the function's address; null is ignored
    UINT32                  sizeOfCreateParam;  ///< bytes; a logger of less than 8 is ignored
    AECAlgoCreateParamsType createParamType;    ///< what pCreateParam holds
};

/// Create parameters. The logger must stand first and be present: whichever entry says that it is one, the address of
/// the first entry is taken.
struct AECAlgoCreateParamList
{
    AECAlgoCreateParam* pCreateParamList;      ///< null counts as an empty list
    UINT32              numberOfCreateParams;  ///< entries of the list
};

/// The host's logging function. Called on the threads of all instances, also during creation; it must be callable until
/// the last instance is gone.
/// @param pFileName     of the source, without folders; as all texts, valid during the call
/// @param group         2 at all times
/// @param level         2 errors, 4 warnings, 16 rare information, 32 trace. All come that gStatsLogLevels allows: the
///                      host filters
/// @param pFormat       as of printf
typedef VOID (*StatsLogger)(const CHAR* pFileName, INT32 line, const CHAR* pFunctionName, UINT32 group, UINT32 level,
                            const CHAR* pFormat, ...);

/// The logger of all instances of the process. Taken from the create parameters, by every creation that has one; null
/// until the first. The library writes it and calls it without a test.
extern "C" TAVO_VISIBLE StatsLogger gStatsLogger;

/// The levels of which the host takes lines, a bit each, numbered as the logger has them; all bits to begin with. The
/// host's, for all instances of the process: it writes while no instance is in a call, or atomically. Lines of other
/// levels are not put together: without trace a frame takes a tenth less.
extern "C" TAVO_VISIBLE UINT32 gStatsLogLevels;

/// The one entry point of the library. Makes an instance with its table; settings stand at their defaults
/// (SetInputData), and of the context status AECHybridHDR alone may be set.
/// @param rTuningData      copied; pTuningSetManager is not null. Store and selectors stay the host's and outlive the
///                         instance
/// @param rDebugData       kept by reference until the instance is gone
/// @param rCreateParamList with the logger first. A list without one keeps the logger of an earlier creation; if there
///                         was none, the first line of the log calls null
/// @param rpCore           receives the table, null on failure
/// @return 0, or ResultOutOfMemory (8) when no memory is left for the table. With no memory for the instance the result
///         is 0, and each function of the table answers as for a null instance; with none for one of its modules, which
///         the log tells ("AEC module instantiation failure!"), the instance can only be destroyed
/// @throws std::bad_alloc when no memory is left for history, banks or statistics; rpCore stays as it was
extern "C" TAVO_VISIBLE MNKResult CreateKiroCoreAlgo(StatsTuningData& rTuningData, IKIRODebugData& rDebugData,
                                                     const AECAlgoCreateParamList& rCreateParamList,
                                                     IKIROCoreAlgo*&               rpCore);
