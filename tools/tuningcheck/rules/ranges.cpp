#include "tools/tuningcheck/rules/ranges.h"

#include <cmath>
#include <set>

#include <fmt/format.h>

#include "tools/tuningcheck/recordjudge.h"
#include "tools/tuningcheck/rules/arbitrationranges.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbarbitrationorder;
using namespace kirodbarbitrationrange;

/// An absolute time in ns below this is shorter than any sensor's line: another unit is meant.
constexpr FLOAT ShortestAbsoluteTime = 1000.0F;

VOID CheckTimeBound(const RangePoint& rBound, const RecordJudge& rJudge)
{
    const FLOAT value = rBound.val;
    if (rBound.adj == ArbRangeAbsolute && value < ShortestAbsoluteTime)
    {
        rJudge.Error("val", fmt::format("is {}", value), fmt::format("{} or more (ns)", ShortestAbsoluteTime),
                     fmt::format("{0} ms are {1:.0f} ns, {0} us are {2:.0f} ns", value, value * 1e6F, value * 1e3F));
    }
    else if (rBound.adj == ArbRangeRelativeFactor && value < 1.0F)
    {
        rJudge.Error("val", fmt::format("is {}", value), "a whole factor of 1 or more for a time",
                     "of a time's factor only the whole part counts, and with 0 the range never applies");
    }
    else if (rBound.adj == ArbRangeRelativeFactor && value != std::floor(value))
    {
        rJudge.Advise("val", fmt::format("is {}", value), "a whole factor for a time",
                      fmt::format("it counts as {}", std::floor(value)));
    }
    else if (rBound.adj == ArbRangeRelativeOffset && value < 0.0F)
    {
        rJudge.Advise("val", fmt::format("is {}", value), "0 or more (ns)", "below 0 it counts as 0");
    }
}

VOID CheckBound(const RangePoint& rBound, const RecordJudge& rJudge)
{
    const ArbExposureQuantity quantity = rJudge.Around<RangeType>()->quantity;
    if (quantity == ArbQuantityTime)
    {
        CheckTimeBound(rBound, rJudge);
    }
    else if (quantity == ArbQuantityGain && rBound.adj == ArbRangeAbsolute && rBound.val > 0.0F && rBound.val < 1.0F)
    {
        rJudge.Advise("val", fmt::format("is {}", rBound.val), "1 or more (linear gain)",
                      "below the sensor's lowest gain the range never applies");
    }
    else if (quantity == ArbQuantityGain && rBound.val <= 0.0F &&
             (rBound.adj == ArbRangeAbsolute || rBound.adj == ArbRangeRelativeFactor))
    {
        rJudge.Error("val", fmt::format("is {}", rBound.val), "above 0 (linear gain)");
    }
}

/// The range as a whole, apart from what each bound says alone.
VOID CheckRange(const RangeType& rRange, const RecordJudge& rJudge)
{
    const bool isAbsolute = rRange.start.adj == ArbRangeAbsolute && rRange.end.adj == ArbRangeAbsolute;
    if (isAbsolute && rRange.start.val > rRange.end.val)
    {
        rJudge.Error("end", fmt::format("is {}", rRange.end.val),
                     fmt::format("{} or more, the start", rRange.start.val), "a range upside down never applies");
    }
    const bool isShiftedIndex = rRange.quantity == ArbQuantityIndex && rRange.start.adj == ArbRangeRelativeOffset &&
                                rRange.end.adj == ArbRangeRelativeOffset;
    if (isShiftedIndex && (rRange.start.val < 0.0F || rRange.end.val > 0.0F))
    {
        rJudge.Error((rRange.start.val < 0.0F) ? "start" : "end", "widens the range of the index",
                     "a start of 0 or more and an end of 0 or less (log steps)",
                     "a wider range of the index never applies");
    }
    const RangeCompensationType& rCompensation = rRange.handling.compensation;
    if (rCompensation.enableCompensation == FALSE)
    {
        return;
    }
    if (rRange.quantity == ArbQuantityIndex)
    {
        rJudge.Advise("handling", "compensates for a change of the index", "enableCompensation: false",
                      "the table has changed gain and time together: there is nothing to make up for");
    }
    else if (rCompensation.compensationQuantity != rRange.quantity)
    {
        rJudge.Advise("handling", fmt::format("compensates for {}", EnumeratorText(rCompensation.compensationQuantity)),
                      fmt::format("{}, the range's quantity", EnumeratorText(rRange.quantity)),
                      "the compensation has no effect otherwise");
    }
}

/// @return the ranges whose bounds the host, a peer or a flash puts in
std::set<INT32> FilledInRanges(const ModeView& rView)
{
    std::set<INT32> filledIn;
    ForEachControl(rView,
                   [&filledIn](std::span<const OrderType> controls, size_t index)
                   {
                       const OrderType& rControl = controls[index];
                       if (IsSetByHost(rControl.controlID) || rControl.controlID == ArbCtrlMasterTime)
                       {
                           filledIn.insert(rControl.dataID);
                       }
                   });
    return filledIn;
}

}  // namespace

VOID CheckRanges(const ModeView& rView, Findings& rFindings)
{
    const ModulePlace* pModule = rView.Find("kirodbarbitrationrange");
    if (pModule == nullptr)
    {
        return;
    }
    const std::set<INT32> filledIn = FilledInRanges(rView);
    const auto            isTuned  = [&filledIn](const RecordJudge& rJudge)
    { return !filledIn.contains(rJudge.Around<DBArbitrationRangePayload>()->dataID); };
    JudgeEach<RangePoint>(*pModule, rFindings,
                          [&isTuned](const RangePoint& rBound, const RecordJudge& rJudge)
                          {
                              if (isTuned(rJudge))
                              {
                                  CheckBound(rBound, rJudge);
                              }
                          });
    JudgeEach<RangeType>(*pModule, rFindings,
                         [&isTuned](const RangeType& rRange, const RecordJudge& rJudge)
                         {
                             if (isTuned(rJudge))
                             {
                                 CheckRange(rRange, rJudge);
                             }
                         });
}

}  // namespace tuningcheck
