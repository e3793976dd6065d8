// The phone's tuning in real light. The panoramas come from elsewhere: ./dev lights brings them and runs these tests.

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"

using namespace kirosim;

namespace
{

/// How the decided exposure moves from a time on.
struct Movement
{
    DOUBLE largestEV = 0.0;  ///< between two frames
    UINT32 reversals = 0;    ///< a move that one sees, the other way than the last such one
};

/// A scene of real light with one of its variants.
class LightsRun : public SimulationRun
{
public:
    explicit LightsRun(const std::string& rScene, const std::string& rVariant = "")
        : SimulationRun(ReadScene(EXAMPLES_DIR "/lights/" + rScene + ".yaml", rVariant))
    {
    }

    Movement MovementFrom(DOUBLE time) const
    {
        constexpr DOUBLE visible = 0.01;  // EV: the smallest move of the tuning is 0.004
        Movement         movement;
        DOUBLE           direction = 0.0;
        for (size_t frame = 1; frame < Records().size(); ++frame)
        {
            const DOUBLE step = SafeLog2(frame) - SafeLog2(frame - 1);
            if (Records()[frame].sceneTime < time)
            {
                continue;
            }
            movement.largestEV = std::max(movement.largestEV, std::abs(step));
            if (std::abs(step) >= visible)
            {
                movement.reversals += (direction * step < 0.0) ? 1 : 0;
                direction = step;
            }
        }
        return movement;
    }

    /// Frames from a time on until the exposure stays within 5 percent of that before another time.
    UINT32 FramesToSettle(DOUBLE from, DOUBLE end) const
    {
        const DOUBLE within = std::log2(1.05);
        const auto   frame  = [this](DOUBLE time) { return static_cast<size_t>(std::lround(time * GetScene().fps)); };
        size_t       first  = frame(end) - 1;
        while (first > frame(from) && std::abs(SafeLog2(first - 1) - SafeLog2(frame(end) - 1)) <= within)
        {
            --first;
        }
        return static_cast<UINT32>(first - frame(from));
    }

private:
    DOUBLE SafeLog2(size_t frame) const
    {
        const auto& rSafe = Records()[frame].decided.arbitration[AECAlgoExposureSafe].exposureSet;
        return std::log2(static_cast<DOUBLE>(rSafe.exposure));
    }
};

/// @param rippleMax of the last 100 frames, EV
VOID ExpectRest(const LightsRun& rRun, DOUBLE rippleMax)
{
    const RunSummary summary = rRun.Summary();
    EXPECT_TRUE(summary.isLegal);
    EXPECT_TRUE(summary.failure.empty()) << summary.failure;
    EXPECT_LE(summary.rippleEV, rippleMax);
}

/// A line for a person: what was measured of a scene, with its bounds.
VOID Show(const std::string& rScene, const CHAR* pVariant, const std::string& rMeasured)
{
    fmt::print("{:<10} {:<9} {}\n", rScene, (*pVariant != '\0') ? pVariant : "as it is", rMeasured);
}

std::string WordsOf(const Movement& rMovement, UINT32 reversalsMax)
{
    return fmt::format("{} reversals (at most {}), largest change {:.3f} EV", rMovement.reversals, reversalsMax,
                       rMovement.largestEV);
}

/// What may stay wrong behind a turn: a drift that ends no rest, and what lies between two exposure times of the
/// sensor.
constexpr DOUBLE LeftEV = 0.03;

/// In the second behind a turn the exposure goes up and down by this before it rests.
constexpr DOUBLE SmallestMoveEV = 0.005;

class Lights : public testing::TestWithParam<std::string>
{
};

TEST_P(Lights, StandingStillItSettlesInEachDirectionAndRests)
{
    UINT32 frames      = 0;
    DOUBLE overshootEV = 0.0;
    DOUBLE errorEV     = 0.0;
    for (const CHAR* pVariant : {"", "yaw60", "yaw120", "yaw180", "yaw240", "yaw300"})
    {
        SCOPED_TRACE(pVariant);
        const LightsRun  run(GetParam(), pVariant);
        const StepResult start = run.Summary().steps.at(0);
        ASSERT_TRUE(start.framesToSettle.has_value()) << start.failure;
        EXPECT_LE(*start.framesToSettle, 15U);
        EXPECT_LE(start.overshootEV, 0.1);
        EXPECT_LE(std::abs(run.Summary().finalErrorEV), 0.05);
        EXPECT_EQ(run.MovementFrom(2.0).largestEV, 0.0);
        ExpectRest(run, 0.0);
        frames      = std::max(frames, *start.framesToSettle);
        overshootEV = std::max(overshootEV, start.overshootEV);
        errorEV     = std::max(errorEV, std::abs(run.Summary().finalErrorEV));
    }
    Show(GetParam(), "standing",
         fmt::format("settled within {} frames (at most 15), overshoot {:.3f} EV (0.1), off target {:.3f} EV (0.05)",
                     frames, overshootEV, errorEV));
}

TEST_P(Lights, TurningItFollowsEvenlyAndRestsAfterwards)
{
    // The variant, when the camera stands still again, reversals, and the largest change between two frames.
    for (const auto& [pVariant, end, reversalsMax, largestMax] :
         {std::tuple("turn", 10.0, 7U, 0.1), std::tuple("fast", 5.0, 7U, 0.31), std::tuple("nod", 6.0, 6U, 0.26)})
    {
        SCOPED_TRACE(pVariant);
        const LightsRun run(GetParam(), pVariant);
        const Movement  movement = run.MovementFrom(2.0);
        EXPECT_LE(movement.reversals, reversalsMax);
        EXPECT_LE(movement.largestEV, largestMax);
        EXPECT_EQ(run.MovementFrom(end + 1.0).largestEV, 0.0);
        EXPECT_LE(std::abs(run.Summary().finalErrorEV), LeftEV);
        ExpectRest(run, SmallestMoveEV);
        Show(GetParam(), pVariant, fmt::format("{} ({})", WordsOf(movement, reversalsMax), largestMax));
    }
}

INSTANTIATE_TEST_SUITE_P(Bars, Lights,
                         testing::Values("apartment", "bridge", "city", "dawn", "forest", "lobby", "park", "sunset"),
                         [](const testing::TestParamInfo<std::string>& rInfo) { return rInfo.param; });

TEST(LightsWalk, OutOfTheLobbyIntoTheParkAndBack)
{
    for (const auto& [pVariant, fade] : {std::pair("", 0.0), std::pair("fade", 0.5)})
    {
        SCOPED_TRACE(pVariant);
        const LightsRun run("walk", pVariant);
        const UINT32    out  = run.FramesToSettle(4.0 + fade, 9.0);
        const UINT32    back = run.FramesToSettle(9.0 + fade, 14.0);
        EXPECT_LE(out, 15U);
        EXPECT_LE(back, 15U);
        EXPECT_LE(run.MovementFrom(2.0).reversals, 1U);  // there, and back
        ExpectRest(run, 0.0);
        Show("walk", pVariant, fmt::format("settled after {} frames in the park and {} back (at most 15)", out, back));
    }
    const Movement turning = LightsRun("walk", "turning").MovementFrom(2.0);
    EXPECT_LE(turning.reversals, 4U);
    Show("walk", "turning", WordsOf(turning, 4U));
}

TEST(LightsNight, UnderLampsThereAreNoBands)
{
    for (const CHAR* pVariant : {"", "switched"})
    {
        SCOPED_TRACE(pVariant);
        const LightsRun run("night", pVariant);
        EXPECT_LE(run.Summary().bandingLast, 0.001);
        ExpectRest(run, 0.0);
        Show("night", pVariant, fmt::format("banding {:.3f} percent (at most 0.1)", run.Summary().bandingLast * 100.0));
    }
    const LightsRun switched("night", "switched");
    const UINT32    on  = switched.FramesToSettle(4.0, 8.0);
    const UINT32    off = switched.FramesToSettle(8.0, 12.0);
    EXPECT_LE(on, 15U);
    EXPECT_LE(off, 15U);
    EXPECT_LE(switched.MovementFrom(2.0).reversals, 1U);
    Show("night", "switched", fmt::format("settled after {} and {} frames (at most 15)", on, off));
    const Movement turn = LightsRun("night", "turn").MovementFrom(2.0);
    EXPECT_LE(turn.reversals, 4U);
    Show("night", "turn", WordsOf(turn, 4U));
}

}  // namespace
