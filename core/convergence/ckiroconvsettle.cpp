// What happens after the exposures of a frame are known: constraints, settle, publishing.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/convergence/ckiromodconvergence.h"
#include "schema/kirohdrsensor.h"

using exposurearithmetic::IndexBase;
using exposurearithmetic::SensiLog103;

VOID CKIROConvergence::HandleExposureConstraints(KIROConvergenceOutput& rOutput)
{
    if (m_rContextManager.GetInput()->b3HDRMode != TRUE)
    {
        return;
    }
    const auto* pTuning                    = tuningaccess::Get_kirohdrsensor(*m_rContextManager.GetTuningData());
    const FLOAT esRatio                    = (pTuning != nullptr) ? pTuning->esRatio : 1.0f;
    const FLOAT logShort                   = SensiLog103(static_cast<FLOAT>(rOutput.exposures[AECAlgoExposureShort]));
    const FLOAT logLong                    = SensiLog103(static_cast<FLOAT>(rOutput.exposures[AECAlgoExposureLong]));
    const FLOAT logSafe                    = logShort + (logLong - logShort) / (esRatio + 1.0f);
    rOutput.exposures[AECAlgoExposureSafe] = exposurearithmetic::SaturateToUINT64(std::pow(IndexBase, logSafe));
    STATS_LOG_TRACE("Apply 3HDR constraints.");
}

VOID CKIROConvergence::RunConvSettle(KIROConvergenceOutput& rOutput)
{
    UpdateDBTriggersForNewTuning();
    const kirodbconvsettle::BaseSettleType* pBaseSettleTh = nullptr;
    if (m_pConvBase != nullptr && m_pConvStretch != nullptr && m_pConvSettle != nullptr)
    {
        const auto& rTrigger = m_pConvSettle->value.baseSettleTrigger;
        pBaseSettleTh        = static_cast<const kirodbconvsettle::BaseSettleType*>(m_triggerSettle.GetData(
                   GetTriggerValue(rTrigger.trigger1DataBank), GetTriggerValue(rTrigger.trigger2DataBank), 0.0f));
    }
    if (pBaseSettleTh == nullptr)
    {
        STATS_LOG_ERROR("KIROCONVRG Settle: get trigger data failed");
        return;
    }

    BOOL bSettleStatus[AECAlgoExposureCount];
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        const DOUBLE expLog103 = SensiLog103(static_cast<FLOAT>(rOutput.exposures[type]));
        const FLOAT  distance  = static_cast<FLOAT>(std::abs(GetExposureInfo(KIROConvMatched, type) - expLog103));
        bSettleStatus[type]    = (pBaseSettleTh->settleExpTh < distance) ? FALSE : TRUE;
    }
    ApplyAdvancedSettle(bSettleStatus);

    m_settleCount             = (bSettleStatus[AECAlgoExposureSafe] == TRUE) ? m_settleCount + 1 : 0;
    rOutput.bBrightnessSettle = (m_settleCount > pBaseSettleTh->settleCountTh) ? TRUE : FALSE;
    rOutput.bSettle           = (rOutput.bBrightnessSettle == TRUE && bSettleStatus[AECAlgoExposureShort] == TRUE &&
                       bSettleStatus[AECAlgoExposureLong] == TRUE)
                                    ? TRUE
                                    : FALSE;
    m_bSettleArray[AECAlgoExposureShort] = bSettleStatus[AECAlgoExposureShort];
    m_bSettleArray[AECAlgoExposureLong]  = bSettleStatus[AECAlgoExposureLong];
    m_bSettleArray[AECAlgoExposureSafe]  = rOutput.bBrightnessSettle;
    STATS_LOG_TRACE("KIROCONVRG Settle (Safe:%d Short:%d Long:%d), bSettle:%d, bBrightSettle:%d, settleCnt:%d, "
                    "cntTh:%d.",
                    bSettleStatus[AECAlgoExposureSafe], bSettleStatus[AECAlgoExposureShort],
                    bSettleStatus[AECAlgoExposureLong], rOutput.bSettle, rOutput.bBrightnessSettle, m_settleCount,
                    pBaseSettleTh->settleCountTh);
}

VOID CKIROConvergence::ApplyAdvancedSettle(BOOL* pSettleStatus) const
{
    const auto& rTuning = m_pConvSettle->value;
    for (UINT32 index = 0; index < rTuning.advnSettleCount; ++index)
    {
        const auto& rRule = rTuning.advnSettle[index];
        const FLOAT value = GetTriggerValue(rRule.data);
        const BOOL  bInRange =
            (!(rRule.settleDataRange.start > value) && !(rRule.settleDataRange.end < value)) ? TRUE : FALSE;
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            pSettleStatus[type] = (rTuning.settleAgg == kirodbconvsettle::SettleAggOR)
                                      ? (pSettleStatus[type] | bInRange)
                                      : (pSettleStatus[type] & bInRange);
        }
    }
}

VOID CKIROConvergence::RunConvPostProcess(KIROConvergenceOutput& rOutput)
{
    UpdateDBTriggersForNewTuning();
    m_rContextManager.SetContextEvent(AECSettled, rOutput.bSettle);
    if (rOutput.bSettle == TRUE)  // the host may have changed it
    {
        ClearSettledEvents();
        KIROSCDOutput output{};
        (VOID) m_rContextManager.GetSCDOutput(m_scdID, output);
        if (output.htState == KIROHoldTimeEnd)
        {
            m_rContextManager.RebaseSCD(m_scdID);
        }
    }
    SetConvOutputToDB(rOutput);
    PopulateDebugData(rOutput);
    STATS_LOG_TRACE("KIROCONVRG ConvOut(LogScale) Short:%f Safe:%f Long:%f", m_output.sensiLog103[AECAlgoExposureShort],
                    m_output.sensiLog103[AECAlgoExposureSafe], m_output.sensiLog103[AECAlgoExposureLong]);
    STATS_LOG_TRACE("KIROCONVRG ConvOut: Sensi(Short:%llu Safe:%llu Long:%llu) PredGain:%f ShortStretch:%f.",
                    rOutput.exposures[AECAlgoExposureShort], rOutput.exposures[AECAlgoExposureSafe],
                    rOutput.exposures[AECAlgoExposureLong], rOutput.predictiveGain, rOutput.shortStretchOffset);
}

VOID CKIROConvergence::ClearSettledEvents()
{
    if (m_rContextManager.GetContextEvent(AECEVChange) == TRUE)
    {
        m_rContextManager.SetContextEvent(AECEVChange, FALSE);
        STATS_LOG_TRACE("AECEVChange status is reset.");
    }
    if (m_rContextManager.GetContextEvent(AECTorchChange) == TRUE)
    {
        m_rContextManager.SetContextEvent(AECTorchChange, FALSE);
        STATS_LOG_TRACE("AECTorchChange status is reset.");
    }
}

VOID CKIROConvergence::SetConvOutputToDB(const KIROConvergenceOutput& rOutput)
{
    const FLOAT shortExp = static_cast<FLOAT>(rOutput.exposures[AECAlgoExposureShort]);
    const FLOAT safeExp  = static_cast<FLOAT>(rOutput.exposures[AECAlgoExposureSafe]);
    const FLOAT longExp  = static_cast<FLOAT>(rOutput.exposures[AECAlgoExposureLong]);

    const FLOAT shortWithoutPredictive = std::max(rOutput.predictiveGain * shortExp, 1.0f);
    const FLOAT adrcGain               = safeExp / shortWithoutPredictive;
    const FLOAT darkBoostGain          = longExp / std::max(safeExp, 1.0f);

    CKIROBankManager& rBanks = *m_rContextManager.m_pBankManager;
    rBanks.PublishTrigger(TriggerCtrlHDRDRCGain, longExp / shortWithoutPredictive, "DRCGain", SourceModuleConvergence);
    rBanks.PublishTrigger(TriggerCtrlHDRADRCGain, adrcGain, "ADRCGain", SourceModuleConvergence);
    SYSTEM_LOG_CONFIG("ADRC gain %f ", adrcGain);
    rBanks.PublishTrigger(TriggerCtrlHDRDarkBoostGain, darkBoostGain, "DarkBoostGain", SourceModuleConvergence);
    SYSTEM_LOG_CONFIG("DarkBoost gain %f ", darkBoostGain);
}
