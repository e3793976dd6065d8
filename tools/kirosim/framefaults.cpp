#include "tools/kirosim/framefaults.h"

namespace kirosim
{

FrameFaults::FrameFaults(const Scene& rScene) : m_rScene(rScene), m_random(rScene.seed)
{
}

VOID FrameFaults::StartRound()
{
    m_random = RandomStream(m_rScene.seed);
}

/// Both are drawn in each frame, so that more of the one moves none of the other.
FrameFault FrameFaults::Next()
{
    const DOUBLE dropped = 100.0 * m_random.NextUniform();
    const DOUBLE late    = 100.0 * m_random.NextUniform();
    return {dropped < m_rScene.sensor.dropped, late < m_rScene.sensor.late};
}

}  // namespace kirosim
