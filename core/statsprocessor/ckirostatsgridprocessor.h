/// @file
/// Arithmetic on grid channels: weighted means over an ROI, colour counts, roughness.
///
/// Results are in the units of the channel, or counts and ratios. Every luma sample is clamped from above by a fraction
/// of full scale.
#pragma once

#include "core/ikirocontextmanager.h"
#include "core/statsprocessor/ckiro2dmetiterator.h"
#include "core/statsprocessor/ckirogriditerator.h"
#include "core/statsprocessor/statschannels.h"
#include "core/statsprocessor/weightedwalks.h"
#include "schema/kirometeringstatscalculator.h"

/// State of one extreme colour region.
struct GroupedGridParameters
{
    BOOL       bIsValid;
    AECAlgoROI rgbgDomainROI;  ///< box in the R/G-B/G plane
    INT32      chNum_luma;     ///< position in the grid ring
    INT32      chNum_rg;
    INT32      chNum_bg;
    FLOAT      statsAbsThreshold;  ///< luma clamp
    UINT32     totalRgnCount;
    FLOAT      rgCenter;
    FLOAT      bgCenter;
    FLOAT      rgDist_min;  ///< half-width of the box; within it the weight is 1
    FLOAT      bgDist_min;
    FLOAT      rgDist_buffDist;  ///< width of the fall-off beyond it
    FLOAT      bgDist_buffDist;
    FLOAT      lumaWeightedCount;  ///< accumulated weight, after the pass the ratio
    BOOL       bLumaWeightOfOwn;   ///< 0 when luma weighs as in the region before, in the pass over the grid
    UINT32     triggerCount;
    const kiroglobalelements::TriggerSystemEndLevelStartEndType* pRangeTrigger;
    KIROSubsamplingInfo                                          ss;
    kirometeringstatscalculator::CalculatorIntegerRangeType      outputStorage;  ///< slots of the stats calculator bank
    CHAR*                                                        pDescription;
    INT32                                                        calculatorID;
};

class CKIROStatsGridProcessor
{
public:
    using RangeTriggerRow = kiroglobalelements::TriggerSystemEndLevelStartEndType;

    CKIROStatsGridProcessor(IKIROContextManager& rContextManager, const AECCoreStatsDeque& rStatsBuffer);

    /// Other statistics come in.
    VOID BeginFrame()
    {
        m_walks.BeginFrame();
    }

    /// Weighted mean. @return 0 (a failure leaves -1.0), or 1 when the interpolating form fails
    KiroResult GetWeightedLuma(const CHAR* pStatsName, INT32 roiID, const KIROSubsamplingInfo& rSubsampling,
                               INT32 metTableID, FLOAT& rLumaAverage, FLOAT statsThreshold, BOOL bEnableGridInterp);

    /// Plain mean and region count. @return 0; a failure leaves -1.0
    KiroResult GetWeightedLuma(const CHAR* pStatsName, INT32 roiID, const KIROSubsamplingInfo& rSubsampling,
                               UINT32& rCount, FLOAT& rLumaAverage, FLOAT statsThreshold);

    /// Weighted count of regions in a box of the R/G-B/G plane. The channels stand in the order luma, R/G, B/G.
    KiroResult GetRgBgStatsCount(const CHAR* const* ppStatsName, UINT32 statsCount, INT32 rgbgRoiID,
                                 const KIROSubsamplingInfo& rSubsampling, UINT32 triggerCount,
                                 const RangeTriggerRow* pTriggers, FLOAT& rRgbgCount, FLOAT statsThreshold);

    /// @return shared by all calls, null on failure
    GroupedGridParameters* InitializeXTremeColorRegion(const CHAR* const* ppStatsName, UINT32 statsCount,
                                                       INT32 rgbgRoiID, const KIROSubsamplingInfo& rSubsampling,
                                                       UINT32 triggerCount, const RangeTriggerRow* pTriggers,
                                                       FLOAT statsThreshold, FLOAT bufferZoneDist);

    /// For one that cannot be measured: the next walk is dropped, unless others have been initialised since the last.
    VOID LeaveOutXTremeColorRegion();

    /// One walk over the grid for all regions; the ratios go to the stats calculator bank.
    VOID GetExtColorRgBgStatsRatio(GroupedGridParameters** ppRegions, UINT32 regionCount);

    /// @param pStatsRoughness receives the mean difference from the 3 x 3 neighbourhood and the share within the range
    KiroResult GetStatsRoughness(const CHAR* pStatsName, const StartEndType* pRange, FLOAT* pStatsRoughness);

    /// The walker, for requests that iterate themselves.
    CKIROGridIterator& Iterator()
    {
        return m_gridItr;
    }

private:
    static constexpr INT32 NoID = -1;

    BOOL       GetROI(INT32 roiID, AECAlgoROI& rROI) const;
    BOOL       ConfigMtrWtTableItr(INT32 tableID, const AECAlgoROI& rROI,
                                   const kirocorestatsconfig::ResolutionType& rResolution, BOOL bUseDefaultCoordMethod);
    INT32      ValidateAndConfigInputParam(const CHAR* pName, const KIROSubsamplingInfo& rSubsampling, INT32 roiID,
                                           INT32 tableID, BOOL bUseDefaultCoordMethod);
    KiroResult GetWeightedROIInterpLuma(const CHAR* pName, INT32 roiID, INT32 metTableID, FLOAT& rLumaAverage,
                                        FLOAT statsThreshold);
    bool       FillIntegrals(const KIROCntStatsOut& rStats, FLOAT statsThreshold, FLOAT* pLuma, FLOAT* pWeight);
    VOID       AccumulatePart(GroupedGridParameters** ppRegions, UINT32 regionCount, UINT32 first, UINT32 end) const;
    VOID       StoreColorRatio(GroupedGridParameters& rGroup);

    IKIROContextManager&     m_rContextManager;
    CKIROGridIterator        m_gridItr;
    const AECCoreStatsDeque& m_rStatsBuffer;
    CKIRO2DMetIterator       m_mtrItr;
    CKIROWeightedWalks       m_walks;
    GroupedGridParameters    m_group;
    BOOL                     m_bIsGroupOfFrame;  ///< initialised since the last walk for extreme colours
};
