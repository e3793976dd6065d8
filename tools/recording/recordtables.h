/// @file
/// The fields of the interface's records, one table per record: what a recording holds of each, and how a difference is
/// named. A static assertion checks that a table covers its record, so that a new field cannot be forgotten.
#pragma once

#include "interface/aecalgogetparam.h"
#include "interface/ikirocorealgo.h"
#include "interface/kiromulticam.h"
#include "interface/kirostartexposure.h"
#include "parameters/tuningmode.h"
#include "schema/tuningrecord.h"
#include "tools/recording/fieldwriter.h"

namespace recording
{

/// An enumeration without a table of names is a number.
template <typename Field> constexpr tuning::RecordMember DescribeField(const CHAR* pName, size_t offset)
{
    using Value = std::remove_extent_t<Field>;
    if constexpr (std::is_enum_v<Value> && !requires { TuningEnumOf(Value{}); })
    {
        using Number =
            std::conditional_t<std::is_array_v<Field>, INT32[std::extent_v<Field> + !std::is_array_v<Field>], INT32>;
        static_assert(sizeof(Value) == sizeof(INT32));
        return tuning::DescribeMember<Number>(pName, offset);
    }
    else
    {
        return tuning::DescribeMember<Field>(pName, offset);
    }
}

/// One value per exposure.
template <typename Field> constexpr tuning::RecordMember DescribePerExposure(const CHAR* pName, size_t offset)
{
    static_assert(std::extent_v<Field> == AECAlgoExposureCount);
    tuning::RecordMember member = DescribeField<Field>(pName, offset);
    member.pEnum                = &ExposureNames;
    return member;
}

/// An address: what it points to is recorded by the call, if at all.
template <typename Field> constexpr tuning::RecordMember DescribeAddress(const CHAR* pName, size_t offset)
{
    static_assert(std::is_pointer_v<std::remove_extent_t<Field>> || std::is_union_v<Field> || std::is_class_v<Field>);
    tuning::RecordMember member{};
    member.pName     = pName;
    member.type      = tuning::ValueType::UInt8;
    member.form      = tuning::Form::EntryID;
    member.count     = 1;
    member.offset    = static_cast<UINT32>(offset);
    member.valueSize = sizeof(Field);
    member.alignment = alignof(Field);
    return member;
}

}  // namespace recording

#define FIELD(field) recording::DescribeField<decltype(Record::field)>(#field, offsetof(Record, field)),
#define PER_EXPOSURE(field) recording::DescribePerExposure<decltype(Record::field)>(#field, offsetof(Record, field)),
#define BY_THE_CALL(field) recording::DescribeAddress<decltype(Record::field)>(#field, offsetof(Record, field)),

// clang-format off

/// A single number where a record is asked for.
struct RecordedNumber
{
    INT32 value;
};
TUNING_RECORD(RecordedNumber)
    FIELD(value)
TUNING_RECORD_END

struct RecordedByte
{
    UINT8 value;
};
TUNING_RECORD(RecordedByte)
    FIELD(value)
TUNING_RECORD_END

TUNING_RECORD(TuningMode)
    FIELD(mode)
    tuning::DescribeMember<UINT32>("subMode", offsetof(Record, subMode)),
TUNING_RECORD_END

// Settings.

TUNING_RECORD(AECAlgoManualSetting)
    FIELD(manualMode)
    FIELD(ISOValue)
    FIELD(exposureTime)
    FIELD(gain)
    FIELD(FNumber)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoFPSRange)
    FIELD(maximumFPS)
    FIELD(minimumFPS)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoROI)
    FIELD(x)
    FIELD(y)
    FIELD(dx)
    FIELD(dy)
    FIELD(weight)
TUNING_RECORD_END

TUNING_RECORD(StatsRectangle)
    FIELD(left)
    FIELD(top)
    FIELD(width)
    FIELD(height)
TUNING_RECORD_END

TUNING_RECORD(UnstabilizedROI)
    FIELD(id)
    FIELD(confidence)
    FIELD(rect)
TUNING_RECORD_END

TUNING_RECORD(UnstabilizedROIInformation)
    FIELD(requestId)
    FIELD(roiCount)
    FIELD(unstabilizedROI)
TUNING_RECORD_END

TUNING_RECORD(AWBFaceSAAdjustedROI)
    FIELD(bIsValid)
    FIELD(RGRatio)
    FIELD(BGRatio)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoWhiteBalanceState)
    FIELD(isAuto)
    FIELD(redGain)
    FIELD(greenGain)
    FIELD(blueGain)
    FIELD(CCT)
    FIELD(faceSAAdjustedROI)
TUNING_RECORD_END

TUNING_RECORD(StatsGyroInfo)
    FIELD(sampleCount)
    FIELD(frameRequest)
    FIELD(angularVelocityX)
    FIELD(angularVelocityY)
    FIELD(angularVelocityZ)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoOverrideSettingParam)
    FIELD(disableFPS)
    FIELD(disableFlicker)
    FIELD(disableFace)
    FIELD(disableTouch)
    FIELD(profile3A)
    FIELD(overrideLuma)
    FIELD(disableSpeckleDetection)
TUNING_RECORD_END

TUNING_RECORD(StatsSensorInfo)
    FIELD(pixelClockPerLine)
    FIELD(pixelClock)
    FIELD(currentMaxLineCount)
    FIELD(minGain)
    FIELD(maxGain)
    FIELD(fNumber)
    FIELD(sensorResWidth)
    FIELD(sensorResHeight)
    FIELD(rollingShutterSkew)
TUNING_RECORD_END

TUNING_RECORD(StatsCameraInfo)
    FIELD(algoRole)
    FIELD(cameraId)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoStartupIndices)
    FIELD(startUpIndices)
    FIELD(startMode)
    FIELD(startUpLuxIndex)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoSaliencyInfo)
    FIELD(requestID)
    FIELD(mapWidth)
    FIELD(mapHeight)
TUNING_RECORD_END

TUNING_RECORD(StatsLightInfo)
    FIELD(enabled)
    FIELD(lux)
TUNING_RECORD_END

TUNING_RECORD(StatsPeerInfoCombo)
    FIELD(needSync)
    FIELD(isActive)
    FIELD(cameraId)
    FIELD(algoRole)
    BY_THE_CALL(peerInfo)
TUNING_RECORD_END

/// The longer of the two layouts covers the other: both are numbers of four bytes or pairs of two.
TUNING_RECORD(AECAlgoDCCalibrationInfo)
    FIELD(version)
    tuning::DescribeMember<UINT32[6]>("values", offsetof(Record, u)),
TUNING_RECORD_END

TUNING_RECORD(KIROPrecisionFlashHistory)
    FIELD(sceneDetected)
    FIELD(previousReqID)
    FIELD(curReqID)
    FIELD(frameFPS)
    FIELD(hysteresis)
TUNING_RECORD_END

TUNING_RECORD(AECMultiCamMtrInfo)
    FIELD(luxIndex)
    PER_EXPOSURE(targetExposure)
TUNING_RECORD_END

TUNING_RECORD(AECMultiCamExpInfo)
    PER_EXPOSURE(origExp)
    PER_EXPOSURE(normExp)
    PER_EXPOSURE(normExp_wCCT)
    PER_EXPOSURE(exposureTime)
TUNING_RECORD_END

TUNING_RECORD(AECMultiCamInfo)
    FIELD(bSettle)
    FIELD(bBrightnessSettle)
    FIELD(statsFrameId)
    FIELD(cameraID)
    FIELD(meteringInfo)
    FIELD(exposureInfo)
    FIELD(CCT)
    FIELD(algoRole)
TUNING_RECORD_END

// Stages of a frame.

TUNING_RECORD(KIROExposureSetType)
    FIELD(gain)
    FIELD(time)
    FIELD(indx)
    FIELD(corr)
    FIELD(exposure)
    FIELD(ISO)
    FIELD(snapshotGain)
    FIELD(snapshotTime)
    FIELD(snapshotExposure)
TUNING_RECORD_END

TUNING_RECORD(KIROExposureRange)
    FIELD(start)
    FIELD(end)
TUNING_RECORD_END

TUNING_RECORD(KIROSensorRange)
    FIELD(minGain)
    FIELD(maxGain)
    FIELD(minTime)
    FIELD(maxTime)
TUNING_RECORD_END

TUNING_RECORD(KIROArbitratedLimits)
    PER_EXPOSURE(ranges)
    FIELD(indexZeroExposure)
TUNING_RECORD_END

TUNING_RECORD(KIROMeteringInput)
    FIELD(bStatsValid)
    FIELD(minAntibandingExposure)
TUNING_RECORD_END

TUNING_RECORD(KIROMeteringOutput)
    PER_EXPOSURE(mtrExposures)
    PER_EXPOSURE(exposures)
    FIELD(bIsMeteringSkipped)
TUNING_RECORD_END

TUNING_RECORD(KIROAnalyzerOutput)
    BY_THE_CALL(pName)
    FIELD(luma)
    FIELD(confidence)
    FIELD(target)
    FIELD(sensitivity)
    FIELD(type)
    FIELD(refType)
TUNING_RECORD_END

TUNING_RECORD(KIROPrecisionFlashInfo)
    FIELD(e1ToE1PlusE2)
    FIELD(minFlashTime)
    FIELD(maxExpoTime)
    FIELD(rollingShutterDelayTime)
TUNING_RECORD_END

TUNING_RECORD(KIROArbitrationInput)
    FIELD(controlID)
    FIELD(controlBank)
    FIELD(controlDataID)
    FIELD(expType)
    PER_EXPOSURE(exposures)
    FIELD(range)
    FIELD(sensorRange)
    BY_THE_CALL(pTable)
    FIELD(indexZeroExposure)
    FIELD(bIsConvRange)
    FIELD(bFPrecisionFlashFlag)
    FIELD(precisionFlashInfo)
TUNING_RECORD_END

TUNING_RECORD(KIROArbitrationOutput)
    FIELD(expType)
    FIELD(exposureSet)
    FIELD(range)
    FIELD(deltaEVFromTarget)
    FIELD(FPS)
TUNING_RECORD_END

TUNING_RECORD(KIROConvergenceInput)
    FIELD(frameID)
    BY_THE_CALL(pRange)
    PER_EXPOSURE(sensitivities)
    FIELD(luxIndex)
    FIELD(bIsMeteringSkipped)
    FIELD(mfhdrLongADRC)
TUNING_RECORD_END

TUNING_RECORD(KIROConvergenceOutput)
    PER_EXPOSURE(exposures)
    PER_EXPOSURE(lockedEV0Exposures)
    FIELD(predictiveGain)
    FIELD(bBrightnessSettle)
    FIELD(bSettle)
    FIELD(evMultiplier)
    FIELD(shortStretchOffset)
    FIELD(bIsConvTargetFixed)
    FIELD(bIfConvProcRun)
    FIELD(compensationDarkBoost)
    FIELD(compensationADRC)
    FIELD(mfhdrLongADRC)
    FIELD(convergedShortBlend)
TUNING_RECORD_END

TUNING_RECORD(KIROFrameInfo)
    FIELD(frameID)
    FIELD(bStartup)
TUNING_RECORD_END

TUNING_RECORD(KIROPostProcessingInput)
    FIELD(input)
TUNING_RECORD_END

TUNING_RECORD(KIROSCDOutput)
    BY_THE_CALL(pName)
    FIELD(scState)
    FIELD(htState)
TUNING_RECORD_END

TUNING_RECORD(KIROAlgoStartExposureInfo)
    FIELD(type)
    PER_EXPOSURE(targetExposures)
    PER_EXPOSURE(convergedExposures)
    FIELD(evFactor)
    FIELD(luxIndex)
    FIELD(bIsLuxInitialized)
    FIELD(compenADRCGain)
    FIELD(compensationDarkBoostGain)
TUNING_RECORD_END

// Statistics.

TUNING_RECORD(KIROCntStatsOut)
    FIELD(frameID)
    FIELD(type)
    FIELD(resolution)
    BY_THE_CALL(channelData)
TUNING_RECORD_END

// Flash.

TUNING_RECORD(KIROAlgoFlashInput)
    FIELD(flashCurrentType)
    BY_THE_CALL(pFlashCalib)
    FIELD(wbFlashOff)
    FIELD(maxFlashCurrent)
    FIELD(AWBRG)
    FIELD(AWBBG)
    FIELD(bBackupState)
TUNING_RECORD_END

TUNING_RECORD(KIROAlgoFlashOutput)
    FIELD(LED1Setting)
    FIELD(LED2Setting)
    FIELD(RGRatio)
    FIELD(BGRatio)
    FIELD(firstEntryRatio)
    FIELD(lastEntryRatio)
    FIELD(state)
    FIELD(flux)
    FIELD(refTable)
TUNING_RECORD_END

TUNING_RECORD(KIROExtFlashInfo)
    FIELD(prepareBeforePreflash)
    FIELD(flashLowStatsSaved)
    FIELD(flashLowEst)
    FIELD(flashHighEst)
TUNING_RECORD_END

// Extension.

TUNING_RECORD(KIROExtensionInput)
    BY_THE_CALL(pConvergenceOuts)
    BY_THE_CALL(pArbitrationOuts)
    FIELD(statisticsStartup)
    FIELD(flashInfo)
TUNING_RECORD_END

TUNING_RECORD(KIROExtFlagsMonitorOutput)
    FIELD(bFlashNeeded)
    FIELD(bFDFlashDelayNeeded)
    FIELD(bLEDAFNeeded)
    FIELD(bLLSNeeded)
    FIELD(bZLLEnabled)
    FIELD(bZLLEnforced)
TUNING_RECORD_END

TUNING_RECORD(AECYHistStretchData)
    FIELD(enable)
    FIELD(clamp)
    FIELD(scaling)
TUNING_RECORD_END

TUNING_RECORD(InSensorHDR3ExpTriggeResult)
    FIELD(flags)
TUNING_RECORD_END

TUNING_RECORD(CDFSet)
    FIELD(resultCDF0)
    FIELD(resultCDF5)
TUNING_RECORD_END

TUNING_RECORD(InSensorHDR3ExpTriggerInfo)
    FIELD(isTriggerInfoValid)
    FIELD(finalTriggerResult)
    FIELD(calculatedCDF)
    FIELD(realDRCGain)
    FIELD(ambientRaw)
    FIELD(faceLuma)
TUNING_RECORD_END

TUNING_RECORD(KIROExt3HDRMonitorOutput)
    FIELD(IHDRTriggers)
    FIELD(bIs3HDRSnapshot)
TUNING_RECORD_END

TUNING_RECORD(KIROExtensionOutput)
    FIELD(monitoredFlags)
    FIELD(histStretchData)
    FIELD(snapshot3HDRTriggers)
    FIELD(bIsSeamlessBinning)
TUNING_RECORD_END

// Queries.

TUNING_RECORD(AECAlgoEVCapabilities)
    FIELD(minEV)
    FIELD(maxEV)
    FIELD(stepsPerEV)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoApertureData)
    FIELD(fNumber)
    FIELD(bSwitch)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoFrameControl)
    FIELD(flashState)
    FIELD(LEDInfluenceRatio)
    FIELD(LEDRGRatio)
    FIELD(LEDBGRatio)
    FIELD(luxIndex)
    FIELD(ISOValue)
    FIELD(stretchControl)
    FIELD(LEDFirstEntryRatio)
    FIELD(LEDLastEntryRatio)
    FIELD(predictiveGain)
    FIELD(digitalGainForSimulation)
    FIELD(compenADRCGain)
    FIELD(isInSensorHDR3ExpSnapshot)
    FIELD(apertureSwitchInfo)
    FIELD(inSensorHDR3ExpTriggerOutput)
    FIELD(snapshotIndicator)
    FIELD(snapshotFlashDuration)
    FIELD(compensationDarkBoostGain)
    FIELD(seamlessMode)
    PER_EXPOSURE(meterTargetExp)
    FIELD(shortBlendRatio)
    FIELD(IRModeActivated)
    FIELD(IRLedIntensity)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoExposureData)
    FIELD(exposureTime)
    FIELD(snapshotExposureTime)
    FIELD(linearGain)
    FIELD(snapShotLinearGain)
    FIELD(sensitivity)
    FIELD(snapshotSensitivity)
    FIELD(deltaEVFromTarget)
    FIELD(compenADRCGain)
    FIELD(fnumber)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoExposureInfo)
    FIELD(exposureType)
    FIELD(exposureData)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoExposureSet)
    BY_THE_CALL(pExposureInfo)
    FIELD(exposureInfoCount)
    FIELD(exposureInfoSize)
    FIELD(exposureInfoOutputCount)
    FIELD(exposureInfoOutputSize)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoLEDCurrents)
    FIELD(LED1Current)
    FIELD(LED2Current)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoAPEXData)
    FIELD(brightnessValue)
    FIELD(apertureValue)
    FIELD(speedValue)
    FIELD(timeValue)
    FIELD(exposureValue)
TUNING_RECORD_END

TUNING_RECORD(SensorRegisterControl)
    FIELD(registerAddress)
    FIELD(registerData)
TUNING_RECORD_END

TUNING_RECORD(AECAlgoAdditionalInfo)
    FIELD(sensorControl)
TUNING_RECORD_END

// clang-format on
