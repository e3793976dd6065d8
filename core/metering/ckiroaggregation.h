/// @file
/// The rules by which a component of a scene analyzer makes one result of its calculators' values and weights.
#pragma once

#include <span>

#include "interface/kiroframe.h"
#include "schema/kirometeringsceneanalyzer.h"

namespace aggregation
{

/// @param weights one per value
/// @param rResult 0 without values, and for a method that numbers do not have
/// @return false for a method that numbers do not have
bool Aggregate(kirometeringsceneanalyzer::AggregationMethodType method, std::span<const FLOAT> values,
               std::span<const FLOAT> weights, FLOAT& rResult);

/// Entries that the working memory for ranges needs.
constexpr size_t PositionCount(size_t ranges)
{
    return 2 * ranges + 2;
}

/// The same for ranges. Rules for numbers apply to starts and ends apart from each other.
/// @param positions working memory, PositionCount entries
bool Aggregate(kirometeringsceneanalyzer::AggregationMethodType method, std::span<const StartEnd> ranges,
               std::span<const FLOAT> weights, std::span<FLOAT> positions, StartEnd& rResult);

}  // namespace aggregation
