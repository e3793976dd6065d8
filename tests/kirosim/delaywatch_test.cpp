// The watch of the pipeline delay: from sequences made by hand, and in the loop.

#include <cmath>
#include <cstdarg>
#include <gtest/gtest.h>

#include "host/delaywatch.h"
#include "tests/kirosim/examplescenes.h"
#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/figures/delayalarms.h"

using namespace kirosim;

namespace
{

constexpr DOUBLE RestingLuma     = 46.0;
constexpr DOUBLE RestingExposure = 1e7;  // ns

/// A camera whose exposures and light are given frame by frame, EV from where it rests.
class WatchedCamera
{
public:
    explicit WatchedCamera(UINT8 delay) : m_delay(delay), m_written(DelayWatch::DelayMax, 0.0), m_grid(256)
    {
        m_channel.type                    = kiroglobalelements::KIROStatsGrid;
        m_channel.resolution              = {16, 16, 0, 8};
        m_channel.channelData.Data.pFData = m_grid.data();
        m_watch.Restart(RestingExposure);
    }

    /// A frame before which an exposure is written. @param isSeen whether its statistics arrive
    const std::optional<UINT8>& Run(DOUBLE exposureEV, DOUBLE lightEV = 0.0, bool isSeen = true)
    {
        m_written.push_back(exposureEV);
        const UINT64 frame   = m_written.size();
        const DOUBLE shownEV = m_written[m_written.size() - m_delay] + lightEV;
        m_watch.AddExposure(frame, RestingExposure * std::exp2(exposureEV));
        for (size_t region = 0; region < m_grid.size(); ++region)
        {
            // Regions of different brightness, as in any picture.
            const DOUBLE brightness = 0.5 + static_cast<DOUBLE>(region) / 256.0;
            m_grid[region] = static_cast<FLOAT>(std::min(RestingLuma * brightness * std::exp2(shownEV), 255.0));
        }
        if (isSeen)
        {
            m_watch.AddStatistics(frame, m_channel);
        }
        return m_watch.Delay();
    }

    DelayWatch m_watch;
    UINT8      m_delay;

private:
    std::vector<DOUBLE> m_written;
    std::vector<FLOAT>  m_grid;
    KIROCntStatsOut     m_channel{};
};

TEST(DelayWatch, OneChangeOfAStopTellsTheDelay)
{
    for (UINT8 delay = 1; delay <= 8; ++delay)
    {
        WatchedCamera camera(delay);
        for (UINT32 frame = 0; frame < 20; ++frame)
        {
            EXPECT_FALSE(camera.Run(0.0).has_value()) << "nothing has changed";
        }
        EXPECT_FALSE(camera.Run(0.7).has_value());
        for (UINT32 frame = 0; frame < 12; ++frame)
        {
            EXPECT_EQ(camera.Run(1.0).value_or(delay), delay);
        }
        EXPECT_EQ(camera.m_watch.Delay(), delay);
    }
}

TEST(DelayWatch, LightThatChangesByItselfFoolsNobody)
{
    // A step of the light, and an exposure that answers it; steps up and down, some of them while it still moves.
    WatchedCamera steps(3);
    DOUBLE        exposure = 0.0;
    DOUBLE        light    = 0.0;
    for (UINT32 frame = 0; frame < 400; ++frame)
    {
        light = (frame % 7 == 0) ? ((frame % 3 == 0) ? 1.0 : -1.0) : light;
        exposure += 0.4 * (-light - exposure);
        ASSERT_EQ(steps.Run(exposure, light).value_or(3), 3U) << frame;
    }
    // A ripple of four frames and an exposure that runs behind it.
    WatchedCamera ripple(3);
    for (UINT32 frame = 0; frame < 400; ++frame)
    {
        const DOUBLE turns = 0.25 * frame;
        ASSERT_EQ(ripple.Run(-0.05 * std::sin(6.2832 * (turns - 0.25)), 0.2 * std::sin(6.2832 * turns)).value_or(3), 3U)
            << frame;
    }
    // Light alone tells nothing.
    WatchedCamera lightAlone(3);
    for (UINT32 frame = 0; frame < 100; ++frame)
    {
        ASSERT_FALSE(lightAlone.Run(0.0, (frame % 5 == 0) ? 1.0 : 0.0).has_value());
    }
}

TEST(DelayWatch, LightThatMovesSteadilyDoesNotHideAnExposureThatFollowsInJerks)
{
    // 1 EV a second. The exposure stays for two, four or three frames, then makes up for them at once.
    constexpr UINT32 waits[] = {2, 4, 3};
    for (const UINT8 delay : {2, 3, 5})
    {
        WatchedCamera camera(delay);
        DOUBLE        exposure = 0.0;
        UINT32        moves    = 0;
        UINT32        nextMove = waits[0];
        for (UINT32 frame = 0; frame < 60; ++frame)
        {
            if (frame == nextMove)
            {
                exposure = frame / -30.0;
                nextMove += waits[++moves % std::size(waits)];
            }
            EXPECT_EQ(camera.Run(exposure, frame / 30.0).value_or(delay), delay);
        }
        EXPECT_EQ(camera.m_watch.Delay(), delay);
    }
    // It follows evenly: whatever the delay, the picture stands still.
    WatchedCamera even(3);
    for (UINT32 frame = 0; frame < 60; ++frame)
    {
        EXPECT_FALSE(even.Run(frame / -30.0, frame / 30.0).has_value()) << frame;
    }
}

TEST(DelayWatch, PicturesThatShowNothingAndFramesThatAreMissingTellNothing)
{
    for (const DOUBLE lightEV : {6.0, -9.0})  // white, black
    {
        WatchedCamera camera(3);
        for (UINT32 frame = 0; frame < 60; ++frame)
        {
            EXPECT_FALSE(camera.Run((frame / 10) % 2, lightEV).has_value());
        }
    }
    // Every third frame is missing: what changed shows in the next one.
    WatchedCamera camera(4);
    for (UINT32 frame = 0; frame < 60; ++frame)
    {
        EXPECT_EQ(camera.Run((frame / 10) % 2, 0.0, frame % 3 != 0).value_or(4), 4U);
    }
    EXPECT_EQ(camera.m_watch.Delay(), 4);
}

TEST(DelayWatch, ADelayThatBecomesAnotherOneIsSeenAfterSomeChanges)
{
    WatchedCamera camera(3);
    for (UINT32 frame = 0; frame < 400; ++frame)
    {
        camera.m_delay = (frame < 100) ? 3 : 5;
        (VOID) camera.Run((frame / 15) % 2);
        if (frame == 99)
        {
            EXPECT_EQ(camera.m_watch.Delay(), 3);
        }
    }
    EXPECT_EQ(camera.m_watch.Delay(), 5);
}

std::vector<std::string> g_warnings;

VOID KeepWarning(const CHAR*, INT32, const CHAR*, UINT32, UINT32 level, const CHAR* pFormat, ...)
{
    constexpr UINT32 levelWarning = 4;
    if (level <= levelWarning)
    {
        CHAR    text[512];
        va_list arguments;
        va_start(arguments, pFormat);
        (VOID) std::vsnprintf(text, sizeof(text), pFormat, arguments);
        va_end(arguments);
        g_warnings.emplace_back(text);
    }
}

TEST(DelayWatch, WarnsOnceWithBothNumbers)
{
    g_warnings.clear();
    Scene scene             = SimulationRun::Example("sensor-faults");
    scene.sensor.latency    = 4;
    scene.sensor.delayError = -1;
    LoadedTuning tuning(EXAMPLES_DIR "/tunings/phone.yaml");
    Simulation   simulation(scene, tuning, KeepWarning);
    simulation.Run([](const FrameRecord&) {});
    ASSERT_EQ(g_warnings.size(), 1U);
    EXPECT_EQ(g_warnings[0], "statistics follow a decision after 4 frames, the pipeline delay says 3");
}

TEST(DelayWatch, ACorrectedDelayCostsOneBadStepAndThenNothing)
{
    const RunSummary plain = SimulationRun("sensor-faults").Summary();
    for (const CHAR* pVariant : {"short-corrected", "short-2-corrected", "long-corrected"})
    {
        SCOPED_TRACE(pVariant);
        const RunSummary summary = SimulationRun("sensor-faults", pVariant).Summary();
        ASSERT_EQ(summary.steps.size(), 5U);
        EXPECT_LE(summary.steps[1].framesToSettle.value_or(999), 8U);
        for (size_t step = 2; step < summary.steps.size(); ++step)
        {
            EXPECT_EQ(summary.steps[step].framesToSettle, plain.steps[step].framesToSettle);
            EXPECT_NEAR(summary.steps[step].overshootEV, plain.steps[step].overshootEV, 0.011);
        }
    }
}

/// A figure of the watch in a run.
std::optional<DOUBLE> ValueOf(FigureId id, const DelayAlarms& rAlarms)
{
    std::vector<Figure> figures;
    rAlarms.AddTo(figures);
    const auto found = std::ranges::find(figures, id, &Figure::id);
    EXPECT_NE(found, figures.end()) << RowOf(id).pName;
    return (found != figures.end()) ? found->value : std::nullopt;
}

TEST(DelayWatch, SeesAWrongDelayWithinTwoSecondsOfAChangeOfAStop)
{
    constexpr DOUBLE twoSeconds = 60.0;  // frames
    LoadedTuning     tuning(EXAMPLES_DIR "/tunings/phone.yaml");

    const std::pair<const CHAR*, const CHAR*> runs[] = {{"natural", "step+1"},
                                                        {"natural", "step-4"},
                                                        {"highcontrast", "step-1"},
                                                        {"highcontrast", "step+4"},
                                                        {"natural", "ramp"},
                                                        {"uniform", "ramp-down"},
                                                        {"tunnel", ""},
                                                        {"scene-change", ""}};
    for (const auto& [pScene, pVariant] : runs)
    {
        for (const INT32 error : {-2, -1, 1, 2})
        {
            SCOPED_TRACE(testing::Message() << pScene << " " << pVariant << " told " << error);
            Scene scene             = SimulationRun::Example(pScene, pVariant);
            scene.sensor.delayError = error;
            const SimulationRun run(scene, tuning);
            const DelayAlarms   alarms = run.ReportOf<DelayAlarms>();
            EXPECT_LE(ValueOf(FigureId::DelayFound, alarms).value_or(999.0), twoSeconds);
            EXPECT_EQ(ValueOf(FigureId::FalseAlarms, alarms), 0.0);
        }
    }
}

class NoFalseAlarm : public testing::TestWithParam<std::string>
{
};

TEST_P(NoFalseAlarm, InAnyVariantWithStatisticsMissing)
{
    const std::string        path     = ExampleScenePath(GetParam());
    std::vector<std::string> variants = ReadVariants(path);
    variants.emplace_back();
    LoadedTuning tuning(EXAMPLES_DIR "/tunings/phone.yaml");
    for (const std::string& rVariant : variants)
    {
        Scene scene          = ReadScene(path, rVariant);
        scene.sensor.dropped = std::max(scene.sensor.dropped, 2.0);
        DelayAlarms alarms(scene);
        DelayAlarms secondAlarms(scene.pSecond != nullptr ? *scene.pSecond : scene);
        Simulation  simulation(scene, tuning, DiscardLog);
        simulation.Run([&](const FrameRecord& rRecord) { alarms.Add(rRecord); },
                       [&](const FrameRecord& rRecord) { secondAlarms.Add(rRecord); });
        EXPECT_EQ(ValueOf(FigureId::FalseAlarms, alarms), 0.0) << rVariant;
        EXPECT_EQ(ValueOf(FigureId::FalseAlarms, secondAlarms), 0.0) << rVariant;
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, NoFalseAlarm, testing::ValuesIn(ExampleScenes()),
                         [](const auto& rInfo) { return TestNameOf(rInfo.param); });

}  // namespace
