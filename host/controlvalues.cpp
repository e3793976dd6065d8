#include "host/controlvalues.h"

#include <algorithm>
#include <iterator>

#include "parameters/tuningsetmanager.h"

namespace controlvalues
{

namespace
{

/// A frame as the host has it.
struct Frame
{
    UINT64               id;
    const KiroHostFrame& rDecided;
    UINT8                statisticsDelay;  ///< 0 while it is not known
};

struct Entry
{
    ID          id;
    const CHAR* pName;
    DOUBLE (*read)(const Frame&);
};

template <AECAlgoExposureType type> DOUBLE TimeOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.rDecided.arbitration[type].exposureSet.time);
}

template <AECAlgoExposureType type> DOUBLE GainOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.rDecided.arbitration[type].exposureSet.gain);
}

template <AECAlgoExposureType type> DOUBLE SensitivityOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.rDecided.arbitration[type].exposureSet.exposure);
}

template <AECAlgoExposureType type> DOUBLE TargetOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.rDecided.metering.exposures[type]);
}

/// A member of the convergence's output.
template <auto member> DOUBLE ConvergedOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.rDecided.convergence.*member);
}

template <auto member> DOUBLE ConvergenceFlagOf(const Frame& rFrame)
{
    return (rFrame.rDecided.convergence.*member != FALSE) ? 1.0 : 0.0;
}

/// A flag of the monitors.
template <auto member> DOUBLE MonitorFlagOf(const Frame& rFrame)
{
    return (rFrame.rDecided.extension.monitoredFlags.*member != FALSE) ? 1.0 : 0.0;
}

DOUBLE IsExposureLocked(const Frame& rFrame)
{
    return (rFrame.rDecided.convergence.lockedEV0Exposures[AECAlgoExposureSafe] != 0) ? 1.0 : 0.0;
}

DOUBLE FrameNumberOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.id);
}

DOUBLE LuxIndexOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.rDecided.luxIndex);
}

DOUBLE LumaOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.rDecided.luma);
}

DOUBLE IsMeteringSkipped(const Frame& rFrame)
{
    return (rFrame.rDecided.metering.bIsMeteringSkipped != FALSE) ? 1.0 : 0.0;
}

DOUBLE FrameRateOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.rDecided.arbitration[AECAlgoExposureSafe].FPS);
}

DOUBLE StatisticsDelayOf(const Frame& rFrame)
{
    return static_cast<DOUBLE>(rFrame.statisticsDelay);
}

constexpr Entry Entries[] = {
    {FrameNumber, "frameNumber", FrameNumberOf},
    {LuxIndex, "luxIndex", LuxIndexOf},
    {CurrentLuma, "currentLuma", LumaOf},
    {ShortExposureTime, "shortExposureTime", TimeOf<AECAlgoExposureShort>},
    {SafeExposureTime, "safeExposureTime", TimeOf<AECAlgoExposureSafe>},
    {LongExposureTime, "longExposureTime", TimeOf<AECAlgoExposureLong>},
    {ShortGain, "shortGain", GainOf<AECAlgoExposureShort>},
    {SafeGain, "safeGain", GainOf<AECAlgoExposureSafe>},
    {LongGain, "longGain", GainOf<AECAlgoExposureLong>},
    {ShortSensitivity, "shortSensitivity", SensitivityOf<AECAlgoExposureShort>},
    {SafeSensitivity, "safeSensitivity", SensitivityOf<AECAlgoExposureSafe>},
    {LongSensitivity, "longSensitivity", SensitivityOf<AECAlgoExposureLong>},
    {ShortTarget, "shortTarget", TargetOf<AECAlgoExposureShort>},
    {SafeTarget, "safeTarget", TargetOf<AECAlgoExposureSafe>},
    {LongTarget, "longTarget", TargetOf<AECAlgoExposureLong>},
    {ADRCGain, "adrcGain", ConvergedOf<&KIROConvergenceOutput::compensationADRC>},
    {DarkBoostGain, "darkBoostGain", ConvergedOf<&KIROConvergenceOutput::compensationDarkBoost>},
    {PredictiveGain, "predictiveGain", ConvergedOf<&KIROConvergenceOutput::predictiveGain>},
    {BrightnessSettled, "brightnessSettled", ConvergenceFlagOf<&KIROConvergenceOutput::bBrightnessSettle>},
    {Settled, "settled", ConvergenceFlagOf<&KIROConvergenceOutput::bSettle>},
    {MeteringSkipped, "meteringSkipped", IsMeteringSkipped},
    {TargetHeld, "targetHeld", ConvergenceFlagOf<&KIROConvergenceOutput::bIsConvTargetFixed>},
    {ExposureLocked, "exposureLocked", IsExposureLocked},
    {FrameRate, "frameRate", FrameRateOf},
    {MonitorFlash, "monitorFlash", MonitorFlagOf<&KIROExtFlagsMonitorOutput::bFlashNeeded>},
    {MonitorLowLight, "monitorLowLight", MonitorFlagOf<&KIROExtFlagsMonitorOutput::bLLSNeeded>},
    {MonitorLEDFocus, "monitorLEDFocus", MonitorFlagOf<&KIROExtFlagsMonitorOutput::bLEDAFNeeded>},
    {StatisticsDelay, "statisticsDelay", StatisticsDelayOf},
};

}  // namespace

std::vector<UINT32> IDs()
{
    std::vector<UINT32> ids;
    std::transform(std::begin(Entries), std::end(Entries), std::back_inserter(ids),
                   [](const Entry& rEntry) { return rEntry.id; });
    return ids;
}

const CHAR* NameOf(UINT32 id)
{
    for (const Entry& rEntry : Entries)
    {
        if (rEntry.id == id)
        {
            return rEntry.pName;
        }
    }
    return nullptr;
}

VOID Publisher::Publish(UINT64 frameID, const KiroHostFrame& rFrame, const std::optional<UINT8>& rStatisticsDelay)
{
    const Frame frame = {frameID, rFrame, rStatisticsDelay.value_or(0)};
    m_values.Clear();
    for (const Entry& rEntry : Entries)
    {
        m_values.Add({rEntry.id, rEntry.read(frame)});
    }
    m_rManager.SetControlValues(m_values);
}

}  // namespace controlvalues
