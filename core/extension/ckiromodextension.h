/// @file
/// What happens after arbitration: the flags for capture decisions, the switch between the binned and the full mode of
/// a hybrid HDR sensor, and the currents of the flash.
#pragma once

#include "core/extension/ckiroextensionmonitor.h"
#include "core/modulecommon.h"
#include "schema/kirohdrsensor.h"

class CFlashCurrentEstimator;

class CKIROExtension : public ModuleCommon
{
public:
    CKIROExtension(InstanceTuning& rTuningData, IKIROContextManager& rContextManager);
    ~CKIROExtension();

    /// Per frame, after arbitration. @return 0
    KiroResult RunExtension(KIROExtensionInput& rInput, KIROExtensionOutput& rOutput);

    /// Answers getFlashCurrent: see KIROAlgoFlashOutput.
    KiroResult GetFlashCurrent(const KIROAlgoFlashInput* pIn, KIROAlgoFlashOutput* pOut);

    CKIROExtensionMonitor& GetFlagsMonitor()
    {
        return m_flagsMonitor;
    }

private:
    /// What decides on a switch of the sensor's mode.
    struct SwitchState
    {
        FLOAT  threshold;  ///< ADRC above which the full mode is due
        FLOAT  ratio;      ///< the present ADRC
        UINT64 frameID;
        UINT64 stable;  ///< frames since the last switch
    };

    VOID  PopulateDebugData(const KIROExtensionOutput& rOutput) const;
    VOID  CalculateSeamlessSwitchFlag(KIROExtensionInput& rInput, KIROExtensionOutput& rOutput);
    VOID  DecideSeamlessSwitch(const KIROExtensionInput& rInput, BOOL bWasSeamless, KIROExtensionOutput& rOutput,
                               SwitchState& rState);
    FLOAT GetSwitchThreshold(const kirohdrsensor::HybridHDRType& rTuning);

    TavoPtr<CFlashCurrentEstimator> m_pFlashCurrentEstimator;
    CKIROExtensionMonitor           m_flagsMonitor;
    CKIRODataXML                    m_thresholdTrigger;  ///< takes its tree afresh each frame
    BOOL                            m_bPreviousSeamlessBinning;
};
