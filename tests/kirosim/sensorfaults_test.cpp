// A sensor and a host with the faults of real ones: registers that act after different numbers of frames, a wrong
// pipeline delay, statistics that are missing, decisions that come late.

#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirosim/sensorregisters.h"

using namespace kirosim;

namespace
{

/// A decision whose gain and time both tell its number.
KiroHostFrame Decision(UINT64 number)
{
    KiroHostFrame frame{};
    for (KIROArbitrationOutput& rOutput : frame.arbitration)
    {
        rOutput.exposureSet.gain = static_cast<FLOAT>(number);
        rOutput.exposureSet.time = number;
    }
    return frame;
}

SensorWrite Together(UINT64 number)
{
    return ExposureStaging({1, 1}).Begin(Decision(number));
}

TEST(ExposureStaging, GainAndTimeOfADecisionTakeEffectInOneFrameWhateverTheRegistersNeed)
{
    for (const RegisterDelays& rDelays : {RegisterDelays{1, 2}, {2, 1}, {3, 3}, {2, 5}})
    {
        SCOPED_TRACE(testing::Message() << UINT32{rDelays.gain} << " and " << UINT32{rDelays.time});
        const UINT64    slower = std::max(rDelays.gain, rDelays.time);
        ExposureStaging staging(rDelays);
        SensorRegisters registers(rDelays);
        registers.Begin(staging.Begin(Decision(100)));
        for (UINT64 frame = 1; frame <= 12; ++frame)
        {
            const SensorWrite acting   = registers.Write(staging.Stage(Decision(100 + frame)));
            const UINT64      expected = 100 + std::max(frame + 1, slower) - slower;
            EXPECT_EQ(acting.times[AECAlgoExposureSafe], expected) << frame;
            EXPECT_EQ(acting.gains[AECAlgoExposureSafe], static_cast<FLOAT>(expected)) << frame;
        }
    }
    // Written together, they part: the frame has the gain of one decision at the time of another.
    SensorRegisters registers({1, 2});
    registers.Begin(Together(100));
    const SensorWrite acting = registers.Write(Together(101));
    EXPECT_EQ(acting.gains[AECAlgoExposureSafe], 101.0f);
    EXPECT_EQ(acting.times[AECAlgoExposureSafe], 100U);
}

TEST(SensorFaults, TheToldDelayIsOneThatTheCoreCanHave)
{
    const TemporaryFile file("sensorfaults_test.yaml");
    const auto          scene = [&](const std::string& rSensor)
    { return ReadScene(file.Write("lux: 100\nsensor: {" + rSensor + "}\n"), ""); };
    EXPECT_EQ(scene("gainDelay: 1, timeDelay: 2").sensor.Delay(), 2U);
    EXPECT_EQ(scene("gainDelay: 4, delayError: -2").sensor.ToldDelay(), 2);
    EXPECT_NE(RefusalOf([&] { (VOID) scene("latency: 2, delayError: -2"); }).find("must be 1 to 9 frames, not 0"),
              std::string::npos);
    EXPECT_NE(RefusalOf([&] { (VOID) scene("latency: 9, delayError: 1"); }).find("must be 1 to 9 frames, not 10"),
              std::string::npos);
}

TEST(SensorFaults, ComeBySeedAndShareRoundByRound)
{
    Scene scene;
    scene.sensor.dropped = 5.0;
    scene.sensor.late    = 20.0;
    FrameFaults         faults(scene);
    UINT32              dropped = 0;
    std::array<bool, 4> late[2];
    for (auto& rRound : late)
    {
        faults.StartRound();
        for (bool& rIsLate : rRound)
        {
            rIsLate = faults.Next().isLate;
        }
    }
    EXPECT_EQ(late[0], late[1]);
    for (UINT32 frame = 0; frame < 10000; ++frame)
    {
        dropped += faults.Next().isDropped ? 1 : 0;
    }
    EXPECT_NEAR(dropped, 500.0, 90.0);  // four sigmas
}

/// A variant of the scene of faults, and the most that each of its steps +1, -1, +4 and -4 EV may take.
struct FaultBar
{
    std::string           tuning;
    std::string           variant;
    std::array<UINT32, 4> frames;
    DOUBLE                overshootEV;
};

class FaultControl : public testing::TestWithParam<FaultBar>
{
};

TEST_P(FaultControl, StepsSettleWithinTheBarsWhateverTheSeed)
{
    for (UINT64 seed = 1; seed <= 4; ++seed)
    {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const RunSummary summary =
            SimulationRun("sensor-faults", GetParam().variant, GetParam().tuning + ".yaml", seed).Summary();
        ASSERT_EQ(summary.steps.size(), 5U);
        for (size_t step = 0; step < 4; ++step)
        {
            const StepResult& rStep = summary.steps[step + 1];
            EXPECT_LE(rStep.framesToSettle.value_or(999), GetParam().frames[step]) << "step of " << rStep.ev << " EV";
            EXPECT_LE(rStep.overshootEV, GetParam().overshootEV) << "step of " << rStep.ev << " EV";
        }
    }
}

std::string NameOf(const testing::TestParamInfo<FaultBar>& rInfo)
{
    std::string name = rInfo.param.tuning + "_" + rInfo.param.variant;
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Phone, FaultControl,
                         testing::Values(FaultBar{"phone", "quick-gain", {3, 2, 7, 3}, 0.02},
                                         FaultBar{"phone", "slow-gain", {4, 3, 8, 3}, 0.02},
                                         FaultBar{"phone", "short", {13, 12, 15, 15}, 0.5},
                                         FaultBar{"phone", "long", {5, 6, 12, 7}, 0.02},
                                         FaultBar{"phone", "long-2", {6, 7, 14, 8}, 0.02},
                                         FaultBar{"phone", "dropped", {6, 4, 8, 4}, 0.02},
                                         FaultBar{"phone", "late", {4, 3, 8, 4}, 0.02}),
                         NameOf);

INSTANTIATE_TEST_SUITE_P(
    Calm, FaultControl,
    testing::Values(
        FaultBar{"calm", "", {8, 8, 14, 10}, 0.02}, FaultBar{"calm", "quick-gain", {8, 8, 14, 10}, 0.02},
        FaultBar{"calm", "slow-gain", {8, 8, 14, 10}, 0.02}, FaultBar{"calm", "short", {8, 8, 14, 10}, 0.1},
        FaultBar{"calm", "short-2", {8, 8, 14, 10}, 0.1}, FaultBar{"calm", "short-corrected", {8, 8, 14, 10}, 0.02},
        FaultBar{"calm", "short-2-corrected", {8, 8, 14, 10}, 0.02}, FaultBar{"calm", "long", {11, 10, 18, 16}, 0.02},
        FaultBar{"calm", "long-2", {16, 16, 26, 24}, 0.02}, FaultBar{"calm", "long-corrected", {11, 8, 14, 10}, 0.02},
        FaultBar{"calm", "dropped", {11, 9, 17, 11}, 0.02}, FaultBar{"calm", "late", {8, 8, 14, 10}, 0.02}),
    NameOf);

TEST(SensorFaults, AToldDelayThatIsTwoFramesTooShortMakesTheExposureSwing)
{
    // The fault that the watch of the delay is for: a quick tuning swings without end.
    const RunSummary summary = SimulationRun("sensor-faults", "short-2").Summary();
    for (size_t step = 1; step < summary.steps.size(); ++step)
    {
        EXPECT_FALSE(summary.steps[step].framesToSettle.has_value()) << "step of " << summary.steps[step].ev << " EV";
    }
}

}  // namespace
