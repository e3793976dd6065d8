// The speed law of the Safe exposure.

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/convergence/ckiromodconvergence.h"

using kirodbconvbase::CappingTypeAbsolute;
using kirodbconvbase::CappingTypeRatio;

VOID CKIROConvergence::ComputeBasicSafeConvergence()
{
    const DOUBLE tgtMatchedDelta  = GetExposureInfo(KIROConvTgtMatchDelta, AECAlgoExposureSafe);
    const DOUBLE tgtPreviousDelta = GetExposureInfo(KIROConvTgtPreviousDelta, AECAlgoExposureSafe);
    const DOUBLE previous         = GetExposureInfo(KIROConvPrevious, AECAlgoExposureSafe);

    m_pBaseCoreData = nullptr;
    if (m_pConvBase != nullptr && m_pConvStretch != nullptr && m_pConvSettle != nullptr)
    {
        const auto& rBase = m_pConvBase->value;
        m_pBaseCoreData   = static_cast<const kirodbconvbase::ConvBaseCoreDataType*>(
            m_triggerBase.GetData(GetTriggerValue(rBase.trigger1DataBank), GetTriggerValue(rBase.trigger2DataBank),
                                    GetTriggerValue(rBase.trigger3DataBank)));
    }
    if (m_pBaseCoreData == nullptr)
    {
        STATS_LOG_ERROR("ConvBase core data is NULL.");
        return;
    }

    DOUBLE outputSensi = previous;
    if (!IsSafeSettledInTolerance(tgtPreviousDelta))
    {
        outputSensi = previous + BasicSafeDelta(tgtMatchedDelta, tgtPreviousDelta, previous);
    }
    for (DOUBLE& rSensi : m_output.sensiLog103)
    {
        rSensi = outputSensi;
    }
}

bool CKIROConvergence::IsSafeSettledInTolerance(DOUBLE tgtPreviousDelta) const
{
    const UINT32 tolerance = m_pConvBase->value.tolerance;
    const bool   isInside =
        static_cast<DOUBLE>(tolerance) > std::abs(tgtPreviousDelta) && m_bSettleArray[AECAlgoExposureSafe] == TRUE;
    if (isInside && !(std::abs(PreviousShortStretch()) > 0.0f))
    {
        STATS_LOG_TRACE("Skip safe convergence. willBeIntolerance:%d, prevDelta:%f, tol:%d.", isInside,
                        tgtPreviousDelta, tolerance);
        return true;
    }
    return false;
}

/// @return the move of this frame, log steps
DOUBLE CKIROConvergence::BasicSafeDelta(DOUBLE tgtMatchedDelta, DOUBLE tgtPreviousDelta, DOUBLE previous) const
{
    const auto&  rBase     = m_pConvBase->value;
    const DOUBLE tolerance = rBase.tolerance;
    const DOUBLE capping   = m_pBaseCoreData->baseCapping;
    const DOUBLE target    = m_input.sensiLog103[AECAlgoExposureSafe];
    const DOUBLE unitStep  = m_pTuning->unitStepSize;

    DOUBLE delta = static_cast<DOUBLE>(m_pBaseCoreData->baseSpeed) * tgtPreviousDelta;
    DOUBLE cap   = 0.0;
    switch (rBase.cappingType)
    {
    case CappingTypeRatio:
        cap = capping * tgtMatchedDelta;
        break;
    case CappingTypeAbsolute:
        cap = (tgtPreviousDelta < 0.0) ? -capping : capping;
        break;
    default:
        cap = tgtMatchedDelta / static_cast<DOUBLE>(m_rContextManager.GetInput()->systemLatency);
        break;
    }
    if (std::abs(delta) > std::abs(cap))
    {
        delta = cap;
    }

    const bool isMoving = !(static_cast<FLOAT>(std::abs(delta)) < exposurearithmetic::Epsilon);
    const bool isLanding =
        static_cast<FLOAT>(rBase.tolerance) < LandingTolerance && tolerance > std::abs(target - (delta + previous));
    if (isMoving && isLanding)
    {
        delta = target - previous;
    }
    if (unitStep > std::abs(delta))
    {
        delta = (delta > 0.0) ? unitStep : -unitStep;  // no delta at all moves a step down
    }
    if (tgtMatchedDelta * tgtPreviousDelta < 0.0)
    {
        delta = 0.0;
    }
    return delta;
}
