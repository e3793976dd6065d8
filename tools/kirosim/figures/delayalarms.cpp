#include "tools/kirosim/figures/delayalarms.h"

#include <algorithm>
#include <cmath>

#include "tools/kirosim/figures/overrun.h"

namespace kirosim
{

namespace
{

/// A change of the exposure that tells the delay, EV, if it is as fast as that, s.
constexpr DOUBLE ChangeEV   = 1.0;
constexpr DOUBLE ChangeTime = 1.0;

/// Exposures come in steps.
constexpr DOUBLE ExposureStepEV = 0.02;

}  // namespace

VOID DelayAlarms::Add(const FrameRecord& rRecord)
{
    const UINT8 trueDelay = m_rScene.sensor.Delay();
    if (!m_changeFrame.has_value() && IsChange(rRecord))
    {
        m_changeFrame = rRecord.frame;
    }
    if (rRecord.delay.seen != m_seen)
    {
        m_falseAlarms += (rRecord.delay.seen.value_or(trueDelay) != trueDelay) ? 1 : 0;
        m_seen = rRecord.delay.seen;
    }
    if (!m_foundFrame.has_value() && m_seen == trueDelay)
    {
        m_foundFrame = rRecord.frame;
    }
}

bool DelayAlarms::IsChange(const FrameRecord& rRecord)
{
    const DOUBLE ev = std::log2(rRecord.truth.exposure);
    while (!m_lastSecond.empty() && m_lastSecond.front().time < rRecord.sceneTime - ChangeTime)
    {
        m_lastSecond.pop_front();
    }
    const auto isFar = [ev](const Shown& rShown) { return std::abs(rShown.ev - ev) >= ChangeEV - ExposureStepEV; };
    const bool isAny = std::any_of(m_lastSecond.begin(), m_lastSecond.end(), isFar);
    m_lastSecond.push_back({rRecord.sceneTime, ev});
    return isAny;
}

VOID DelayAlarms::BeginRound()
{
    m_lastSecond.clear();
    m_changeFrame.reset();
    m_foundFrame.reset();
    m_falseAlarms = 0;
}

VOID DelayAlarms::AddTo(std::vector<Figure>& rFigures) const
{
    if (m_rScene.sensor.delayError != 0 && m_changeFrame.has_value())
    {
        std::optional<DOUBLE> frames;
        if (m_foundFrame.has_value())
        {
            frames = static_cast<DOUBLE>(*m_foundFrame - std::min(*m_foundFrame, *m_changeFrame));
        }
        rFigures.push_back({FigureId::DelayFound, WholeRun, 0.0, frames});
    }
    rFigures.push_back({FigureId::FalseAlarms, WholeRun, 0.0, static_cast<DOUBLE>(m_falseAlarms)});
}

}  // namespace kirosim
