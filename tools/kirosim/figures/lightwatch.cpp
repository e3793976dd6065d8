#include "tools/kirosim/figures/lightwatch.h"

#include <algorithm>

#include "tools/kirosim/figures/leastloss.h"
#include "tools/kirosim/figures/scenechanges.h"

namespace kirosim
{

namespace
{

/// While things move, frames from one look to the next.
constexpr UINT32 LookInterval = 15;

}  // namespace

LightWatch::LightWatch(const Scene& rScene) : m_rScene(rScene)
{
    if (rScene.panorama.has_value() || rScene.object.has_value())
    {
        m_changes = ChangeTimes(rScene);
    }
}

bool LightWatch::IsViewDue(DOUBLE time) const
{
    return !m_leastLoss.has_value() || ChangesUpTo(time) != m_changesSeen ||
           (m_framesSince >= LookInterval && IsMoving(time));
}

VOID LightWatch::Look(DOUBLE time, const SensorView& rView)
{
    m_leastLoss   = kirosim::LeastLoss(rView.samples);
    m_changesSeen = ChangesUpTo(time);
    m_framesSince = 0;
}

size_t LightWatch::ChangesUpTo(DOUBLE time) const
{
    return static_cast<size_t>(std::upper_bound(m_changes.begin(), m_changes.end(), time) - m_changes.begin());
}

bool LightWatch::IsMoving(DOUBLE time) const
{
    return IsObjectMoving(m_rScene, time) || IsCameraMoving(m_rScene, time);
}

}  // namespace kirosim
