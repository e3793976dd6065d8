// Counts of regions by their place in the R/G-B/G plane.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <utility>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/contextdebugdata.h"
#include "core/statsprocessor/ckirostatsgridprocessor.h"
#include "core/statsprocessor/notmeasured.h"
#include "core/statsprocessor/regionweights.h"
#include "interface/kiroresults.h"
#include "platform/tavoprocessors.h"

using exposurearithmetic::Epsilon;

namespace
{

constexpr UINT32 ColorChannelCount = 3;  // luma, R/G, B/G
constexpr FLOAT  BufferZoneMin     = 0.0001f;
constexpr UINT32 ChainCount        = 4;  // sums that are added up side by side, since none waits for another

using regionweights::Batch;
using regionweights::BatchSize;

const CHAR* NameAt(const CHAR* const* ppNames, UINT32 count, UINT32 index)
{
    return (index < count && ppNames[index] != nullptr) ? ppNames[index] : "";
}

/// Positions of the three channels of a colour measure.
struct ColorChannels
{
    INT32 luma;
    INT32 rg;
    INT32 bg;
};

/// Positions may stem from an earlier frame, which had other channels.
bool AreOfOneShape(const AECCoreStatsDeque& rRing, const ColorChannels& rChannels)
{
    const INT32 size = static_cast<INT32>(rRing.size());
    if (rChannels.luma >= size || rChannels.rg >= size || rChannels.bg >= size)
    {
        return false;
    }
    const auto& rLuma = rRing[static_cast<UINT32>(rChannels.luma)].resolution;
    return IsSameShape(rLuma, rRing[static_cast<UINT32>(rChannels.rg)].resolution) &&
           IsSameShape(rLuma, rRing[static_cast<UINT32>(rChannels.bg)].resolution);
}

bool AreColorInputsValid(const CHAR* const* ppNames, UINT32 count, const ColorChannels& rChannels, BOOL bIsROIValid)
{
    if (count == ColorChannelCount && rChannels.luma >= 0 && rChannels.rg >= 0 && rChannels.bg >= 0 &&
        bIsROIValid == TRUE)
    {
        return true;
    }
    STATS_LOG_ERROR("Invalid stats. Channels:%d, Luma:%s valid:%d, Rg:%s valid:%d, Bg:%s valid:%d, roiValid:%d", count,
                    NameAt(ppNames, count, 0), rChannels.luma >= 0, NameAt(ppNames, count, 1), rChannels.rg >= 0,
                    NameAt(ppNames, count, 2), rChannels.bg >= 0, bIsROIValid);
    return false;
}

/// Regions mostly weigh luma alike; the weight is then looked up once for all.
bool HaveSameLumaWeight(const GroupedGridParameters& rGroup, const GroupedGridParameters& rOther)
{
    return rGroup.triggerCount == rOther.triggerCount &&
           (rGroup.triggerCount == 0 || std::memcmp(rGroup.pRangeTrigger, rOther.pRangeTrigger,
                                                    rGroup.triggerCount * sizeof(*rGroup.pRangeTrigger)) == 0);
}

/// Channels of a part of the walk, a batch each.
struct ColorBatch
{
    Batch        luma;  ///< clamped
    const FLOAT* pRG;
    const FLOAT* pBG;
};

/// Weights of one region of the colour plane for a part of the walk.
struct ColorWeights
{
    const FLOAT* pByLuma;  ///< own, or those of the region before
    Batch        own;
    Batch        byColor;
};

/// Adds up one chain each; no more of them, so that the next part's weights are worked out while they run.
template <size_t... Chain>
VOID AddChains(const ColorWeights* pWeights, UINT32 walked, FLOAT* pSums, std::index_sequence<Chain...>)
{
    FLOAT sums[] = {pSums[Chain]...};
    for (UINT32 index = 0; index < walked; ++index)
    {
        ((sums[Chain] = std::fma(pWeights[Chain].byColor[index], pWeights[Chain].pByLuma[index], sums[Chain])), ...);
    }
    ((pSums[Chain] = sums[Chain]), ...);
}

/// @param count from 1 to ChainCount
TAVO_FOR_EACH_PROCESSOR
VOID AddChains(const ColorWeights* pWeights, UINT32 count, UINT32 walked, FLOAT* pSums)
{
    static_assert(ChainCount == 4);
    switch (count)
    {
    case 1:
        return AddChains(pWeights, walked, pSums, std::make_index_sequence<1>());
    case 2:
        return AddChains(pWeights, walked, pSums, std::make_index_sequence<2>());
    case 3:
        return AddChains(pWeights, walked, pSums, std::make_index_sequence<3>());
    default:
        return AddChains(pWeights, walked, pSums, std::make_index_sequence<ChainCount>());
    }
}

/// @param count  up to ChainCount
/// @param walked regions of the grid that the batch holds
VOID AddColors(GroupedGridParameters** ppRegions, UINT32 count, const ColorBatch& rBatch, UINT32 walked)
{
    ColorWeights weights[ChainCount];
    FLOAT        sums[ChainCount] = {};
    for (UINT32 chain = 0; chain < count; ++chain)
    {
        const GroupedGridParameters& rGroup   = *ppRegions[chain];
        ColorWeights&                rWeights = weights[chain];
        if (rGroup.bLumaWeightOfOwn == TRUE)
        {
            regionweights::ByLuma(rGroup.triggerCount, rGroup.pRangeTrigger, rBatch.luma, rWeights.own);
        }
        rWeights.pByLuma = (rGroup.bLumaWeightOfOwn == TRUE) ? rWeights.own : weights[chain - 1].pByLuma;
        regionweights::ByColor({rGroup.rgCenter, rGroup.rgDist_min, rGroup.rgDist_buffDist},
                               {rGroup.bgCenter, rGroup.bgDist_min, rGroup.bgDist_buffDist}, rBatch.pRG, rBatch.pBG,
                               rWeights.byColor);
        sums[chain] = rGroup.lumaWeightedCount;
    }
    AddChains(weights, count, walked, sums);
    for (UINT32 chain = 0; chain < count; ++chain)
    {
        ppRegions[chain]->lumaWeightedCount = sums[chain];
        ppRegions[chain]->totalRgnCount += walked;
    }
}

}  // namespace

KiroResult CKIROStatsGridProcessor::GetRgBgStatsCount(const CHAR* const* ppStatsName, UINT32 statsCount,
                                                      INT32 rgbgRoiID, const KIROSubsamplingInfo& rSubsampling,
                                                      UINT32 triggerCount, const RangeTriggerRow* pTriggers,
                                                      FLOAT& rRgbgCount, FLOAT statsThreshold)
{
    rRgbgCount = NotMeasured;
    AECAlgoROI          box{};
    const ColorChannels channels = {
        ValidateAndConfigInputParam(NameAt(ppStatsName, statsCount, 0), rSubsampling, NoID, NoID, TRUE),
        m_rStatsBuffer.Find(NameAt(ppStatsName, statsCount, 1)),
        m_rStatsBuffer.Find(NameAt(ppStatsName, statsCount, 2))};
    if (!AreColorInputsValid(ppStatsName, statsCount, channels, GetROI(rgbgRoiID, box)))
    {
        return ResultInvalidInput;
    }

    const KIROCntStatsOut& rLuma             = m_rStatsBuffer[static_cast<UINT32>(channels.luma)];
    const FLOAT*           pLuma             = rLuma.channelData.Data.pFData;
    const FLOAT*           pRg               = m_rStatsBuffer[static_cast<UINT32>(channels.rg)].channelData.Data.pFData;
    const FLOAT*           pBg               = m_rStatsBuffer[static_cast<UINT32>(channels.bg)].channelData.Data.pFData;
    const FLOAT            statsAbsThreshold = ClampValue(rLuma.resolution, statsThreshold);
    const FLOAT            rgEnd             = box.x + box.dx;
    const FLOAT            bgEnd             = box.y + box.dy;
    FLOAT                  weightedCount     = 0.0f;
    Batch                  luma              = {};
    UINT32                 count             = 0;
    const auto             addBatch          = [&]
    {
        Batch weights;
        regionweights::ByLuma(triggerCount, pTriggers, luma, weights);
        weightedCount = std::accumulate(weights, weights + count, weightedCount);
        count         = 0;
    };
    m_gridItr.ForEachRegion(
        [&](UINT32 index)
        {
            if (box.x <= pRg[index] && pRg[index] <= rgEnd && box.y <= pBg[index] && pBg[index] <= bgEnd)
            {
                luma[count++] = std::min(pLuma[index], statsAbsThreshold);
                if (count == BatchSize)
                {
                    addBatch();
                }
            }
        });
    if (count > 0)
    {
        addBatch();
    }
    rRgbgCount = weightedCount;
    return 0;
}

GroupedGridParameters* CKIROStatsGridProcessor::InitializeXTremeColorRegion(
    const CHAR* const* ppStatsName, UINT32 statsCount, INT32 rgbgRoiID, const KIROSubsamplingInfo& rSubsampling,
    UINT32 triggerCount, const RangeTriggerRow* pTriggers, FLOAT statsThreshold, FLOAT bufferZoneDist)
{
    AECAlgoROI          box{};
    const ColorChannels channels = {m_rStatsBuffer.Find(NameAt(ppStatsName, statsCount, 0)),
                                    m_rStatsBuffer.Find(NameAt(ppStatsName, statsCount, 1)),
                                    m_rStatsBuffer.Find(NameAt(ppStatsName, statsCount, 2))};
    if (!AreColorInputsValid(ppStatsName, statsCount, channels, GetROI(rgbgRoiID, box)))
    {
        LeaveOutXTremeColorRegion();
        return nullptr;
    }

    const AECAlgoWhiteBalanceState& rAWB    = m_rContextManager.GetInput()->AWBState;
    const FLOAT                     grRatio = rAWB.greenGain / rAWB.redGain;
    const FLOAT                     gbRatio = rAWB.greenGain / rAWB.blueGain;
    const FLOAT                     buffer  = std::max(bufferZoneDist, BufferZoneMin);

    m_group                 = {};
    m_bIsGroupOfFrame       = TRUE;
    m_group.bIsValid        = TRUE;
    m_group.rgbgDomainROI   = box;
    m_group.chNum_luma      = channels.luma;
    m_group.chNum_rg        = channels.rg;
    m_group.chNum_bg        = channels.bg;
    m_group.rgDist_min      = grRatio * box.dx / 2.0f;
    m_group.rgCenter        = box.x * grRatio + m_group.rgDist_min;
    m_group.bgDist_min      = gbRatio * box.dy / 2.0f;
    m_group.bgCenter        = box.y * gbRatio + m_group.bgDist_min;
    m_group.rgDist_buffDist = buffer * grRatio;
    m_group.bgDist_buffDist = buffer * gbRatio;
    m_group.statsAbsThreshold =
        ClampValue(m_rStatsBuffer[static_cast<UINT32>(channels.luma)].resolution, statsThreshold);
    m_group.ss            = rSubsampling;
    m_group.pRangeTrigger = pTriggers;
    m_group.triggerCount  = triggerCount;
    return &m_group;
}

/// A group of this frame stays: the walk takes channels and tile from it. One of an earlier frame stands for other
/// channels, and would have these measured.
VOID CKIROStatsGridProcessor::LeaveOutXTremeColorRegion()
{
    m_group.bIsValid = m_bIsGroupOfFrame;
}

VOID CKIROStatsGridProcessor::GetExtColorRgBgStatsRatio(GroupedGridParameters** ppRegions, UINT32 regionCount)
{
    // Channels and tile come from the group that was initialised last; the regions of a frame share them. With none in
    // this frame, as nothing was asked for, it is one of an earlier frame.
    m_bIsGroupOfFrame  = FALSE;
    const bool isReady = m_group.bIsValid == TRUE &&
                         AreOfOneShape(m_rStatsBuffer, {m_group.chNum_luma, m_group.chNum_rg, m_group.chNum_bg});
    if (isReady)
    {
        m_gridItr.SetStats(&m_rStatsBuffer[static_cast<UINT32>(m_group.chNum_luma)]);
    }
    if (!isReady || m_gridItr.Configure({&m_group.ss, &FullFrameROI}, TRUE) != TRUE)
    {
        STATS_LOG_ERROR("Iterator configuration failed.");
        return;
    }
    for (UINT32 region = 0; region < regionCount; ++region)
    {
        const bool isFirstOfChains = region % ChainCount == 0;
        ppRegions[region]->bLumaWeightOfOwn =
            (isFirstOfChains || !HaveSameLumaWeight(*ppRegions[region], *ppRegions[region - 1])) ? TRUE : FALSE;
    }
    const UINT32 total = m_gridItr.GetTotalNumOfRegions();
    for (UINT32 first = 0; first < total; first += BatchSize)
    {
        AccumulatePart(ppRegions, regionCount, first, first + std::min(total - first, BatchSize));
    }
    for (UINT32 region = 0; region < regionCount; ++region)
    {
        StoreColorRatio(*ppRegions[region]);
    }
}

/// All extreme colours go over a part of the walk, of at most a batch.
VOID CKIROStatsGridProcessor::AccumulatePart(GroupedGridParameters** ppRegions, UINT32 regionCount, UINT32 first,
                                             UINT32 end) const
{
    const auto gather = [&](INT32 channel, Batch& rCopy)
    {
        const FLOAT* pValues = m_rStatsBuffer[static_cast<UINT32>(channel)].channelData.Data.pFData;
        return m_gridItr.Gather(pValues, first, end, rCopy);
    };
    Batch      copies[ColorChannelCount];
    ColorBatch batch;
    regionweights::Clamp(gather(m_group.chNum_luma, copies[0]), m_group.statsAbsThreshold, batch.luma);
    batch.pRG = gather(m_group.chNum_rg, copies[1]);
    batch.pBG = gather(m_group.chNum_bg, copies[2]);
    for (UINT32 region = 0; region < regionCount; region += ChainCount)
    {
        AddColors(ppRegions + region, std::min(regionCount - region, ChainCount), batch, end - first);
    }
}

VOID CKIROStatsGridProcessor::StoreColorRatio(GroupedGridParameters& rGroup)
{
    const CHAR* pDescription = (rGroup.pDescription != nullptr) ? rGroup.pDescription : "";
    rGroup.lumaWeightedCount = rGroup.lumaWeightedCount / std::max(static_cast<FLOAT>(rGroup.totalRgnCount), Epsilon);
    if (rGroup.outputStorage.end < rGroup.outputStorage.start)
    {
        STATS_LOG_WARNING("calculator %s outputstart %d end %d not sufficient; using storage index %d", pDescription,
                          rGroup.outputStorage.start, rGroup.outputStorage.end, rGroup.outputStorage.start);
    }
    (VOID) m_rContextManager.m_pBankManager->PublishCalculated(rGroup.outputStorage.start, rGroup.lumaWeightedCount,
                                                               rGroup.pDescription, SourceModuleMetering);
    if (rGroup.lumaWeightedCount > Epsilon)
    {
        STATS_LOG_TRACE("Xtreme color %s saves %.5f to [StatsCalculatorDataBank %d]", pDescription,
                        rGroup.lumaWeightedCount, rGroup.outputStorage.start);
    }
    debugdata::AppendCalculator(m_rContextManager, rGroup.pDescription, rGroup.calculatorID,
                                kirometeringstatscalculator::API08ExtremeColorRgBgStatsRatio, rGroup.outputStorage,
                                &rGroup.lumaWeightedCount, 1);
}
