/// @file
/// One run of an example scene with the example tuning, seen by one report.
#pragma once

#include "tests/kirosim/simulationrun.h"

template <typename Report> class ReportRun
{
public:
    explicit ReportRun(const std::string& rScene, const std::string& rVariant = "")
        : m_scene(kirosim::ReadScene(EXAMPLES_DIR "/scenes/" + rScene + ".yaml", rVariant)), m_report(m_scene)
    {
        kirosim::LoadedTuning tuning(EXAMPLES_DIR "/tunings/phone.yaml");
        kirosim::Simulation   simulation(m_scene, tuning, DiscardLog);
        simulation.Run([this](const kirosim::FrameRecord& rRecord) { m_report.Add(rRecord); },
                       [this](const kirosim::FrameRecord& rRecord) { m_report.AddSecond(rRecord); });
    }

    const Report* operator->() const
    {
        return &m_report;
    }

private:
    kirosim::Scene m_scene;
    Report         m_report;
};
