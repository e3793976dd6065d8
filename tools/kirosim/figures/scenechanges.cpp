#include "tools/kirosim/figures/scenechanges.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

bool IsInRamp(const Scene& rScene, DOUBLE time)
{
    for (size_t index = 0; index < rScene.light.size(); ++index)
    {
        const DOUBLE start = (index == 0) ? 0.0 : rScene.light[index - 1].time;
        if (rScene.light[index].isRamp && time >= start && time <= rScene.light[index].time)
        {
            return true;
        }
    }
    return false;
}

bool IsCameraMoving(const Scene& rScene, DOUBLE time)
{
    return rScene.panorama.has_value() && rScene.panorama->IsMoving(time, rScene.sensor.readout);
}

bool IsLightMoving(const Scene& rScene, DOUBLE time)
{
    return IsInRamp(rScene, time) || IsCameraMoving(rScene, time);
}

bool IsObjectMoving(const Scene& rScene, DOUBLE time)
{
    if (!rScene.object.has_value() || !rScene.object->IsThere(time))
    {
        return false;
    }
    const std::vector<PathPoint>& rPath  = rScene.object->path;
    const auto                    isMove = [time](const PathPoint& rFrom, const PathPoint& rTo)
    { return time > rFrom.time && time <= rTo.time && (rFrom.x != rTo.x || rFrom.y != rTo.y); };
    return std::adjacent_find(rPath.begin(), rPath.end(), isMove) != rPath.end();
}

std::vector<DOUBLE> ChangeTimes(const Scene& rScene)
{
    std::vector<DOUBLE> times  = {0.0};
    const auto          addAll = [&times](const auto& rPoints)
    {
        for (const auto& rPoint : rPoints)
        {
            times.push_back(rPoint.time);
        }
    };
    addAll(rScene.light);
    addAll(rScene.events);
    if (rScene.ripple.hertz > 0.0)
    {
        times.push_back(rScene.ripple.start);
    }
    if (rScene.panorama.has_value())
    {
        addAll(rScene.panorama->path);
        addAll(rScene.panorama->cuts);
        for (const PanoramaCut& rCut : rScene.panorama->cuts)
        {
            times.push_back(rCut.time + rCut.fade);
        }
    }
    if (rScene.object.has_value())
    {
        addAll(rScene.object->path);
        times.push_back(rScene.object->appears);
        times.push_back(rScene.object->goes);
    }
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

bool IsHeldByUser(const Scene& rScene, DOUBLE time)
{
    bool isLocked = false;
    bool isByHand = false;
    for (const Event& rEvent : rScene.events)
    {
        if (rEvent.time <= time && !rEvent.isForSecond)
        {
            isLocked = rEvent.lock.value_or(isLocked);
            isByHand = rEvent.manual.has_value() ? rEvent.manual->manualMode == AECAlgoModeManualFull : isByHand;
        }
    }
    return isLocked || isByHand;
}

}  // namespace kirosim
