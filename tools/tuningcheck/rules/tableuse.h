/// @file
/// Which exposure tables the orders of a mode use without anything that caps them.
#pragma once

#include <set>

#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

class TableUse
{
public:
    /// @param dataID of a table
    bool IsUncapped(INT32 dataID) const
    {
        return m_uncapped.contains(dataID) || m_uncapped.contains(SelectedByContext);
    }

    VOID AddUncapped(INT32 dataID)
    {
        m_uncapped.insert(dataID);
    }

private:
    static constexpr INT32 SelectedByContext = 0;  ///< may be any table

    std::set<INT32> m_uncapped;
};

/// A range of gain with an absolute upper bound before the table caps it, as far as a tuning can tell.
TableUse TableUseOf(const ModeView& rView);

}  // namespace tuningcheck
