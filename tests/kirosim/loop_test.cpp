// A camera that somebody tunes while it runs: rounds of a scene, the pace of the frames, the values to watch.

#include <gtest/gtest.h>
#include <map>

#include "tests/kirosim/loop.h"
#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/framepacer.h"

using namespace kirosim;

namespace
{

TEST(Loop, RoundsOfStepsSettleAlikeWhileTheCameraRunsOn)
{
    Loop loop(ReadScene(EXAMPLES_DIR "/scenes/step-loop.yaml", ""));
    // Stopped within the fourth round: the third is the last full one.
    UINT32 left = 3 * loop.m_scene.frames + 90;
    loop.Run({std::nullopt, [&left](DOUBLE) { return left-- > 0; }});

    ASSERT_EQ(loop.m_frames.size(), 810U);
    EXPECT_EQ(loop.m_frames[809].number, 810U);
    EXPECT_DOUBLE_EQ(loop.m_frames[480].time, 16.0);
    EXPECT_EQ(loop.m_frames[480].sceneTime, 0.0);
    EXPECT_EQ(loop.m_frames[541].sceneTime, loop.m_frames[61].sceneTime);

    ASSERT_EQ(loop.m_rounds.size(), 3U);
    EXPECT_EQ(loop.m_rounds[0].steps.size(), 3U) << "the cold start is the first round's alone";
    const auto& rSecond = loop.m_rounds[1].steps;
    const auto& rThird  = loop.m_rounds[2].steps;
    ASSERT_EQ(rSecond.size(), 2U);
    ASSERT_EQ(rThird.size(), 2U);
    for (const size_t step : {0, 1})
    {
        EXPECT_DOUBLE_EQ(rThird[step].time, (step == 0) ? 2.0 : 5.0);
        EXPECT_DOUBLE_EQ(rThird[step].ev, (step == 0) ? 3.0 : -3.0);
        ASSERT_TRUE(rThird[step].framesToSettle.has_value());
        EXPECT_LT(*rThird[step].framesToSettle, 30U);
        EXPECT_EQ(rSecond[step].framesToSettle, rThird[step].framesToSettle);
    }
    const std::string frames = std::to_string(*rThird[0].framesToSettle);
    EXPECT_EQ(loop.m_lines[2].substr(0, loop.m_lines[2].find('\n')),
              "round 3: step +3.0 EV at 2.0 s: settled after " + frames + " frames");
    EXPECT_EQ(loop.m_report.Format(), FormatSummary(loop.m_rounds[2]));
}

TEST(Loop, ASceneThatEndsInOtherLightStepsBackAtTheSeam)
{
    Scene scene  = ReadScene(EXAMPLES_DIR "/scenes/step-loop.yaml", "");
    scene.frames = 120;  // ends after the step up
    Loop loop(scene);
    loop.Run({3, {}});
    ASSERT_EQ(loop.m_rounds.size(), 3U);
    ASSERT_EQ(loop.m_rounds[2].steps.size(), 2U);
    EXPECT_EQ(loop.m_rounds[2].steps[0].time, 0.0);
    EXPECT_DOUBLE_EQ(loop.m_rounds[2].steps[0].ev, -3.0);
    EXPECT_EQ(loop.m_rounds[2].steps[0].framesToSettle, loop.m_rounds[1].steps[0].framesToSettle);
}

TEST(Loop, ManualSettingsBindWhatTheyName)
{
    const std::tuple<AECAlgoManualSetting, std::optional<DOUBLE>, std::optional<DOUBLE>> cases[] = {
        {{AECAlgoModeManualFull, 0, 8000000, 2.0f, 0.0f}, 2.0, 8e6},
        {{AECAlgoModeManualGain, 0, 0, 4.0f, 0.0f}, 4.0, {}},
        {{AECAlgoModeManualISO, 800, 0, 0.0f, 0.0f}, 8.0, {}},
        {{AECAlgoModeManualExpTime, 0, 4000000, 0.0f, 0.0f}, {}, 4e6}};
    for (const auto& [setting, gain, time] : cases)
    {
        Scene scene  = ReadScene(EXAMPLES_DIR "/scenes/step-loop.yaml", "");
        scene.frames = 30;  // before the step
        Event event;
        event.time   = 0.2;
        event.manual = setting;
        scene.events.push_back(event);
        Loop        loop(scene);
        FrameRecord last;
        loop.m_simulation.Run([&last](const FrameRecord& rRecord) { last = rRecord; }, {}, {1, {}});
        const auto& rSafe = last.decided.arbitration[AECAlgoExposureSafe].exposureSet;
        SCOPED_TRACE(setting.manualMode);
        EXPECT_FLOAT_EQ(rSafe.gain, gain.value_or(rSafe.gain));
        EXPECT_NEAR(static_cast<DOUBLE>(rSafe.time), time.value_or(rSafe.time), 1.0);
    }
}

TEST(Reports, TellWhatTheSceneIsAbout)
{
    // What the scene's own times and steps lead to, and what stands further down.
    const std::tuple<const CHAR*, const CHAR*, const CHAR*> cases[] = {
        {"bracket", "EV -12 steps, exposure -2.000 EV", "against before: exposure +0.000 EV"},
        {"scene-change", "held for", "swing of the safe exposure from 2.90 s to 4.40 s: 0.000"},
        {"monitors", "flash needed: on at lux index", "ZLL enforced: never"},
        {"hdr-hybrid", "switch to the full mode at", "at 4.97 s, full:"},
        {"moving-subject", "tracking from 2.", "recovery once nothing is tracked:"},
        {"shake", "shake 0.71 rad/s: time 5.00 ms", "at 5.97 s"},
        {"starts", "session at 2.00 s, start from previous mode", "start from preflash"},
        {"two-cameras-follow", "1.50 s to 4.00 s: first master, second slave",
         "exposure times: 33.333 ms and 33.333 ms, difference"},
        {"flash-precision", "ended by metering", "ms lit"}};
    for (const auto& [pScene, pFirst, pSecond] : cases)
    {
        const std::string text  = SimulationRun(pScene).ReportOf<RunReport>().Format();
        const size_t      first = text.find(pFirst);
        ASSERT_NE(first, std::string::npos) << pScene << "\n" << text;
        EXPECT_NE(text.find(pSecond, first), std::string::npos) << pScene << "\n" << text;
    }
}

TEST(FrameSchedule, ErrorsDoNotAddUpAndMissedFramesAreNotMadeUpFor)
{
    constexpr UINT64 start = 5000;
    FrameSchedule    schedule;
    EXPECT_EQ(schedule.Next(start, 0.0), start);
    EXPECT_EQ(schedule.Next(start + 10, 1.0 / 30), start + 33333333);
    EXPECT_EQ(schedule.Next(start + 33333340, 2.0 / 30), start + 66666667);
    EXPECT_EQ(schedule.Next(start + 120000000, 3.0 / 30), start + 100000000) << "a frame that is a little late";
    EXPECT_EQ(schedule.Next(start + 121000000, 4.0 / 30), start + 133333333) << "keeps the schedule";
    EXPECT_EQ(schedule.Next(start + 200000001, 5.0 / 30), start + 200000001) << "more than a period late";
    EXPECT_EQ(schedule.Next(start + 200000002, 6.0 / 30), start + 200000001 + 33333333);
    EXPECT_EQ(schedule.Next(start + 300000000, 9.0 / 30), start + 200000001 + 133333333) << "a frame that lasts longer";
}

TEST(FrameClock, RunsAtTheRateThatTheCamerasHaveDecided)
{
    Scene scene  = ReadScene(EXAMPLES_DIR "/scenes/candle.yaml", "");
    scene.frames = 120;
    Loop single(scene);
    single.Run({});
    auto pSecond            = std::make_shared<Scene>(scene);
    pSecond->sensor.minGain = 16.0;  // it needs no long exposure
    pSecond->sensor.maxGain = 1024.0;
    scene.pSecond           = pSecond;
    Loop pair(scene);
    pair.Run({2, {}});
    EXPECT_EQ(pair.m_frames[119].sceneTime, single.m_frames[119].sceneTime) << "two cameras run in step";
    EXPECT_NEAR(pair.m_frames[121].time - pair.m_frames[120].time, 0.1, 1e-9) << "a round begins as fast as one ends";
    EXPECT_EQ(pair.m_frames[120].sceneTime, 0.0);

    const std::vector<Loop::Frame>& rFrames = single.m_frames;
    for (size_t index = 0; index + 1 < rFrames.size(); ++index)
    {
        // The start exposure shows until the first decision has come through the sensor.
        const DOUBLE fps =
            (index < scene.sensor.latency) ? scene.fps : rFrames[index - scene.sensor.latency].decidedFPS;
        ASSERT_NEAR(rFrames[index + 1].time - rFrames[index].time, 1.0 / fps, 1e-9) << "frame " << index;
    }
    EXPECT_NEAR(rFrames[119].time - rFrames[109].time, 1.0, 1e-9) << "ten frames a second at the end";
}

TEST(ControlValues, ShowWhatWasDecidedForTheFrame)
{
    KiroHostFrame frame                                         = {.luxIndex = 212.5f, .luma = 46.0f};
    frame.arbitration[AECAlgoExposureShort].exposureSet.time    = 10000000;
    frame.arbitration[AECAlgoExposureLong].exposureSet.gain     = 2.5f;
    frame.arbitration[AECAlgoExposureSafe].exposureSet.exposure = 30000000;
    frame.arbitration[AECAlgoExposureSafe].FPS                  = 30.0f;
    frame.metering.exposures[AECAlgoExposureLong]               = 40000000;
    frame.convergence.compensationADRC                          = 1.5f;
    frame.convergence.bSettle                                   = TRUE;

    TuningSetManager         manager("watched");
    controlvalues::Publisher publisher(manager);
    publisher.Publish(6, {}, std::nullopt);
    publisher.Publish(7, frame, 4);

    std::map<std::string, DOUBLE> values;
    UINT32                        lastID = 0;
    for (UINT32 index = 0; index < publisher.Values().Count(); ++index)
    {
        const ParameterCTValue value = publisher.Values()[index];
        EXPECT_GT(value.ID, lastID);
        lastID = value.ID;
        ASSERT_NE(controlvalues::NameOf(value.ID), nullptr);
        values[controlvalues::NameOf(value.ID)] = value.Value;
    }
    EXPECT_EQ(values.size(), publisher.Values().Count()) << "a name stands for one value";
    const std::map<std::string, DOUBLE> expected = {
        {"frameNumber", 7.0}, {"luxIndex", 212.5},        {"currentLuma", 46.0}, {"shortExposureTime", 1e7},
        {"longGain", 2.5},    {"safeSensitivity", 3e7},   {"longTarget", 4e7},   {"adrcGain", 1.5},
        {"settled", 1.0},     {"brightnessSettled", 0.0}, {"frameRate", 30.0},   {"statisticsDelay", 4.0}};
    for (const auto& [name, value] : expected)
    {
        ASSERT_TRUE(values.contains(name)) << name;
        EXPECT_EQ(values[name], value) << name;
    }
    EXPECT_EQ(controlvalues::LuxIndex, 2U) << "tools know the numbers";
    EXPECT_EQ(controlvalues::NameOf(9999), nullptr);
}

}  // namespace
