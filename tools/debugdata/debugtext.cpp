#include "tools/debugdata/debugtext.h"

#include <algorithm>
#include <cstring>

#include <fmt/format.h>

namespace debugdata
{

namespace
{

/// A value out of a packed record: members are not aligned, so nobody may refer to them.
template <typename T> T Value(T value)
{
    return value;
}

const CHAR* YesNo(UINT8 value)
{
    return (value != 0) ? "yes" : "no";
}

bool IsEmpty(const auto& rPart)
{
    const BYTE* pBytes = reinterpret_cast<const BYTE*>(&rPart);
    return std::all_of(pBytes, pBytes + sizeof(rPart), [](BYTE byte) { return byte == 0; });
}

std::string FormatExposure(const FrameExposureInfoType& rSet)
{
    return fmt::format("exposure {} ns, gain {:.3f}, time {} ns, index {:.2f}", Value(rSet.exposure), Value(rSet.gain),
                       Value(rSet.time), Value(rSet.indx));
}

std::string FormatFrame(const FrameHistoryInfoType& rFrame)
{
    std::string text = fmt::format(
        "  frame {}{}{}: luma {:.2f}, lux index {:.2f}, settled {}, brightness settled {}, EV {} (factor {:.3f}), "
        "predictive gain {:.3f}, short stretch {:.2f}, {:.2f} fps, post-raw boost {}\n",
        Value(rFrame.frameID), rFrame.isStartConfig != 0 ? " (start)" : "",
        rFrame.bIsSnapshot != 0 ? " (snapshot)" : "", Value(rFrame.averageLuma), Value(rFrame.luxIndex),
        YesNo(rFrame.bIsAECSettled), YesNo(rFrame.bIsBrightnessSettled), Value(rFrame.previewEVSetting),
        Value(rFrame.previewEVFactor), Value(rFrame.predictiveGain), Value(rFrame.shortStretchOffset),
        Value(rFrame.FPS), Value(rFrame.postRawSensitivityBoost));
    for (UINT32 type = 0; type < ExposureCount; ++type)
    {
        text += fmt::format("    {:5} {}, target {} ns\n", ExposureName(type),
                            FormatExposure(rFrame.exposureSets[type]), Value(rFrame.exposureTargets[type]));
    }
    return text;
}

std::string FormatHistory(const AECDebugDataFrameHistoryType& rHistory)
{
    std::string text = "history\n" + FormatFrame(rHistory.currentFrame);
    for (const FrameHistoryInfoType& rFrame : rHistory.pastFrames)
    {
        if (!IsEmpty(rFrame))
        {
            text += fmt::format("  before: frame {}, safe {}, settled {}\n", Value(rFrame.frameID),
                                FormatExposure(rFrame.exposureSets[2]), YesNo(rFrame.bIsAECSettled));
        }
    }
    return text;
}

std::string FormatConvergence(const AECDebugDataConvergenceType& rConvergence)
{
    std::string text = fmt::format(
        "convergence\n  ran {}, speed {:.3f}, DRC speed {:.3f}, capping {}, predictive gain {:.3f}, short stretch "
        "{:.2f}, settled {}, brightness settled {}\n",
        YesNo(rConvergence.bIfConvProcRun), Value(rConvergence.baseSpeed), Value(rConvergence.drcSpeed),
        rConvergence.cappingType, Value(rConvergence.predictiveGain), Value(rConvergence.shortStretchOffset),
        YesNo(rConvergence.bSettle), YesNo(rConvergence.bBrightnessSettle));
    for (UINT32 type = 0; type < ExposureCount; ++type)
    {
        const AECDebugConvergenceRange& rRange = rConvergence.ranges[type];
        text += fmt::format(
            "  {:5} steps: target {:.2f}, output {:.2f}, previous {:.2f}; limits {:.2f} to {:.2f}, gain "
            "{:.3f} to {:.3f}\n",
            ExposureName(type), Value(rConvergence.targetLog103[type]), Value(rConvergence.outputLog103[type]),
            Value(rConvergence.previousLog103[type]), Value(rRange.startLog103), Value(rRange.endLog103),
            Value(rRange.startGain), Value(rRange.endGain));
    }
    for (const AECDebugConvergenceFrame& rFrame : rConvergence.history)
    {
        if (!IsEmpty(rFrame))
        {
            text += fmt::format("  frame {}: safe target {:.2f}, output {:.2f}\n", Value(rFrame.frameID),
                                Value(rFrame.targetLog103[2]), Value(rFrame.outputLog103[2]));
        }
    }
    return text;
}

std::string FormatArbitration(const AECDebugDataArbitrationType& rArbitration)
{
    std::string text = "arbitration\n";
    for (UINT32 type = 0; type < ExposureCount; ++type)
    {
        const AECDebugArbitratedExposure& rExposure = rArbitration.exposures[type];
        text += fmt::format("  {:5} {}; gain {:.3f} to {:.3f}, time {} to {} ns, index {:.2f} to {:.2f}\n",
                            ExposureName(type), FormatExposure(rExposure.exposureSet), Value(rExposure.minGain),
                            Value(rExposure.maxGain), Value(rExposure.minTime), Value(rExposure.maxTime),
                            Value(rExposure.minIndex), Value(rExposure.maxIndex));
    }
    return text;
}

std::string FormatExtension(const AECDebugDataExtensionType& rExtension)
{
    return fmt::format(
        "extension\n  lux index {:.2f}, LED mode {}, operation mode {}\n  flash needed {}, delay for faces {}, LED for "
        "AF {}, low-light snapshot {}, ZLL {} (enforced {})\n  histogram stretch {}: clamp {:.3f}, scaling {:.3f}\n  "
        "HDR snapshot {}, triggers valid {}: {} {} {}, CDF {:.3f} {:.3f}, DRC gain {:.3f}, ambient {:.3f}, face luma "
        "{:.3f}\n  binned {}, statistics recorded {}\n",
        Value(rExtension.luxIndex), rExtension.LEDMode, rExtension.opMode, YesNo(rExtension.bFlashNeeded),
        YesNo(rExtension.bFDFlashDelayNeeded), YesNo(rExtension.bLEDAFNeeded), YesNo(rExtension.bLLSNeeded),
        YesNo(rExtension.bZLLEnabled), YesNo(rExtension.bZLLEnforced), YesNo(rExtension.bHistStretchEnabled),
        Value(rExtension.histStretchClamp), Value(rExtension.histStretchScaling), YesNo(rExtension.bIs3HDRSnapshot),
        YesNo(rExtension.bIs3HDRTriggerValid), YesNo(rExtension.trigger3HDRResult[0]),
        YesNo(rExtension.trigger3HDRResult[1]), YesNo(rExtension.trigger3HDRResult[2]), Value(rExtension.resultCDF0),
        Value(rExtension.resultCDF5), Value(rExtension.realDRCGain), Value(rExtension.ambientRaw),
        Value(rExtension.faceLuma), YesNo(rExtension.bIsSeamlessBinning),
        YesNo(rExtension.statsListVerboseDebugDataEnable));
}

std::string FormatCurrent(const CHAR* pWhich, const AECDebugFlashCurrent& rCurrent)
{
    if (IsEmpty(rCurrent))
    {
        return "";
    }
    return fmt::format("  {} current{}: LED 1 {} mA, LED 2 {} mA of {} mA, flux {:.3f}, R/G {:.3f}, B/G {:.3f}, wanted "
                       "{:.3f} and {:.3f}\n",
                       pWhich, rCurrent.bIsValid != 0 ? "" : " (not valid)", Value(rCurrent.LED1Setting),
                       Value(rCurrent.LED2Setting), Value(rCurrent.maxFlashCurrent), Value(rCurrent.flux),
                       Value(rCurrent.RGRatio), Value(rCurrent.BGRatio), Value(rCurrent.wantedRG),
                       Value(rCurrent.wantedBG));
}

std::string FormatFlash(const AECDebugData& rRecord)
{
    const AECDebugDataFlashType&          rFlash    = rRecord.flashInfo;
    const AECDebugDataPrecisionFlashType& rDecision = rRecord.precisionFlashInfo;
    if (IsEmpty(rFlash) && IsEmpty(rDecision) && IsEmpty(rRecord.ledTableInfo))
    {
        return "flash: none so far\n";
    }
    std::string text = "flash\n";
    text += FormatCurrent("low", rRecord.ledTableInfo.low);
    text += FormatCurrent("high", rRecord.ledTableInfo.high);
    if (!IsEmpty(rFlash))
    {
        text += fmt::format("  flux {:.3f}, influence {:.3f}, lux index {:.2f}\n  without LED\n{}  with low LED\n{}",
                            Value(rFlash.flux), Value(rFlash.influence), Value(rFlash.luxIndex),
                            FormatFrame(rFlash.frameOff), FormatFrame(rFlash.frameLow));
        const AECDebugPrecisionFlashSolution& rSolution = rFlash.precisionFlash;
        text +=
            fmt::format("  precision flash: scene {}, e1 {:.3f}, e2 {:.3f}, longest time {:.3f} ms, shortest flash "
                        "{:.3f} ms, delay {:.3f} ms\n",
                        YesNo(rSolution.sceneDetected), Value(rSolution.e1), Value(rSolution.e2),
                        Value(rSolution.maxExpoTime), Value(rSolution.minFlashTime), Value(rSolution.flashDelayTime));
    }
    if (!IsEmpty(rDecision))
    {
        text +=
            fmt::format("  precision flash tables: scene {}, background {:.2f} percent, foreground {:.2f} percent\n",
                        YesNo(rDecision.scenceEnabled), Value(rDecision.bkgrdpct), Value(rDecision.frgrdpct));
    }
    return text;
}

std::string FormatGrid(const AECDebugStatsChList& rChannel, UINT64 regions)
{
    const UINT64 kept = std::min<UINT64>(regions, AECDebugGridSizeMax);
    FLOAT        low  = Value(rChannel.channelData.valGrid[0]);
    FLOAT        high = low;
    DOUBLE       sum  = 0.0;
    for (UINT64 region = 0; region < kept; ++region)
    {
        const FLOAT value = rChannel.channelData.valGrid[region];
        low               = std::min(low, value);
        high              = std::max(high, value);
        sum += static_cast<DOUBLE>(value);
    }
    return fmt::format("mean {:.3f}, {:.3f} to {:.3f}", (kept > 0) ? sum / static_cast<DOUBLE>(kept) : 0.0, low, high);
}

std::string FormatStats(const AECDebugDataStatsProcResult& rStats)
{
    if (IsEmpty(rStats))
    {
        return "statistics: not recorded\n";
    }
    std::string  text  = fmt::format("statistics\n  torch {}, before preflash {}\n", YesNo(rStats.bIsTouchAEC),
                                     YesNo(rStats.bPrepareBeforePreflash));
    const UINT32 count = std::min<UINT32>(rStats.numOfChannels, AECDebugChannelCount);
    for (UINT32 index = 0; index < count; ++index)
    {
        const AECDebugStatsChList& rChannel = rStats.channels[index];
        const UINT32               width    = rChannel.resolution.width;
        const UINT32               height   = rChannel.resolution.height;
        const UINT32               bins     = std::min(Value(rChannel.resolution.binCount), AECDebugHistogramSizeMax);
        const INT32                bits     = rChannel.resolution.bitDepth;
        text += fmt::format("  '{}' of frame {}{}: ", NameOf(rChannel.channelName), Value(rChannel.frameID),
                            rChannel.bChannelEnabled != 0 ? "" : " (off)");
        if (rChannel.statsType == 0)
        {
            text += fmt::format("{} x {} regions of {} bits, {}\n", width, height, bits,
                                FormatGrid(rChannel, static_cast<UINT64>(width) * height));
            continue;
        }
        UINT64 samples = 0;
        for (UINT32 bin = 0; bin < bins; ++bin)
        {
            samples += Value(rChannel.channelData.valHist[bin]);
        }
        text += fmt::format("{} bins of {} bits, {} samples\n", bins, bits, samples);
    }
    return text;
}

}  // namespace

std::string NameOf(const CHAR (&rName)[AECDebugNameLength])
{
    constexpr CHAR firstPrintable = ' ';
    constexpr CHAR lastPrintable  = '~';
    std::string    name(rName, strnlen(rName, sizeof(rName)));
    std::replace_if(
        name.begin(), name.end(), [](CHAR letter) { return letter < firstPrintable || letter > lastPrintable; }, '?');
    return name;
}

std::string_view ExposureName(UINT32 type)
{
    constexpr std::string_view names[] = {"short", "long", "safe"};
    return names[type];
}

std::string FormatLine(const AECDebugData& rRecord)
{
    const FrameHistoryInfoType& rFrame = rRecord.frameHistoryInfo.currentFrame;
    return fmt::format("frame {:>6}: short {:>12} safe {:>12} long {:>12} ns, luma {:>6.2f}, lux index {:>6.2f}{}\n",
                       Value(rFrame.frameID), Value(rFrame.exposureSets[0].exposure),
                       Value(rFrame.exposureSets[2].exposure), Value(rFrame.exposureSets[1].exposure),
                       Value(rFrame.averageLuma), Value(rFrame.luxIndex), rFrame.bIsAECSettled != 0 ? ", settled" : "");
}

std::string FormatRecord(const AECDebugData& rRecord)
{
    return FormatHistory(rRecord.frameHistoryInfo) + FormatMetering(rRecord.meteringInfo) +
           FormatConvergence(rRecord.convergenceInfo) + FormatArbitration(rRecord.arbitrationInfo) +
           FormatExtension(rRecord.extensionInfo) + FormatFlash(rRecord) + FormatStats(rRecord.statsProcResult);
}

}  // namespace debugdata
