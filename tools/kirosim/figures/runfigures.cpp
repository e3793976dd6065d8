#include "tools/kirosim/figures/runfigures.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tools/kirosim/figures/delays.h"
#include "tools/kirosim/figures/overrun.h"
#include "tools/kirosim/figures/spanfigures.h"

namespace kirosim
{

namespace
{

/// Those that are known, to the last frame whose decision was seen.
std::vector<RunSample> DecidedOf(const std::vector<RunSample>& rSamples)
{
    std::vector<RunSample> decided;
    std::copy_if(rSamples.begin(), rSamples.end(), std::back_inserter(decided),
                 [](const RunSample& rSample) { return rSample.isDecided; });
    return decided;
}

SceneInstant InstantOf(const RunSample& rSample)
{
    return {rSample.time, rSample.curveEV, rSample.isStart};
}

bool IsMove(const SceneSpan& rSpan)
{
    return rSpan.kind == SpanKind::Ramp || rSpan.kind == SpanKind::Turn;
}

/// A change with all that it may still cause: what is at rest behind a move belongs to it.
SceneSpan ReachOf(const std::vector<SceneSpan>& rSpans, size_t index)
{
    SceneSpan reach = rSpans[index];
    if (IsMove(reach) && index + 1 < rSpans.size() && rSpans[index + 1].kind == SpanKind::Rest)
    {
        reach.end = rSpans[index + 1].end;
    }
    return reach;
}

}  // namespace

RunFigures::RunFigures(const Scene& rScene) : m_rScene(rScene), m_light(rScene), m_alarms(rScene)
{
}

VOID RunFigures::Add(const FrameRecord& rRecord)
{
    m_light.Advance();
    m_alarms.Add(rRecord);
    if (IsPreview(rRecord))
    {
        SetOutcome(rRecord);
        m_samples.push_back(SampleOf(rRecord, m_rScene, m_light.LeastLoss()));
    }
}

/// The exposure of a frame is what an earlier one has decided.
VOID RunFigures::SetOutcome(const FrameRecord& rRecord)
{
    const UINT64 latency = m_rScene.sensor.Delay();
    const auto   found   = std::find_if(m_samples.rbegin(), m_samples.rend(),
                                        [&](const RunSample& rSample) { return rSample.frame + latency <= rRecord.frame; });
    if (rRecord.start.has_value())
    {
        m_sessionBegin = rRecord.frame;  // what was on its way to the sensor is given up
    }
    if (found != m_samples.rend() && found->frame + latency == rRecord.frame && found->frame >= m_sessionBegin)
    {
        found->exposureEV = std::log2(rRecord.truth.exposure);
        found->isDecided  = true;
    }
}

VOID RunFigures::BeginRound()
{
    if (!m_samples.empty())
    {
        m_lastOfRoundBefore = InstantOf(m_samples.back());
    }
    m_samples.clear();
    m_alarms.BeginRound();
}

std::vector<Figure> RunFigures::Finish(std::vector<Figure> others) const
{
    std::vector<Figure>          figures;
    const std::vector<RunSample> samples = DecidedOf(m_samples);
    if (samples.empty())
    {
        return others;
    }
    std::vector<SceneInstant> frames;
    std::transform(samples.begin(), samples.end(), std::back_inserter(frames), InstantOf);
    const SpanFigures            measure(m_rScene, samples);
    const std::vector<SceneSpan> spans = SpansOf(m_rScene, frames, m_lastOfRoundBefore, SpanCauses::All);
    for (size_t index = 0; index < spans.size(); ++index)
    {
        const SceneSpan& rSpan = spans[index];
        if (IsMove(rSpan))
        {
            measure.AddMove(rSpan, figures);
        }
        else if (rSpan.kind != SpanKind::Rest)
        {
            measure.AddJump(rSpan, figures);
        }
        if (IsMove(rSpan) || rSpan.kind == SpanKind::Step)
        {
            AddDelays(m_rScene, samples, ReachOf(spans, index), NameOf(rSpan.kind), figures);
        }
        if (const auto standstill = IsMove(rSpan) ? std::nullopt : StandstillOf(rSpan, frames); standstill.has_value())
        {
            measure.AddStandstill(*standstill, figures);
        }
    }
    std::move(others.begin(), others.end(), std::back_inserter(figures));
    AddWorst(figures);
    m_alarms.AddTo(figures);
    measure.AddShares(WholeRun, {SpanKind::Rest, 0.0, 0.0, 0, samples.size()}, figures);
    return figures;
}

}  // namespace kirosim
