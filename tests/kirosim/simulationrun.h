/// @file
/// One run of an example scene with an example tuning, kept for questions.
#pragma once

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/discardlog.h"
#include "tools/kirosim/report.h"
#include "tools/kirosim/simulation.h"
#include "tools/kirosim/summary.h"
#include "tools/kirosim/trace.h"
#include "tools/tuningfile/files.h"

/// The text of an example tuning with another text in the place of a part of it.
inline std::string ChangedTuning(const std::string& rTuning, const std::string& rPart, const std::string& rBy)
{
    std::string  text  = tuningfile::ReadText(EXAMPLES_DIR "/tunings/" + rTuning);
    const size_t place = text.find(rPart);
    EXPECT_NE(place, std::string::npos) << rPart;
    return text.replace(place, rPart.size(), rBy);
}

class SimulationRun
{
public:
    /// @param rTuning of the examples, or a path
    explicit SimulationRun(const kirosim::Scene& rScene, const std::string& rTuning = "phone.yaml") : m_scene(rScene)
    {
        kirosim::LoadedTuning tuning((std::filesystem::path(EXAMPLES_DIR "/tunings") / rTuning).string());
        Run(tuning, {});
    }

    SimulationRun(const kirosim::Scene& rScene, kirosim::LoadedTuning& rTuning,
                  const KiroTableDecorator& rDecorate = {})
        : m_scene(rScene)
    {
        Run(rTuning, rDecorate);
    }

    explicit SimulationRun(const std::string& rScene, const std::string& rVariant = "",
                           const std::string& rTuning = "phone.yaml", UINT64 seed = 1)
        : SimulationRun(Example(rScene, rVariant, seed), rTuning)
    {
    }

    static kirosim::Scene Example(const std::string& rName, const std::string& rVariant = "", UINT64 seed = 1)
    {
        kirosim::Scene scene = kirosim::ReadScene(EXAMPLES_DIR "/scenes/" + rName + ".yaml", rVariant);
        scene.seed           = seed;
        return scene;
    }

    kirosim::RunSummary Summary() const
    {
        kirosim::SummaryBuilder builder(m_scene);
        for (const kirosim::FrameRecord& rRecord : m_records)
        {
            builder.Add(rRecord);
        }
        return builder.Finish();
    }

    std::string Trace() const
    {
        std::string text = kirosim::CsvHeader();
        for (const kirosim::FrameRecord& rRecord : m_records)
        {
            text += kirosim::CsvLine(rRecord);
        }
        return text;
    }

    const kirosim::Scene& GetScene() const
    {
        return m_scene;
    }

    const std::vector<kirosim::FrameRecord>& Records() const
    {
        return m_records;
    }

    /// Lets a report see all frames. @return the report
    template <typename T> T Show(T report) const
    {
        for (size_t frame = 0; frame < m_records.size(); ++frame)
        {
            if constexpr (requires { report.AddSecond(m_seconds[frame]); })
            {
                if (!m_seconds.empty())
                {
                    report.AddSecond(m_seconds[frame]);
                }
            }
            report.Add(m_records[frame]);
        }
        return report;
    }

    /// A report of the run; it must not outlive the run.
    template <typename T> T ReportOf() const
    {
        return Show(T(m_scene));
    }

    const kirosim::FrameRecord& First() const
    {
        return m_records.front();
    }

    const kirosim::FrameRecord& Last() const
    {
        return m_records.back();
    }

    /// Log2 of the safe exposure decided at a time.
    DOUBLE SafeLog2At(DOUBLE time) const
    {
        const auto  index = static_cast<size_t>(time * m_scene.fps);
        const auto& rSafe = m_records.at(index).decided.arbitration[AECAlgoExposureSafe].exposureSet;
        return std::log2(static_cast<DOUBLE>(rSafe.exposure));
    }

private:
    VOID Run(kirosim::LoadedTuning& rTuning, const KiroTableDecorator& rDecorate)
    {
        kirosim::Simulation simulation(m_scene, rTuning, DiscardLog, rDecorate);
        simulation.Run([this](const kirosim::FrameRecord& rRecord) { m_records.push_back(rRecord); },
                       [this](const kirosim::FrameRecord& rRecord) { m_seconds.push_back(rRecord); });
    }

    kirosim::Scene                    m_scene;
    std::vector<kirosim::FrameRecord> m_records;
    std::vector<kirosim::FrameRecord> m_seconds;  ///< of the second camera, empty without one
};
