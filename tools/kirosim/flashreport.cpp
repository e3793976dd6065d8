#include "tools/kirosim/flashreport.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace kirosim
{

namespace
{

/// Share of its start below which the colour error counts as learned away.
constexpr DOUBLE Learned = 0.25;

/// Longer series show their first and last picture only.
constexpr size_t ShownMax = 3;

Colour ColourOf(const kiroflash::LEDMixType& rMix)
{
    return {static_cast<DOUBLE>(rMix.RGRatio), static_cast<DOUBLE>(rMix.BGRatio)};
}

DOUBLE Distance(const Colour& rFirst, const Colour& rSecond)
{
    return std::hypot(rFirst.rg - rSecond.rg, rFirst.bg - rSecond.bg);
}

/// The point of a line from one mix to the next that is nearest to a colour.
Colour NearestOn(const Colour& rStart, const Colour& rEnd, const Colour& rWanted)
{
    const DOUBLE rg     = rEnd.rg - rStart.rg;
    const DOUBLE bg     = rEnd.bg - rStart.bg;
    const DOUBLE square = rg * rg + bg * bg;
    const DOUBLE dot    = (rWanted.rg - rStart.rg) * rg + (rWanted.bg - rStart.bg) * bg;
    const DOUBLE share  = (square > 0.0) ? std::clamp(dot / square, 0.0, 1.0) : 0.0;
    return {rStart.rg + share * rg, rStart.bg + share * bg};
}

/// The colour of the light as white balance has corrected it.
Colour LightOf(const FlashCaptureResult& rDecided)
{
    const auto& rBalance = rDecided.whiteBalance;
    return {static_cast<DOUBLE>(rBalance.greenGain / rBalance.redGain),
            static_cast<DOUBLE>(rBalance.greenGain / rBalance.blueGain)};
}

TextNode ColourFacts(const Colour& rColour)
{
    return JsonObject({{"rg", Json(rColour.rg)}, {"bg", Json(rColour.bg)}});
}

TextNode CurrentFacts(const KIROAlgoFlashOutput& rCurrent)
{
    return JsonObject({{"LED1mA", Json(rCurrent.LED1Setting)},
                       {"LED2mA", Json(rCurrent.LED2Setting)},
                       {"rg", Json(rCurrent.RGRatio)},
                       {"bg", Json(rCurrent.BGRatio)},
                       {"flux", Json(rCurrent.flux)}});
}

INT32 TotalOf(const FlashLamp& rLamp)
{
    return rLamp.LED1Setting + rLamp.LED2Setting;
}

}  // namespace

MixMatch MatchOf(const KIROAlgoFlashOutput& rCurrent, const Colour& rWanted)
{
    const Colour chosen = {static_cast<DOUBLE>(rCurrent.RGRatio), static_cast<DOUBLE>(rCurrent.BGRatio)};
    MixMatch     match  = {std::numeric_limits<DOUBLE>::max(), 0.0};
    for (UINT32 mix = 0; mix + 1 < KIROFlashMixCountMax; ++mix)
    {
        const kiroflash::LEDMixType& rStart = rCurrent.refTable[mix];
        const kiroflash::LEDMixType& rEnd   = rCurrent.refTable[mix + 1];
        if (rEnd.LED1Setting == 0 && rEnd.LED2Setting == 0)
        {
            break;
        }
        const Colour nearest = NearestOn(ColourOf(rStart), ColourOf(rEnd), rWanted);
        if (const DOUBLE distance = Distance(nearest, rWanted); distance < match.distance)
        {
            const DOUBLE length = Distance(ColourOf(rStart), ColourOf(rEnd));
            const INT32  width  = std::abs(rStart.LED1Setting - rEnd.LED1Setting);
            match               = {distance, (length > 0.0) ? Distance(chosen, nearest) / length * width : 0.0};
        }
    }
    return match;
}

FlashReport::FlashReport(const FlashScene& rScene) : m_rScene(rScene), m_currentMax(0)
{
}

VOID FlashReport::Add(const FrameRecord& rRecord)
{
    m_currentMax = std::max(m_currentMax, TotalOf(rRecord.flash.lamp));
    if (rRecord.flash.shot.has_value())
    {
        m_shots.push_back(*rRecord.flash.shot);
        m_times.push_back(rRecord.sceneTime);
    }
}

DOUBLE FlashReport::NearOverTarget(const FlashShot& rShot)
{
    return rShot.nearLuma / static_cast<DOUBLE>(rShot.decided.target);
}

DOUBLE FlashReport::KneeErrorLeft(size_t shot) const
{
    return m_shots.at(shot).kneeError / std::max(m_shots.front().kneeError, 1e-9);
}

std::string FlashReport::FormatShot(size_t index) const
{
    constexpr DOUBLE          nsPerMs  = 1e6;
    const FlashShot&          rShot    = m_shots[index];
    const FlashCaptureResult& rDecided = rShot.decided;
    const Colour              light    = LightOf(rDecided);
    const MixMatch            match    = MatchOf(rDecided.low, light);

    std::string text = fmt::format("flash at {:.2f} s: preflash metered {} frames, ended by {}\n", m_times[index],
                                   rDecided.preflashFrames, rDecided.isStoppedByMeter ? "metering" : "the frame limit");
    for (const auto& [pName, rCurrent] : {std::pair{"low ", rDecided.low}, std::pair{"high", rDecided.high}})
    {
        text +=
            fmt::format("  {}: {} + {} mA, rg {:.3f} bg {:.3f} by the table, flux {:.2f}\n", pName,
                        rCurrent.LED1Setting, rCurrent.LED2Setting, rCurrent.RGRatio, rCurrent.BGRatio, rCurrent.flux);
    }
    text += fmt::format("  colour: wanted rg {:.3f} bg {:.3f}, {:.3f} off what the LEDs can make; mix {:.2f} steps of "
                        "1 mA from the best; true light rg {:.3f} bg {:.3f}\n",
                        light.rg, light.bg, match.distance, match.steps, rShot.lamp.rg, rShot.lamp.bg);
    text += fmt::format("  exposure, ms at unity gain: {:.1f} without LED, {:.1f} under low, {:.1f} for the picture\n",
                        static_cast<DOUBLE>(rDecided.offExposure) / nsPerMs,
                        static_cast<DOUBLE>(rDecided.lowExposure) / nsPerMs,
                        static_cast<DOUBLE>(rDecided.mainExposure) / nsPerMs);
    if (rDecided.isPrecision)
    {
        text += fmt::format("  precision: {:.1f} ms lit, {:.1f} ms not\n", static_cast<DOUBLE>(rDecided.e1) / nsPerMs,
                            static_cast<DOUBLE>(rDecided.e2) / nsPerMs);
    }
    text += fmt::format(
        "  near: luma {:.1f}, target {:.1f} ({:+.1f} percent); far: luma {:.1f}, {:.1f} without flash\n",
        rShot.nearLuma, rDecided.target, (NearOverTarget(rShot) - 1.0) * 100.0, rShot.farLuma, rShot.farLumaOff);
    return text;
}

std::string FlashReport::FormatCalibration() const
{
    const auto isLearned = [this](const FlashShot& rShot)
    { return rShot.kneeError < Learned * m_shots.front().kneeError; };
    const auto  found = std::find_if(m_shots.begin(), m_shots.end(), isLearned);
    std::string when  = "not below a quarter";
    if (!m_rScene.learned.empty())
    {
        when = "begun with what was learned before";
    }
    else if (found != m_shots.end())
    {
        when = fmt::format("below a quarter from picture {} on", found - m_shots.begin() + 1);
    }
    return fmt::format("flash calibration: colour error of the inner mixes {:.4f} at picture 1, {:.4f} at picture {} "
                       "({:.0f} percent); {}\n",
                       m_shots.front().kneeError, m_shots.back().kneeError, m_shots.size(),
                       KneeErrorLeft(m_shots.size() - 1) * 100.0, when);
}

std::string FlashReport::Format() const
{
    if (m_shots.empty())
    {
        return "flash: no picture was taken\n";
    }
    std::string text;
    for (size_t index = 0; index < m_shots.size(); ++index)
    {
        if (m_shots.size() <= ShownMax || index == 0 || index + 1 == m_shots.size())
        {
            text += FormatShot(index);
        }
    }
    text += fmt::format("flash current: at most {} mA of {} allowed\n", m_currentMax, m_rScene.maxCurrent);
    return m_rScene.isCalibrated ? text + FormatCalibration() : text;
}

TextNode FlashReport::ShotFacts(size_t index) const
{
    const FlashShot&          rShot    = m_shots[index];
    const FlashCaptureResult& rDecided = rShot.decided;
    const MixMatch            match    = MatchOf(rDecided.low, LightOf(rDecided));
    TextNode                  facts    = JsonObject({{"timeS", Json(m_times[index])},
                                                     {"preflashFrames", Json(rDecided.preflashFrames)},
                                                     {"endedByMetering", Json(rDecided.isStoppedByMeter)},
                                                     {"low", CurrentFacts(rDecided.low)},
                                                     {"high", CurrentFacts(rDecided.high)},
                                                     {"wantedColour", ColourFacts(LightOf(rDecided))},
                                                     {"colourOff", Json(match.distance)},
                                                     {"mixOffmA", Json(match.steps)},
                                                     {"trueColour", ColourFacts(rShot.lamp)},
                                                     {"offExposureNs", Json(rDecided.offExposure)},
                                                     {"lowExposureNs", Json(rDecided.lowExposure)},
                                                     {"mainExposureNs", Json(rDecided.mainExposure)},
                                                     {"nearLuma", Json(rShot.nearLuma)},
                                                     {"targetLuma", Json(rDecided.target)},
                                                     {"farLuma", Json(rShot.farLuma)},
                                                     {"farLumaWithoutFlash", Json(rShot.farLumaOff)}});
    if (rDecided.isPrecision)
    {
        facts.Add("litNs", Json(rDecided.e1));
        facts.Add("unlitNs", Json(rDecided.e2));
    }
    facts.Add("colourErrorOfMixes", Json(rShot.kneeError));
    return facts;
}

TextItem FlashReport::Facts() const
{
    TextNode pictures = TextNode::List();
    for (size_t index = 0; index < m_shots.size(); ++index)
    {
        pictures.Add(ShotFacts(index));
    }
    return {"flash", JsonObject({{"pictures", pictures},
                                 {"currentMaxmA", Json(m_currentMax)},
                                 {"currentAllowedmA", Json(m_rScene.maxCurrent)},
                                 {"calibrated", Json(m_rScene.isCalibrated)},
                                 {"begunWithLearned", Json(!m_rScene.learned.empty())}})};
}

std::vector<Figure> FlashReport::Figures() const
{
    std::vector<Figure> figures;
    for (size_t shot = 0; shot < m_shots.size(); ++shot)
    {
        const DOUBLE share = std::max(NearOverTarget(m_shots[shot]), 1e-9);  // of nothing
        const DOUBLE due   = m_rScene.pictures.first + static_cast<DOUBLE>(shot) * m_rScene.pictures.interval;
        figures.push_back({FigureId::FlashError, "flash", due, std::abs(std::log2(share))});
    }
    return figures;
}

}  // namespace kirosim
