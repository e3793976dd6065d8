// Reports of runs: from a trace, from a scene, from a recording.

#include <map>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/kirosim/simulationrun.h"
#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirosim/development.h"
#include "tools/kirosim/moments.h"
#include "tools/kirosim/replaycommand.h"
#include "tools/kirosim/reportcommand.h"
#include "tools/kirosim/runcommand.h"
#include "tools/kirosim/statebands.h"
#include "tools/kirosim/tracematch.h"
#include "tools/kirosim/tracemeasures.h"
#include "tools/kirosim/tracetable.h"

using namespace kirosim;

namespace
{

using Data = nlohmann::json;

Data ReadPage(const std::string& rPath)
{
    const std::string page  = tuningfile::ReadText(rPath);
    const std::string open  = "id=\"data\">";
    const size_t      begin = page.find(open) + open.size();
    return Data::parse(page.substr(begin, page.find("</script>", begin) - begin));
}

/// The chart of a title; null if there is none.
Data ChartOf(const Data& rPage, const std::string& rTitle)
{
    for (const Data& rChart : rPage["charts"])
    {
        if (rChart["title"] == rTitle)
        {
            return rChart;
        }
    }
    return {};
}

std::vector<std::string> NamesOf(const Data& rItems)
{
    std::vector<std::string> names;
    for (const Data& rItem : rItems)
    {
        names.push_back(rItem["name"]);
    }
    return names;
}

/// Four frames: the exposure doubles, moves back by half an EV, and rests; short is as safe.
const std::string FourFrames = "frame,time_s,exposure_safe,exposure_short,time_ns_safe,adrc_gain,settled,novelty\r\n"
                               "1,0,1000000,1000000,1000000,1,0,7\r\n"
                               "2,0.5,2000000,2000000,2000000,1,0,7\n"
                               "3,1,1414214,1414214,1414214,1,1,7\n"
                               "4,1.5,1414214,1414214,1414214,1,1,7";

TraceTable TableOf(const std::string& rText)
{
    const TemporaryFile file("trace.csv");
    return TraceTable::Read(file.Write(rText));
}

/// Why a trace is refused, behind the name of its file.
std::string FaultOf(const std::string& rText)
{
    const TemporaryFile file("trace.csv");
    const std::string   fault = RefusalOf([&] { TraceTable::Read(file.Write(rText)); });
    return fault.starts_with(file.path) ? fault.substr(file.path.size()) : "accepted";
}

DOUBLE MeasureOf(const TraceTable& rTrace, const std::string& rName)
{
    for (const TraceMeasure& rMeasure : MeasuresOf(rTrace))
    {
        if (std::string(rMeasure.pName).starts_with(rName))
        {
            return rMeasure.value.value_or(-1.0);
        }
    }
    return -2.0;
}

/// What two traces are not of one of, behind their names.
std::string MismatchOf(const TraceTable& rTrace, const std::string& rOther)
{
    const std::string words = " are not of one ";
    const std::string text  = SceneMismatch(rTrace, TableOf(rOther));
    return text.empty() ? text : text.substr(text.find(words) + words.size());
}

/// What a sensor saw whose samples are all alike.
SensorView ViewOf(FLOAT sample, DOUBLE shortRoom, const Colour& rColour = {0.5, 0.6})
{
    SensorView view{};
    view.samples.assign(static_cast<size_t>(GridSize) * SamplesPerRegion, sample);
    view.colours.fill(rColour);
    view.light     = {0.5, 0.6};
    view.shortRoom = shortRoom;
    return view;
}

/// Runs a scene's text with a report. @return its data
Data ReportOf(const std::string& rScene, std::optional<UINT32> pictures = {}, const std::string& rRecording = "")
{
    const TemporaryFile scene("report.yaml");
    const TemporaryFile page("report.html");
    scene.Write(rScene);
    RunOptions options;
    options.tuning    = EXAMPLES_DIR "/tunings/phone.yaml";
    options.scene     = scene.path;
    options.report    = page.path;
    options.record    = rRecording;
    options.pictures  = pictures;
    options.isNotLive = true;
    options.isQuiet   = true;
    testing::internal::CaptureStdout();
    EXPECT_EQ(Run({options}), 0);
    testing::internal::GetCapturedStdout();
    return ReadPage(page.path);
}

}  // namespace

TEST(TraceReport, ShowsTheNumbersOfATrace)
{
    const TemporaryFile trace("four.csv");
    const TemporaryFile page("four.html");
    trace.Write(FourFrames);
    MakeReport({trace.path, page.path, trace.path, "the command"});
    const Data data = ReadPage(page.path);
    EXPECT_EQ(data["command"], "the command");
    EXPECT_EQ(data["timelines"][0]["frames"], Data::array({1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(data["timelines"][1]["times"], Data::array({0.0, 0.5, 1.0, 1.5}));

    // 1 ms at gain 1 is 0 EV. Short is safe, ADRC does nothing, and there is no luma.
    const Data exposures = ChartOf(data, "Targets and exposures");
    EXPECT_EQ(NamesOf(exposures["series"]), (std::vector<std::string>{"safe exposure", "safe exposure"}));
    EXPECT_EQ(exposures["series"][0]["values"][0], 0.0);
    EXPECT_EQ(exposures["series"][0]["values"][1], 1.0);
    EXPECT_NEAR(exposures["series"][0]["values"][2].get<DOUBLE>(), 0.5, 1e-6);
    EXPECT_EQ(exposures["series"][1]["timeline"], 1);
    EXPECT_EQ(ChartOf(data, "Exposure time")["series"][0]["values"][1], 2.0);
    EXPECT_TRUE(ChartOf(data, "ADRC and dark boost").is_null());
    EXPECT_TRUE(ChartOf(data, "Luma and what metering wants").is_null());

    // The last frame lasts as long as the one before.
    ASSERT_EQ(NamesOf(data["bands"]), (std::vector<std::string>{"settled"}));
    EXPECT_EQ(data["bands"][0]["stretches"], Data::array({Data::array({1.0, 2.0, ""})}));
}

TEST(TraceReport, MeasuresByHand)
{
    const TraceTable trace = TableOf(FourFrames);
    EXPECT_EQ(MeasureOf(trace, "frames"), 4.0);
    EXPECT_EQ(MeasureOf(trace, "settled for"), 1.0);
    EXPECT_EQ(MeasureOf(trace, "settled frames"), 50.0);
    EXPECT_NEAR(MeasureOf(trace, "ripple"), 1.0, 1e-6);
    EXPECT_NEAR(MeasureOf(trace, "largest change"), 1.0, 1e-6);
    EXPECT_EQ(MeasureOf(trace, "reversals"), 1.0);
    EXPECT_EQ(MeasureOf(trace, "banding"), -1.0);

    const TraceTable    other = TableOf("frame,time_s,settled\n1,0,1\n2,1,1\n");
    const report::Table table = MeasureTable(trace, &other);
    EXPECT_EQ(table.rows[0], (std::vector<std::string>{"frames", "4", "2", "+2"}));
    EXPECT_EQ(table.rows[2], (std::vector<std::string>{"settled frames, percent", "50", "100", "-50"}));
    EXPECT_EQ(table.rows[3][2], "none");
    EXPECT_EQ(table.rows[3][3], "none");
}

TEST(TraceReport, TellsOfATraceOfAnotherScene)
{
    // The light doubles at 1 s. A camera of half the rate has half the frames of it.
    const std::string names = "frame,time_s,scene_lux\n";
    const TraceTable  trace = TableOf(names + "1,0,10\n2,0.5,10\n3,1,20\n4,1.5,20\n");
    EXPECT_EQ(MismatchOf(trace, names + "1,0,10\n2,0.5,10\n3,1,20\n4,1.5,20\n"), "");
    EXPECT_EQ(MismatchOf(trace, names + "1,0,10\n2,1,20\n"), "length: 4 frames against 2");
    EXPECT_EQ(MismatchOf(trace, names + "1,0,10\n2,0.7,15\n3,1,20\n4,1.7,30\n"), "");
    EXPECT_EQ(MismatchOf(trace, names + "1,0,10\n2,0.5,10\n3,1,10\n4,1.5,20\n"), "scene: 20 lux against 10 at 1.00 s");
    EXPECT_EQ(MismatchOf(trace, names + "1,0,5\n"), "scene: 4 frames against 1, 10 lux against 5 at 0.00 s");
    EXPECT_EQ(MismatchOf(trace, "frame,time_s\n1,0\n2,1\n3,2\n4,3\n"), "");
}

TEST(TraceReport, RefusesADamagedTraceWithItsPlace)
{
    EXPECT_EQ(FaultOf(""), ":1: no column frame in the header, expected a trace of kirosim run --csv");
    EXPECT_EQ(FaultOf("frame,luma\n1,2\n"),
              ":1: no column time_s in the header, expected a trace of kirosim run --csv");
    EXPECT_EQ(FaultOf("frame,time_s,frame\n"), ":1: column 'frame' stands twice in the header");
    EXPECT_EQ(FaultOf("frame,time_s\n"), ":2: no frame, expected one per line");
    EXPECT_EQ(FaultOf("frame,time_s\n1,0\n2\n"), ":3: 1 value, expected 2 as in the header");
    EXPECT_EQ(FaultOf("frame,time_s\n1,0,5\n"), ":2: 3 values, expected 2 as in the header");
    EXPECT_EQ(FaultOf("frame,time_s\n1,0\n2,1s\n"), ":3: '1s' found for time_s, expected a number");
    EXPECT_EQ(FaultOf("frame,time_s\n1,\n"), ":2: '' found for time_s, expected a number");
    EXPECT_EQ(FaultOf("frame,time_s\n\x1b[31mred,0\n"), ":2: '?[31mred' found for frame, expected a number");
    EXPECT_EQ(FaultOf("frame,time_s\n1,nan\n"), ":2: time_s is no time");
    EXPECT_EQ(FaultOf("frame,time_s\n1,1\n2,1\n"), ":3: time_s is 1, expected more than the 1 of the frame before");
    EXPECT_EQ(FaultOf("frame,time_s,luma\n1,0,nan\n2,1,-inf\n"), "accepted");
}

TEST(TraceReport, KeepsTheEndOfALongTrace)
{
    TraceTable trace("long", "frame,time_s");
    for (UINT32 frame = 1; frame <= 2 * TraceTable::FramesMax; ++frame)
    {
        trace.Add(std::to_string(frame) + "," + std::to_string(frame));
    }
    EXPECT_EQ(trace.FrameCount(), TraceTable::FramesMax);
    EXPECT_EQ(trace.DroppedCount(), TraceTable::FramesMax);
    EXPECT_EQ(trace.Get("frame").back(), 2.0 * TraceTable::FramesMax);
}

TEST(RunReport, ShowsPicturesWhereSomethingHappens)
{
    // 30 frames a second: the step is seen by frame 31 first.
    const Data data =
        ReportOf("name: <step>\nlux: 200\nframes: 80\nstartOffsetEV: -3\nlight: [{time: 1.0, ev: 2}]\n", 20U);
    std::map<INT32, std::string> captions;
    for (const Data& rPicture : data["pictures"])
    {
        captions[rPicture["frame"].get<INT32>()] = rPicture["caption"];
    }
    EXPECT_EQ(data["title"], "<step>");
    EXPECT_EQ(captions[1], "start");
    EXPECT_EQ(captions[21], "on the way");
    EXPECT_EQ(captions[30], "before");
    EXPECT_EQ(captions[31], "light +2 EV");
    EXPECT_EQ(captions[80], "end");
    const auto settled = [](const auto& rCaption) { return rCaption.second == "settled"; };
    EXPECT_EQ(std::count_if(captions.begin(), captions.end(), settled), 2);
    EXPECT_EQ(data["marks"], Data::array({Data::array({1.0, "light +2 EV"})}));

    // The step doubles the luma twice, up to white; what metering wants is then a quarter of it.
    const Data luma = ChartOf(data, "Luma and what metering wants");
    ASSERT_EQ(luma["series"].size(), 2U);
    EXPECT_EQ(luma["series"][0]["values"].size(), 80U);
    const auto at = [&luma](size_t series, size_t frame)
    { return luma["series"][series]["values"][frame - 1].get<DOUBLE>(); };
    EXPECT_NEAR(at(0, 31) / at(0, 30), 4.0, 0.05);
    EXPECT_NEAR(at(1, 30), at(0, 30), 2.0);
}

TEST(RunReport, NamesTuningSceneAndStates)
{
    const Data data  = ReportOf("lux: 0.001\nframes: 60\nevents: [{time: 1, lock: true}]\n");
    const auto names = NamesOf(data["bands"]);
    EXPECT_NE(std::find(names.begin(), names.end(), "locked"), names.end());
    ASSERT_NE(std::find(names.begin(), names.end(), "at a limit"), names.end());
    const std::string text = data["tables"].dump() + data["bands"].dump();
    EXPECT_NE(text.find("the upper bound of tuning and settings"), std::string::npos);
    EXPECT_NE(text.find("phone.yaml, CRC-32 "), std::string::npos);
    EXPECT_NE(data["summary"].dump().find("start at 0.00 s"), std::string::npos);
}

TEST(RunReport, LeavesNumbersToTheFigures)
{
    const std::string summary = ReportOf("lux: 200\nframes: 150\n")["summary"].dump();
    EXPECT_NE(summary.find("came to rest"), std::string::npos) << summary;
    EXPECT_EQ(summary.find("frames to settle"), std::string::npos) << summary;
    EXPECT_EQ(summary.find("ripple"), std::string::npos) << summary;
}

TEST(RunReport, DrawsTheLightOnlyIfItChanges)
{
    EXPECT_TRUE(ChartOf(ReportOf("frames: 40\n"), "Light of the scene").is_null());
    const Data light = ChartOf(ReportOf("frames: 40\nlight: [{time: 1, ev: 1}]\n"), "Light of the scene");
    EXPECT_EQ(light["series"].size(), 1U);
}

TEST(RunSummary, SaysThatItsLastFramesAreNotAtRest)
{
    Scene scene;
    scene.frames     = 150;
    const auto until = [&scene] { return SimulationRun(scene).Summary().changedUntil; };
    EXPECT_FALSE(until().has_value());
    scene.light = {{1.0, 2.0, false}};  // a hundred frames from the 51st on begin at 1.67 s
    EXPECT_FALSE(until().has_value());
    scene.light = {{2.0, 2.0, false}};
    EXPECT_NEAR(until().value_or(0.0), 2.0, 1e-9);
    const std::string words = FormatSummary(SimulationRun(scene).Summary());
    EXPECT_NE(words.find("\nlight or view changed in the last 100 frames, up to 2.00 s: "), std::string::npos) << words;
    scene.light = {{2.0, 0.0, false}, {9.0, 2.0, true}};
    EXPECT_NEAR(until().value_or(0.0), 149.0 / 30.0, 1e-6) << "a ramp that does not end";
}

TEST(RunReport, DevelopsPlainly)
{
    // 0.18 is 118 of 255 in sRGB. The light's own colour is grey.
    EXPECT_EQ(Develop(ViewOf(0.18f, 1.0)), std::vector<BYTE>(size_t{3} * DevelopedWidth * DevelopedHeight, 118));
    EXPECT_EQ(Develop(ViewOf(1.5f, 1.0)).front(), 255);
    // With an ADRC gain of 4 the short exposure holds up to 4: 0.18 (1 + 0.18 / 16) / 1.18 = 0.1543 is 109.
    EXPECT_EQ(Develop(ViewOf(0.18f, 4.0)).front(), 109);
    EXPECT_EQ(Develop(ViewOf(4.0f, 4.0)).front(), 255);
    EXPECT_LT(Develop(ViewOf(1.5f, 4.0)).front(), 255);
    // Light with twice the red over green of the scene's, and the blue of it: red is twice green, linear.
    const std::vector<BYTE> red = Develop(ViewOf(0.18f, 1.0, {1.0, 0.6}));
    EXPECT_GT(red[0], red[1] + 30);
    EXPECT_EQ(red[1], red[2]);
}

TEST(RunReport, MarksWhatIsClippedAndWhatIsBlack)
{
    const ExposureMarks over = MarkExposure(ViewOf(1.0f, 1.0));
    EXPECT_EQ(over.over, 1.0);
    EXPECT_EQ(over.under, 0.0);
    EXPECT_EQ(over.pixels[3], 255);
    EXPECT_EQ(MarkExposure(ViewOf(1.0f, 4.0)).over, 0.0);
    const ExposureMarks under = MarkExposure(ViewOf(0.003f, 1.0));
    EXPECT_EQ(under.under, 1.0);
    EXPECT_NE(std::vector<BYTE>(under.pixels.begin(), under.pixels.begin() + 4),
              std::vector<BYTE>(over.pixels.begin(), over.pixels.begin() + 4));
}

TEST(RunReport, FollowsTheTouchWithItsWeights)
{
    const Data data    = ReportOf("lux: 800\nframes: 80\nevents: [{time: 1, touch: [0.25, 0.5, 0.25, 0.125]}, "
                                     "{time: 2, touch: none}]\n");
    const Data touched = data["pictures"].at(3);
    ASSERT_EQ(touched["caption"], "touch");
    const Data box = Data::array({0.25, 0.5, 0.25, 0.125});
    EXPECT_EQ(touched["touch"], box);
    ASSERT_EQ(NamesOf(touched["measurements"]),
              (std::vector<std::string>{"FrameAverage", "CentreWeighted", "TouchSpot"}));
    EXPECT_EQ(touched["measurements"][2]["box"], box);
    const Data& rCentre = data["weights"][touched["measurements"][1]["weights"].get<size_t>()];
    EXPECT_NEAR(rCentre[0].get<DOUBLE>(), 0.2, 1e-6);
    EXPECT_NEAR(rCentre[7 * 16 + 7].get<DOUBLE>(), 0.99, 1e-6);
    EXPECT_TRUE(data["pictures"].back()["touch"].is_null());
    EXPECT_EQ(NamesOf(data["pictures"].back()["measurements"]).back(), "Spot");
}

TEST(RunReport, SaysInWordsWhatASceneDoes)
{
    const TemporaryFile scene("moments.yaml");
    scene.Write(std::string("light: [{time: 1, ev: 0}, {time: 2, ev: 3, ramp: true}, {time: 2.5, ev: 1}]\n"
                            "events:\n"
                            "  - {time: 4, manual: {gain: 2, timeUs: 5000}, ev: -3}\n"
                            "  - {time: 3, lock: true, antibanding: 50}\n"
                            "  - {time: 5, touch: none, modes: [Usecase.Video], fps: [15, 30]}\n"));
    std::vector<std::string> words;
    for (const Moment& rMoment : MomentsOf(ReadScene(scene.path, "")))
    {
        words.push_back(std::to_string(static_cast<INT32>(rMoment.time * 10.0)) + ": " + rMoment.words);
    }
    EXPECT_EQ(words,
              (std::vector<std::string>{"10: light +3 EV up to 2 s", "25: light -2 EV", "30: lock, antibanding 50 Hz",
                                        "40: EV -3 steps, gain 2 and 5 ms by hand",
                                        "50: touch ends, 15 to 30 frames per second, modes Usecase.Video"}));

    words.clear();
    for (const CHAR* pVariant : {"", "cut"})
    {
        for (const Moment& rMoment : MomentsOf(ReadScene(EXAMPLES_DIR "/scenes/room.yaml", pVariant)))
        {
            words.push_back(rMoment.words);
        }
    }
    EXPECT_EQ(words, (std::vector<std::string>{"antibanding off", "turn 140 degrees right, 20 degrees up until 6 s",
                                               "antibanding off", "another place", "another place within 1 s"}));

    // A second round begins anew; what has passed is not said again.
    Scene loop;
    loop.light = {{1.0, 1.0, false}};
    MomentWalk walk(loop);
    EXPECT_EQ(walk.Advance(0.9), "");
    EXPECT_TRUE(walk.IsDueBy(1.0));
    EXPECT_EQ(walk.Advance(1.0), "light +1 EV");
    EXPECT_EQ(walk.Advance(1.1), "");
    EXPECT_EQ(walk.Advance(0.0), "");
    EXPECT_EQ(walk.Advance(1.5), "light +1 EV");
}

TEST(RunReport, ClosesAStateWhereItsWordsChange)
{
    StateBands bands;
    DOUBLE     time = 0.0;
    for (const CHAR* pWords : {"", "low", "low", "high", "", "low"})
    {
        bands.BeginFrame(time++);
        bands.Set("limit", *pWords != '\0', pWords);
        bands.Set("never", false);
    }
    const std::vector<report::Band> all = bands.Finish();
    ASSERT_EQ(all.size(), 1U);
    ASSERT_EQ(all[0].stretches.size(), 3U);
    EXPECT_EQ(all[0].stretches[0].from, 1.0);
    EXPECT_EQ(all[0].stretches[0].to, 3.0);
    EXPECT_EQ(all[0].stretches[1].words, "high");
    EXPECT_EQ(all[0].stretches[1].to, 4.0);
    EXPECT_EQ(all[0].stretches[2].to, 6.0);
}

TEST(ReplayReport, ShowsWhatTheRunDecided)
{
    const TemporaryFile recording("report.rec");
    const TemporaryFile page("replay.html");
    const Data          run = ReportOf("lux: 300\nframes: 40\nlight: [{time: 0.5, ev: 1}]\n", {}, recording.path);
    ReplayOptions       options;
    options.file   = recording.path;
    options.report = page.path;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(Replay(options, DiscardLog));
    testing::internal::GetCapturedStdout();
    const Data replay = ReadPage(page.path);
    EXPECT_EQ(replay["timelines"][0]["times"], run["timelines"][0]["times"]);
    for (const CHAR* pTitle : {"Targets and exposures", "Gain", "Lux index"})
    {
        EXPECT_EQ(ChartOf(replay, pTitle), ChartOf(run, pTitle)) << pTitle;
    }
    EXPECT_EQ(ChartOf(replay, "Luma and what metering wants")["series"][0],
              ChartOf(run, "Luma and what metering wants")["series"][0]);
    EXPECT_TRUE(ChartOf(replay, "Light of the scene").is_null());
    EXPECT_TRUE(replay["pictures"].empty());
}
