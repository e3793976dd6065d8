#include "tools/kirosim/bracketreport.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace kirosim
{

namespace
{

DOUBLE Log2Of(const KIROExposureSetType& rSet)
{
    return std::log2(std::max(static_cast<DOUBLE>(rSet.exposure), 1.0));
}

/// Sets the exposures against the picture of EV 0, whichever place that has.
VOID Relate(BracketResult& rResult)
{
    const auto   zero      = std::find_if(rResult.frames.begin(), rResult.frames.end(),
                                          [](const BracketFrameResult& rFrame) { return rFrame.evSteps == 0; });
    const DOUBLE reference = (zero != rResult.frames.end()) ? zero->exposureLog2 : Log2Of(rResult.before);
    for (BracketFrameResult& rFrame : rResult.frames)
    {
        rFrame.exposureEV = rFrame.exposureLog2 - reference;
    }
}

std::string FormatFrame(const BracketFrameResult& rFrame)
{
    constexpr DOUBLE  nsPerUs = 1000.0;
    const std::string picture =
        rFrame.pictureEV.has_value() ? fmt::format("{:+.3f} EV", *rFrame.pictureEV) : std::string("not seen");
    return fmt::format(
        "  frame {}: EV {:+} steps, exposure {:+.3f} EV (gain {:.2f}, {:.0f} us), picture {}, ADRC {:.2f}, "
        "dark boost {:.2f}, {}\n",
        rFrame.frame, rFrame.evSteps, rFrame.exposureEV, rFrame.gain, static_cast<DOUBLE>(rFrame.timeNs) / nsPerUs,
        picture, rFrame.ADRC, rFrame.darkBoost, rFrame.isLocked ? "locked" : "not locked");
}

TextNode FrameFacts(const BracketFrameResult& rFrame)
{
    return JsonObject({{"frame", Json(rFrame.frame)},
                       {"evSteps", Json(rFrame.evSteps)},
                       {"exposureEV", Json(rFrame.exposureEV)},
                       {"gain", Json(rFrame.gain)},
                       {"timeNs", Json(rFrame.timeNs)},
                       {"pictureEV", Json(rFrame.pictureEV)},
                       {"ADRC", Json(rFrame.ADRC)},
                       {"darkBoost", Json(rFrame.darkBoost)},
                       {"locked", Json(rFrame.isLocked)}});
}

}  // namespace

BracketReport::BracketReport(UINT8 systemLatency)
    : m_systemLatency(systemLatency), m_preview{}, m_previewPictureEV(0.0), m_isInBracket(false)
{
}

VOID BracketReport::Add(const FrameRecord& rRecord)
{
    AddTruth(rRecord);
    if (rRecord.picture.has_value())
    {
        AddPicture(rRecord);
    }
    else
    {
        AddPreview(rRecord);
    }
    m_isInBracket = rRecord.picture.has_value();
}

VOID BracketReport::AddPicture(const FrameRecord& rRecord)
{
    if (!m_isInBracket)
    {
        BracketResult result{};
        result.before = m_preview;
        m_results.push_back(result);
    }
    const KIROArbitrationOutput* pSplit = rRecord.decided.arbitration;
    const KIROExposureSetType&   rSafe  = pSplit[AECAlgoExposureSafe].exposureSet;
    BracketFrameResult           frame{};
    frame.frame             = rRecord.frame;
    frame.evSteps           = rRecord.picture->evSteps;
    frame.exposureLog2      = Log2Of(rSafe);
    frame.gain              = rSafe.gain;
    frame.timeNs            = rSafe.time;
    frame.ADRC              = rRecord.picture->gains.ADRC;
    frame.darkBoost         = rRecord.picture->gains.darkBoost;
    frame.ADRCOfSensor      = std::exp2(frame.exposureLog2 - Log2Of(pSplit[AECAlgoExposureShort].exposureSet));
    frame.darkBoostOfSensor = std::exp2(Log2Of(pSplit[AECAlgoExposureLong].exposureSet) - frame.exposureLog2);
    frame.isLocked          = rRecord.picture->isLocked;
    m_results.back().frames.push_back(frame);
    Relate(m_results.back());
}

VOID BracketReport::AddPreview(const FrameRecord& rRecord)
{
    m_preview = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet;
    if (!m_results.empty() && !m_results.back().previewChangeEV.has_value())
    {
        m_results.back().previewChangeEV = Log2Of(m_preview) - Log2Of(m_results.back().before);
    }
}

/// A frame's picture shows the decision of as many frames before as the pipeline is long.
VOID BracketReport::AddTruth(const FrameRecord& rRecord)
{
    const UINT64 decided = (rRecord.frame > m_systemLatency) ? rRecord.frame - m_systemLatency : 0;
    for (BracketResult& rResult : m_results)
    {
        for (BracketFrameResult& rFrame : rResult.frames)
        {
            if (rFrame.frame == decided)
            {
                rFrame.pictureEV = rRecord.truth.pictureEV;
                return;
            }
        }
        if (rResult.frames.back().frame + 1 == decided)
        {
            rResult.pictureChangeEV = rRecord.truth.pictureEV - m_previewPictureEV;
        }
    }
    m_previewPictureEV = rRecord.truth.pictureEV;
}

std::string BracketReport::Format() const
{
    std::string text;
    for (const BracketResult& rResult : m_results)
    {
        text += fmt::format("bracket at frame {}, preview at gain {:.2f}, {:.0f} us:\n", rResult.frames.front().frame,
                            rResult.before.gain, static_cast<DOUBLE>(rResult.before.time) / 1000.0);
        for (const BracketFrameResult& rFrame : rResult.frames)
        {
            text += FormatFrame(rFrame);
        }
        if (rResult.previewChangeEV.has_value() && rResult.pictureChangeEV.has_value())
        {
            text += fmt::format("  preview after against before: exposure {:+.3f} EV, picture {:+.3f} EV\n",
                                *rResult.previewChangeEV, *rResult.pictureChangeEV);
        }
    }
    return text;
}

TextItem BracketReport::Facts() const
{
    return {"brackets", JsonList(m_results,
                                 [](const BracketResult& rResult)
                                 {
                                     return JsonObject({{"previewGain", Json(rResult.before.gain)},
                                                        {"previewTimeNs", Json(rResult.before.time)},
                                                        {"frames", JsonList(rResult.frames, FrameFacts)},
                                                        {"previewChangeEV", Json(rResult.previewChangeEV)},
                                                        {"pictureChangeEV", Json(rResult.pictureChangeEV)}});
                                 })};
}

}  // namespace kirosim
