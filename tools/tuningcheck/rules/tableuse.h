/// @file
/// Which exposure tables the orders of a mode use without anything that caps them.
#pragma once

#include <set>

#include "schema/kirodbarbitrationrange.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

class TableUse
{
public:
    using Quantity = kirodbarbitrationrange::ArbExposureQuantity;

    /// @param dataID of a table @param quantity gain or time
    bool IsUncapped(INT32 dataID, Quantity quantity) const
    {
        return m_uncapped.contains({dataID, quantity}) || m_uncapped.contains({SelectedByContext, quantity});
    }

    VOID AddUncapped(INT32 dataID, Quantity quantity)
    {
        m_uncapped.emplace(dataID, quantity);
    }

private:
    static constexpr INT32 SelectedByContext = 0;  ///< may be any table

    std::set<std::pair<INT32, Quantity>> m_uncapped;
};

/// A range with an absolute upper bound before the table caps its quantity, as far as a tuning can tell.
TableUse TableUseOf(const ModeView& rView);

}  // namespace tuningcheck
