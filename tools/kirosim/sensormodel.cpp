#include "tools/kirosim/sensormodel.h"

#include <algorithm>
#include <cmath>

#include "host/channelnames.h"

namespace kirosim
{

namespace
{

/// EV of the natural pattern's 4 x 4 blocks around the mean, row by row.
constexpr DOUBLE NaturalBlocksEV[16] = {0.5, 0.0,  -0.5, 0.3, -0.3, 0.7, -0.7, 0.0,
                                        0.5, -0.5, 0.0,  1.0, -1.0, 0.5, -0.5, 0.0};

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

/// Exposes the samples of a region, and counts them in the histogram of their exposure.
RegionLight ExposeSamples(const FLOAT* pSamples, FLOAT signal, FLOAT noise, INT* pHistogram)
{
    RegionLight light{0.0f, 0};
    for (UINT32 sample = 0; sample < SamplesPerRegion; ++sample)
    {
        const FLOAT value = std::min(pSamples[sample] * signal * noise, 1.0f);
        light.saturated += (value >= 1.0f) ? 1 : 0;
        light.sum += value;
        const UINT32 bin = std::min(static_cast<UINT32>(value * static_cast<FLOAT>(HistogramBins)), HistogramBins - 1);
        ++pHistogram[bin];
    }
    return light;
}

/// Samples of a panorama under a flash, full scale is 1: what shines by itself does not reflect the more, so all of
/// them reflect as grey does.
std::array<FLOAT, SamplesPerRegion> WithFlash(const FLOAT* pSamples, FLOAT light, FLOAT flash)
{
    std::array<FLOAT, SamplesPerRegion> samples;
    std::transform(pSamples, pSamples + SamplesPerRegion, samples.begin(),
                   [=](FLOAT sample) { return sample * light + flash; });
    return samples;
}

}  // namespace

SensorModel::SensorModel(const Scene& rScene)
    : m_rScene(rScene), m_noise(rScene.seed),
      m_fullScale(static_cast<FLOAT>(std::pow(2.0, rScene.sensor.bitDepth) - 1.0)), m_stats{}, m_list{},
      m_objectGain(1.0f), m_levels{}, m_saturated{}, m_signals{}, m_lampSignals{}, m_shortRoom(1.0),
      m_colourSensitivity(1.0)
{
    if (rScene.object.has_value())
    {
        m_objectGain = static_cast<FLOAT>(std::pow(2.0, rScene.object->contrastEV));
    }
    for (UINT32 bin = 0; bin < HistogramBins; ++bin)
    {
        m_histogramLUT[bin] = (static_cast<FLOAT>(bin) + 0.5f) / static_cast<FLOAT>(HistogramBins) * m_fullScale;
    }
    if (rScene.panorama.has_value())
    {
        m_radiance.resize(static_cast<size_t>(GridSize) * SamplesPerRegion);
        m_pPanorama = std::make_unique<PanoramaPicture>(rScene);
    }
    else
    {
        BuildRadiance();
    }
    BuildChannels();
    BuildFlashChannels();
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
    m_list.startup = StatisticsStartUpValid;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        const channelnames::OfExposure& rNames = channelnames::Exposures[type];
        AddGrid(rNames.pLuma, m_stats[type].luma.data());
        AddGrid(rNames.pSaturation, m_stats[type].saturation.data());
        AddGrid(rNames.pRG, m_stats[type].rg.data());
        AddGrid(rNames.pBG, m_stats[type].bg.data());
        AddHistogram(rNames.pHistogram, m_stats[type].histogram.data());
    }
}

VOID SensorModel::BuildFlashChannels()
{
    if (!m_rScene.flash.has_value())
    {
        return;
    }
    constexpr UINT32 side     = 16;
    constexpr INT32  bitDepth = 8;
    m_pFlash                  = std::make_unique<FlashModel>(*m_rScene.flash, Colour{m_rScene.rg, m_rScene.bg});
    AddGrid(channelnames::GridRG, m_stats[AECAlgoExposureSafe].rg.data());
    AddGrid(channelnames::GridBG, m_stats[AECAlgoExposureSafe].bg.data());
    for (const auto& [pName, pValues] : {std::pair{channelnames::Luma16, m_pFlash->Luma16()},
                                         std::pair{channelnames::Saturation16, m_pFlash->Saturation16()}})
    {
        AddGrid(pName, pValues);
        KIROCntStatsOut& rChannel     = m_list.pList[m_list.count - 1];
        rChannel.resolution           = {side, side, 0, bitDepth};
        rChannel.channelData.dataSize = FlashStats::RegionCount * sizeof(FLOAT);
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
    rTruth.lux      = m_rScene.LuxAt(time);
    rTruth.exposure = pExposures[AECAlgoExposureSafe].Product();
    m_shortRoom     = rTruth.exposure / pExposures[AECAlgoExposureShort].Product();
    PlaceObject(time);
    if (m_pPanorama != nullptr)
    {
        const DOUBLE seconds = static_cast<DOUBLE>(pExposures[AECAlgoExposureSafe].time) / NsPerSecond;
        m_pPanorama->Look(time, seconds, SamplesPerRegion, m_radiance);
    }
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        rTruth.clipped[type] = ExposeRegions(time, pExposures[type], rTruth.lux, m_stats[type],
                                             (type == AECAlgoExposureSafe) ? &rTruth : nullptr);
    }
    if (m_objectMask.any())
    {
        rTruth.objectLuma = MeanLumaOfObject();
    }
    if (m_pFlash != nullptr)
    {
        // The safe exposure is the last one.
        m_pFlash->TakePicture(m_levels.data(), m_saturated.data());
    }
    m_list.frameID = frameID;
    for (UINT32 channel = 0; channel < m_list.count; ++channel)
    {
        m_list.pList[channel].frameID = frameID;
    }
    return m_list;
}

VOID SensorModel::View(RegionView& rView) const
{
    const ExposureStats& rSafe = m_stats[AECAlgoExposureSafe];
    std::transform(rSafe.luma.begin(), rSafe.luma.end(), rView.level.begin(),
                   [this](FLOAT luma) { return luma / m_fullScale; });
    rView.rg    = rSafe.rg;
    rView.bg    = rSafe.bg;
    rView.light = {m_rScene.rg, m_rScene.bg};
}

VOID SensorModel::PlaceObject(DOUBLE time)
{
    for (UINT32 region = 0; m_rScene.object.has_value() && region < GridSize; ++region)
    {
        const UINT32 row     = region / GridWidth;
        const DOUBLE x       = (region % GridWidth + 0.5) / GridWidth;
        const DOUBLE y       = (row + 0.5) / GridHeight;
        m_objectMask[region] = m_rScene.object->Covers(time, x, y);
    }
}

DOUBLE SensorModel::MeanLumaOfObject() const
{
    constexpr DOUBLE lumaMax = 255.0;
    DOUBLE           sum     = 0.0;
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const FLOAT level = m_stats[AECAlgoExposureSafe].luma[region] / m_fullScale;
        sum += m_objectMask[region] ? static_cast<DOUBLE>(level) : 0.0;
    }
    return sum / static_cast<DOUBLE>(m_objectMask.count()) * lumaMax;
}

/// @return share of the samples that are clipped
DOUBLE SensorModel::ExposeRegions(DOUBLE time, const AppliedExposure& rExposure, DOUBLE lux, ExposureStats& rStats,
                                  FrameTruth* pTruth)
{
    const Sensor& rSensor = m_rScene.sensor;
    const DOUBLE  seconds = static_cast<DOUBLE>(rExposure.time) / NsPerSecond;
    const DOUBLE mean = lux * rExposure.gain * seconds * SignalPerLuxSecond * rSensor.sensitivity * m_colourSensitivity;

    const DOUBLE meanPerLux = rExposure.gain * seconds * SignalPerLuxSecond * rSensor.sensitivity * m_colourSensitivity;

    std::array<DOUBLE, GridHeight> rowFactors;
    RowFactors(time, rExposure, rowFactors);
    rStats.histogram.fill(0);
    DOUBLE pictureSum   = 0.0;
    UINT32 clippedCount = 0;
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const DOUBLE light = mean * rowFactors[region / GridWidth];
        const DOUBLE lamp  = (m_pFlash != nullptr) ? m_pFlash->LuxAt(region) * meanPerLux : 0.0;
        const FLOAT  noise = std::max(1.0f + static_cast<FLOAT>(rSensor.regionNoise * m_noise.NextNoise()), 0.0f);
        const auto [sum, saturated] = ExposeRegion(region, light, lamp, noise, rStats.histogram.data());
        const DOUBLE level          = static_cast<DOUBLE>(sum) / SamplesPerRegion;
        pictureSum += level;
        clippedCount += saturated;
        const DOUBLE shot         = rSensor.shotNoise * std::sqrt(level * rExposure.gain) * m_noise.NextNoise();
        const DOUBLE read         = rSensor.readNoise * m_noise.NextNoise();
        rStats.luma[region]       = static_cast<FLOAT>(std::clamp(level + shot + read, 0.0, 1.0)) * m_fullScale;
        rStats.saturation[region] = static_cast<FLOAT>(saturated) / SamplesPerRegion * m_fullScale;
        m_levels[region]          = level;
        m_saturated[region]       = static_cast<DOUBLE>(saturated) / SamplesPerRegion;
    }
    SetColours(lux, rStats);
    if (pTruth != nullptr)
    {
        const auto [low, high] = std::minmax_element(rowFactors.begin(), rowFactors.end());
        pTruth->banding        = *high - *low;
        pTruth->pictureEV      = std::log2(std::max(pictureSum / GridSize, 1e-9));
    }
    return static_cast<DOUBLE>(clippedCount) / (GridSize * SamplesPerRegion);
}

SensorView SensorModel::View() const
{
    const ExposureStats& rSafe = m_stats[AECAlgoExposureSafe];
    SensorView           view{m_radiance, {}, {m_rScene.rg, m_rScene.bg}, m_shortRoom, &rSafe.histogram};
    for (size_t sample = 0; sample < view.samples.size(); ++sample)
    {
        const size_t region  = sample / SamplesPerRegion;
        view.samples[sample] = view.samples[sample] * m_signals[region] + m_lampSignals[region];
    }
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        view.colours[region] = {static_cast<DOUBLE>(rSafe.rg[region]), static_cast<DOUBLE>(rSafe.bg[region])};
    }
    return view;
}

/// @param light, lamp full scale of a mean sample is 1
RegionLight SensorModel::ExposeRegion(UINT32 region, DOUBLE light, DOUBLE lamp, FLOAT noise, INT* pHistogram)
{
    const FLOAT* pSamples = &m_radiance[static_cast<size_t>(region) * SamplesPerRegion];
    const FLOAT  gain     = m_objectMask[region] ? m_objectGain : 1.0f;
    if (m_pPanorama == nullptr || !(lamp > 0.0))
    {
        const FLOAT signal    = static_cast<FLOAT>(light + lamp) * gain;
        m_signals[region]     = signal * noise;
        m_lampSignals[region] = 0.0f;
        return ExposeSamples(pSamples, signal, noise, pHistogram);
    }
    const FLOAT lightSignal = static_cast<FLOAT>(light);
    const FLOAT lampSignal  = static_cast<FLOAT>(lamp);
    m_signals[region]       = lightSignal * gain * noise;
    m_lampSignals[region]   = lampSignal * gain * noise;
    return ExposeSamples(WithFlash(pSamples, lightSignal, lampSignal).data(), gain, noise, pHistogram);
}

VOID SensorModel::SetColours(DOUBLE lux, ExposureStats& rStats) const
{
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const Colour light  = LightOf(region);
        const DOUBLE share  = (m_pPanorama != nullptr) ? m_pPanorama->RadianceAt(region) : 1.0;
        const Colour colour = (m_pFlash != nullptr) ? m_pFlash->ColourAt(region, lux * share, light) : light;
        rStats.rg[region]   = static_cast<FLOAT>(colour.rg);
        rStats.bg[region]   = static_cast<FLOAT>(colour.bg);
    }
}

/// Colour of a region without flash.
Colour SensorModel::LightOf(UINT32 region) const
{
    const Colour white = (m_pFlash != nullptr) ? m_pFlash->Light() : Colour{m_rScene.rg, m_rScene.bg};
    if (m_pPanorama == nullptr)
    {
        return white;
    }
    const Colour& rTint = m_pPanorama->ColourAt(region);
    return {white.rg * rTint.rg, white.bg * rTint.bg};
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
