#include "tools/kirosim/simulation.h"

#include <algorithm>

namespace kirosim
{

Simulation::Simulation(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger,
                       const KiroTableDecorator& rDecorate)
    : m_rScene(rScene), m_camera(rScene, rTuning, logger, rDecorate), m_nextEvent(0), m_framesRun(0)
{
    if (rTuning.IsLive())
    {
        m_camera.PublishControlValues(rTuning.Manager());
    }
    if (rScene.pSecond == nullptr)
    {
        return;
    }
    m_pSecond = std::make_unique<Camera>(*rScene.pSecond, rTuning, logger, rDecorate);
    m_group.Join(m_camera.Host(), rScene.camera.role);
    m_group.Join(m_pSecond->Host(), rScene.pSecond->camera.role);
    // Only now does it know a master.
    if (rScene.pSecond->start.has_value())
    {
        m_pSecond->Begin(*rScene.pSecond->start, 0.0);
    }
}

VOID Simulation::Run(const Visitor& visit, const Visitor& visitSecond, const RunPlan& rPlan)
{
    const UINT64 frames = m_rScene.frames;
    const UINT64 first  = m_framesRun;
    while (!rPlan.rounds.has_value() || (m_framesRun - first) / frames < *rPlan.rounds)
    {
        if (rPlan.beforeFrame && !rPlan.beforeFrame(m_clock.Now()))
        {
            return;
        }
        if (m_framesRun > 0 && m_framesRun % frames == 0)
        {
            StartRound();
        }
        RunFrame(m_framesRun++, visit, visitSecond);
    }
}

VOID Simulation::StartRound()
{
    m_nextEvent  = 0;
    m_roundClock = {};
    m_camera.StartRound();
    if (m_pSecond != nullptr)
    {
        RestoreRole(0, m_rScene.camera.role);
        RestoreRole(1, m_rScene.pSecond->camera.role);
        m_pSecond->StartRound();
    }
}

VOID Simulation::RestoreRole(size_t camera, StatsAlgoRole role)
{
    if (m_group.Role(camera) != role)
    {
        m_group.SetRole(camera, role);
    }
}

/// @param index of the frame in the run, from 0
VOID Simulation::RunFrame(UINT64 index, const Visitor& visit, const Visitor& visitSecond)
{
    const UINT64 frame     = index + 1;
    const DOUBLE time      = m_clock.Now();
    const DOUBLE sceneTime = m_roundClock.Now();
    ApplyEvents(sceneTime);
    if (m_pSecond == nullptr)
    {
        const FrameRecord record = m_camera.RunFrame(frame, time, sceneTime);
        Advance(record.fps);
        visit(record);
        return;
    }
    // The master decides first, so that the slave follows in the same frame.
    std::optional<FrameRecord> second;
    if (IsSecondMaster())
    {
        second = m_pSecond->RunFrame(frame, time, sceneTime);
    }
    const FrameRecord first = m_camera.RunFrame(frame, time, sceneTime);
    if (!second.has_value())
    {
        second = m_pSecond->RunFrame(frame, time, sceneTime);
    }
    Advance(std::min(first.fps, second->fps));
    if (visitSecond)
    {
        visitSecond(*second);
    }
    visit(first);
}

VOID Simulation::Advance(DOUBLE fps)
{
    m_clock.Advance(fps);
    m_roundClock.Advance(fps);
}

bool Simulation::IsSecondMaster() const
{
    return m_group.Role(1) == StatsAlgoRoleMaster;
}

VOID Simulation::ApplyEvents(DOUBLE sceneTime)
{
    while (m_nextEvent < m_rScene.events.size() && m_rScene.events[m_nextEvent].time <= sceneTime)
    {
        Apply(m_rScene.events[m_nextEvent], sceneTime);
        ++m_nextEvent;
    }
}

VOID Simulation::Apply(const Event& rEvent, DOUBLE sceneTime)
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
        rCamera.Begin(*rEvent.start, sceneTime);
    }
}

}  // namespace kirosim
