/// @file
/// The store of one frame's statistics and the single entry point for measures over them.
///
/// Requests name the channels that they measure; interface/kirostats.h says what a channel is and how long its values
/// are there. Results: 0 success, 1 failed operation, 11 invalid input. An output that could not be computed keeps the
/// sentinel -1.0.
#pragma once

#include "core/base/statsdeque.h"
#include "core/modulecommon.h"
#include "core/statsprocessor/ckirostatsgridprocessor.h"
#include "core/statsprocessor/ckirostatshistprocessor.h"
#include "core/statsprocessor/statschannels.h"
#include "interface/kirostats.h"

class CKIROStatsProcessor : public ModuleCommon
{
public:
    using ExpRatioHandleType = kiroglobalelements::ExpRatioHandleType;
    using RangeTriggers      = const kiroglobalelements::TriggerSystemEndLevelStartEndType*;

    /// Registers itself in the context.
    CKIROStatsProcessor(InstanceTuning& rTuningData, IKIROContextManager& rContextManager);

    /// @return 11, with nothing stored, for more channels than the list holds
    KiroResult SetStats(KIROStatsList& rStats);
    /// @return the result of the last record; 0 for none
    KiroResult SetStats(KIROCntStatsOut* pStats, UINT32 count, StatisticsStartUp startup);
    KiroResult SetStats(KIROCntStatsOut& rStats, StatisticsStartUp startup);
    VOID       ResetStats();

    /// @return null if the channel is unknown or of another shape
    IKIROIterator* GetStatsIterator(const CHAR* pChannel, KIROItrConfig& rConfig, KIROItrInfo& rInfo);
    /// @return null if the channel is unknown
    const KIROCntStatsOut* GetRawStats(const CHAR* pChannel, const kiroglobalelements::KIROStatsType& rType) const;
    UINT32                 GetGridStatsCount() const;

    // Measures over grid channels. ROI and table IDs are data IDs of the banks.
    KiroResult GetGridWeightedLuma(const CHAR* pChannel, INT32 roiID, const KIROSubsamplingInfo& rSubsampling,
                                   INT32 weightTableID, FLOAT& rLuma, ExpRatioHandleType handle, BOOL bInterpolate);
    KiroResult GetGridSatRatiosLuma(const CHAR* pChannel, INT32 roiID, const KIROSubsamplingInfo& rSubsampling,
                                    UINT32& rRegions, FLOAT& rLuma, ExpRatioHandleType handle);
    KiroResult GetGridRgBgStatsCount(const CHAR* const* ppChannels, UINT32 count, INT32 roiID,
                                     const KIROSubsamplingInfo& rSubsampling, UINT32 triggerCount,
                                     RangeTriggers pTriggers, FLOAT& rResult, ExpRatioHandleType handle);
    /// @return shared by all calls: copy it before the next one; null on failure
    GroupedGridParameters* ProcInitializeXTremeColorRegion(const CHAR* const* ppChannels, UINT32 count, INT32 roiID,
                                                           const KIROSubsamplingInfo& rSubsampling, UINT32 triggerCount,
                                                           RangeTriggers pTriggers, FLOAT& rResult,
                                                           ExpRatioHandleType handle, FLOAT buffer);
    VOID                   ProcGetExtColorRgBgStatsRatio(GroupedGridParameters** ppGroups, UINT32 count);
    KiroResult             GetStatsRoughness(const CHAR* const* ppChannels, UINT32 count, const StartEndType* pRange,
                                             FLOAT* pRoughness);

    // Measures over histogram channels.
    KiroResult GetHistWeightedLuma(const CHAR* pChannel, INT32 weightTableID, const StartEndType* pRange, FLOAT& rLuma,
                                   ExpRatioHandleType handle);
    KiroResult GetHistRangeLuma(const CHAR* pChannel, const StartEndType* pRange, KIROHistRangeType type,
                                FLOAT* pOutputs, ExpRatioHandleType handle);
    KiroResult GetHistCDF(const CHAR* pChannel, const StartEndType* pRange, FLOAT* pOutput);

    /// Fraction of full scale at which values are clamped.
    FLOAT CalculateStatsThreshold(ExpRatioHandleType handle) const;

private:
    KiroResult ValidateStatsChannels(const CHAR* const* ppNames, UINT32 count, const AECCoreStatsDeque& rRing) const;
    KiroResult PrepareHistogram(const CHAR* pChannel);

    // The grid processor only takes the address of its ring, which is constructed after it.
    CKIROStatsGridProcessor m_gridStatsProcessor;
    CKIROStatsHistProcessor m_histStatsProcessor;
    AECCoreStatsDeque       m_gridStatsBuffer;
    AECCoreStatsDeque       m_histStatsBuffer;
};
