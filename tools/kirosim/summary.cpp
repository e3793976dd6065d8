#include "tools/kirosim/summary.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <span>

#include "tools/kirosim/figures/members.h"
#include "tools/kirosim/figures/movement.h"
#include "tools/kirosim/figures/ramplag.h"
#include "tools/kirosim/figures/scenechanges.h"
#include "tools/kirosim/figures/settling.h"

namespace kirosim
{

namespace
{

constexpr size_t RippleFrames = 100;

/// Once settled, convergence lets its target wander within a tuned tolerance, and metering has its noise.
constexpr DOUBLE TargetToleranceEV = 0.25;
constexpr size_t TargetFrames      = 10;

/// Means of a picture beyond which it shows nothing, EV of full scale: less than one step of 8 bits, and next to all.
constexpr DOUBLE BlackEV = -9.0;
constexpr DOUBLE WhiteEV = -0.01;

/// @return what is behind bands, as the end of a line; empty if nobody sees any
const CHAR* CauseOfBands(const RunSummary& rSummary)
{
    constexpr DOUBLE visible = 0.005;
    if (rSummary.bandingLast < visible)
    {
        return "";
    }
    return rSummary.isAntibandingAsked ? "; the light is too bright for a period of its flicker, or the tuning has no "
                                         "grid for the mains that the scene names"
                                       : "; no event of the scene sets antibanding";
}

std::string NameOf(const StepResult& rStep)
{
    const std::string what = (rStep.ev == 0.0) ? std::string("start") : fmt::format("step {:+.2f} EV", rStep.ev);
    return fmt::format("{} at {:.2f} s", what, rStep.time);
}

std::string NotSettled(const StepResult& rStep)
{
    return rStep.failure.empty() ? std::string("not settled") : "not settled, " + rStep.failure;
}

std::string FormatFaults(const RunSummary& rSummary)
{
    std::string text;
    if (!rSummary.failure.empty())
    {
        text += fmt::format("at the end {}\n", rSummary.failure);
    }
    if (!rSummary.isLegal)
    {
        text += "an exposure left the sensor's limits\n";
    }
    return text;
}

}  // namespace

SummaryBuilder::SummaryBuilder(const Scene& rScene) : m_rScene(rScene), m_isLegal(true)
{
}

VOID SummaryBuilder::Add(const FrameRecord& rRecord)
{
    m_isLegal = m_isLegal && IsLegal(rRecord);
    if (rRecord.picture.has_value() || rRecord.isPictureShown)
    {
        return;  // the summary judges the preview
    }
    const auto&  rSafe  = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet;
    const UINT64 target = rRecord.decided.metering.exposures[AECAlgoExposureSafe];
    m_samples.push_back({rRecord.sceneTime, std::log2(std::max(static_cast<DOUBLE>(rSafe.exposure), 1.0)),
                         std::log2(std::max(static_cast<DOUBLE>(target), 1.0)), m_rScene.LightEV(rRecord.sceneTime),
                         rRecord.truth.pictureEV, rRecord.truth.banding,
                         LimitOf(rRecord.decided.arbitration[AECAlgoExposureSafe], m_rScene.sensor)});
}

VOID SummaryBuilder::BeginRound()
{
    if (!m_samples.empty())
    {
        m_lastOfRoundBefore = m_samples.back();
    }
    m_samples.clear();
}

bool SummaryBuilder::IsLegal(const FrameRecord& rRecord) const
{
    constexpr DOUBLE margin  = 1e-3;
    const Sensor&    rSensor = m_rScene.sensor;
    for (const KIROArbitrationOutput& rOutput : rRecord.decided.arbitration)
    {
        const KIROExposureSetType& rSet = rOutput.exposureSet;
        const bool isGainLegal = rSet.gain >= rSensor.minGain - margin && rSet.gain <= rSensor.maxGain + margin;
        if (!isGainLegal || rSet.exposure == 0 || rSet.time < rSensor.minTime || rSet.time > rSensor.maxTime)
        {
            return false;
        }
    }
    return std::isfinite(rRecord.decided.luxIndex) && std::isfinite(rRecord.decided.convergence.compensationADRC);
}

/// @return null for the first sample of all
const SummaryBuilder::Sample* SummaryBuilder::Before(size_t index) const
{
    if (index > 0)
    {
        return &m_samples[index - 1];
    }
    return m_lastOfRoundBefore.has_value() ? &*m_lastOfRoundBefore : nullptr;
}

std::vector<SceneInstant> SummaryBuilder::Instants() const
{
    std::vector<SceneInstant> instants;
    for (const Sample& rSample : m_samples)
    {
        instants.push_back({rSample.time, rSample.lightEV, false});
    }
    return instants;
}

RunSummary SummaryBuilder::Finish() const
{
    RunSummary summary{};
    summary.isLegal = m_isLegal;
    if (m_samples.empty())
    {
        return summary;
    }

    // A step is judged up to the next change of what is seen; ramps have a measure of their own.
    std::optional<SceneInstant> before;
    if (m_lastOfRoundBefore.has_value())
    {
        before = {m_lastOfRoundBefore->time, m_lastOfRoundBefore->lightEV, false};
    }
    const std::vector<SceneSpan> spans = SpansOf(m_rScene, Instants(), before, SpanCauses::Light);
    for (const SceneSpan& rSpan : spans)
    {
        const bool isJump = rSpan.kind == SpanKind::Step && std::abs(rSpan.ev) >= StepMinEV;
        if (isJump || rSpan.kind == SpanKind::Start)
        {
            summary.steps.push_back(MeasureStep(rSpan));
        }
    }
    const size_t tail          = std::min(RippleFrames, m_samples.size());
    const auto   last          = std::span(m_samples).last(tail);
    summary.rippleEV           = SwingOf(MembersOf(last, &Sample::exposureLog2));
    summary.pictureSwingEV     = SwingOf(MembersOf(last, &Sample::pictureEV));
    summary.rampLagEV          = MeasureRampLag();
    summary.changedUntil       = ChangedUntil(spans.back());
    summary.failure            = FailureAt(0, m_samples.size());
    summary.isLampFlickering   = m_rScene.lamp.hertz > 0.0;
    summary.isAntibandingAsked = std::any_of(m_rScene.events.begin(), m_rScene.events.end(),
                                             [](const Event& rEvent) { return rEvent.antibanding.has_value(); });
    for (const Sample& rSample : last)
    {
        summary.finalErrorEV += (rSample.targetLog2 - rSample.exposureLog2) / static_cast<DOUBLE>(last.size());
        summary.bandingLast = std::max(summary.bandingLast, rSample.banding);
    }
    return summary;
}

/// Frames count from the first statistics that show the step.
StepResult SummaryBuilder::MeasureStep(const SceneSpan& rSpan) const
{
    const auto values =
        MembersOf(std::span(m_samples).subspan(rSpan.begin, rSpan.end - rSpan.begin), &Sample::exposureLog2);
    const Sample* pBefore = Before(rSpan.begin);
    StepResult    result{};
    result.time = m_samples[rSpan.begin].time;
    result.ev   = rSpan.ev;
    result.overshootEV =
        OvershootOf(values, (pBefore != nullptr) ? pBefore->exposureLog2 : values.front(), values.back());
    if (const std::optional<size_t> settled = SettledFrom(values, values.back()); settled.has_value())
    {
        result.failure = FailureAt(rSpan.begin + *settled, rSpan.end);
        if (result.failure.empty())
        {
            result.framesToSettle = static_cast<UINT32>(*settled);
        }
    }
    return result;
}

/// What is wrong with the last frames of a stretch; empty if nothing is.
std::string SummaryBuilder::FailureAt(size_t begin, size_t end) const
{
    const Sample& rLast = m_samples[end - 1];
    if (rLast.pictureEV < BlackEV || rLast.pictureEV > WhiteEV)
    {
        return fmt::format("the picture is {}, its mean {:.2f} EV of full scale",
                           (rLast.pictureEV < BlackEV) ? "black" : "white", rLast.pictureEV);
    }
    begin             = std::max(begin, (end > TargetFrames) ? end - TargetFrames : 0);
    DOUBLE distanceEV = 0.0;
    for (size_t index = begin; index < end; ++index)
    {
        distanceEV += (m_samples[index].targetLog2 - m_samples[index].exposureLog2) / static_cast<DOUBLE>(end - begin);
    }
    if (std::abs(distanceEV) <= TargetToleranceEV)
    {
        return {};
    }
    const std::string where =
        (rLast.limit == ExposureLimit::None) ? "" : fmt::format(", which is at {}", NameOf(rLast.limit));
    return fmt::format("the target is {:.2f} EV {} the exposure{}", std::abs(distanceEV),
                       (distanceEV > 0.0) ? "above" : "below", where);
}

std::optional<DOUBLE> SummaryBuilder::MeasureRampLag() const
{
    RampLag lag;
    for (const Sample& rSample : m_samples)
    {
        if (IsInRamp(m_rScene, rSample.time))
        {
            lag.AddRamp(rSample.exposureLog2, rSample.lightEV);
        }
        else
        {
            lag.AddRest(rSample.exposureLog2, rSample.lightEV);
        }
    }
    return lag.Mean();
}

/// @return none if neither light nor view has changed from one to the next of the last frames
std::optional<DOUBLE> SummaryBuilder::ChangedUntil(const SceneSpan& rLastSpan) const
{
    const size_t first = m_samples.size() - std::min(RippleFrames, m_samples.size());
    if (IsLightMoving(m_rScene, m_samples.back().time))
    {
        return m_samples.back().time;
    }
    return (rLastSpan.begin > first) ? std::optional<DOUBLE>(m_samples[rLastSpan.begin].time) : std::nullopt;
}

std::string FormatSummary(const RunSummary& rSummary)
{
    std::string text;
    for (const StepResult& rStep : rSummary.steps)
    {
        const std::string frames =
            rStep.framesToSettle.has_value()
                ? fmt::format("{} frames to settle within {:.0f} percent", *rStep.framesToSettle, SettledPercent)
                : NotSettled(rStep);
        text += fmt::format("{}: {}, overshoot {:.3f} EV\n", NameOf(rStep), frames, rStep.overshootEV);
    }
    text += fmt::format("ripple of the safe exposure, last {} frames: {:.4f} EV\n", RippleFrames, rSummary.rippleEV);
    text += fmt::format("mean distance from the metered target, last {} frames: {:.4f} EV\n", RippleFrames,
                        rSummary.finalErrorEV);
    text += fmt::format("swing of the picture, last {} frames: {:.3f} EV\n", RippleFrames, rSummary.pictureSwingEV);
    if (rSummary.changedUntil.has_value())
    {
        text += fmt::format(
            "light or view changed in the last {} frames, up to {:.2f} s: ripple and swing are not those of rest\n",
            RippleFrames, *rSummary.changedUntil);
    }
    if (rSummary.rampLagEV.has_value())
    {
        text += fmt::format("mean lag behind the ramps: {:.3f} EV\n", *rSummary.rampLagEV);
    }
    if (rSummary.isLampFlickering)
    {
        text += fmt::format("banding, last {} frames: {:.2f} percent{}\n", RippleFrames, rSummary.bandingLast * 100.0,
                            CauseOfBands(rSummary));
    }
    return text + FormatFaults(rSummary);
}

std::string FormatVerdict(const RunSummary& rSummary)
{
    std::string text;
    for (const StepResult& rStep : rSummary.steps)
    {
        text += fmt::format("{}: {}\n", NameOf(rStep),
                            rStep.framesToSettle.has_value() ? std::string("came to rest") : NotSettled(rStep));
    }
    if (rSummary.isLampFlickering && *CauseOfBands(rSummary) != '\0')
    {
        text += fmt::format("bands can be seen at the end{}\n", CauseOfBands(rSummary));
    }
    text += FormatFaults(rSummary);
    return text + "how fast, how steady, how far off: see the figures of merit below the charts\n";
}

TextNode SummaryFacts(const RunSummary& rSummary)
{
    const auto stepFacts = [](const StepResult& rStep)
    {
        return JsonObject({{"timeS", Json(rStep.time)},
                           {"stepEV", Json(rStep.ev)},
                           {"framesToSettle", Json(rStep.framesToSettle)},
                           {"failure", Json(rStep.failure)},
                           {"overshootEV", Json(rStep.overshootEV)}});
    };
    return JsonObject({{"steps", JsonList(rSummary.steps, stepFacts)},
                       {"rippleEV", Json(rSummary.rippleEV)},
                       {"distanceFromTargetEV", Json(rSummary.finalErrorEV)},
                       {"pictureSwingEV", Json(rSummary.pictureSwingEV)},
                       {"rampLagEV", Json(rSummary.rampLagEV)},
                       {"bandingPercent", Json(rSummary.bandingLast * 100.0)},
                       {"failure", Json(rSummary.failure)},
                       {"legal", Json(rSummary.isLegal)}});
}

}  // namespace kirosim
