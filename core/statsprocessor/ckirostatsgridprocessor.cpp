#include "core/statsprocessor/ckirostatsgridprocessor.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/statsprocessor/notmeasured.h"
#include "interface/kiroresults.h"
#include "platform/tavoprocessors.h"

using exposurearithmetic::Epsilon;

namespace
{

bool IsFraction(FLOAT value)
{
    return value >= 0.0f && value <= 1.0f;
}

bool IsNearlyFullFrame(const AECAlgoROI& rROI)
{
    return std::abs(rROI.x) < Epsilon && std::abs(rROI.y) < Epsilon && std::abs(rROI.dx - 1.0f) < Epsilon &&
           std::abs(rROI.dy - 1.0f) < Epsilon;
}

/// The weighted mean of one table.
TAVO_FOR_EACH_PROCESSOR
CKIROWeightedWalk::Sums WalkAlone(const CKIROGridIterator& rRegions, CKIRO2DMetIterator& rWeights, const FLOAT* pValues,
                                  FLOAT clamp)
{
    CKIROWeightedWalk::Sums sums = {0.0f, 0.0f};
    rRegions.ForEachRegion(
        [&](UINT32 index)
        {
            const FLOAT wt = rWeights.GetWeight(index);
            if (wt != CKIRO2DMetIterator::NoWeight)
            {
                sums.weights += wt;
                sums.weighted = std::fma(wt, std::min(pValues[index], clamp), sums.weighted);
            }
        });
    return sums;
}

/// A table of sums over the block from its first to the given region, inclusive; 0 left of and above the block.
class SummedAreaTable
{
public:
    SummedAreaTable(const FLOAT* pTable, const ROIInterpInfo& rInfo)
        : m_pTable(pTable), m_rInfo(rInfo), m_width(static_cast<INT32>(rInfo.roiWidth)),
          m_height(static_cast<INT32>(rInfo.roiHeight))
    {
    }

    /// Sum over the true ROI: its corners lie inside the outermost regions.
    FLOAT SumOfROI() const
    {
        const FLOAT left   = m_rInfo.fracLeft;
        const FLOAT right  = m_rInfo.fracRight;
        const FLOAT top    = m_rInfo.fracTop;
        const FLOAT bottom = m_rInfo.fracBottom;
        const INT32 lastX  = m_width - 1;
        const INT32 lastY  = m_height - 1;

        const FLOAT topLeft     = Corner(0, 0, left, 1.0f - left, top, 1.0f - top);
        const FLOAT topRight    = Corner(lastX, 0, 1.0f - right, right, top, 1.0f - top);
        const FLOAT bottomLeft  = Corner(0, lastY, left, 1.0f - left, 1.0f - bottom, bottom);
        const FLOAT bottomRight = Corner(lastX, lastY, 1.0f - right, right, 1.0f - bottom, bottom);
        return bottomRight - bottomLeft - topRight + topLeft;
    }

private:
    FLOAT At(INT32 column, INT32 row) const
    {
        return (column < 0 || row < 0) ? 0.0f : m_pTable[row * m_width + column];
    }

    /// Bilinear mix of the entry at (column, row) and its left and upper neighbours.
    FLOAT Corner(INT32 column, INT32 row, FLOAT weightHere, FLOAT weightLeft, FLOAT weightRow, FLOAT weightAbove) const
    {
        const FLOAT here  = weightHere * At(column, row) + weightLeft * At(column - 1, row);
        const FLOAT above = weightHere * At(column, row - 1) + weightLeft * At(column - 1, row - 1);
        return weightRow * here + weightAbove * above;
    }

    const FLOAT*         m_pTable;
    const ROIInterpInfo& m_rInfo;
    INT32                m_width;
    INT32                m_height;
};

}  // namespace

CKIROStatsGridProcessor::CKIROStatsGridProcessor(IKIROContextManager&     rContextManager,
                                                 const AECCoreStatsDeque& rStatsBuffer)
    : m_rContextManager(rContextManager), m_rStatsBuffer(rStatsBuffer), m_group{}, m_bIsGroupOfFrame(FALSE)
{
}

BOOL CKIROStatsGridProcessor::GetROI(INT32 roiID, AECAlgoROI& rROI) const
{
    if (roiID < 1)
    {
        return TRUE;
    }
    const DBROIPayload* pPayload = m_rContextManager.m_pBankManager->GetDataROI(roiID);
    if (pPayload == nullptr)
    {
        STATS_LOG_ERROR("ROI Info invalid. ID:%d", roiID);
        return FALSE;
    }
    rROI = {pPayload->coords[0], pPayload->coords[1], pPayload->coords[2], pPayload->coords[3], pPayload->weight};
    return TRUE;
}

BOOL CKIROStatsGridProcessor::ConfigMtrWtTableItr(INT32 tableID, const AECAlgoROI& rROI,
                                                  const kirocorestatsconfig::ResolutionType& rResolution,
                                                  BOOL                                       bUseDefaultCoordMethod)
{
    const DBMeter2DWeightPayload* pPayload =
        (tableID < 0) ? nullptr : m_rContextManager.m_pBankManager->GetDataMetering2D(tableID);
    if (pPayload == nullptr)
    {
        return FALSE;
    }
    return m_mtrItr.Configure(rResolution.width, rResolution.height, rROI, pPayload->weights, bUseDefaultCoordMethod);
}

INT32 CKIROStatsGridProcessor::ValidateAndConfigInputParam(const CHAR* pName, const KIROSubsamplingInfo& rSubsampling,
                                                           INT32 roiID, INT32 tableID, BOOL bUseDefaultCoordMethod)
{
    const INT32 position = m_rStatsBuffer.Find(pName);
    if (position == ChannelNotFound)
    {
        STATS_LOG_ERROR("Unable to find stats:%s from buffer.", (pName != nullptr) ? pName : "");
        return ChannelNotFound;
    }
    AECAlgoROI roi = FullFrameROI;
    if (roiID >= 0 && (GetROI(roiID, roi) != TRUE || !IsFraction(roi.x)))
    {
        return ChannelNotFound;
    }
    if (!IsFraction(roi.y) || !IsFraction(roi.dx) || !IsFraction(roi.dy) || roi.dx * roi.dy == 0.0f)
    {
        return ChannelNotFound;
    }

    const KIROCntStatsOut& rStats = m_rStatsBuffer[static_cast<UINT32>(position)];
    m_gridItr.SetStats(&rStats);
    if (m_gridItr.Configure({&rSubsampling, &roi}, bUseDefaultCoordMethod) != TRUE)
    {
        STATS_LOG_ERROR("Iterator configuration failed.");
        return ChannelNotFound;
    }
    // A negative ID leaves the weights of the request before in place: a calculator without a table is weighted by the
    // table of the last one that has one. Without weights its luma would be another.
    if (tableID >= 0 && ConfigMtrWtTableItr(tableID, roi, rStats.resolution, bUseDefaultCoordMethod) != TRUE)
    {
        STATS_LOG_ERROR("Metering table invalid. ID:%d", tableID);
        return ChannelNotFound;
    }
    return position;
}

KiroResult CKIROStatsGridProcessor::GetWeightedLuma(const CHAR* pStatsName, INT32 roiID,
                                                    const KIROSubsamplingInfo& rSubsampling, INT32 metTableID,
                                                    FLOAT& rLumaAverage, FLOAT statsThreshold, BOOL bEnableGridInterp)
{
    rLumaAverage = NotMeasured;
    AECAlgoROI roi{};
    (VOID) GetROI(roiID, roi);
    if (!IsNearlyFullFrame(roi) && bEnableGridInterp == TRUE)
    {
        return GetWeightedROIInterpLuma(pStatsName, roiID, metTableID, rLumaAverage, statsThreshold);
    }
    const INT32 position = ValidateAndConfigInputParam(pStatsName, rSubsampling, roiID, metTableID, TRUE);
    if (position < 0)
    {
        return 0;
    }

    const KIROCntStatsOut& rStats  = m_rStatsBuffer[static_cast<UINT32>(position)];
    const FLOAT*           pValues = rStats.channelData.Data.pFData;
    const WeightedWalkKey  key     = {position, rStats.resolution, roi, ClampValue(rStats.resolution, statsThreshold)};
    // Without a table of its own the request takes the weights of the one before, a tile leaves out regions, and a
    // clamp that is no number is no part of a key.
    const bool isShared = metTableID >= 0 && rSubsampling.pSSPattern == nullptr && !std::isnan(key.clamp);
    std::optional<CKIROWeightedWalk::Sums> sums;
    if (isShared)
    {
        sums = m_walks.Measure(key, m_mtrItr, pValues);
    }
    if (!sums.has_value())
    {
        sums = WalkAlone(m_gridItr, m_mtrItr, pValues, key.clamp);
        if (isShared)
        {
            m_walks.Add(key, m_gridItr, m_mtrItr, sums->weights);
        }
    }
    rLumaAverage = (std::abs(sums->weights) < Epsilon) ? NotMeasured : sums->weighted / sums->weights;
    return 0;
}

KiroResult CKIROStatsGridProcessor::GetWeightedROIInterpLuma(const CHAR* pName, INT32 roiID, INT32 metTableID,
                                                             FLOAT& rLumaAverage, FLOAT statsThreshold)
{
    const INT32          position = ValidateAndConfigInputParam(pName, SingleCellTile, roiID, metTableID, FALSE);
    const ROIInterpInfo& rInfo    = m_gridItr.GetROIInterpInfo();
    if (position < 0 || rInfo.roiWidth == 0 || rInfo.roiHeight == 0 ||
        static_cast<UINT64>(rInfo.roiWidth) * rInfo.roiHeight > GridRegionCountMax)
    {
        return ResultFailed;
    }

    FLOAT pLmIntergral[GridRegionCountMax] = {};
    FLOAT pWtIntergral[GridRegionCountMax] = {};
    if (!FillIntegrals(m_rStatsBuffer[static_cast<UINT32>(position)], statsThreshold, pLmIntergral, pWtIntergral))
    {
        return ResultFailed;
    }
    const FLOAT interpLuma   = SummedAreaTable(pLmIntergral, rInfo).SumOfROI();
    const FLOAT interpWeight = SummedAreaTable(pWtIntergral, rInfo).SumOfROI();
    rLumaAverage             = interpLuma / std::max(interpWeight, Epsilon);
    return 0;
}

bool CKIROStatsGridProcessor::FillIntegrals(const KIROCntStatsOut& rStats, FLOAT statsThreshold, FLOAT* pLuma,
                                            FLOAT* pWeight)
{
    const UINT32 width             = m_gridItr.GetROIInterpInfo().roiWidth;
    const UINT32 height            = m_gridItr.GetROIInterpInfo().roiHeight;
    const FLOAT  statsAbsThreshold = ClampValue(rStats.resolution, statsThreshold);
    for (UINT32 row = 0; row < height; ++row)
    {
        for (UINT32 column = 0; column < width; ++column)
        {
            if (m_gridItr.HasNext() != TRUE)
            {
                STATS_LOG_ERROR("ROI Iterator has no next due to incorrect configuration!");
                return false;
            }
            const UINT32 entry  = row * width + column;
            const UINT32 region = m_gridItr.Next();
            const FLOAT  wt     = m_mtrItr.GetWeight(region);
            if (wt != CKIRO2DMetIterator::NoWeight)
            {
                pWeight[entry] = wt;
                pLuma[entry]   = wt * std::min(rStats.channelData.Data.pFData[region], statsAbsThreshold);
            }
            for (FLOAT* pTable : {pLuma, pWeight})
            {
                pTable[entry] += (column > 0) ? pTable[entry - 1] : 0.0f;
                pTable[entry] += (row > 0) ? pTable[entry - width] : 0.0f;
                pTable[entry] -= (column > 0 && row > 0) ? pTable[entry - width - 1] : 0.0f;
            }
        }
    }
    return true;
}

KiroResult CKIROStatsGridProcessor::GetWeightedLuma(const CHAR* pStatsName, INT32 roiID,
                                                    const KIROSubsamplingInfo& rSubsampling, UINT32& rCount,
                                                    FLOAT& rLumaAverage, FLOAT statsThreshold)
{
    rLumaAverage         = NotMeasured;
    const INT32 position = ValidateAndConfigInputParam(pStatsName, rSubsampling, roiID, NoID, TRUE);
    if (position < 0)
    {
        return 0;
    }
    const KIROCntStatsOut& rStats            = m_rStatsBuffer[static_cast<UINT32>(position)];
    const FLOAT            statsAbsThreshold = ClampValue(rStats.resolution, statsThreshold);
    const FLOAT*           pValues           = rStats.channelData.Data.pFData;
    FLOAT                  sum               = 0.0f;
    m_gridItr.ForEachRegion([&](UINT32 index) { sum += std::min(pValues[index], statsAbsThreshold); });

    rCount       = m_gridItr.GetTotalNumOfRegions();
    rLumaAverage = (rCount == 0) ? NotMeasured : sum / static_cast<FLOAT>(rCount);
    return 0;
}

KiroResult CKIROStatsGridProcessor::GetStatsRoughness(const CHAR* pStatsName, const StartEndType* pRange,
                                                      FLOAT* pStatsRoughness)
{
    constexpr INT32 neighbourhood = 9;
    const INT32     position      = m_rStatsBuffer.Find(pStatsName);
    if (position == ChannelNotFound)
    {
        STATS_LOG_ERROR("Unable to find stats:%s from buffer.", (pStatsName != nullptr) ? pStatsName : "");
        return ResultInvalidInput;
    }
    const KIROCntStatsOut& rStats  = m_rStatsBuffer[static_cast<UINT32>(position)];
    const FLOAT*           pValues = rStats.channelData.Data.pFData;
    const UINT64           width   = rStats.resolution.width;
    const UINT64           height  = rStats.resolution.height;

    FLOAT  sum          = 0.0f;
    UINT32 count        = 0;
    UINT32 countInRange = 0;
    for (UINT64 row = 1; row + 1 < height; ++row)
    {
        const auto columnSum = [&](UINT64 column)
        {
            const FLOAT* pUpper = pValues + (row - 1) * width + column;
            return pUpper[0] + pUpper[width] + pUpper[2 * width];
        };
        FLOAT left   = (width > 2) ? columnSum(0) : 0.0f;
        FLOAT centre = (width > 2) ? columnSum(1) : 0.0f;
        for (UINT64 column = 1; column + 1 < width; ++column)
        {
            const FLOAT right     = columnSum(column + 1);
            const FLOAT value     = pValues[row * width + column];
            const FLOAT localAvg  = (left + centre + right) / static_cast<FLOAT>(neighbourhood);
            const FLOAT statsDiff = std::abs(localAvg - value) / (value + 1.0f);
            sum += statsDiff;
            ++count;
            countInRange += (pRange->start <= statsDiff && statsDiff <= pRange->end) ? 1 : 0;
            left   = centre;
            centre = right;
        }
    }
    pStatsRoughness[0] = (count == 0) ? NotMeasured : sum / static_cast<FLOAT>(count);
    pStatsRoughness[1] = (count == 0) ? NotMeasured : static_cast<FLOAT>(countInRange) / static_cast<FLOAT>(count);
    return 0;
}
