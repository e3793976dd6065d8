// The flash bias table: how much the main flash will brighten each region.

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/ckiromtrtablegen.h"
#include "core/statsprocessor/ckiromodstatsprocessor.h"
#include "interface/kiroresults.h"

using binarymask::CellCount;
using exposurearithmetic::Epsilon;

namespace
{

constexpr FLOAT NoGain = 1.0f;

/// Values that a channel holds: regions of a grid, bins of a histogram.
UINT64 ValueCountOf(const KIROCntStatsOut& rStats)
{
    const auto& rShape = rStats.resolution;
    return (rStats.type == KIROStatsType::KIROStatsHist) ? rShape.binCount
                                                         : static_cast<UINT64>(rShape.width) * rShape.height;
}

FLOAT Cube(FLOAT value)
{
    return value * value * value;
}

template <typename Container> FLOAT MeanOf(const Container& rCells)
{
    FLOAT sum = 0.0f;
    for (FLOAT value : rCells)
    {
        sum += value;
    }
    return sum / static_cast<FLOAT>(CellCount);
}

}  // namespace

KiroResult CKIROMtrTableGen::RunTableGenFlashSnapshot()
{
    FlashStats       stats;
    const KiroResult result = GetInputTableGenFlashSnapshot(stats);
    if (result != 0)
    {
        STATS_LOG_ERROR("no input for the flash snapshot table, result %d", result);
        return result;
    }
    const auto&     rConfig         = m_pTuning->flashBiasMetTblGen.mtrTblConfig;
    const BOOL      speckleOverride = m_rContextManager.GetInput()->overrideSetting.disableSpeckleDetection;
    const Mask      isBrightTable   = FindBrightRegions(stats.satOff);
    FlashPrediction prediction      = PredictFlash(stats, isBrightTable);
    STATS_LOG_TRACE(" Precision flash -flux = %f, expIncrease=%f, speckleOverride=%d\n", stats.flux, stats.expIncrease,
                    speckleOverride);
    if (speckleOverride == FALSE && rConfig.SpeckleScreen.enable == TRUE)
    {
        SmartFlashLEDSpeckleScreening(stats.satLow, prediction.kStats, isBrightTable);
    }
    (VOID) m_rContextManager.m_pBankManager->PublishTrigger(TriggerFlashSatStatsRatio, prediction.satStatsRatio,
                                                            "flash saturation stats ratio", SourceModuleMtrTableGen);
    if (prediction.maxFlashLow < prediction.maxFlashOff)
    {
        STATS_LOG_WARNING("maxFlashLow (%f) is smaller than maxFlashOff (%f)", prediction.maxFlashLow,
                          prediction.maxFlashOff);
    }
    Cells kStatsSorted = prediction.kStats;
    SortDescending(kStatsSorted);
    SmartFlashSatPreventionKStatsAdj(kStatsSorted, prediction.kStats);

    FillFlashBiasTable(prediction.kStats);
    StoreTable(m_metTable, rConfig.dataBankID);
    STATS_LOG_TRACE("MtrTableGen: Flash snapshot metering table generation 2D weight table to [Metering2DDataBank %d]",
                    rConfig.dataBankID);
    return RunTableGenPrecisionFlash({stats, isBrightTable, m_metTable.weights});
}

KiroResult CKIROMtrTableGen::GetInputTableGenFlashSnapshot(FlashStats& rStats) const
{
    const auto& rSelection = m_pTuning->flashBiasMetTblGen.statsSelection;
    rStats.flux            = ReadTrigger(TriggerFlashFlux);
    rStats.expIncrease     = ReadTrigger(TriggerFlashExpIncrease);
    if (!CopyChannel(rSelection.channel1, rStats.lumaOff))
    {
        STATS_LOG_ERROR("could not get luma16Off stats");
        return ResultFailed;
    }
    if (!CopyChannel(rSelection.channel2, rStats.satOff))
    {
        STATS_LOG_ERROR("could not get sat16Off stats");
        return ResultFailed;
    }
    if (!CopyChannel(rSelection.channel3, rStats.lumaLow))
    {
        STATS_LOG_ERROR("could not get luma16Low stats");
        return ResultFailed;
    }
    if (!CopyChannel(rSelection.channel4, rStats.satLow))
    {
        STATS_LOG_ERROR("could not get sat16Low stats");
        return ResultFailed;
    }
    STATS_LOG_TRACE("flux %f, expIncrease %f", rStats.flux, rStats.expIncrease);
    STATS_LOG_TRACE("luma16Off - avg %f, luma16Low - avg %f", MeanOf(rStats.lumaOff), MeanOf(rStats.lumaLow));
    return 0;
}

/// @return false for a channel that is not there or has fewer values than a table
bool CKIROMtrTableGen::CopyChannel(const CHAR* pChannel, Cells& rCells) const
{
    const KIROStatsType    type   = m_pTuning->flashBiasMetTblGen.statsSelection.type;
    const KIROCntStatsOut* pStats = m_rContextManager.m_pStatsProcessor->GetRawStats(pChannel, type);
    if (pStats == nullptr || pStats->channelData.Data.pFData == nullptr || ValueCountOf(*pStats) < CellCount)
    {
        return false;
    }
    std::memcpy(rCells.data(), pStats->channelData.Data.pFData, sizeof(rCells));
    return true;
}

/// Regions that are bright without LED tell nothing of the flash; nor do their neighbours, on which they may spill.
CKIROMtrTableGen::Mask CKIROMtrTableGen::FindBrightRegions(const Cells& rSatOff) const
{
    const FLOAT threshold = m_pTuning->flashBiasMetTblGen.mtrTblConfig.thresBrightSat;
    Mask        isBrightTable;
    std::transform(rSatOff.begin(), rSatOff.end(), isBrightTable.begin(),
                   [threshold](FLOAT sat) { return (sat > threshold) ? binarymask::Set : binarymask::Clear; });
    binarymask::UtilDilateBinaryMask(isBrightTable.data());
    return isBrightTable;
}

CKIROMtrTableGen::FlashPrediction CKIROMtrTableGen::PredictFlash(const FlashStats& rStats,
                                                                 const Mask&       rIsBrightTable) const
{
    const auto&     rConfig = m_pTuning->flashBiasMetTblGen.mtrTblConfig.flashBiasConf;
    FlashPrediction prediction{};
    UINT32          saturated = 0;
    for (UINT32 index = 0; index < CellCount; ++index)
    {
        const CellPrediction cell = PredictCell(rStats, rIsBrightTable[index] == binarymask::Set, index);
        prediction.kStats[index]  = cell.kStats;
        prediction.maxFlashOff    = std::max(prediction.maxFlashOff, cell.lumaOff);
        prediction.maxFlashLow    = std::max(prediction.maxFlashLow, cell.normLumaLow);
        saturated += (cell.normLumaHigh > rConfig.lumaHighSatTh) ? 1 : 0;
    }
    prediction.satStatsRatio =
        (rConfig.enable == TRUE) ? static_cast<FLOAT>(saturated) / static_cast<FLOAT>(CellCount) : 1.0f;
    return prediction;
}

CKIROMtrTableGen::CellPrediction CKIROMtrTableGen::PredictCell(const FlashStats& rStats, bool bIsBright,
                                                               UINT32 index) const
{
    const auto& rConfig = m_pTuning->flashBiasMetTblGen.mtrTblConfig;
    FLOAT       lumaOff = rStats.lumaOff[index];
    if (bIsBright)
    {
        return {lumaOff, lumaOff, lumaOff, NoGain};
    }
    FLOAT       normLumaLow  = rStats.expIncrease * rStats.lumaLow[index];
    const FLOAT normLumaHigh = (normLumaLow > lumaOff) ? lumaOff + (normLumaLow - lumaOff) * rStats.flux : normLumaLow;
    const FLOAT minOffStats  = static_cast<FLOAT>(rConfig.minOffStats);
    if (minOffStats > lumaOff)
    {
        const FLOAT diffAdd = minOffStats - lumaOff;
        lumaOff += diffAdd;
        normLumaLow += diffAdd;
    }
    if (normLumaLow < lumaOff)
    {
        return {lumaOff, normLumaLow, normLumaHigh, NoGain};
    }
    const FLOAT lumaMain = lumaOff + (normLumaLow - lumaOff) * rStats.flux * rConfig.flashEstStrength;
    return {lumaOff, normLumaLow, normLumaHigh, lumaMain / std::max(lumaOff, Epsilon)};
}

/// A bubble sort: unlike the library's sorts it stays within the array when values are no numbers.
VOID CKIROMtrTableGen::SortDescending(Cells& rCells)
{
    for (size_t unsorted = rCells.size(); unsorted > 1; --unsorted)
    {
        for (size_t index = 1; index < unsorted; ++index)
        {
            if (rCells[index - 1] < rCells[index])
            {
                std::swap(rCells[index - 1], rCells[index]);
            }
        }
    }
}

/// Weighs the regions that the flash would saturate: the gains of the top share rise cubically, the others become 1.
VOID CKIROMtrTableGen::SmartFlashSatPreventionKStatsAdj(const Cells& rSorted, Cells& rKStats) const
{
    constexpr INT32 last    = CellCount - 1;
    const auto&     rConfig = m_pTuning->flashBiasMetTblGen.mtrTblConfig;
    const INT32     index  = exposurearithmetic::SaturateToINT32((1.0f - rConfig.kFloorPct) * static_cast<FLOAT>(last));
    const FLOAT     kFloor = rSorted[static_cast<UINT32>(std::clamp(index, 0, last))];
    for (FLOAT& rK : rKStats)
    {
        const FLOAT gain = 1.0f + std::max(rK - kFloor, 0.0f);
        rK               = gain + rConfig.satPreventStrength * (Cube(gain) - gain);
    }
}

/// Takes the gain back where the LED itself is mirrored: the main flash saturates there whatever the metering does.
VOID CKIROMtrTableGen::SmartFlashLEDSpeckleScreening(const Cells& rSatLow, Cells& rKStats,
                                                     const Mask& rIsBrightTable) const
{
    const StartEndType& rRange = m_pTuning->flashBiasMetTblGen.mtrTblConfig.SpeckleScreen.range;
    if (!(rRange.start < rRange.end) || rRange.end < 0.0f)
    {
        STATS_LOG_ERROR("invalid speckle range [%f, %f]", rRange.start, rRange.end);
        return;
    }
    Mask marks{};
    bool bIsFound = false;
    for (UINT32 index = 0; index < CellCount; ++index)
    {
        if (rIsBrightTable[index] == binarymask::Clear && rSatLow[index] > rRange.start)
        {
            marks[index] = binarymask::Set;
            bIsFound     = true;
            STATS_LOG_TRACE("speckle found at %i, sat %f, thres %f", index, rSatLow[index], rRange.start);
        }
    }
    if (!bIsFound)
    {
        STATS_LOG_TRACE("no speckle found");
        return;
    }
    binarymask::UtilDilateBinaryMask(marks.data());
    for (UINT32 index = binarymask::Width; index < CellCount - binarymask::Width; ++index)
    {
        if (marks[index] == binarymask::Set)
        {
            const FLOAT gain   = rKStats[index];
            const FLOAT weight = SmartFlashLEDSpeckleGetWeight(rSatLow, marks, index);
            rKStats[index]     = std::max(1.0f + (gain - 1.0f) * weight, 1.0f);
            STATS_LOG_TRACE("modify k: i %d k %f -> k %f", index, gain, rKStats[index]);
        }
    }
}

/// @param index not in the first or the last row
/// @return 1 for a saturation at the start of the tuned range, 0 at its end
FLOAT CKIROMtrTableGen::SmartFlashLEDSpeckleGetWeight(const Cells& rSatLow, const Mask& rMarks, UINT32 index) const
{
    const StartEndType& rRange       = m_pTuning->flashBiasMetTblGen.mtrTblConfig.SpeckleScreen.range;
    const UINT32        column       = index % binarymask::Width;
    const auto          neighbourSat = [&](bool bExists, UINT32 neighbour)
    { return (bExists && rMarks[neighbour] == binarymask::Set) ? rSatLow[neighbour] : rRange.start; };

    const FLOAT above  = neighbourSat(true, index - binarymask::Width);
    const FLOAT below  = neighbourSat(true, index + binarymask::Width);
    const FLOAT left   = neighbourSat(column > 0, index - 1);
    const FLOAT right  = neighbourSat(column + 1 < binarymask::Width, index + 1);
    const FLOAT max    = std::min(std::max({rRange.start, rSatLow[index], above, below, left, right}), rRange.end);
    const FLOAT interp = (rRange.end - max) / (rRange.end - rRange.start);
    const FLOAT weight = Cube(interp);
    STATS_LOG_TRACE("neighbor sat : %f %f %f %f %f, max %f , interp %f weight %f , start %f , end %f", rSatLow[index],
                    above, below, left, right, max, interp, weight, rRange.start, rRange.end);
    return weight;
}

VOID CKIROMtrTableGen::FillFlashBiasTable(const Cells& rKStats)
{
    const INT32                   baseTableID = m_pTuning->flashBiasMetTblGen.mtrTblConfig.baseTableID;
    const DBMeter2DWeightPayload* pBase       = m_rContextManager.m_pBankManager->GetDataMetering2D(baseTableID);
    if (pBase != nullptr && m_rContextManager.GetInput()->mtrMode == AECAlgoMeteringModeCenterWeighted)
    {
        std::transform(rKStats.begin(), rKStats.end(), pBase->weights, m_metTable.weights,
                       [](FLOAT gain, FLOAT base) { return base * gain; });
        return;
    }
    if (pBase != nullptr)
    {
        STATS_LOG_ERROR("unknown metering mode");
    }
    std::copy(rKStats.begin(), rKStats.end(), m_metTable.weights);
}
