/// @file
/// Tuning module kiroflash: LED mixes and their calibration, and metering under the preflash.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroflash
{

/// One mix of the two LEDs, with the colour and light that it gives.
struct LEDMixType
{
    INT32 LED1Setting;  ///< mA, from 0
    INT32 LED2Setting;  ///< mA, from 0
    float RGRatio;      ///< red over green
    float BGRatio;      ///< blue over green
    float flux;         ///< relative light output
};
TUNING_RECORD(LEDMixType)
    MEMBER(LED1Setting)
    MEMBER(LED2Setting)
    MEMBER(RGRatio)
    MEMBER(BGRatio)
    MEMBER(flux)
TUNING_RECORD_END

/// One mix that the factory measures.
struct KIROLEDMixCalibType
{
    INT32        indexMix;         ///< column of the table, from 0
    INT32        indexPower;       ///< row of the table, from 0
    BOOL         enableScreening;  ///< refuse a module outside the two ranges
    StartEndType RGOKRange;        ///< red over green
    StartEndType BGOKRange;        ///< blue over green
    UINT64       fixedExposure;    ///< exposure of the measurement, gain times ns
};
TUNING_RECORD(KIROLEDMixCalibType)
    MEMBER(indexMix)
    MEMBER(indexPower)
    BOOLEAN(enableScreening)
    MEMBER(RGOKRange)
    MEMBER(BGOKRange)
    MEMBER(fixedExposure)
TUNING_RECORD_END

/// How the mixes are measured.
struct KIROLEDMeasurementType
{
    UINT32       framesToSkip;     ///< frames from a change of current to the first sample
    UINT32       framesToAverage;  ///< samples per mix, at least 1
    StartEndType lumaOKRange;      ///< luma of a valid sample
};
TUNING_RECORD(KIROLEDMeasurementType)
    MEMBER(framesToSkip)
    MEMBER(framesToAverage)
    MEMBER(lumaOKRange)
TUNING_RECORD_END

/// The mixes, in rows of equal total power and columns of mixes.
struct LEDMatchTableType
{
    BOOL                   enableDerating;
    float                  dualLEDIntersectSlope;  ///< slope along which a colour meets the line of mixes
    INT32                  countPower;             ///< rows in ascending power; the order of the first six is checked
    INT32                  countMix;               ///< columns, 1 to 16
    KIROLEDMeasurementType LEDMeasConfig;
    UINT32                 tableCount;             ///< countPower * countMix, at most 96
    UINT32                 tableID;
    LEDMixType*            table;                  ///< mix m of power p stands at p * countMix + m
    UINT32                 tableCalibrationCount;  ///< at most 96
    UINT32                 tableCalibrationID;
    KIROLEDMixCalibType*   tableCalibration;
};
TUNING_RECORD(LEDMatchTableType)
    BOOLEAN(enableDerating)
    MEMBER(dualLEDIntersectSlope)
    MEMBER(countPower)
    MEMBER(countMix)
    MEMBER(LEDMeasConfig)
    VARIABLE(table)
    VARIABLE(tableCalibration)
TUNING_RECORD_END

/// When the preflash starts and when it is done.
struct PreflashEnterExitType
{
    StartEndType enterLuxTrigger;  ///< lux index: on above end, off below start
    UINT32       minFrameNum;      ///< frames that the preflash lasts at least
    UINT32       maxFrameNum;      ///< frames after which it ends, settled or not
};
TUNING_RECORD(PreflashEnterExitType)
    MEMBER(enterLuxTrigger)
    MEMBER(minFrameNum)
    MEMBER(maxFrameNum)
TUNING_RECORD_END

/// Limits of a statistics channel, on the channel's scale.
struct PreflashYThresholds
{
    CHAR* statsNameOff;         ///< channel without LED
    CHAR* statsNameLow;         ///< channel with LED
    float absoluteThreshold;    ///< a region above it is bright without LED
    float differenceThreshold;  ///< added to it, the limit of a region with LED
};
TUNING_RECORD(PreflashYThresholds)
    MEMBER(statsNameOff)
    MEMBER(statsNameLow)
    MEMBER(absoluteThreshold)
    MEMBER(differenceThreshold)
TUNING_RECORD_END

/// When metering under the preflash can stop: once no region is above its limits that was not bright before.
struct FlashStatsPreprocessingType
{
    PreflashYThresholds stopMeteringYLevel;
    PreflashYThresholds stopMeteringYSaturation;
};
TUNING_RECORD(FlashStatsPreprocessingType)
    MEMBER(stopMeteringYLevel)
    MEMBER(stopMeteringYSaturation)
TUNING_RECORD_END

/// EV compensation under the preflash.
struct PreflashEvControlType
{
    BOOL enable;
};
TUNING_RECORD(PreflashEvControlType)
    BOOLEAN(enable)
TUNING_RECORD_END

/// First and last tuned mix of a zone.
struct triggerPointType
{
    float start;  ///< index of a mix
    float end;    ///< index of a mix
};
TUNING_RECORD(triggerPointType)
    MEMBER(start)
    MEMBER(end)
TUNING_RECORD_END

/// How far a sample of a zone is taken towards the estimate.
struct LEDInlineCalibTargetDataType
{
    float distancePCT;    ///< share of the distance, 0 to 1
    float angleShiftPCT;  ///< share of the shift off the line of the estimate, 0 to 1
};
TUNING_RECORD(LEDInlineCalibTargetDataType)
    MEMBER(distancePCT)
    MEMBER(angleShiftPCT)
TUNING_RECORD_END

/// One zone of mixes.
struct LEDInlineCalibTargetType
{
    triggerPointType             zoneTrigger;
    LEDInlineCalibTargetDataType zoneData;
};
TUNING_RECORD(LEDInlineCalibTargetType)
    MEMBER(zoneTrigger)
    MEMBER(zoneData)
TUNING_RECORD_END

/// Learning the colour of the LEDs from captures. Colours are red over green and blue over green.
struct LEDInlineCalibType
{
    float                     triggerIndex;               ///< lux index from which a capture is a sample
    float                     refRange;                   ///< distance from neutral of a reference cell
    float                     refRegionPCT;               ///< central part of the frame, per side, 0 to 1
    INT32                     validRefCount;              ///< least reference cells
    float                     distanceRatioMin;           ///< least measured over estimated influence
    float                     distanceRatioMax;           ///< largest measured over estimated influence
    float                     angleShiftMax;              ///< largest distance from the estimate
    INT32                     minKneeCnt;                 ///< least samples of a knee
    INT32                     maxZoneCnt;                 ///< most samples kept per zone
    float                     confidencePctThr;           ///< share of samples that must agree, 0 to 1
    INT32                     numOfFactoringRegions;      ///< parts of the span of a knee's samples, 3 to 20
    UINT32                    LEDInlineCalibTargetCount;  ///< at most 16
    UINT32                    LEDInlineCalibTargetID;
    LEDInlineCalibTargetType* LEDInlineCalibTarget;
};
TUNING_RECORD(LEDInlineCalibType)
    MEMBER(triggerIndex)
    MEMBER(refRange)
    MEMBER(refRegionPCT)
    MEMBER(validRefCount)
    MEMBER(distanceRatioMin)
    MEMBER(distanceRatioMax)
    MEMBER(angleShiftMax)
    MEMBER(minKneeCnt)
    MEMBER(maxZoneCnt)
    MEMBER(confidencePctThr)
    MEMBER(numOfFactoringRegions)
    VARIABLE(LEDInlineCalibTarget)
TUNING_RECORD_END

/// The module.
struct KIROFlashType
{
    UINT32                      SymbolTableID;
    module_versionStruct        module_version;
    parameter_versionStruct     parameter_version;
    LEDMatchTableType           LEDMatching;
    PreflashEnterExitType       preflashEnterExit;
    FlashStatsPreprocessingType preflashStatsPreProcessing;
    PreflashEvControlType       preflashEvControl;
    LEDInlineCalibType          LEDInlineCalibration;
};
TUNING_RECORD(KIROFlashType)
    MODULE_HEADER
    MEMBER(LEDMatching)
    MEMBER(preflashEnterExit)
    MEMBER(preflashStatsPreProcessing)
    MEMBER(preflashEvControl)
    MEMBER(LEDInlineCalibration)
TUNING_RECORD_END

} // namespace kiroflash
