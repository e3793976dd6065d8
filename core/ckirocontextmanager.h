/// @file
/// What the host has told the core, and the context status from which the banks select their data.
#pragma once

#include "core/ikirocontextmanager.h"
#include "parameters/tuningmode.h"

class CFICManager;
class CSCDManager;

/// Tuning selectors of one mode path, as last seen.
struct AECTuningMode
{
    UINT32 value;
};

class CKIROContextManager final : public IKIROContextManager
{
public:
    static constexpr UINT32 TuningSelectorCount = 7;

    explicit CKIROContextManager(IKIRODebugData& rDebugData);

    const SetInputData* GetInput() override;
    UINT64              GetContextStatus() override;
    /// Sets the bit when value is 1 and clears it for any other value.
    VOID            SetContextEvent(KIROTunaraEventType event, BOOL value) override;
    BOOL            GetContextEvent(KIROTunaraEventType event) override;
    VOID            SetMaxFlashCurrent(INT32 current) override;
    VOID            UpdateFrameCounters() override;
    VOID            RebaseSCD(UINT32 id) override;
    BOOL            GetSCDOutput(UINT32 id, KIROSCDOutput& rOutput) override;
    IKIRODebugData& GetDebugDataInfo() override;
    VOID            SetMeteringLock(BOOL bLock) override;
    KIROFICInfo     GetFICInfo() override;

    // The driver's, set once they have been made; null before that.
    VOID SetSCDManager(CSCDManager* pSCDManager);
    VOID SetFICManager(CFICManager* pFICManager);

    /// Behind setInput, but for the refresh of the banks.
    KiroResult SetInput(const KIROSetInput* pSetInput);

    /// Takes a tuning handle, at creation and for AECAlgoSetParamTunaraData. Of a store whose file has changed or
    /// gone, modes that are not in memory cannot be had. @return 0
    KiroResult SetTunara(StatsTuningData& rTuningData);

    VOID RunContextStartOfFrame();

    /// Runs the bank start of frame if the context status has changed since the last one.
    VOID RefreshBanks();

    /// @return 1 when the selectors differ from those of the last call
    BOOL IsTuningModeChange(const StatsTuningData* pTuningData);

private:
    struct ParamHandler;

    static const ParamHandler* FindHandler(AECAlgoSetParamType type);

    VOID KeepReadablePath();

    KiroResult SetInternalParam(const KIROCoreSetParam* pParam);
    KiroResult SetPEKInput(const AECAlgoSetParam* pParam);

    // One per setting: Set<type>, answers the result of setInput and may set m_bResetFrameSkip.
#define SETTING(name, Payload) KiroResult Set##name(const Payload& rNew, const CHAR* pName);
#define UNREAD(name, size)
    AEC_SET_PARAMS(SETTING, SETTING, UNREAD)
#undef UNREAD
#undef SETTING

    KiroResult SetAlgoOpMode(AECAlgoOperationModeType mode);
    KiroResult SetEVVal(INT32 value);

    VOID UpdateContext(const KIROSetInput* pSetInput);
    VOID UpdateContextOfParam(AECAlgoSetParamType type);
    VOID UpdateContextOfSnapshot();
    VOID UpdateOpModeEvents();
    VOID UpdateFlashMeasurementEvents();
    VOID UpdateManualEvents();
    VOID UpdateHDREvents();
    VOID ReplaceEvents(UINT64 mask, UINT64 events);

    SetInputData    m_setInputData;
    CSCDManager*    m_pSCDManager;
    CFICManager*    m_pFICManager;
    IKIRODebugData& m_rDebugData;
    AECTuningMode   m_currentTuningMode[TuningSelectorCount];
    FLOAT           m_calRGRatios[AECAlgoFlashCalibrationCountMax];
    FLOAT           m_calBGRatios[AECAlgoFlashCalibrationCountMax];
    StatsTuningData m_readTuning;                     ///< the last one whose modes could be read
    TuningMode      m_readPath[TuningSelectorCount];  ///< its selectors: those of the host may be others by now
    bool            m_isLossTold;                     ///< that the path which the host has set last cannot be read
};
