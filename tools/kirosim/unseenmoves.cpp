#include "tools/kirosim/unseenmoves.h"

#include <algorithm>

#include <fmt/format.h>

namespace kirosim
{

namespace
{

/// The longest that a run can last, at the lowest rate that it may come to have, s.
DOUBLE LongestRun(const Scene& rScene)
{
    DOUBLE fps = rScene.fps;
    for (const Event& rEvent : rScene.events)
    {
        if (rEvent.fps.has_value() && rEvent.fps->minimumFPS > 0.0f)
        {
            fps = std::min(fps, static_cast<DOUBLE>(rEvent.fps->minimumFPS));
        }
    }
    return rScene.frames / fps;
}

}  // namespace

std::string UnseenMove(const Scene& rScene)
{
    if (!rScene.panorama.has_value())
    {
        return {};
    }
    const auto&  rPath   = rScene.panorama->path;
    const auto&  rCuts   = rScene.panorama->cuts;
    const DOUBLE lastWay = rPath.empty() ? 0.0 : rPath.back().time;
    const DOUBLE lastCut = rCuts.empty() ? 0.0 : rCuts.back().time;
    const DOUBLE end     = LongestRun(rScene);
    return (std::max(lastWay, lastCut) > end)
               ? fmt::format("the panorama has a {} at {:.4g} s, but the run ends at {:.4g} s",
                             (lastWay >= lastCut) ? "point of its path" : "cut", std::max(lastWay, lastCut), end)
               : std::string();
}

}  // namespace kirosim
