#include "bench/framerig.h"

#include <algorithm>
#include <array>
#include <deque>
#include <numeric>
#include <stdexcept>

#include "bench/everythingtuning.h"
#include "bench/heavytuning.h"
#include "host/discardlog.h"
#include "tools/tuningfile/files.h"

namespace
{

constexpr UINT64 StartExposure   = 10000000;  ///< 10 ms at unity gain
constexpr FLOAT  FramesPerSecond = 30.0f;

kirosim::Scene OfficeScene()
{
    kirosim::Scene scene;
    scene.pattern.kind      = kirosim::PatternKind::Natural;
    scene.pattern.textureEV = 0.5;
    return scene;
}

}  // namespace

FrameRig::FrameRig(const std::vector<BYTE>& rTuning, const kirosim::Sensor& rSensor, bool isLive)
    : m_manager("kirobench"), m_selectors(kirosim::DefaultSelectors()),
      m_host(m_library, ConfigOf(rTuning, rSensor, isLive), DiscardLog), m_frameID(0)
{
    m_library.TakeLogLevels(0);
}

KiroHostConfig FrameRig::ConfigOf(const std::vector<BYTE>& rTuning, const kirosim::Sensor& rSensor, bool isLive)
{
    m_manager.SetLiveTuningAutostart(isLive);
    if (!m_manager.LoadBinaryParameters(rTuning.data(), rTuning.size()))
    {
        throw std::runtime_error(m_manager.GetErrorText());
    }
    KiroHostConfig config{};
    config.tuning      = {&m_manager, m_selectors.data(), static_cast<UINT>(m_selectors.size())};
    config.sensorRange = {static_cast<FLOAT>(rSensor.minGain), static_cast<FLOAT>(rSensor.maxGain), rSensor.minTime,
                          rSensor.maxTime};
    config.indexZeroExposure = rSensor.minTime;
    config.startExposure     = StartExposure;
    config.systemLatency     = rSensor.latency;
    config.FPSRange          = {FramesPerSecond, FramesPerSecond};
    return config;
}

VOID FrameRig::RunFrame(KIROStatsList& rStats)
{
    AECAlgoWhiteBalanceState whiteBalance{};
    whiteBalance.isAuto    = TRUE;
    whiteBalance.redGain   = 1.0f;
    whiteBalance.greenGain = 1.0f;
    whiteBalance.blueGain  = 1.0f;
    AECAlgoSetParam param  = {&whiteBalance, sizeof(whiteBalance), AECAlgoSetParamAWBState};
    KIROSetInput    input{};
    input.source      = AECPEKSetParam;
    input.u.pPEKInput = &param;
    (VOID) m_host.Algo()->setInput(m_host.Algo(), &input);
    (VOID) m_host.RunFrame(++m_frameID, rStats);
}

HeavyFrame::HeavyFrame(bool isEverythingOn, bool isLive)
    : m_scene(OfficeScene()), m_sensor(m_scene), m_rig(heavytuning::Compile(isEverythingOn), m_scene.sensor, isLive),
      m_pStats(nullptr), m_map{}
{
    constexpr UINT32 framesToSettle = 120;
    using Applied                   = std::array<kirosim::AppliedExposure, AECAlgoExposureCount>;

    const auto decided = [this]
    {
        Applied applied;
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            applied[type] = m_sensor.Quantize(m_rig.Host().LastFrame().arbitration[type].exposureSet);
        }
        return applied;
    };
    std::deque<Applied> pipeline(m_scene.sensor.latency - 1U, decided());
    for (UINT32 frame = 1; frame <= framesToSettle; ++frame)
    {
        pipeline.push_back(decided());
        kirosim::FrameTruth truth{};
        const DOUBLE        time = frame / static_cast<DOUBLE>(FramesPerSecond);
        m_pStats                 = &m_sensor.Capture(frame, time, pipeline.front().data(), truth);
        pipeline.pop_front();
        if (isEverythingOn && frame == 1)
        {
            FeedEverything();
        }
        Run();
    }
}

VOID HeavyFrame::FeedEverything()
{
    constexpr UINT32 width  = 16;
    static CHAR      name[] = "SmallLuma";
    m_smallLuma.resize(static_cast<size_t>(width) * width);
    std::iota(m_smallLuma.begin(), m_smallLuma.end(), 0.0f);  // no region is like the one before
    KIROCntStatsOut& rChannel = m_pStats->pList[m_pStats->count++];
    rChannel.type             = kiroglobalelements::KIROStatsGrid;
    rChannel.resolution       = {width, width, 0, 8};
    rChannel.channelData      = {TRUE, name, {}, static_cast<UINT32>(m_smallLuma.size() * sizeof(FLOAT)), nullptr};
    rChannel.channelData.Data.pFData = m_smallLuma.data();

    m_map.dataID = everythingtuning::FirstMapID;
    std::fill_n(m_map.weights + 96, 64, 1.0f);
    const KIROSetBankData entry = {BankIDMetering2D, &m_map, sizeof(m_map)};
    (VOID) m_rig.Host().Algo()->setBankData(m_rig.Host().Algo(), &entry);
    m_rig.Host().Algo()->SetContextEvent(m_rig.Host().Algo(), AECEVBracketing, TRUE);
}

LightFrame::LightFrame() : LightFrame(tuningfile::CompileFile(KIRO_EXAMPLE_TUNINGS "minimal.yaml"), 16, 16)
{
}

LightFrame::LightFrame(const std::vector<BYTE>& rTuning, UINT32 width, UINT32 height, UINT32 channels)
    : m_stats{}, m_rig(rTuning, kirosim::Sensor{})
{
    constexpr UINT32 bins       = 128;
    constexpr FLOAT  midGrey    = 46.0f;
    constexpr INT32  bitDepth   = 8;
    static CHAR      histName[] = "SafeHist";

    m_luma.assign(static_cast<size_t>(width) * height, midGrey);
    m_histogram.assign(bins + 1, 0);
    for (UINT32 bin = 0; bin < bins; ++bin)
    {
        m_histogramLUT.push_back(2.0f * static_cast<FLOAT>(bin));
    }
    m_histogram[static_cast<UINT32>(midGrey) / 2] = static_cast<INT>(m_luma.size());

    for (UINT32 channel = 0; channel < channels; ++channel)
    {
        KIROCntStatsOut& rGrid        = m_stats.pList[m_stats.count++];
        rGrid.type                    = kiroglobalelements::KIROStatsGrid;
        rGrid.resolution              = {width, height, 0, bitDepth};
        rGrid.channelData             = {TRUE,
                                         const_cast<CHAR*>(ChannelNames[channel]),
                                         {},
                                         static_cast<UINT32>(m_luma.size() * sizeof(FLOAT)),
                                         nullptr};
        rGrid.channelData.Data.pFData = m_luma.data();
    }
    KIROCntStatsOut& rHist = m_stats.pList[m_stats.count++];
    rHist.type             = kiroglobalelements::KIROStatsHist;
    rHist.resolution       = {0, 0, bins, bitDepth};
    rHist.channelData      = {TRUE, histName, {}, bins * static_cast<UINT32>(sizeof(INT)), m_histogramLUT.data()};
    rHist.channelData.Data.pIData = m_histogram.data();
    for (UINT32 frame = 0; frame < 30; ++frame)
    {
        Run();
    }
}
