#include "core/metering/ckiroanalyzeralgorithm003.h"

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"
#include "core/metering/analyzerbank.h"

using exposurearithmetic::SaturateToINT32;

namespace
{

constexpr INT32 LUTLevels = 2;

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
    InstanceTuning& rTuningData = *rContextManager.GetTuningData();
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
    if (pOffFrame == nullptr || pLowFrame == nullptr || !HasParameters())
    {
        STATS_LOG_ERROR("Precision flash could not get flash frame history or not enough tuning params");
        return {rInput.analyzerIn};
    }
    const PrecisionFlashTimes times    = ReadTimes();
    const INT32               detected = SaturateToINT32(ReadTrigger(TriggerCtrlPrecisionFlashOk));
    const PrecisionFlashScene scene    = MeasureScene(*pOffFrame, *pLowFrame);
    const PrecisionFlashSplit split    = (detected != 0) ? FindSplit(scene, times) : PrecisionFlashSplit{};
    PublishSplit(split.bFound ? detected : 0, split, times);
    UpdateLEDFlashInfluenceRatio(split.e1, split.e2);
    PopulateDebugData(scene, split);
    return {rInput.analyzerIn};
}

bool CAnalyzerAlgorithm003::HasParameters() const
{
    return m_pAlgorithmTuning != nullptr &&
           analyzerbank::CountOf(m_pAlgorithmTuning->extensionParameters,
                                 m_pAlgorithmTuning->extensionParametersCount) >= ParameterCount;
}

/// The delay is read here and published later, so each run adds its parameter once more. Published without the
/// sum, the delay would no longer grow from run to run, and the largest share of e1 would change.
PrecisionFlashTimes CAnalyzerAlgorithm003::ReadTimes()
{
    PrecisionFlashTimes times{Param(MaxExpoTime), Param(MiniFlashTime),
                              ReadTrigger(TriggerCtrlPrecisionFlashDelay) + Param(FlashDelay)};
    STATS_LOG_TRACE("precision flash minflashtime %f, maxtime %f, delay %f, safeMargin %f ", times.miniFlashTime,
                    times.maxExpoTime, times.flashDelayTime, Param(SafeCoff));
    const FLOAT gyroVal = ReadTrigger(TriggerCtrlGyro);
    if (gyroVal > 0.0f)
    {
        ApplyGyrolimitOnMaxExposureTime(ParamID(GyroDataID), gyroVal, &times.maxExpoTime);
    }
    return times;
}

/// @return zeros where there is none, and where the plain flash will do
PrecisionFlashSplit CAnalyzerAlgorithm003::FindSplit(const PrecisionFlashScene& rScene,
                                                     const PrecisionFlashTimes& rTimes) const
{
    const PrecisionFlashShares shares = precisionflash::SharesOf(rTimes, Param(SafeCoff));
    const PrecisionFlashSplit  split  = precisionflash::Solve(rScene, shares);
    STATS_LOG_TRACE("precision flash: bkGrdLumaTarget %f e1TotalExpoTimeratioMin %f, e1TotalExpoTimeratioMax %f",
                    split.bkGrdLumaTarget, shares.min, shares.max);
    const bool bUsed = split.bFound && precisionflash::IsSplitNeeded(rScene, split, GetHysteresisFromPFHistory());
    return bUsed ? split : PrecisionFlashSplit{};
}

VOID CAnalyzerAlgorithm003::PublishSplit(INT32 sceneDetected, const PrecisionFlashSplit& rSplit,
                                         const PrecisionFlashTimes& rTimes) const
{
    STATS_LOG_TRACE("Algorithm03 Precision flash: found %d: e1, e1 (%f, %f)", sceneDetected, rSplit.e1, rSplit.e2);
    Publish(TriggerCtrlPrecisionFlashOk, static_cast<FLOAT>(sceneDetected));
    Publish(TriggerCtrlPrecisionFlashE1, rSplit.e1);
    Publish(TriggerCtrlPrecisionFlashE2, rSplit.e2);
    Publish(TriggerCtrlPrecisionFlashMaxExpTimeMs, rTimes.maxExpoTime);
    Publish(TriggerCtrlPrecisionFlashMinTime, rTimes.miniFlashTime);
    Publish(TriggerCtrlPrecisionFlashDelay, rTimes.flashDelayTime);
}

VOID CAnalyzerAlgorithm003::PopulateDebugData(const PrecisionFlashScene& rScene,
                                              const PrecisionFlashSplit& rSplit) const
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

PrecisionFlashScene CAnalyzerAlgorithm003::MeasureScene(const AECFrameHistory& rOffFrame,
                                                        const AECFrameHistory& rLowFrame) const
{
    const AECAlgoExposureType type =
        exposurearithmetic::ExposureTypeOfSelection(m_refExposureType, AECAlgoExposureLong);
    const FLOAT expOff      = static_cast<FLOAT>(rOffFrame.exposureSets[type].exposure);
    const FLOAT expInc      = expOff / static_cast<FLOAT>(rLowFrame.exposureSets[type].exposure);
    const FLOAT flux        = ReadTrigger(TriggerFlashFlux);
    const auto* pAdjustment = Banks().GetDataSceneAnalyzer(ParamID(FlashShortAggSAAdjID));
    const FLOAT adjustment  = (pAdjustment != nullptr) ? pAdjustment->value.start : 1.0f;

    PrecisionFlashScene scene{};
    scene.expOff     = expOff;
    scene.off        = {ReadCalculator(FrGrdLumaOffID), ReadCalculator(BkGrdLumaOffID)};
    scene.high.frGrd = precisionflash::LumaAtHighFlash(scene.off.frGrd, ReadCalculator(FrGrdLumaOnID), expInc, flux);
    scene.high.bkGrd = precisionflash::LumaAtHighFlash(scene.off.bkGrd, ReadCalculator(BkGrdLumaOnID), expInc, flux);
    scene.main       = {adjustment * scene.high.frGrd, adjustment * scene.high.bkGrd};
    return scene;
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

VOID CAnalyzerAlgorithm003::UpdateLEDFlashInfluenceRatio(FLOAT e1, FLOAT e2) const
{
    const FLOAT normalRatio = ReadTrigger(TriggerFlashInfluence);
    const FLOAT ratio       = precisionflash::InfluenceRatio(normalRatio, e1, e2);
    STATS_LOG_TRACE("Precision flash influence %f, normal influence %f", ratio, normalRatio);
    Publish(TriggerCtrlPrecisionFlashInfluence, ratio);
}
