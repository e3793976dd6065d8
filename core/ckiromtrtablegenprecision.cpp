// The precision flash: whether the LED parts the scene into a background and a foreground, and a table for each.

#include <algorithm>
#include <cstring>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/ckiromtrtablegen.h"
#include "core/contextdebugdata.h"
#include "schema/kirometeringsaalgorithm.h"

using binarymask::CellCount;
using exposurearithmetic::Epsilon;

namespace
{

constexpr UINT32 PrecisionFlashAlgorithmID = 3;
constexpr INT32  HysteresisLevels          = 2;
constexpr FLOAT  DefaultFPS                = 30.0f;
constexpr FLOAT  LongAgo                   = 134217728.0f;  ///< frames; for request IDs that began anew

constexpr FLOAT LumaLowMin   = 0.2f;     ///< below it the preflash is noise, which the exposure must not scale up
constexpr FLOAT LumaDeltaMin = 0.0001f;  ///< where the LED adds nothing

constexpr INT32 MeanDetection = 0;  ///< DetectionType: the mean of all regions

constexpr INT32 BinMax = 255;

FLOAT WeightAt(CKIRODataXML& rMask, FLOAT lux, FLOAT relativeLuma)
{
    return *static_cast<const FLOAT*>(rMask.GetData(lux, relativeLuma, 0.0f));
}

FLOAT FrameRateOf(const KIROPrecisionFlashHistory& rHistory)
{
    return (rHistory.frameFPS > Epsilon) ? rHistory.frameFPS : DefaultFPS;
}

}  // namespace

KiroResult CKIROMtrTableGen::RunTableGenPrecisionFlash(const PrecisionFlashInput& rInput)
{
    PrecisionFlashScene           scene{};
    TavoArray<PrecisionFlashWork> pWork;
    if (m_pTuning->PrecisionFlashTblGen.enable != TRUE)
    {
        STATS_LOG_TRACE("Feature is not enabled\n");
    }
    else
    {
        pWork = TavoNewArray<PrecisionFlashWork>(1);
        if (pWork == nullptr)
        {
            STATS_LOG_ERROR("out of memory, failed!!\n");
        }
        else
        {
            scene = AnalyzePrecisionFlash(rInput, pWork[0]);
        }
    }
    ApplyPrecisionFlashThresholds(scene);
    (VOID) m_rContextManager.m_pBankManager->PublishTrigger(TriggerCtrlPrecisionFlashOk, scene.bEnabled ? 1.0f : 0.0f,
                                                            nullptr, SourceModuleMtrTableGen);
    if (scene.bEnabled)
    {
        StorePrecisionFlashTables(pWork[0], scene.bkGrdPct);
    }
    PopulateDebugData(scene, pWork.get());
    return 0;
}

VOID CKIROMtrTableGen::PopulateDebugData(const PrecisionFlashScene& rScene, const PrecisionFlashWork* pWork) const
{
    AECDebugData* pDebug = debugdata::Enabled(m_rContextManager);
    if (pDebug == nullptr)
    {
        return;
    }
    AECDebugDataPrecisionFlashType record{};
    record.scenceEnabled = rScene.bEnabled ? 1 : 0;
    record.bkgrdpct      = rScene.bkGrdPct;
    record.frgrdpct      = rScene.frGrdPct;
    if (pWork != nullptr)
    {
        std::memcpy(record.backGroundTable, pWork->bkGrdTable.data(), sizeof(record.backGroundTable));
        std::memcpy(record.foreGroundTable, pWork->frGrdTable.data(), sizeof(record.foreGroundTable));
    }
    pDebug->precisionFlashInfo = record;
}

/// A scene that was taken for a precision flash a moment ago passes with lower thresholds. The host keeps the record.
FLOAT CKIROMtrTableGen::GetAndUpdateHysteresisFromPFHistory(FLOAT lux) const
{
    KIROPrecisionFlashHistory* pHistory = m_rContextManager.m_pPFHistory;
    if (pHistory == nullptr)
    {
        STATS_LOG_TRACE("no precisionflash history");
        return 0.0f;
    }
    STATS_LOG_TRACE("precisionflash history sceneDetected %d before, id%d, cur Id%d, fps %f", pHistory->sceneDetected,
                    pHistory->previousReqID, pHistory->curReqID, pHistory->frameFPS);
    pHistory->hysteresis = (pHistory->sceneDetected == TRUE) ? HysteresisSinceDetection(lux, *pHistory) : 0.0f;
    STATS_LOG_TRACE("precisionflash hysteresis %f, curId %d, preId %d, fps %f", pHistory->hysteresis,
                    pHistory->curReqID, pHistory->previousReqID, FrameRateOf(*pHistory));
    return pHistory->hysteresis;
}

/// @return the tuned hysteresis by lux index and seconds since the detection; 0 if none is tuned
FLOAT CKIROMtrTableGen::HysteresisSinceDetection(FLOAT lux, const KIROPrecisionFlashHistory& rHistory) const
{
    const auto& rAlgorithms                          = tuningaccess::Require_kirometeringsaalgorithm(*m_pTuningData);
    const TwoLevelDataBankTriggerSystemType* pSystem = nullptr;
    for (UINT32 index = 0; index < rAlgorithms.SAAlgorithmCount; ++index)
    {
        const auto& rAlgorithm = rAlgorithms.SAAlgorithm[index];
        if (rAlgorithm.ID == PrecisionFlashAlgorithmID)
        {
            pSystem = (rAlgorithm.extensionTriggerSystemCount > 0) ? rAlgorithm.extensionTriggerSystem : nullptr;
        }
    }
    if (pSystem == nullptr)
    {
        return 0.0f;
    }
    AECTriggerXMLData tree{
        pSystem->trigger1Data, {HysteresisLevels, sizeof(FLOAT)}, static_cast<INT32>(pSystem->trigger1DataCount)};
    CKIRODataXML hysteresis(KIROMLBaseDataType);
    hysteresis.SetData(&tree, KIROMLBaseDataType);

    const FLOAT delta = (rHistory.curReqID >= rHistory.previousReqID)
                            ? static_cast<FLOAT>(rHistory.curReqID - rHistory.previousReqID)
                            : LongAgo;
    return *static_cast<const FLOAT*>(hysteresis.GetData(lux, delta / FrameRateOf(rHistory), 0.0f));
}

/// @return enabled if the scene without LED is not too dark to have a background, with its shares
CKIROMtrTableGen::PrecisionFlashScene CKIROMtrTableGen::AnalyzePrecisionFlash(const PrecisionFlashInput& rInput,
                                                                              PrecisionFlashWork&        rWork) const
{
    const auto& rTuning       = m_pTuning->PrecisionFlashTblGen;
    const FLOAT minLumaOffSum = rTuning.BackGrdThld * 0.2f / 100.0f;
    const FLOAT lux           = ReadTrigger(TriggerCtrlLux);

    PrecisionFlashScene scene{};
    scene.hysteresis              = GetAndUpdateHysteresisFromPFHistory(lux);
    const PrecisionFlashSums sums = MeasureLEDLight(rInput, rWork);
    scene.bEnabled                = sums.lumaOff >= minLumaOffSum;
    STATS_LOG_TRACE("Precision flash expInc =%f, enable =%d, flux %f\n", rInput.rStats.expIncrease, scene.bEnabled,
                    rInput.rStats.flux);
    if (!scene.bEnabled)
    {
        STATS_LOG_TRACE("Precision flash is not enabled =%d, size =%d\n", scene.bEnabled, CellCount);
        return scene;
    }
    FLOAT lumaAvg = 0.0f;
    if (rTuning.DetectionType == MeanDetection)
    {
        STATS_LOG_TRACE("Precision flash using avarage\n");
        scene.bEnabled = sums.count > 0;
        lumaAvg        = sums.lumaDelta / static_cast<FLOAT>(std::max(sums.count, 1u));
    }
    else
    {
        STATS_LOG_TRACE("Precision flash using High pct\n");
        scene.bEnabled = MeanOfHighest(rWork.lumaDelta, rInput.rIsBrightTable, sums.count, lumaAvg);
    }
    // Without a region to take the mean of, the scene is none for a precision flash.
    if (scene.bEnabled)
    {
        SplitScene(rInput, lux, lumaAvg, rWork, scene);
    }
    return scene;
}

/// Fills lumaHigh and lumaDelta.
CKIROMtrTableGen::PrecisionFlashSums CKIROMtrTableGen::MeasureLEDLight(const PrecisionFlashInput& rInput,
                                                                       PrecisionFlashWork&        rWork) const
{
    const FlashStats&  rStats = rInput.rStats;
    PrecisionFlashSums sums{};
    for (UINT32 index = 0; index < CellCount; ++index)
    {
        const FLOAT lumaLow    = rStats.lumaLow[index];
        rWork.lumaHigh[index]  = (lumaLow < LumaLowMin) ? lumaLow : lumaLow * rStats.expIncrease;
        const FLOAT lumaDelta  = rWork.lumaHigh[index] - rStats.lumaOff[index];
        rWork.lumaDelta[index] = (lumaDelta > 0.0f) ? lumaDelta : LumaDeltaMin;
        if (rInput.rIsBrightTable[index] == binarymask::Clear)
        {
            sums.lumaDelta += rWork.lumaDelta[index];
            sums.lumaOff += rStats.lumaOff[index];
            ++sums.count;
        }
    }
    return sums;
}

/// The mean over the tuned percentage of the regions, those that the LED brightens most, by a histogram.
/// @param count regions that are not bright without LED; only these are taken
/// @return false if the percentage leaves none
bool CKIROMtrTableGen::MeanOfHighest(const Cells& rLumaDelta, const Mask& rIsBrightTable, UINT32 count,
                                     FLOAT& rLumaAvg) const
{
    FLOAT maxLuma = 1.0f;
    for (UINT32 index = 0; index < CellCount; ++index)
    {
        if (rIsBrightTable[index] == binarymask::Clear)
        {
            maxLuma = std::max(maxLuma, rLumaDelta[index]);
        }
    }
    INT32 histogram[BinMax + 1] = {};
    for (UINT32 index = 0; index < CellCount; ++index)
    {
        if (rIsBrightTable[index] == binarymask::Clear)
        {
            const FLOAT bin = rLumaDelta[index] * static_cast<FLOAT>(BinMax) / maxLuma + 0.5f;
            ++histogram[std::min(exposurearithmetic::SaturateToINT32(bin), BinMax)];
        }
    }

    const INT32 histoCnt = static_cast<INT32>(count);
    const INT32 highPct  = m_pTuning->PrecisionFlashTblGen.HighPct;
    const INT32 cutoff   = (100 - std::clamp(highPct, 0, 100)) * histoCnt / 100;
    STATS_LOG_TRACE("Precision: histoCnt=%d, cutoff %d, HighPct =%d\n", histoCnt, cutoff, highPct);

    FLOAT histoLumaSum = 0.0f;
    INT32 histSum      = 0;
    for (INT32 bin = BinMax; bin >= 0 && histSum < histoCnt - cutoff; --bin)
    {
        const INT32 taken = std::min(histogram[bin], histoCnt - cutoff - histSum);
        histoLumaSum += static_cast<FLOAT>(bin * taken);
        histSum += taken;
    }
    const FLOAT meanBin = histoLumaSum / static_cast<FLOAT>(std::max(histSum, 1));
    rLumaAvg            = meanBin * maxLuma / static_cast<FLOAT>(BinMax);
    STATS_LOG_TRACE("Precision: lumaAvg %f histoLumaSum %f histSum =%f\n", rLumaAvg, histoLumaSum,
                    static_cast<FLOAT>(histSum));
    return histSum > 0;
}

/// Fills masks and tables, and the shares of the scene.
VOID CKIROMtrTableGen::SplitScene(const PrecisionFlashInput& rInput, FLOAT lux, FLOAT lumaAvg,
                                  PrecisionFlashWork& rWork, PrecisionFlashScene& rScene) const
{
    const auto&  rTuning = m_pTuning->PrecisionFlashTblGen;
    CKIRODataXML background(KIROMLBaseDataType);
    CKIRODataXML foreground(KIROMLBaseDataType);
    TableGenerator::LoadWeights(rTuning.BackGrdMask, background);
    TableGenerator::LoadWeights(rTuning.ForeGrdMask, foreground);

    FLOAT bkGrdSum = 0.0f;
    FLOAT frGrdSum = 0.0f;
    for (UINT32 index = 0; index < CellCount; ++index)
    {
        if (rInput.rIsBrightTable[index] == binarymask::Clear)
        {
            const FLOAT relativeLuma = rWork.lumaDelta[index] / std::max(lumaAvg, Epsilon);
            const FLOAT bias         = rInput.pFlashBiasTable[index];
            rWork.bkGrdMask[index]   = WeightAt(background, lux, relativeLuma);
            rWork.frGrdMask[index]   = WeightAt(foreground, lux, relativeLuma);
            rWork.bkGrdTable[index]  = bias * rWork.bkGrdMask[index];
            rWork.frGrdTable[index]  = bias * rWork.frGrdMask[index];
            bkGrdSum += rWork.bkGrdMask[index];
            frGrdSum += rWork.frGrdMask[index];
        }
    }
    rScene.bkGrdPct = bkGrdSum * 100.0f / static_cast<FLOAT>(CellCount);
    rScene.frGrdPct = frGrdSum * 100.0f / static_cast<FLOAT>(CellCount);
    if (rTuning.DetectionType == MeanDetection)
    {
        STATS_LOG_TRACE("Precision: bkgrdpct =%f, AvgLuma %f\n", rScene.bkGrdPct, lumaAvg);
    }
    else
    {
        STATS_LOG_TRACE("Precision: bkgrdpct =%f, frgrdpct =%f, AvgLuma %f\n", rScene.bkGrdPct, rScene.frGrdPct,
                        lumaAvg);
    }
}

/// A scene without enough background or foreground gains nothing by a precision flash.
VOID CKIROMtrTableGen::ApplyPrecisionFlashThresholds(PrecisionFlashScene& rScene) const
{
    const auto& rTuning = m_pTuning->PrecisionFlashTblGen;
    if (rScene.bEnabled)
    {
        const FLOAT relief = 1.0f - rScene.hysteresis;
        rScene.bEnabled    = relief * rTuning.BackGrdThld * 100.0f <= rScene.bkGrdPct &&
                          relief * rTuning.ForeGrdThld * 100.0f <= rScene.frGrdPct;
    }
    STATS_LOG_TRACE("Precision: BackGrdThld =%f, ForeGrdThld =%f, scenceEnabled %d, hysteresis %f\n",
                    rTuning.BackGrdThld, rTuning.ForeGrdThld, rScene.bEnabled, rScene.hysteresis);
}

VOID CKIROMtrTableGen::StorePrecisionFlashTables(const PrecisionFlashWork& rWork, FLOAT bkGrdPct)
{
    const auto& rTuning = m_pTuning->PrecisionFlashTblGen;
    std::copy(rWork.bkGrdTable.begin(), rWork.bkGrdTable.end(), m_metBkGrdTable.weights);
    std::copy(rWork.frGrdTable.begin(), rWork.frGrdTable.end(), m_metFrGrdTable.weights);
    StoreTable(m_metBkGrdTable, rTuning.BackGrdBiasTblID);
    StoreTable(m_metFrGrdTable, rTuning.ForeGrdBiasTblID);
    (VOID) m_rContextManager.m_pBankManager->PublishTrigger(rTuning.BackGrdPctDataID, bkGrdPct, nullptr,
                                                            SourceModuleMtrTableGen);
}
