#include "tools/kirosim/panoramascene.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

namespace
{

constexpr DOUBLE DegreesPerTurn = 360.0;

/// Pitch beyond which no camera bends over, turns.
constexpr DOUBLE StraightUp = 0.25;

PanoramaView ViewOf(const panorama::RadianceMap* pMap, DOUBLE yaw, DOUBLE pitch, DOUBLE lux)
{
    const DOUBLE turns = yaw / DegreesPerTurn;
    return {pMap, turns - std::floor(turns), std::clamp(pitch / DegreesPerTurn, -StraightUp, StraightUp), lux};
}

}  // namespace

/// Held before the first point and after the last one.
TurnPoint PanoramaScene::TurnAt(DOUBLE time) const
{
    const auto next =
        std::find_if(path.begin(), path.end(), [time](const TurnPoint& rPoint) { return rPoint.time > time; });
    if (next == path.begin() || next == path.end())
    {
        return path.empty() ? TurnPoint{} : ((next == path.end()) ? path.back() : path.front());
    }
    const TurnPoint& rFrom = *(next - 1);
    const DOUBLE     share = (time - rFrom.time) / (next->time - rFrom.time);
    return {time, rFrom.yaw + share * (next->yaw - rFrom.yaw), rFrom.pitch + share * (next->pitch - rFrom.pitch)};
}

PanoramaScene::Stage PanoramaScene::StageAt(DOUBLE time, DOUBLE sceneLux) const
{
    const Place first{pMap.get(), yaw, pitch, lux.value_or(sceneLux)};
    Stage       stage{first, first, 1.0};
    for (const PanoramaCut& rCut : cuts)
    {
        if (rCut.time > time)
        {
            break;
        }
        const Place& rBefore = stage.now;
        const Place  now{(rCut.pMap != nullptr) ? rCut.pMap.get() : rBefore.pMap, rCut.yaw.value_or(rBefore.yaw),
                        rCut.pitch.value_or(rBefore.pitch), rCut.lux.value_or(rBefore.lux)};
        const bool   isOver = time >= rCut.time + rCut.fade;
        stage               = {now, rBefore, isOver ? 1.0 : (time - rCut.time) / rCut.fade};
    }
    return stage;
}

PanoramaViews PanoramaScene::ViewsAt(DOUBLE frameTime, DOUBLE time, DOUBLE sceneLux) const
{
    const TurnPoint turn   = TurnAt(time);
    const Stage     stage  = StageAt(frameTime, sceneLux);
    const auto      viewOf = [&turn](const Place& rPlace, DOUBLE share)
    { return ViewOf(rPlace.pMap, rPlace.yaw + turn.yaw, rPlace.pitch + turn.pitch, rPlace.lux * share); };
    return {viewOf(stage.now, stage.share),
            (stage.share < 1.0) ? viewOf(stage.before, 1.0 - stage.share) : PanoramaView{}};
}

DOUBLE PanoramaScene::LuxAt(DOUBLE time, DOUBLE sceneLux) const
{
    const Stage stage = StageAt(time, sceneLux);
    return stage.now.lux * stage.share + stage.before.lux * (1.0 - stage.share);
}

bool PanoramaScene::IsMoving(DOUBLE frameTime, DOUBLE readout) const
{
    const auto isTurn = [=](const TurnPoint& rFrom, const TurnPoint& rTo)
    {
        return frameTime + readout > rFrom.time && frameTime < rTo.time &&
               (rFrom.yaw != rTo.yaw || rFrom.pitch != rTo.pitch);
    };
    const auto isFade = [=](const PanoramaCut& rCut)
    { return frameTime >= rCut.time && frameTime < rCut.time + rCut.fade; };
    return std::adjacent_find(path.begin(), path.end(), isTurn) != path.end() ||
           std::any_of(cuts.begin(), cuts.end(), isFade);
}

bool PanoramaScene::HasCut(DOUBLE after, DOUBLE upTo) const
{
    return std::any_of(cuts.begin(), cuts.end(),
                       [=](const PanoramaCut& rCut) { return rCut.time > after && rCut.time <= upTo; });
}

}  // namespace kirosim
