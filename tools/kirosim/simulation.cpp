#include "tools/kirosim/simulation.h"

namespace kirosim
{

Simulation::Simulation(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger)
    : m_rScene(rScene), m_camera(rScene, rTuning, logger), m_nextEvent(0)
{
    if (rScene.pSecond == nullptr)
    {
        return;
    }
    m_pSecond = std::make_unique<Camera>(*rScene.pSecond, rTuning, logger);
    m_group.Join(m_camera.Host(), rScene.camera.role);
    m_group.Join(m_pSecond->Host(), rScene.pSecond->camera.role);
    // Only now does it know a master.
    if (rScene.pSecond->start.has_value())
    {
        m_pSecond->Begin(*rScene.pSecond->start, 0.0);
    }
}

VOID Simulation::Run(const Visitor& visit, const Visitor& visitSecond)
{
    for (UINT64 frame = 1; frame <= m_rScene.frames; ++frame)
    {
        const DOUBLE time = static_cast<DOUBLE>(frame - 1) / m_rScene.fps;
        ApplyEvents(time);
        if (m_pSecond == nullptr)
        {
            visit(m_camera.RunFrame(frame, time));
            continue;
        }
        // The master decides first, so that the slave follows in the same frame.
        std::optional<FrameRecord> second;
        if (IsSecondMaster())
        {
            second = m_pSecond->RunFrame(frame, time);
        }
        const FrameRecord first = m_camera.RunFrame(frame, time);
        if (!second.has_value())
        {
            second = m_pSecond->RunFrame(frame, time);
        }
        if (visitSecond)
        {
            visitSecond(*second);
        }
        visit(first);
    }
}

bool Simulation::IsSecondMaster() const
{
    return m_group.Role(1) == StatsAlgoRoleMaster;
}

VOID Simulation::ApplyEvents(DOUBLE time)
{
    while (m_nextEvent < m_rScene.events.size() && m_rScene.events[m_nextEvent].time <= time)
    {
        Apply(m_rScene.events[m_nextEvent], time);
        ++m_nextEvent;
    }
}

VOID Simulation::Apply(const Event& rEvent, DOUBLE time)
{
    Camera& rCamera = rEvent.isForSecond ? *m_pSecond : m_camera;
    rCamera.Apply(rEvent);
    if (rEvent.role.has_value())
    {
        m_group.SetRole(rEvent.isForSecond ? 1 : 0, *rEvent.role);
    }
    if (rEvent.CCT.has_value())
    {
        m_camera.SetCCT(*rEvent.CCT);
        if (m_pSecond != nullptr)
        {
            m_pSecond->SetCCT(*rEvent.CCT);
        }
    }
    if (rEvent.start.has_value())
    {
        rCamera.Begin(*rEvent.start, time);
    }
}

}  // namespace kirosim
