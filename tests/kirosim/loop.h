/// @file
/// A camera that goes on in rounds of a scene.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/discardlog.h"
#include "tools/kirosim/runreport.h"
#include "tools/kirosim/simulation.h"

/// Runs rounds of a scene with the phone's tuning.
class Loop
{
public:
    /// @param isLive whether tools can tune the camera
    explicit Loop(const kirosim::Scene& rScene, bool isLive = false)
        : m_scene(rScene), m_tuning(EXAMPLES_DIR "/tunings/phone.yaml", isLive),
          m_simulation(m_scene, m_tuning, DiscardLog), m_report(m_scene)
    {
    }

    /// @param roundEnded sees the summary of each round
    VOID Run(const kirosim::RunPlan& rPlan, const std::function<VOID(const kirosim::RunSummary&)>& roundEnded = {})
    {
        m_simulation.Run(
            [&](const kirosim::FrameRecord& rRecord)
            {
                m_report.Add(rRecord);
                m_frames.push_back({rRecord.frame, rRecord.time, rRecord.sceneTime,
                                    rRecord.decided.arbitration[AECAlgoExposureSafe].FPS});
                if (!m_report.RoundLines().empty())
                {
                    m_lines.push_back(m_report.RoundLines());
                    m_rounds.push_back(*m_report.LastRound());
                    if (roundEnded)
                    {
                        roundEnded(m_rounds.back());
                    }
                }
            },
            {}, rPlan);
    }

    struct Frame
    {
        UINT64 number;
        DOUBLE time;
        DOUBLE sceneTime;
        FLOAT  decidedFPS;
    };

    kirosim::Scene                   m_scene;
    kirosim::LoadedTuning            m_tuning;
    kirosim::Simulation              m_simulation;
    kirosim::RunReport               m_report;
    std::vector<Frame>               m_frames;
    std::vector<std::string>         m_lines;   ///< of each round
    std::vector<kirosim::RunSummary> m_rounds;  ///< of each round
};
