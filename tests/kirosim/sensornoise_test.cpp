// The physics of the simulated sensor: how its noise is distributed, and that all that it delivers is of the same
// samples.

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numeric>

#include "host/channelnames.h"
#include "tools/kirosim/noise.h"
#include "tools/kirosim/sensormodel.h"

using namespace kirosim;

namespace
{

/// Sums of a sample of numbers, for their moments.
struct Sums
{
    DOUBLE count = 0.0;
    DOUBLE power[5]{};

    VOID Add(DOUBLE value)
    {
        ++count;
        for (INT32 exponent = 1; exponent <= 4; ++exponent)
        {
            power[exponent] += std::pow(value, exponent);
        }
    }

    DOUBLE Mean(INT32 exponent = 1) const
    {
        return power[exponent] / count;
    }

    DOUBLE Sigma() const
    {
        return std::sqrt(Mean(2) - Mean() * Mean());
    }
};

NoiseDeviates DeviatesAt(const NoisePlace& rPlace)
{
    NoiseDeviates deviates;
    DrawNoise(rPlace, deviates);
    return deviates;
}

constexpr UINT64 NoiseFrames = 400;

TEST(Noise, IsNormalOutToItsTails)
{
    Sums   sums;
    UINT32 beyond[5]{};
    for (UINT64 frame = 0; frame < NoiseFrames; ++frame)
    {
        for (const FLOAT deviate : DeviatesAt({1, frame, 0, 0}))
        {
            sums.Add(static_cast<DOUBLE>(deviate));
            for (UINT32 sigmas = 1; sigmas < 5; ++sigmas)
            {
                beyond[sigmas] += (std::abs(deviate) > static_cast<FLOAT>(sigmas)) ? 1 : 0;
            }
        }
    }
    // Bars are five sigma of 1.2 million independent deviates.
    EXPECT_NEAR(sums.Mean(), 0.0, 0.005);
    EXPECT_NEAR(sums.Mean(2), 1.0, 0.007);
    EXPECT_NEAR(sums.Mean(3), 0.0, 0.018);
    EXPECT_NEAR(sums.Mean(4), 3.0, 0.045);
    EXPECT_NEAR(beyond[1] / sums.count, 0.317311, 0.0022);
    EXPECT_NEAR(beyond[2] / sums.count, 0.045500, 0.0010);
    EXPECT_NEAR(beyond[3] / sums.count, 0.002700, 0.00024);
    EXPECT_NEAR(beyond[4] / sums.count, 0.0000633, 0.000036);
}

/// Correlation of deviates, and of their squares, which a common radius would show.
VOID ExpectIndependent(const char*                                                                pWhat,
                       const std::function<std::pair<FLOAT, FLOAT>(UINT64 frame, UINT32 region)>& pairOf)
{
    DOUBLE linear  = 0.0;
    DOUBLE squares = 0.0;
    for (UINT64 frame = 0; frame < NoiseFrames; ++frame)
    {
        for (UINT32 region = 0; region < GridSize; ++region)
        {
            const auto [one, other] = pairOf(frame, region);
            linear += static_cast<DOUBLE>(one * other);
            squares += static_cast<DOUBLE>((one * one - 1.0f) * (other * other - 1.0f));
        }
    }
    constexpr DOUBLE count = NoiseFrames * GridSize;
    EXPECT_NEAR(linear / count, 0.0, 0.005) << pWhat;
    EXPECT_NEAR(squares / count, 0.0, 0.01) << pWhat;
}

TEST(Noise, HasNothingInCommonWithItsNeighbours)
{
    std::vector<NoiseDeviates> frames;
    for (UINT64 frame = 0; frame <= NoiseFrames; ++frame)
    {
        frames.push_back(DeviatesAt({1, frame, 0, 0}));
    }
    // To the right, below, in the other half of the frame.
    for (const UINT32 distance : {1U, GridWidth, GridSize / 2})
    {
        ExpectIndependent("regions", [&](UINT64 frame, UINT32 region)
                          { return std::pair(frames[frame][region], frames[frame][(region + distance) % GridSize]); });
    }
    ExpectIndependent("frames", [&](UINT64 frame, UINT32 region)
                      { return std::pair(frames[frame][region], frames[frame + 1][region]); });
    const std::pair<const char*, NoisePlace> others[] = {
        {"seeds", {2, 0, 0, 0}}, {"exposures", {1, 0, 1, 0}}, {"kinds", {1, 0, 0, 1}}};
    for (const auto& [pWhat, place] : others)
    {
        std::vector<NoiseDeviates> other;
        for (UINT64 frame = 0; frame < NoiseFrames; ++frame)
        {
            other.push_back(DeviatesAt({place.seed, frame, place.exposure, place.kind}));
        }
        ExpectIndependent(pWhat, [&](UINT64 frame, UINT32 region)
                          { return std::pair(frames[frame][region], other[frame][region]); });
    }
}

/// A sensor that sees a scene of 100 lux, which is full scale at a second and unity gain.
class Sensing
{
public:
    explicit Sensing(Scene scene) : m_scene(std::move(scene)), m_sensor(m_scene)
    {
    }

    /// @param products of short, long and safe exposure, s at unity gain
    VOID Expose(DOUBLE gain = 1.0, const std::array<DOUBLE, AECAlgoExposureCount>& rProducts = {0.2, 0.2, 0.2})
    {
        std::array<AppliedExposure, AECAlgoExposureCount> exposures;
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            exposures[type] = {gain, static_cast<UINT64>(rProducts[type] / gain * NsPerSecond)};
        }
        m_pStats = &m_sensor.Capture(++m_frame, 0.0, exposures.data(), m_truth);
    }

    const auto& Channel(const std::string& rName) const
    {
        for (UINT32 index = 0; index < m_pStats->count; ++index)
        {
            if (rName == m_pStats->pList[index].channelData.pChannelName)
            {
                return m_pStats->pList[index].channelData;
            }
        }
        throw std::runtime_error("no channel " + rName);
    }

    /// Levels of an exposure's regions, full scale is 1.
    std::vector<DOUBLE> Levels(UINT32 type) const
    {
        const FLOAT*        pLuma = Channel(channelnames::Exposures[type].pLuma).Data.pFData;
        std::vector<DOUBLE> levels;
        for (UINT32 region = 0; region < GridSize; ++region)
        {
            levels.push_back(static_cast<DOUBLE>(pLuma[region]) / 255.0);
        }
        return levels;
    }

    SensorModel& Sensor()
    {
        return m_sensor;
    }

    const FrameTruth& Truth() const
    {
        return m_truth;
    }

private:
    Scene          m_scene;
    SensorModel    m_sensor;
    KIROStatsList* m_pStats = nullptr;
    FrameTruth     m_truth{};
    UINT64         m_frame = 0;
};

Scene NoisyScene(DOUBLE regionNoise, DOUBLE shotNoise, DOUBLE readNoise)
{
    Scene scene;
    scene.lux                = 100.0;
    scene.sensor.regionNoise = regionNoise;
    scene.sensor.shotNoise   = shotNoise;
    scene.sensor.readNoise   = readNoise;
    return scene;
}

TEST(SensorNoise, HasItsSigmaAndLeavesTheMean)
{
    struct Row
    {
        DOUBLE regionNoise;
        DOUBLE shotNoise;
        DOUBLE readNoise;
        DOUBLE gain;
        DOUBLE sigma;  // at a level of 0.2
    };
    const Row rows[] = {
        {0.02, 0.0, 0.0, 1.0, 0.2 * 0.02},
        {0.0, 0.01, 0.0, 1.0, 0.01 * std::sqrt(0.2)},
        {0.0, 0.01, 0.0, 16.0, 0.01 * std::sqrt(0.2 * 16.0)},
        {0.0, 0.0, 0.005, 16.0, 0.005},
        {0.02, 0.01, 0.005, 4.0, std::sqrt(0.004 * 0.004 + 0.0001 * 0.8 + 0.005 * 0.005)},
    };
    for (const Row& rRow : rows)
    {
        Sensing sensing(NoisyScene(rRow.regionNoise, rRow.shotNoise, rRow.readNoise));
        Sums    sums[AECAlgoExposureCount];
        DOUBLE  common = 0.0;  // of short and safe exposure
        for (UINT32 frame = 0; frame < 40; ++frame)
        {
            sensing.Expose(rRow.gain);
            const std::vector<DOUBLE> shorts = sensing.Levels(AECAlgoExposureShort);
            const std::vector<DOUBLE> safes  = sensing.Levels(AECAlgoExposureSafe);
            for (UINT32 region = 0; region < GridSize; ++region)
            {
                sums[AECAlgoExposureShort].Add(shorts[region]);
                sums[AECAlgoExposureSafe].Add(safes[region]);
                common += (shorts[region] - 0.2) * (safes[region] - 0.2);
            }
        }
        const DOUBLE count = sums[AECAlgoExposureSafe].count;
        for (const UINT32 type : {AECAlgoExposureShort, AECAlgoExposureSafe})
        {
            EXPECT_NEAR(sums[type].Sigma() / rRow.sigma, 1.0, 0.012) << rRow.sigma;
            EXPECT_NEAR(sums[type].Mean(), 0.2, 5.0 * rRow.sigma / std::sqrt(count)) << rRow.sigma;
        }
        EXPECT_NEAR(common / count / (rRow.sigma * rRow.sigma), 0.0, 0.02) << "exposures share their noise";
    }
}

TEST(SensorNoise, RepeatsBySeedRoundAndFrameOnly)
{
    const auto levelsOf = [](UINT64 seed, UINT32 frames, bool isAgain = false)
    {
        Scene scene = NoisyScene(0.01, 0.01, 0.01);
        scene.seed  = seed;
        Sensing sensing(std::move(scene));
        for (UINT32 frame = 0; frame < frames; ++frame)
        {
            sensing.Expose();
        }
        if (isAgain)
        {
            sensing.Sensor().StartRound();
            sensing.Expose();
        }
        return sensing.Levels(AECAlgoExposureSafe);
    };
    EXPECT_EQ(levelsOf(1, 2), levelsOf(1, 2));
    EXPECT_EQ(levelsOf(1, 3, true), levelsOf(1, 1));
    EXPECT_NE(levelsOf(1, 2), levelsOf(1, 1));
    EXPECT_NE(levelsOf(1, 2), levelsOf(2, 2));
}

/// Scenes whose samples come about in all ways that there are.
std::vector<Scene> SampledScenes()
{
    Scene plain                = NoisyScene(0.02, 0.0, 0.0);
    Scene textured             = plain;
    textured.pattern.kind      = PatternKind::Natural;
    textured.pattern.textureEV = 1.0;
    Scene object               = textured;
    object.object              = SceneObject{};
    object.object->contrastEV  = 2.0;
    Scene flash                = textured;
    flash.flash                = FlashScene{};
    Scene panorama             = plain;
    panorama.panorama          = PanoramaScene{};
    panorama.panorama->pMap    = std::make_shared<panorama::RadianceMap>(
        panorama::RadianceMap{64, 32, std::vector<panorama::Light>(size_t{64} * 32, {1.0f, 1.0f, 1.0f})});
    return {plain, textured, object, flash, panorama};
}

TEST(SensorSamples, AllStatisticsAreOfTheSameSamples)
{
    for (const Scene& rScene : SampledScenes())
    {
        Sensing sensing(rScene);
        if (sensing.Sensor().Flash() != nullptr)
        {
            sensing.Sensor().Flash()->SetLamp({1000, 0, 1.0f});
        }
        sensing.Expose(1.0, {0.05, 4.0, 0.4});
        const SensorView               view   = sensing.Sensor().View();
        const std::vector<DOUBLE>      levels = sensing.Levels(AECAlgoExposureSafe);
        std::array<INT, HistogramBins> counts{};
        DOUBLE                         clipped = 0.0;
        for (UINT32 region = 0; region < GridSize; ++region)
        {
            DOUBLE sum = 0.0;
            for (UINT32 sample = 0; sample < SamplesPerRegion; ++sample)
            {
                const FLOAT value = std::min(view.samples[region * SamplesPerRegion + sample], 1.0f);
                sum += static_cast<DOUBLE>(value);
                clipped += (value == 1.0f) ? 1.0 : 0.0;
                ++counts[std::min(static_cast<UINT32>(value * 256.0f), HistogramBins - 1)];
            }
            ASSERT_NEAR(levels[region], sum / SamplesPerRegion, 1e-5) << region;
        }
        const INT* pBins = sensing.Channel("SafeHist").Data.pIData;
        for (UINT32 bin = 0; bin < HistogramBins; ++bin)
        {
            ASSERT_EQ(pBins[bin], counts[bin]) << bin;
        }
        EXPECT_DOUBLE_EQ(sensing.Truth().clipped[AECAlgoExposureSafe], clipped / (GridSize * SamplesPerRegion));
        const FLOAT* pSaturation = sensing.Channel("LongSaturation").Data.pFData;
        const DOUBLE saturation  = std::accumulate(pSaturation, pSaturation + GridSize, 0.0) / GridSize / 255.0;
        EXPECT_NEAR(sensing.Truth().clipped[AECAlgoExposureLong], saturation, 1e-9);
        EXPECT_GT(saturation, 0.6);
    }
}

/// One bin may hold all samples of a frame.
TEST(SensorSamples, DarknessAndGlareFillOneBin)
{
    constexpr INT all = GridSize * SamplesPerRegion;
    for (const Scene& rScene : SampledScenes())
    {
        Sensing sensing(rScene);
        sensing.Expose(1.0, {1e-9, 1e6, 0.4});
        EXPECT_EQ(sensing.Channel("ShortHist").Data.pIData[0], all);
        EXPECT_EQ(sensing.Channel("LongHist").Data.pIData[HistogramBins - 1], all);
        const INT* pSafe = sensing.Channel("SafeHist").Data.pIData;
        EXPECT_EQ(std::accumulate(pSafe, pSafe + HistogramBins, 0), all);
    }
}

}  // namespace
