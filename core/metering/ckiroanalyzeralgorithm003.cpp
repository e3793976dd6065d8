#include "core/metering/ckiroanalyzeralgorithm003.h"

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"
#include "core/metering/analyzerbank.h"

using exposurearithmetic::SaturateToINT32;

namespace
{

constexpr FLOAT OneMillion = 1e6f;
constexpr INT32 LUTLevels  = 2;

/// The background's share of its luma without LED that is tried for, in percent: coarse steps first, finer ones as
/// little is left.
constexpr INT32 BackgroundPercents[] = {100, 95, 90, 85, 80, 75, 70, 65, 60, 55, 50, 45, 40, 35, 30,
                                        28,  26, 24, 22, 20, 18, 16, 14, 12, 10, 9,  8,  7,  6,  5};

/// What the main flash would give at the exposure without LED, from a measurement at low flash.
/// @param expInc exposure without LED over exposure at low flash
/// @param flux   of high over low flash
FLOAT LumaAtHighFlash(FLOAT lumaOff, FLOAT lumaOn, FLOAT expInc, FLOAT flux)
{
    return std::fma(std::fma(lumaOn, expInc, -lumaOff), flux, lumaOff);
}

AECTriggerXMLData DescribeRows(TwoLevelTriggerSystemLevel1Type* pRows, UINT32 count)
{
    return {pRows, {LUTLevels, sizeof(FLOAT)}, static_cast<INT32>(count)};
}

}  // namespace

CAnalyzerAlgorithm003::CAnalyzerAlgorithm003() : m_refExposureType(ExposureSafe)
{
}

VOID CAnalyzerAlgorithm003::SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager)
{
    CAnalyzerAlgorithm::SetTuning(analyzerID, rContextManager);
    const StatsTuningData& rTuningData = *rContextManager.GetTuningData();
    m_refExposureType = tuningaccess::Require_kirometeringsceneanalyzer(rTuningData).luxAnalyzer.refExposureType;

    // The first tree makes the object allocate, whatever tree it is; frames find the memory there.
    AECTriggerXMLData noRows = DescribeRows(nullptr, 0);
    m_gyroLimit.SetData(&noRows, KIROMLOneFloatDataType);
}

AnalyzerAlgorithmOutput CAnalyzerAlgorithm003::RunAlgorithm(const AnalyzerAlgorithmInput& rInput)
{
    STATS_LOG_TRACE("Running algorithm 003 Precision flash: %d", m_analyzerID);
    CKIROHistory&          rHistory  = *m_pContextManager->m_pHistory;
    const AECFrameHistory* pOffFrame = rHistory.GetFlashFrame(KIROExtFlashCurrentType::Off);
    const AECFrameHistory* pLowFrame = rHistory.GetFlashFrame(KIROExtFlashCurrentType::Low);
    const bool             bTuned    = m_pAlgorithmTuning != nullptr &&
                        analyzerbank::CountOf(m_pAlgorithmTuning->extensionParameters,
                                              m_pAlgorithmTuning->extensionParametersCount) >= ParameterCount;
    if (pOffFrame == nullptr || pLowFrame == nullptr || !bTuned)
    {
        STATS_LOG_ERROR("Precision flash could not get flash frame history or not enough tuning params");
        return {rInput.analyzerIn};
    }

    // The delay is read and written, so each run adds its parameter once more: the reader of the trigger counts on it.
    const FLOAT flashDelayTime = ReadTrigger(TriggerCtrlPrecisionFlashDelay) + Param(FlashDelay);
    const FLOAT miniFlashTime  = Param(MiniFlashTime);
    FLOAT       maxExpoTime    = Param(MaxExpoTime);
    STATS_LOG_TRACE("precision flash minflashtime %f, maxtime %f, delay %f, safeMargin %f ", miniFlashTime, maxExpoTime,
                    flashDelayTime, Param(SafeCoff));
    const FLOAT gyroVal = ReadTrigger(TriggerCtrlGyro);
    if (gyroVal > 0.0f)
    {
        ApplyGyrolimitOnMaxExposureTime(ParamID(GyroDataID), gyroVal, &maxExpoTime);
    }

    INT32               sceneDetected = SaturateToINT32(ReadTrigger(TriggerCtrlPrecisionFlashOk));
    PrecisionFlashSplit split{};
    const Scene         scene = MeasureScene(*pOffFrame, *pLowFrame);
    if (sceneDetected != 0)
    {
        const PrecisionFlashShares shares{Param(SafeCoff) * miniFlashTime / maxExpoTime,
                                          1.0f - flashDelayTime / maxExpoTime};
        split = Solve(scene, shares);
        STATS_LOG_TRACE("precision flash: bkGrdLumaTarget %f e1TotalExpoTimeratioMin %f, e1TotalExpoTimeratioMax %f",
                        split.bkGrdLumaTarget, shares.min, shares.max);
        // Where the plain flash leaves the background bright enough, there is no need to split.
        const FLOAT wanted = (GetHysteresisFromPFHistory() + 1.0f) * split.bkGrdLumaTarget;
        if (!split.bFound || wanted <= scene.main.bkGrd)
        {
            sceneDetected = 0;
            split         = {};
        }
    }
    STATS_LOG_TRACE("Algorithm03 Precision flash: found %d: e1, e1 (%f, %f)", sceneDetected, split.e1, split.e2);
    Publish(TriggerCtrlPrecisionFlashOk, static_cast<FLOAT>(sceneDetected));
    Publish(TriggerCtrlPrecisionFlashE1, split.e1);
    Publish(TriggerCtrlPrecisionFlashE2, split.e2);
    Publish(TriggerCtrlPrecisionFlashMaxExpTimeMs, maxExpoTime);
    Publish(TriggerCtrlPrecisionFlashMinTime, miniFlashTime);
    Publish(TriggerCtrlPrecisionFlashDelay, flashDelayTime);
    UpdateLEDFlashInfluenceRatio(split.e1, split.e2);
    PopulateDebugData(scene, split);
    return {rInput.analyzerIn};
}

VOID CAnalyzerAlgorithm003::PopulateDebugData(const Scene& rScene, const PrecisionFlashSplit& rSplit) const
{
    AECDebugData* pDebug = debugdata::Enabled(*m_pContextManager);
    if (pDebug == nullptr)
    {
        return;
    }
    AECDebugPrecisionFlashSolution solution{};
    solution.sceneDetected           = (ReadTrigger(TriggerCtrlPrecisionFlashOk) != 0.0f) ? 1 : 0;
    solution.e1                      = rSplit.e1;
    solution.e2                      = rSplit.e2;
    solution.maxExpoTime             = ReadTrigger(TriggerCtrlPrecisionFlashMaxExpTimeMs);
    solution.minFlashTime            = ReadTrigger(TriggerCtrlPrecisionFlashMinTime);
    solution.flashDelayTime          = ReadTrigger(TriggerCtrlPrecisionFlashDelay);
    solution.hysteresis              = GetHysteresisFromPFHistory();
    solution.bkGrdLumaOff            = rScene.off.bkGrd;
    solution.bkGrdLumaOn             = ReadCalculator(BkGrdLumaOnID);
    solution.frGrdLumaOff            = rScene.off.frGrd;
    solution.frGrdLumaOn             = ReadCalculator(FrGrdLumaOnID);
    solution.bkGrdLumaTarget         = rSplit.bkGrdLumaTarget;
    solution.flux                    = ReadTrigger(TriggerFlashFlux);
    pDebug->flashInfo.precisionFlash = solution;
}

FLOAT CAnalyzerAlgorithm003::Param(Parameter index) const
{
    return m_pAlgorithmTuning->extensionParameters[index];
}

INT32 CAnalyzerAlgorithm003::ParamID(Parameter index) const
{
    return SaturateToINT32(Param(index));
}

/// @return 0, with a log, for a data ID out of range
FLOAT CAnalyzerAlgorithm003::ReadCalculator(Parameter index) const
{
    const auto* pSlot = Banks().GetDataStatsCalculator(ParamID(index));
    return (pSlot != nullptr) ? pSlot->value : 0.0f;
}

/// The margin that favours a split counts as long as the host's record shows no scene; it is tuned this way round.
FLOAT CAnalyzerAlgorithm003::GetHysteresisFromPFHistory() const
{
    const KIROPrecisionFlashHistory* pHistory = m_pContextManager->m_pPFHistory;
    return (pHistory == nullptr || pHistory->sceneDetected == TRUE) ? 0.0f : pHistory->hysteresis;
}

CAnalyzerAlgorithm003::Scene CAnalyzerAlgorithm003::MeasureScene(const AECFrameHistory& rOffFrame,
                                                                 const AECFrameHistory& rLowFrame) const
{
    const AECAlgoExposureType type =
        exposurearithmetic::ExposureTypeOfSelection(m_refExposureType, AECAlgoExposureLong);
    const FLOAT expOff      = static_cast<FLOAT>(rOffFrame.exposureSets[type].exposure);
    const FLOAT expInc      = expOff / static_cast<FLOAT>(rLowFrame.exposureSets[type].exposure);
    const FLOAT flux        = ReadTrigger(TriggerFlashFlux);
    const auto* pAdjustment = Banks().GetDataSceneAnalyzer(ParamID(FlashShortAggSAAdjID));
    const FLOAT adjustment  = (pAdjustment != nullptr) ? pAdjustment->value.start : 1.0f;

    Scene scene{};
    scene.expOff     = expOff;
    scene.off        = {ReadCalculator(FrGrdLumaOffID), ReadCalculator(BkGrdLumaOffID)};
    scene.high.frGrd = LumaAtHighFlash(scene.off.frGrd, ReadCalculator(FrGrdLumaOnID), expInc, flux);
    scene.high.bkGrd = LumaAtHighFlash(scene.off.bkGrd, ReadCalculator(BkGrdLumaOnID), expInc, flux);
    scene.main       = {adjustment * scene.high.frGrd, adjustment * scene.high.bkGrd};
    return scene;
}

PrecisionFlashSplit CAnalyzerAlgorithm003::Solve(const Scene& rScene, const PrecisionFlashShares& rShares)
{
    // Luma per exposure: e1 r3 + e2 r1 is the background's luma, e1 r2 + e2 r4 the foreground's.
    const FLOAT r1  = rScene.off.bkGrd * OneMillion / rScene.expOff;
    const FLOAT r2  = rScene.high.frGrd * OneMillion / rScene.expOff;
    const FLOAT r3  = rScene.high.bkGrd * OneMillion / rScene.expOff;
    const FLOAT r4  = rScene.off.frGrd * OneMillion / rScene.expOff;
    const FLOAT det = r3 * r4 - r2 * r1;

    PrecisionFlashSplit split{};
    for (INT32 percent : BackgroundPercents)
    {
        const FLOAT target    = static_cast<FLOAT>(percent) * rScene.off.bkGrd / 100.0f;
        split.bkGrdLumaTarget = target;
        // Without a solution e1 and e2 are no numbers, or infinite, and pass no test.
        const FLOAT e1    = (r4 * target - rScene.main.frGrd * r1) * OneMillion / det;
        const FLOAT e2    = (rScene.main.frGrd * r3 - r2 * target) * OneMillion / det;
        const FLOAT total = e1 + e2;
        if (e1 > 0.0f && e2 > 0.0f && total * rShares.min < e1 && total * rShares.max > e1)
        {
            split.bFound = true;
            split.e1     = e1;
            split.e2     = e2;
            return split;
        }
    }
    return split;
}

VOID CAnalyzerAlgorithm003::ApplyGyrolimitOnMaxExposureTime(INT32 gyroLUTDataID, FLOAT gyroVal, FLOAT* pMaxExpoTime)
{
    const auto* pLUT = Banks().GetDataArbitrationLUT(gyroLUTDataID);
    if (pLUT == nullptr)
    {
        STATS_LOG_ERROR("Precision could not find LUT %d", gyroLUTDataID);
        return;
    }
    STATS_LOG_TRACE(" Precision find LUT %s", analyzerbank::TextOf(pLUT->description));
    AECTriggerXMLData rows = DescribeRows(pLUT->value.triggerData, pLUT->value.triggerDataCount);
    m_gyroLimit.SetData(&rows, KIROMLOneFloatDataType);
    const FLOAT limit = *static_cast<const FLOAT*>(m_gyroLimit.GetData(gyroVal, *pMaxExpoTime, 0.0f));
    if (limit > 0.0f)
    {
        *pMaxExpoTime = limit;
    }
    STATS_LOG_TRACE("Algorithm03 Precision: dataId %d, gyroVal %f, maxExptime %f, data %f", gyroLUTDataID, gyroVal,
                    *pMaxExpoTime, limit);
}

/// Of the two parts only e1 sees the LED.
VOID CAnalyzerAlgorithm003::UpdateLEDFlashInfluenceRatio(FLOAT e1, FLOAT e2) const
{
    const FLOAT normalRatio = ReadTrigger(TriggerFlashInfluence);
    const FLOAT ratio       = (e1 > 0.0f && e2 > 0.0f) ? (normalRatio * e1 + e2) / (e1 + e2) : normalRatio;
    STATS_LOG_TRACE("Precision flash influence %f, normal influence %f", ratio, normalRatio);
    Publish(TriggerCtrlPrecisionFlashInfluence, ratio);
}
