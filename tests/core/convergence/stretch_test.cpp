// The stretch of Short, its aggregation, and its meeting with the DRC branch.

#include "tests/core/convergence/convergencefixture.h"

using namespace kirodbconvstretch;
using kiroconvergence::AggTypeCascade;
using kiroconvergence::AggTypeDisableDRCInPredictive;
using kiroconvergence::AggTypeDRCPrefParallel;

namespace
{

constexpr DOUBLE BrighterScene = 460.0;  ///< the target lies below: bright to dark
constexpr DOUBLE DarkerScene   = 540.0;

constexpr FLOAT StepsOfFour5ths = -7.5f;  ///< log of 0.8 is -7.549, on the grid of 0.5; 1.25 is its opposite

class Stretch : public ConvergenceTest
{
protected:
    /// Without a unit step nothing moves but the stretch; the grid is 0.5.
    Stretch()
    {
        m_module.unitStepSize = 0.0f;
        m_speeds.Data()       = {0.0f, 0.0f, 0.0f};
    }

    /// One frame at step 500 after a frame with a stretch. @return the stretch of Short
    FLOAT StretchOf(DOUBLE target, FLOAT previousStretch = 0.0f)
    {
        AECFrameHistory previous    = FrameAt(Same(500.0));
        previous.shortStretchOffset = previousStretch;
        SaveFrame(previous);
        SaveFrame(previous);
        Run(Same(target));
        return m_output.shortStretchOffset;
    }
};

} // namespace

TEST_F(Stretch, PredictiveGainTakesItsShareOfADarkeningStretch)
{
    SetStretches({{1.0f, -10.0f, 0.7f, 1.0f}});
    EXPECT_EQ(StretchOf(BrighterScene), -10.0f);
    ExpectSteps({490.0, 497.0, 497.0});
    EXPECT_NEAR(m_output.predictiveGain, 1.229874, 1e-4) << "7 steps";
    EXPECT_NEAR(m_output.compensationADRC, 1.0, 1e-3);

    SetStretches({{1.0f, 8.0f, 0.7f, 1.0f}});
    EXPECT_EQ(StretchOf(DarkerScene), 8.0f);
    ExpectSteps({508.0, 508.0, 508.0}, "a brightening one has none");
    EXPECT_EQ(m_output.predictiveGain, 1.0f);
}

TEST_F(Stretch, IsFilteredOverTimeAndPutOnTheGrid)
{
    const struct
    {
        FLOAT stretch;
        FLOAT tempWeight;
        FLOAT previous;
        FLOAT expected;
    } cases[] = {
        {-8.0f, 0.25f, -4.0f, -5.0f},
        {-8.0f, 0.25f, -4.4f, -5.5f},  // -5.3
        {8.0f, 0.5f, -7.0f, 0.0f},     // 0.5 is too little
        {-1.0f, 1.0f, 0.0f, -1.0f},
        {-0.9f, 1.0f, 0.0f, 0.0f},
    };
    for (const auto& rCase : cases)
    {
        SetStretches({{1.0f, rCase.stretch, 0.0f, rCase.tempWeight}});
        EXPECT_EQ(StretchOf(DarkerScene, rCase.previous), rCase.expected) << rCase.stretch << " " << rCase.previous;
        EXPECT_EQ(m_output.predictiveGain, 1.0f);
    }
}

TEST_F(Stretch, FineUnitStepIsTheGrid)
{
    m_module.unitStepSize = 0.25f;
    SetStretches({{1.0f, -5.3f, 0.0f, 1.0f}});
    EXPECT_EQ(StretchOf(DarkerScene), -5.25f);
}

TEST_F(Stretch, FactorIsTakenInSteps)
{
    SetStretches({{1.0f, 0.8f, 0.0f, 1.0f}}, StretchTypeFactor);
    EXPECT_EQ(StretchOf(BrighterScene), StepsOfFour5ths);
    SetStretches({{1.0f, 0.0f, 0.0f, 1.0f}}, StretchTypeFactor);
    EXPECT_EQ(StretchOf(BrighterScene), 0.0f);
}

TEST_F(Stretch, AverageWeighsAllOffsetsOrThoseInDirection)
{
    SetStretches({{1.0f, -4.0f, 0.2f, 1.0f}, {3.0f, -8.0f, 0.6f, 1.0f}});
    EXPECT_EQ(StretchOf(BrighterScene), -7.0f);
    EXPECT_NEAR(m_output.predictiveGain, 1.108997, 1e-4) << "half of 7 steps";
    SetStretches({{0.0f, -4.0f, 0.2f, 1.0f}});
    EXPECT_EQ(StretchOf(BrighterScene), 0.0f);
    SetStretches({});
    EXPECT_EQ(StretchOf(BrighterScene), 0.0f);
    EXPECT_EQ(m_output.predictiveGain, 1.0f);

    m_stretch.value.convSameDirection = TRUE;
    SetStretches({{1.0f, 0.8f, 0.0f, 1.0f}, {1.0f, 1.25f, 0.0f, 1.0f}}, StretchTypeFactor);
    EXPECT_EQ(StretchOf(BrighterScene), StepsOfFour5ths);
    EXPECT_TRUE(m_log.HasPart(LevelTrace, "KIROCONVRG Ignore stretch id 1 offset:7.54"));
    EXPECT_EQ(StretchOf(DarkerScene), -StepsOfFour5ths);

    // An offset has no direction of its own; the slots keep those of the factors: the first is a darkening one.
    SetStretches({{1.0f, -6.0f, 0.0f, 1.0f}, {1.0f, -3.0f, 0.0f, 1.0f}});
    EXPECT_EQ(StretchOf(BrighterScene), -6.0f);
    EXPECT_EQ(StretchOf(DarkerScene), -3.0f);
}

TEST_F(Stretch, EffectIsChosenInTheDirectionOfTheScene)
{
    // No choice yields half of the previous stretch; -8 was the previous one.
    const struct
    {
        AECConvStretchAggType aggregation;
        std::vector<FLOAT>    offsets;
        DOUBLE                target;
        FLOAT                 expected;
    } cases[] = {
        {StretchAggLeastEffect, {-3.0f, 6.0f, -9.0f, 4.0f}, BrighterScene, -3.0f},
        {StretchAggLeastEffect, {-3.0f, 6.0f, -9.0f, 4.0f}, DarkerScene, 4.0f},
        {StretchAggMostEffect, {-3.0f, 6.0f, -9.0f, 4.0f}, BrighterScene, -9.0f},
        {StretchAggMostEffect, {-3.0f, 6.0f, -9.0f, 4.0f}, DarkerScene, 6.0f},
        {StretchAggLeastEffect, {4.0f, 6.0f}, BrighterScene, -4.0f},
        {StretchAggMostEffect, {4.0f, 6.0f}, BrighterScene, -4.0f},
        {StretchAggLeastEffect, {-3.0f, -9.0f}, DarkerScene, -4.0f},
        {StretchAggMostEffect, {-3.0f, -9.0f}, DarkerScene, -4.0f},
        {StretchAggMostEffect, {0.0f, 5.0f}, BrighterScene, 0.0f},  // an offset of none is chosen
    };
    for (const auto& rCase : cases)
    {
        std::vector<ConvStretchCoreDataType> stretches;
        for (FLOAT offset : rCase.offsets)
        {
            stretches.push_back({1.0f, offset, 0.0f, 1.0f});
        }
        SetStretches(stretches);
        m_stretch.value.convStretchAgg = rCase.aggregation;
        EXPECT_EQ(StretchOf(rCase.target, -8.0f), rCase.expected)
            << "aggregation " << rCase.aggregation << ", first offset " << rCase.offsets[0];
    }
}

TEST_F(Stretch, LeastEffectOfDarkeningStretchesAloneReadsTheFifthSlot)
{
    m_stretch.value.convStretchAgg = StretchAggLeastEffect;
    SetStretches({{1.0f, -3.0f, 0.0f, 1.0f}, {1.0f, -9.0f, 0.0f, 1.0f}});
    EXPECT_EQ(StretchOf(BrighterScene, -8.0f), -8.0f) << "never written: a weight of 0 keeps the previous stretch";
    SetStretches({{1.0f, -3.0f, 0.0f, 1.0f},
                  {1.0f, -9.0f, 0.0f, 1.0f},
                  {1.0f, -2.0f, 0.0f, 1.0f},
                  {1.0f, -4.0f, 0.0f, 1.0f},
                  {1.0f, -5.0f, 0.0f, 1.0f},
                  {1.0f, -6.0f, 0.0f, 1.0f}});
    EXPECT_EQ(StretchOf(BrighterScene, -8.0f), -3.0f) << "in ascending order";
}

TEST_F(Stretch, WeightIsChosenInDirectionIfAsked)
{
    m_stretch.value.convStretchAgg = StretchAggLeastWeight;
    SetStretches({{3.0f, -3.0f, 0.0f, 1.0f}, {1.0f, -5.0f, 0.0f, 1.0f}, {2.0f, -7.0f, 0.0f, 1.0f}});
    EXPECT_EQ(StretchOf(BrighterScene), -5.0f);
    m_stretch.value.convStretchAgg = StretchAggMostWeight;
    EXPECT_EQ(StretchOf(BrighterScene), -3.0f);
    SetStretches({{2.0f, -3.0f, 0.0f, 1.0f}, {2.0f, -5.0f, 0.0f, 1.0f}});
    EXPECT_EQ(StretchOf(BrighterScene), -5.0f) << "equal weights keep their order";

    m_stretch.value.convSameDirection = TRUE;
    m_stretch.value.convStretchAgg    = StretchAggLeastWeight;
    SetStretches({{1.0f, 1.25f, 0.0f, 1.0f}, {2.0f, 0.8f, 0.0f, 1.0f}}, StretchTypeFactor);
    EXPECT_EQ(StretchOf(DarkerScene, -8.0f), -StepsOfFour5ths);
    EXPECT_EQ(StretchOf(BrighterScene, -8.0f), -4.0f) << "none";

    // The most weight is tested by the sixth slot, which was never written and counts as brightening.
    m_stretch.value.convStretchAgg = StretchAggMostWeight;
    EXPECT_EQ(StretchOf(DarkerScene, -8.0f), StepsOfFour5ths);
    EXPECT_EQ(StretchOf(BrighterScene, -8.0f), -4.0f);
}

TEST_F(Stretch, InvalidTuningStretchesNothing)
{
    SetStretches({{1.0f, -3.0f, 0.0f, 1.0f}});
    m_stretch.value.convStretchAgg = StretchAggTypeMax;
    EXPECT_EQ(StretchOf(BrighterScene, -8.0f), -8.0f) << "a temporal weight of 0 keeps the previous one";
    EXPECT_TRUE(m_log.Has(LevelError, "KIROCONVRG Invalid Agg type"));

    for (const AECConvStretchAggType aggregation : {StretchAggAverage, StretchAggLeastEffect, StretchAggMostWeight})
    {
        m_stretch.value.convStretchAgg = aggregation;
        SetStretches(std::vector<ConvStretchCoreDataType>(11, {1.0f, -3.0f, 0.0f, 1.0f}));
        EXPECT_EQ(StretchOf(BrighterScene), 0.0f);
        SetStretches({});
        EXPECT_EQ(StretchOf(BrighterScene), 0.0f);
    }
}

TEST_F(Stretch, MeetsTheDRCBranch)
{
    // The stretch alone gives Short 490, Safe 497 and a gain of 7 steps; DRC keeps the previous distance of Short.
    const struct
    {
        kiroconvergence::AECConvDRCStretchAggType aggregation;
        DOUBLE                                    distance;
        DOUBLE                                    expectedShort;
        DOUBLE                                    expectedGain;  // steps
        const CHAR*                               pMessage;
    } cases[] = {
        {AggTypeDRCPrefParallel, 20.0, 477.0, 0.0, "KIROCONVRG DRC > Stretch, Keep DRC and set PG to unity"},
        {AggTypeDRCPrefParallel, 3.0, 490.0, 4.0, "KIROCONVRG drcRatio < predGain, Keep DRC and set PG: 1.1255"},
        {AggTypeCascade, 3.0, 487.0, 7.0, "KIROCONVRG Cascade pred and DRC together"},
        {AggTypeCascade, 20.0, 470.0, 7.0, "KIROCONVRG Cascade pred and DRC together"},
        {AggTypeDisableDRCInPredictive, 20.0, 490.0, 7.0, "KIROCONVRG Consider only stretch predictive gain"},
    };
    SetStretches({{1.0f, -10.0f, 0.7f, 1.0f}});
    for (const auto& rCase : cases)
    {
        m_module.drcStretchAgg = rCase.aggregation;
        Restart();
        m_log.Clear();
        const Steps previous{500.0 - rCase.distance, 505.0, 500.0};
        SaveHistory(previous, previous);
        Run({460.0 - rCase.distance, 465.0, 460.0});
        ExpectSteps({rCase.expectedShort, 502.0, 497.0}, rCase.pMessage);
        EXPECT_NEAR(StepOf(m_output.predictiveGain), rCase.expectedGain, 0.01) << rCase.pMessage;
        EXPECT_TRUE(m_log.HasPart(LevelTrace, rCase.pMessage)) << rCase.pMessage;
    }
}
