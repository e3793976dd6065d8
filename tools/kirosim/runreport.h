/// @file
/// What a run prints beside its table, round by round for a scene that repeats.
#pragma once

#include "tools/kirosim/controlcheck.h"
#include "tools/kirosim/figures/runfigures.h"
#include "tools/kirosim/report.h"
#include "tools/kirosim/summary.h"

namespace kirosim
{

/// Keeps the frames of the present round and the results of the last full one, however long the run.
class RunReport
{
public:
    /// @param rScene     must outlive the report
    /// @param isMeasured whether figures of merit are wanted
    explicit RunReport(const Scene& rScene, bool isMeasured = false);

    VOID Add(const FrameRecord& rRecord);

    /// Sees each frame of the second camera, before the first one's of the same time.
    VOID AddSecond(const FrameRecord& rRecord);

    /// Shows the figures what a frame of a camera sees, if they need it: before the frame is added.
    VOID Show(const FrameRecord& rRecord, const Camera& rCamera)
    {
        ShowTo(m_figures, rRecord, rCamera);
    }

    /// The same for the second camera.
    VOID ShowSecond(const FrameRecord& rRecord, const Camera& rCamera)
    {
        ShowTo(m_secondFigures, rRecord, rCamera);
    }

    /// One line per step of the light in the round that the last frame has ended; empty within a round.
    const std::string& RoundLines() const
    {
        return m_roundLines;
    }

    /// Summary of the last full round; none before its end.
    const std::optional<RunSummary>& LastRound() const
    {
        return m_lastRound;
    }

    /// Whether each camera has controlled its exposure in any frame.
    bool HasControlled() const;

    /// Summary and reports of the last full round; of the frames that there are if no round is full.
    std::string Format() const;

    /// The same for a reader who has the figures beside it, which count otherwise: their numbers are left out.
    std::string FormatBesideFigures() const;

    /// The same for scripts, as one object, with the figures of merit.
    TextNode Facts() const;

    /// Of the last full round; of the frames that there are if no round is full. None unless they are wanted.
    std::vector<Figure> Figures() const;

private:
    using Reports = std::vector<std::unique_ptr<Report>>;

    VOID EndRound();

    static VOID ShowTo(std::optional<RunFigures>& rFigures, const FrameRecord& rRecord, const Camera& rCamera);

    /// @param rSummary the lines on the control of exposure
    std::string FormatWith(const std::string& rSummary) const;

    std::vector<Figure> RoundFigures() const;

    RunSummary Summary() const
    {
        return m_lastRound.has_value() ? *m_lastRound : m_builder.Finish();
    }

    const Reports& PresentReports() const
    {
        return m_lastRound.has_value() ? m_lastReports : m_reports;
    }

    const Scene&              m_rScene;
    SummaryBuilder            m_builder;
    Reports                   m_reports;
    ControlCheck              m_control;  ///< of the first camera, in all rounds
    ControlCheck              m_secondControl;
    UINT32                    m_frames;  ///< of the present round
    UINT64                    m_rounds;  ///< full ones
    std::string               m_roundLines;
    std::optional<RunSummary> m_lastRound;
    Reports                   m_lastReports;
    std::optional<RunFigures> m_figures;        ///< none unless they are wanted
    std::optional<RunFigures> m_secondFigures;  ///< of the second camera; none without it
    std::vector<Figure>       m_lastFigures;
};

}  // namespace kirosim
