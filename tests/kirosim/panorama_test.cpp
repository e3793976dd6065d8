// A camera in a panorama: what lands where in the picture, turns and cuts, and what works on top.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>

#include "host/channelnames.h"
#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirosim/deterministic.h"
#include "tools/kirosim/sensormodel.h"
#include "tools/kirosim/unseenmoves.h"

using namespace kirosim;

namespace
{

constexpr UINT32 MapWidth  = 256;  // pixels of 1.4 degrees
constexpr UINT32 MapHeight = 128;

using WorldMap = std::shared_ptr<panorama::RadianceMap>;

/// A world of light 1 in all directions.
WorldMap GreyWorld()
{
    return std::make_shared<panorama::RadianceMap>(panorama::RadianceMap{
        MapWidth, MapHeight, std::vector<panorama::Light>(size_t{MapWidth} * MapHeight, {1.0f, 1.0f, 1.0f})});
}

/// Changes all pixels whose middle is in a part of the sphere, in degrees.
template <typename Change> VOID Paint(WorldMap& rWorld, const Change& rChange)
{
    for (size_t pixel = 0; pixel < rWorld->pixels.size(); ++pixel)
    {
        const DOUBLE yaw   = (static_cast<DOUBLE>(pixel % MapWidth) + 0.5) / MapWidth * 360.0 - 180.0;
        const DOUBLE pitch = 90.0 - (static_cast<DOUBLE>(pixel / MapWidth) + 0.5) / MapHeight * 180.0;
        rChange(yaw, pitch, rWorld->pixels[pixel]);
    }
}

/// A scene in a world, 100 lux, which is full scale at a second of exposure, and 90 degrees from left to right.
Scene SceneIn(const WorldMap& rWorld)
{
    Scene scene;
    scene.lux                   = 100.0;
    scene.panorama              = PanoramaScene{};
    scene.panorama->pMap        = rWorld;
    scene.panorama->fieldOfView = 90.0;
    scene.sensor.readout        = 0.0;
    return scene;
}

/// A sensor in a scene, and its last frame.
class Eye
{
public:
    explicit Eye(Scene scene) : m_scene(std::move(scene)), m_sensor(m_scene)
    {
    }

    /// @return luma of the safe exposure by region, share of full scale
    std::vector<DOUBLE> See(DOUBLE time, UINT64 exposureNs = 100000000)
    {
        const std::array<AppliedExposure, AECAlgoExposureCount> exposures = {
            AppliedExposure{1.0, exposureNs}, AppliedExposure{1.0, exposureNs}, AppliedExposure{1.0, exposureNs}};
        m_pStats = &m_sensor.Capture(1, time, exposures.data(), m_truth);
        std::vector<DOUBLE> luma;
        const FLOAT*        pLuma = Channel(channelnames::Exposures[AECAlgoExposureSafe].pLuma);
        std::transform(pLuma, pLuma + GridSize, std::back_inserter(luma), [](FLOAT value) { return value / 255.0; });
        return luma;
    }

    const FLOAT* Channel(const CHAR* pName) const
    {
        for (UINT32 index = 0; index < m_pStats->count; ++index)
        {
            if (std::string(pName) == m_pStats->pList[index].channelData.pChannelName)
            {
                return m_pStats->pList[index].channelData.Data.pFData;
            }
        }
        throw std::runtime_error("no such channel");
    }

    SensorModel& Sensor()
    {
        return m_sensor;
    }

private:
    Scene          m_scene;
    SensorModel    m_sensor;
    KIROStatsList* m_pStats = nullptr;
    FrameTruth     m_truth{};
};

/// Where what is brighter than grey lies in the frame, from 0 at the left and the top to 1.
std::pair<DOUBLE, DOUBLE> BrightPlace(const std::vector<DOUBLE>& rLuma)
{
    const DOUBLE grey = *std::min_element(rLuma.begin(), rLuma.end());
    DOUBLE       sum  = 0.0;
    DOUBLE       sumX = 0.0;
    DOUBLE       sumY = 0.0;
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const DOUBLE light = rLuma[region] - grey;
        sum += light;
        sumX += light * (region % GridWidth + 0.5) / GridWidth;
        sumY += light * (region / GridWidth + 0.5) / GridHeight;
    }
    return {sumX / sum, sumY / sum};
}

TEST(Panorama, WhatLiesInADirectionLandsWhereALensPutsIt)
{
    // Where the spot is, where the camera looks, and where the spot lands: tan(22.5 degrees) / 2 = 0.207 from the
    // middle.
    const struct
    {
        DOUBLE spotYaw, spotPitch, yaw, pitch, x, y;
    } cases[] = {{0, 0, 0, 0, 0.5, 0.5},      {90, 0, 90, 0, 0.5, 0.5},       {-135, 0, 225, 0, 0.5, 0.5},
                 {22.5, 0, 0, 0, 0.707, 0.5}, {-67.5, 0, -90, 0, 0.707, 0.5}, {180, 0, 157.5, 0, 0.707, 0.5},
                 {0, 22.5, 0, 0, 0.5, 0.224}, {0, 22.5, 0, 22.5, 0.5, 0.5},   {0, 0, 0, 22.5, 0.5, 0.776},
                 {90, 60, 90, 60, 0.5, 0.5},  {180, 78, 0, 90, 0.5, 0.358},   {0, -78, 0, -90, 0.5, 0.358}};
    for (const auto& rCase : cases)
    {
        SCOPED_TRACE(testing::Message() << rCase.spotYaw << " " << rCase.spotPitch << " " << rCase.yaw);
        WorldMap world = GreyWorld();
        Paint(world,
              [&rCase](DOUBLE yaw, DOUBLE pitch, panorama::Light& rLight)
              {
                  constexpr DOUBLE degree   = 1.0 / 57.29578;
                  const DOUBLE     distance = std::remainder(yaw - rCase.spotYaw, 360.0) * std::cos(pitch * degree);
                  if (std::hypot(distance, pitch - rCase.spotPitch) < 3.0)
                  {
                      rLight = {3.0f, 3.0f, 3.0f};
                  }
              });
        Scene scene           = SceneIn(world);
        scene.panorama->yaw   = rCase.yaw;
        scene.panorama->pitch = rCase.pitch;
        const auto [x, y]     = BrightPlace(Eye(scene).See(0.0));
        EXPECT_NEAR(x, rCase.x, 0.01);
        EXPECT_NEAR(y, rCase.y, 0.01);
    }
}

TEST(Panorama, LightAndColourOfTheMapAreSeenInTheScenesUnits)
{
    WorldMap world = GreyWorld();
    Paint(world,
          [](DOUBLE yaw, DOUBLE, panorama::Light& rLight)
          {
              if (yaw > 0.0)
              {
                  rLight = {2.0f, 1.0f, 0.5f};
              }
          });
    Scene scene = SceneIn(world);
    scene.light = {{1.0, 1.0, false}};
    Eye eye(scene);
    // A tenth of a second at 100 lux is a tenth of full scale; reddish light by the weights of its parts.
    EXPECT_NEAR(eye.See(0.0)[0], 0.1, 1e-4);
    EXPECT_NEAR(eye.See(0.0)[GridWidth - 1], 0.1 * (2.0 * 0.2126 + 0.7152 + 0.5 * 0.0722), 1e-4);
    const FLOAT* pRG = eye.Channel(channelnames::Exposures[AECAlgoExposureSafe].pRG);
    const FLOAT* pBG = eye.Channel(channelnames::Exposures[AECAlgoExposureSafe].pBG);
    EXPECT_NEAR(pRG[0], 0.55, 1e-4);
    EXPECT_NEAR(pRG[GridWidth - 1], 1.1, 1e-4);
    EXPECT_NEAR(pBG[GridWidth - 1], 0.325, 1e-4);
    EXPECT_NEAR(eye.See(1.0)[0], 0.2, 1e-4);  // the light curve works on top
    // So does the panorama's own number, which takes the place of the scene's.
    scene.panorama->lux = 300.0;
    EXPECT_NEAR(Eye(scene).See(0.0)[0], 0.3, 1e-4);
}

TEST(Panorama, EachRowIsSeenInTheMiddleOfItsOwnExposure)
{
    WorldMap world = GreyWorld();
    Paint(world,
          [](DOUBLE yaw, DOUBLE, panorama::Light& rLight)
          {
              const FLOAT light = (yaw < 0.0) ? 3.0f : 1.0f;
              rLight            = {light, light, light};
          });
    Scene scene          = SceneIn(world);
    scene.sensor.readout = 0.048;
    scene.panorama->path = {{0.0, 0.0, 0.0}, {1.0, 300.0, 0.0}};
    // The share of a row that is left of the edge at yaw 0, which wanders to the left as the camera turns to the right.
    const auto edgeOf = [](const std::vector<DOUBLE>& rLuma, UINT32 row)
    {
        DOUBLE sum = 0.0;
        for (UINT32 column = 0; column < GridWidth; ++column)
        {
            sum += rLuma[row * GridWidth + column] / rLuma[row * GridWidth + GridWidth - 1] - 1.0;
        }
        return sum / 2.0 / GridWidth;
    };
    Eye                       eye(scene);
    const std::vector<DOUBLE> brief = eye.See(0.0, 1000000);
    EXPECT_NEAR(edgeOf(brief, 0), 0.5 - std::tan(0.00262) / 2.0, 0.003);   // 0.5 ms: 0.15 degrees
    EXPECT_NEAR(edgeOf(brief, 40), 0.5 - std::tan(0.21206) / 2.0, 0.003);  // 40.5 ms: 12.15 degrees
    const std::vector<DOUBLE> longer = eye.See(0.0, 20000000);
    EXPECT_NEAR(edgeOf(longer, 0), 0.5 - std::tan(0.05236) / 2.0, 0.003);  // 10 ms: 3 degrees
    // Back where it was, and standing still: what was seen before is not left over.
    EXPECT_EQ(eye.See(0.0, 1000000), brief);
    EXPECT_EQ(eye.See(0.0, 1000000), brief);
}

TEST(Panorama, APathIsHeldAtItsEndsAndJumpsWhereTwoPointsMeet)
{
    PanoramaScene panorama;
    panorama.yaw   = 90.0;
    panorama.pitch = 10.0;
    panorama.path  = {{1.0, 0.0, 0.0}, {3.0, 90.0, 20.0}, {3.0, -180.0, 100.0}, {4.0, -180.0, 0.0}};
    const std::tuple<DOUBLE, DOUBLE, DOUBLE> cases[] = {
        {0.0, 90.0, 10.0}, {2.0, 135.0, 20.0}, {3.0, 270.0, 90.0}, {3.5, 270.0, 60.0}, {9.0, 270.0, 10.0}};
    for (const auto& [time, yaw, pitch] : cases)
    {
        const PanoramaView view = panorama.ViewsAt(time, time, 1.0).now;
        EXPECT_NEAR(view.yaw, yaw / 360.0, 1e-9) << time;
        EXPECT_NEAR(view.pitch, pitch / 360.0, 1e-9) << time;
    }
}

TEST(Panorama, ACutLeadsElsewhereAtOnceOrByAFade)
{
    const WorldMap here  = GreyWorld();
    const WorldMap there = GreyWorld();
    Scene          scene = SceneIn(here);
    scene.panorama->cuts = {{.time = 1.0, .pMap = there, .yaw = 180.0, .lux = 400.0},
                            {.time = 2.0, .pMap = here, .lux = 200.0, .fade = 1.0}};
    Eye eye(scene);
    EXPECT_NEAR(eye.See(0.99)[5], 0.1, 1e-4);
    EXPECT_NEAR(eye.See(1.0)[5], 0.4, 1e-4);
    EXPECT_NEAR(eye.See(2.25)[5], 0.1 * (4.0 * 0.75 + 2.0 * 0.25), 1e-4);
    EXPECT_NEAR(eye.See(3.0)[5], 0.2, 1e-4);
    EXPECT_NEAR(scene.LightEV(1.5), 2.0, 1e-9);
    EXPECT_NEAR(scene.LuxAt(2.25), 350.0, 1e-9);
    const PanoramaViews views = scene.panorama->ViewsAt(2.25, 2.25, scene.lux);
    EXPECT_EQ(views.now.pMap, here.get());
    EXPECT_EQ(views.before.pMap, there.get());
    EXPECT_EQ(views.now.yaw, 0.5);  // stays as the cut before has set it
    EXPECT_EQ(scene.panorama->ViewsAt(3.0, 3.0, scene.lux).before.pMap, nullptr);
}

TEST(Panorama, FlashLightsASunNoMoreThanAWall)
{
    WorldMap world = GreyWorld();
    Paint(world,
          [](DOUBLE yaw, DOUBLE, panorama::Light& rLight)
          {
              if (yaw > 0.0)
              {
                  rLight = {5.0f, 5.0f, 0.0f};
              }
          });
    Scene scene = SceneIn(world);
    scene.flash = FlashScene{};
    Eye                       eye(scene);
    const std::vector<DOUBLE> dark = eye.See(0.0, 10000000);
    eye.Sensor().Flash()->SetLamp({1000, 0, 1.0f});
    const std::vector<DOUBLE> lit = eye.See(0.0, 10000000);
    // 100 lux at 1 m, 4 lux at 5 m: 0.0004 of full scale in a hundredth of a second.
    EXPECT_NEAR(lit[0] - dark[0], 0.0004, 1e-5);
    EXPECT_NEAR(lit[GridWidth - 1] - dark[GridWidth - 1], 0.0004, 1e-5);
    // A part without blue: 4 lux of the flash's 0.6 and 464 lux without.
    EXPECT_NEAR(eye.Channel(channelnames::Exposures[AECAlgoExposureSafe].pBG)[GridWidth - 1],
                0.65 / 64.0 + 4.0 / (4.0 + 500.0 * 0.9278) * (0.6 - 0.65 / 64.0), 1e-4);
}

TEST(Panorama, TheAngleOfADirectionIsCloseToTheMathLibrarys)
{
    constexpr DOUBLE twoPi = 6.283185307179586;
    for (DOUBLE angle = -3.14; angle < 3.14; angle += 0.01)
    {
        EXPECT_NEAR(TurnsOfDirection(3.0 * std::cos(angle), 3.0 * std::sin(angle)), angle / twoPi, 2e-6);
    }
    EXPECT_EQ(TurnsOfDirection(0.0, 0.0), 0.0);
    EXPECT_NEAR(TurnsOfDirection(-1.0, 0.0), 0.5, 2e-6);
}

class PanoramaText : public testing::Test
{
protected:
    PanoramaText()
    {
        std::filesystem::create_directory(m_folder.path);
        std::ofstream(m_folder.path + "/sky.hdr", std::ios::binary)
            << "#?RGBE\n\n-Y 1 +X 2\n"
            << std::string("\x80\x80\x80\x81\x80\x80\x80\x81", 8);
    }

    Scene Read(const std::string& rText) const
    {
        std::ofstream(m_scene) << rText;
        return ReadScene(m_scene, "");
    }

    const TemporaryFile m_folder{"panorama_test"};
    const std::string   m_scene = m_folder.path + "/scene.yaml";
};

TEST_F(PanoramaText, EachCameraHasItsOwnDirectionInTheSameMap)
{
    const Scene scene = Read("panorama: {file: sky.hdr, yaw: 10, fieldOfView: 40, path: [{time: 1, pitch: 5}]}\n"
                             "second: {panorama: {yaw: 190}}\n");
    ASSERT_TRUE(scene.panorama.has_value() && scene.pSecond != nullptr);
    EXPECT_EQ(scene.pSecond->panorama->pMap, scene.panorama->pMap);
    EXPECT_EQ(scene.panorama->yaw, 10.0);
    EXPECT_EQ(scene.pSecond->panorama->yaw, 190.0);
    EXPECT_EQ(scene.pSecond->panorama->path.size(), 1U);
    EXPECT_EQ(scene.pSecond->panorama->fieldOfView, 40.0);
}

TEST(PanoramaPath, WhatNoFrameSeesIsTold)
{
    Scene scene  = SceneIn(GreyWorld());
    scene.frames = 300;  // 10 s
    scene.panorama->path.resize(2);
    scene.panorama->path.back().time = 10.0;
    EXPECT_EQ(UnseenMove(scene), "");
    scene.panorama->path.back().time = 12.0;
    EXPECT_EQ(UnseenMove(scene), "the panorama has a point of its path at 12 s, but the run ends at 10 s");
    scene.panorama->cuts.resize(1);
    scene.panorama->cuts.back().time = 25.0;
    EXPECT_EQ(UnseenMove(scene), "the panorama has a cut at 25 s, but the run ends at 10 s");
    scene.events.resize(1);
    scene.events[0].fps = AECAlgoFPSRange{30.0f, 10.0f};
    EXPECT_EQ(UnseenMove(scene), "");
}

TEST_F(PanoramaText, SlipsAreRefusedAtTheirPlace)
{
    const std::pair<const CHAR*, const CHAR*> cases[] = {
        {"panorama: {yaw: 3}", ":1:11: a panorama wants a file"},
        {"panorama: {file: no.hdr}", ":1:18: "},
        {"panorama: {file: scene.yaml}", "neither an OpenEXR nor a Radiance picture"},
        {"panorama: {file: sky.hdr, pitch: 91}", "expected a number from -90 to 90"},
        {"panorama: {file: sky.hdr, path: [{time: 2}, {time: 1}]}", ":1:45: points of a path must stand in"},
        {"panorama: {file: sky.hdr, cuts: [{time: 2}, {time: 2}]}", ":1:45: cuts must stand in ascending time"},
        {"panorama: {file: sky.hdr, cuts: [{time: 2, file: no.exr}]}", "no.exr"},
        {"panorama: {file: ../build/lights/no.exr}", "No such file or directory; ./dev lights brings"},
        {"panorama: {fiel: sky.hdr}", "expected one of: file, yaw"}};
    for (const auto& [pText, pPart] : cases)
    {
        const std::string refusal = RefusalOf([&, pText = pText] { (VOID) Read(pText); });
        EXPECT_NE(refusal.find(pPart), std::string::npos) << refusal;
        EXPECT_TRUE(refusal.starts_with(m_scene + ":1:")) << refusal;
    }
}

}  // namespace
