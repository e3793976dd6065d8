// The functions behind the table: each tests the table and the instance and forwards to the operation of the same name.
// Nothing here allocates or logs on the per-frame path.

#include "core/base/kirolog.h"
#include "core/base/kiroresults.h"
#include "core/ckirocorefactory.h"

namespace
{

constexpr INT32 NoFlashCurrent = -1;

bool HasInstance(const IKIROCoreAlgo* pAlgo)
{
    return pAlgo != nullptr && pAlgo->pCore != nullptr;
}

KiroResult LIBrunStartOfFrame(IKIROCoreAlgo* pAlgo, UINT64 frameID)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->runStartOfFrame(frameID) : ResultInvalidArgument;
}

KiroResult LIBrunMeteringPreprocess(IKIROCoreAlgo* pAlgo, KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->runMeteringPreprocess(rInput, rOutput) : ResultInvalidArgument;
}

KiroResult LIBrunAnalyzer(IKIROCoreAlgo* pAlgo, UINT32 analyzerID, KIROAnalyzerOutput& rAnalyzerOut)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->runAnalyzer(analyzerID, rAnalyzerOut) : ResultInvalidArgument;
}

KiroResult LIBupdateAnalyzerMgrOut(IKIROCoreAlgo* pAlgo, UINT32 analyzerID, KIROAnalyzerOutput* pAnalyzerIn)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->updateAnalyzerMgrOut(analyzerID, pAnalyzerIn) : ResultInvalidArgument;
}

KiroResult LIBrunMeteringPostprocess(IKIROCoreAlgo* pAlgo, KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->runMeteringPostprocess(rInput, rOutput) : ResultInvalidArgument;
}

KiroResult LIBmixMetering(IKIROCoreAlgo* pAlgo, KIROMeteringOutput& rOutput)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->mixMetering(rOutput) : ResultInvalidArgument;
}

KiroResult LIBrunExtension(IKIROCoreAlgo* pAlgo, KIROExtensionInput& rInput, KIROExtensionOutput& rOutput)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->runExtension(rInput, rOutput) : ResultInvalidArgument;
}

KiroResult LIBrunEndOfFrame(IKIROCoreAlgo* pAlgo, KIROFrameInfo& rFrameInfo, KIROPostProcessingInput& rInput,
                            KIROMeteringOutput& rMtrOut, KIROConvergenceOutput& rConvOut,
                            KIROArbitrationOutput* pArbitrationOuts)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->runEndOfFrame(rFrameInfo, rInput, rMtrOut, rConvOut, pArbitrationOuts)
                              : ResultInvalidArgument;
}

KiroResult LIBfollowMasterConvExposure(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rConvOut)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->followMasterConvExposure(rConvOut) : ResultInvalidArgument;
}

KiroResult LIBgetBankData(IKIROCoreAlgo* pAlgo, KIROGetBankData* pData)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->getBankData(pData) : ResultInvalidArgument;
}

MNKResult LIBsetInput(IKIROCoreAlgo* pAlgo, KIROSetInput* pSetInputData)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->setInput(pSetInputData) : ResultInvalidArgument;
}

KiroResult LIBsetStats(IKIROCoreAlgo* pAlgo, KIROStatsList& rStats)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->setStats(rStats) : ResultInvalidArgument;
}

KiroResult LIBsetBankData(IKIROCoreAlgo* pAlgo, const KIROSetBankData* pModuleData)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->setBankData(pModuleData) : ResultInvalidArgument;
}

INT32 LIBGetFlashMaxCurrent(IKIROCoreAlgo* pAlgo)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->GetFlashMaxCurrent() : NoFlashCurrent;
}

AECAlgoFlashCalibrationData LIBGetFlashCalibInfo(IKIROCoreAlgo* pAlgo)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->GetFlashCalibInfo() : AECAlgoFlashCalibrationData{};
}

KiroResult LIBgetFlashCurrent(IKIROCoreAlgo* pAlgo, const KIROAlgoFlashInput* pFlashIn, KIROAlgoFlashOutput* pFlashOut)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->getFlashCurrent(pFlashIn, pFlashOut) : ResultInvalidArgument;
}

BOOL LIBisPreflashMeteringNeeded(IKIROCoreAlgo* pAlgo, const KIROCntStatsOut* pFlashOffStats, UINT32 offStatsNum,
                                 const KIROCntStatsOut* pFlashLowStats, UINT32 lowStatsNum)
{
    return HasInstance(pAlgo)
               ? pAlgo->pCore->isPreflashMeteringNeeded(pFlashOffStats, offStatsNum, pFlashLowStats, lowStatsNum)
               : FALSE;
}

KiroResult LIBGetStartUpExposure(IKIROCoreAlgo* pAlgo, KIROAlgoStartExposureInfo* pStartInfo)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->GetStartUpExposure(pStartInfo) : ResultInvalidArgument;
}

KiroResult LIBqueryMetaData(IKIROCoreAlgo* pAlgo, AECAlgoGetParam* pQuery)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->queryMetaData(pQuery) : ResultInvalidArgument;
}

KiroResult LIBrunArbitration(IKIROCoreAlgo* pAlgo, KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->runArbitration(pInput, pOutput) : ResultInvalidArgument;
}

KiroResult LIBRunConvProcess(IKIROCoreAlgo* pAlgo, KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->RunConvProcess(rInput, rOutput) : ResultInvalidArgument;
}

VOID LIBRunConvSettle(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput)
{
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->RunConvSettle(rOutput);
    }
}

VOID LIBRunConvPostProcess(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput)
{
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->RunConvPostProcess(rOutput);
    }
}

VOID LIBHandleExposureConstraints(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput)
{
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->HandleExposureConstraints(rOutput);
    }
}

/// Neither clears pCore nor releases the table: hosts may still hold its address.
VOID LIBDestroyInstance(IKIROCoreAlgo* pAlgo)
{
    SYSTEM_LOG_VERBOSE("LIBDestroyInstance in:");
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->DestroyInstance();
    }
}

KiroResult LIBsetDynamicBankData(IKIROCoreAlgo* pAlgo, KIRODynamicDataOperationType operation, KIROBankIDType bankID,
                                 INT32 dataID)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->setDynamicBankData(operation, bankID, dataID) : ResultInvalidArgument;
}

UINT64 LIBGetContextStatus(IKIROCoreAlgo* pAlgo)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->GetContextStatus() : 0;
}

VOID LIBSetContextEvent(IKIROCoreAlgo* pAlgo, KIROTunaraEventType contextEvent, BOOL value)
{
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->SetContextEvent(contextEvent, value);
    }
}

BOOL LIBGetContextEvent(IKIROCoreAlgo* pAlgo, KIROTunaraEventType contextEvent)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->GetContextEvent(contextEvent) : FALSE;
}

VOID LIBrun1DVectorProcess(IKIROCoreAlgo* pAlgo, kiroglobalelements::VectorProcessorUsageType type, UINT32 sampleCount)
{
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->run1DVectorProcess(type, sampleCount);
    }
}

VOID LIBreset1DVectorProcessors(IKIROCoreAlgo* pAlgo, kiroglobalelements::VectorProcessorUsageType type)
{
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->reset1DVectorProcessors(type);
    }
}

VOID LIBSetMeteringLock(IKIROCoreAlgo* pAlgo, const BOOL bLock)
{
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->SetMeteringLock(bLock);
    }
}

VOID LIBRebaseSCD(IKIROCoreAlgo* pAlgo, const UINT32 id)
{
    if (HasInstance(pAlgo))
    {
        pAlgo->pCore->RebaseSCD(id);
    }
}

BOOL LIBGetSCDOutput(IKIROCoreAlgo* pAlgo, const UINT32 id, KIROSCDOutput& rSCDOutput)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->GetSCDOutput(id, rSCDOutput) : FALSE;
}

UINT32 LIBGetFICData(IKIROCoreAlgo* pAlgo, VOID* pFICData)
{
    return HasInstance(pAlgo) ? pAlgo->pCore->GetFICData(pFICData) : 0;
}

}  // namespace

VOID SetCoreFunctions(IKIROCoreAlgo& rAlgo)
{
    rAlgo.createDataXml             = KIROCreateTriggerDataInst;
    rAlgo.runStartOfFrame           = LIBrunStartOfFrame;
    rAlgo.runMeteringPreprocess     = LIBrunMeteringPreprocess;
    rAlgo.runAnalyzer               = LIBrunAnalyzer;
    rAlgo.updateAnalyzerMgrOut      = LIBupdateAnalyzerMgrOut;
    rAlgo.runMeteringPostprocess    = LIBrunMeteringPostprocess;
    rAlgo.mixMetering               = LIBmixMetering;
    rAlgo.runExtension              = LIBrunExtension;
    rAlgo.runEndOfFrame             = LIBrunEndOfFrame;
    rAlgo.followMasterConvExposure  = LIBfollowMasterConvExposure;
    rAlgo.getBankData               = LIBgetBankData;
    rAlgo.setInput                  = LIBsetInput;
    rAlgo.setStats                  = LIBsetStats;
    rAlgo.setBankData               = LIBsetBankData;
    rAlgo.GetFlashMaxCurrent        = LIBGetFlashMaxCurrent;
    rAlgo.GetFlashCalibInfo         = LIBGetFlashCalibInfo;
    rAlgo.getFlashCurrent           = LIBgetFlashCurrent;
    rAlgo.isPreflashMeteringNeeded  = LIBisPreflashMeteringNeeded;
    rAlgo.GetStartUpExposure        = LIBGetStartUpExposure;
    rAlgo.queryMetaData             = LIBqueryMetaData;
    rAlgo.runArbitration            = LIBrunArbitration;
    rAlgo.RunConvProcess            = LIBRunConvProcess;
    rAlgo.RunConvSettle             = LIBRunConvSettle;
    rAlgo.RunConvPostProcess        = LIBRunConvPostProcess;
    rAlgo.HandleExposureConstraints = LIBHandleExposureConstraints;
    rAlgo.DestroyInstance           = LIBDestroyInstance;
    rAlgo.setDynamicBankData        = LIBsetDynamicBankData;
    rAlgo.GetContextStatus          = LIBGetContextStatus;
    rAlgo.SetContextEvent           = LIBSetContextEvent;
    rAlgo.GetContextEvent           = LIBGetContextEvent;
    rAlgo.run1DVectorProcess        = LIBrun1DVectorProcess;
    rAlgo.reset1DVectorProcessors   = LIBreset1DVectorProcessors;
    rAlgo.SetMeteringLock           = LIBSetMeteringLock;
    rAlgo.RebaseSCD                 = LIBRebaseSCD;
    rAlgo.GetSCDOutput              = LIBGetSCDOutput;
    rAlgo.GetFICData                = LIBGetFICData;
}
