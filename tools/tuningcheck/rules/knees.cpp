#include "tools/tuningcheck/rules/knees.h"

#include <fmt/format.h>

#include "schema/kirodbarbitrationtable.h"
#include "tools/tuningcheck/recordjudge.h"
#include "tools/tuningcheck/rules/tableuse.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbarbitrationtable;

/// A table that ends below this gain, and that nothing caps, is more likely meant as a cap than as the sensor's range.
constexpr FLOAT SmallestFullGain = 16.0F;

std::string TextOf(const ExposureKneeType& rKnee)
{
    return fmt::format("gain {} for {} ns", rKnee.gain, rKnee.time);
}

DOUBLE ExposureOf(const ExposureKneeType& rKnee)
{
    return static_cast<DOUBLE>(rKnee.gain) * static_cast<DOUBLE>(rKnee.time);
}

VOID CheckRise(const ExposureTableType& rTable, const RecordJudge& rJudge)
{
    const auto knees = ListOf(rTable.expKnees, rTable.expKneesCount);
    for (UINT32 index = 1; index < knees.size(); ++index)
    {
        const DOUBLE before = ExposureOf(knees[index - 1]);
        const DOUBLE here   = ExposureOf(knees[index]);
        if (here <= before)
        {
            rJudge.ErrorIn("expKnees", index,
                           fmt::format("is {}, which is {} exposure than {} before it", TextOf(knees[index]),
                                       (here < before) ? "less" : "no more", TextOf(knees[index - 1])),
                           fmt::format("gain times time above {:.0f}", before), "knees rise; times are in ns");
            return;
        }
    }
}

/// What a table should reach.
struct Limits
{
    FLOAT  gain;
    UINT64 time;
};

Limits LimitsOf(const KIRODBArbitrationTableType& rTables, const Surroundings& rSurroundings)
{
    Limits limits{SmallestFullGain, 0};
    for (const DBArbitrationTablePayload& rPayload : ListOf(rTables.data, rTables.dataCount))
    {
        for (const ExposureKneeType& rKnee : ListOf(rPayload.value.expKnees, rPayload.value.expKneesCount))
        {
            limits = {std::max(limits.gain, rKnee.gain), std::max(limits.time, rKnee.time)};
        }
    }
    return {rSurroundings.maxGain.value_or(limits.gain), rSurroundings.maxTime.value_or(limits.time)};
}

/// Beyond its last knee a table goes on to what the ranges before it allow: it is no cap.
VOID CheckEnd(const ExposureTableType& rTable, const Limits& rLimits, const TableUse& rUse, const RecordJudge& rJudge)
{
    if (rTable.expKneesCount < 2)
    {
        return;
    }
    using namespace kirodbarbitrationrange;
    const INT32             table = rJudge.Around<DBArbitrationTablePayload>()->dataID;
    const UINT32            last  = rTable.expKneesCount - 1;
    const ExposureKneeType& rLast = rTable.expKnees[last];
    if (rLast.gain < rLimits.gain && rUse.IsUncapped(table, ArbQuantityGain))
    {
        rJudge.AdviseIn(
            "expKnees", last, fmt::format("ends the table at {}", TextOf(rLast)),
            fmt::format("a gain of {} or more", rLimits.gain),
            "the last knee is no cap: beyond it gain goes on to rise up to the sensor's limit; end with that "
            "limit, or cap it by a control with a gain range before the table");
    }
    else if (rLast.time < rLimits.time && rUse.IsUncapped(table, ArbQuantityTime))
    {
        rJudge.AdviseIn(
            "expKnees", last, fmt::format("ends the table at {}", TextOf(rLast)),
            fmt::format("a time of {} ns or more", rLimits.time),
            "the last knee is no cap: beyond it time goes on to rise up to the limit of the ranges; end with "
            "that limit, or cap it by a control with a time range before the table");
    }
}

}  // namespace

VOID CheckKnees(const ModeView& rView, const Surroundings& rSurroundings, Findings& rFindings)
{
    const ModulePlace* pModule = rView.Find("kirodbarbitrationtable");
    if (pModule == nullptr)
    {
        return;
    }
    JudgeEach<ExposureTableType>(*pModule, rFindings, CheckRise);

    const TableUse use = TableUseOf(rView);
    const Limits   limits =
        LimitsOf(*static_cast<const KIRODBArbitrationTableType*>(pModule->pModule->pRecord), rSurroundings);
    JudgeEach<ExposureTableType>(*pModule, rFindings,
                                 [&](const ExposureTableType& rTable, const RecordJudge& rJudge)
                                 { CheckEnd(rTable, limits, use, rJudge); });
}

}  // namespace tuningcheck
