#include "tools/tuningcheck/rules/stretches.h"

#include <fmt/format.h>

#include "schema/kirodbconvstretch.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbconvstretch;

/// The stretch that an aggregation by weight goes by, in order of weight, if both directions count.
constexpr UINT32 RankByWeight = 6;

VOID CheckFactor(const ConvStretchCoreDataType& rStretch, const RecordJudge& rJudge)
{
    if (rJudge.Around<ConvTargetStretchType>()->stretchType != StretchTypeOffset && rStretch.stretchFactOffset < 0.0F)
    {
        rJudge.Error("stretchFactOffset", fmt::format("is {}", rStretch.stretchFactOffset),
                     "0 or more (factor), as the stretchType is no offset",
                     "a negative factor makes exposures that are no numbers; below 1 darkens");
    }
}

VOID CheckDirection(const DBConvStretchCoreData& rSet, const RecordJudge& rJudge)
{
    if (rSet.convSameDirection == FALSE || rSet.convStretchCount == 0)
    {
        return;
    }
    if (rSet.convStretchAgg == StretchAggLeastEffect || rSet.convStretchAgg == StretchAggMostEffect)
    {
        rJudge.Advise("convSameDirection", "is true", "false with an aggregation by effect",
                      "that aggregation does not look at the direction");
    }
    else if (rSet.convStretchAgg == StretchAggMostWeight && rSet.convStretchCount != RankByWeight)
    {
        rJudge.Advise("convSameDirection", fmt::format("is true with {} stretches", rSet.convStretchCount),
                      fmt::format("{} stretches with StretchAggMostWeight", RankByWeight),
                      "the direction is that of the sixth by weight, which is the one of most weight only among six");
    }
}

}  // namespace

VOID CheckStretches(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<ConvStretchCoreDataType>(rModule, rFindings, CheckFactor);
    JudgeEach<DBConvStretchCoreData>(rModule, rFindings, CheckDirection);
}

}  // namespace tuningcheck
