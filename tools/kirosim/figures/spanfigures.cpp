#include "tools/kirosim/figures/spanfigures.h"

#include <algorithm>
#include <cmath>

#include "tools/kirosim/figures/kick.h"
#include "tools/kirosim/figures/members.h"
#include "tools/kirosim/figures/movement.h"
#include "tools/kirosim/figures/ramplag.h"
#include "tools/kirosim/figures/scenechanges.h"
#include "tools/kirosim/figures/settling.h"
#include "tools/kirosim/figures/tone.h"

namespace kirosim
{

namespace
{

/// Frames at the end of a stretch that say where it comes to rest.
constexpr size_t RestFrames = 10;

constexpr DOUBLE PercentOfShare = 100.0;

/// Between one line of the sensor and two.
constexpr DOUBLE LinesOfOvershoot = 1.5;

template <typename Value> std::span<const Value> Of(const std::vector<Value>& rValues, const SceneSpan& rSpan)
{
    return std::span(rValues).subspan(rSpan.begin, rSpan.end - rSpan.begin);
}

/// The end of a span.
template <typename Value> std::span<const Value> RestOf(const std::vector<Value>& rValues, const SceneSpan& rSpan)
{
    return Of(rValues, rSpan).last(std::min(RestFrames, rSpan.end - rSpan.begin));
}

}  // namespace

const CHAR* NameOf(SpanKind kind)
{
    switch (kind)
    {
    case SpanKind::Start:
        return "start";
    case SpanKind::Step:
        return "step";
    case SpanKind::Event:
        return "event";
    case SpanKind::Ramp:
        return "ramp";
    case SpanKind::Turn:
        return "turn";
    default:
        return "rest";
    }
}

SpanFigures::SpanFigures(const Scene& rScene, const std::vector<RunSample>& rSamples)
    : m_rScene(rScene), m_rSamples(rSamples), m_exposuresEV(MembersOf(std::span(rSamples), &RunSample::exposureEV)),
      m_lightsEV(MembersOf(std::span(rSamples), &RunSample::lightEV))
{
}

bool SpanFigures::IsHeldAtEnd(const SceneSpan& rSpan) const
{
    return IsHeldByUser(m_rScene, m_rSamples[rSpan.end - 1].time);
}

VOID SpanFigures::AddJump(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const
{
    if (rSpan.end - rSpan.begin < RestFrames)
    {
        return;
    }
    const std::string of        = NameOf(rSpan.kind);
    const auto        exposures = Of(m_exposuresEV, rSpan);
    if (!IsHeldAtEnd(rSpan))
    {
        const auto targets = MembersOf(RestOf(m_rSamples, rSpan), &RunSample::targetEV);
        const auto settled = SettledFrom(exposures, MeanOf(targets));
        rFigures.push_back({FigureId::Settle, of, rSpan.at,
                            settled.has_value() ? std::optional(static_cast<DOUBLE>(*settled)) : std::nullopt});
    }
    const DOUBLE overshoot =
        OvershootOf(exposures, m_rSamples[rSpan.begin].shownEV, MeanOf(RestOf(m_exposuresEV, rSpan)));
    rFigures.push_back(
        {FigureId::Overshoot, of, rSpan.at, (overshoot > LinesOfOvershoot * LineAtEnd(rSpan)) ? overshoot : 0.0});
    AddFinalError(of, rSpan, rFigures);
    AddShares(of, rSpan, rFigures);
}

VOID SpanFigures::AddFinalError(const std::string& rOf, const SceneSpan& rSpan, std::vector<Figure>& rFigures) const
{
    if (!IsHeldAtEnd(rSpan))
    {
        const auto   targets = MembersOf(RestOf(m_rSamples, rSpan), &RunSample::targetEV);
        const DOUBLE error   = std::abs(MeanOf(targets) - MeanOf(RestOf(m_exposuresEV, rSpan)));
        rFigures.push_back({FigureId::FinalError, rOf, rSpan.at, std::max(error - LineAtEnd(rSpan) / 2.0, 0.0)});
    }
}

/// What lies between two exposure times of the sensor is nobody's fault.
DOUBLE SpanFigures::LineAtEnd(const SceneSpan& rSpan) const
{
    return MeanOf(MembersOf(RestOf(m_rSamples, rSpan), &RunSample::lineEV));
}

VOID SpanFigures::AddMove(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const
{
    const std::string of = NameOf(rSpan.kind);
    if (rSpan.kind == SpanKind::Ramp)
    {
        AddLag(rSpan, rFigures);
    }
    DOUBLE distance = 0.0;
    for (size_t index = rSpan.begin; index < rSpan.end; ++index)
    {
        distance += std::abs(m_rSamples[index].targetEV - m_rSamples[index].exposureEV);
    }
    rFigures.push_back({FigureId::Distance, of, rSpan.at, distance / static_cast<DOUBLE>(rSpan.end - rSpan.begin)});
    AddKick(of, rSpan, rFigures);
    AddShares(of, rSpan, rFigures);
}

/// An exposure at a limit does not move with the light, before a ramp or in it.
VOID SpanFigures::AddLag(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const
{
    if (rSpan.begin == 0)
    {
        return;
    }
    const auto samples = std::span(m_rSamples).subspan(rSpan.begin - 1, rSpan.end - rSpan.begin + 1);
    if (std::any_of(samples.begin(), samples.end(), [](const RunSample& rSample) { return rSample.isPinned; }))
    {
        return;
    }
    RampLag lag;
    lag.AddRest(samples.front().exposureEV, samples.front().curveEV);
    for (const RunSample& rSample : samples.subspan(1))
    {
        lag.AddRamp(rSample.exposureEV, rSample.curveEV);
    }
    rFigures.push_back({FigureId::Lag, NameOf(rSpan.kind), rSpan.at, lag.Mean()});
}

VOID SpanFigures::AddStandstill(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const
{
    const auto exposures = Of(m_exposuresEV, rSpan);
    rFigures.push_back({FigureId::Ripple, StandstillName, rSpan.at, SwingOf(exposures)});
    rFigures.push_back(
        {FigureId::Swing, StandstillName, rSpan.at, SwingOf(MembersOf(Of(m_rSamples, rSpan), &RunSample::pictureEV))});
    AddKick(StandstillName, rSpan, rFigures);
    AddFinalError(StandstillName, rSpan, rFigures);
    AddRipple(rSpan, rFigures);
    if (m_rScene.lamp.hertz > 0.0)
    {
        const auto bands = MembersOf(Of(m_rSamples, rSpan), &RunSample::banding);
        rFigures.push_back({FigureId::Banding, StandstillName, rSpan.at,
                            *std::max_element(bands.begin(), bands.end()) * PercentOfShare});
    }
    AddShares(StandstillName, rSpan, rFigures);
}

VOID SpanFigures::AddKick(const std::string& rOf, const SceneSpan& rSpan, std::vector<Figure>& rFigures) const
{
    rFigures.push_back({FigureId::Kick, rOf, rSpan.at, KickOf(m_exposuresEV, m_lightsEV, rSpan.begin, rSpan.end)});
}

VOID SpanFigures::AddRipple(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const
{
    const Ripple& rRipple = m_rScene.ripple;
    if (rRipple.hertz <= 0.0 || m_rSamples[rSpan.begin].time < rRipple.start)
    {
        return;
    }
    const auto times   = MembersOf(Of(m_rSamples, rSpan), &RunSample::time);
    const auto picture = MembersOf(Of(m_rSamples, rSpan), &RunSample::pictureEV);
    const auto lights  = Of(m_lightsEV, rSpan);
    const auto left    = ToneSwing(times, picture, rRipple.hertz);
    const auto own     = ToneSwing(times, lights, rRipple.hertz);
    if (left.has_value() && own.has_value())
    {
        rFigures.push_back({FigureId::RippleLeft, StandstillName, rSpan.at, *left});
        rFigures.push_back({FigureId::RippleAdded, StandstillName, rSpan.at, *left - *own});
    }
}

VOID SpanFigures::AddShares(const std::string& rOf, const SceneSpan& rSpan, std::vector<Figure>& rFigures) const
{
    const auto exposures = Of(m_exposuresEV, rSpan);
    rFigures.push_back({FigureId::Reversals, rOf, rSpan.at, static_cast<DOUBLE>(Reversals(exposures))});
    const auto addMean = [&](FigureId id, DOUBLE RunSample::*pMember, DOUBLE factor)
    {
        const auto values = MembersOf(Of(m_rSamples, rSpan), pMember);
        rFigures.push_back({id, rOf, rSpan.at, MeanOf(values) * factor});
    };
    addMean(FigureId::Clipped, &RunSample::clipped, PercentOfShare);
    addMean(FigureId::Black, &RunSample::black, PercentOfShare);
    addMean(FigureId::Lost, &RunSample::lost, PercentOfShare);
    addMean(FigureId::Noise, &RunSample::gainEV, 1.0);
    addMean(FigureId::Motion, &RunSample::timeEV, 1.0);
    const auto pinned = MembersOf(Of(m_rSamples, rSpan), &RunSample::isPinned);
    rFigures.push_back(
        {FigureId::Pinned, rOf, rSpan.at, static_cast<DOUBLE>(std::count(pinned.begin(), pinned.end(), true))});
}

}  // namespace kirosim
