// Holding the exposures of a bracketing session.
//
// While nothing is held, each frame's targets are kept for the sign of its bracket EV. The scene is compared with the
// one of the last rebase every few frames; as long as it stays the same, the kept targets stand.

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/extension/ckiroextensionmonitor.h"

using exposurearithmetic::Epsilon;
using namespace kiroextension;

namespace
{

constexpr UINT64 FramesBetweenChecks  = 5;
constexpr UINT64 FramesBetweenRebases = 4;

/// Places of the signs.
enum BrktSlot : UINT32
{
    BrktSlotNegative = 0,
    BrktSlotZero     = 1,
    BrktSlotPositive = 2
};

}  // namespace

BOOL CKIROExtensionMonitor::GetBracketLockedExposure(UINT64* pExposures, BOOL bStatsValid)
{
    const Tuning* pTuning   = RefreshTuning();
    const BOOL    isEnabled = (pTuning != nullptr) ? pTuning->monitorEVBracketLock.enableEVBracketLock : FALSE;
    if (isEnabled != TRUE || bStatsValid != TRUE)
    {
        STATS_LOG_TRACE("MFHDR Bracket EV Lock enabled:%d, statsValid:%d", isEnabled, bStatsValid);
        return FALSE;
    }
    const ExtensionMonitorEVBracketLock& rTuning = pTuning->monitorEVBracketLock;

    // Without a valid frame ID all that follows counts from frame 0.
    const UINT64 frameID = m_rContext.m_pHistory->GetCurrentFrameID();
    if (!m_brktEVLockMonitor.IsTuningSet())
    {
        m_brktEVLockMonitor.SetTuning(&rTuning.generalizedMonitor);
        m_prevBrktFrameID   = frameID;
        m_brktCriteriaState = CriteriaNotSatisfied;
    }
    const UINT64 rebasedID = m_brktEVLockMonitor.GetRebasedFrameID();
    const UINT64 elapsed   = (frameID >= rebasedID) ? frameID - rebasedID : 0;

    const bool isLocked = IsBrktLockSatisfied(rTuning, elapsed);
    UINT64*    pKept    = GetBrktRebasedExposure();
    if (isLocked)
    {
        std::copy_n(pKept, AECAlgoExposureCount, pExposures);
        OverwriteBrktEVVal();
    }
    else
    {
        std::copy_n(pExposures, AECAlgoExposureCount, pKept);
        RebaseBrktEVVal();
        if (elapsed > FramesBetweenRebases)
        {
            m_brktEVLockMonitor.RebaseData();
        }
    }
    STATS_LOG_TRACE("bLocked:%d, Exposures:[%llu, %llu, %llu], currentFrameID:%llu, rebasedFrameID:%llu", isLocked,
                    pExposures[0], pExposures[1], pExposures[2], frameID, m_brktEVLockMonitor.GetRebasedFrameID());
    return isLocked ? TRUE : FALSE;
}

/// @param elapsed frames since the last rebase
bool CKIROExtensionMonitor::IsBrktLockSatisfied(const ExtensionMonitorEVBracketLock& rTuning, UINT64 elapsed)
{
    const UINT64 frameID = m_rContext.m_pHistory->GetCurrentFrameID();
    if (elapsed >= rTuning.maxFrameNum)
    {
        m_brktCriteriaState = CriteriaNotSatisfied;
        m_prevBrktFrameID   = frameID;
        return false;
    }
    if (frameID > m_prevBrktFrameID && frameID - m_prevBrktFrameID > FramesBetweenChecks)
    {
        m_brktCriteriaState = CriteriaNotChecked;
        m_prevBrktFrameID   = frameID;
    }
    if (m_brktCriteriaState == CriteriaNotChecked)
    {
        m_brktCriteriaState =
            (m_brktEVLockMonitor.RunCriteriaCheck() == TRUE) ? CriteriaSatisfied : CriteriaNotSatisfied;
    }
    return m_brktCriteriaState == CriteriaSatisfied;
}

UINT32 CKIROExtensionMonitor::GetBrktSlot() const
{
    const FLOAT ev = TriggerValue(TriggerCtrlBracketEV);
    if (ev < -Epsilon)
    {
        return BrktSlotNegative;
    }
    return (ev > Epsilon) ? BrktSlotPositive : BrktSlotZero;
}

UINT64* CKIROExtensionMonitor::GetBrktRebasedExposure()
{
    return m_brktEVExp[GetBrktSlot()];
}

VOID CKIROExtensionMonitor::RebaseBrktEVVal()
{
    m_brktEVVal[GetBrktSlot()] = TriggerValue(TriggerCtrlBracketEV);
}

VOID CKIROExtensionMonitor::OverwriteBrktEVVal()
{
    const FLOAT ev = m_brktEVVal[GetBrktSlot()];
    if (m_rContext.m_pBankManager->PublishTrigger(TriggerCtrlBracketEV, ev, nullptr, SourceModuleExtension) != 0)
    {
        STATS_LOG_ERROR("Issue in setting BracketEV to trigger DB");
    }
}
