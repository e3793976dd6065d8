// Scenes as text: what is read, and what a person is told about a slip.

#include <cmath>
#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirosim/deterministic.h"
#include "tools/kirosim/scene.h"
#include "tools/kirosim/sensormodel.h"

using namespace kirosim;

namespace
{

class SceneText : public testing::Test
{
protected:
    const std::string& Write(const std::string& rText) const
    {
        return m_file.Write(rText);
    }

    std::string ErrorOf(const std::string& rText, const std::string& rVariant = "") const
    {
        return RefusalOf([&] { (VOID) ReadScene(Write(rText), rVariant); });
    }

    const TemporaryFile m_file{"scene_test.yaml"};
};

TEST_F(SceneText, LightStepsAndRampsAreReadAtTheirTimes)
{
    const Scene scene =
        ReadScene(Write("lux: 100\nlight: [{time: 1, ev: 1}, {time: 2, ev: 1}, {time: 4, ev: -1, ramp: true}]\n"), "");
    EXPECT_DOUBLE_EQ(scene.LightEV(0.99), 0.0);
    EXPECT_DOUBLE_EQ(scene.LightEV(1.0), 1.0);
    EXPECT_DOUBLE_EQ(scene.LightEV(3.0), 0.0);
    EXPECT_DOUBLE_EQ(scene.LightEV(9.0), -1.0);
    EXPECT_DOUBLE_EQ(scene.LuxAt(1.5), 200.0);

    // A variant changes only what it names.
    const std::string text = "lux: 100\nframes: 7\nvariants:\n  bright: {lux: 900}\n";
    EXPECT_DOUBLE_EQ(ReadScene(Write(text), "bright").lux, 900.0);
    EXPECT_EQ(ReadScene(Write(text), "bright").frames, 7U);
    EXPECT_EQ(ReadVariants(Write(text)), std::vector<std::string>{"bright"});
    EXPECT_NE(ErrorOf(text, "dark").find("there is no variant 'dark', expected one of: bright"), std::string::npos);
    EXPECT_NE(ErrorOf(text, "brigth").find("did you mean 'bright'?"), std::string::npos);
    EXPECT_NE(ErrorOf("lux: 1\n", "dark").find("the scene has no variants"), std::string::npos);
}

TEST_F(SceneText, ManualSettingsAreReadByWhatTheyName)
{
    const std::pair<const CHAR*, AECAlgoModeType> cases[] = {{"{iso: 800}", AECAlgoModeManualISO},
                                                             {"{gain: 4}", AECAlgoModeManualGain},
                                                             {"{timeUs: 8000}", AECAlgoModeManualExpTime},
                                                             {"{gain: 4, timeUs: 8000}", AECAlgoModeManualFull},
                                                             {"{}", AECAlgoModeAuto}};
    for (const auto& [pText, mode] : cases)
    {
        const std::string text   = std::string("lux: 100\nevents: [{time: 1, manual: ") + pText + "}]\n";
        const auto        manual = ReadScene(Write(text), "").events.at(0).manual;
        ASSERT_TRUE(manual.has_value()) << text;
        EXPECT_EQ(manual->manualMode, mode) << text;
        EXPECT_EQ(manual->ISOValue, (mode == AECAlgoModeManualISO) ? 800U : 0U);
        const bool hasTime = mode == AECAlgoModeManualExpTime || mode == AECAlgoModeManualFull;
        EXPECT_EQ(manual->exposureTime, hasTime ? 8000000U : 0U);
    }
    EXPECT_NE(ErrorOf("lux: 100\nevents: [{time: 1, manual: {ISO: 800}}]\n").find("did you mean 'iso'?"),
              std::string::npos);
}

TEST_F(SceneText, ASecondCameraIsTheFirstButForWhatIsSaid)
{
    const std::string text  = "lux: 100\nsensor: {maxGain: 8}\nrole: master\nsecond: {role: slave, lux: 50, sensor: "
                              "{sensitivity: 0.5}}\nvariants: {dim: {lux: 80, second: {lux: 40}}}\n";
    const Scene       scene = ReadScene(Write(text), "dim");
    ASSERT_NE(scene.pSecond, nullptr);
    EXPECT_DOUBLE_EQ(scene.lux, 80.0);
    EXPECT_DOUBLE_EQ(scene.pSecond->lux, 40.0);
    EXPECT_DOUBLE_EQ(scene.pSecond->sensor.maxGain, 8.0);
    EXPECT_DOUBLE_EQ(scene.pSecond->sensor.sensitivity, 0.5);
    EXPECT_DOUBLE_EQ(scene.sensor.sensitivity, 1.0);
    EXPECT_EQ(scene.pSecond->camera.role, StatsAlgoRoleSlave);
    EXPECT_EQ(scene.camera.role, StatsAlgoRoleMaster);
}

TEST_F(SceneText, SlipsNameFileLineColumnAndWhatWasExpected)
{
    const std::pair<const CHAR*, const CHAR*> slips[] = {
        {"lux: 100\nfrmaes: 3\n", ":2:1: "},
        {"lux: bright\n", ":1:6: 'bright' is no lux, expected a number"},
        {"pattern: {kind: plaid}\n", "expected one of: uniform, natural, highContrast, window, subject"},
        {"light: [{time: 3, ev: 1}, {time: 2, ev: 0}]\n", "ascending time"},
        {"events: [{time: 1, touch: [0, 0, 2, 1]}]\n", "expected a number from 0 to 1"},
        {"events: [{time: 1, antibanding: 55}]\n", "'55' is no antibanding, did you mean '50'?"},
        {"events: [{time: 1, modes: [Usecase.Vdeo]}]\n", ":1:28: "},
        {"events: [{time: 1, bracket: []}]\n", "bracket wants a list of 1 to 16 EV steps"},
        {"events: [{time: 1, bracket: [-12, 0.5]}]\n",
         ":1:35: '0.5' found for bracket, expected an integer from -1000 to 1000"},
        {"events: [{time: 1, led: dim}]\n", "'dim' is no led, expected one of: off, auto, on"},
        {"detectors: {watch: [{id: 1, host: true}]}\n", "did you mean 'hosts'"},
        {"frames: 0\n", "'0' found for frames, expected an integer from 1 to 10000000"},
        {"seed: 18446744073709551616\n", "expected an integer from 0 to 18446744073709551615"},
        {"events: [{time: 1, ev: 2.5}]\n", "'2.5' found for ev, expected an integer from -1000 to 1000"},
        {"events: [{time: 1, hdr: full}]\n", "expected one of: off, sensor, staggered, multiframe"},
        {"object: {path: [{time: 2}, {time: 2}]}\n", ":1:28: points of a path must stand in ascending time"},
        {"map: {kind: radar}\n", "expected one of: depth, segmentation"},
        {"gyro: [{time: 0, rms: 0}, {tmie: 1}]\n", ":1:28: "},
        {"sensor: {minGain: 9, maxGain: 3}\n", "minimum lies above its maximum"},
        {"second: {frames: 3}\n", ":1:10: unknown member of a second camera 'frames'"},
        {"events: [{time: 1, role: master}]\n", "the scene has none"},
        {"role: mastr\n", "'mastr' is no role, did you mean 'master'?"},
        {"calibration: {absolute: {gian: 1}}\n", ":1:26: unknown member of a calibration 'gian'"},
        {"sensitivityByCCT: [{CCT: 5000}, {CCT: 3000}]\n", "ascending CCT"},
        {"flash: {led: 1}\n", ":1:9:"},
        {"flash: {leds: [{rg: 1}]}\n", "leds wants a list of 2 LEDs"},
        {"flash: {pictures: {light: [[0.5]]}}\n", "2 numbers"},
        {"start: {from: luck}\n", "expected one of: preflash, previousMode, master, lightSensor, fixed, automatic"},
    };
    for (const auto& [pText, pExpected] : slips)
    {
        const std::string error = ErrorOf(pText);
        EXPECT_NE(error.find("scene_test.yaml"), std::string::npos) << pText;
        EXPECT_NE(error.find(pExpected), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    }
}

TEST(Deterministic, CosinesAndPowersAreAccurateAndDeviatesHaveTheirMoments)
{
    constexpr DOUBLE twoPi = 6.283185307179586;
    for (DOUBLE turns = -2.0; turns < 2.0; turns += 0.0137)
    {
        EXPECT_NEAR(CosineOfTurns(turns), std::cos(turns * twoPi), 1e-9) << turns;
    }
    for (const FLOAT exponent : {-126.0f, -20.3f, -0.5f, 0.0f, 0.49f, 1.0f, 7.77f, 127.0f})
    {
        EXPECT_NEAR(static_cast<DOUBLE>(PowerOfTwo(exponent)) / std::exp2(static_cast<DOUBLE>(exponent)), 1.0, 3e-7);
    }
    EXPECT_EQ(PowerOfTwo(500.0f), PowerOfTwo(127.0f));
    RandomStream    stream(3);
    DOUBLE          sum     = 0.0;
    DOUBLE          squares = 0.0;
    constexpr INT32 count   = 100000;
    for (INT32 index = 0; index < count; ++index)
    {
        const DOUBLE value = stream.NextGaussian();
        sum += value;
        squares += value * value;
    }
    EXPECT_NEAR(sum / count, 0.0, 0.02);
    EXPECT_NEAR(squares / count, 1.0, 0.02);
}

TEST(SensorModel, StatisticsFollowLightGainAndTime)
{
    Scene scene;
    scene.lux = 100.0;  // full scale at one second and unity gain
    SensorModel                                             sensor(scene);
    const std::array<AppliedExposure, AECAlgoExposureCount> exposures = {
        AppliedExposure{1.0, 100000000}, AppliedExposure{4.0, 500000000}, AppliedExposure{2.0, 100000000}};
    FrameTruth     truth{};
    KIROStatsList& rStats = sensor.Capture(1, 0.0, exposures.data(), truth);
    ASSERT_EQ(rStats.count, 15U);
    const auto channel = [&](const std::string& rName) -> const KIROCntStatsOut&
    {
        for (UINT32 index = 0; index < rStats.count; ++index)
        {
            if (rName == rStats.pList[index].channelData.pChannelName)
            {
                return rStats.pList[index];
            }
        }
        throw std::runtime_error("no channel " + rName);
    };
    EXPECT_NEAR(channel("ShortLuma").channelData.Data.pFData[17], 25.5f, 0.01f);
    EXPECT_NEAR(channel("SafeLuma").channelData.Data.pFData[17], 51.0f, 0.01f);
    EXPECT_NEAR(channel("LongLuma").channelData.Data.pFData[17], 255.0f, 0.01f);
    EXPECT_NEAR(channel("LongSaturation").channelData.Data.pFData[17], 255.0f, 0.01f);
    // Every sample of the safe exposure is at a fifth of full scale.
    EXPECT_EQ(channel("SafeHist").channelData.Data.pIData[51], static_cast<INT>(GridSize * SamplesPerRegion));
}

TEST(SensorModel, DecisionsAreTakenToTheSensorsStepsAndLimits)
{
    Scene scene;
    scene.sensor.gainStep = 0.25;
    scene.sensor.lineTime = 1e-4;
    scene.sensor.maxTime  = 5000000;
    const SensorModel     sensor(scene);
    KIROExposureSetType   decided = {.gain = 2.3f, .time = 1040000};
    const AppliedExposure applied = sensor.Quantize(decided);
    EXPECT_DOUBLE_EQ(applied.gain, 2.25);
    EXPECT_EQ(applied.time, 1000000U);
    decided.gain = 1000.0f;
    decided.time = 99000000;
    EXPECT_DOUBLE_EQ(sensor.Quantize(decided).gain, 64.0);
    EXPECT_EQ(sensor.Quantize(decided).time, 5000000U);
}

}  // namespace
