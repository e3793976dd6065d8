// The driver's part in a flash capture.

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/base/tuningaccess.h"
#include "core/ckirocore.h"
#include "schema/kirometeringsceneanalyzer.h"

KiroResult CKIROCore::getFlashCurrent(const KIROAlgoFlashInput* pFlashIn, KIROAlgoFlashOutput* pFlashOut)
{
    if (pFlashIn != nullptr && pFlashIn->bBackupState == TRUE &&
        pFlashIn->flashCurrentType == KIROExtFlashCurrentType::High)
    {
        UpdateFlashExposureIncrease();
    }
    return m_pExtension->GetFlashCurrent(pFlashIn, pFlashOut);
}

VOID CKIROCore::UpdateFlashExposureIncrease()
{
    CKIROHistory& rHistory = *m_contManager.m_pHistory;
    rHistory.SaveFlashFrame(KIROExtFlashCurrentType::Low);
    const AECFrameHistory* pFrameOff = rHistory.GetFlashFrame(KIROExtFlashCurrentType::Off);
    const AECFrameHistory* pFrameLow = rHistory.GetFlashFrame(KIROExtFlashCurrentType::Low);
    if (pFrameOff == nullptr || pFrameLow == nullptr)
    {
        STATS_LOG_WARNING("Failed to retrieve pFrameOff: %p pFrameLow: %p", static_cast<const VOID*>(pFrameOff),
                          static_cast<const VOID*>(pFrameLow));
    }
    else
    {
        const auto& rTuning = tuningaccess::Require_kirometeringsceneanalyzer(*m_contManager.GetTuningData());
        const auto  type =
            exposurearithmetic::ExposureTypeOfSelection(rTuning.luxAnalyzer.refExposureType, AECAlgoExposureSafe);
        const auto& rOff               = pFrameOff->exposureSets;
        const auto& rLow               = pFrameLow->exposureSets;
        m_flashExpIncrease.dataID      = TriggerFlashExpIncrease;
        m_flashExpIncrease.description = nullptr;
        const FLOAT increase =
            std::max(1.0f, static_cast<FLOAT>(rOff[type].exposure) / static_cast<FLOAT>(rLow[type].exposure));
        m_flashExpIncrease.value =
            std::max(1.0f, soundvalue::OrLast(increase, m_flashExpIncrease.value, 1.0f, "flash exposure increase"));
        STATS_LOG_RARE("Precision flash: exposure off, low, increase = short (%lld, %lld, %f), safe(%lld, %lld)\n",
                       static_cast<INT64>(rOff[AECAlgoExposureShort].exposure),
                       static_cast<INT64>(rLow[AECAlgoExposureShort].exposure),
                       static_cast<DOUBLE>(m_flashExpIncrease.value),
                       static_cast<INT64>(rOff[AECAlgoExposureSafe].exposure),
                       static_cast<INT64>(rLow[AECAlgoExposureSafe].exposure));
    }
    (VOID) m_contManager.m_pBankManager->SetDataTriggers({m_flashExpIncrease.dataID, &m_flashExpIncrease, SourceCore});
}

BOOL CKIROCore::isPreflashMeteringNeeded(const KIROCntStatsOut* pFlashOffStats, UINT32 offStatsNum,
                                         const KIROCntStatsOut* pFlashLowStats, UINT32 lowStatsNum)
{
    const auto* pTuning = tuningaccess::Get_kiroflash(*m_contManager.GetTuningData());
    if (pTuning == nullptr)
    {
        STATS_LOG_ERROR("no tuning found");
        return TRUE;
    }
    return m_pMetering->IsPreflashMeteringNeeded(pFlashOffStats, offStatsNum, pFlashLowStats, lowStatsNum,
                                                 &pTuning->preflashStatsPreProcessing);
}
