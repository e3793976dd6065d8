// What the stages read: tuning, triggers, and exposures of past frames.

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/convergence/ckiromodconvergence.h"

using namespace convergencestages;
using exposurearithmetic::SensiLog103;

namespace
{

/// The gain that a frame's Short was given ahead of its exposure; 0 for none, and for other exposures.
DOUBLE LogOfPrediction(const AECFrameHistory& rFrame, UINT32 expType)
{
    const bool isPredicted = expType == AECAlgoExposureShort && rFrame.predictiveGain > 1.0f;
    return isPredicted ? static_cast<DOUBLE>(SensiLog103(rFrame.predictiveGain)) : 0.0;
}

}  // namespace

/// After the process of a frame the host may set a tuning, and those of before may be gone by then.
VOID CKIROConvergence::UpdateDBTriggersForNewTuning()
{
    if (IsTuningNew())
    {
        UpdateDBTriggers();
    }
}

VOID CKIROConvergence::UpdateDBTriggers()
{
    TakeTuning();
    m_pTuningData            = m_rContextManager.GetTuningData();
    m_pTuning                = &tuningaccess::Require_kiroconvergence(*m_pTuningData);
    CKIROBankManager& rBanks = *m_rContextManager.m_pBankManager;
    m_pConvBase              = rBanks.GetDataConvBase(0);
    m_pConvStretch           = rBanks.GetDataConvStretch(0);
    m_pConvSettle            = rBanks.GetDataConvSettle(0);
    m_pBaseCoreData          = nullptr;
    if (m_pConvBase == nullptr || m_pConvStretch == nullptr || m_pConvSettle == nullptr)
    {
        STATS_LOG_ERROR("KIROCONVRG Conv DB data invalid. m_pConvBase:%p m_pConvStretch:%p m_pConvSettle:%p",
                        static_cast<const VOID*>(m_pConvBase), static_cast<const VOID*>(m_pConvStretch),
                        static_cast<const VOID*>(m_pConvSettle));
        return;
    }
    SetTriggerTrees();
}

VOID CKIROConvergence::SetTriggerTrees()
{
    constexpr INT32 speedLevels  = 3;
    constexpr INT32 settleLevels = 2;

    const auto&       rBase = m_pConvBase->value;
    AECTriggerXMLData base{rBase.trigger1Data,
                           {speedLevels, sizeof(kirodbconvbase::ConvBaseCoreDataType)},
                           static_cast<INT32>(rBase.trigger1DataCount)};
    m_triggerBase.SetData(&base, KIROMLConvBaseDataType);

    for (UINT32 index = 0; index < StretchCount(m_pConvStretch->value); ++index)
    {
        const auto&       rStretch = m_pConvStretch->value.convStretch[index];
        AECTriggerXMLData stretch{rStretch.trigger1Data,
                                  {speedLevels, sizeof(kirodbconvstretch::ConvStretchCoreDataType)},
                                  static_cast<INT32>(rStretch.trigger1DataCount)};
        m_triggerStretch[index].SetData(&stretch, KIROMLConvStretchDataType);
    }

    const auto&       rSettle = m_pConvSettle->value.baseSettleTrigger;
    AECTriggerXMLData settle{rSettle.trigger1Data,
                             {settleLevels, sizeof(kirodbconvsettle::BaseSettleType)},
                             static_cast<INT32>(rSettle.trigger1DataCount)};
    m_triggerSettle.SetData(&settle, KIROMLConvSettleType);
}

/// @return whether the mode of the sensor makes up digitally for a Long below Safe
bool CKIROConvergence::IsLongCompensated() const
{
    const AECAlgoHDRType type = m_rContextManager.GetInput()->HDRType;
    return type == StaggeredHDR || type == MultiframeHDR;
}

const AECFrameHistory* CKIROConvergence::PreviousFrame() const
{
    return m_rContextManager.m_pHistory->GetFrameHistory(1);
}

DOUBLE CKIROConvergence::GetExposureInfo(KIROConvExpInfoType type, UINT32 expType) const
{
    if (expType >= AECAlgoExposureCount)
    {
        STATS_LOG_ERROR("KIROCONVRG Exposure type incorrect");
        return 0.0;
    }
    if (static_cast<UINT32>(type) >= KIROConvMax)
    {
        STATS_LOG_ERROR("KIROCONVRG Info type incorrect");
        return 0.0;
    }
    if (type == KIROConvDRCCurrDelta)
    {
        return DRCCurrDelta(expType);
    }

    const bool isPrevious =
        type == KIROConvPrevious || type == KIROConvTgtPreviousDelta || type == KIROConvDRCPrevDelta;
    const UINT8            offset = isPrevious ? 1 : m_rContextManager.GetInput()->systemLatency;
    const AECFrameHistory* pFrame = m_rContextManager.m_pHistory->GetFrameHistory(offset);
    if (pFrame == nullptr)
    {
        STATS_LOG_ERROR("Frame History is null. Sensitivity will not be converted to index");
        return 0.0;
    }
    const DOUBLE prediction = LogOfPrediction(*pFrame, expType);
    if (type == KIROConvDRCPrevDelta)
    {
        return DRCPrevDelta(expType, prediction);
    }
    const DOUBLE exposureLog103 =
        isPrevious ? m_previousLog103[expType]
                   : static_cast<DOUBLE>(SensiLog103(static_cast<FLOAT>(pFrame->exposureSets[expType].exposure)));
    const DOUBLE exposure = exposureLog103 + prediction;
    const bool   isDelta  = type == KIROConvTgtMatchDelta || type == KIROConvTgtPreviousDelta;
    return isDelta ? m_input.sensiLog103[expType] - exposure : exposure;
}

DOUBLE CKIROConvergence::DRCCurrDelta(UINT32 expType) const
{
    return m_input.sensiLog103[AECAlgoExposureSafe] - m_input.sensiLog103[expType];
}

DOUBLE CKIROConvergence::DRCPrevDelta(UINT32 expType, DOUBLE prediction) const
{
    return m_previousLog103[AECAlgoExposureSafe] - m_previousLog103[expType] - prediction;
}

/// What GetExposureInfo answers for an exposure, of a frame that has a previous one. Each logarithm is taken once.
ExposureMove CKIROConvergence::MoveOf(UINT32 expType) const
{
    const DOUBLE prediction = LogOfPrediction(*PreviousFrame(), expType);
    const DOUBLE target     = m_input.sensiLog103[expType];
    const DOUBLE previous   = m_previousLog103[expType] + prediction;
    return {.target           = target,
            .previous         = previous,
            .tgtMatchDelta    = GetExposureInfo(KIROConvTgtMatchDelta, expType),
            .tgtPreviousDelta = target - previous,
            .drcCurrDelta     = DRCCurrDelta(expType),
            .drcPrevDelta     = DRCPrevDelta(expType, prediction),
            .isSettled        = m_bSettleArray[expType] == TRUE};
}

FLOAT CKIROConvergence::GetTriggerValue(const DataBankType& rBank) const
{
    CKIROBankManager& rBanks    = *m_rContextManager.m_pBankManager;
    const bool        isIDValid = static_cast<UINT32>(rBank.dataID) < BankSlotCount;
    switch (rBank.bankID)
    {
    case BankIDTriggers:
        if (isIDValid)
        {
            return rBanks.GetDataTriggers(rBank.dataID)->value;
        }
        STATS_LOG_ERROR("KIROCONVRG Trigger bank dataID %d is not valid \n", rBank.dataID);
        return 0.0f;
    case BankIDStatsCalculator:
        if (isIDValid)
        {
            return rBanks.GetDataStatsCalculator(rBank.dataID)->value;
        }
        STATS_LOG_ERROR("KIROCONVRG Stats cal bank dataID %d is not valid \n", rBank.dataID);
        return 0.0f;
    case BankIDSceneAnalyzer:
        if (isIDValid)
        {
            return rBanks.GetDataSceneAnalyzer(rBank.dataID)->value.start;
        }
        STATS_LOG_ERROR("KIROCONVRG SA bank dataID %d is not valid \n", rBank.dataID);
        return 0.0f;
    default:
        STATS_LOG_ERROR("KIROCONVRG Invalid bankID %d \n", rBank.bankID);
        return 0.0f;
    }
}
