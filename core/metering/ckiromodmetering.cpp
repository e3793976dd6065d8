#include "core/metering/ckiromodmetering.h"

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"
#include "core/extensionparameters.h"
#include "interface/kiroresults.h"

namespace
{

/// Default of the trigger that caps the ADRC gain.
constexpr FLOAT ADRCCapDefault = 3.0f;

/// Data of the long ADRC parameter.
constexpr UINT32 ShortBlendTriggerData = 2;

}  // namespace

CKIROMetering::CKIROMetering(InstanceTuning& rTuningData, IKIROContextManager& rContextManager)
    : ModuleCommon(rTuningData, rContextManager), m_calculatorManager(rContextManager),
      m_analyzerManager(rContextManager), m_preflashContext{}
{
    m_moduleID = tuningaccess::Require_kirometering(rTuningData).moduleID;
}

VOID CKIROMetering::UpdateManagers()
{
    TakeTuning();
    InstanceTuning& rTuningData = *m_rContextManager.GetTuningData();
    m_calculatorManager.UpdateCalculators(tuningaccess::Get_kirometeringstatscalculator(rTuningData));
    m_analyzerManager.UpdateAnalyzers(tuningaccess::Get_kirometeringsceneanalyzer(rTuningData));
}

/// Between the stages of a frame the host may set a tuning, and those of before may be gone by then.
VOID CKIROMetering::UpdateManagersForNewTuning()
{
    if (IsTuningNew())
    {
        UpdateManagers();
    }
}

const KIROAnalyzerOutput* CKIROMetering::RunAnalyzer(UINT32 analyzerID)
{
    UpdateManagersForNewTuning();
    return m_analyzerManager.RunAnalyzer(analyzerID);
}

VOID CKIROMetering::UpdateAnalyzerMgrOutput(UINT32 analyzerID, KIROAnalyzerOutput* pOutput)
{
    UpdateManagersForNewTuning();
    m_analyzerManager.UpdateAnalyzerMgrOutput(analyzerID, pOutput);
}

KiroResult CKIROMetering::RunMeteringPreprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)
{
    UpdateManagers();

    CKIROBankManager&      rBanks   = *m_rContextManager.m_pBankManager;
    const AECFrameHistory* pMatched = FindMatchedFrame();
    if (rBanks.GetDataTriggers(TriggerCtrlADRCCap)->value < 1.0f)
    {
        rBanks.PublishTrigger(TriggerCtrlADRCCap, ADRCCapDefault, "SeamlessThreshold", SourceCore);
    }

    rOutput.bIsMeteringSkipped = FALSE;
    if (IsFrameSkipped(pMatched, rInput.bStatsValid))
    {
        UsePreviousTargets(pMatched, rInput.bStatsValid, rOutput);
        return ResultFailed;
    }

    PublishMatchedExposures(*pMatched);
    PublishShortBlend(*pMatched);
    PublishFlashLowExposures();

    UINT64 exposures[AECAlgoExposureCount];
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        exposures[type] = pMatched->exposureSets[type].exposure;
    }
    m_analyzerManager.SetSensitivities(exposures);
    m_analyzerManager.ResetAnalyzerConfidence();
    if (m_rContextManager.GetInput()->snapshotMode != KIROCoreSnapshotType::Flash)
    {
        m_calculatorManager.RunAverageCalculator();
        m_calculatorManager.RunCtrWeightedCalculator();
        m_calculatorManager.RunDarkRatioCalculator();
        m_calculatorManager.RunBrightRatioCalculator();
    }
    // The lux index comes first, so that the calculators' ranges interpolate on this frame's.
    m_analyzerManager.RunLuxAnalyzer();
    m_calculatorManager.RunCalculators();
    PopulateDebugData(rOutput);
    return 0;
}

const AECFrameHistory* CKIROMetering::FindMatchedFrame() const
{
    const SetInputData* pInput   = m_rContextManager.GetInput();
    CKIROHistory&       rHistory = *m_rContextManager.m_pHistory;
    return (pInput->snapshotMode == KIROCoreSnapshotType::Flash) ? rHistory.GetFlashFrame(KIROExtFlashCurrentType::Off)
                                                                 : rHistory.GetFrameHistory(pInput->systemLatency);
}

bool CKIROMetering::IsFrameSkipped(const AECFrameHistory* pMatched, BOOL bStatsValid) const
{
    if (pMatched == nullptr || bStatsValid == FALSE)
    {
        return true;
    }
    const auto& rSets = pMatched->exposureSets;
    if (rSets[AECAlgoExposureShort].exposure == 0 || rSets[AECAlgoExposureSafe].exposure == 0 ||
        rSets[AECAlgoExposureLong].exposure == 0)
    {
        return true;
    }
    return pMatched->bIsSnapshot == TRUE && m_rContextManager.GetContextEvent(AECCoreSnapshotHDR3) != TRUE;
}

VOID CKIROMetering::UsePreviousTargets(const AECFrameHistory* pMatched, BOOL bStatsValid, KIROMeteringOutput& rOutput)
{
    const bool             isSnapshot = pMatched != nullptr && pMatched->bIsSnapshot == TRUE;
    const AECFrameHistory* pPrevious  = m_rContextManager.m_pHistory->GetPreviousNonSnapshotFrame();
    if (pPrevious != nullptr)
    {
        std::copy(std::begin(pPrevious->exposureTargets), std::end(pPrevious->exposureTargets), rOutput.exposures);
        m_rContextManager.m_pBankManager->PublishTrigger(TriggerCtrlLux, pPrevious->luxIndex, nullptr, SourceCore);
        STATS_LOG_TRACE("Using previous exposure %llu %llu %llu is reflected snapshot %d, is reflected frame invalid "
                        "%d, is valid stats %d",
                        rOutput.exposures[0], rOutput.exposures[1], rOutput.exposures[2], isSnapshot,
                        pMatched == nullptr, bStatsValid);
    }
    else
    {
        std::fill(std::begin(rOutput.exposures), std::end(rOutput.exposures), DefaultExposure);
        STATS_LOG_ERROR("Error: cannot retrieve frame history; using default exposure %llu is reflected snapshot %d",
                        DefaultExposure, isSnapshot);
    }
    rOutput.bIsMeteringSkipped = TRUE;
}

VOID CKIROMetering::PublishMatchedExposures(const AECFrameHistory& rMatched)
{
    CKIROBankManager& rBanks = *m_rContextManager.m_pBankManager;
    const auto&       rSets  = rMatched.exposureSets;
    rBanks.PublishTrigger(TriggerCtrlShortExp, static_cast<FLOAT>(rSets[AECAlgoExposureShort].exposure), nullptr,
                          SourceModuleMetering);
    rBanks.PublishTrigger(TriggerCtrlLongExp, static_cast<FLOAT>(rSets[AECAlgoExposureLong].exposure), nullptr,
                          SourceModuleMetering);
    rBanks.PublishTrigger(TriggerCtrlSafeExp, static_cast<FLOAT>(rSets[AECAlgoExposureSafe].exposure), nullptr,
                          SourceModuleMetering);
}

VOID CKIROMetering::PublishShortBlend(const AECFrameHistory& rMatched)
{
    extensionparameters::Parameter parameter{};
    const KiroResult result = extensionparameters::GetMFHDRADRC(*m_rContextManager.GetTuningData(), parameter);
    if (result == 0 && parameter.enableFlag == TRUE)
    {
        const INT32 dataID = exposurearithmetic::SaturateToINT32(parameter.data[ShortBlendTriggerData]);
        m_rContextManager.m_pBankManager->PublishTrigger(dataID, rMatched.shortBlend, nullptr, SourceModuleMetering);
    }
}

VOID CKIROMetering::PublishFlashLowExposures()
{
    if (m_rContextManager.GetInput()->snapshotMode != KIROCoreSnapshotType::Flash)
    {
        return;
    }
    const AECFrameHistory* pLow = m_rContextManager.m_pHistory->GetFlashFrame(KIROExtFlashCurrentType::Low);
    if (pLow == nullptr)
    {
        return;
    }
    CKIROBankManager& rBanks  = *m_rContextManager.m_pBankManager;
    const FLOAT       safeExp = static_cast<FLOAT>(pLow->exposureSets[AECAlgoExposureSafe].exposure);
    rBanks.PublishTrigger(TriggerCtrlShortExpFLow,
                          static_cast<FLOAT>(pLow->exposureSets[AECAlgoExposureShort].exposure), nullptr,
                          SourceModuleMetering);
    rBanks.PublishTrigger(TriggerCtrlLongExpFLow, static_cast<FLOAT>(pLow->exposureSets[AECAlgoExposureLong].exposure),
                          nullptr, SourceModuleMetering);
    rBanks.PublishTrigger(TriggerCtrlSafeExpFLow, safeExp, nullptr, SourceModuleMetering);
    STATS_LOG_TRACE("Saving flash low exposure for precision flash %f", safeExp);
}

KiroResult CKIROMetering::RunMeteringPostprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)
{
    UINT64* pExposures = rOutput.exposures;
    UINT64& rShort     = pExposures[AECAlgoExposureShort];
    UINT64& rSafe      = pExposures[AECAlgoExposureSafe];
    UINT64& rLong      = pExposures[AECAlgoExposureLong];
    std::fill_n(pExposures, static_cast<UINT32>(AECAlgoExposureCount), 0);
    STATS_LOG_TRACE("-------------- Metering Final Aggregation -----------------");
    CollectAnalyzerOutputs(rOutput);

    rShort = (rShort == 0) ? rSafe : rShort;
    rLong  = (rLong == 0) ? rSafe : rLong;
    if (m_rContextManager.GetInput()->bDisableADRC == TRUE)
    {
        rShort = rSafe;
        rLong  = rSafe;
        STATS_LOG_TRACE("ADRC disabled [%d]", m_rContextManager.GetInput()->bDisableADRC);
    }
    std::copy_n(pExposures, static_cast<UINT32>(AECAlgoExposureCount), rOutput.mtrExposures);
    CalculateAntibandingPriority(rInput, rOutput);
    STATS_LOG_TRACE("----- End Of Metering Final Aggregation Output exposures [Short:%llu,  Safe:%llu, Long:%llu] "
                    "-----\n",
                    rShort, rSafe, rLong);
    AECDebugData* pDebug = debugdata::Enabled(m_rContextManager);
    if (pDebug != nullptr && m_rContextManager.GetInput()->snapshotMode == KIROCoreSnapshotType::Flash)
    {
        return FillFlashDebugData(&pDebug->flashInfo, rOutput);
    }
    return 0;
}

/// A later analyzer of a type overwrites an earlier one: the order of the list is the priority.
VOID CKIROMetering::CollectAnalyzerOutputs(KIROMeteringOutput& rOutput) const
{
    const AnalyzerManagerOutput& rAnalyzers = m_analyzerManager.GetOutput();
    const auto*                  pActive    = m_rContextManager.m_pBankManager->GetDataActiveAnalyzers(0);
    for (UINT32 index = 0; pActive != nullptr && index < pActive->analyzerIDCount; ++index)
    {
        const UINT32 id = pActive->analyzerID[index];
        if (id >= AnalyzerCountMax || rAnalyzers.isActive[id] != TRUE)
        {
            continue;
        }
        const AECAlgoExposureType type          = rAnalyzers.type[id];
        const bool                isShortOrLong = type == AECAlgoExposureShort || type == AECAlgoExposureLong;
        rOutput.exposures[isShortOrLong ? type : AECAlgoExposureSafe] = rAnalyzers.sensitivities[id];
        STATS_LOG_TRACE("analyzerMgrOutput [%d] Type %d, Conf %.2f, Si %llu", id, type, rAnalyzers.confidences[id],
                        rAnalyzers.sensitivities[id]);
    }
}

BOOL CKIROMetering::UpdateMeteringLockExposure(KIROMeteringOutput& rOutput)
{
    const SetInputData* pInput = m_rContextManager.GetInput();
    if (pInput->snapshotMode == KIROCoreSnapshotType::Flash || pInput->bLockMetering != TRUE)
    {
        return pInput->bLockMetering;
    }
    const AECFrameHistory* pPrevious = m_rContextManager.m_pHistory->GetPreviousNonSnapshotFrame();
    if (pPrevious != nullptr)
    {
        std::copy(std::begin(pPrevious->exposureTargets), std::end(pPrevious->exposureTargets), rOutput.exposures);
        STATS_LOG_TRACE("Metering lock, Use previous frame exp [Short:%llu,  Safe:%llu, Long:%llu]",
                        rOutput.exposures[AECAlgoExposureShort], rOutput.exposures[AECAlgoExposureSafe],
                        rOutput.exposures[AECAlgoExposureLong]);
    }
    else
    {
        std::fill(std::begin(rOutput.exposures), std::end(rOutput.exposures), DefaultExposure);
        STATS_LOG_ERROR("Error: cannot retrieve frame history; using default exposure %llu", DefaultExposure);
    }
    return pInput->bLockMetering;
}
