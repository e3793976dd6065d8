/// @file
/// The ranges that the controls of an order name.
#pragma once

#include "schema/kirodbarbitrationorder.h"
#include "schema/kirodbarbitrationrange.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

/// @return whether the control takes a range
bool IsRangeControl(kirodbarbitrationorder::ArbitrationControl control);

/// @return whether the host puts in the bounds of the control's range in each frame
bool IsSetByHost(kirodbarbitrationorder::ArbitrationControl control);

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
