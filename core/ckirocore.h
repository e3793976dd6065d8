/// @file
/// The frame driver: owns every module of an instance and turns the host's calls, one per stage of a frame, into calls
/// on those modules. It decides no exposure itself.
#pragma once

#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/ckirocontextmanager.h"
#include "core/ckiromtrtablegen.h"
#include "core/ckiroscenechangedetector.h"
#include "core/ckiroshortblend.h"
#include "core/convergence/ckiromodconvergence.h"
#include "core/extension/cficmanager.h"
#include "core/extension/ckiromodextension.h"
#include "core/ikirocore.h"
#include "core/metering/ckiro1dvectormanager.h"
#include "core/metering/ckiroextmapmanager.h"
#include "core/metering/ckiromodmetering.h"
#include "core/statsprocessor/ckiromodstatsprocessor.h"

struct AECAlgoSnapshotConfig;
struct KIROAlgoParsedGetExposureOutput;

class CKIROCore final : public IKIROCore
{
public:
    CKIROCore(StatsTuningData& rTuningData, IKIRODebugData& rDebugData);

    /// What CKIROTriggerManager needs of an instance.
    IKIROContextManager& GetContextManager()
    {
        return m_contManager;
    }

    VOID       DestroyInstance() override;
    KiroResult setInput(KIROSetInput* pSetInputData) override;
    KiroResult setBankData(const KIROSetBankData* pModuleData) override;
    KiroResult setDynamicBankData(KIRODynamicDataOperationType operation, KIROBankIDType bankID, INT32 dataID) override;
    VOID       SetContextEvent(KIROTunaraEventType contextEvent, BOOL value) override;
    BOOL       GetContextEvent(KIROTunaraEventType contextEvent) override;
    UINT64     GetContextStatus() override;
    KiroResult getBankData(KIROGetBankData* pData) override;
    KiroResult setStats(KIROStatsList& rStats) override;
    KiroResult runStartOfFrame(UINT64 frameID) override;
    KiroResult runMeteringPreprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput) override;
    KiroResult runMeteringPostprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput) override;
    KiroResult runAnalyzer(UINT32 analyzerID, KIROAnalyzerOutput& rAnalyzerOut) override;
    KiroResult updateAnalyzerMgrOut(UINT32 analyzerID, KIROAnalyzerOutput* pAnalyzerIn) override;
    KiroResult RunConvProcess(KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput) override;
    VOID       RunConvSettle(KIROConvergenceOutput& rOutput) override;
    VOID       RunConvPostProcess(KIROConvergenceOutput& rOutput) override;
    VOID       HandleExposureConstraints(KIROConvergenceOutput& rOutput) override;
    KiroResult runArbitration(KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput) override;
    KiroResult runExtension(KIROExtensionInput& rInput, KIROExtensionOutput& rOutput) override;
    KiroResult getFlashCurrent(const KIROAlgoFlashInput* pFlashIn, KIROAlgoFlashOutput* pFlashOut) override;
    BOOL       isPreflashMeteringNeeded(const KIROCntStatsOut* pFlashOffStats, UINT32 offStatsNum,
                                        const KIROCntStatsOut* pFlashLowStats, UINT32 lowStatsNum) override;
    KiroResult runEndOfFrame(KIROFrameInfo& rFrameInfo, KIROPostProcessingInput& rInput, KIROMeteringOutput& rMtrOut,
                             KIROConvergenceOutput& rConvOut, KIROArbitrationOutput* pArbitrationOuts) override;
    KiroResult mixMetering(KIROMeteringOutput& rOutput) override;
    KiroResult followMasterConvExposure(KIROConvergenceOutput& rConvOut) override;
    KiroResult queryMetaData(AECAlgoGetParam* pQuery) override;
    KiroResult GetStartUpExposure(KIROAlgoStartExposureInfo* pStartInfo) override;
    INT32      GetFlashMaxCurrent() override;
    AECAlgoFlashCalibrationData GetFlashCalibInfo() override;
    VOID                        RebaseSCD(UINT32 id) override;
    BOOL                        GetSCDOutput(UINT32 id, KIROSCDOutput& rSCDOutput) override;
    UINT32                      GetFICData(VOID* pFICData) override;
    VOID run1DVectorProcess(kiroglobalelements::VectorProcessorUsageType type, UINT32 sampleCount) override;
    VOID reset1DVectorProcessors(kiroglobalelements::VectorProcessorUsageType type) override;
    VOID SetMeteringLock(BOOL bLock) override;

private:
    VOID SetDefaultTriggers();
    VOID CreateModules();
    VOID ResetDataBankBeforeMetering();
    bool ResetStretchEntry(const DataBankType& rEntry);
    VOID LogAdvancedInfo();
    VOID UpdateTorchAndDepthEvents(const KIROStatsList& rStats);
    VOID UpdateConvTriggers(const KIROConvergenceInput& rConvInput);
    VOID UpdateArbTriggers(const KIROArbitrationOutput* pArbitrationOuts);
    VOID PublishLoggedTrigger(const CHAR* pStage, KIROTriggerType id, FLOAT value, const CHAR* pDescription);
    VOID CompleteCurrentFrame(const KIROFrameInfo& rFrameInfo, const KIROMeteringOutput& rMtrOut,
                              const KIROConvergenceOutput& rConvOut, const KIROArbitrationOutput* pArbitrationOuts);
    VOID SaveSnapshot();
    VOID ShareFrame(const KIROMeteringOutput& rMtrOut, const KIROConvergenceOutput& rConvOut,
                    const KIROArbitrationOutput* pArbitrationOuts);
    VOID UpdateFlashExposureIncrease();
    BOOL IsSHDROrMFHDR();
    VOID HoldBracketExposures(const KIROMeteringInput& rInput, KIROMeteringOutput& rOutput);
    BOOL IsFollowing() const;

    KiroResult             PreflashStartUpExposure(KIROAlgoStartExposureInfo& rStartInfo);
    KiroResult             PreviousModeStartUpExposure(KIROAlgoStartExposureInfo& rStartInfo);
    KiroResult             FollowStartUpExposure(KIROAlgoStartExposureInfo& rStartInfo);
    KiroResult             LightSensorStartUpExposure(KIROAlgoStartExposureInfo* pStartInfo);
    const AECFrameHistory* FindLastPreviewFrame(AECFrameHistory& rPrevMode) const;

    KiroResult QueryEVCapabilities(const AECAlgoGetParam& rGetParam);
    KiroResult QueryPeerInfo(const AECAlgoGetParam& rGetParam);
    KiroResult QuerySnapshot(const AECAlgoGetParam& rGetParam);
    VOID       QuerySnapshotExposure(const AECAlgoSnapshotConfig* pConfig, KIROAlgoParsedGetExposureOutput* pOutput);

    VOID PopulateStatsDebugData(const KIROStatsList& rStats);
    VOID PopulateMeteringDebugData(const KIROMeteringOutput& rOutput);
    VOID PopulateFrameHistoryDebugData();

    FLOAT TriggerValue(KIROTriggerType id) const
    {
        return m_contManager.m_pBankManager->GetDataTriggers(id)->value;
    }

    // Destroyed last first: the stats processor, metering and the other modules, the short blend, and the context
    // behind them all.
    CKIROContextManager           m_contManager;
    CKIROShortBlend               m_shortBlend;
    TavoPtr<CFICManager>          m_pFICManager;
    TavoPtr<CKIRO1DVectorManager> m_p1DVectorManager;
    TavoPtr<CSCDManager>          m_pSCDManager;
    TavoPtr<CKIROExtMapManager>   m_pExtMapManager;
    TavoPtr<CKIROMtrTableGen>     m_pMtrTableGen;
    TavoPtr<CKIROExtension>       m_pExtension;
    TavoPtr<CKIROArbitration>     m_pArbitration;
    TavoPtr<CKIROConvergence>     m_pConvergence;
    TavoPtr<CKIROMetering>        m_pMetering;
    TavoPtr<CKIROStatsProcessor>  m_pStatsProcessor;
    AECFrameHistory               m_currFrame;         ///< the frame being assembled
    DBFloatPayload                m_flashExpIncrease;  ///< exposure increase of precision flash

    // Of the safe exposure: in the last frame, in the frame whose statistics are looked at, and of the target.
    exposurearithmetic::SteadyIndex m_prevIndex;
    exposurearithmetic::SteadyIndex m_matchIndex;
    exposurearithmetic::SteadyIndex m_targetIndex;
};
