// Per-frame values that the driver publishes for the tuning system.

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/ckirocore.h"
#include "interface/ckiroctrlcorecommon.h"

namespace
{

DOUBLE SafeIndexOf(const AECFrameHistory* pFrame, exposurearithmetic::SteadyIndex& rIndex)
{
    return (pFrame != nullptr) ? rIndex.Of(pFrame->exposureSets[AECAlgoExposureSafe].exposure) : 0.0;
}

}  // namespace

VOID CKIROCore::UpdateConvTriggers(const KIROConvergenceInput& rConvInput)
{
    CKIROHistory& rHistory = *m_contManager.m_pHistory;
    const DOUBLE  prev     = SafeIndexOf(rHistory.GetFrameHistory(1), m_prevIndex);
    const DOUBLE  match  = SafeIndexOf(rHistory.GetFrameHistory(m_contManager.GetInput()->systemLatency), m_matchIndex);
    const DOUBLE  target = m_targetIndex.Of(rConvInput.sensitivities[AECAlgoExposureSafe]);

    PublishLoggedTrigger("Conv", TriggerCtrlPrev, static_cast<FLOAT>(prev), "PrevIndex");
    PublishLoggedTrigger("Conv", TriggerCtrlTarget, static_cast<FLOAT>(target), "TargetIndex");
    PublishLoggedTrigger("Conv", TriggerCtrlTgtMatchDelta, static_cast<FLOAT>(target - match), "TgtMatchDelta");
    PublishLoggedTrigger("Conv", TriggerCtrlTgtPrevDelta, static_cast<FLOAT>(std::abs(target - prev)), "TgtPrevDelta");
    PublishLoggedTrigger("Conv", TriggerCtrlDirection, (target - match > 0.0) ? 1.0f : 0.0f, "Direction");
}

/// From the short exposure alone.
VOID CKIROCore::UpdateArbTriggers(const KIROArbitrationOutput* pArbitrationOuts)
{
    if (pArbitrationOuts == nullptr)
    {
        STATS_LOG_ERROR("invalid input argument. pArbitrationOuts %p", static_cast<const VOID*>(pArbitrationOuts));
        return;
    }
    const KIROExposureSetType& rShort = pArbitrationOuts[0].exposureSet;
    PublishLoggedTrigger("Arb", TriggerCtrlFPS, pArbitrationOuts[0].FPS, "FPS");
    PublishLoggedTrigger("Arb", TriggerCtrlExpTime, static_cast<FLOAT>(rShort.time), "ExpTime");
    PublishLoggedTrigger("Arb", TriggerCtrlGain, rShort.gain, "Gain");
    PublishLoggedTrigger("Arb", TriggerCtrlSensitivity, static_cast<FLOAT>(rShort.exposure), "Exposure Sensi");
}

/// The index of an exposure of 0 is no number: the trigger stays as it was.
VOID CKIROCore::PublishLoggedTrigger(const CHAR* pStage, KIROTriggerType id, FLOAT value, const CHAR* pDescription)
{
    const FLOAT sound = soundvalue::OrLast(value, TriggerValue(id), 0.0f, pDescription);
    m_contManager.m_pBankManager->PublishTrigger(id, sound, pDescription, SourceCore);
    STATS_LOG_TRACE("ALLTRIGGERS %s %s:%f", pStage, CKIROCtrlCoreCommon::GetTriggerString(id), sound);
}
