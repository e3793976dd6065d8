#include "tools/kirosim/outsidereport.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace kirosim
{

namespace
{

/// Frames that the exposure has to follow a change of state before it is judged.
constexpr size_t FollowFrames = 20;

constexpr DOUBLE SettledEV = 0.0704;  // 5 percent

DOUBLE SafeLog2(const FrameRecord& rRecord)
{
    const UINT64 exposure = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet.exposure;
    return std::log2(std::max(static_cast<DOUBLE>(exposure), 1.0));
}

}  // namespace

TrackingReport::TrackingReport(const Scene& rScene) : m_rScene(rScene)
{
}

VOID TrackingReport::Add(const FrameRecord& rRecord)
{
    Sample sample{rRecord.sceneTime, rRecord.outside.trackedCells > 0, std::nullopt, SafeLog2(rRecord)};
    if (rRecord.truth.objectLuma.has_value())
    {
        sample.subjectEV = std::log2(std::max(*rRecord.truth.objectLuma, 0.1) / m_rScene.map->targetLuma);
    }
    const bool wasTracking = !m_samples.empty() && m_samples.back().isTracking;
    if (sample.isTracking != wasTracking)
    {
        m_changes.push_back({rRecord.frame, rRecord.sceneTime, sample.isTracking});
    }
    m_samples.push_back(sample);
}

std::optional<DOUBLE> TrackingReport::SubjectErrorEV(bool isTracking) const
{
    DOUBLE sum   = 0.0;
    UINT32 count = 0;
    size_t since = 0;  // the last change of state or of the subject's presence
    for (size_t index = 1; index < m_samples.size(); ++index)
    {
        const Sample& rSample = m_samples[index];
        const Sample& rBefore = m_samples[index - 1];
        if (rSample.isTracking != rBefore.isTracking || rSample.subjectEV.has_value() != rBefore.subjectEV.has_value())
        {
            since = index;
        }
        if (rSample.isTracking == isTracking && rSample.subjectEV.has_value() && index >= since + FollowFrames)
        {
            sum += std::abs(*rSample.subjectEV);
            ++count;
        }
    }
    return (count > 0) ? std::optional<DOUBLE>(sum / count) : std::nullopt;
}

std::optional<UINT32> TrackingReport::FramesToRecover() const
{
    if (m_changes.empty() || m_changes.back().isTracking)
    {
        return std::nullopt;
    }
    const auto isSince = [this](const Sample& rSample) { return rSample.time >= m_changes.back().time; };
    const auto end     = std::find_if(m_samples.begin(), m_samples.end(), isSince);
    const auto gone    = static_cast<size_t>(end - m_samples.begin());
    size_t     settled = m_samples.size();
    while (settled > gone && std::abs(m_samples[settled - 1].exposureLog2 - m_samples.back().exposureLog2) <= SettledEV)
    {
        --settled;
    }
    return static_cast<UINT32>(settled - gone);
}

std::string TrackingReport::Format() const
{
    std::string text;
    for (const State& rState : m_changes)
    {
        text += fmt::format("{} from {:.2f} s on (frame {})\n", rState.isTracking ? "tracking" : "standing by",
                            rState.time, rState.frame);
    }
    for (const bool isTracking : {false, true})
    {
        if (const std::optional<DOUBLE> error = SubjectErrorEV(isTracking); error.has_value())
        {
            text += fmt::format("subject {} tracking: {:.2f} EV from luma {:.0f} on average\n",
                                isTracking ? "with" : "without", *error, m_rScene.map->targetLuma);
        }
    }
    if (const std::optional<UINT32> frames = FramesToRecover(); frames.has_value())
    {
        text += fmt::format("recovery once nothing is tracked: {} frames\n", *frames);
    }
    return text;
}

TextItem TrackingReport::Facts() const
{
    const auto changeFacts = [](const State& rState)
    {
        return JsonObject(
            {{"tracking", Json(rState.isTracking)}, {"timeS", Json(rState.time)}, {"frame", Json(rState.frame)}});
    };
    return {"tracking", JsonObject({{"changes", JsonList(m_changes, changeFacts)},
                                    {"targetLuma", Json(m_rScene.map->targetLuma)},
                                    {"subjectErrorWithoutEV", Json(SubjectErrorEV(false))},
                                    {"subjectErrorWithEV", Json(SubjectErrorEV(true))},
                                    {"framesToRecover", Json(FramesToRecover())}})};
}

ShakeReport::ShakeReport(const Scene& rScene) : m_rScene(rScene)
{
}

bool ShakeReport::IsChangeBetween(DOUBLE before, DOUBLE after) const
{
    return std::any_of(m_rScene.gyro.begin(), m_rScene.gyro.end(),
                       [&](const GyroPoint& rPoint) { return rPoint.time > before && rPoint.time <= after; });
}

VOID ShakeReport::Add(const FrameRecord& rRecord)
{
    constexpr DOUBLE           nsPerMs = 1e6;
    const KIROExposureSetType& rSafe   = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet;
    if (m_last.has_value() && IsChangeBetween(m_last->time, rRecord.sceneTime))
    {
        m_moments.push_back(*m_last);
    }
    m_last = Moment{rRecord.sceneTime, rRecord.outside.gyro, static_cast<DOUBLE>(rSafe.time) / nsPerMs, rSafe.gain,
                    SafeLog2(rRecord)};
}

std::vector<ShakeReport::Moment> ShakeReport::Moments() const
{
    std::vector<Moment> moments = m_moments;
    if (m_last.has_value())
    {
        moments.push_back(*m_last);
    }
    return moments;
}

std::string ShakeReport::Format() const
{
    std::string               text;
    const std::vector<Moment> moments = Moments();
    for (const Moment& rMoment : moments)
    {
        text += fmt::format("at {:.2f} s, shake {:.2f} rad/s: time {:.2f} ms, gain {:.2f}, exposure {:+.3f} EV against "
                            "the first\n",
                            rMoment.time, rMoment.gyro, rMoment.timeMs, rMoment.gain,
                            rMoment.exposureLog2 - moments.front().exposureLog2);
    }
    return text;
}

TextItem ShakeReport::Facts() const
{
    const std::vector<Moment> moments = Moments();
    return {"shake",
            JsonList(moments,
                     [&](const Moment& rMoment)
                     {
                         return JsonObject({{"timeS", Json(rMoment.time)},
                                            {"shakeRadPerS", Json(rMoment.gyro)},
                                            {"exposureTimeMs", Json(rMoment.timeMs)},
                                            {"gain", Json(rMoment.gain)},
                                            {"exposureEV", Json(rMoment.exposureLog2 - moments.front().exposureLog2)}});
                     })};
}

}  // namespace kirosim
