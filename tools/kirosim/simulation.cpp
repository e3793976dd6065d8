#include "tools/kirosim/simulation.h"

namespace kirosim
{

Simulation::Simulation(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger)
    : m_rScene(rScene), m_camera(rScene, rTuning, logger), m_nextEvent(0)
{
}

VOID Simulation::Run(const std::function<VOID(const FrameRecord&)>& visit)
{
    for (UINT64 frame = 1; frame <= m_rScene.frames; ++frame)
    {
        const DOUBLE time = static_cast<DOUBLE>(frame - 1) / m_rScene.fps;
        ApplyEvents(time);
        visit(m_camera.RunFrame(frame, time));
    }
}

VOID Simulation::ApplyEvents(DOUBLE time)
{
    while (m_nextEvent < m_rScene.events.size() && m_rScene.events[m_nextEvent].time <= time)
    {
        m_camera.Apply(m_rScene.events[m_nextEvent]);
        ++m_nextEvent;
    }
}

}  // namespace kirosim
