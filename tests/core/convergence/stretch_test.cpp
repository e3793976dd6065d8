// The stretch of Short, its aggregation, and its meeting with the DRC branch.

#include "tests/core/convergence/convergencefixture.h"

using namespace kirodbconvstretch;
using namespace kiroconvergence;

namespace
{

constexpr DOUBLE Darken   = 460.0;  ///< a target below: the scene goes from bright to dark
constexpr DOUBLE Brighten = 540.0;

constexpr FLOAT StepsOfFourFifths = -7.5f;  ///< log of 0.8 is -7.549, on the grid of 0.5; 1.25 is its opposite

class Stretch : public ConvergenceTest
{
protected:
    /// Without a unit step and speeds nothing moves but the stretch; the grid is 0.5.
    Stretch()
    {
        m_module.unitStepSize = 0.0f;
        SetSpeeds(0.0f, 0.0f);
    }

    /// One frame at step 500 after a frame with a stretch. @return the stretch of Short
    FLOAT StretchOf(DOUBLE target, FLOAT previousStretch = 0.0f)
    {
        AECFrameHistory previous    = FrameAt(Same(500.0));
        previous.shortStretchOffset = previousStretch;
        SaveHistory(previous);
        Run(Same(target));
        return m_output.shortStretchOffset;
    }

    /// One stretch of full temporal weight for each offset, or each factor.
    VOID SetOffsets(const std::vector<FLOAT>& rOffsets, AECConvStretchType type = StretchTypeOffset)
    {
        std::vector<ConvStretchCoreDataType> stretches;
        for (FLOAT offset : rOffsets)
        {
            stretches.push_back({1.0f, offset, 0.0f, 1.0f});
        }
        SetStretches(stretches, type);
    }
};

}  // namespace

TEST_F(Stretch, PredictiveGainTakesItsShareOfADarkeningStretch)
{
    SetStretches({{1.0f, -10.0f, 0.7f, 1.0f}});
    EXPECT_EQ(StretchOf(Darken), -10.0f);
    ExpectSteps({490.0, 497.0, 497.0});
    EXPECT_NEAR(m_output.predictiveGain, 1.229874, 1e-4) << "7 steps";
    SetStretches({{1.0f, 8.0f, 0.7f, 1.0f}});
    EXPECT_EQ(StretchOf(Brighten), 8.0f);
    ExpectSteps(Same(508.0), "a brightening one has none");
    EXPECT_EQ(m_output.predictiveGain, 1.0f);
}

TEST_F(Stretch, IsFilteredOverTimeAndPutOnTheGrid)
{
    const auto expect = [this](FLOAT stretch, FLOAT tempWeight, FLOAT previous, FLOAT expected)
    {
        SetStretches({{1.0f, stretch, 0.0f, tempWeight}});
        EXPECT_EQ(StretchOf(Brighten, previous), expected) << stretch << " after " << previous;
    };
    expect(-8.0f, 0.25f, -4.0f, -5.0f);
    expect(-8.0f, 0.25f, -4.4f, -5.5f);  // -5.3
    expect(8.0f, 0.5f, -7.0f, 0.0f);     // 0.5 is too little
    expect(-1.0f, 1.0f, 0.0f, -1.0f);
    m_module.unitStepSize = 0.25f;
    Restart();
    expect(-5.3f, 1.0f, 0.0f, -5.25f);
    m_module.unitStepSize = 2.0f;  // out of range
    Restart();
    expect(-5.3f, 1.0f, 0.0f, -5.5f);
}

TEST_F(Stretch, AverageWeighsAllOrThoseInDirection)
{
    SetStretches({{1.0f, -4.0f, 0.2f, 1.0f}, {3.0f, -8.0f, 0.6f, 1.0f}});
    EXPECT_EQ(StretchOf(Darken), -7.0f);
    EXPECT_NEAR(StepOf(m_output.predictiveGain), 3.5, 0.01) << "half of 7 steps";
    SetStretches({{0.0f, -4.0f, 0.2f, 1.0f}});
    EXPECT_EQ(StretchOf(Darken), 0.0f);
    SetOffsets({0.8f, 0.0f}, StretchTypeFactor);  // a factor of 0 is none
    EXPECT_EQ(StretchOf(Darken), -4.0f) << "half of 7.549 is on the grid at 4";

    m_stretch.value.convSameDirection = TRUE;
    SetOffsets({0.8f, 1.25f}, StretchTypeFactor);
    EXPECT_EQ(StretchOf(Darken), StepsOfFourFifths);
    EXPECT_EQ(StretchOf(Brighten), -StepsOfFourFifths);
    SetOffsets({-6.0f, -3.0f});  // offsets leave the slots with the directions of the factors
    EXPECT_EQ(StretchOf(Darken), -6.0f);
    EXPECT_EQ(StretchOf(Brighten), -3.0f);
}

TEST_F(Stretch, EffectIsChosenInTheDirectionOfTheScene)
{
    // After a stretch of -8, no choice yields -4, and a slot that was never written -8.
    const auto expect =
        [this](AECConvStretchAggType type, const std::vector<FLOAT>& rOffsets, DOUBLE target, FLOAT expected)
    {
        m_stretch.value.convStretchAgg = type;
        SetOffsets(rOffsets);
        Restart();
        EXPECT_EQ(StretchOf(target, -8.0f), expected) << "aggregation " << type << ", first offset " << rOffsets[0];
    };
    expect(StretchAggLeastEffect, {-3.0f, 6.0f, -9.0f, 4.0f}, Darken, -3.0f);
    expect(StretchAggLeastEffect, {-3.0f, 6.0f, -9.0f, 4.0f}, Brighten, 4.0f);
    expect(StretchAggMostEffect, {-3.0f, 6.0f, -9.0f, 4.0f}, Darken, -9.0f);
    expect(StretchAggMostEffect, {-3.0f, 6.0f, -9.0f, 4.0f}, Brighten, 6.0f);
    expect(StretchAggLeastEffect, {4.0f, 6.0f}, Darken, -4.0f);
    expect(StretchAggMostEffect, {4.0f, 6.0f}, Darken, -4.0f);
    expect(StretchAggLeastEffect, {-3.0f, -9.0f}, Brighten, -4.0f);
    expect(StretchAggMostEffect, {-3.0f, -9.0f}, Brighten, -4.0f);
    expect(StretchAggMostEffect, {0.0f, 5.0f}, Darken, 0.0f);
    expect(StretchAggLeastEffect, {0.0f, 5.0f}, Darken, -4.0f);
    // The least of darkening stretches alone is the fifth slot.
    expect(StretchAggLeastEffect, {-3.0f, -9.0f}, Darken, -8.0f);
    expect(StretchAggLeastEffect, {-3.0f, -9.0f, -2.0f, -4.0f, -5.0f, -6.0f}, Darken, -3.0f);
}

TEST_F(Stretch, WeightIsChosenInDirectionIfAsked)
{
    SetStretches({{3.0f, -3.0f, 0.0f, 1.0f}, {1.0f, -5.0f, 0.0f, 1.0f}, {2.0f, -7.0f, 0.0f, 1.0f}});
    m_stretch.value.convStretchAgg = StretchAggLeastWeight;
    EXPECT_EQ(StretchOf(Darken), -5.0f);
    m_stretch.value.convStretchAgg = StretchAggMostWeight;
    EXPECT_EQ(StretchOf(Darken), -3.0f);
    SetOffsets({-3.0f, -5.0f});
    EXPECT_EQ(StretchOf(Darken), -5.0f) << "equal weights keep their order";

    m_stretch.value.convSameDirection = TRUE;
    m_stretch.value.convStretchAgg    = StretchAggLeastWeight;
    SetStretches({{1.0f, 1.25f, 0.0f, 1.0f}, {2.0f, 0.8f, 0.0f, 1.0f}}, StretchTypeFactor);
    EXPECT_EQ(StretchOf(Brighten, -8.0f), -StepsOfFourFifths);
    EXPECT_EQ(StretchOf(Darken, -8.0f), -4.0f) << "none";
    // The most weight is tested by the sixth slot, which was never written and counts as brightening.
    m_stretch.value.convStretchAgg = StretchAggMostWeight;
    EXPECT_EQ(StretchOf(Brighten, -8.0f), StepsOfFourFifths);
    EXPECT_EQ(StretchOf(Darken, -8.0f), -4.0f);
}

TEST_F(Stretch, InvalidTuningKeepsThePreviousStretch)
{
    SetOffsets({-3.0f});
    m_stretch.value.convStretchAgg = StretchAggTypeMax;
    EXPECT_EQ(StretchOf(Darken, -8.0f), -8.0f);
    for (const size_t count : {0u, 11u})
    {
        SetOffsets(std::vector<FLOAT>(count, -3.0f));
        m_stretch.value.convStretchAgg = StretchAggLeastEffect;
        EXPECT_EQ(StretchOf(Darken, -8.0f), -8.0f) << count;
    }
}

TEST_F(Stretch, MeetsTheDRCBranch)
{
    // The stretch alone gives Short 490, Safe 497 and a gain of 7 steps; DRC keeps the previous distance of Short.
    const auto expect = [this](AECConvDRCStretchAggType type, DOUBLE distance, DOUBLE shortStep, DOUBLE gainSteps)
    {
        m_module.drcStretchAgg = type;
        Restart();
        SaveHistory(FrameAt({500.0 - distance, 505.0, 500.0}));
        ExpectRun({460.0 - distance, 465.0, 460.0}, {shortStep, 502.0, 497.0}, "aggregation " + std::to_string(type));
        EXPECT_NEAR(StepOf(m_output.predictiveGain), gainSteps, 0.01) << "aggregation " << type;
    };
    SetStretches({{1.0f, -10.0f, 0.7f, 1.0f}});
    expect(AggTypeDRCPrefParallel, 20.0, 477.0, 0.0);
    expect(AggTypeDRCPrefParallel, 3.0, 490.0, 4.0);
    expect(AggTypeCascade, 20.0, 470.0, 7.0);
    expect(AggTypeCascade, 3.0, 487.0, 7.0);
    expect(AggTypeDisableDRCInPredictive, 20.0, 490.0, 7.0);
    expect(Res, 20.0, 490.0, 7.0);  // reserved
}

TEST_F(Stretch, WhatDRCLeavesOfThePredictiveGainIsNeverBelowOne)
{
    // The gain is that of 7 steps; the stretch's distance is the same but for the rounding of 1000 steps. The distance
    // of DRC passes both, in steps that are finer than that.
    m_module.drcStretchAgg = AggTypeDRCPrefParallel;
    SaveHistory(FrameAt({1153.0002, 1160.0, 1160.0}));
    for (UINT32 index = 0; index < 20; ++index)
    {
        SetStretches({{1.0f, -1000.0f, 0.007f + 2e-9f * static_cast<FLOAT>(index), 1.0f}});
        for (FLOAT speed = 0.0f; speed < 4e-4f; speed += 4e-6f)
        {
            SetSpeeds(0.0f, speed);
            Run({152.0, 160.0, 160.0});
            ASSERT_GE(m_output.predictiveGain, 1.0f) << "stretch " << index << " speed " << speed;
        }
    }
}
