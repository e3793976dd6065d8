#include "tools/kirosim/runreport.h"

#include <fmt/format.h>

namespace kirosim
{

namespace
{

std::string FormatRoundSteps(UINT64 round, const std::vector<StepResult>& rSteps)
{
    std::string text;
    for (const StepResult& rStep : rSteps)
    {
        if (rStep.ev == 0.0)
        {
            continue;  // the cold start
        }
        const std::string result = rStep.framesToSettle.has_value()
                                       ? fmt::format("settled after {} frames", *rStep.framesToSettle)
                                       : std::string("not settled");
        text += fmt::format("round {}: step {:+.1f} EV at {:.1f} s: {}\n", round, rStep.ev, rStep.time, result);
    }
    return text;
}

}  // namespace

RunReport::RunReport(const Scene& rScene)
    : m_rScene(rScene), m_builder(rScene), m_reports(ReportsOf(rScene)), m_frames(0), m_rounds(0)
{
}

VOID RunReport::Add(const FrameRecord& rRecord)
{
    m_roundLines.clear();
    m_control.Add(rRecord.decided);
    m_builder.Add(rRecord);
    for (const auto& pReport : m_reports)
    {
        pReport->Add(rRecord);
    }
    if (++m_frames == m_rScene.frames)
    {
        EndRound();
    }
}

VOID RunReport::AddSecond(const FrameRecord& rRecord)
{
    m_secondControl.Add(rRecord.decided);
    for (const auto& pReport : m_reports)
    {
        pReport->AddSecond(rRecord);
    }
}

VOID RunReport::EndRound()
{
    ++m_rounds;
    m_lastRound   = m_builder.Finish();
    m_lastReports = FormatReports();
    m_roundLines  = FormatRoundSteps(m_rounds, m_lastRound->steps);
    m_builder.BeginRound();
    m_reports = ReportsOf(m_rScene);
    m_frames  = 0;
}

std::string RunReport::FormatReports() const
{
    std::string text;
    for (const auto& pReport : m_reports)
    {
        text += pReport->Format();
    }
    return text;
}

bool RunReport::HasControlled() const
{
    return m_control.HasControlled() && (m_rScene.pSecond == nullptr || m_secondControl.HasControlled());
}

std::string RunReport::Format() const
{
    const std::string control =
        m_control.Format("") + ((m_rScene.pSecond != nullptr) ? m_secondControl.Format("second camera, ") : "");
    return control + (m_lastRound.has_value() ? FormatSummary(*m_lastRound) + m_lastReports
                                              : FormatSummary(m_builder.Finish()) + FormatReports());
}

}  // namespace kirosim
