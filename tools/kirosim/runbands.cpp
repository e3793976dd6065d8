#include "tools/kirosim/runbands.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/kirosim/exposurelimit.h"
#include "tools/kirosim/monitoredflags.h"

namespace kirosim
{

namespace
{

const CHAR* NameOf(FlashCapturePhase phase)
{
    switch (phase)
    {
    case FlashCapturePhase::Hold:
        return "holds";
    case FlashCapturePhase::Off:
        return "frame without LED";
    case FlashCapturePhase::Preflash:
        return "preflash";
    case FlashCapturePhase::Snapshot:
        return "picture decided";
    case FlashCapturePhase::Readout:
        return "read-out";
    default:
        return "";
    }
}

const CHAR* NameOf(const SceneChangeReading& rReading)
{
    switch (rReading.scState)
    {
    case KIROSCDStateSceneChange:
        return "change";
    case KIROSCDStateSCPostStable:
        return "changed, stable again";
    default:
        return "";
    }
}

VOID SetDetectorBands(const std::vector<SceneChangeReading>& rReadings, StateBands& rBands)
{
    for (const SceneChangeReading& rReading : rReadings)
    {
        // Its name is not known before it has been at rest once.
        const std::string name = fmt::format("detector {}", rReading.id);
        rBands.Set(name, rReading.scState != KIROSCDStateMonitor, NameOf(rReading));
        rBands.Set(name + " holds", rReading.htState == KIROHoldTimeOn);
    }
}

}  // namespace

VOID SetDecidedBands(const KiroHostFrame& rFrame, StateBands& rBands)
{
    const KIROConvergenceOutput& rConv = rFrame.convergence;
    const bool isLocked = std::any_of(std::begin(rConv.lockedEV0Exposures), std::end(rConv.lockedEV0Exposures),
                                      [](UINT64 exposure) { return exposure != 0; });
    rBands.Set("locked", isLocked);
    rBands.Set("targets taken over", rConv.bIsConvTargetFixed == TRUE);
}

VOID SetBands(const FrameRecord& rRecord, const Scene& rScene, StateBands& rBands)
{
    const ExposureLimit limit = LimitOf(rRecord.decided.arbitration[AECAlgoExposureSafe], rScene.sensor);
    rBands.Set("at a limit", limit != ExposureLimit::None, (limit != ExposureLimit::None) ? NameOf(limit) : "");
    SetDecidedBands(rRecord.decided, rBands);
    rBands.Set("flash", rRecord.flash.phase != FlashCapturePhase::Idle, NameOf(rRecord.flash.phase));
    rBands.Set("bracket", rRecord.picture.has_value());
    SetDetectorBands(rRecord.detectors, rBands);
    if (rScene.isMonitored)
    {
        const auto flags = MonitoredFlagsOf(rRecord.decided.extension);
        for (size_t flag = 0; flag < flags.size(); ++flag)
        {
            rBands.Set(MonitoredFlagNames[flag], flags[flag]);
        }
    }
}

}  // namespace kirosim
