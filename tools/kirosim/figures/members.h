/// @file
/// Columns of numbers out of rows.
#pragma once

#include <span>
#include <vector>

namespace kirosim
{

/// One member of all rows. @param rows of records that have it
template <typename Row, typename Value> std::vector<Value> MembersOf(std::span<const Row> rows, Value Row::*pMember)
{
    std::vector<Value> values;
    values.reserve(rows.size());
    for (const Row& rRow : rows)
    {
        values.push_back(rRow.*pMember);
    }
    return values;
}

}  // namespace kirosim
