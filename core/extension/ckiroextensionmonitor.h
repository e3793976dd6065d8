/// @file
/// What the host needs to know of a frame for capture decisions (interface/kiroextension.h). It also holds the
/// exposures of a bracketing session steady while the scene stays the same; without the tuning module nothing is held.
#pragma once

#include "core/base/tuningdriven.h"
#include "core/extension/ckirogeneralizedmonitor.h"
#include "interface/kiroextension.h"
#include "interface/kiroframe.h"

class CKIROExtensionMonitor
{
public:
    explicit CKIROExtensionMonitor(IKIROContextManager& rContext);

    /// Per frame, after arbitration. @return 0
    KiroResult Process(const KIROExtensionInput& rExtIn, KIROExtensionOutput& rExtOut);

    /// Replaces the targets of a bracketing frame by those that were held for the sign of its EV, and the bracket EV by
    /// the one that goes with them; or, while nothing is held, takes both as the new ones.
    /// @param pExposures three, by AECAlgoExposureType
    /// @return 1 when the targets were replaced
    BOOL GetBracketLockedExposure(UINT64* pExposures, BOOL bStatsValid);

    /// Copies the stretch of the last frame. @param pHistStretchData may be null
    VOID GetHistStretchData(AECYHistStretchData* pHistStretchData) const;

private:
    using Tuning = kiroextension::KIROExtensionType;

    enum EVBrktCriteriaState : INT32
    {
        CriteriaNotChecked   = 0,
        CriteriaSatisfied    = 1,
        CriteriaNotSatisfied = 2
    };

    /// Signs of a bracket EV: negative, zero, positive.
    static constexpr UINT32 BrktSlotCount = 3;

    /// Fetches the tuning; another one than before ends what both monitors hold of the old.
    Tuning* RefreshTuning();
    VOID    ForgetMonitors();
    FLOAT   TriggerValue(KIROTriggerType id) const;

    VOID ProcessFlashFlags(const kiroextension::ExtensionFlagFlash& rTuning);
    VOID ProcessLLSFlags(const kiroextension::ExtensionFlagLLS& rTuning);

    // Histogram stretch.
    VOID ProcessYHistStretch(const KIROExtensionInput& rExtIn, const kiroextension::ExtensionYHistStretch& rTuning);
    bool ReadStretch(const kiroextension::ExtensionYHistStretch& rTuning, FLOAT& rClamp, FLOAT& rScaling);
    bool ReadStretchEntry(const DataBankType& rEntry, FLOAT& rValue);
    VOID FilterStretch(FLOAT clamp, FLOAT scaling, FLOAT strength);
    VOID ResetStretch();

    // Snapshot of three exposures.
    VOID Get3HDRSnapshotInfo(const KIROExtensionInput* pExtensionInput, const Tuning* pTuning);
    VOID Run3HDRMonitor(const kiroextension::ExtensionMonitor3HDRSnapshot& rTuning);
    VOID Report3HDRScenes(UINT32 sceneCount);

    // Bracket lock.
    bool    IsBrktLockSatisfied(const kiroextension::ExtensionMonitorEVBracketLock& rTuning, UINT64 elapsed);
    UINT32  GetBrktSlot() const;
    UINT64* GetBrktRebasedExposure();
    VOID    RebaseBrktEVVal();
    VOID    OverwriteBrktEVVal();

    IKIROContextManager&      m_rContext;
    TuningDriven<Tuning>      m_tuning;
    FLOAT                     m_luxIndex;
    AECAlgoLEDModeType        m_LEDMode;
    AECAlgoOperationModeType  m_opMode;
    KIROExtFlagsMonitorOutput m_flagOutput;
    BOOL                      m_bFlashNeededTriggerStatus;
    BOOL                      m_bDelayNeededForFDTriggerStatus;
    AECYHistStretchData       m_histStrechData;
    UINT32                    m_3HDRFrameCount;  ///< passing frames in a row
    KIROExt3HDRMonitorOutput  m_3HDROut;
    CKIROGeneralizedMonitor   m_3HDRMonitor;
    CKIROGeneralizedMonitor   m_brktEVLockMonitor;
    UINT64                    m_brktEVExp[BrktSlotCount][AECAlgoExposureCount];
    FLOAT                     m_brktEVVal[BrktSlotCount];
    EVBrktCriteriaState       m_brktCriteriaState;
    UINT64                    m_prevBrktFrameID;  ///< frame of the last check
};
