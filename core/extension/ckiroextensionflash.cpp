// The currents of the flash, and the life of their estimator.

#include "core/base/kirolog.h"
#include "core/extension/cflashcurrentestimator.h"
#include "core/extension/ckiromodextension.h"
#include "interface/kiroresults.h"

namespace
{

/// What a flash that is off answers; the reference table stays.
VOID SetFlashOff(KIROAlgoFlashOutput& rOutput)
{
    rOutput.LED1Setting     = 0;
    rOutput.LED2Setting     = 0;
    rOutput.state           = AECAlgoFlashStateOff;
    rOutput.flux            = 0.0f;
    rOutput.RGRatio         = -1.0f;
    rOutput.BGRatio         = -1.0f;
    rOutput.firstEntryRatio = 1.0f;
    rOutput.lastEntryRatio  = 0.0f;
}

}  // namespace

CKIROExtension::CKIROExtension(InstanceTuning& rTuningData, IKIROContextManager& rContextManager)
    : ModuleCommon(rTuningData, rContextManager),
      m_pFlashCurrentEstimator(TavoNew<CFlashCurrentEstimator>(rContextManager)), m_flagsMonitor(rContextManager),
      m_thresholdTrigger(KIROMLBaseDataType), m_bPreviousSeamlessBinning(TRUE)
{
}

CKIROExtension::~CKIROExtension() = default;

KiroResult CKIROExtension::GetFlashCurrent(const KIROAlgoFlashInput* pIn, KIROAlgoFlashOutput* pOut)
{
    if (pIn == nullptr || pOut == nullptr || m_pFlashCurrentEstimator == nullptr)
    {
        STATS_LOG_ERROR("invalid input %p, output %p or estimator %p", static_cast<const VOID*>(pIn),
                        static_cast<VOID*>(pOut), static_cast<VOID*>(m_pFlashCurrentEstimator.get()));
        return ResultFailed;
    }
    if (m_pFlashCurrentEstimator->SetTuningHeaderChanged() != 0)
    {
        return ResultFailed;
    }
    if (pIn->flashCurrentType == KIROExtFlashCurrentType::Off)
    {
        SetFlashOff(*pOut);
        return 0;
    }
    FlashCurrentEstimate estimate{};
    (VOID) m_pFlashCurrentEstimator->EstimateFlashCurrent(pIn, &estimate);
    *pOut = estimate.LEDCombination;
    pOut->state =
        (pIn->flashCurrentType == KIROExtFlashCurrentType::High) ? AECAlgoFlashStateMain : AECAlgoFlashStatePre;
    return 0;
}
