#include "core/statsprocessor/ckiromodstatsprocessor.h"

#include <algorithm>

#include "core/base/kirolog.h"
#include "core/statsprocessor/notmeasured.h"
#include "interface/kiroresults.h"

using kiroglobalelements::KIROStatsGrid;
using kiroglobalelements::KIROStatsHist;
using kiroglobalelements::KIROStatsType;

namespace
{

constexpr FLOAT BaseThreshold = 0.98f;

const CHAR* TextOrEmpty(const CHAR* pText)
{
    return (pText != nullptr) ? pText : "";
}

}  // namespace

CKIROStatsProcessor::CKIROStatsProcessor(InstanceTuning& rTuningData, IKIROContextManager& rContextManager)
    : ModuleCommon(rTuningData, rContextManager), m_gridStatsProcessor(rContextManager, m_gridStatsBuffer),
      m_histStatsProcessor(rContextManager)
{
    rContextManager.m_pStatsProcessor = this;
}

KiroResult CKIROStatsProcessor::SetStats(KIROStatsList& rStats)
{
    if (rStats.count > KIROStatsChannelCountMax)
    {
        STATS_LOG_ERROR("%d stats channels refused, at most %d", rStats.count, KIROStatsChannelCountMax);
        return ResultInvalidInput;
    }
    return SetStats(rStats.pList, rStats.count, rStats.startup);
}

KiroResult CKIROStatsProcessor::SetStats(KIROCntStatsOut* pStats, UINT32 count, StatisticsStartUp startup)
{
    // Only the last record's result is reported.
    KiroResult result = 0;
    for (UINT32 index = 0; index < count; ++index)
    {
        result = SetStats(pStats[index], startup);
    }
    return result;
}

KiroResult CKIROStatsProcessor::SetStats(KIROCntStatsOut& rStats, StatisticsStartUp startup)
{
    const CHAR* pName = TextOrEmpty(rStats.channelData.pChannelName);
    if (startup == StatisticsStartUpInvalid)
    {
        STATS_LOG_WARNING("Start up invalid stats, ignore it");
        return ResultInvalidInput;
    }
    if (rStats.channelData.bChannelEnabled == FALSE)
    {
        STATS_LOG_TRACE("Trying to set stats %s , but it's disabled. Skip the current channel.", pName);
        return 0;
    }
    if (rStats.type == KIROStatsHist)
    {
        if (m_histStatsBuffer.full())
        {
            STATS_LOG_ERROR("Hist core stats buffer is full. Unable to set!");
            return ResultFailed;
        }
        m_histStatsBuffer.push_back(rStats);
    }
    else
    {
        if (rStats.channelData.Data.pFData == nullptr)
        {
            STATS_LOG_ERROR("Grid buffer missing for stats %s. Skip the stats.", pName);
            return ResultInvalidInput;
        }
        if (m_gridStatsBuffer.full())
        {
            STATS_LOG_ERROR("Grid core stats buffer is full. Unable to set!");
            return ResultFailed;
        }
        m_gridStatsBuffer.push_back(rStats);
    }
    STATS_LOG_TRACE("Successfully set stats %s to core stats buffer.", pName);
    return 0;
}

VOID CKIROStatsProcessor::ResetStats()
{
    m_histStatsProcessor.ResetProcStats();
    m_gridStatsProcessor.BeginFrame();
    m_gridStatsBuffer.clear();
    m_histStatsBuffer.clear();
}

IKIROIterator* CKIROStatsProcessor::GetStatsIterator(const CHAR* pChannel, KIROItrConfig& rConfig, KIROItrInfo& rInfo)
{
    if (rInfo.type != KIROStatsGrid && rInfo.type != KIROStatsHist)
    {
        STATS_LOG_ERROR("Invalid stats type: %d", rInfo.type);
        return nullptr;
    }
    const bool               isGrid   = rInfo.type == KIROStatsGrid;
    const AECCoreStatsDeque& rRing    = isGrid ? m_gridStatsBuffer : m_histStatsBuffer;
    const INT32              position = rRing.Find(pChannel);
    if (position == ChannelNotFound)
    {
        return nullptr;
    }
    const KIROCntStatsOut& rStats = rRing[static_cast<UINT32>(position)];
    if (!IsSameShape(rStats.resolution, rInfo.resolution))
    {
        return nullptr;
    }
    if (isGrid)
    {
        CKIROGridIterator& rIterator = m_gridStatsProcessor.Iterator();
        rIterator.SetStats(&rStats);
        return (rIterator.Configure(rConfig, TRUE) == TRUE) ? &rIterator : nullptr;
    }
    // The first histogram channel of a frame yields no iterator.
    CKIROHistIterator& rIterator = m_histStatsProcessor.Iterator();
    rIterator.SetStats(&rStats);
    return (position > 0 && rIterator.Configure() == TRUE) ? &rIterator : nullptr;
}

const KIROCntStatsOut* CKIROStatsProcessor::GetRawStats(const CHAR* pChannel, const KIROStatsType& rType) const
{
    if (rType == KIROStatsGrid || rType == KIROStatsHist)
    {
        const AECCoreStatsDeque& rRing    = (rType == KIROStatsGrid) ? m_gridStatsBuffer : m_histStatsBuffer;
        const INT32              position = rRing.Find(pChannel);
        if (position != ChannelNotFound)
        {
            return &rRing[static_cast<UINT32>(position)];
        }
    }
    STATS_LOG_ERROR("Unable to find stats %s for type %d", TextOrEmpty(pChannel), rType);
    return nullptr;
}

UINT32 CKIROStatsProcessor::GetGridStatsCount() const
{
    return m_gridStatsBuffer.size();
}

KiroResult CKIROStatsProcessor::GetGridWeightedLuma(const CHAR* pChannel, INT32 roiID,
                                                    const KIROSubsamplingInfo& rSubsampling, INT32 weightTableID,
                                                    FLOAT& rLuma, ExpRatioHandleType handle, BOOL bInterpolate)
{
    rLuma                   = NotMeasured;
    const KiroResult result = ValidateStatsChannels(&pChannel, 1, m_gridStatsBuffer);
    if (result != 0)
    {
        return result;
    }
    return m_gridStatsProcessor.GetWeightedLuma(pChannel, roiID, rSubsampling, weightTableID, rLuma,
                                                CalculateStatsThreshold(handle), bInterpolate);
}

KiroResult CKIROStatsProcessor::GetGridSatRatiosLuma(const CHAR* pChannel, INT32 roiID,
                                                     const KIROSubsamplingInfo& rSubsampling, UINT32& rRegions,
                                                     FLOAT& rLuma, ExpRatioHandleType handle)
{
    rLuma                   = NotMeasured;
    rRegions                = 0;
    const KiroResult result = ValidateStatsChannels(&pChannel, 1, m_gridStatsBuffer);
    if (result != 0)
    {
        return result;
    }
    return m_gridStatsProcessor.GetWeightedLuma(pChannel, roiID, rSubsampling, rRegions, rLuma,
                                                CalculateStatsThreshold(handle));
}

KiroResult CKIROStatsProcessor::GetGridRgBgStatsCount(const CHAR* const* ppChannels, UINT32 count, INT32 roiID,
                                                      const KIROSubsamplingInfo& rSubsampling, UINT32 triggerCount,
                                                      RangeTriggers pTriggers, FLOAT& rResult,
                                                      ExpRatioHandleType handle)
{
    rResult                 = NotMeasured;
    const KiroResult result = ValidateStatsChannels(ppChannels, count, m_gridStatsBuffer);
    if (result != 0)
    {
        return result;
    }
    return m_gridStatsProcessor.GetRgBgStatsCount(ppChannels, count, roiID, rSubsampling, triggerCount, pTriggers,
                                                  rResult, CalculateStatsThreshold(handle));
}

GroupedGridParameters* CKIROStatsProcessor::ProcInitializeXTremeColorRegion(
    const CHAR* const* ppChannels, UINT32 count, INT32 roiID, const KIROSubsamplingInfo& rSubsampling,
    UINT32 triggerCount, RangeTriggers pTriggers, FLOAT& rResult, ExpRatioHandleType handle, FLOAT buffer)
{
    rResult = NotMeasured;
    if (ValidateStatsChannels(ppChannels, count, m_gridStatsBuffer) != 0)
    {
        m_gridStatsProcessor.LeaveOutXTremeColorRegion();
        return nullptr;
    }
    return m_gridStatsProcessor.InitializeXTremeColorRegion(ppChannels, count, roiID, rSubsampling, triggerCount,
                                                            pTriggers, CalculateStatsThreshold(handle), buffer);
}

VOID CKIROStatsProcessor::ProcGetExtColorRgBgStatsRatio(GroupedGridParameters** ppGroups, UINT32 count)
{
    m_gridStatsProcessor.GetExtColorRgBgStatsRatio(ppGroups, count);
}

KiroResult CKIROStatsProcessor::GetStatsRoughness(const CHAR* const* ppChannels, UINT32 count,
                                                  const StartEndType* pRange, FLOAT* pRoughness)
{
    pRoughness[0]           = NotMeasured;
    pRoughness[1]           = NotMeasured;
    const KiroResult result = ValidateStatsChannels(ppChannels, count, m_gridStatsBuffer);
    if (result != 0)
    {
        return result;
    }
    return m_gridStatsProcessor.GetStatsRoughness((count > 0) ? ppChannels[0] : nullptr, pRange, pRoughness);
}

KiroResult CKIROStatsProcessor::GetHistWeightedLuma(const CHAR* pChannel, INT32 weightTableID,
                                                    const StartEndType* pRange, FLOAT& rLuma, ExpRatioHandleType handle)
{
    rLuma                   = NotMeasured;
    const KiroResult result = PrepareHistogram(pChannel);
    if (result != 0)
    {
        return result;
    }
    return m_histStatsProcessor.GetHistWeightedLuma(pChannel, pRange, weightTableID, rLuma,
                                                    CalculateStatsThreshold(handle));
}

KiroResult CKIROStatsProcessor::GetHistRangeLuma(const CHAR* pChannel, const StartEndType* pRange,
                                                 KIROHistRangeType type, FLOAT* pOutputs, ExpRatioHandleType handle)
{
    pOutputs[0]             = NotMeasured;
    pOutputs[1]             = NotMeasured;
    const KiroResult result = PrepareHistogram(pChannel);
    if (result != 0)
    {
        return result;
    }
    return m_histStatsProcessor.GetHistRangeLuma(pChannel, pRange, type, pOutputs, CalculateStatsThreshold(handle));
}

KiroResult CKIROStatsProcessor::GetHistCDF(const CHAR* pChannel, const StartEndType* pRange, FLOAT* pOutput)
{
    *pOutput                = 0.0f;
    const KiroResult result = PrepareHistogram(pChannel);
    if (result != 0)
    {
        return result;
    }
    return m_histStatsProcessor.GetHistCDF(pChannel, pRange, pOutput);
}

KiroResult CKIROStatsProcessor::PrepareHistogram(const CHAR* pChannel)
{
    const KiroResult result = ValidateStatsChannels(&pChannel, 1, m_histStatsBuffer);
    if (result == 0)
    {
        const INT32 position = m_histStatsBuffer.Find(pChannel);
        m_histStatsProcessor.SetProcStats(&m_histStatsBuffer[static_cast<UINT32>(position)], 1);
    }
    return result;
}

KiroResult CKIROStatsProcessor::ValidateStatsChannels(const CHAR* const* ppNames, UINT32 count,
                                                      const AECCoreStatsDeque& rRing) const
{
    const KIROCntStatsOut* pReference = nullptr;
    for (UINT32 index = 0; index < count; ++index)
    {
        const INT32 position = rRing.Find(ppNames[index]);
        if (position == ChannelNotFound)
        {
            STATS_LOG_ERROR("Invalid stats channel %s", TextOrEmpty(ppNames[index]));
            return ResultInvalidInput;
        }
        const KIROCntStatsOut& rStats = rRing[static_cast<UINT32>(position)];
        if (pReference == nullptr)
        {
            pReference = &rStats;
        }
        else if (!IsSameShape(rStats.resolution, pReference->resolution))
        {
            STATS_LOG_ERROR("Resolution of stats channel are not matched");
            return ResultInvalidInput;
        }
    }
    return 0;
}

FLOAT CKIROStatsProcessor::CalculateStatsThreshold(ExpRatioHandleType handle) const
{
    if (handle != kiroglobalelements::ScaleShortThreshold)
    {
        return BaseThreshold;
    }
    const SetInputData*    pInput = m_rContextManager.GetInput();
    const AECFrameHistory* pFrame = m_rContextManager.m_pHistory->GetFrameHistory(pInput->systemLatency);
    if (pFrame == nullptr)
    {
        return BaseThreshold;
    }
    const bool isBlended = pInput->HDRType == StaggeredHDR || pInput->HDRType == MultiframeHDR;
    if (isBlended && m_rContextManager.m_bIsLongADRC == TRUE)
    {
        return BaseThreshold / std::max(pFrame->mfhdrLongADRC, 1.0f);
    }
    const FLOAT ratio = (static_cast<FLOAT>(pFrame->exposureSets[AECAlgoExposureSafe].exposure) /
                         static_cast<FLOAT>(pFrame->exposureSets[AECAlgoExposureShort].exposure)) /
                        pFrame->predictiveGain;
    return BaseThreshold / std::max(ratio, 1.0f);
}
