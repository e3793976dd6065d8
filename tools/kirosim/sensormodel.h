/// @file
/// From light to statistics: what the sensor and its statistics hardware deliver for one frame.
#pragma once

#include <array>
#include <bitset>
#include <optional>
#include <vector>

#include "interface/kiroframe.h"
#include "tools/kirosim/flashmodel.h"
#include "tools/kirosim/noise.h"
#include "tools/kirosim/panoramapicture.h"
#include "tools/kirosim/regionpicture.h"
#include "tools/kirosim/regionsamples.h"
#include "tools/kirosim/scene.h"
#include "tools/kirosim/scenegrid.h"

namespace kirosim
{

constexpr DOUBLE NsPerSecond = 1e9;

/// What the sensor did for one exposure, after its quantisation.
struct AppliedExposure
{
    DOUBLE gain;
    UINT64 time;  ///< ns

    /// Gain times ns.
    DOUBLE Product() const
    {
        return gain * static_cast<DOUBLE>(time);
    }
};

/// Facts about a frame that no statistics channel carries.
struct FrameTruth
{
    DOUBLE lux;
    DOUBLE pictureEV;  ///< log2 of the mean of the safe exposure's picture, full scale is 0
    DOUBLE banding;    ///< peak to peak of the rows' brightness, share of the mean, safe exposure
    DOUBLE exposure;   ///< safe exposure that the sensor applied, gain times ns

    std::array<DOUBLE, AECAlgoExposureCount> clipped;  ///< share of the picture that is clipped, by exposure

    DOUBLE black;  ///< share of the safe exposure's picture below 1/256 of full scale

    std::optional<DOUBLE> objectLuma;  ///< mean of the safe exposure where the scene's object is, 0 to 255
};

/// What the sensor saw of a frame, region by region.
struct SensorView
{
    std::vector<FLOAT>           samples;    ///< full scale of the safe exposure is 1, and nothing is clipped
    std::array<Colour, GridSize> colours;    ///< of the regions
    Colour                       light;      ///< that a grey surface shows
    DOUBLE                       shortRoom;  ///< safe over short exposure: the sample that short clips

    const std::array<INT, HistogramBins + 1>* pHistogram;  ///< of the safe exposure, until the next frame
};

/// Full-scale signal of a mean region per lux, unity gain and second of exposure.
constexpr DOUBLE SignalPerLuxSecond = 0.01;

class SensorModel
{
public:
    explicit SensorModel(const Scene& rScene);
    SensorModel(const SensorModel&)            = delete;
    SensorModel& operator=(const SensorModel&) = delete;

    /// What the sensor makes of a decided exposure: limits, and the steps of gain and time.
    AppliedExposure Quantize(const KIROExposureSetType& rDecided) const;

    /// @param factor of the sensor's sensitivity, from the next frame on: a module sees light of each colour
    /// differently
    VOID SetColourSensitivity(DOUBLE factor)
    {
        m_colourSensitivity = factor;
    }

    /// The noise begins again, so that all rounds of a scene are alike.
    VOID StartRound()
    {
        m_framesOfRound = 0;
    }

    /// Statistics of one frame. The list stays valid until the next call.
    /// @param time       of the frame's start in the scene, s
    /// @param pExposures three, indexed by AECAlgoExposureType
    KIROStatsList& Capture(UINT64 frameID, DOUBLE time, const AppliedExposure* pExposures, FrameTruth& rTruth);

    /// The last frame as a picture would show it.
    SensorView View() const;

    /// What the safe exposure of the last frame saw.
    VOID View(RegionView& rView) const;

    /// Null in a scene without flash.
    FlashModel* Flash()
    {
        return m_pFlash.get();
    }

private:
    /// Channels of one exposure.
    struct ExposureStats
    {
        std::array<FLOAT, GridSize>        luma;
        std::array<FLOAT, GridSize>        saturation;
        std::array<INT, HistogramBins + 1> histogram;  ///< one entry more, as cumulative counts may read it
    };

    static constexpr UINT32 GroupsInRow = GridWidth / GroupWidth;

    /// What the regions of an exposure come to, by column.
    struct ExposureSums
    {
        Lanes levels[GroupsInRow];
        Lanes clipped[GroupsInRow];  ///< samples
    };

    VOID   ExposeRegions(DOUBLE time, const AppliedExposure& rExposure, UINT32 type, FrameTruth& rTruth);
    VOID   DrawNoises(UINT32 type);
    VOID   SetSignals(UINT32 row, DOUBLE light, DOUBLE perLux);
    VOID   StoreRow(UINT32 row, const GroupLight* pLights, DOUBLE gain, ExposureStats& rStats, ExposureSums& rSums);
    VOID   RowFactors(DOUBLE time, const AppliedExposure& rExposure, std::array<DOUBLE, GridHeight>& rFactors) const;
    VOID   BuildChannels();
    VOID   BuildFlashChannels();
    VOID   SetColours(DOUBLE lux);
    Colour LightOf(UINT32 region) const;
    VOID   PlaceObject(DOUBLE time);
    DOUBLE MeanLumaOfObject() const;
    VOID   AddGrid(const CHAR* pName, FLOAT* pValues);
    VOID   AddHistogram(const CHAR* pName, INT* pBins);

    const Scene&                                    m_rScene;
    FLOAT                                           m_fullScale;
    RegionSamples                                   m_radiance;  ///< relative
    UINT64                                          m_framesOfRound;
    NoiseDeviates                                   m_regionDeviates;
    NoiseDeviates                                   m_levelDeviates;
    std::array<ExposureStats, AECAlgoExposureCount> m_stats;
    std::array<FLOAT, HistogramBins>                m_histogramLUT;
    KIROStatsList                                   m_list;

    // Of the regions, as all exposures see it.
    std::array<FLOAT, GridSize> m_rg;
    std::array<FLOAT, GridSize> m_bg;

    std::bitset<GridSize>       m_objectMask;  ///< regions that the scene's object hides
    std::array<FLOAT, GridSize> m_gains;       ///< of the regions' radiance by the object

    std::unique_ptr<PanoramaPicture> m_pPanorama;  ///< null in a scene with a pattern

    std::unique_ptr<FlashModel>          m_pFlash;
    std::array<FLOAT, GridSize>          m_levels;     ///< of the exposure last exposed, full scale is 1
    std::array<GroupSignals, GroupCount> m_signals;    ///< that it made of the samples
    DOUBLE                               m_shortRoom;  ///< safe over short exposure
    DOUBLE                               m_colourSensitivity;
};

}  // namespace kirosim
