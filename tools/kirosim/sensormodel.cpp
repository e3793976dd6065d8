#include "tools/kirosim/sensormodel.h"

#include <algorithm>
#include <cmath>

#include "host/channelnames.h"
#include "platform/tavoprocessors.h"
#include "tools/kirosim/deterministic.h"
#include "tools/kirosim/patternlight.h"

namespace kirosim
{

namespace
{

/// Independent noises of an exposure.
enum class NoiseKind : UINT32
{
    Region,
    Level
};

template <UINT32 count> DOUBLE SumOf(const Lanes (&rGroups)[count])
{
    DOUBLE sum = 0.0;
    for (const Lanes& rGroup : rGroups)
    {
        for (UINT32 index = 0; index < GroupWidth; ++index)
        {
            sum += static_cast<DOUBLE>(rGroup[index]);
        }
    }
    return sum;
}

VOID SquareRoots(const Lanes& rNumbers, Lanes& rRoots)
{
    FLOAT roots[GroupWidth];
    Store(rNumbers, roots);
    for (FLOAT& rRoot : roots)
    {
        rRoot = std::sqrt(rRoot);
    }
    Load(roots, rRoots);
}

/// Samples of a region that differ.
UINT32 SampleCountOf(const Scene& rScene)
{
    return rScene.panorama.has_value() ? PanoramaPicture::Directions : PatternSampleCount(rScene.pattern);
}

}  // namespace

SensorModel::SensorModel(const Scene& rScene)
    : m_rScene(rScene), m_fullScale(static_cast<FLOAT>(std::pow(2.0, rScene.sensor.bitDepth) - 1.0)),
      m_radiance(SampleCountOf(rScene)), m_framesOfRound(0), m_regionDeviates{},
      m_levelDeviates{}, m_stats{}, m_list{}, m_rg{}, m_bg{}, m_levels{}, m_signals{}, m_shortRoom(1.0),
      m_colourSensitivity(1.0)
{
    for (UINT32 bin = 0; bin < HistogramBins; ++bin)
    {
        m_histogramLUT[bin] = (static_cast<FLOAT>(bin) + 0.5f) / static_cast<FLOAT>(HistogramBins) * m_fullScale;
    }
    if (rScene.panorama.has_value())
    {
        m_pPanorama = std::make_unique<PanoramaPicture>(rScene);
    }
    else
    {
        FillWithPattern(rScene.pattern, m_radiance);
    }
    m_gains.fill(1.0f);
    BuildChannels();
    BuildFlashChannels();
    SetColours(0.0);
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
        AddGrid(rNames.pRG, m_rg.data());
        AddGrid(rNames.pBG, m_bg.data());
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
    AddGrid(channelnames::GridRG, m_rg.data());
    AddGrid(channelnames::GridBG, m_bg.data());
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
    bool isColourNew = m_pFlash != nullptr;
    if (m_pPanorama != nullptr)
    {
        const DOUBLE seconds = static_cast<DOUBLE>(pExposures[AECAlgoExposureSafe].time) / NsPerSecond;
        isColourNew          = m_pPanorama->Look(time, seconds, m_radiance) || isColourNew;
    }
    if (isColourNew)
    {
        SetColours(rTruth.lux);
    }
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        ExposeRegions(time, pExposures[type], type, rTruth);
    }
    ++m_framesOfRound;
    rTruth.black = static_cast<DOUBLE>(m_stats[AECAlgoExposureSafe].histogram.front()) / (GridSize * SamplesPerRegion);
    if (m_objectMask.any())
    {
        rTruth.objectLuma = MeanLumaOfObject();
    }
    if (m_pFlash != nullptr)
    {
        // The safe exposure is the last one.
        m_pFlash->TakePicture(m_levels.data(), m_stats[AECAlgoExposureSafe].saturation.data(), m_fullScale);
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
    rView.rg    = m_rg;
    rView.bg    = m_bg;
    rView.light = {m_rScene.rg, m_rScene.bg};
}

VOID SensorModel::PlaceObject(DOUBLE time)
{
    if (!m_rScene.object.has_value())
    {
        return;
    }
    const SceneObject& rObject = *m_rScene.object;
    const bool         isThere = rObject.IsThere(time);
    const PathPoint    centre  = rObject.CentreAt(time);
    const FLOAT        gain    = static_cast<FLOAT>(std::pow(2.0, rObject.contrastEV));
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const UINT32 row     = region / GridWidth;
        const DOUBLE x       = (region % GridWidth + 0.5) / GridWidth;
        const DOUBLE y       = (row + 0.5) / GridHeight;
        m_objectMask[region] = isThere && rObject.CoversFrom(centre, x, y);
        m_gains[region]      = m_objectMask[region] ? gain : 1.0f;
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

VOID SensorModel::ExposeRegions(DOUBLE time, const AppliedExposure& rExposure, UINT32 type, FrameTruth& rTruth)
{
    const Sensor& rSensor = m_rScene.sensor;
    const DOUBLE  seconds = static_cast<DOUBLE>(rExposure.time) / NsPerSecond;
    const DOUBLE  perLux  = rExposure.gain * seconds * SignalPerLuxSecond * rSensor.sensitivity * m_colourSensitivity;

    std::array<DOUBLE, GridHeight> rowFactors;
    RowFactors(time, rExposure, rowFactors);
    DrawNoises(type);
    SampleExposure exposure;
    ExposureSums   sums{};
    for (UINT32 row = 0; row < GridHeight; ++row)
    {
        SetSignals(row, rTruth.lux * perLux * rowFactors[row], perLux);
    }
    GroupLight lights[GroupCount];
    for (UINT32 group = 0; group < GroupCount; ++group)
    {
        exposure.ExposeGroup(m_radiance, group, m_signals[group], lights[group]);
    }
    for (UINT32 row = 0; row < GridHeight; ++row)
    {
        StoreRow(row, &lights[size_t{row} * GroupsInRow], rExposure.gain, m_stats[type], sums);
    }
    exposure.StoreHistogram(SamplesPerRegion / m_radiance.Count(), m_stats[type].histogram.data());
    rTruth.clipped[type] = SumOf(sums.clipped) / (GridSize * m_radiance.Count());
    if (type == AECAlgoExposureSafe)
    {
        const auto [low, high] = std::minmax_element(rowFactors.begin(), rowFactors.end());
        const DOUBLE level     = SumOf(sums.levels) / GridSize;
        rTruth.banding         = *high - *low;
        rTruth.pictureEV       = std::log2(std::max(level, 1e-9));
    }
}

/// Those of noises that the sensor does not have stay 0.
VOID SensorModel::DrawNoises(UINT32 type)
{
    const Sensor& rSensor = m_rScene.sensor;
    const auto    placeOf = [&](NoiseKind kind) {
        return NoisePlace{m_rScene.seed, m_framesOfRound, type, static_cast<UINT32>(kind)};
    };
    if (rSensor.regionNoise > 0.0)
    {
        DrawNoise(placeOf(NoiseKind::Region), m_regionDeviates);
    }
    if (rSensor.shotNoise > 0.0 || rSensor.readNoise > 0.0)
    {
        DrawNoise(placeOf(NoiseKind::Level), m_levelDeviates);
    }
}

/// What shines by itself in a panorama does not reflect the more: all of it reflects a flash as grey does. A pattern is
/// what reflects.
/// @param light  that a sample of unity shows without flash, full scale is 1
/// @param perLux full scale per lux
TAVO_FOR_EACH_PROCESSOR
VOID SensorModel::SetSignals(UINT32 row, DOUBLE light, DOUBLE perLux)
{
    const FLOAT sigma = static_cast<FLOAT>(m_rScene.sensor.regionNoise);
    const FLOAT level = static_cast<FLOAT>(light);
    const Lanes zero{};
    for (UINT32 group = row * GroupsInRow; group < (row + 1) * GroupsInRow; ++group)
    {
        Lanes factors = zero + level;
        Lanes added   = zero;
        for (UINT32 index = 0; m_pFlash != nullptr && index < GroupWidth; ++index)
        {
            const FLOAT lamp = static_cast<FLOAT>(m_pFlash->LuxAt(group * GroupWidth + index) * perLux);
            ((m_pPanorama != nullptr) ? added : factors)[index] += lamp;
        }
        Lanes deviates;
        Lanes gains;
        Load(&m_regionDeviates[size_t{group} * GroupWidth], deviates);
        Load(&m_gains[size_t{group} * GroupWidth], gains);
        const Lanes sensitivity = 1.0f + sigma * deviates;
        gains *= (sensitivity > zero) ? sensitivity : zero;
        m_signals[group] = {factors * gains, added * gains};
    }
}

/// Shot and read noise are independent: both together are one normal noise.
TAVO_FOR_EACH_PROCESSOR
VOID SensorModel::StoreRow(UINT32 row, const GroupLight* pLights, DOUBLE gain, ExposureStats& rStats,
                           ExposureSums& rSums)
{
    const Sensor& rSensor      = m_rScene.sensor;
    const FLOAT   share        = 1.0f / static_cast<FLOAT>(m_radiance.Count());
    const FLOAT   shotVariance = static_cast<FLOAT>(rSensor.shotNoise * rSensor.shotNoise * gain);
    const FLOAT   readVariance = static_cast<FLOAT>(rSensor.readNoise * rSensor.readNoise);
    const FLOAT   fullScale    = m_fullScale;
    const Lanes   zero{};
    const Lanes   full = zero + 1.0f;
    for (UINT32 index = 0; index < GroupsInRow; ++index)
    {
        const UINT32 first  = row * GridWidth + index * GroupWidth;
        const Lanes  levels = pLights[index].sums * share;
        Lanes        noise;
        Lanes        deviates;
        SquareRoots(shotVariance * levels + readVariance, noise);
        Load(&m_levelDeviates[first], deviates);
        const Lanes signal = levels + noise * deviates;
        const Lanes above  = (signal > zero) ? signal : zero;
        Store(levels, &m_levels[first]);
        Store(((above < full) ? above : full) * fullScale, &rStats.luma[first]);
        Store(pLights[index].clipped * share * fullScale, &rStats.saturation[first]);
        rSums.levels[index] += levels;
        rSums.clipped[index] += pLights[index].clipped;
    }
}

SensorView SensorModel::View() const
{
    const UINT32 repeats = SamplesPerRegion / m_radiance.Count();
    SensorView   view{{}, {}, {m_rScene.rg, m_rScene.bg}, m_shortRoom, &m_stats[AECAlgoExposureSafe].histogram};
    view.samples.resize(static_cast<size_t>(GridSize) * SamplesPerRegion);
    FLOAT* pSample = view.samples.data();
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const GroupSignals& rSignals = m_signals[region / GroupWidth];
        const FLOAT         factor   = rSignals.factors[region % GroupWidth];
        const FLOAT         added    = rSignals.added[region % GroupWidth];
        for (UINT32 sample = 0; sample < m_radiance.Count(); ++sample)
        {
            pSample = std::fill_n(pSample, repeats, m_radiance.At(region, sample) * factor + added);
        }
        view.colours[region] = {static_cast<DOUBLE>(m_rg[region]), static_cast<DOUBLE>(m_bg[region])};
    }
    return view;
}

VOID SensorModel::SetColours(DOUBLE lux)
{
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const Colour light  = LightOf(region);
        const DOUBLE share  = (m_pPanorama != nullptr) ? m_pPanorama->RadianceAt(region) : 1.0;
        const Colour colour = (m_pFlash != nullptr) ? m_pFlash->ColourAt(region, lux * share, light) : light;
        m_rg[region]        = static_cast<FLOAT>(colour.rg);
        m_bg[region]        = static_cast<FLOAT>(colour.bg);
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
