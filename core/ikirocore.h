/// @file
/// The abstract instance behind the function table; see interface/ikirocorealgo.h for the contract of each operation.
#pragma once

#include "interface/ikirocorealgo.h"

class IKIROCore
{
public:
    virtual ~IKIROCore() = default;

    /// Destroys and frees the instance.
    virtual VOID       DestroyInstance()                                                                   = 0;
    virtual KiroResult setInput(KIROSetInput* pSetInputData)                                               = 0;
    virtual KiroResult setBankData(const KIROSetBankData* pModuleData)                                     = 0;
    virtual KiroResult setDynamicBankData(KIRODynamicDataOperationType operation, KIROBankIDType bankID,
                                          INT32 dataID)                                                    = 0;
    virtual VOID       SetContextEvent(KIROTunaraEventType contextEvent, BOOL value)                       = 0;
    virtual BOOL       GetContextEvent(KIROTunaraEventType contextEvent)                                   = 0;
    virtual UINT64     GetContextStatus()                                                                  = 0;
    virtual KiroResult getBankData(KIROGetBankData* pData)                                                 = 0;
    virtual KiroResult setStats(KIROStatsList& rStats)                                                     = 0;
    virtual KiroResult runStartOfFrame(UINT64 frameID)                                                     = 0;
    virtual KiroResult runMeteringPreprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)       = 0;
    virtual KiroResult runMeteringPostprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput)      = 0;
    virtual KiroResult runAnalyzer(UINT32 analyzerID, KIROAnalyzerOutput& rAnalyzerOut)                    = 0;
    virtual KiroResult updateAnalyzerMgrOut(UINT32 analyzerID, KIROAnalyzerOutput* pAnalyzerIn)            = 0;
    virtual KiroResult RunConvProcess(KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput)        = 0;
    virtual VOID       RunConvSettle(KIROConvergenceOutput& rOutput)                                       = 0;
    virtual VOID       RunConvPostProcess(KIROConvergenceOutput& rOutput)                                  = 0;
    virtual VOID       HandleExposureConstraints(KIROConvergenceOutput& rOutput)                           = 0;
    virtual KiroResult runArbitration(KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput)        = 0;
    virtual KiroResult runExtension(KIROExtensionInput& rInput, KIROExtensionOutput& rOutput)              = 0;
    virtual KiroResult getFlashCurrent(const KIROAlgoFlashInput* pFlashIn, KIROAlgoFlashOutput* pFlashOut) = 0;
    virtual BOOL       isPreflashMeteringNeeded(const KIROCntStatsOut* pFlashOffStats, UINT32 offStatsNum,
                                                const KIROCntStatsOut* pFlashLowStats, UINT32 lowStatsNum) = 0;
    virtual KiroResult runEndOfFrame(KIROFrameInfo& rFrameInfo, KIROPostProcessingInput& rInput,
                                     KIROMeteringOutput& rMtrOut, KIROConvergenceOutput& rConvOut,
                                     KIROArbitrationOutput* pArbitrationOuts)                              = 0;
    virtual KiroResult mixMetering(KIROMeteringOutput& rOutput)                                            = 0;
    virtual KiroResult followMasterConvExposure(KIROConvergenceOutput& rConvOut)                           = 0;
    virtual KiroResult queryMetaData(AECAlgoGetParam* pQuery)                                              = 0;
    virtual KiroResult GetStartUpExposure(KIROAlgoStartExposureInfo* pStartInfo)                           = 0;
    virtual INT32      GetFlashMaxCurrent()                                                                = 0;
    virtual AECAlgoFlashCalibrationData GetFlashCalibInfo()                                                = 0;
    virtual VOID                        RebaseSCD(UINT32 id)                                               = 0;
    virtual BOOL                        GetSCDOutput(UINT32 id, KIROSCDOutput& rSCDOutput)                 = 0;
    virtual UINT32                      GetFICData(VOID* pFICData)                                         = 0;
    virtual VOID run1DVectorProcess(kiroglobalelements::VectorProcessorUsageType type, UINT32 sampleCount) = 0;
    virtual VOID reset1DVectorProcessors(kiroglobalelements::VectorProcessorUsageType type)                = 0;
    virtual VOID SetMeteringLock(BOOL bLock)                                                               = 0;
};
