/// @file
/// Names and meanings of the enumerations that host, tuning data and core share.
#pragma once

#include "schema/kiroenums.h"
#include "schema/tuningrecord.h"

TUNING_ENUM(KIROExposureSelection)
    ENUMERATOR(ExposureShort, "The short exposure, which keeps highlights: at most safe.")
    ENUMERATOR(ExposureSafe, "The safe exposure, the picture as metered.")
    ENUMERATOR(ExposureLong,
        "The long exposure, which lifts shadows: at least safe, unless the long compensation of multi-frame HDR takes "
        "it below.")
    ENUMERATOR(ExposureNone,
        "No exposure: an analyzer of this type decides none and serves its bank entries alone, and a list of "
        "arbitration controls for it is passed over. As a reference it counts as short in an analyzer, as safe for "
        "the exposure increase of a flash and for the base of a bracket, and as long for a lux index, in the "
        "precision flash and for a reference of arbitration.")
TUNING_ENUM_END

TUNING_ENUM(KIROBankIDType)
    ENUMERATOR(BankIDROITable,
        "Regions of the frame, and boxes of the colour plane; read as a number, the weight of the entry, which "
        "convergence and detectors do not take.")
    ENUMERATOR(BankIDMetering2D,
        "Weight tables of 16 x 16 cells: tuned ones, maps from the host, and what processors and generators make of "
        "them.")
    ENUMERATOR(BankIDMetering1D,
        "Tables of 1025 numbers: weights of histogram bins, and samples from the host for vector processors.")
    ENUMERATOR(BankIDSceneAnalyzer,
        "1000 pairs that analyzers publish: luma, target, confidence and what their operators yield. Read as a "
        "number, the start of the pair.")
    ENUMERATOR(BankIDStatsCalculator, "1000 numbers that calculators and vector processors publish.")
    ENUMERATOR(BankIDArbitrationTable, "Exposure tables: how an exposure is split into gain and time.")
    ENUMERATOR(BankIDArbitrationOrder, "Lists of the controls that narrow gain and time, for each exposure in order.")
    ENUMERATOR(BankIDArbitrationLUT, "Look-up tables of gain or time over two keys, flicker grids among them.")
    ENUMERATOR(BankIDArbitrationRange, "Ranges of gain and time that controls keep to.")
    ENUMERATOR(BankIDTriggers,
        "1000 numbers that drive trees: 0 to 66 have fixed meanings, 67 to 999 are free, but for one that the short "
        "blend writes in each frame, 100 unless it is tuned otherwise.")
    ENUMERATOR(BankIDActiveAnalyzers,
        "Lists of the analyzers that run, the later one deciding where two are for the same exposure.")
    ENUMERATOR(BankIDConvBase, "Sets of convergence speeds.")
    ENUMERATOR(BankIDConvStretch, "Sets of target stretches.")
    ENUMERATOR(BankIDConvSettle, "Sets of conditions under which the exposure counts as settled.")
    ENUMERATOR(BankIDConvActiveSCD, "Which scene change detector convergence heeds.")
    ENUMERATOR(BankIDActiveCalculators, "Lists of the calculators that run besides the four fixed ones.")
    ENUMERATOR(BankIDSnapshot, "Sets of snapshot and bracket settings, for the host.")
    ENUMERATOR(BankIDMax, "Number of banks; no bank, and refused wherever one is asked for.")
    ENUMERATOR(BankIDInvalid,
        "No bank: as the output of a component it switches the component off, as what drives a tree of an analyzer it "
        "stands for 0. Elsewhere it is refused, and a number read from it is 0.")
TUNING_ENUM_END

TUNING_ENUM(KIROTunaraEventType)
    ENUMERATOR(AECDefault,
        "Alone in a list it counts in every context; beside other events it must be set itself. The host alone sets "
        "and clears it.")
    ENUMERATOR(AECOpInit, "Set by the operation mode Init, cleared by a change to another mode.")
    ENUMERATOR(AECOpStreaming, "Set by the operation mode Streaming, cleared by a change to another mode.")
    ENUMERATOR(AECOpPreflash, "Set by the operation mode Preflash, cleared by a change to another mode.")
    ENUMERATOR(AECOpFastAEC, "Set by the operation mode FastAEC, cleared by a change to another mode.")
    ENUMERATOR(AECOpAggressiveAEC, "Set by the operation mode AggressiveAEC, cleared by a change to another mode.")
    ENUMERATOR(AECOpFlashTuning,
        "Set by the operation mode FlashMeasurement unless the kind of measurement is Calib, and by the kind Tuning; "
        "cleared by another mode or kind.")
    ENUMERATOR(AECOpFlashCalibration,
        "Set by the kind of flash measurement Calib, with the operation mode FlashMeasurement or when the kind is "
        "set; cleared by another mode or kind. While it is set, targets are taken over at once.")
    ENUMERATOR(AECHDRTypeDisabled, "Set by the HDR type HDRDisabled, cleared by a change to another type.")
    ENUMERATOR(AECHDRTypeISPHDR, "Set by the HDR type ISPHDR, cleared by a change to another type.")
    ENUMERATOR(AECHDRTypeSensorHDR,
        "Set by the HDR type SensorHDR: three exposures within one frame, cleared by a change to another type.")
    ENUMERATOR(AECHDRTypeSHDR2,
        "Set by the HDR type StaggeredHDR: exposures that follow one another line by line, cleared by a change to "
        "another type. Frames taken under it count as HDR for the next start.")
    ENUMERATOR(AECHDRTypeSHDR3, "Set by the host alone; cleared by any setting of the HDR type.")
    ENUMERATOR(AECHDRTypeMFHDR,
        "Set by the HDR type MultiframeHDR; once set it stays, whatever the type, until the host clears it. Frames "
        "taken under it count as HDR for the next start.")
    ENUMERATOR(AECManualISO,
        "Set by manual ISO or manual gain, cleared by any other manual setting; an AEC lock sets it as well, and the "
        "end of the lock leaves it set.")
    ENUMERATOR(AECManualTime, "Set by manual exposure time, cleared by any other manual setting.")
    ENUMERATOR(AECManualFull,
        "Set by full manual mode, cleared by any other manual setting. While it is set, targets are taken over at "
        "once.")
    ENUMERATOR(AECLock,
        "Set by the host alone, as a lock sets AECManualISO in its place; cleared by the host and by an AEC lock that "
        "is off.")
    ENUMERATOR(AECTouch, "Set by a touch with at least one region, cleared by one without.")
    ENUMERATOR(AECFace, "The host alone sets and clears it. Meant for faces in the picture.")
    ENUMERATOR(AECT2T, "The host alone sets and clears it.")
    ENUMERATOR(AECSaliency, "Set by saliency data whose map has a width and a height, cleared by data without.")
    ENUMERATOR(AECDepth, "Follows the statistics of each frame: set while they say that depth data are in use.")
    ENUMERATOR(AECEV, "Set by an EV compensation other than 0, cleared by 0.")
    ENUMERATOR(AECEVChange,
        "Set in the frame in which convergence meets a new EV compensation, cleared once the exposure has settled; "
        "the host may move it, too.")
    ENUMERATOR(AECFirstConvergingAfterEvent, "The host alone sets and clears it.")
    ENUMERATOR(AECCoreSnapshotNormal,
        "Set by a snapshot of the kind Normal, cleared by the next snapshot setting, None included. While it is set, "
        "frames are kept apart from the preview and no detector runs at their end.")
    ENUMERATOR(AECCoreSnapshotLLS,
        "Set by a snapshot of the kind LLS, low light, cleared by the next snapshot setting, None included. While it "
        "is set, frames are kept apart from the preview and no detector runs at their end.")
    ENUMERATOR(AECCoreSnapshotFlash,
        "Set by a snapshot of the kind Flash, cleared by the next snapshot setting, None included. While it is set, "
        "frames are kept apart from the preview and no detector runs at their end.")
    ENUMERATOR(AECCoreSnapshotHDR3,
        "Set by a snapshot of the kind HDR3, cleared by the next snapshot setting, None included. While it is set, "
        "frames are kept apart from the preview, snapshot frames are metered, and targets are taken over at once.")
    ENUMERATOR(AECCoreSnapshotPrecisionFlash,
        "Set by a snapshot of the kind PrecisionFlash, cleared by the next snapshot setting, None included. While it "
        "is set, frames are kept apart from the preview and no detector runs at their end.")
    ENUMERATOR(AECCoreSnapshotZLL,
        "Set by a snapshot of the kind ZLL, cleared by the next snapshot setting, None included. While it is set, "
        "frames are kept apart from the preview and no detector runs at their end.")
    ENUMERATOR(AECCoreSnapshotAdvanced,
        "Set by a snapshot of the kind AdvancedSnapshot, cleared by the next snapshot setting, None included. While "
        "it is set, frames are kept apart from the preview and no detector runs at their end.")
    ENUMERATOR(AECTorch, "Follows the statistics of each frame: set while they say that the LED burns as a torch.")
    ENUMERATOR(AECTorchChange,
        "Set in the frame in which AECTorch changes, cleared once the exposure has settled, or by the host.")
    ENUMERATOR(AECSettled,
        "Follows convergence at its end in each frame: set while all three exposures are settled, or the host says "
        "so. Detectors begin to watch once it has been set.")
    ENUMERATOR(AECSlaveRole,
        "Set by camera information with the role of a slave, cleared by that with any other; as it goes, convergence "
        "can hold the exposure of the camera that was followed.")
    ENUMERATOR(AECEVBracketing,
        "The host alone sets and clears it. While it is set, the bracket lock may hold the targets, and references "
        "for brackets apply.")
    ENUMERATOR(AECHybridHDR,
        "Follows the tuning: set while enableHybridHDR of kirohdrsensor is on, as of the last time that a tuning was "
        "handed over.")
    ENUMERATOR(AECCustomContext1,
        "The host alone sets and clears it. Where the parameter AECExtParamFlickerControl is tuned, metering goes by "
        "antibanding only while it is set or the parameter always allows it.")
    ENUMERATOR(AECCustomContext2, "Free for the tuning. The host alone sets and clears it.")
    ENUMERATOR(AECCustomContext3, "Free for the tuning. The host alone sets and clears it.")
    ENUMERATOR(AECCustomContext4, "Free for the tuning. The host alone sets and clears it.")
    ENUMERATOR(AECCustomContext5, "Free for the tuning. The host alone sets and clears it.")
    ENUMERATOR(AECCustomContext6, "Free for the tuning. The host alone sets and clears it.")
    ENUMERATOR(AECCustomContext7, "Free for the tuning. The host alone sets and clears it.")
    ENUMERATOR(AECCustomContext8, "Free for the tuning. The host alone sets and clears it.")
    ENUMERATOR(AECCustomContext9, "Free for the tuning. The host alone sets and clears it.")
    ENUMERATOR(AECCustomContext10, "Free for the tuning. The host alone sets and clears it.")
TUNING_ENUM_END

TUNING_ENUM(KIROTriggerType)
    ENUMERATOR(TriggerCtrlNone,
        "No quantity: nothing is published here, so that it reads 0, and trees of analyzers take 0 for it without "
        "reading.")
    ENUMERATOR(TriggerCtrlPrev,
        "Safe exposure of the previous frame, as the logarithm of gain times ns to the base 1.03. Published before "
        "convergence.",
        Unit::LogStep)
    ENUMERATOR(TriggerCtrlTarget,
        "Safe target of the frame, without the user's EV, as the logarithm of gain times ns to the base 1.03. "
        "Published before convergence.",
        Unit::LogStep)
    ENUMERATOR(TriggerCtrlTgtMatchDelta,
        "Safe target, without the user's EV, less the safe exposure that the statistics were taken with, which has "
        "that EV in it: above 0 the picture is darker than EV 0 asks for. Published before convergence.",
        Unit::LogStep)
    ENUMERATOR(TriggerCtrlTgtPrevDelta,
        "Distance without sign of the safe target, without the user's EV, from the previous safe exposure, which has "
        "that EV in it: a settled picture at EV +1 is 23.4 steps away. Published before convergence.",
        Unit::LogStep)
    ENUMERATOR(TriggerCtrlDarkRatio,
        "Second result of the dark ratio calculator, as a rule the share of samples that are nearly black. Published "
        "by the lux analyzer in each metered frame.",
        Unit::Share)
    ENUMERATOR(TriggerCtrlSatRatio,
        "Second result of the bright ratio calculator, as a rule the share of samples that are nearly clipped. "
        "Published by the lux analyzer in each metered frame.",
        Unit::Share)
    ENUMERATOR(TriggerCtrlDirection,
        "1 if the safe target, without the user's EV, lies above the safe exposure that the statistics were taken "
        "with, otherwise 0. Published before convergence.")
    ENUMERATOR(TriggerCtrlLux,
        "How dark the scene is, in steps of 3 percent of exposure, from 0; it rises in the dark. Published by the lux "
        "analyzer in each metered frame, filtered over time, and by the analyzer of the flash lux index; a skipped "
        "frame takes that of the previous one.",
        Unit::LuxIndex)
    ENUMERATOR(TriggerCtrlFPS,
        "Frame rate that arbitration has found for the short exposure. Published after arbitration, so that earlier "
        "stages see that of the previous frame.",
        Unit::FramesPerSecond)
    ENUMERATOR(TriggerCtrlExpTime,
        "Exposure time of the short exposure after arbitration; earlier stages see that of the previous frame.",
        Unit::Nanoseconds)
    ENUMERATOR(TriggerCtrlGain,
        "Gain of the short exposure after arbitration; earlier stages see that of the previous frame.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrlSensitivity,
        "Short exposure after arbitration, gain times ns; earlier stages see that of the previous frame.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlLuma,
        "Luma that the lux analyzer has found in the frame; the average luma of the frame history.",
        Unit::Luma)
    ENUMERATOR(TriggerCtrlGyro,
        "Shake of the hand, in rad/s if the samples are, as the vector processor of the gyro or the host publishes "
        "it; above 0 it limits the time of a precision flash.",
        Unit::RadPerSecond)
    ENUMERATOR(TriggerCtrlDistance,
        "Distance of the object, in the host's unit, as the host publishes it; the core only logs it.",
        Unit::Varies)
    ENUMERATOR(TriggerFlashFlux,
        "Light of the main flash over that of the low LED. The host publishes it before a flash picture; the "
        "prediction of the flash goes by it.",
        Unit::Factor)
    ENUMERATOR(TriggerFlashExpIncrease,
        "Exposure without LED over that under the low LED, at least 1, of the exposure that the lux analyzer refers "
        "to. Published when the host asks for the high current and has the frame under the low LED kept.",
        Unit::Factor)
    ENUMERATOR(TriggerFlashInfluence,
        "How many times brighter the low LED makes the picture, at least 1; 1 outside the preflash. Published by the "
        "lux analyzer in each metered frame.",
        Unit::Factor)
    ENUMERATOR(TriggerSCDExternal1,
        "Free for a value of the host, in its own unit, that a scene change detector is to watch; no stage publishes "
        "it.",
        Unit::Varies)
    ENUMERATOR(TriggerSCDExternal2,
        "Free for a second value of the host, in its own unit, that a scene change detector is to watch; no stage "
        "publishes it.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlAWBRedGain,
        "Free for the host, by its name for the red gain of the white balance; no stage publishes or reads it by "
        "itself.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrlAWBGreenGain,
        "Free for the host, by its name for the green gain of the white balance; no stage publishes or reads it by "
        "itself.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrlAWBBlueGain,
        "Free for the host, by its name for the blue gain of the white balance; no stage publishes or reads it by "
        "itself.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrlHDRDRCGain,
        "Converged long over short exposure, the predictive gain taken into short. Published at the end of "
        "convergence.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrlHDRADRCGain,
        "Converged safe over short exposure, the predictive gain taken into short: the ADRC gain. Published at the "
        "end of convergence.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrlHDRDarkBoostGain,
        "Converged long over safe exposure: the dark boost gain. Published at the end of convergence.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrlAmbientRaw,
        "Free for the host, by its name for the raw reading of a light sensor, in the host's unit; no stage publishes "
        "or reads it by itself.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlShortExp,
        "Short exposure that the statistics were taken with, gain times ns. Published in each metered frame before "
        "the calculators.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlLongExp,
        "Long exposure that the statistics were taken with, gain times ns. Published in each metered frame before the "
        "calculators.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlSafeExp,
        "Safe exposure that the statistics were taken with, gain times ns. Published in each metered frame before the "
        "calculators.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlShortTgt,
        "Short target that metering has decided, gain times ns, without the user's EV and before targets are mixed "
        "with those of another camera. Published in every frame.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlLongTgt,
        "Long target that metering has decided, gain times ns, without the user's EV and before targets are mixed "
        "with those of another camera. Published in every frame.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlSafeTgt,
        "Safe target that metering has decided, gain times ns, without the user's EV and before targets are mixed "
        "with those of another camera. Published in every frame.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlFlashBackGrdPct,
        "Share of the background in a flash picture that suits a precision flash, in percent. Nothing publishes it "
        "under this name: the table generator does if BackGrdPctDataID is 34.",
        Unit::Percent)
    ENUMERATOR(TriggerCtrlSaliencyValue,
        "Saliency of the object, in the host's unit, as the host publishes it; the core only logs it.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlShortExpFLow,
        "Short exposure of the frame under the low LED, gain times ns. Published in a flash snapshot before the "
        "calculators.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlLongExpFLow,
        "Long exposure of the frame under the low LED, gain times ns. Published in a flash snapshot before the "
        "calculators.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlSafeExpFLow,
        "Safe exposure of the frame under the low LED, gain times ns. Published in a flash snapshot before the "
        "calculators.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlFlashForeGrdPct,
        "Free for the host, by its name for the share of the foreground under flash; no stage publishes or reads it "
        "by itself.",
        Unit::Percent)
    ENUMERATOR(TriggerCtrlPrecisionFlashDelay,
        "Delay of the LED in a precision flash. Each run of the precision flash solver adds its tuned delay once "
        "more, so that the host publishes 0 before.",
        Unit::Milliseconds)
    ENUMERATOR(TriggerCtrlPrecisionFlashMinTime,
        "Shortest time that the LED can burn in a precision flash, as tuned. Published by the precision flash solver.",
        Unit::Milliseconds)
    ENUMERATOR(TriggerCtrlPrecisionFlashMaxExpTimeMs,
        "Longest exposure time of a precision flash, after the limit by the gyro. Published by the precision flash "
        "solver.",
        Unit::Milliseconds)
    ENUMERATOR(TriggerCtrlPrecisionFlashE1,
        "Part of a precision flash exposure that the LED lights, gain times ns; 0 without a split. Published by the "
        "precision flash solver.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlPrecisionFlashE2,
        "Part of a precision flash exposure without LED, gain times ns; 0 without a split. Published by the precision "
        "flash solver.",
        Unit::GainTimesNs)
    ENUMERATOR(TriggerCtrlPrecisionFlashOk,
        "1 if the scene suits a precision flash. Published by the table generator in a flash snapshot, then by the "
        "precision flash solver, which takes it back where it finds no split or the plain flash will do.")
    ENUMERATOR(TriggerCtrlBracketEV,
        "EV of the picture of a bracket, in steps of which stepsPerEV make a stop. The host publishes it; the bracket "
        "lock writes the EV of the exposures that it holds back to it.",
        Unit::EVStep)
    ENUMERATOR(TriggerCtrlEVNegativeOverride,
        "Free for the host, by its name for the EV of the dark picture of a bracket; no stage publishes or reads it "
        "by itself.",
        Unit::EVStep)
    ENUMERATOR(TriggerCtrlEVPositiveOverride,
        "Free for the host, by its name for the EV of the bright picture of a bracket; no stage publishes or reads it "
        "by itself.",
        Unit::EVStep)
    ENUMERATOR(TriggerCtrlZLLExposure,
        "Free for the host, by its name for the exposure of a ZLL snapshot, in the host's unit; no stage publishes or "
        "reads it by itself.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlZLLADRC,
        "Free for the host, by its name for the ADRC gain of a ZLL snapshot; no stage publishes or reads it by "
        "itself.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrlZLLIsEnforced,
        "Free for the host, by its name for whether a ZLL snapshot is enforced; no stage publishes or reads it by "
        "itself.")
    ENUMERATOR(TriggerCtrlExposureRatioReflected,
        "Free for the host, by its name for the ratio of exposures that the statistics were taken with; no stage "
        "publishes or reads it by itself.",
        Unit::Factor)
    ENUMERATOR(TriggerCtrlExposureRatioTarget,
        "Free for the host, by its name for the ratio of exposures that is aimed at; no stage publishes or reads it "
        "by itself.",
        Unit::Factor)
    ENUMERATOR(TriggerCtrlADRCCap,
        "Most that the target of smooth ADRC may be in hybrid HDR while the sensor bins; without enableSmoothDRC of "
        "smoothADRC nothing reads it. The host publishes it; metering puts 3.0 in the place of a value below 1.",
        Unit::Gain)
    ENUMERATOR(TriggerCtrl3HDRBinning,
        "1 while the sensor is to bin its pixels in hybrid HDR. Published at the end of each frame; while it is 1, "
        "smooth ADRC keeps to TriggerCtrlADRCCap.")
    ENUMERATOR(TriggerFlashSatStatsRatio,
        "Share of regions that the main flash would take above lumaHighSatTh; 1 while flashBiasConf is off. Published "
        "by the table generator in a flash snapshot.",
        Unit::Share)
    ENUMERATOR(TriggerCtrlMagnetInfoX,
        "Free for the host, by its name for the x component of a magnetometer, in the host's unit; no stage publishes "
        "or reads it by itself.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlMagnetInfoY,
        "Free for the host, by its name for the y component of a magnetometer, in the host's unit; no stage publishes "
        "or reads it by itself.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlMagnetInfoZ,
        "Free for the host, by its name for the z component of a magnetometer, in the host's unit; no stage publishes "
        "or reads it by itself.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlPrecisionFlashInfluence,
        "Influence of a precision flash: TriggerFlashInfluence for the lit part and 1 for the other, weighted with "
        "the parts; without a split TriggerFlashInfluence. Published by the precision flash solver.",
        Unit::Factor)
    ENUMERATOR(TriggerCtrlPrecisionFlashHistoryL,
        "Free for the host, by its name for the history of precision flashes, low, in the host's unit; no stage "
        "publishes or reads it by itself.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlPrecisionFlashHistoryH,
        "Free for the host, by its name for the history of precision flashes, high, in the host's unit; no stage "
        "publishes or reads it by itself.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlAWBInfoFaceROI,
        "Free for the host, by its name for the face region that the white balance reports, in the host's unit; no "
        "stage publishes or reads it by itself.",
        Unit::Varies)
    ENUMERATOR(TriggerCtrlIsFlickerDetected,
        "Free for the host, by its name for whether flicker is detected; no stage publishes or reads it by itself.")
    ENUMERATOR(TriggerCtrlPreflashLuxIndex,
        "Lux index in the preflash, published by the lux analyzer in each metered frame of it. The short blend of HDR "
        "puts the fourth number of its parameter here when it loads its tuning, 0 if there is none.",
        Unit::LuxIndex)
    ENUMERATOR(TriggerCtrlFullflashLuxIndex,
        "Lux index of a flash snapshot, predicted for the main flash. Published by the analyzer of the flash lux "
        "index.",
        Unit::LuxIndex)
    ENUMERATOR(TriggerCtrlMax,
        "Number of triggers with a fixed meaning. From here to 999 they are free for the tuning, but for one that the "
        "short blend writes in each frame, 100 unless it is tuned otherwise.")
TUNING_ENUM_END
