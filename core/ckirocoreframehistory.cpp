// What a frame leaves in the history.

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/ckirocore.h"
#include "interface/ckiroctrlcorecommon.h"

VOID CKIROCore::CompleteCurrentFrame(const KIROFrameInfo& rFrameInfo, const KIROMeteringOutput& rMtrOut,
                                     const KIROConvergenceOutput& rConvOut,
                                     const KIROArbitrationOutput* pArbitrationOuts)
{
    const SetInputData* pInput       = m_contManager.GetInput();
    m_currFrame.averageLuma          = TriggerValue(TriggerCtrlLuma);
    m_currFrame.bIsAECSettled        = rConvOut.bSettle;
    m_currFrame.bIsBrightnessSettled = rConvOut.bBrightnessSettle;
    m_currFrame.mfhdrLongADRC        = rConvOut.mfhdrLongADRC;
    m_currFrame.shortBlend           = rConvOut.convergedShortBlend;
    if (pArbitrationOuts == nullptr)
    {
        STATS_LOG_ERROR("invalid input argument. pArbitrationOuts %p", static_cast<const VOID*>(pArbitrationOuts));
    }
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        if (pArbitrationOuts != nullptr)
        {
            m_currFrame.exposureSets[type] = pArbitrationOuts[type].exposureSet;
            m_currFrame.FPS                = pArbitrationOuts[0].FPS;
        }
        m_currFrame.exposureTargets[type] = rMtrOut.exposures[type];
    }
    m_currFrame.frameID                 = rFrameInfo.frameID;
    m_currFrame.luxIndex                = TriggerValue(TriggerCtrlLux);
    m_currFrame.postRawSensitivityBoost = pInput->postRawGain;
    m_currFrame.predictiveGain          = rConvOut.predictiveGain;
    m_currFrame.evUIVal                 = pInput->evContext.evUIVal;
    m_currFrame.evFactor                = pInput->evContext.evFactor;
    m_currFrame.shortStretchOffset      = rConvOut.shortStretchOffset;
    m_currFrame.isStartConfig           = rFrameInfo.bStartup;
    m_currFrame.bIsSnapshot             = FALSE;
    m_currFrame.modeType                = pInput->manualSetting.manualMode;
    m_currFrame.compensationDarkBoost   = rConvOut.compensationDarkBoost;
    m_currFrame.bSHDR_MFHDR             = IsSHDROrMFHDR();
}

BOOL CKIROCore::IsSHDROrMFHDR()
{
    return (m_contManager.GetContextEvent(AECHDRTypeSHDR2) == TRUE ||
            m_contManager.GetContextEvent(AECHDRTypeMFHDR) == TRUE)
               ? TRUE
               : FALSE;
}

VOID CKIROCore::SaveSnapshot()
{
    m_currFrame.bIsSnapshot = TRUE;
    m_currFrame.evUIVal     = exposurearithmetic::SaturateToINT32(TriggerValue(TriggerCtrlBracketEV));
    m_currFrame.evFactor =
        CKIROCtrlCoreCommon::UtilGetEVMultiplier(m_contManager.GetTuningData(), m_currFrame.evUIVal, KIROEVBracketing);
    m_contManager.m_pHistory->SaveSnapshotFrame(&m_currFrame);
}
