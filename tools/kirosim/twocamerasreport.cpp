#include "tools/kirosim/twocamerasreport.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace kirosim
{

namespace
{

/// Frames at the end of a stretch whose means are reported.
constexpr size_t TailFrames = 10;

DOUBLE Log2Of(UINT64 exposure)
{
    return std::log2(std::max(static_cast<DOUBLE>(exposure), 1.0));
}

const CHAR* NameOf(StatsAlgoRole role)
{
    return (role == StatsAlgoRoleMaster) ? "master" : (role == StatsAlgoRoleSlave) ? "slave" : "alone";
}

/// The role of a camera once the events up to a time have happened.
StatsAlgoRole RoleAt(const Scene& rScene, bool isSecond, DOUBLE time)
{
    StatsAlgoRole role = isSecond ? rScene.pSecond->camera.role : rScene.camera.role;
    for (const Event& rEvent : rScene.events)
    {
        if (rEvent.time <= time && rEvent.isForSecond == isSecond && rEvent.role.has_value())
        {
            role = *rEvent.role;
        }
    }
    return role;
}

/// Times at which roles, tuning, light or its colour change, in order.
std::vector<DOUBLE> ChangesOf(const Scene& rScene)
{
    std::vector<DOUBLE> times;
    for (const Event& rEvent : rScene.events)
    {
        if (rEvent.role.has_value() || !rEvent.modes.empty() || rEvent.CCT.has_value())
        {
            times.push_back(rEvent.time);
        }
    }
    for (const LightPoint& rPoint : rScene.light)
    {
        if (!rPoint.isRamp)
        {
            times.push_back(rPoint.time);
        }
    }
    std::sort(times.begin(), times.end());
    return times;
}

template <typename Samples, typename Value>
DOUBLE MeanOfTail(const Samples& rSamples, size_t begin, size_t end, Value&& value)
{
    const size_t first = std::max(begin, (end > TailFrames) ? end - TailFrames : 0);
    DOUBLE       sum   = 0.0;
    for (size_t index = first; index < end; ++index)
    {
        sum += value(rSamples[index]);
    }
    return sum / static_cast<DOUBLE>(end - first);
}

}  // namespace

TwoCamerasReport::TwoCamerasReport(const Scene& rScene) : m_rScene(rScene)
{
}

TwoCamerasReport::Sample TwoCamerasReport::Keep(const FrameRecord& rRecord, bool isSecond) const
{
    const KIROMeteringOutput& rMetering = rRecord.decided.metering;
    return {rRecord.sceneTime,
            rRecord.sceneTime + 1.0 / rRecord.fps,
            rRecord.truth.pictureEV,
            Log2Of(rMetering.mtrExposures[AECAlgoExposureSafe]),
            Log2Of(rMetering.exposures[AECAlgoExposureSafe]),
            rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet.time,
            rRecord.decided.convergence.bIsConvTargetFixed == TRUE && rMetering.bIsMeteringSkipped == FALSE,
            RoleAt(m_rScene, isSecond, rRecord.sceneTime)};
}

VOID TwoCamerasReport::Add(const FrameRecord& rRecord)
{
    m_samples[0].push_back(Keep(rRecord, false));
}

VOID TwoCamerasReport::AddSecond(const FrameRecord& rRecord)
{
    m_samples[1].push_back(Keep(rRecord, true));
}

std::vector<PairPhase> TwoCamerasReport::Phases() const
{
    std::vector<PairPhase> phases;
    const size_t           count = std::min(m_samples[0].size(), m_samples[1].size());
    size_t                 begin = 0;
    for (const DOUBLE change : ChangesOf(m_rScene))
    {
        size_t end = begin;
        while (end < count && m_samples[0][end].time < change)
        {
            ++end;
        }
        if (end > begin)
        {
            phases.push_back(Measure(begin, end));
        }
        begin = end;
    }
    if (count > begin)
    {
        phases.push_back(Measure(begin, count));
    }
    return phases;
}

PairPhase TwoCamerasReport::Measure(size_t begin, size_t end) const
{
    const std::vector<Sample>& rFirst  = m_samples[0];
    const std::vector<Sample>& rSecond = m_samples[1];

    PairPhase phase{};
    phase.start = rFirst[begin].time;
    phase.end   = rFirst[end - 1].end;
    for (size_t camera = 0; camera < m_samples.size(); ++camera)
    {
        phase.cameras[camera] = MeasureCamera(m_samples[camera], begin, end);
    }
    const auto metered        = [](const Sample& rSample) { return rSample.meteredLog2; };
    phase.pictureDifferenceEV = phase.cameras[1].pictureEV - phase.cameras[0].pictureEV;
    phase.targetDifferenceEV  = MeanOfTail(rSecond, begin, end, metered) - MeanOfTail(rFirst, begin, end, metered);
    phase.exposureTimeDifference =
        static_cast<DOUBLE>(phase.cameras[1].time) - static_cast<DOUBLE>(phase.cameras[0].time);
    // A change at the beginning shows once the decisions have reached the sensor.
    for (size_t index = std::max<size_t>(begin, 1); index < end; ++index)
    {
        for (const std::vector<Sample>& rSamples : m_samples)
        {
            phase.largestPictureStepEV = std::max(phase.largestPictureStepEV,
                                                  std::abs(rSamples[index].pictureEV - rSamples[index - 1].pictureEV));
        }
    }
    return phase;
}

CameraPhase TwoCamerasReport::MeasureCamera(const std::vector<Sample>& rSamples, size_t begin, size_t end) const
{
    CameraPhase phase{};
    phase.role      = rSamples[begin].role;
    phase.time      = rSamples[end - 1].exposureTime;
    phase.pictureEV = MeanOfTail(rSamples, begin, end, [](const Sample& rSample) { return rSample.pictureEV; });
    phase.mixEV =
        MeanOfTail(rSamples, begin, end, [](const Sample& rSample) { return rSample.mixedLog2 - rSample.meteredLog2; });
    phase.framesHeld = static_cast<UINT32>(std::count_if(rSamples.begin() + static_cast<ptrdiff_t>(begin),
                                                         rSamples.begin() + static_cast<ptrdiff_t>(end),
                                                         [](const Sample& rSample) { return rSample.isHeld; }));
    return phase;
}

std::string TwoCamerasReport::Format() const
{
    constexpr DOUBLE nsPerMs = 1e6;
    std::string      text;
    for (const PairPhase& rPhase : Phases())
    {
        const CameraPhase& rFirst  = rPhase.cameras[0];
        const CameraPhase& rSecond = rPhase.cameras[1];
        text += fmt::format("pair, {:.2f} s to {:.2f} s: first {}, second {}\n", rPhase.start, rPhase.end,
                            NameOf(rFirst.role), NameOf(rSecond.role));
        text += fmt::format(
            "  pictures: {:.3f} and {:.3f} EV of full scale, second against first {:+.3f} EV, largest step {:.3f} EV\n",
            rFirst.pictureEV, rSecond.pictureEV, rPhase.pictureDifferenceEV, rPhase.largestPictureStepEV);
        text += fmt::format("  metered target of the second against the first: {:+.3f} EV; mixing moves the first by "
                            "{:+.3f} EV, the second by {:+.3f} EV\n",
                            rPhase.targetDifferenceEV, rFirst.mixEV, rSecond.mixEV);
        text += fmt::format("  exposure times: {:.3f} ms and {:.3f} ms, difference {:+.3f} ms\n",
                            static_cast<DOUBLE>(rFirst.time) / nsPerMs, static_cast<DOUBLE>(rSecond.time) / nsPerMs,
                            rPhase.exposureTimeDifference / nsPerMs);
        if (rFirst.framesHeld + rSecond.framesHeld > 0)
        {
            text += fmt::format("  exposure held for {} frames by the first, {} by the second\n", rFirst.framesHeld,
                                rSecond.framesHeld);
        }
    }
    return text;
}

TextItem TwoCamerasReport::Facts() const
{
    const auto cameraFacts = [](const CameraPhase& rCamera)
    {
        return JsonObject({{"role", Json(NameOf(rCamera.role))},
                           {"pictureEV", Json(rCamera.pictureEV)},
                           {"mixEV", Json(rCamera.mixEV)},
                           {"exposureTimeNs", Json(rCamera.time)},
                           {"framesHeld", Json(rCamera.framesHeld)}});
    };
    const auto phaseFacts = [&](const PairPhase& rPhase)
    {
        return JsonObject({{"startS", Json(rPhase.start)},
                           {"endS", Json(rPhase.end)},
                           {"cameras", JsonList(rPhase.cameras, cameraFacts)},
                           {"pictureDifferenceEV", Json(rPhase.pictureDifferenceEV)},
                           {"targetDifferenceEV", Json(rPhase.targetDifferenceEV)},
                           {"exposureTimeDifferenceNs", Json(rPhase.exposureTimeDifference)},
                           {"largestPictureStepEV", Json(rPhase.largestPictureStepEV)}});
    };
    return {"pair", JsonList(Phases(), phaseFacts)};
}

std::vector<Figure> TwoCamerasReport::Figures() const
{
    std::vector<Figure> figures;
    for (const PairPhase& rPhase : Phases())
    {
        figures.push_back({FigureId::PairDifference, "pair", rPhase.start, std::abs(rPhase.pictureDifferenceEV)});
    }
    return figures;
}

}  // namespace kirosim
