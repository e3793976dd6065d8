#include "tools/tuningcheck/rules/preflash.h"

#include <fmt/format.h>

#include "schema/kiroflash.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kiroflash;

/// With fewer regions inline calibration is off.
constexpr INT32 LeastRegions = 3;

VOID CheckNames(const PreflashYThresholds& rThresholds, const RecordJudge& rJudge)
{
    const auto  isNamed = [](CHAR* const& rName) { return *tuning::TextAt(&rName) != '\0'; };
    const auto& rAll    = *rJudge.Around<FlashStatsPreprocessingType>();
    const bool  isAnyNamed =
        isNamed(rAll.stopMeteringYLevel.statsNameOff) || isNamed(rAll.stopMeteringYLevel.statsNameLow) ||
        isNamed(rAll.stopMeteringYSaturation.statsNameOff) || isNamed(rAll.stopMeteringYSaturation.statsNameLow);
    for (const auto& [pMember, isThere] : {std::pair("statsNameOff", isNamed(rThresholds.statsNameOff)),
                                           std::pair("statsNameLow", isNamed(rThresholds.statsNameLow))})
    {
        if (isAnyNamed && !isThere)
        {
            rJudge.Error(pMember, "is missing", "the names of all four channels, of luma and saturation, or of none",
                         "with a part of them metering of the preflash never stops by itself");
        }
    }
}

VOID CheckLearning(const LEDInlineCalibType& rCalibration, const RecordJudge& rJudge)
{
    if (rCalibration.numOfFactoringRegions < LeastRegions)
    {
        return;
    }
    if (rCalibration.distanceRatioMin > rCalibration.distanceRatioMax)
    {
        rJudge.Error("distanceRatioMin", fmt::format("is {}", rCalibration.distanceRatioMin),
                     fmt::format("at most {}, the distanceRatioMax", rCalibration.distanceRatioMax),
                     "otherwise no sample counts");
    }
    const INT64 mostKnees = INT64{2} * rCalibration.maxZoneCnt;
    if (rCalibration.minKneeCnt > mostKnees)
    {
        rJudge.Error("minKneeCnt", fmt::format("is {}", rCalibration.minKneeCnt),
                     fmt::format("at most {}, twice the maxZoneCnt", mostKnees),
                     "otherwise a mix between two zones is never learned");
    }
    const auto zones = ListOf(rCalibration.LEDInlineCalibTarget, rCalibration.LEDInlineCalibTargetCount);
    for (UINT32 index = 1; index < zones.size(); ++index)
    {
        if (zones[index].zoneTrigger.start < zones[index - 1].zoneTrigger.end)
        {
            rJudge.ErrorIn("LEDInlineCalibTarget", index, fmt::format("starts at {}", zones[index].zoneTrigger.start),
                           fmt::format("a start of {} or more", zones[index - 1].zoneTrigger.end),
                           "zones rise and do not overlap");
        }
    }
}

}  // namespace

VOID CheckPreflash(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<PreflashYThresholds>(rModule, rFindings, CheckNames);
    JudgeEach<LEDInlineCalibType>(rModule, rFindings, CheckLearning);
}

}  // namespace tuningcheck
