/// @file
/// The function table of the exposure core: all that a host calls.
#pragma once

#include "interface/ikirodebugdata.h"
#include "interface/kirobankdata.h"
#include "interface/kiroextension.h"
#include "interface/kiroframe.h"
#include "interface/kirosetinput.h"
#include "interface/kirotriggerdata.h"
#include "interface/statstuningdata.h"
#include "platform/tavocommonutils.h"

class IKIROCore;
struct AECAlgoGetParam;
struct KIROAlgoStartExposureInfo;

/// One table per instance. Every function takes the table first. A null table or instance yields 4 (KiroResult),
/// -1 (GetFlashMaxCurrent), 0 (BOOL and counts) or has no effect. The host serialises all calls on one instance.
struct IKIROCoreAlgo
{
    IKIROCore* pCore;

    /// Needs no instance: pAlgo may be null. @return null when out of memory; released by DestoryInstance
    CKIROTriggerDataXML* (*createDataXml)(IKIROCoreAlgo* pAlgo, KIROMLDataType xmlType);
    KiroResult (*runStartOfFrame)(IKIROCoreAlgo* pAlgo, UINT64 frameID);
    KiroResult (*runMeteringPreprocess)(IKIROCoreAlgo* pAlgo, KIROMeteringInput& rInput, KIROMeteringOutput& rOutput);
    KiroResult (*runAnalyzer)(IKIROCoreAlgo* pAlgo, UINT32 analyzerID, KIROAnalyzerOutput& rAnalyzerOut);
    KiroResult (*updateAnalyzerMgrOut)(IKIROCoreAlgo* pAlgo, UINT32 analyzerID, KIROAnalyzerOutput* pAnalyzerIn);
    KiroResult (*runMeteringPostprocess)(IKIROCoreAlgo* pAlgo, KIROMeteringInput& rInput, KIROMeteringOutput& rOutput);
    KiroResult (*mixMetering)(IKIROCoreAlgo* pAlgo, KIROMeteringOutput& rOutput);
    KiroResult (*runExtension)(IKIROCoreAlgo* pAlgo, KIROExtensionInput& rInput, KIROExtensionOutput& rOutput);
    KiroResult (*runEndOfFrame)(IKIROCoreAlgo* pAlgo, KIROFrameInfo& rFrameInfo, KIROPostProcessingInput& rInput,
                                KIROMeteringOutput& rMtrOut, KIROConvergenceOutput& rConvOut,
                                KIROArbitrationOutput* pArbitrationOuts);
    KiroResult (*followMasterConvExposure)(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rConvOut);
    KiroResult (*getBankData)(IKIROCoreAlgo* pAlgo, KIROGetBankData* pData);
    MNKResult (*setInput)(IKIROCoreAlgo* pAlgo, KIROSetInput* pSetInputData);
    KiroResult (*setStats)(IKIROCoreAlgo* pAlgo, KIROStatsList& rStats);
    KiroResult (*setBankData)(IKIROCoreAlgo* pAlgo, const KIROSetBankData* pModuleData);
    INT32 (*GetFlashMaxCurrent)(IKIROCoreAlgo* pAlgo);
    AECAlgoFlashCalibrationData (*GetFlashCalibInfo)(IKIROCoreAlgo* pAlgo);
    KiroResult (*getFlashCurrent)(IKIROCoreAlgo* pAlgo, const KIROAlgoFlashInput* pFlashIn,
                                  KIROAlgoFlashOutput* pFlashOut);
    BOOL(*isPreflashMeteringNeeded)
    (IKIROCoreAlgo* pAlgo, const KIROCntStatsOut* pFlashOffStats, UINT32 offStatsNum,
     const KIROCntStatsOut* pFlashLowStats, UINT32 lowStatsNum);
    KiroResult (*GetStartUpExposure)(IKIROCoreAlgo* pAlgo, KIROAlgoStartExposureInfo* pStartInfo);
    KiroResult (*queryMetaData)(IKIROCoreAlgo* pAlgo, AECAlgoGetParam* pQuery);
    KiroResult (*runArbitration)(IKIROCoreAlgo* pAlgo, KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput);
    KiroResult (*RunConvProcess)(IKIROCoreAlgo* pAlgo, KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput);
    VOID (*RunConvSettle)(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput);
    VOID (*RunConvPostProcess)(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput);
    VOID (*HandleExposureConstraints)(IKIROCoreAlgo* pAlgo, KIROConvergenceOutput& rOutput);
    /// Destroys the instance. The table's memory stays allocated and must not be called through again.
    VOID (*DestroyInstance)(IKIROCoreAlgo* pAlgo);
    KiroResult (*setDynamicBankData)(IKIROCoreAlgo* pAlgo, KIRODynamicDataOperationType operation,
                                     KIROBankIDType bankID, INT32 dataID);
    UINT64 (*GetContextStatus)(IKIROCoreAlgo* pAlgo);
    VOID (*SetContextEvent)(IKIROCoreAlgo* pAlgo, KIROTunaraEventType contextEvent, BOOL value);
    BOOL (*GetContextEvent)(IKIROCoreAlgo* pAlgo, KIROTunaraEventType contextEvent);
    VOID(*run1DVectorProcess)
    (IKIROCoreAlgo* pAlgo, kiroglobalelements::VectorProcessorUsageType type, UINT32 sampleCount);
    VOID (*reset1DVectorProcessors)(IKIROCoreAlgo* pAlgo, kiroglobalelements::VectorProcessorUsageType type);
    VOID (*SetMeteringLock)(IKIROCoreAlgo* pAlgo, const BOOL bLock);
    VOID (*RebaseSCD)(IKIROCoreAlgo* pAlgo, const UINT32 id);
    BOOL (*GetSCDOutput)(IKIROCoreAlgo* pAlgo, const UINT32 id, KIROSCDOutput& rSCDOutput);
    UINT32 (*GetFICData)(IKIROCoreAlgo* pAlgo, VOID* pFICData);
};

enum AECAlgoCreateParamsType : INT32
{
    AECAlgoCreateParamsInvalid                = -1,
    AECAlgoCreateParamsLoggerFunctionPtr      = 0,
    AECAlgoCreateParamTypeSessionHandle       = 1,
    AECAlgoCreateParamTypeCameraOpenIndicator = 2,
    AECAlgoCreateParamTypeCameraInfo          = 3,
    AECCreateParamsTypeTuningData             = 4,
    AECAlgoCreateParamTypeCount               = 5,
    AECAlgoCreateParamsMax                    = 2147483647
};

struct AECAlgoCreateParam
{
    VOID*                   pCreateParam;
    UINT32                  sizeOfCreateParam;  ///< bytes
    AECAlgoCreateParamsType createParamType;
};

/// The logger must stand first and be present.
struct AECAlgoCreateParamList
{
    AECAlgoCreateParam* pCreateParamList;
    UINT32              numberOfCreateParams;
};

/// The host's logging function. group is always 2; level is 2 (errors), 4 (warnings), 16 (rare information) or
/// 32 (trace). The host filters.
typedef VOID (*StatsLogger)(const CHAR* pFileName, INT32 line, const CHAR* pFunctionName, UINT32 group, UINT32 level,
                            const CHAR* pFormat, ...);

/// Taken from the create parameters; null until the first instance with a logger has been created.
extern "C" TAVO_VISIBLE StatsLogger gStatsLogger;

/// The one entry point of the library.
/// @param rpCore receives the table, null on failure
/// @return 0, or 8 when no memory is left for the table
extern "C" TAVO_VISIBLE MNKResult CreateKiroCoreAlgo(StatsTuningData& rTuningData, IKIRODebugData& rDebugData,
                                                     const AECAlgoCreateParamList& rCreateParamList,
                                                     IKIROCoreAlgo*&               rpCore);
