#include "core/metering/ckiroaggregation.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"

using exposurearithmetic::Epsilon;
using namespace kirometeringsceneanalyzer;

namespace
{

/// The scale of luma, on which the best position is looked for.
constexpr FLOAT LumaMin = 0.0f;
constexpr FLOAT LumaMax = 256.0f;

/// Largest luma that a value can have.
constexpr FLOAT LumaLast = 255.0f;

constexpr FLOAT NoPosition = -1.0f;

/// A cost that no position of interest reaches.
constexpr FLOAT CostMax = 100000.0f;

/// The starts or the ends of ranges as numbers.
template <FLOAT StartEnd::*Half> class HalfOfRanges
{
public:
    explicit HalfOfRanges(std::span<const StartEnd> ranges) : m_ranges(ranges)
    {
    }

    FLOAT operator[](size_t index) const
    {
        return m_ranges[index].*Half;
    }

private:
    std::span<const StartEnd> m_ranges;
};

template <typename Values> FLOAT Sum(const Values& rValues, size_t count)
{
    FLOAT sum = 0.0f;
    for (size_t index = 0; index < count; ++index)
    {
        sum += rValues[index];
    }
    return sum;
}

template <typename Values> FLOAT WeightedSumOf(const Values& rValues, std::span<const FLOAT> weights)
{
    FLOAT sum = 0.0f;
    for (size_t index = 0; index < weights.size(); ++index)
    {
        sum += weights[index] * rValues[index];
    }
    return sum;
}

/// Applies step(result, value) to the first value and all others in turn.
template <typename Values, typename Step> FLOAT Fold(const Values& rValues, size_t count, Step step)
{
    FLOAT result = rValues[0];
    for (size_t index = 1; index < count; ++index)
    {
        result = step(result, rValues[index]);
    }
    return result;
}

template <typename Values> FLOAT FirstValid(const Values& rValues, std::span<const FLOAT> weights)
{
    const auto found = std::find_if(weights.begin(), weights.end(), [](FLOAT weight) { return weight > Epsilon; });
    return (found != weights.end()) ? rValues[static_cast<size_t>(found - weights.begin())] : 0.0f;
}

bool IsNumberMethod(AggregationMethodType method)
{
    return method >= Average && method <= Dominant;
}

/// The rules that work on one number per calculator.
/// @return 0 without calculators, and for a method that numbers do not have
template <typename Values>
FLOAT AggregateNumbers(AggregationMethodType method, const Values& rValues, std::span<const FLOAT> weights)
{
    const size_t count = weights.size();
    if (count == 0)
    {
        return 0.0f;
    }
    switch (method)
    {
    case Average:
        return Sum(rValues, count) / static_cast<FLOAT>(count);
    case NormalizedWeightedSum:
    case Dominant:
        return WeightedSumOf(rValues, weights) / std::max(Sum(weights, count), Epsilon);
    case WeightedSum:
        return WeightedSumOf(rValues, weights);
    case MinValue:
        return Fold(rValues, count, [](FLOAT least, FLOAT value) { return std::min(least, value); });
    case MaxValue:
        return Fold(rValues, count, [](FLOAT most, FLOAT value) { return std::max(most, value); });
    case MinWeight:
        return rValues[static_cast<size_t>(std::min_element(weights.begin(), weights.end()) - weights.begin())];
    case MaxWeight:
        return rValues[static_cast<size_t>(std::max_element(weights.begin(), weights.end()) - weights.begin())];
    case MultiplyValue:
        return Fold(rValues, count, [](FLOAT product, FLOAT value) { return product * value; });
    case RatioValue:
        return Fold(rValues, count, [](FLOAT ratio, FLOAT value) { return ratio / std::max(value, Epsilon); });
    case FirstValidConfidence:
        return FirstValid(rValues, weights);
    default:
        return 0.0f;
    }
}

/// Fills in the bounds of all ranges that count and of the scale, sorted; a bound that is no number comes last.
std::span<const FLOAT> SortPositions(std::span<const StartEnd> ranges, std::span<const FLOAT> weights,
                                     std::span<FLOAT> positions)
{
    size_t count       = 0;
    positions[count++] = LumaMin;
    positions[count++] = LumaMax;
    for (size_t index = 0; index < ranges.size(); ++index)
    {
        if (weights[index] > 0.0f)
        {
            positions[count++] = ranges[index].start;
            positions[count++] = ranges[index].end;
        }
    }
    const std::span<FLOAT> used = positions.first(count);
    std::sort(used.begin(), used.end(),
              [](FLOAT left, FLOAT right) { return left < right || (std::isnan(right) && !std::isnan(left)); });
    return used;
}

/// What a luma within a region that no bound of a range divides costs: |luma coeff - constant|, the weighted
/// differences from the nearer bounds of all ranges, summed with their signs. Ranges on both sides cancel each other.
struct RegionCost
{
    FLOAT coeff;
    FLOAT constant;
};

RegionCost CostWithin(FLOAT regionStart, FLOAT regionEnd, std::span<const StartEnd> ranges,
                      std::span<const FLOAT> weights)
{
    RegionCost cost{0.0f, 0.0f};
    for (size_t index = 0; index < ranges.size(); ++index)
    {
        const FLOAT weight = weights[index];
        if (std::abs(weight) < Epsilon)
        {
            continue;
        }
        if (ranges[index].start >= regionEnd)
        {
            cost.constant += weight * ranges[index].start;
            cost.coeff += weight;
        }
        if (ranges[index].end <= regionStart)
        {
            cost.constant += weight * ranges[index].end;
            cost.coeff += weight;
        }
    }
    return cost;
}

/// The luma at which the weighted differences from all ranges balance best: each region between two neighbouring bounds
/// has one candidate, and the earlier one wins a tie.
FLOAT NearestToAllRanges(std::span<const StartEnd> ranges, std::span<const FLOAT> weights, std::span<FLOAT> positions)
{
    const std::span<const FLOAT> bounds  = SortPositions(ranges, weights, positions);
    FLOAT                        minCost = CostMax;
    FLOAT                        minX    = NoPosition;
    for (size_t region = 0; region + 1 < bounds.size(); ++region)
    {
        const FLOAT regionStart = bounds[region];
        const FLOAT regionEnd   = bounds[region + 1];
        if (regionEnd - regionStart < Epsilon)
        {
            continue;
        }
        // Without a range on either side the candidate is no number, and its cost is not below any other.
        const RegionCost cost          = CostWithin(regionStart, regionEnd, ranges, weights);
        const FLOAT      optmCandidate = std::min(std::max(cost.constant / cost.coeff, regionStart), regionEnd);
        const FLOAT      currCost      = std::abs(optmCandidate * cost.coeff - cost.constant);
        if (currCost < minCost)
        {
            minCost = currCost;
            minX    = optmCandidate;
        }
    }
    return minX;
}

/// Weights do not count. Ranges that share nothing yield the gap between them.
StartEnd IntersectRanges(std::span<const StartEnd> ranges)
{
    FLOAT largestStart = NoPosition;
    FLOAT smallestEnd  = LumaLast;
    for (const StartEnd& rRange : ranges)
    {
        largestStart = std::max(largestStart, std::min(rRange.start, rRange.end));
        smallestEnd  = std::min(smallestEnd, std::max(rRange.start, rRange.end));
    }
    return {std::min(largestStart, smallestEnd), std::max(largestStart, smallestEnd)};
}

}  // namespace

namespace aggregation
{

bool Aggregate(AggregationMethodType method, std::span<const FLOAT> values, std::span<const FLOAT> weights,
               FLOAT& rResult)
{
    rResult = AggregateNumbers(method, values, weights);
    return IsNumberMethod(method);
}

bool Aggregate(AggregationMethodType method, std::span<const StartEnd> ranges, std::span<const FLOAT> weights,
               std::span<FLOAT> positions, StartEnd& rResult)
{
    if (method == MinWeightedAbsoluteSumDifference)
    {
        const FLOAT nearest = NearestToAllRanges(ranges, weights, positions);
        rResult             = {nearest, nearest};
        return true;
    }
    if (method == RangeIntersection)
    {
        rResult = IntersectRanges(ranges);
        return true;
    }
    rResult = {AggregateNumbers(method, HalfOfRanges<&StartEnd::start>(ranges), weights),
               AggregateNumbers(method, HalfOfRanges<&StartEnd::end>(ranges), weights)};
    return IsNumberMethod(method);
}

}  // namespace aggregation
