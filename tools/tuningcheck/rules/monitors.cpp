#include "tools/tuningcheck/rules/monitors.h"

#include <algorithm>

#include <fmt/format.h>

#include "schema/kiroextension.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kiroextension;

/// By so much a sum of scores may miss the threshold.
constexpr FLOAT EqualScores = 1e-7F;

/// Flags for the host.
constexpr UINT32 MaxScenesOf3HDR = 3;

struct Scores
{
    FLOAT least = 0.0F;
    FLOAT most  = 0.0F;
};

/// A criterion yields what one of its zones says, or a number between two of them.
Scores ScoresOf(const MonitorSceneConfiguration& rScene)
{
    Scores scores;
    for (const SceneCriterion& rCriterion : ListOf(rScene.criteriaArray, rScene.criteriaArrayCount))
    {
        const auto zones = ListOf(rCriterion.triggers, rCriterion.triggersCount);
        if (!zones.empty())
        {
            const auto [pLeast, pMost] = std::minmax_element(zones.begin(), zones.end(),
                                                             [](auto& rFirst, auto& rSecond)
                                                             { return rFirst.triggerData < rSecond.triggerData; });
            scores.least += pLeast->triggerData;
            scores.most += pMost->triggerData;
        }
    }
    return scores;
}

VOID CheckScene(const MonitorSceneConfiguration& rScene, const RecordJudge& rJudge)
{
    const Scores scores = ScoresOf(rScene);
    if (rScene.passThreshold > scores.most + EqualScores)
    {
        rJudge.Error("passThreshold", fmt::format("is {}", rScene.passThreshold),
                     fmt::format("{} or less, the sum of the highest scores of the criteria", scores.most),
                     "otherwise the scene never passes");
    }
    else if (rScene.passThreshold <= scores.least + EqualScores)
    {
        rJudge.Advise("passThreshold", fmt::format("is {}", rScene.passThreshold),
                      fmt::format("above {}, the sum of the lowest scores of the criteria", scores.least),
                      "otherwise the scene always passes");
    }
}

VOID CheckThreeExposures(const ExtensionMonitor3HDRSnapshot& rMonitor, const RecordJudge& rJudge)
{
    if (rMonitor.enable3HDRSnapshot != FALSE && rMonitor.generalizedMonitor.scenesCount > MaxScenesOf3HDR)
    {
        rJudge.Error("generalizedMonitor", fmt::format("has {} scenes", rMonitor.generalizedMonitor.scenesCount),
                     fmt::format("{} scenes or fewer", MaxScenesOf3HDR), "with a fourth the third flag is always set");
    }
}

VOID CheckCriterion(const SceneCriterion& rCriterion, const RecordJudge& rJudge)
{
    const bool isOf3HDR = rJudge.Around<ExtensionMonitor3HDRSnapshot>() != nullptr;
    if (isOf3HDR && rCriterion.postCalculation != OriginalData)
    {
        rJudge.Error("postCalculation", fmt::format("is {}", EnumeratorText(rCriterion.postCalculation)),
                     "OriginalData here", "there is no earlier value to compare with");
    }
    else if (!isOf3HDR && rCriterion.postCalculation == OriginalData)
    {
        rJudge.Advise("postCalculation", "is OriginalData",
                      "AbsoluteDifference, AbsoluteDifferencePercentage or Division",
                      "it does not compare with the light when the lock began");
    }
}

}  // namespace

VOID CheckMonitors(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<MonitorSceneConfiguration>(rModule, rFindings, CheckScene);
    JudgeEach<ExtensionMonitor3HDRSnapshot>(rModule, rFindings, CheckThreeExposures);
    JudgeEach<SceneCriterion>(rModule, rFindings, CheckCriterion);
}

}  // namespace tuningcheck
