#include "tools/tuningcheck/rules/orders.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

#include "tools/tuningcheck/recordjudge.h"
#include "tools/tuningcheck/rules/arbitrationranges.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbarbitrationorder;
using namespace kirodbarbitrationrange;

/// Each exposure is split by one list.
VOID CheckLists(const ArbitrationControlOrder& rOrder, const RecordJudge& rJudge)
{
    const auto& rLists = rOrder.exposureTypes;
    for (UINT32 index = 0; index < std::size(rLists); ++index)
    {
        const auto* pSame =
            std::find_if(std::begin(rLists), rLists + index,
                         [&](const auto& rList) { return rList.exposureType == rLists[index].exposureType; });
        const bool isNone = rLists[index].exposureType == ExposureNone;
        if (pSame != rLists + index || isNone)
        {
            rJudge.ErrorIn("exposureTypes", index,
                           isNone ? "is a list for ExposureNone"
                                  : fmt::format("is a second list for {}, or left out",
                                                EnumeratorText(rLists[index].exposureType)),
                           "a list for each of ExposureShort, ExposureSafe and ExposureLong",
                           "an exposure without a list is not split into gain and time");
            return;
        }
    }
}

/// The quantity that the range of a control must be of.
std::optional<ArbExposureQuantity> QuantityOf(ArbitrationControl control)
{
    switch (control)
    {
    case ArbCtrlFPS:
    case ArbCtrlManualTime:
    case ArbCtrlMasterTime:
    case ArbCtrlSHDRTimeRange:
        return ArbQuantityTime;
    case ArbCtrlManualGain:
    case ArbCtrlManualISO:
        return ArbQuantityGain;
    default:
        return std::nullopt;
    }
}

/// @return whether the control can do with the quantity of its range, as far as the range is known
bool HasFittingRange(const OrderType& rControl, const RangesByID& rRanges)
{
    const auto       quantity = QuantityOf(rControl.controlID);
    const RangeType* pRange   = rRanges.Find(rControl.dataID);
    return !quantity.has_value() || pRange == nullptr || pRange->quantity == *quantity;
}

/// The ranges of a mode, and the controls by which the host puts in bounds.
struct Ranges
{
    RangesByID                          byID;
    std::map<INT32, ArbitrationControl> hostControls;  ///< by range
};

Ranges RangesOf(const ModeView& rView)
{
    Ranges ranges{RangesByID(rView), {}};
    ForEachControl(rView,
                   [&ranges](std::span<const OrderType> controls, size_t index)
                   {
                       const OrderType& rControl = controls[index];
                       if (rControl.enableControl != FALSE && rControl.dataID != 0 && IsSetByHost(rControl.controlID) &&
                           HasFittingRange(rControl, ranges.byID))
                       {
                           ranges.hostControls.try_emplace(rControl.dataID, rControl.controlID);
                       }
                   });
    return ranges;
}

VOID CheckQuantity(const OrderType& rControl, UINT32 index, const RangesByID& rRanges, const RecordJudge& rJudge)
{
    if (!HasFittingRange(rControl, rRanges))
    {
        rJudge.ErrorIn("controls", index,
                       fmt::format("names range {}, which is of {}", rControl.dataID,
                                   EnumeratorText(rRanges.Find(rControl.dataID)->quantity)),
                       fmt::format("a range of {} for {}", EnumeratorText(*QuantityOf(rControl.controlID)),
                                   EnumeratorText(rControl.controlID)));
    }
}

/// The host overwrites the bounds of a range that is its own, for all lists. Before each of its own controls it puts in
/// those of that control, so that these may share one.
VOID CheckSharing(const OrderType& rControl, UINT32 index, const Ranges& rRanges, const RecordJudge& rJudge)
{
    const auto owner = rRanges.hostControls.find(rControl.dataID);
    if (owner != rRanges.hostControls.end() && IsRangeControl(rControl.controlID) && !IsSetByHost(rControl.controlID) &&
        HasFittingRange(rControl, rRanges.byID))
    {
        rJudge.ErrorIn("controls", index,
                       fmt::format("shares range {} with {}", rControl.dataID, EnumeratorText(owner->second)),
                       fmt::format("a range of its own for {}", EnumeratorText(rControl.controlID)),
                       "the host puts in its bounds in each frame");
    }
}

/// A control that counts from what those before it have left.
VOID CheckPlace(std::span<const OrderType> controls, UINT32 index, const RangesByID& rRanges, const RecordJudge& rJudge)
{
    const auto       before   = controls.first(index);
    const OrderType& rHere    = controls[index];
    const RangeType* pRange   = IsRangeControl(rHere.controlID) ? rRanges.Find(rHere.dataID) : nullptr;
    const bool       hasTable = std::any_of(before.begin(), before.end(),
                                            [](const OrderType& rControl) {
                                          return rControl.enableControl != FALSE && rControl.controlID == ArbCtrlTable;
                                      });
    if (pRange != nullptr && pRange->quantity == ArbQuantityIndex && !hasTable)
    {
        rJudge.ErrorIn("controls", index, fmt::format("names range {} of the index before a table", rHere.dataID),
                       "an enabled ArbCtrlTable before it", "the index is counted along the table");
    }
    const bool hasAny = std::any_of(before.begin(), before.end(),
                                    [](const OrderType& rControl) { return rControl.enableControl != FALSE; });
    if (rHere.controlID == ArbCtrlSHDRTimeRange && !hasAny)
    {
        rJudge.ErrorIn("controls", index, "is ArbCtrlSHDRTimeRange with no control before it",
                       "another enabled control before it", "its bound counts from the one that the last has left");
    }
}

/// Of these controls bounds are put in as times, whatever the range says that they are.
VOID CheckAbsolute(const OrderType& rControl, UINT32 index, const RangesByID& rRanges, const RecordJudge& rJudge)
{
    const RangeType* pRange   = rRanges.Find(rControl.dataID);
    const bool       isMaster = rControl.controlID == ArbCtrlMasterTime;
    if (pRange == nullptr || (!isMaster && rControl.controlID != ArbCtrlSHDRTimeRange))
    {
        return;
    }
    if (pRange->end.adj != ArbRangeAbsolute || (isMaster && pRange->start.adj != ArbRangeAbsolute))
    {
        rJudge.ErrorIn("controls", index, fmt::format("names range {}, which has a relative bound", rControl.dataID),
                       fmt::format("ArbRangeAbsolute for {} of the range of {}", isMaster ? "both bounds" : "the end",
                                   EnumeratorText(rControl.controlID)),
                       "a time is put in there");
    }
}

VOID CheckControls(const ArbitrationControlExposureType& rList, const Ranges& rRanges, const RecordJudge& rJudge)
{
    const auto controls = ListOf(rList.controls, rList.controlsCount);
    for (UINT32 index = 0; index < controls.size(); ++index)
    {
        const OrderType& rControl = controls[index];
        if (rControl.enableControl == FALSE)
        {
            continue;
        }
        CheckQuantity(rControl, index, rRanges.byID, rJudge);
        CheckSharing(rControl, index, rRanges, rJudge);
        CheckPlace(controls, index, rRanges.byID, rJudge);
        if (rControl.controlID == ArbCtrlSHDRTimeRange && rList.exposureType == ExposureLong)
        {
            rJudge.ErrorIn("controls", index, "is ArbCtrlSHDRTimeRange for ExposureLong",
                           "a list of ExposureShort or ExposureSafe", "it takes what Long leaves of a frame's time");
        }
        CheckAbsolute(rControl, index, rRanges.byID, rJudge);
    }
}

}  // namespace

VOID CheckOrders(const ModeView& rView, Findings& rFindings)
{
    const ModulePlace* pModule = rView.Find("kirodbarbitrationorder");
    if (pModule == nullptr)
    {
        return;
    }
    const Ranges ranges = RangesOf(rView);
    JudgeEach<ArbitrationControlOrder>(*pModule, rFindings, CheckLists);
    JudgeEach<ArbitrationControlExposureType>(
        *pModule, rFindings,
        [&ranges](const ArbitrationControlExposureType& rList, const RecordJudge& rJudge)
        {
            if (rList.exposureType != ExposureNone)
            {
                CheckControls(rList, ranges, rJudge);
            }
        });
}

}  // namespace tuningcheck
