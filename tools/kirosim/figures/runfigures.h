/// @file
/// The figures of merit of a run, gathered frame by frame.
#pragma once

#include "tools/kirosim/figures/delayalarms.h"
#include "tools/kirosim/figures/figure.h"
#include "tools/kirosim/figures/lightwatch.h"
#include "tools/kirosim/figures/runsample.h"
#include "tools/kirosim/figures/spans.h"

namespace kirosim
{

class RunFigures
{
public:
    /// @param rScene must outlive this object
    explicit RunFigures(const Scene& rScene);

    /// Whether the frame that is added next has to be looked at before.
    bool IsViewDue(const FrameRecord& rRecord) const
    {
        return m_light.IsViewDue(rRecord.sceneTime);
    }

    VOID Look(const FrameRecord& rRecord, const SensorView& rView)
    {
        m_light.Look(rRecord.sceneTime, rView);
    }

    VOID Add(const FrameRecord& rRecord);

    /// The scene starts again: frames so far are forgotten, but for the last one.
    VOID BeginRound();

    /// Figures of the stretches in ascending time, and those of the run behind them.
    /// @param others of features of the scene, to be counted in
    std::vector<Figure> Finish(std::vector<Figure> others) const;

private:
    VOID SetOutcome(const FrameRecord& rRecord);

    const Scene&                m_rScene;
    LightWatch                  m_light;
    DelayAlarms                 m_alarms;
    std::vector<RunSample>      m_samples;
    UINT64                      m_sessionBegin = 0;   ///< first frame of the session
    std::optional<SceneInstant> m_lastOfRoundBefore;  ///< none in the first round
};

}  // namespace kirosim
