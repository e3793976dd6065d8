#include "core/metering/ckiroaggregation.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using namespace kirometeringsceneanalyzer;

namespace
{

constexpr FLOAT NotANumber = std::numeric_limits<FLOAT>::quiet_NaN();

FLOAT OfNumbers(INT32 method, std::vector<FLOAT> values, std::vector<FLOAT> weights)
{
    FLOAT result = 77.0f;
    EXPECT_TRUE(aggregation::Aggregate(static_cast<AggregationMethodType>(method), values, weights, result)) << method;
    return result;
}

StartEnd OfRanges(INT32 method, std::vector<StartEnd> ranges, std::vector<FLOAT> weights)
{
    std::vector<FLOAT> positions(aggregation::PositionCount(ranges.size()));
    StartEnd           result{77.0f, 77.0f};
    EXPECT_TRUE(aggregation::Aggregate(static_cast<AggregationMethodType>(method), ranges, weights, positions, result))
        << method;
    return result;
}

VOID ExpectRange(StartEnd range, FLOAT start, FLOAT end)
{
    EXPECT_FLOAT_EQ(range.start, start);
    EXPECT_FLOAT_EQ(range.end, end);
}

TEST(Aggregation, NumbersFollowEachRule)
{
    const std::pair<AggregationMethodType, FLOAT> cases[] = {
        {Average, 24.0f},      {NormalizedWeightedSum, 28.0f},
        {WeightedSum, 112.0f}, {MinValue, 12.0f},
        {MaxValue, 40.0f},     {MinWeight, 12.0f},
        {MaxWeight, 40.0f},    {MultiplyValue, 9600.0f},
        {RatioValue, 0.015f},  {FirstValidConfidence, 12.0f},
        {Dominant, 28.0f},
    };
    for (const auto& [method, expected] : cases)
    {
        EXPECT_FLOAT_EQ(OfNumbers(method, {12.0f, 40.0f, 20.0f}, {1.0f, 2.0f, 1.0f}), expected) << method;
    }
}

TEST(Aggregation, DivisionsAreGuarded)
{
    EXPECT_EQ(OfNumbers(NormalizedWeightedSum, {12.0f, 40.0f}, {0.0f, 0.0f}), 0.0f);
    EXPECT_FLOAT_EQ(OfNumbers(RatioValue, {5.0f, 0.0f}, {1.0f, 1.0f}), 5e7f);
    EXPECT_EQ(OfNumbers(FirstValidConfidence, {5.0f, 6.0f, 7.0f}, {0.0f, 1e-8f, 0.1f}), 7.0f);
    EXPECT_EQ(OfNumbers(FirstValidConfidence, {5.0f, 6.0f}, {0.0f, 1e-8f}), 0.0f);
}

TEST(Aggregation, NothingToAggregateIsZero)
{
    for (INT32 method = Average; method <= Dominant; ++method)
    {
        EXPECT_EQ(OfNumbers(method, {}, {}), 0.0f) << method;
        ExpectRange(OfRanges(method, {}, {}), 0.0f, 0.0f);
    }
    ExpectRange(OfRanges(MinWeightedAbsoluteSumDifference, {}, {}), -1.0f, -1.0f);
    ExpectRange(OfRanges(RangeIntersection, {}, {}), -1.0f, 255.0f);
}

TEST(Aggregation, UnknownMethodsAreRefusedWithZero)
{
    const std::vector<FLOAT> one{5.0f};
    for (INT32 method : {11, 12, 13, -1})
    {
        FLOAT result = 77.0f;
        EXPECT_FALSE(aggregation::Aggregate(static_cast<AggregationMethodType>(method), one, one, result)) << method;
        EXPECT_EQ(result, 0.0f);
    }
    const std::vector<StartEnd> range{{1.0f, 2.0f}};
    std::vector<FLOAT>          positions(aggregation::PositionCount(1));
    StartEnd                    result{77.0f, 77.0f};
    EXPECT_FALSE(aggregation::Aggregate(static_cast<AggregationMethodType>(13), range, one, positions, result));
    ExpectRange(result, 0.0f, 0.0f);
}

TEST(Aggregation, HalvesOfRangesAreAggregatedApartButChosenAsPairs)
{
    const std::vector<StartEnd> ranges{{10.0f, 100.0f}, {30.0f, 60.0f}};
    ExpectRange(OfRanges(MinValue, ranges, {2.0f, 1.0f}), 10.0f, 60.0f);
    ExpectRange(OfRanges(NormalizedWeightedSum, ranges, {3.0f, 1.0f}), 15.0f, 90.0f);
    ExpectRange(OfRanges(MinWeight, ranges, {2.0f, 1.0f}), 30.0f, 60.0f);
    ExpectRange(OfRanges(MaxWeight, ranges, {1.0f, 1.0f}), 10.0f, 100.0f);

    // The intersection of ranges apart is the gap.
    ExpectRange(OfRanges(RangeIntersection, {{10.0f, 50.0f}, {30.0f, 90.0f}}, {0.0f, 0.0f}), 30.0f, 50.0f);
    ExpectRange(OfRanges(RangeIntersection, {{50.0f, 60.0f}, {70.0f, 80.0f}}, {1.0f, 1.0f}), 60.0f, 70.0f);
    ExpectRange(OfRanges(RangeIntersection, {{80.0f, 70.0f}}, {1.0f}), 70.0f, 80.0f);
}

TEST(Aggregation, NearestLumaLiesBetweenWeightedRanges)
{
    const INT32 method = MinWeightedAbsoluteSumDifference;
    // Both ends of a single range cost nothing; the lower region is visited first.
    ExpectRange(OfRanges(method, {{100.0f, 120.0f}}, {1.0f}), 100.0f, 100.0f);
    // Between the ranges: (1 x 20 + 3 x 100) / 4.
    ExpectRange(OfRanges(method, {{10.0f, 20.0f}, {100.0f, 120.0f}}, {1.0f, 3.0f}), 80.0f, 80.0f);
    // A range without weight neither bounds a region nor pulls.
    ExpectRange(OfRanges(method, {{10.0f, 20.0f}, {100.0f, 120.0f}}, {0.0f, 3.0f}), 100.0f, 100.0f);
    ExpectRange(OfRanges(method, {{10.0f, 20.0f}}, {0.0f}), -1.0f, -1.0f);

    const StartEnd nearest =
        OfRanges(method, {{NotANumber, NotANumber}, {100.0f, 120.0f}, {NotANumber, 5.0f}}, {1.0f, 1.0f, 0.5f});
    EXPECT_GE(nearest.start, 0.0f);
    EXPECT_LE(nearest.start, 256.0f);
}

}  // namespace
