#include "tools/kirosim/sensormodel.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

namespace
{

constexpr DOUBLE NsPerSecond = 1e9;

/// EV of the natural pattern's 4 x 4 blocks around the mean, row by row.
constexpr DOUBLE NaturalBlocksEV[16] = {0.5, 0.0,  -0.5, 0.3, -0.3, 0.7, -0.7, 0.0,
                                        0.5, -0.5, 0.0,  1.0, -1.0, 0.5, -0.5, 0.0};

/// A window in the upper middle, or a subject in the middle, of a given share of the frame.
bool IsInBox(UINT32 column, UINT32 row, DOUBLE area, DOUBLE centreY)
{
    const DOUBLE half = std::sqrt(area) / 2.0;
    const DOUBLE x    = (column + 0.5) / GridWidth;
    const DOUBLE y    = (row + 0.5) / GridHeight;
    return std::abs(x - 0.5) < half && std::abs(y - centreY) < half;
}

/// EV of a region relative to the frame, before texture.
DOUBLE RegionEV(const Pattern& rPattern, UINT32 column, UINT32 row)
{
    switch (rPattern.kind)
    {
    case PatternKind::Natural:
        return NaturalBlocksEV[row * 4 / GridHeight * 4 + column * 4 / GridWidth];
    case PatternKind::HighContrast:
        return ((column + 0.5) / GridWidth < rPattern.area) ? rPattern.contrastEV / 2.0 : -rPattern.contrastEV / 2.0;
    case PatternKind::Window:
        return IsInBox(column, row, rPattern.area, 0.45) ? rPattern.contrastEV / 2.0 : -rPattern.contrastEV / 2.0;
    case PatternKind::Subject:
        return IsInBox(column, row, rPattern.area, 0.5) ? -rPattern.contrastEV : 0.0;
    default:
        return 0.0;
    }
}

}  // namespace

SensorModel::SensorModel(const Scene& rScene)
    : m_rScene(rScene), m_noise(rScene.seed),
      m_fullScale(static_cast<FLOAT>(std::pow(2.0, rScene.sensor.bitDepth) - 1.0)), m_stats{}, m_list{},
      m_colourSensitivity(1.0)
{
    for (UINT32 bin = 0; bin < HistogramBins; ++bin)
    {
        m_histogramLUT[bin] = (static_cast<FLOAT>(bin) + 0.5f) / static_cast<FLOAT>(HistogramBins) * m_fullScale;
    }
    BuildRadiance();
    BuildChannels();
}

VOID SensorModel::BuildRadiance()
{
    // The texture is part of the scene: the same for every seed of the noise.
    RandomStream texture(7);
    m_radiance.resize(static_cast<size_t>(GridSize) * SamplesPerRegion);
    DOUBLE sum = 0.0;
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const DOUBLE ev = RegionEV(m_rScene.pattern, region % GridWidth, region / GridWidth);
        for (UINT32 sample = 0; sample < SamplesPerRegion; ++sample)
        {
            const DOUBLE value = std::pow(2.0, ev + m_rScene.pattern.textureEV * texture.NextGaussian());
            m_radiance[static_cast<size_t>(region) * SamplesPerRegion + sample] = static_cast<FLOAT>(value);
            sum += value;
        }
    }
    const FLOAT scale = static_cast<FLOAT>(static_cast<DOUBLE>(m_radiance.size()) / sum);
    for (FLOAT& rValue : m_radiance)
    {
        rValue *= scale;
    }
}

VOID SensorModel::BuildChannels()
{
    // The first histogram of a frame yields no walker; nobody asks for one here, so any order does.
    static const CHAR* const names[AECAlgoExposureCount][5] = {
        {"ShortLuma", "ShortSaturation", "ShortRG", "ShortBG", "ShortHist"},
        {"LongLuma", "LongSaturation", "LongRG", "LongBG", "LongHist"},
        {"SafeLuma", "SafeSaturation", "SafeRG", "SafeBG", "SafeHist"}};
    m_list.startup = StatisticsStartUpValid;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        AddGrid(names[type][0], m_stats[type].luma.data());
        AddGrid(names[type][1], m_stats[type].saturation.data());
        AddGrid(names[type][2], m_stats[type].rg.data());
        AddGrid(names[type][3], m_stats[type].bg.data());
        AddHistogram(names[type][4], m_stats[type].histogram.data());
    }
}

VOID SensorModel::AddGrid(const CHAR* pName, FLOAT* pValues)
{
    KIROCntStatsOut& rChannel            = m_list.pList[m_list.count++];
    rChannel.type                        = KIROStatsGrid;
    rChannel.resolution                  = {GridWidth, GridHeight, 0, m_rScene.sensor.bitDepth};
    rChannel.channelData.bChannelEnabled = TRUE;
    rChannel.channelData.pChannelName    = const_cast<CHAR*>(pName);
    rChannel.channelData.Data.pFData     = pValues;
    rChannel.channelData.dataSize        = GridSize * sizeof(FLOAT);
}

VOID SensorModel::AddHistogram(const CHAR* pName, INT* pBins)
{
    KIROCntStatsOut& rChannel            = m_list.pList[m_list.count++];
    rChannel.type                        = KIROStatsHist;
    rChannel.resolution                  = {0, 0, HistogramBins, m_rScene.sensor.bitDepth};
    rChannel.channelData.bChannelEnabled = TRUE;
    rChannel.channelData.pChannelName    = const_cast<CHAR*>(pName);
    rChannel.channelData.Data.pIData     = pBins;
    rChannel.channelData.dataSize        = HistogramBins * sizeof(INT);
    rChannel.channelData.pValLUT         = m_histogramLUT.data();
}

AppliedExposure SensorModel::Quantize(const KIROExposureSetType& rDecided) const
{
    const Sensor& rSensor = m_rScene.sensor;
    const DOUBLE  gain    = std::clamp(static_cast<DOUBLE>(rDecided.gain), rSensor.minGain, rSensor.maxGain);
    const UINT64  time    = std::clamp(rDecided.time, rSensor.minTime, rSensor.maxTime);
    const DOUBLE  line    = rSensor.lineTime * NsPerSecond;
    const DOUBLE  lines   = std::max(std::round(static_cast<DOUBLE>(time) / line), 1.0);
    return {std::max(std::round(gain / rSensor.gainStep), 1.0) * rSensor.gainStep,
            static_cast<UINT64>(std::round(lines * line))};
}

KIROStatsList& SensorModel::Capture(UINT64 frameID, DOUBLE time, const AppliedExposure* pExposures, FrameTruth& rTruth)
{
    rTruth.lux = m_rScene.LuxAt(time);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        ExposeRegions(time, pExposures[type], rTruth.lux, m_stats[type],
                      (type == AECAlgoExposureSafe) ? &rTruth : nullptr);
    }
    m_list.frameID = frameID;
    for (UINT32 channel = 0; channel < m_list.count; ++channel)
    {
        m_list.pList[channel].frameID = frameID;
    }
    return m_list;
}

VOID SensorModel::ExposeRegions(DOUBLE time, const AppliedExposure& rExposure, DOUBLE lux, ExposureStats& rStats,
                                FrameTruth* pTruth)
{
    const Sensor& rSensor = m_rScene.sensor;
    const DOUBLE  seconds = static_cast<DOUBLE>(rExposure.time) / NsPerSecond;
    const DOUBLE mean = lux * rExposure.gain * seconds * SignalPerLuxSecond * rSensor.sensitivity * m_colourSensitivity;

    std::array<DOUBLE, GridHeight> rowFactors;
    RowFactors(time, rExposure, rowFactors);
    rStats.histogram.fill(0);
    DOUBLE pictureSum = 0.0;
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const FLOAT  signal    = static_cast<FLOAT>(mean * rowFactors[region / GridWidth]);
        const FLOAT  noise     = 1.0f + static_cast<FLOAT>(rSensor.regionNoise * m_noise.NextGaussian());
        const FLOAT* pSamples  = &m_radiance[static_cast<size_t>(region) * SamplesPerRegion];
        FLOAT        sum       = 0.0f;
        UINT32       saturated = 0;
        for (UINT32 sample = 0; sample < SamplesPerRegion; ++sample)
        {
            const FLOAT value = std::min(pSamples[sample] * signal * noise, 1.0f);
            saturated += (value >= 1.0f) ? 1 : 0;
            sum += value;
            const UINT32 bin =
                std::min(static_cast<UINT32>(value * static_cast<FLOAT>(HistogramBins)), HistogramBins - 1);
            ++rStats.histogram[bin];
        }
        const DOUBLE level = static_cast<DOUBLE>(sum) / SamplesPerRegion;
        pictureSum += level;
        const DOUBLE shot         = rSensor.shotNoise * std::sqrt(level * rExposure.gain) * m_noise.NextGaussian();
        const DOUBLE read         = rSensor.readNoise * m_noise.NextGaussian();
        rStats.luma[region]       = static_cast<FLOAT>(std::clamp(level + shot + read, 0.0, 1.0)) * m_fullScale;
        rStats.saturation[region] = static_cast<FLOAT>(saturated) / SamplesPerRegion * m_fullScale;
        rStats.rg[region]         = static_cast<FLOAT>(m_rScene.rg);
        rStats.bg[region]         = static_cast<FLOAT>(m_rScene.bg);
    }
    if (pTruth != nullptr)
    {
        const auto [low, high] = std::minmax_element(rowFactors.begin(), rowFactors.end());
        pTruth->banding        = *high - *low;
        pTruth->pictureEV      = std::log2(std::max(pictureSum / GridSize, 1e-9));
    }
}

/// Mean of the lamp's light over each row's exposure: a rolling shutter starts the rows one after another.
VOID SensorModel::RowFactors(DOUBLE time, const AppliedExposure& rExposure,
                             std::array<DOUBLE, GridHeight>& rFactors) const
{
    const Lamp& rLamp = m_rScene.lamp;
    rFactors.fill(1.0);
    if (rLamp.hertz <= 0.0 || rLamp.depth <= 0.0)
    {
        return;
    }
    constexpr DOUBLE twoPi       = 6.283185307179586;
    constexpr DOUBLE quarterTurn = 0.25;
    const DOUBLE     seconds     = static_cast<DOUBLE>(rExposure.time) / NsPerSecond;
    const DOUBLE     turns       = rLamp.hertz * seconds;
    for (UINT32 row = 0; row < GridHeight; ++row)
    {
        const DOUBLE start = rLamp.hertz * (time + m_rScene.sensor.readout * row / GridHeight);
        // The integral of a cosine is the difference of sines.
        const DOUBLE sineEnd   = CosineOfTurns(start + turns - quarterTurn);
        const DOUBLE sineStart = CosineOfTurns(start - quarterTurn);
        rFactors[row]          = 1.0 + rLamp.depth * (sineEnd - sineStart) / (twoPi * turns);
    }
}

}  // namespace kirosim
