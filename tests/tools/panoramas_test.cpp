// Panoramas once they are read: what is no light, how bright they are, what comes from a direction.

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/panorama/cleaning.h"
#include "tools/panorama/lookup.h"
#include "tools/panorama/mapinput.h"
#include "tools/panorama/reduction.h"
#include "tools/panorama/spheremean.h"

using panorama::Light;
using panorama::RadianceMap;

namespace
{

/// A grey map of these values.
RadianceMap Grey(UINT32 width, const std::vector<FLOAT>& rValues)
{
    RadianceMap map{width, static_cast<UINT32>(rValues.size() / width), {}};
    for (const FLOAT value : rValues)
    {
        map.pixels.push_back({value, value, value});
    }
    return map;
}

TEST(Panoramas, WhatIsNoLightGoesAndASunWithoutEndIsTheBrightest)
{
    constexpr FLOAT infinity = std::numeric_limits<FLOAT>::infinity();
    constexpr FLOAT noNumber = std::numeric_limits<FLOAT>::quiet_NaN();
    RadianceMap     map      = Grey(4, {infinity, -infinity, noNumber, -1.0f, 4.0f, 1e-8f, 1e-9f, 3e38f});
    panorama::Clean(map, "sky");
    const FLOAT expected[] = {4.0f, 0.0f, 0.0f, 0.0f, 4.0f, 1e-8f, 0.0f, 4.0f};
    for (size_t pixel = 0; pixel < map.pixels.size(); ++pixel)
    {
        EXPECT_EQ(map.pixels[pixel].green, expected[pixel]) << pixel;
    }
    RadianceMap dark = Grey(2, {noNumber, -1.0f});
    EXPECT_NE(RefusalOf([&] { panorama::Clean(dark, "sky"); }).find("sky: dark in all directions"), std::string::npos);
}

TEST(Panoramas, TheMeanIsOfTheLogarithmByAreaOnTheSphere)
{
    // The row at the horizon is as large as the other two together; a direction without light does not count.
    EXPECT_NEAR(panorama::MeanLog2Luminance(Grey(2, {1, 1, 4, 4, 16, 16})), (0.0 + 2 * 2.0 + 4.0) / 4.0, 1e-6);
    EXPECT_NEAR(panorama::MeanLog2Luminance(Grey(2, {1, 1, 4, 0, 16, 16})), (0.0 + 2.0 + 4.0) / 3.0, 1e-6);
    const RadianceMap green{2, 1, {{0.0f, 2.0f, 0.0f}, {0.0f, 2.0f, 0.0f}}};
    EXPECT_NEAR(panorama::MeanLog2Luminance(green), std::log2(0.7152) + 1.0, 1e-6);
}

TEST(Panoramas, LightIsLinearBetweenPixelsAroundTheSphereAndOverThePoles)
{
    const RadianceMap map = Grey(4, {1, 2, 3, 4, 10, 20, 30, 40});
    const auto        at  = [&map](FLOAT longitude, FLOAT latitude)
    { return panorama::LightFrom(map, longitude, latitude).red; };
    constexpr FLOAT upper = 0.125f;  // the middle of the upper row
    EXPECT_NEAR(at(-0.125f, upper), 2.0f, 1e-5f);
    EXPECT_NEAR(at(0.0f, upper), 2.5f, 1e-5f);
    EXPECT_NEAR(at(0.125f, -upper), 30.0f, 1e-5f);
    EXPECT_NEAR(at(0.0f, 0.0f), 13.75f, 1e-5f);
    for (const FLOAT behind : {-1.5f, -0.5f, 0.5f, 2.5f})
    {
        EXPECT_NEAR(at(behind, upper), 2.5f, 1e-5f) << behind;  // between 4 and 1
    }
    // At a pole all directions meet: half this column, half the one at the other side.
    EXPECT_NEAR(at(-0.125f, 0.25f), 3.0f, 1e-5f);
    EXPECT_NEAR(at(0.375f, 0.25f), 3.0f, 1e-5f);
    EXPECT_NEAR(at(-0.375f, -0.25f), 20.0f, 1e-5f);
}

TEST(Panoramas, ASmallSunKeepsItsLightInACoarserMap)
{
    std::vector<FLOAT> values(20 * 10, 1.0f);
    values[5 * 20 + 7]        = 1000.0f;
    const RadianceMap reduced = panorama::Reduce(Grey(20, values), 8);
    ASSERT_EQ(reduced.pixels.size(), 32U);
    // Columns 7 to 9 and rows 5 and 6 of the map.
    EXPECT_NEAR(reduced.pixels[2 * 8 + 3].green, (5 * 1.0f + 1000.0f) / 6, 1e-3f);
    EXPECT_EQ(reduced.pixels[2 * 8 + 2].green, 1.0f);
}

TEST(Panoramas, AFileIsReadOnceAndItsMeanIsOne)
{
    const TemporaryFile file("panoramas_test.hdr");
    const std::string   header = "#?RGBE\n\n-Y 1 +X 2\n";
    file.Write(header + std::string("\x80\x80\x80\x83\x80\x80\x80\x85", 8));  // 4 and 16
    std::shared_ptr<const RadianceMap> pMap = panorama::SharedMap(file.path);
    EXPECT_NEAR(pMap->pixels[0].red, 0.5f, 1e-6f);
    EXPECT_NEAR(pMap->pixels[1].red, 2.0f, 1e-6f);
    const std::filesystem::path path(file.path);
    EXPECT_EQ(panorama::SharedMap((path.parent_path() / "." / path.filename()).string()), pMap);
    // Once nobody holds it, what stands in the file is read again.
    pMap.reset();
    file.Write(header + std::string("\x80\x80\x80\x83\x80\x80\x80\x83", 8));
    EXPECT_NEAR(panorama::SharedMap(file.path)->pixels[1].red, 1.0f, 1e-6f);
    EXPECT_TRUE(RefusalOf([&] { (VOID) panorama::SharedMap(file.path + "x"); }).starts_with(file.path + "x: "));
}

}  // namespace
