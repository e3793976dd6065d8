#include "tools/kirosim/figures/runsample.h"

#include <algorithm>
#include <cmath>

#include "tools/kirosim/exposurelimit.h"
#include "tools/kirosim/figures/split.h"
#include "tools/kirosim/monitoredflags.h"

namespace kirosim
{

namespace
{

/// Whose distance the exposure is judged by: what no exposure of the sensor reaches is nobody's fault.
DOUBLE TargetEV(const KiroHostFrame& rDecided, const Sensor& rSensor)
{
    const FLOAT  factor = rDecided.convergence.evMultiplier;
    const DOUBLE user   = (factor > 0.0f) ? static_cast<DOUBLE>(factor) : 1.0;  // none before convergence has run
    const DOUBLE target = static_cast<DOUBLE>(rDecided.metering.exposures[AECAlgoExposureSafe]) * user;
    const DOUBLE least  = rSensor.minGain * static_cast<DOUBLE>(rSensor.minTime);
    return std::log2(std::clamp(target, least, rSensor.maxGain * static_cast<DOUBLE>(rSensor.maxTime)));
}

DOUBLE LineEV(const KIROExposureSetType& rDecided, const Sensor& rSensor)
{
    constexpr DOUBLE nsPerSecond = 1e9;
    const DOUBLE     time        = static_cast<DOUBLE>(std::clamp(rDecided.time, rSensor.minTime, rSensor.maxTime));
    return std::log2(1.0 + rSensor.lineTime * nsPerSecond / time);
}

/// The light curve knows what a pattern shows, but not what a camera sees that turns.
DOUBLE SeenLightEV(const FrameRecord& rRecord, const Scene& rScene)
{
    const bool isPicture = rScene.panorama.has_value() || rScene.object.has_value();
    return isPicture ? rRecord.truth.pictureEV - std::log2(rRecord.truth.exposure) : std::log2(rRecord.truth.lux);
}

template <typename Flags, typename IsSet> UINT32 BitsOf(const Flags& rFlags, IsSet&& isSet)
{
    UINT32 bits = 0;
    UINT32 bit  = 1;
    for (const auto& rFlag : rFlags)
    {
        bits |= isSet(rFlag) ? bit : 0;
        bit <<= 1;
    }
    return bits;
}

}  // namespace

RunSample SampleOf(const FrameRecord& rRecord, const Scene& rScene, DOUBLE leastLoss)
{
    const KIROArbitrationOutput& rSafe  = rRecord.decided.arbitration[AECAlgoExposureSafe];
    const FrameTruth&            rTruth = rRecord.truth;
    RunSample                    sample{};
    sample.frame     = rRecord.frame;
    sample.time      = rRecord.sceneTime;
    sample.curveEV   = rScene.LightEV(rRecord.sceneTime);
    sample.lightEV   = SeenLightEV(rRecord, rScene);
    sample.shownEV   = std::log2(rTruth.exposure);
    sample.targetEV  = TargetEV(rRecord.decided, rScene.sensor);
    sample.pictureEV = rTruth.pictureEV;
    sample.clipped   = rTruth.clipped[AECAlgoExposureSafe];
    sample.black     = rTruth.black;
    sample.lost      = std::max(sample.clipped + sample.black - leastLoss, 0.0);
    sample.gainEV    = GainAboveLeastEV(rSafe.exposureSet, rScene.sensor);
    sample.timeEV    = TimeAboveLeastEV(rSafe.exposureSet, rScene.sensor);
    sample.lineEV    = LineEV(rSafe.exposureSet, rScene.sensor);
    sample.banding   = rTruth.banding;
    sample.isStart   = rRecord.start.has_value();
    sample.isPinned  = LimitOf(rSafe, rScene.sensor) != ExposureLimit::None;
    sample.changed   = BitsOf(rRecord.detectors,
                              [](const SceneChangeReading& rReading) { return rReading.scState != KIROSCDStateMonitor; });
    sample.tuned     = BitsOf(rRecord.detectors, [](const SceneChangeReading& rReading) { return rReading.isTuned; });
    if (rScene.isMonitored)
    {
        sample.flags = BitsOf(MonitoredFlagsOf(rRecord.decided.extension), [](bool isSet) { return isSet; });
    }
    return sample;
}

bool IsPreview(const FrameRecord& rRecord)
{
    return !rRecord.picture.has_value() && !rRecord.isPictureShown && rRecord.flash.phase == FlashCapturePhase::Idle;
}

}  // namespace kirosim
