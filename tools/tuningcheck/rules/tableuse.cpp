#include "tools/tuningcheck/rules/tableuse.h"

#include <algorithm>

#include "tools/tuningcheck/rules/arbitrationranges.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbarbitrationorder;
using namespace kirodbarbitrationrange;

/// A manual setting narrows the range only while it is made.
bool IsCap(const OrderType& rControl, ArbExposureQuantity quantity, const RangesByID& rRanges)
{
    const RangeType* pRange = IsRangeControl(rControl.controlID) && !IsSetByHost(rControl.controlID)
                                  ? rRanges.Find(rControl.dataID)
                                  : nullptr;
    return rControl.enableControl && pRange != nullptr && pRange->quantity == quantity &&
           pRange->end.adj == ArbRangeAbsolute;
}

}  // namespace

TableUse TableUseOf(const ModeView& rView)
{
    TableUse         use;
    const RangesByID ranges(rView);
    ForEachControl(rView,
                   [&](std::span<const OrderType> controls, size_t index)
                   {
                       const OrderType& rTable = controls[index];
                       for (const ArbExposureQuantity quantity : {ArbQuantityGain, ArbQuantityTime})
                       {
                           const bool isCapped =
                               std::ranges::any_of(controls.first(index), [&](const OrderType& rControl)
                                                   { return IsCap(rControl, quantity, ranges); });
                           if (rTable.controlID == ArbCtrlTable && rTable.enableControl && !isCapped)
                           {
                               use.AddUncapped(rTable.dataID, quantity);
                           }
                       }
                   });
    return use;
}

}  // namespace tuningcheck
