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

/// What is said of the second camera names it.
std::vector<Figure> OfSecondCamera(std::vector<Figure> figures)
{
    for (Figure& rFigure : figures)
    {
        rFigure.subject += rFigure.subject.empty() ? "camera 2" : ", camera 2";
    }
    return figures;
}

}  // namespace

RunReport::RunReport(const Scene& rScene, bool isMeasured)
    : m_rScene(rScene), m_builder(rScene), m_reports(ReportsOf(rScene)), m_frames(0), m_rounds(0)
{
    if (isMeasured)
    {
        m_figures.emplace(rScene);
    }
    if (isMeasured && rScene.pSecond != nullptr)
    {
        m_secondFigures.emplace(*rScene.pSecond);
    }
}

VOID RunReport::Add(const FrameRecord& rRecord)
{
    m_roundLines.clear();
    m_control.Add(rRecord.decided);
    m_builder.Add(rRecord);
    if (m_figures.has_value())
    {
        m_figures->Add(rRecord);
    }
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
    if (m_secondFigures.has_value())
    {
        m_secondFigures->Add(rRecord);
    }
    for (const auto& pReport : m_reports)
    {
        pReport->AddSecond(rRecord);
    }
}

VOID RunReport::ShowTo(std::optional<RunFigures>& rFigures, const FrameRecord& rRecord, const Camera& rCamera)
{
    if (rFigures.has_value() && rFigures->IsViewDue(rRecord))
    {
        rFigures->Look(rRecord, rCamera.View());
    }
}

VOID RunReport::EndRound()
{
    ++m_rounds;
    m_lastRound   = m_builder.Finish();
    m_lastFigures = RoundFigures();
    m_lastReports = std::move(m_reports);
    m_roundLines  = FormatRoundSteps(m_rounds, m_lastRound->steps);
    m_builder.BeginRound();
    if (m_figures.has_value())
    {
        m_figures->BeginRound();
    }
    if (m_secondFigures.has_value())
    {
        m_secondFigures->BeginRound();
    }
    m_reports = ReportsOf(m_rScene);
    m_frames  = 0;
}

std::vector<Figure> RunReport::RoundFigures() const
{
    std::vector<Figure> others;
    for (const auto& pReport : m_reports)
    {
        const std::vector<Figure> figures = pReport->Figures();
        others.insert(others.end(), figures.begin(), figures.end());
    }
    std::vector<Figure> all = m_figures.has_value() ? m_figures->Finish(std::move(others)) : std::vector<Figure>();
    if (m_secondFigures.has_value())
    {
        const std::vector<Figure> second = OfSecondCamera(m_secondFigures->Finish({}));
        all.insert(all.end(), second.begin(), second.end());
    }
    return all;
}

std::vector<Figure> RunReport::Figures() const
{
    return m_lastRound.has_value() ? m_lastFigures : RoundFigures();
}

bool RunReport::HasControlled() const
{
    return m_control.HasControlled() && (m_rScene.pSecond == nullptr || m_secondControl.HasControlled());
}

std::string RunReport::Format() const
{
    return FormatWith(FormatSummary(Summary()));
}

std::string RunReport::FormatBesideFigures() const
{
    return FormatWith(FormatVerdict(Summary()));
}

std::string RunReport::FormatWith(const std::string& rSummary) const
{
    const std::string control =
        m_control.Format("") + ((m_rScene.pSecond != nullptr) ? m_secondControl.Format("second camera, ") : "");
    std::string text = control + rSummary;
    for (const auto& pReport : PresentReports())
    {
        text += pReport->Format();
    }
    return text;
}

TextNode RunReport::Facts() const
{
    TextNode facts = SummaryFacts(Summary());
    facts.Add("noControl", Json(m_control.Fault()));
    if (m_rScene.pSecond != nullptr)
    {
        facts.Add("secondNoControl", Json(m_secondControl.Fault()));
    }
    for (const auto& pReport : PresentReports())
    {
        TextItem item = pReport->Facts();
        facts.Add(std::move(item.name), std::move(item.value));
    }
    if (m_figures.has_value())
    {
        facts.Add("figures", FigureFacts(Figures()));
    }
    return facts;
}

}  // namespace kirosim
