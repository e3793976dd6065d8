#include "tools/kirosim/detectorreport.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace kirosim
{

DetectorReport::DetectorReport(const DetectorScene& rScene)
    : m_rScene(rScene), m_states(rScene.watched.size(), KIROSCDStateMonitor)
{
    for (const SceneChangeDetector& rDetector : rScene.watched)
    {
        DetectorResult result{};
        result.id = rDetector.id;
        m_results.push_back(result);
    }
}

VOID DetectorReport::Add(const FrameRecord& rRecord)
{
    for (size_t index = 0; index < rRecord.detectors.size() && index < m_results.size(); ++index)
    {
        AddReading(rRecord.detectors[index], rRecord.sceneTime, index);
    }
    if (m_rScene.pass.has_value() && rRecord.sceneTime >= m_rScene.pass->begin &&
        rRecord.sceneTime <= m_rScene.pass->end)
    {
        AddPassFrame(rRecord);
    }
}

VOID DetectorReport::AddReading(const SceneChangeReading& rReading, DOUBLE time, size_t index)
{
    DetectorResult&        rResult = m_results[index];
    const KIROSCDStateType before  = m_states[index];
    rResult.isTuned                = rResult.isTuned || rReading.isTuned;
    if (!rReading.name.empty())
    {
        rResult.name = rReading.name;
    }
    rResult.framesAtRest += (rReading.scState == KIROSCDStateMonitor) ? 1U : 0U;
    rResult.framesChanged += (rReading.scState == KIROSCDStateSceneChange) ? 1U : 0U;
    rResult.framesStableAgain += (rReading.scState == KIROSCDStateSCPostStable) ? 1U : 0U;
    rResult.detections += (rReading.scState != KIROSCDStateMonitor && before == KIROSCDStateMonitor) ? 1U : 0U;
    rResult.rebases += (rReading.scState == KIROSCDStateMonitor && before != KIROSCDStateMonitor) ? 1U : 0U;
    if (rReading.htState == KIROHoldTimeOn)
    {
        ++rResult.framesHeld;
        rResult.heldFrom  = rResult.heldFrom.value_or(time);
        rResult.heldUntil = time;
    }
    m_states[index] = rReading.scState;
}

VOID DetectorReport::AddPassFrame(const FrameRecord& rRecord)
{
    const KIROExposureSetType& rSafe = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet;
    m_passExposuresEV.push_back(std::log2(std::max(static_cast<DOUBLE>(rSafe.exposure), 1.0)));
    m_passPicturesEV.push_back(rRecord.truth.pictureEV);
}

std::optional<DOUBLE> DetectorReport::PassSwingEV() const
{
    if (m_passExposuresEV.empty())
    {
        return std::nullopt;
    }
    const auto [low, high] = std::minmax_element(m_passExposuresEV.begin(), m_passExposuresEV.end());
    return *high - *low;
}

DOUBLE DetectorReport::PassDepthEV() const
{
    if (m_passPicturesEV.empty())
    {
        return 0.0;
    }
    return *std::min_element(m_passPicturesEV.begin(), m_passPicturesEV.end()) - m_passPicturesEV.front();
}

std::string DetectorReport::Format() const
{
    std::string text;
    for (const DetectorResult& rResult : m_results)
    {
        if (!rResult.isTuned)
        {
            text += fmt::format("detector {}: not tuned\n", rResult.id);
            continue;
        }
        text += fmt::format("detector {} {}: {} frames at rest, {} changed, {} stable again; {} detections, {} rebases",
                            rResult.id, rResult.name, rResult.framesAtRest, rResult.framesChanged,
                            rResult.framesStableAgain, rResult.detections, rResult.rebases);
        if (rResult.heldFrom.has_value() && rResult.heldUntil.has_value())
        {
            text += fmt::format("; held for {} frames, {:.2f} s to {:.2f} s", rResult.framesHeld, *rResult.heldFrom,
                                *rResult.heldUntil);
        }
        text += "\n";
    }
    if (const std::optional<DOUBLE> swing = PassSwingEV(); swing.has_value())
    {
        text += fmt::format("swing of the safe exposure from {:.2f} s to {:.2f} s: {:.3f} EV; the picture changed by "
                            "{:+.2f} EV\n",
                            m_rScene.pass->begin, m_rScene.pass->end, *swing, PassDepthEV());
    }
    return text;
}

TextItem DetectorReport::Facts() const
{
    const auto resultFacts = [](const DetectorResult& rResult)
    {
        return JsonObject({{"id", Json(rResult.id)},
                           {"name", Json(rResult.name)},
                           {"tuned", Json(rResult.isTuned)},
                           {"framesAtRest", Json(rResult.framesAtRest)},
                           {"framesChanged", Json(rResult.framesChanged)},
                           {"framesStableAgain", Json(rResult.framesStableAgain)},
                           {"detections", Json(rResult.detections)},
                           {"rebases", Json(rResult.rebases)},
                           {"framesHeld", Json(rResult.framesHeld)},
                           {"heldFromS", Json(rResult.heldFrom)},
                           {"heldUntilS", Json(rResult.heldUntil)}});
    };
    TextNode facts = JsonObject({{"detectors", JsonList(m_results, resultFacts)}});
    if (const std::optional<DOUBLE> swing = PassSwingEV(); swing.has_value())
    {
        facts.Add("pass", JsonObject({{"beginS", Json(m_rScene.pass->begin)},
                                      {"endS", Json(m_rScene.pass->end)},
                                      {"swingEV", Json(*swing)},
                                      {"pictureChangeEV", Json(PassDepthEV())}}));
    }
    return {"sceneChange", facts};
}

}  // namespace kirosim
