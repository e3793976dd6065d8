#include "tools/kirosim/moments.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "tools/tuningfile/modepath.h"

namespace kirosim
{

namespace
{

constexpr DOUBLE NsPerMillisecond = 1e6;

VOID AddLight(const Scene& rScene, std::vector<Moment>& rMoments)
{
    DOUBLE time = 0.0;
    DOUBLE ev   = 0.0;
    for (const LightPoint& rPoint : rScene.light)
    {
        if (rPoint.ev != ev)
        {
            rMoments.push_back({rPoint.isRamp ? time : rPoint.time,
                                fmt::format("light {:+.4g} EV{}", rPoint.ev - ev,
                                            rPoint.isRamp ? fmt::format(" up to {:.4g} s", rPoint.time) : "")});
        }
        time = rPoint.time;
        ev   = rPoint.ev;
    }
}

/// @return empty for two points of one direction
std::string TurnWords(const TurnPoint& rFrom, const TurnPoint& rTo)
{
    const DOUBLE             yaw   = rTo.yaw - rFrom.yaw;
    const DOUBLE             pitch = rTo.pitch - rFrom.pitch;
    std::vector<std::string> ways;
    if (yaw != 0.0)
    {
        ways.push_back(fmt::format("{:.4g} degrees {}", std::abs(yaw), (yaw > 0.0) ? "right" : "left"));
    }
    if (pitch != 0.0)
    {
        ways.push_back(fmt::format("{:.4g} degrees {}", std::abs(pitch), (pitch > 0.0) ? "up" : "down"));
    }
    return ways.empty() ? "" : fmt::format("turn {} until {:.4g} s", fmt::join(ways, ", "), rTo.time);
}

VOID AddPanorama(const PanoramaScene& rPanorama, std::vector<Moment>& rMoments)
{
    for (size_t index = 1; index < rPanorama.path.size(); ++index)
    {
        const std::string words = TurnWords(rPanorama.path[index - 1], rPanorama.path[index]);
        if (!words.empty())
        {
            rMoments.push_back({rPanorama.path[index - 1].time, words});
        }
    }
    for (const PanoramaCut& rCut : rPanorama.cuts)
    {
        rMoments.push_back(
            {rCut.time,
             fmt::format("another place{}{}", rCut.lux.has_value() ? fmt::format(" of {:.4g} lux", *rCut.lux) : "",
                         (rCut.fade > 0.0) ? fmt::format(" within {:.4g} s", rCut.fade) : "")});
    }
}

std::string ManualWords(const AECAlgoManualSetting& rManual)
{
    switch (rManual.manualMode)
    {
    case AECAlgoModeManualISO:
        return fmt::format("ISO {} by hand", rManual.ISOValue);
    case AECAlgoModeManualGain:
        return fmt::format("gain {:.4g} by hand", rManual.gain);
    case AECAlgoModeManualExpTime:
        return fmt::format("{:.4g} ms by hand", static_cast<DOUBLE>(rManual.exposureTime) / NsPerMillisecond);
    case AECAlgoModeManualFull:
        return fmt::format("gain {:.4g} and {:.4g} ms by hand", rManual.gain,
                           static_cast<DOUBLE>(rManual.exposureTime) / NsPerMillisecond);
    default:
        return "automatic";
    }
}

const CHAR* AntibandingWords(StatisticsAntibanding mode)
{
    switch (mode)
    {
    case StatisticsAntibanding50Hz:
        return "antibanding 50 Hz";
    case StatisticsAntibanding60Hz:
        return "antibanding 60 Hz";
    default:
        return "antibanding off";
    }
}

const CHAR* HDRWords(AECAlgoHDRType type)
{
    switch (type)
    {
    case SensorHDR:
        return "HDR in the sensor";
    case StaggeredHDR:
        return "staggered HDR";
    case MultiframeHDR:
        return "multi-frame HDR";
    default:
        return "HDR off";
    }
}

const CHAR* LEDWords(AECAlgoLEDModeType mode)
{
    switch (mode)
    {
    case AECAlgoLEDModeOn:
        return "LED on";
    case AECAlgoLEDModeAuto:
        return "LED auto";
    default:
        return "LED off";
    }
}

const CHAR* RoleWords(StatsAlgoRole role)
{
    switch (role)
    {
    case StatsAlgoRoleMaster:
        return "master";
    case StatsAlgoRoleSlave:
        return "slave";
    default:
        return "alone";
    }
}

std::string ModeWords(const std::vector<TuningMode>& rModes)
{
    std::string words = "modes";
    for (const TuningMode& rMode : rModes)
    {
        if (rMode.subMode.value != 0)
        {
            words += ' ' + tuningfile::FormatModeName({static_cast<UINT16>(rMode.mode), rMode.subMode.value});
        }
    }
    return (words == "modes") ? "mode Default" : words;
}

/// Appends what a member says, if the event has it.
template <typename Value, typename ToWords>
VOID AddWords(const std::optional<Value>& rValue, std::vector<std::string>& rWords, ToWords&& toWords)
{
    if (rValue.has_value())
    {
        rWords.push_back(toWords(*rValue));
    }
}

std::string WordsOf(const Event& rEvent)
{
    std::vector<std::string> words;
    AddWords(rEvent.ev, words, [](INT32 steps) { return fmt::format("EV {:+} steps", steps); });
    AddWords(rEvent.lock, words, [](bool isLocked) { return isLocked ? "lock" : "lock released"; });
    AddWords(rEvent.touch, words, [](const AECAlgoROI&) { return "touch"; });
    if (rEvent.isTouchEnd)
    {
        words.emplace_back("touch ends");
    }
    AddWords(rEvent.antibanding, words, AntibandingWords);
    AddWords(rEvent.fps, words,
             [](const AECAlgoFPSRange& rRange)
             { return fmt::format("{:.4g} to {:.4g} frames per second", rRange.minimumFPS, rRange.maximumFPS); });
    AddWords(rEvent.manual, words, ManualWords);
    AddWords(rEvent.hdr, words, HDRWords);
    if (!rEvent.modes.empty())
    {
        words.push_back(ModeWords(rEvent.modes));
    }
    AddWords(rEvent.bracket, words,
             [](const BracketRequest& rSteps) { return fmt::format("bracket of {} pictures", rSteps.size()); });
    AddWords(rEvent.LEDMode, words, LEDWords);
    AddWords(rEvent.role, words, RoleWords);
    AddWords(rEvent.start, words, [](const StartPlan&) { return "new session"; });
    AddWords(rEvent.CCT, words, [](DOUBLE CCT) { return fmt::format("light of {:.0f} K", CCT); });
    return fmt::format("{}{}", rEvent.isForSecond ? "second camera: " : "", fmt::join(words, ", "));
}

}  // namespace

std::vector<Moment> MomentsOf(const Scene& rScene)
{
    std::vector<Moment> moments;
    AddLight(rScene, moments);
    if (rScene.panorama.has_value())
    {
        AddPanorama(*rScene.panorama, moments);
    }
    for (const Event& rEvent : rScene.events)
    {
        moments.push_back({rEvent.time, WordsOf(rEvent)});
        if (!rEvent.isForSecond)
        {
            moments.back().touch      = rEvent.touch;
            moments.back().isTouchEnd = rEvent.isTouchEnd;
        }
    }
    std::stable_sort(moments.begin(), moments.end(),
                     [](const Moment& rOne, const Moment& rOther) { return rOne.time < rOther.time; });
    return moments;
}

std::string MomentWalk::Advance(DOUBLE sceneTime)
{
    if (sceneTime < m_sceneTime)
    {
        m_next = 0;
    }
    m_sceneTime = sceneTime;
    std::string words;
    for (; IsDueBy(sceneTime); ++m_next)
    {
        const Moment& rMoment = m_moments[m_next];
        words += (words.empty() ? "" : ", ") + rMoment.words;
        if (rMoment.touch.has_value() || rMoment.isTouchEnd)
        {
            m_touch = rMoment.touch;
        }
    }
    return words;
}

}  // namespace kirosim
