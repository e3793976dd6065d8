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

/// The rules that work on one number per calculator; there is at least one.
template <typename Values>
bool AggregateNumbers(AggregationMethodType method, const Values& rValues, std::span<const FLOAT> weights,
                      FLOAT& rResult)
{
    const size_t count = weights.size();
    switch (method)
    {
    case Average:
        rResult = Sum(rValues, count) / static_cast<FLOAT>(count);
        return true;
    case NormalizedWeightedSum:
    case Dominant:
        rResult = WeightedSumOf(rValues, weights) / std::max(Sum(weights, count), Epsilon);
        return true;
    case WeightedSum:
        rResult = WeightedSumOf(rValues, weights);
        return true;
    case MinValue:
        rResult = Fold(rValues, count, [](FLOAT least, FLOAT value) { return std::min(least, value); });
        return true;
    case MaxValue:
        rResult = Fold(rValues, count, [](FLOAT most, FLOAT value) { return std::max(most, value); });
        return true;
    case MinWeight:
        rResult = rValues[static_cast<size_t>(std::min_element(weights.begin(), weights.end()) - weights.begin())];
        return true;
    case MaxWeight:
        rResult = rValues[static_cast<size_t>(std::max_element(weights.begin(), weights.end()) - weights.begin())];
        return true;
    case MultiplyValue:
        rResult = Fold(rValues, count, [](FLOAT product, FLOAT value) { return product * value; });
        return true;
    case RatioValue:
        rResult = Fold(rValues, count, [](FLOAT ratio, FLOAT value) { return ratio / std::max(value, Epsilon); });
        return true;
    case FirstValidConfidence:
        rResult = FirstValid(rValues, weights);
        return true;
    default:
        return false;
    }
}

bool IsNumberMethod(AggregationMethodType method)
{
    return method >= Average && method <= Dominant;
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

/// The luma whose weighted distances to all ranges have the least sum. Between two neighbouring bounds the cost is
/// linear in the luma, so each such region has one candidate.
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
        FLOAT aggCoeff = 0.0f;
        FLOAT aggConst = 0.0f;
        for (size_t index = 0; index < ranges.size(); ++index)
        {
            const FLOAT weight = weights[index];
            if (std::abs(weight) < Epsilon)
            {
                continue;
            }
            if (ranges[index].start >= regionEnd)
            {
                aggConst += weight * ranges[index].start;
                aggCoeff += weight;
            }
            if (ranges[index].end <= regionStart)
            {
                aggConst += weight * ranges[index].end;
                aggCoeff += weight;
            }
        }
        // Without a range on either side the candidate is no number, and its cost is not below any other.
        const FLOAT optmCandidate = std::min(std::max(aggConst / aggCoeff, regionStart), regionEnd);
        const FLOAT currCost      = std::abs(optmCandidate * aggCoeff - aggConst);
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
    rResult = 0.0f;
    return weights.empty() ? IsNumberMethod(method) : AggregateNumbers(method, values, weights, rResult);
}

bool Aggregate(AggregationMethodType method, std::span<const StartEnd> ranges, std::span<const FLOAT> weights,
               std::span<FLOAT> positions, StartEnd& rResult)
{
    rResult = {0.0f, 0.0f};
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
    if (weights.empty())
    {
        return IsNumberMethod(method);
    }
    const HalfOfRanges<&StartEnd::start> starts(ranges);
    const HalfOfRanges<&StartEnd::end>   ends(ranges);
    return AggregateNumbers(method, starts, weights, rResult.start) &&
           AggregateNumbers(method, ends, weights, rResult.end);
}

}  // namespace aggregation
