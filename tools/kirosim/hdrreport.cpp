#include "tools/kirosim/hdrreport.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace kirosim
{

namespace
{

constexpr DOUBLE NsPerMs = 1e6;
constexpr DOUBLE Percent = 100.0;

DOUBLE Ratio(UINT64 numerator, UINT64 denominator)
{
    return static_cast<DOUBLE>(numerator) / std::max(static_cast<DOUBLE>(denominator), 1.0);
}

}  // namespace

bool HDRReport::IsAskedBy(const Scene& rScene)
{
    return std::any_of(rScene.events.begin(), rScene.events.end(),
                       [](const Event& rEvent) { return rEvent.hdr.has_value() && *rEvent.hdr != HDRDisabled; });
}

HDRReport::HDRReport(const Scene& rScene)
    : m_rScene(rScene), m_isSensorHDR(std::any_of(rScene.events.begin(), rScene.events.end(),
                                                  [](const Event& rEvent) { return rEvent.hdr == SensorHDR; }))
{
}

HDRReport::Moment HDRReport::MomentOf(const FrameRecord& rRecord)
{
    const KIROExposureSetType& rShort = rRecord.decided.arbitration[AECAlgoExposureShort].exposureSet;
    const KIROExposureSetType& rLong  = rRecord.decided.arbitration[AECAlgoExposureLong].exposureSet;
    const KIROExposureSetType& rSafe  = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet;
    const auto&                rConv  = rRecord.decided.convergence;
    return {rRecord.sceneTime,
            rRecord.decided.extension.bIsSeamlessBinning == TRUE,
            Ratio(rSafe.exposure, rShort.exposure),
            Ratio(rLong.exposure, rSafe.exposure),
            rConv.mfhdrLongADRC,
            rConv.convergedShortBlend,
            static_cast<DOUBLE>(rShort.time) / NsPerMs,
            static_cast<DOUBLE>(rLong.time) / NsPerMs,
            rRecord.truth.clipped[AECAlgoExposureShort],
            rRecord.truth.clipped[AECAlgoExposureSafe]};
}

VOID HDRReport::Add(const FrameRecord& rRecord)
{
    const Moment moment = MomentOf(rRecord);
    m_framesBefore      = m_last.has_value() ? m_framesBefore : rRecord.frame - 1;
    if (m_last.has_value() && m_rScene.object.has_value() &&
        m_rScene.object->IsThere(moment.time) != m_rScene.object->IsThere(m_last->time))
    {
        m_moments.push_back(*m_last);
    }
    if (m_last.has_value() && moment.isBinned != m_last->isBinned)
    {
        const UINT64* pExposures = rRecord.decided.convergence.exposures;
        m_switches.push_back({rRecord.frame, rRecord.sceneTime, moment.isBinned,
                              Ratio(pExposures[AECAlgoExposureSafe], pExposures[AECAlgoExposureShort])});
    }
    m_blends.push_back(moment.shortBlend);
    m_last = moment;
}

std::vector<HDRReport::Moment> HDRReport::Moments() const
{
    std::vector<Moment> moments = m_moments;
    if (m_last.has_value())
    {
        moments.push_back(*m_last);
    }
    return moments;
}

std::vector<DOUBLE> HDRReport::BlendRests() const
{
    std::vector<DOUBLE> rests;
    for (size_t index = 1; index < m_blends.size(); ++index)
    {
        const bool isRest = m_blends[index] == m_blends[index - 1];
        if (isRest && (rests.empty() || rests.back() != m_blends[index]))
        {
            rests.push_back(m_blends[index]);
        }
    }
    return rests;
}

std::string HDRReport::Format() const
{
    std::string text;
    UINT64      last = m_framesBefore;
    for (const Switch& rSwitch : m_switches)
    {
        text += fmt::format("switch to the {} mode at {:.2f} s (frame {}, {} after the {}): ADRC {:.2f}\n",
                            rSwitch.isBinned ? "binned" : "full", rSwitch.time, rSwitch.frame, rSwitch.frame - last,
                            (last == m_framesBefore) ? "start" : "last one", rSwitch.ADRC);
        last = rSwitch.frame;
    }
    for (const Moment& rMoment : Moments())
    {
        text += fmt::format("at {:.2f} s{}: safe {:.2f} times short, long {:.2f} times safe, long ADRC {:.2f}, short "
                            "blend {:.2f}, time of short {:.2f} ms, of long {:.2f} ms\n",
                            rMoment.time,
                            !m_isSensorHDR     ? ""
                            : rMoment.isBinned ? ", binned"
                                               : ", full",
                            rMoment.safeOverShort, rMoment.longOverSafe, rMoment.longADRC, rMoment.shortBlend,
                            rMoment.shortTimeMs, rMoment.longTimeMs);
        text += fmt::format("  clipped: {:.2f} percent of short, {:.2f} percent of safe\n",
                            rMoment.clippedShort * Percent, rMoment.clippedSafe * Percent);
    }
    if (const std::vector<DOUBLE> rests = BlendRests(); rests.size() > 1)
    {
        const auto [low, high] = std::minmax_element(m_blends.begin(), m_blends.end());
        text += fmt::format("short blend from {:.2f} in the first frame, within {:.2f} to {:.2f}; rests at {:.2f}\n",
                            m_blends.front(), *low, *high, fmt::join(rests, ", then at "));
    }
    return text;
}

TextItem HDRReport::Facts() const
{
    const auto switchFacts = [](const Switch& rSwitch)
    {
        return JsonObject({{"frame", Json(rSwitch.frame)},
                           {"timeS", Json(rSwitch.time)},
                           {"binned", Json(rSwitch.isBinned)},
                           {"ADRC", Json(rSwitch.ADRC)}});
    };
    const auto momentFacts = [](const Moment& rMoment)
    {
        return JsonObject({{"timeS", Json(rMoment.time)},
                           {"binned", Json(rMoment.isBinned)},
                           {"safeOverShort", Json(rMoment.safeOverShort)},
                           {"longOverSafe", Json(rMoment.longOverSafe)},
                           {"longADRC", Json(rMoment.longADRC)},
                           {"shortBlend", Json(rMoment.shortBlend)},
                           {"shortTimeMs", Json(rMoment.shortTimeMs)},
                           {"longTimeMs", Json(rMoment.longTimeMs)},
                           {"clippedShortPercent", Json(rMoment.clippedShort * Percent)},
                           {"clippedSafePercent", Json(rMoment.clippedSafe * Percent)}});
    };
    const auto number = [](DOUBLE value) { return Json(value); };
    TextNode   facts  = JsonObject({{"switches", JsonList(m_switches, switchFacts)},
                                    {"moments", JsonList(Moments(), momentFacts)},
                                    {"shortBlendRests", JsonList(BlendRests(), number)}});
    if (!m_blends.empty())
    {
        const auto [low, high] = std::minmax_element(m_blends.begin(), m_blends.end());
        facts.Add("shortBlendFirst", Json(m_blends.front()));
        facts.Add("shortBlendMin", Json(*low));
        facts.Add("shortBlendMax", Json(*high));
    }
    return {"hdr", facts};
}

}  // namespace kirosim
