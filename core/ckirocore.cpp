#include "core/ckirocore.h"

#include <algorithm>

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/extension/ckirocamsync.h"
#include "interface/kiroresults.h"
#include "schema/kiroadvancedinfo.h"
#include "schema/kiroextension.h"

namespace
{

constexpr INT32 DefaultTriggerLast = TriggerFlashInfluence;

BOOL IsFalse(BOOL value)
{
    return (value == FALSE) ? TRUE : FALSE;
}

}  // namespace

CKIROCore::CKIROCore(StatsTuningData& rTuningData, IKIRODebugData& rDebugData)
    : m_contManager(rDebugData), m_shortBlend(m_contManager), m_currFrame{}, m_flashExpIncrease{}
{
    SetDefaultTriggers();
    if (m_contManager.SetTunara(rTuningData) != 0)
    {
        STATS_LOG_ERROR("Error in configuring the tunara data");
    }
    CreateModules();
}

VOID CKIROCore::CreateModules()
{
    InstanceTuning& rTuningData = *m_contManager.GetTuningData();
    m_pStatsProcessor           = TavoNew<CKIROStatsProcessor>(rTuningData, m_contManager);
    m_pMetering                 = TavoNew<CKIROMetering>(rTuningData, m_contManager);
    m_pConvergence              = TavoNew<CKIROConvergence>(rTuningData, m_contManager);
    m_pArbitration              = TavoNew<CKIROArbitration>(rTuningData, m_contManager);
    m_pExtension                = TavoNew<CKIROExtension>(rTuningData, m_contManager);
    m_pMtrTableGen              = TavoNew<CKIROMtrTableGen>(rTuningData, m_contManager);
    m_pExtMapManager            = TavoNew<CKIROExtMapManager>(m_contManager);
    m_pSCDManager               = TavoNew<CSCDManager>(m_contManager);
    m_p1DVectorManager          = TavoNew<CKIRO1DVectorManager>(m_contManager);
    m_pFICManager               = TavoNew<CFICManager>(m_contManager);
    if (m_pStatsProcessor == nullptr || m_pMetering == nullptr || m_pConvergence == nullptr ||
        m_pArbitration == nullptr || m_pExtension == nullptr || m_pMtrTableGen == nullptr ||
        m_pExtMapManager == nullptr || m_pSCDManager == nullptr || m_p1DVectorManager == nullptr)
    {
        STATS_LOG_ERROR("AEC module instantiation failure!");
    }
    m_contManager.SetSCDManager(m_pSCDManager.get());
    m_contManager.SetFICManager(m_pFICManager.get());
}

VOID CKIROCore::SetDefaultTriggers()
{
    for (INT32 id = 0; id <= DefaultTriggerLast; ++id)
    {
        m_contManager.m_pBankManager->PublishTrigger(id, 0.0f, "Default", SourceCore);
    }
}

VOID CKIROCore::DestroyInstance()
{
    const TavoPtr<CKIROCore> pSelf(this);
}

KiroResult CKIROCore::setInput(KIROSetInput* pSetInputData)
{
    if (pSetInputData == nullptr)
    {
        return ResultFailed;
    }
    const KiroResult result        = m_contManager.SetInput(pSetInputData);
    pSetInputData->bResetFrameSkip = m_contManager.m_bResetFrameSkip;
    if (result == 0 && pSetInputData->source == KIROCoreSnapshot)
    {
        m_contManager.RefreshBanks();
    }
    return result;
}

KiroResult CKIROCore::runStartOfFrame(UINT64 frameID)
{
    (VOID) m_contManager.m_pHistory->SaveCurrentFrameID(frameID);
    m_contManager.RunContextStartOfFrame();
    m_contManager.m_arbitrationRange = {};
    return 0;
}

KiroResult CKIROCore::setStats(KIROStatsList& rStats)
{
    m_currFrame = {};
    m_pStatsProcessor->ResetStats();
    KiroResult result = m_pStatsProcessor->SetStats(rStats);
    if (m_pStatsProcessor->GetGridStatsCount() == 0)
    {
        STATS_LOG_ERROR("Did not receive any grid stats!");
        result = ResultInvalidInput;
    }
    UpdateTorchAndDepthEvents(rStats);
    PopulateStatsDebugData(rStats);
    return result;
}

VOID CKIROCore::UpdateTorchAndDepthEvents(const KIROStatsList& rStats)
{
    if (rStats.bIsTorchAEC != m_contManager.GetContextEvent(AECTorch))
    {
        m_contManager.SetContextEvent(AECTorch, rStats.bIsTorchAEC);
        m_contManager.SetContextEvent(AECTorchChange, TRUE);
        STATS_LOG_TRACE("AECTorchChange event is set. AECTorch:%d", rStats.bIsTorchAEC);
    }
    if (rStats.bIsDepthAEC != m_contManager.GetContextEvent(AECDepth))
    {
        m_contManager.SetContextEvent(AECDepth, rStats.bIsDepthAEC);
        STATS_LOG_TRACE("Depth AEC event is set. AECDepth: %d", rStats.bIsDepthAEC);
    }
}

KiroResult CKIROCore::runMeteringPreprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)
{
    m_contManager.RefreshBanks();
    m_pSCDManager->RunSCDetectors(kiroscenechangedetector::MeteringStart, rInput.bStatsValid);
    m_pExtMapManager->RunExtMapProcessors();
    if (rInput.bStatsValid == TRUE)
    {
        (VOID) m_pMtrTableGen->RunTableGen();
    }
    ResetDataBankBeforeMetering();
    const KiroResult result = m_pMetering->RunMeteringPreprocess(rInput, rOutput);
    if (rInput.bStatsValid == TRUE)
    {
        m_p1DVectorManager->Run1DVectorProcessors(kiroglobalelements::VectorProcessorUsageType::Default, 1);
    }
    LogAdvancedInfo();
    return result;
}

VOID CKIROCore::ResetDataBankBeforeMetering()
{
    const auto& rStretch = tuningaccess::Require_kiroextension(*m_contManager.GetTuningData()).flagMonitor.YHistStretch;
    if (!ResetStretchEntry(rStretch.clampValue))
    {
        STATS_LOG_WARNING("Issue in setting YHist clamp value to DB");
    }
    if (!ResetStretchEntry(rStretch.scalingValue))
    {
        STATS_LOG_WARNING("Issue in setting YHist scale value to DB");
    }
}

bool CKIROCore::ResetStretchEntry(const DataBankType& rEntry)
{
    DBStartEndPayload payload{};
    payload.dataID              = rEntry.dataID;
    const KIROSetBankData entry = {rEntry.bankID, &payload, sizeof(payload)};
    // Any other bank would keep the address of the payload.
    return IsValueBank(rEntry.bankID) && m_contManager.m_pBankManager->SetControlData(&entry) == 0;
}

VOID CKIROCore::LogAdvancedInfo()
{
    const auto& rInfo = tuningaccess::Require_kiroadvancedinfo(*m_contManager.GetTuningData());
    SYSTEM_LOG_CONFIG("Depth Info: enable %d, object depth value: %.1f", rInfo.depthInfo.enable,
                      TriggerValue(TriggerCtrlDistance));
    STATS_LOG_TRACE("Saliency Info: enable %d object saliency value %.1f", rInfo.saliencyInfo.enable,
                    TriggerValue(TriggerCtrlSaliencyValue));
}

KiroResult CKIROCore::runAnalyzer(UINT32 analyzerID, KIROAnalyzerOutput& rAnalyzerOut)
{
    const KIROAnalyzerOutput* pOutput = m_pMetering->RunAnalyzer(analyzerID);
    if (pOutput == nullptr)
    {
        STATS_LOG_WARNING("m_pMetering->RunAnalyzer failed!");
        return ResultFailed;
    }
    // The caller's refType stays as it was.
    rAnalyzerOut.pName       = pOutput->pName;
    rAnalyzerOut.luma        = pOutput->luma;
    rAnalyzerOut.confidence  = pOutput->confidence;
    rAnalyzerOut.target      = pOutput->target;
    rAnalyzerOut.sensitivity = pOutput->sensitivity;
    rAnalyzerOut.type        = pOutput->type;
    return 0;
}

KiroResult CKIROCore::updateAnalyzerMgrOut(UINT32 analyzerID, KIROAnalyzerOutput* pAnalyzerIn)
{
    m_pMetering->UpdateAnalyzerMgrOutput(analyzerID, pAnalyzerIn);
    return 0;
}

KiroResult CKIROCore::runMeteringPostprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)
{
    if (rOutput.bIsMeteringSkipped == FALSE)
    {
        (VOID) m_pMetering->RunMeteringPostprocess(rInput, rOutput);
    }
    if (m_pMetering->UpdateMeteringLockExposure(rOutput) == TRUE)
    {
        std::copy(std::begin(rOutput.exposures), std::end(rOutput.exposures), rOutput.mtrExposures);
        STATS_LOG_TRACE("Metering locked, overwrite metering output.");
    }

    const UINT64*     pExposures = rOutput.exposures;
    CKIROBankManager& rBanks     = *m_contManager.m_pBankManager;
    rBanks.PublishTrigger(TriggerCtrlShortTgt, static_cast<FLOAT>(pExposures[AECAlgoExposureShort]), nullptr,
                          SourceCore);
    rBanks.PublishTrigger(TriggerCtrlLongTgt, static_cast<FLOAT>(pExposures[AECAlgoExposureLong]), nullptr, SourceCore);
    rBanks.PublishTrigger(TriggerCtrlSafeTgt, static_cast<FLOAT>(pExposures[AECAlgoExposureSafe]), nullptr, SourceCore);
    HoldBracketExposures(rInput, rOutput);
    STATS_LOG_TRACE("Metering output exposure [Short:%llu, Safe:%llu, Long:%llu], skipped:%d",
                    pExposures[AECAlgoExposureShort], pExposures[AECAlgoExposureSafe], pExposures[AECAlgoExposureLong],
                    rOutput.bIsMeteringSkipped);
    PopulateMeteringDebugData(rOutput);
    return 0;
}

VOID CKIROCore::HoldBracketExposures(const KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)
{
    if (m_contManager.GetContextEvent(AECEVBracketing) == TRUE &&
        m_pExtension->GetFlagsMonitor().GetBracketLockedExposure(rOutput.exposures, rInput.bStatsValid) == TRUE)
    {
        rOutput.bIsMeteringSkipped = TRUE;
    }
}

KiroResult CKIROCore::mixMetering(KIROMeteringOutput& rOutput)
{
    CKIROCamsync& rSync = *m_contManager.m_pCamSync;
    if (rSync.getMeteringType() != kirosync::AECAlgoMeteringIndependent && rSync.getPeerInfo() != nullptr)
    {
        rSync.CalculateMixedTargetExposure(rOutput);
    }
    return 0;
}

KiroResult CKIROCore::runArbitration(KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput)
{
    m_contManager.RefreshBanks();
    return m_pArbitration->RunArbitration(pInput, pOutput);
}

KiroResult CKIROCore::RunConvProcess(KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput)
{
    m_contManager.RefreshBanks();
    m_shortBlend.RunConvPreprocess(rInput);
    UpdateConvTriggers(rInput);
    m_pSCDManager->RunSCDetectors(kiroscenechangedetector::ConvergenceStart, IsFalse(rInput.bIsMeteringSkipped));
    std::copy(std::begin(rInput.sensitivities), std::end(rInput.sensitivities), m_currFrame.exposureTargets);
    m_currFrame.luxIndex    = rInput.luxIndex;
    const KiroResult result = m_pConvergence->RunConvProcesss(rInput, rOutput);

    rOutput.convergedShortBlend = m_shortBlend.RunConvPostprocess(rOutput);
    STATS_LOG_TRACE("output si %llu %llu %llu ADRC %.3f compensationDarkBoost %.3f convergedShortBlend %.3f return %d",
                    rOutput.exposures[0], rOutput.exposures[1], rOutput.exposures[2], rOutput.compensationADRC,
                    rOutput.compensationDarkBoost, rOutput.convergedShortBlend, result);
    return result;
}

VOID CKIROCore::RunConvSettle(KIROConvergenceOutput& rOutput)
{
    m_pConvergence->RunConvSettle(rOutput);
}

VOID CKIROCore::RunConvPostProcess(KIROConvergenceOutput& rOutput)
{
    m_pConvergence->RunConvPostProcess(rOutput);
}

VOID CKIROCore::HandleExposureConstraints(KIROConvergenceOutput& rOutput)
{
    m_pConvergence->HandleExposureConstraints(rOutput);
}

BOOL CKIROCore::IsFollowing() const
{
    const CKIROCamsync& rSync = *m_contManager.m_pCamSync;
    return (rSync.getExposureType() == kirosync::AECAlgoExposureFollow && rSync.getPeerInfo() != nullptr) ? TRUE
                                                                                                          : FALSE;
}

KiroResult CKIROCore::followMasterConvExposure(KIROConvergenceOutput& rConvOut)
{
    if (IsFollowing() == TRUE)
    {
        STATS_LOG_TRACE("Camera ID:%d is in follow mode. Overwrite convergence output.",
                        m_contManager.GetInput()->cameraInfo.cameraId);
        m_contManager.m_pCamSync->ComputeTargetExposureInFollowMode(rConvOut);
    }
    return 0;
}

KiroResult CKIROCore::runExtension(KIROExtensionInput& rInput, KIROExtensionOutput& rOutput)
{
    m_contManager.RefreshBanks();
    UpdateArbTriggers(rInput.pArbitrationOuts);
    const BOOL bStatsValid = IsFalse(rInput.statisticsStartup);
    m_pSCDManager->RunSCDetectors(kiroscenechangedetector::ExtensionStart, bStatsValid);
    for (UINT32 type = 0; rInput.pArbitrationOuts != nullptr && type < AECAlgoExposureCount; ++type)
    {
        m_currFrame.exposureSets[type] = rInput.pArbitrationOuts[type].exposureSet;
    }
    const KiroResult result = m_pExtension->RunExtension(rInput, rOutput);
    m_currFrame.bIsSeamless = rOutput.bIsSeamlessBinning;
    m_pFICManager->RunFICManager(rInput, rOutput);
    m_pSCDManager->RunSCDetectors(kiroscenechangedetector::ExtensionEnd, bStatsValid);
    return result;
}

KiroResult CKIROCore::runEndOfFrame(KIROFrameInfo& rFrameInfo, KIROPostProcessingInput&, KIROMeteringOutput& rMtrOut,
                                    KIROConvergenceOutput& rConvOut, KIROArbitrationOutput* pArbitrationOuts)
{
    CompleteCurrentFrame(rFrameInfo, rMtrOut, rConvOut, pArbitrationOuts);

    constexpr UINT64 snapshotEvents =
        ((1ULL << (AECCoreSnapshotAdvanced + 1)) - 1) & ~((1ULL << AECCoreSnapshotNormal) - 1);
    const bool isSnapshot = (m_contManager.GetContextStatus() & snapshotEvents) != 0;
    if (!isSnapshot || rFrameInfo.bStartup == TRUE)
    {
        (VOID) m_contManager.m_pHistory->SaveFrameToHistory(&m_currFrame);
        m_contManager.UpdateFrameCounters();
        m_pSCDManager->RunSCDetectors(kiroscenechangedetector::EndOfFrame, IsFalse(rMtrOut.bIsMeteringSkipped));
    }
    else
    {
        SaveSnapshot();
    }
    PopulateFrameHistoryDebugData();
    ShareFrame(rMtrOut, rConvOut, pArbitrationOuts);
    return 0;
}

/// What the sensor does for a flash is of no use to another camera.
VOID CKIROCore::ShareFrame(const KIROMeteringOutput& rMtrOut, const KIROConvergenceOutput& rConvOut,
                           const KIROArbitrationOutput* pArbitrationOuts)
{
    const SetInputData* pInput  = m_contManager.GetInput();
    const bool          isFlash = pInput->snapshotMode == KIROCoreSnapshotType::Flash ||
                         pInput->snapshotMode == KIROCoreSnapshotType::PrecisionFlash;
    if (isFlash && pInput->opMode == AECAlgoOperationModePreflash)
    {
        STATS_LOG_TRACE("Skip PopulateMultiCamInfo");
        return;
    }
    m_contManager.m_pCamSync->PopulateMultiCamInfo(rMtrOut, rConvOut, pArbitrationOuts);
}
