#include "tools/tuningcheck/rules/flickergrids.h"

#include <cmath>

#include <fmt/format.h>

#include "schema/kirodbarbitrationlut.h"
#include "tools/tuningcheck/recordjudge.h"
#include "tools/tuningcheck/rules/arbitrationranges.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbarbitrationlut;
using namespace kirodbarbitrationorder;

constexpr DOUBLE NsPerSecond = 1e9;

/// How far from a whole period a time may be: a thousandth of bands is not seen.
constexpr DOUBLE EqualPeriods = 1e-3;

/// @return period of the light in ns of a LUT that a flicker control names; 0 for other LUTs
DOUBLE PeriodOf(const ModeView& rView, INT32 dataID)
{
    DOUBLE period = 0.0;
    ForEachControl(rView,
                   [&](std::span<const OrderType> controls, size_t index)
                   {
                       const ArbitrationControl control = controls[index].controlID;
                       const bool               is50    = control == ArbCtrlFlicker50LUT;
                       if ((is50 || control == ArbCtrlFlicker60LUT) && controls[index].dataID == dataID)
                       {
                           // A lamp flickers twice in a period of the mains.
                           period = NsPerSecond / (is50 ? 100.0 : 120.0);
                       }
                   });
    return period;
}

/// Times below one period are kept: in bright light nothing else is left.
VOID CheckTime(const kiroglobalelements::TriggerSystemEndLevelType& rZone, DOUBLE period, const RecordJudge& rJudge)
{
    const DOUBLE periods = static_cast<DOUBLE>(rZone.triggerData) / period;
    const DOUBLE whole   = std::round(periods);
    if (periods > 1.0 && std::abs(periods - whole) > EqualPeriods)
    {
        rJudge.Error("triggerData", fmt::format("is {} ns", rZone.triggerData),
                     fmt::format("whole periods of the lamp, as {:.0f} ns", std::floor(whole * period)),
                     "other times show bands");
    }
}

/// Between two zones times go from one to the other, through all that show bands.
VOID CheckGaps(const LUTType& rLUT, DOUBLE period, const RecordJudge& rJudge)
{
    const auto timeOf = [](const auto& rZone)
    { return (rZone.trigger2DataCount != 0) ? rZone.trigger2Data[0].triggerData : 0.0F; };
    const auto zones = ListOf(rLUT.triggerData, rLUT.triggerDataCount);
    for (UINT32 index = 1; index < zones.size(); ++index)
    {
        const auto& rBefore = zones[index - 1];
        const auto& rHere   = zones[index];
        if (rBefore.trigger.end < rHere.trigger.start && timeOf(rBefore) >= period * (1.0 - EqualPeriods) &&
            timeOf(rBefore) != timeOf(rHere))
        {
            rJudge.ErrorIn("triggerData", index,
                           fmt::format("starts at {}, above the end of the zone before it", rHere.trigger.start),
                           fmt::format("a start of {}", rBefore.trigger.end),
                           "in the gap times go from one zone to the other, and show bands");
        }
    }
}

VOID CheckOutput(const LUTType& rLUT, const RecordJudge& rJudge)
{
    if (rLUT.outType != ArbLutOutTime)
    {
        rJudge.Error("outType", fmt::format("is {}", EnumeratorText(rLUT.outType)),
                     "ArbLutOutTime for a flicker control");
    }
}

}  // namespace

VOID CheckFlickerGrids(const ModeView& rView, Findings& rFindings)
{
    const ModulePlace* pModule = rView.Find("kirodbarbitrationlut");
    if (pModule == nullptr)
    {
        return;
    }
    const auto periodOf = [&rView](const RecordJudge& rJudge)
    { return PeriodOf(rView, rJudge.Around<DBArbitrationLUTPayload>()->dataID); };
    JudgeEach<LUTType>(*pModule, rFindings,
                       [&periodOf](const LUTType& rLUT, const RecordJudge& rJudge)
                       {
                           if (const DOUBLE period = periodOf(rJudge); period > 0.0)
                           {
                               CheckOutput(rLUT, rJudge);
                               CheckGaps(rLUT, period, rJudge);
                           }
                       });
    JudgeEach<kiroglobalelements::TriggerSystemEndLevelType>(
        *pModule, rFindings,
        [&periodOf](const kiroglobalelements::TriggerSystemEndLevelType& rZone, const RecordJudge& rJudge)
        {
            const DOUBLE period = periodOf(rJudge);
            if (period > 0.0 && rJudge.Around<LUTType>()->outType == ArbLutOutTime)
            {
                CheckTime(rZone, period, rJudge);
            }
        });
}

}  // namespace tuningcheck
