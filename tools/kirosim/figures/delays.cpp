#include "tools/kirosim/figures/delays.h"

#include <fmt/format.h>

#include "tools/kirosim/monitoredflags.h"

namespace kirosim
{

namespace
{

/// Frames of a change until a bit differs from the frame before the change; none if it does not.
std::optional<DOUBLE> FramesToChange(const std::vector<RunSample>& rSamples, const SceneSpan& rChange,
                                     UINT32 RunSample::*pBits, UINT32 bit)
{
    const UINT32 before = rSamples[rChange.begin - 1].*pBits & bit;
    for (size_t index = rChange.begin; index < rChange.end; ++index)
    {
        if ((rSamples[index].*pBits & bit) != before)
        {
            return static_cast<DOUBLE>(index - rChange.begin);
        }
    }
    return std::nullopt;
}

}  // namespace

VOID AddDelays(const Scene& rScene, const std::vector<RunSample>& rSamples, const SceneSpan& rChange,
               const std::string& rOf, std::vector<Figure>& rFigures)
{
    if (rChange.begin == 0)
    {
        return;  // nothing was watched before
    }
    const RunSample& rBefore = rSamples[rChange.begin - 1];
    for (size_t detector = 0; detector < rScene.detectors.watched.size(); ++detector)
    {
        const UINT32 bit = UINT32{1} << detector;
        if ((rBefore.tuned & bit) != 0 && (rBefore.changed & bit) == 0)
        {
            rFigures.push_back({FigureId::DetectorDelay, rOf, rChange.at,
                                FramesToChange(rSamples, rChange, &RunSample::changed, bit),
                                fmt::format("detector {}", rScene.detectors.watched[detector].id)});
        }
    }
    for (size_t flag = 0; flag < MonitoredFlagCount; ++flag)
    {
        const auto frames = FramesToChange(rSamples, rChange, &RunSample::flags, UINT32{1} << flag);
        if (frames.has_value())
        {
            rFigures.push_back({FigureId::MonitorDelay, rOf, rChange.at, frames, MonitoredFlagNames[flag]});
        }
    }
}

}  // namespace kirosim
