#include "tools/tuningcheck/rules/tableuse.h"

#include <algorithm>

#include "schema/kirodbarbitrationorder.h"
#include "tools/tuningcheck/recordjudge.h"
#include "tools/tuningcheck/rules/arbitrationranges.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbarbitrationorder;
using namespace kirodbarbitrationrange;

/// A manual setting narrows the range only while it is made.
bool IsCap(const OrderType& rControl, const RangesByID& rRanges)
{
    const RangeType* pRange = IsRangeControl(rControl.controlID) && !IsSetByHost(rControl.controlID)
                                  ? rRanges.Find(rControl.dataID)
                                  : nullptr;
    return rControl.enableControl && pRange != nullptr && pRange->quantity == ArbQuantityGain &&
           pRange->end.adj == ArbRangeAbsolute;
}

}  // namespace

TableUse TableUseOf(const ModeView& rView)
{
    TableUse         use;
    const RangesByID ranges(rView);
    const auto*      pOrders = rView.Get<KIRODBArbitrationOrderType>("kirodbarbitrationorder");
    if (pOrders == nullptr)
    {
        return use;
    }
    for (const DBArbitrationOrderPayload& rPayload : ListOf(pOrders->data, pOrders->dataCount))
    {
        for (const ArbitrationControlExposureType& rExposure : rPayload.value.exposureTypes)
        {
            const auto controls = ListOf(rExposure.controls, rExposure.controlsCount);
            for (size_t index = 0; index < controls.size(); ++index)
            {
                const auto before = controls.first(index);
                if (controls[index].controlID == ArbCtrlTable && controls[index].enableControl &&
                    std::none_of(before.begin(), before.end(),
                                 [&](const OrderType& rControl) { return IsCap(rControl, ranges); }))
                {
                    use.AddUncapped(controls[index].dataID);
                }
            }
        }
    }
    return use;
}

}  // namespace tuningcheck
