// What convergence writes into the host's debug record.

#include <cstring>

#include "core/base/exposurearithmetic.h"
#include "core/contextdebugdata.h"
#include "core/convergence/ckiromodconvergence.h"

using exposurearithmetic::SensiLog103;

namespace
{

AECDebugConvergenceRange RangeOf(const KIROExposureRange& rRange)
{
    return {SensiLog103(static_cast<FLOAT>(rRange.start.exposure)),
            SensiLog103(static_cast<FLOAT>(rRange.end.exposure)), rRange.start.gain, rRange.end.gain};
}

/// A settled frame after a settled frame is not pushed, so that the history keeps the moves.
VOID PushFrame(const AECDebugConvergenceFrame& rFrame, AECDebugDataConvergenceType& rRecord)
{
    std::memmove(&rRecord.history[1], &rRecord.history[0], sizeof(rRecord.history) - sizeof(rRecord.history[0]));
    rRecord.history[0] = rFrame;
}

}  // namespace

VOID CKIROConvergence::PopulateDebugData(const KIROConvergenceOutput& rOutput) const
{
    AECDebugData*          pDebug    = debugdata::Enabled(m_rContextManager);
    const AECFrameHistory* pPrevious = PreviousFrame();
    if (pDebug == nullptr || pPrevious == nullptr || m_pRange == nullptr)
    {
        return;
    }
    AECDebugDataConvergenceType& rRecord = pDebug->convergenceInfo;
    AECDebugConvergenceFrame     frame{};
    frame.frameID = static_cast<UINT32>(m_rContextManager.m_pHistory->GetCurrentFrameID());
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        const FLOAT target           = static_cast<FLOAT>(m_input.sensiLog103[type]);
        const FLOAT output           = static_cast<FLOAT>(m_output.sensiLog103[type]);
        rRecord.ranges[type]         = RangeOf(m_pRange->ranges[type]);
        rRecord.targetLog103[type]   = target;
        rRecord.outputLog103[type]   = output;
        rRecord.previousLog103[type] = SensiLog103(static_cast<FLOAT>(pPrevious->exposureSets[type].exposure));
        frame.targetLog103[type]     = target;
        frame.outputLog103[type]     = output;
    }
    if (m_pConvBase != nullptr && m_pBaseCoreData != nullptr)
    {
        rRecord.baseSpeed   = m_pBaseCoreData->baseSpeed;
        rRecord.drcSpeed    = m_pBaseCoreData->drcSpeed;
        rRecord.cappingType = static_cast<UINT8>(m_pConvBase->value.cappingType);
    }
    const bool wasSettled      = rRecord.bSettle == 1;
    rRecord.predictiveGain     = rOutput.predictiveGain;
    rRecord.bBrightnessSettle  = static_cast<UINT8>(rOutput.bBrightnessSettle);
    rRecord.bSettle            = static_cast<UINT8>(rOutput.bSettle);
    rRecord.shortStretchOffset = rOutput.shortStretchOffset;
    rRecord.bIfConvProcRun     = static_cast<UINT8>(rOutput.bIfConvProcRun);
    if (!(wasSettled && rOutput.bSettle == TRUE))
    {
        PushFrame(frame, rRecord);
    }
}
