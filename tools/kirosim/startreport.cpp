#include "tools/kirosim/startreport.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <tuple>

namespace kirosim
{

StartReport::StartReport(const Scene& rScene) : m_rScene(rScene)
{
}

VOID StartReport::Add(const FrameRecord& rRecord)
{
    Add(rRecord, false);
}

VOID StartReport::AddSecond(const FrameRecord& rRecord)
{
    Add(rRecord, true);
}

VOID StartReport::Add(const FrameRecord& rRecord, bool isSecond)
{
    if (rRecord.start.has_value())
    {
        const Scene& rScene = isSecond ? *m_rScene.pSecond : m_rScene;
        m_sessions.push_back({isSecond, rRecord.sceneTime, rRecord.start->source,
                              rRecord.start->exposures[AECAlgoExposureSafe], FixedStartExposure(rScene), 0});
    }
    const auto session = std::find_if(m_sessions.rbegin(), m_sessions.rend(),
                                      [=](const Session& rSession) { return rSession.isSecond == isSecond; });
    if (session != m_sessions.rend())
    {
        session->lastExposure = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet.exposure;
    }
}

std::vector<StartResult> StartReport::Results() const
{
    std::vector<StartResult> results;
    for (const Session& rSession : m_sessions)
    {
        const auto against = [&](UINT64 exposure) {
            return std::log2(static_cast<DOUBLE>(exposure) / std::max(static_cast<DOUBLE>(rSession.lastExposure), 1.0));
        };
        results.push_back({rSession.isSecond, rSession.time, rSession.source, against(rSession.startExposure),
                           against(rSession.fixedExposure)});
    }
    std::stable_sort(results.begin(), results.end(),
                     [](const StartResult& rFirst, const StartResult& rSecond)
                     { return std::tie(rFirst.time, rFirst.isSecond) < std::tie(rSecond.time, rSecond.isSecond); });
    return results;
}

std::string StartReport::Format() const
{
    std::string text;
    for (const StartResult& rResult : Results())
    {
        text += fmt::format("{} camera's session at {:.2f} s, start from {}: first frame {:+.3f} EV against the "
                            "settled exposure, a fixed start {:+.3f} EV\n",
                            rResult.isSecond ? "second" : "first", rResult.time, NameOfSource(rResult.source),
                            rResult.errorEV, rResult.fixedEV);
    }
    return text;
}

TextItem StartReport::Facts() const
{
    return {"starts", JsonList(Results(),
                               [](const StartResult& rResult)
                               {
                                   return JsonObject({{"camera", Json(rResult.isSecond ? "second" : "first")},
                                                      {"timeS", Json(rResult.time)},
                                                      {"from", Json(NameOfSource(rResult.source))},
                                                      {"firstFrameEV", Json(rResult.errorEV)},
                                                      {"fixedStartEV", Json(rResult.fixedEV)}});
                               })};
}

}  // namespace kirosim
