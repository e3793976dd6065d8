/// @file
/// The ranges that the controls of an order name.
#pragma once

#include "schema/kirodbarbitrationorder.h"
#include "schema/kirodbarbitrationrange.h"
#include "tools/tuningcheck/modeview.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

/// @return whether the control takes a range
bool IsRangeControl(kirodbarbitrationorder::ArbitrationControl control);

/// @return whether the host puts in the bounds of the control's range in each frame
bool IsSetByHost(kirodbarbitrationorder::ArbitrationControl control);

/// Walks the controls of all orders of a mode. @param rVisit takes the controls of a list and the index of one of them
template <typename Visit> VOID ForEachControl(const ModeView& rView, const Visit& rVisit)
{
    using namespace kirodbarbitrationorder;
    const auto* pOrders = rView.Get<KIRODBArbitrationOrderType>("kirodbarbitrationorder");
    if (pOrders == nullptr)
    {
        return;
    }
    for (const DBArbitrationOrderPayload& rPayload : ListOf(pOrders->data, pOrders->dataCount))
    {
        for (const ArbitrationControlExposureType& rList : rPayload.value.exposureTypes)
        {
            const auto controls =
                ListOf(rList.controls, (rList.exposureType != ExposureNone) ? rList.controlsCount : 0);
            for (size_t index = 0; index < controls.size(); ++index)
            {
                rVisit(controls, index);
            }
        }
    }
}

/// The ranges of a mode.
class RangesByID
{
public:
    explicit RangesByID(const ModeView& rView)
        : m_pRanges(rView.Get<kirodbarbitrationrange::KIRODBArbitrationRangeType>("kirodbarbitrationrange"))
    {
    }

    /// @return null if there is no such range, or if the context selects it
    const kirodbarbitrationrange::RangeType* Find(INT32 dataID) const;

private:
    const kirodbarbitrationrange::KIRODBArbitrationRangeType* m_pRanges;
};

}  // namespace tuningcheck
