#include "tools/tuningcheck/rules/precisionsplit.h"

#include <fmt/format.h>

#include "schema/kirometeringsaalgorithm.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kirometeringsaalgorithm::SAAlgorithmType;

constexpr UINT32 PrecisionFlash = 3;
constexpr UINT32 Numbers        = 12;

/// Where the times stand, all in ms, and the factor on the shortest one.
constexpr UINT32 LongestTime  = 8;
constexpr UINT32 ShortestTime = 9;
constexpr UINT32 Delay        = 10;
constexpr UINT32 Safety       = 11;

VOID CheckTimes(const SAAlgorithmType& rAlgorithm, const RecordJudge& rJudge)
{
    const auto numbers = ListOf(rAlgorithm.extensionParameters, rAlgorithm.extensionParametersCount);
    if (rAlgorithm.ID != PrecisionFlash || numbers.empty())
    {
        return;
    }
    if (numbers.size() < Numbers)
    {
        rJudge.Error("extensionParameters", fmt::format("has {} numbers", numbers.size()),
                     fmt::format("{} numbers, or none", Numbers), "with fewer no split is looked for");
        return;
    }
    const FLOAT flash = numbers[Safety] * numbers[ShortestTime];
    const FLOAT room  = numbers[LongestTime] - numbers[Delay];
    if (numbers[LongestTime] <= 0.0F || flash >= room)
    {
        rJudge.ErrorIn("extensionParameters", LongestTime, fmt::format("is {}", numbers[LongestTime]),
                       fmt::format("above {} (ms): the shortest time with LED, with its margin, and the delay",
                                   flash + numbers[Delay]),
                       "otherwise no time is left without LED");
    }
}

}  // namespace

VOID CheckPrecisionSplit(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<SAAlgorithmType>(rModule, rFindings, CheckTimes);
}

}  // namespace tuningcheck
