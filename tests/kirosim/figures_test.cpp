// Figures of merit of runs that are made by hand, so that the numbers are known beforehand.

#include <array>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirosim/figures/figurepage.h"
#include "tools/kirosim/figures/leastloss.h"
#include "tools/kirosim/figures/runfigures.h"
#include "tools/kirosim/figures/settling.h"
#include "tools/kirosim/figures/split.h"
#include "tools/kirosim/figures/tone.h"
#include "tools/kirosim/flashreport.h"
#include "tools/kirosim/runreport.h"
#include "tools/tuningfile/files.h"

using namespace kirosim;

namespace
{

constexpr DOUBLE FPS = 30.0;

/// @return the only such figure
const Figure& FindFigure(const std::vector<Figure>& rFigures, FigureId id, const std::string& rOf, DOUBLE at,
                         const std::string& rSubject)
{
    static const Figure none{};
    const Figure*       pFound = nullptr;
    for (const Figure& rFigure : rFigures)
    {
        if (rFigure.id == id && rFigure.of == rOf && std::abs(rFigure.at - at) < 1e-9 && rFigure.subject == rSubject)
        {
            EXPECT_EQ(pFound, nullptr) << RowOf(id).pName << " is there twice";
            pFound = &rFigure;
        }
    }
    EXPECT_NE(pFound, nullptr) << RowOf(id).pName << " of " << rOf << " at " << at;
    return (pFound != nullptr) ? *pFound : none;
}

/// A camera that decides what the test says.
struct HandMadeRun
{
    using OfFrame = std::function<DOUBLE(UINT32 index)>;

    /// @param decided, target gain times ns by frame, from 0
    HandMadeRun(const Scene& rScene, const OfFrame& decided, const OfFrame& target,
                const std::function<VOID(FrameRecord&)>& change = {})
        : scene(rScene), run(scene)
    {
        for (UINT32 index = 0; index < scene.frames; ++index)
        {
            FrameRecord record = RecordOf(index, decided(std::max(index, Latency()) - Latency()), target(index));
            if (change)
            {
                change(record);
            }
            run.Add(record);
        }
        figures = run.Finish({});
    }

    UINT32 Latency() const
    {
        return scene.sensor.latency;
    }

    FrameRecord RecordOf(UINT32 index, DOUBLE shown, DOUBLE target) const
    {
        FrameRecord record{};
        record.frame           = index + 1;
        record.sceneTime       = index / FPS;
        record.fps             = FPS;
        record.truth.lux       = scene.LuxAt(record.sceneTime);
        record.truth.exposure  = shown;
        record.truth.pictureEV = std::log2(record.truth.lux * shown) - 40.0;

        record.decided.convergence.evMultiplier = 1.0f;

        record.decided.metering.exposures[AECAlgoExposureSafe]               = static_cast<UINT64>(target);
        record.decided.arbitration[AECAlgoExposureSafe].exposureSet.gain     = 2.0f;
        record.decided.arbitration[AECAlgoExposureSafe].exposureSet.time     = 10000000;
        record.decided.arbitration[AECAlgoExposureSafe].exposureSet.exposure = 20000000;
        return record;
    }

    const Figure& Find(FigureId id, const std::string& rOf, DOUBLE at = 0.0, const std::string& rSubject = "") const
    {
        return FindFigure(figures, id, rOf, at, rSubject);
    }

    DOUBLE Value(FigureId id, const std::string& rOf, DOUBLE at = 0.0, const std::string& rSubject = "") const
    {
        return Find(id, rOf, at, rSubject).value.value_or(std::nan(""));
    }

    Scene               scene;
    RunFigures          run;
    std::vector<Figure> figures;
};

Scene StepScene(DOUBLE ev)
{
    Scene scene;
    scene.frames          = 240;
    scene.light           = {{4.0, ev, false}};
    scene.sensor.lineTime = 0.0;  // any exposure time
    return scene;
}

constexpr UINT32 StepFrame = 120;

/// 10 ms up to the step, then what the list says, then its last value.
HandMadeRun::OfFrame AfterStep(const std::vector<DOUBLE>& rValues)
{
    return [rValues](UINT32 index)
    {
        const size_t since = std::min<size_t>(index - std::min(index, StepFrame), rValues.size() - 1);
        return (index < StepFrame) ? 1e7 : rValues[since];
    };
}

TEST(Figures, RoundingIsNoOvershoot)
{
    const std::vector<DOUBLE> rests(10, 0.1);
    EXPECT_EQ(OvershootOf(rests, 0.0, 0.1 - 4e-15), 0.0);
    EXPECT_NEAR(OvershootOf(std::vector<DOUBLE>{0.0, 0.2, 0.1}, 0.0, 0.1), 0.1, 1e-12);
}

TEST(Figures, AStepIsJudgedByWhatTheSensorMadeOfEachDecision)
{
    // The fourth decision is 4 percent off, and stays; the third one 10 percent beyond.
    const HandMadeRun run(StepScene(1.0), AfterStep({8e6, 6e6, 4.5e6, 4.8e6, 5e6}), AfterStep({5e6}));
    EXPECT_EQ(run.Value(FigureId::Settle, "step", 4.0), 3.0);
    EXPECT_NEAR(run.Value(FigureId::Overshoot, "step", 4.0), std::log2(5.0 / 4.5), 1e-9);
    EXPECT_NEAR(run.Value(FigureId::FinalError, "step", 4.0), 0.0, 1e-9);
    EXPECT_EQ(run.Value(FigureId::Reversals, "step", 4.0), 1.0);
    EXPECT_EQ(run.Value(FigureId::Settle, "start"), 0.0);
    EXPECT_EQ(run.Value(FigureId::Settle, "run"), 3.0) << "the worst";
    EXPECT_EQ(run.Value(FigureId::Unsettled, "run"), 0.0);
}

TEST(Figures, WhatLiesBetweenTwoLinesOfTheSensorIsNobodysFault)
{
    // 10 ms and lines of 0.4 ms: the next exposure is 4 percent away, and rounding to lines makes 2 percent of that.
    Scene scene           = StepScene(1.0);
    scene.sensor.lineTime = 4e-4;
    const HandMadeRun run(scene, AfterStep({4.85e6, 5e6}), AfterStep({4.92e6}));
    EXPECT_EQ(run.Value(FigureId::Overshoot, "step", 4.0), 0.0);
    EXPECT_EQ(run.Value(FigureId::FinalError, "step", 4.0), 0.0);
    const HandMadeRun far(scene, AfterStep({4.6e6, 5e6}), AfterStep({4.7e6}));
    EXPECT_NEAR(far.Value(FigureId::Overshoot, "step", 4.0), std::log2(5.0 / 4.6), 1e-9);
    EXPECT_NEAR(far.Value(FigureId::FinalError, "step", 4.0), std::log2(5.0 / 4.7) - std::log2(1.04) / 2.0, 1e-6);
}

TEST(Figures, RestingOffTheTargetIsNotSettled)
{
    // 6 percent too dark for good.
    const HandMadeRun run(StepScene(1.0), AfterStep({4.7e6}), AfterStep({5e6}));
    EXPECT_FALSE(run.Find(FigureId::Settle, "step", 4.0).value.has_value());
    EXPECT_FALSE(run.Find(FigureId::Settle, "run").value.has_value()) << "never is worse than late";
    EXPECT_EQ(run.Value(FigureId::Unsettled, "run"), 1.0);
    EXPECT_NEAR(run.Value(FigureId::FinalError, "step", 4.0), std::log2(5.0 / 4.7), 1e-6);
    EXPECT_NEAR(run.Value(FigureId::FinalError, "run"), std::log2(5.0 / 4.7), 1e-6);
}

TEST(Figures, ATargetBeyondTheSensorIsJudgedByItsLimit)
{
    // The sensor's most is 64 times 100 ms.
    const HandMadeRun run(StepScene(-20.0), AfterStep({1e8, 6.4e9}), AfterStep({1e13}));
    EXPECT_EQ(run.Value(FigureId::Settle, "step", 4.0), 1.0);
}

TEST(Figures, WhatTheUserHoldsIsNotToSettle)
{
    Scene scene  = StepScene(1.0);
    Event lock   = {};
    lock.time    = 2.0;
    lock.lock    = true;
    scene.events = {lock};
    const HandMadeRun run(scene, AfterStep({1e7}), AfterStep({5e6}));
    EXPECT_EQ(run.Value(FigureId::Unsettled, "run"), 0.0) << "the start alone is asked";
    EXPECT_NEAR(run.Value(FigureId::Overshoot, "event", 2.0), 0.0, 1e-9);
}

TEST(Figures, DecisionsThatANewSessionGivesUpAreNotJudged)
{
    Scene scene  = StepScene(0.0);
    Event begin  = {};
    begin.time   = 4.0;
    begin.start  = StartPlan{};
    scene.events = {begin};
    // The session shows its own exposure at once, as if decided a latency before.
    const auto decided = [](UINT32 index) { return (index + 3 < StepFrame) ? 1e7 : 4e7; };
    const auto start   = [](FrameRecord& rRecord)
    {
        if (rRecord.frame == 1 || rRecord.frame == StepFrame + 1)
        {
            rRecord.start.emplace();
        }
    };
    const HandMadeRun run(scene, decided, AfterStep({4e7}), start);
    for (const DOUBLE at : {0.0, 4.0})
    {
        EXPECT_EQ(run.Value(FigureId::Settle, "start", at), 0.0);
        EXPECT_NEAR(run.Value(FigureId::Overshoot, "start", at), 0.0, 1e-9);
        EXPECT_NEAR(run.Value(FigureId::FinalError, "start", at), 0.0, 1e-9);
    }
}

TEST(Figures, LightThatMovesExcusesAsMuchAndNoMore)
{
    // 1 EV a second from 2 s to 4 s. The exposure follows a frame late and with a jump of 0.2 EV in the middle, which
    // it takes back two frames later, and jumps by 0.1 EV once all is still.
    Scene scene        = StepScene(0.0);
    scene.light        = {{2.0, 0.0, false}, {4.0, 2.0, true}};
    const auto decided = [](UINT32 index)
    {
        const DOUBLE light = std::clamp((index - 1.0) / FPS - 2.0, 0.0, 2.0);
        const DOUBLE jump  = (index == 90 || index == 91) ? 0.2 : (index >= 200) ? 0.1 : 0.0;
        return 1e7 * std::exp2(jump - light);
    };
    const auto target = [](UINT32 index) { return 1e7 * std::exp2(-std::clamp(index / FPS - 2.0, 0.0, 2.0)); };

    const HandMadeRun run(scene, decided, target);
    // A ramp of 61 frames: the first one shows no change yet, and two are 0.2 EV higher.
    const DOUBLE lag = (58.0 / FPS + 2.0 * (0.2 + 1.0 / FPS)) / 61.0;
    EXPECT_NEAR(run.Value(FigureId::Lag, "ramp", 2.0), lag, 1e-6);
    EXPECT_NEAR(run.Value(FigureId::Distance, "ramp", 2.0), lag, 1e-6);
    // Back by 0.2 EV and on with the light: that is less 1/30 EV which the light does.
    EXPECT_NEAR(run.Value(FigureId::Kick, "ramp", 2.0), 0.2, 1e-6);
    EXPECT_EQ(run.Value(FigureId::Reversals, "ramp", 2.0), 2.0);
    EXPECT_NEAR(run.Value(FigureId::Kick, "still", 5.0), 0.1, 1e-6);
    EXPECT_NEAR(run.Value(FigureId::Ripple, "still", 5.0), 0.1, 1e-6);
    EXPECT_NEAR(run.Value(FigureId::Ripple, "still", 1.0), 0.0, 1e-6);
    EXPECT_NEAR(run.Value(FigureId::Ripple, "run"), 0.1, 1e-6);
}

TEST(Figures, ARippleIsMeasuredAtItsOwnFrequency)
{
    std::vector<DOUBLE> times;
    std::vector<DOUBLE> values;
    for (UINT32 index = 0; index < 90; ++index)
    {
        const DOUBLE turns = 6.283185307179586 * index / FPS;
        times.push_back(index / FPS);
        values.push_back(3.0 + 0.1 * std::sin(7.0 * turns + 0.4) + 0.3 * std::sin(2.0 * turns));
    }
    EXPECT_NEAR(ToneSwing(times, values, 7.0).value_or(0.0), 0.2, 0.01);
    EXPECT_NEAR(ToneSwing(times, values, 2.0).value_or(0.0), 0.6, 0.01);
    EXPECT_NEAR(ToneSwing(times, values, 5.0).value_or(1.0), 0.0, 0.02);
    EXPECT_FALSE(ToneSwing(times, values, 0.2).has_value()) << "less than a period";

    // An exposure that stands still leaves the light's own swing, one that answers the ripple too late doubles it.
    Scene scene         = StepScene(0.0);
    scene.ripple        = {7.0, 10.0, 2.0};
    const auto target   = [](UINT32) { return 1e7; };
    const auto inverted = [&scene](UINT32 index)
    { return (index < 60) ? 1e7 : 1e7 * scene.LuxAt((index + 3) / FPS) / scene.lux; };
    const HandMadeRun still(scene, target, target);
    const HandMadeRun late(scene, inverted, target);
    EXPECT_NEAR(still.Value(FigureId::RippleLeft, "still", 3.0), 2.0 * 0.1 / std::log(2.0), 0.005);
    EXPECT_NEAR(still.Value(FigureId::RippleAdded, "still", 3.0), 0.0, 1e-9);
    EXPECT_NEAR(late.Value(FigureId::RippleAdded, "still", 3.0), still.Value(FigureId::RippleLeft, "still", 3.0),
                0.002);
}

TEST(Figures, TheLeastLossIsThatOfTheBestWindowOfEightOctaves)
{
    const auto of = [](std::initializer_list<std::pair<UINT32, FLOAT>> parts)
    {
        std::vector<FLOAT> samples;
        for (const auto& [count, value] : parts)
        {
            samples.insert(samples.end(), count, value);
        }
        return LeastLoss(samples);
    };
    EXPECT_EQ(of({{10, 0.25f}, {10, 60.0f}}), 0.0) << "7.9 octaves";
    EXPECT_EQ(of({{10, 0.25f}, {30, 65.0f}}), 0.25) << "8.02 octaves: the darker quarter goes";
    EXPECT_EQ(of({{5, 0.0f}, {15, 3000.0f}}), 0.25) << "nothing is black in any exposure";
    EXPECT_EQ(of({{10, 1e-4f}, {20, 0.01f}, {10, 1.0f}}), 0.25) << "what is in the middle stays";
}

TEST(Figures, LossesCountBeyondTheLeastAndPriceComesByGainAndTime)
{
    const SensorView  view{{0.25f, 0.25f, 0.25f, 65.0f}, {}, {1.0, 1.0}, 1.0, nullptr};
    Scene             scene = StepScene(0.0);
    RunFigures        run(scene);
    const HandMadeRun maker(
        scene, [](UINT32) { return 1e7; }, [](UINT32) { return 1e7; });
    for (UINT32 index = 0; index < 40; ++index)
    {
        FrameRecord record                        = maker.RecordOf(index, 1e7, 1e7);
        record.truth.clipped[AECAlgoExposureSafe] = 0.25;
        record.truth.black                        = (index < 37) ? 0.1 : 0.9;  // those have no decision that is seen
        EXPECT_EQ(run.IsViewDue(record), index == 0) << "light that changes alike everywhere is looked at once";
        if (run.IsViewDue(record))
        {
            run.Look(record, view);
        }
        run.Add(record);
    }
    const std::vector<Figure> figures = run.Finish({});
    const auto                ofRun   = [&figures](FigureId id)
    {
        const auto found =
            std::find_if(figures.begin(), figures.end(),
                         [id](const Figure& rFigure) { return rFigure.id == id && rFigure.of == "run"; });
        return (found != figures.end()) ? found->value.value_or(-1.0) : -1.0;
    };
    EXPECT_NEAR(ofRun(FigureId::Clipped), 25.0, 1e-9);
    EXPECT_NEAR(ofRun(FigureId::Black), 10.0, 1e-9);
    EXPECT_NEAR(ofRun(FigureId::Lost), 10.0, 1e-9);
    // Gain 2 and 10 ms: unity gain and 20 ms would do, and so would gain 64 and 0.3125 ms.
    EXPECT_NEAR(ofRun(FigureId::Noise), 1.0, 1e-9);
    EXPECT_NEAR(ofRun(FigureId::Motion), 5.0, 1e-9);
    EXPECT_EQ(ofRun(FigureId::Pinned), 0.0);
    // 8 times 200 ms: the longest time alone asks for gain 16.
    const Sensor        sensor{};
    KIROExposureSetType bright{};
    bright.gain = 32.0f;
    bright.time = 50000000;
    EXPECT_NEAR(GainAboveLeastEV(bright, sensor), 1.0, 1e-9);
}

TEST(Figures, DetectorsAndFlagsAreTimedFromTheChange)
{
    Scene scene             = StepScene(2.0);
    scene.detectors.watched = {{1, false}, {2, false}};
    scene.isMonitored       = true;
    const auto level        = [](UINT32) { return 1e7; };
    const auto watch        = [](FrameRecord& rRecord)
    {
        const bool isLate = rRecord.frame >= StepFrame + 1 + 7;
        rRecord.detectors = {{1, "one", true, isLate ? KIROSCDStateSceneChange : KIROSCDStateMonitor, KIROHoldTimeOff},
                             {2, "two", true, KIROSCDStateMonitor, KIROHoldTimeOff}};
        rRecord.decided.extension.monitoredFlags.bLLSNeeded = (rRecord.frame >= StepFrame + 1 + 12) ? TRUE : FALSE;
    };
    const HandMadeRun run(scene, level, level, watch);
    EXPECT_EQ(run.Value(FigureId::DetectorDelay, "step", 4.0, "detector 1"), 7.0);
    EXPECT_FALSE(run.Find(FigureId::DetectorDelay, "step", 4.0, "detector 2").value.has_value());
    EXPECT_EQ(run.Value(FigureId::DetectorDelay, "run", 0.0, "detector 1"), 7.0);
    EXPECT_EQ(run.Value(FigureId::MonitorDelay, "step", 4.0, "low-light snapshot"), 12.0);
}

TEST(Figures, TheWatchOfTheDelayIsTimedFromTheFirstChangeOfAStop)
{
    Scene scene             = StepScene(1.0);
    scene.sensor.delayError = -1;
    // 10 ms to 5 ms in three decisions; the frame behind StepFrame by two and the latency of three shows the last one.
    const auto   halved      = AfterStep({8e6, 6e6, 5e6});
    const UINT64 changeFrame = StepFrame + 2 + 3 + 1;
    const auto   seesFrom    = [](UINT64 frame)
    {
        return [frame](FrameRecord& rRecord)
        {
            // It takes a wrong one for the true one, twice.
            const bool isWrong = (rRecord.frame >= 20 && rRecord.frame < 30) || rRecord.frame == 40;
            rRecord.delay.seen = isWrong ? std::optional<UINT8>(2) : std::nullopt;
            if (rRecord.frame >= frame)
            {
                rRecord.delay.seen = 3;
            }
        };
    };
    const HandMadeRun late(scene, halved, halved, seesFrom(changeFrame + 4));
    EXPECT_EQ(late.Value(FigureId::DelayFound, "run"), 4.0);
    EXPECT_EQ(late.Value(FigureId::FalseAlarms, "run"), 2.0);
    const HandMadeRun early(scene, halved, halved, seesFrom(changeFrame - 1));
    EXPECT_EQ(early.Value(FigureId::DelayFound, "run"), 0.0);
    const HandMadeRun never(scene, halved, halved, seesFrom(999));
    EXPECT_FALSE(never.Find(FigureId::DelayFound, "run").value.has_value());

    const auto isAsked = [](const HandMadeRun& rRun)
    {
        return std::any_of(rRun.figures.begin(), rRun.figures.end(),
                           [](const Figure& rFigure) { return rFigure.id == FigureId::DelayFound; });
    };
    const auto nearly = AfterStep({8e6, 6e6, 5.5e6});
    EXPECT_FALSE(isAsked(HandMadeRun(scene, nearly, nearly))) << "less than a stop";
    scene.sensor.delayError = 0;
    const HandMadeRun right(scene, halved, halved);
    EXPECT_FALSE(isAsked(right));
    EXPECT_EQ(right.Value(FigureId::FalseAlarms, "run"), 0.0);
}

TEST(Figures, TheSecondCameraHasItsOwn)
{
    const TemporaryFile file("figures_test.yaml");
    const Scene         scene =
        ReadScene(file.Write(std::string("lux: 100\nframes: 240\nlight: [{time: 4, ev: 1}]\nsecond: {role: slave}\n"
                                         "events: [{time: 2, camera: second, ev: 6}]\n")),
                  "");
    const auto        first  = AfterStep({5e6});
    const auto        second = AfterStep({8e6, 6e6, 4.5e6, 5e6});
    const HandMadeRun maker(scene, first, first);
    RunReport         report(maker.scene, true);
    for (UINT32 index = 0; index < scene.frames; ++index)
    {
        const UINT32 decidedIn = std::max(index, maker.Latency()) - maker.Latency();
        report.AddSecond(maker.RecordOf(index, second(decidedIn), first(index)));
        report.Add(maker.RecordOf(index, first(decidedIn), first(index)));
    }
    const std::vector<Figure> figures = report.Figures();
    const auto                value   = [&](FigureId id, const std::string& rOf, DOUBLE at, const std::string& rSubject)
    { return FindFigure(figures, id, rOf, at, rSubject).value.value_or(std::nan("")); };
    EXPECT_EQ(value(FigureId::Settle, "step", 4.0, ""), 0.0);
    EXPECT_EQ(value(FigureId::Settle, "step", 4.0, "camera 2"), 3.0);
    EXPECT_EQ(value(FigureId::Settle, "run", 0.0, "camera 2"), 3.0);
    EXPECT_EQ(value(FigureId::Settle, "event", 2.0, "camera 2"), 0.0);
    EXPECT_NEAR(value(FigureId::Overshoot, "run", 0.0, "camera 2"), std::log2(5.0 / 4.5), 1e-9);
    EXPECT_EQ(value(FigureId::Overshoot, "run", 0.0, ""), 0.0);
    EXPECT_NE(ToJsonLine(report.Facts()).find("{\"figure\": \"settle\", \"of\": \"step, camera 2\", \"at\": 4, "),
              std::string::npos);
    EXPECT_EQ(
        std::count_if(figures.begin(), figures.end(), [](const Figure& rFigure) { return rFigure.of == "event"; }),
        std::count_if(figures.begin(), figures.end(),
                      [](const Figure& rFigure) { return rFigure.of == "event" && rFigure.subject == "camera 2"; }))
        << "nobody has asked the first one for anything";
}

TEST(Figures, StretchesComeFromTheSceneAndNotFromTheTuning)
{
    Scene scene;
    scene.light           = {{2.0, 0.0, false}, {3.0, 1.0, true}};
    scene.object          = SceneObject{};
    scene.object->appears = 5.0;
    scene.object->path    = {{6.0, 0.2, 0.5}, {7.0, 0.8, 0.5}};
    Event touch;
    touch.time   = 8.01;  // shown by the frame after it
    touch.ev     = 6;
    scene.events = {touch};
    std::vector<SceneInstant> frames;
    for (UINT32 index = 0; index < 300; ++index)
    {
        frames.push_back({index / FPS, scene.LightEV(index / FPS), index == 270});
    }
    const std::vector<std::tuple<SpanKind, DOUBLE, size_t>> expected = {
        {SpanKind::Start, 0.0, 0},    {SpanKind::Ramp, 2.0, 60},   {SpanKind::Rest, 3.0, 91},
        {SpanKind::Step, 5.0, 150},   {SpanKind::Turn, 6.0, 181},  {SpanKind::Rest, 7.0, 211},
        {SpanKind::Event, 8.01, 241}, {SpanKind::Start, 8.01, 270}};
    std::vector<std::tuple<SpanKind, DOUBLE, size_t>> found;
    for (const SceneSpan& rSpan : SpansOf(scene, frames, {}, SpanCauses::All))
    {
        found.emplace_back(rSpan.kind, rSpan.at, rSpan.begin);
    }
    EXPECT_EQ(found, expected);
    EXPECT_EQ(SpansOf(scene, frames, {}, SpanCauses::Light).size(), 3u);
}

TEST(Figures, ATurnBeginsWithTheFrameWhoseLastRowsShowIt)
{
    Scene scene          = StepScene(0.0);
    scene.panorama       = PanoramaScene{};
    scene.panorama->path = {{2.0, 0.0, 0.0}, {3.0, 90.0, 0.0}, {5.02, 90.0, 0.0}, {6.0, 0.0, 0.0}};
    // The first frame of each turn already asks for more: the one at 2 s, and the one at 5 s, read up to 5.03 s.
    const auto        decided = [](UINT32 index) { return (index < 60) ? 1e7 : (index < 150) ? 1.1e7 : 1.2e7; };
    const HandMadeRun run(scene, decided, decided);
    EXPECT_NEAR(run.Value(FigureId::Kick, "turn", 2.0), std::log2(1.1), 1e-9);
    EXPECT_NEAR(run.Value(FigureId::Kick, "turn", 5.02), std::log2(1.2 / 1.1), 1e-9);
    EXPECT_EQ(run.Value(FigureId::Overshoot, "start"), 0.0);
    EXPECT_EQ(run.Value(FigureId::Ripple, "still", 1.0), 0.0);
    EXPECT_EQ(run.Value(FigureId::Ripple, "still", 4.0), 0.0);
}

TEST(Figures, AFlashIsOffByTheStopsBetweenLumaAndTarget)
{
    const FlashScene scene;
    FlashReport      report(scene);
    for (const DOUBLE luma : {30.0, 120.0})
    {
        FrameRecord record{};
        record.flash.shot.emplace();
        record.flash.shot->nearLuma       = luma;
        record.flash.shot->decided.target = 60.0f;
        report.Add(record);
    }
    for (const Figure& rFigure : report.Figures())
    {
        EXPECT_NEAR(rFigure.value.value_or(0.0), 1.0, 1e-6);
    }
}

TEST(Figures, ARunOfThePhoneHasThemForScriptsAndForThePage)
{
    const SimulationRun run("natural", "step+2");
    RunReport           report(run.GetScene(), true);
    RunReport           silent(run.GetScene());
    for (const FrameRecord& rRecord : run.Records())
    {
        report.Add(rRecord);
        silent.Add(rRecord);
    }
    const std::string json = ToJsonLine(report.Facts());
    EXPECT_NE(json.find("{\"figure\": \"settle\", \"of\": \"step\", \"at\": 4, \"value\": "), std::string::npos)
        << json;
    EXPECT_EQ(ToJsonLine(silent.Facts()).find("figures"), std::string::npos);
    const report::Table table = FigureTable(report.Figures());
    EXPECT_EQ(table.columns,
              (std::vector<std::string>{"", "run", "start, 0 s", "still, 1 s", "step, 4 s", "still, 5 s"}));
    EXPECT_EQ(table.rows.front().front(), "settle, frames");
    EXPECT_EQ(table.rows.front()[3], "") << "a standstill does not settle";
    EXPECT_EQ(table.rows.front()[1], table.rows.front()[4]) << "the step takes longer than the start";
}

TEST(Figures, TheReferenceIsTheProgramsOwn)
{
    EXPECT_EQ(tuningfile::ReadText(DOCS_DIR "/figures.md"), FigureReference()) << "kirosim figures >docs/figures.md";
}

}  // namespace
