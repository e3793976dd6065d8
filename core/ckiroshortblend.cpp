#include "core/ckiroshortblend.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/base/tuningaccess.h"
#include "core/extensionparameters.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToUINT64;

namespace
{

/// The tuned controls, in order.
enum Control : UINT32
{
    MaxExpRatio  = 0,
    MaxADRC      = 1,
    DoShortBlend = 2
};

/// Data of the parameter, in order; the last is optional.
enum ParameterData : UINT32
{
    BlendStep          = 0,
    SensorRatioTol     = 1,
    BlendTriggerID     = 2,
    DisableAntibanding = 3
};

constexpr INT32 DefaultBlendTriggerID = 100;

/// Trigger slot of the antibanding switch, in spite of the slot's name: in another one, what is tuned by it would miss
/// it.
constexpr INT32 DisableAntibandingSlot = TriggerCtrlPreflashLuxIndex;

}  // namespace

CKIROShortBlend::CKIROShortBlend(IKIROContextManager& rContextManager)
    : m_rContextManager(rContextManager), m_bEnableShortBlendFeature(FALSE), m_bDoShortBlend(TRUE), m_blendStep(0.1f),
      m_previous(1.0f), m_sensorRatioTol(1.05f), m_dataID(DefaultBlendTriggerID)
{
}

VOID CKIROShortBlend::RunConvPreprocess(KIROConvergenceInput& rInput)
{
    m_bEnableShortBlendFeature = FALSE;
    rInput.mfhdrLongADRC       = PreprocessLongADRC(rInput);
}

FLOAT CKIROShortBlend::PreprocessLongADRC(KIROConvergenceInput& rInput)
{
    constexpr FLOAT      noADRC = 1.0f;
    const AECAlgoHDRType type   = m_rContextManager.GetInput()->HDRType;
    if (type != StaggeredHDR && type != MultiframeHDR)
    {
        return noADRC;
    }
    InstanceTuning& rTuningData = *m_rContextManager.GetTuningData();
    Parameter       parameter{};
    if (extensionparameters::GetMFHDRADRC(rTuningData, parameter) != 0 || parameter.enableFlag != TRUE ||
        parameter.triggerCount < ControlCount)
    {
        return noADRC;
    }
    m_bEnableShortBlendFeature = TRUE;
    m_extTuning.Refresh(tuningaccess::Get_kiroparamextension(rTuningData), [&](const Tuning*) { Reload(parameter); });

    FLOAT      controls[ControlCount];
    const bool isRead  = ReadControls(parameter, controls);
    UINT64&    rTarget = rInput.sensitivities[AECAlgoExposureLong];
    if (rTarget != rInput.sensitivities[AECAlgoExposureSafe])
    {
        STATS_LOG_TRACE("warning: forcing long target %llu to be same as safe %llu for long ADRC feature", rTarget,
                        rInput.sensitivities[AECAlgoExposureSafe]);
        rTarget = rInput.sensitivities[AECAlgoExposureSafe];
    }
    return isRead ? ApplyControls(controls, rInput) : noADRC;
}

VOID CKIROShortBlend::Reload(const Parameter& rParameter)
{
    constexpr INT32 levels = 3;
    for (UINT32 control = 0; control < ControlCount; ++control)
    {
        const auto&       rTrigger = rParameter.trigger[control];
        AECTriggerXMLData tree{
            rTrigger.trigger3Data, {levels, sizeof(FLOAT)}, static_cast<INT32>(rTrigger.trigger3DataCount)};
        m_extensionXMLS[control].SetData(&tree, KIROMLOneFloatDataType);
    }
    m_blendStep      = rParameter.data[BlendStep];
    m_sensorRatioTol = rParameter.data[SensorRatioTol];
    m_dataID         = exposurearithmetic::SaturateToINT32(rParameter.data[BlendTriggerID]);

    const FLOAT value = (rParameter.dataCount > DisableAntibanding) ? rParameter.data[DisableAntibanding] : 0.0f;
    (VOID) m_rContextManager.m_pBankManager->PublishTrigger(DisableAntibandingSlot, value, "DisableAntiBandingDynamic",
                                                            SourceControl);
}

bool CKIROShortBlend::ReadControls(const Parameter& rParameter, FLOAT* pControls)
{
    CKIROBankManager& rBanks = *m_rContextManager.m_pBankManager;
    bool              isRead = true;
    for (UINT32 control = 0; control < ControlCount; ++control)
    {
        const auto&         rTrigger = rParameter.trigger[control];
        const DataBankType* banks[]  = {&rTrigger.trigger1DataBank, &rTrigger.trigger2DataBank,
                                        &rTrigger.trigger3DataBank};
        FLOAT               values[std::size(banks)];
        for (UINT32 level = 0; level < std::size(banks); ++level)
        {
            isRead = rBanks.UtilGetFloatFromBank(banks[level], values[level], TRUE, nullptr) == 0 && isRead;
        }
        const auto* pResult =
            static_cast<const FLOAT*>(m_extensionXMLS[control].GetData(values[0], values[1], values[2]));
        isRead             = isRead && pResult != nullptr;
        pControls[control] = (pResult != nullptr) ? *pResult : 0.0f;
        if (!isRead)
        {
            STATS_LOG_TRACE("error loading trigger tuning %d", control);
        }
    }
    return isRead;
}

/// @return the long compensation
FLOAT CKIROShortBlend::ApplyControls(const FLOAT* pControls, KIROConvergenceInput& rInput)
{
    UINT64*     pTargets = rInput.sensitivities;
    const FLOAT safe     = static_cast<FLOAT>(pTargets[AECAlgoExposureSafe]);
    const FLOAT total    = safe / static_cast<FLOAT>(pTargets[AECAlgoExposureShort]);
    const FLOAT ratio    = (pControls[MaxExpRatio] > total) ? total : pControls[MaxExpRatio];
    FLOAT       longADRC = 1.0f;

    pTargets[AECAlgoExposureShort] = SaturateToUINT64(safe / ratio);
    if (ratio > 1.0f)
    {
        longADRC                      = std::min(ratio, pControls[MaxADRC]);
        pTargets[AECAlgoExposureLong] = SaturateToUINT64(safe / longADRC);
    }
    m_bDoShortBlend = (std::abs(1.0f - pControls[DoShortBlend]) < Epsilon) ? TRUE : FALSE;
    STATS_LOG_TRACE("triggers %.3f %.3f %.3f tuned MaxExpRatio %.3f MaxADRC %.3f short enabled %d total ratio target "
                    "%.3f sensor ratio %.3f longADRC %.3f",
                    pControls[MaxExpRatio], pControls[MaxADRC], pControls[DoShortBlend], pControls[MaxExpRatio],
                    pControls[MaxADRC], m_bDoShortBlend, total, ratio, longADRC);
    return longADRC;
}

FLOAT CKIROShortBlend::RunConvPostprocess(const KIROConvergenceOutput& rOutput)
{
    FLOAT blend                     = 1.0f;
    m_rContextManager.m_bIsLongADRC = m_bEnableShortBlendFeature;
    if (m_bEnableShortBlendFeature == TRUE)
    {
        const FLOAT longExp  = static_cast<FLOAT>(rOutput.exposures[AECAlgoExposureLong]);
        const FLOAT shortExp = static_cast<FLOAT>(rOutput.exposures[AECAlgoExposureShort]);
        blend                = m_previous;
        if (m_bDoShortBlend == TRUE)
        {
            blend = std::min(m_previous + m_blendStep, 1.0f);
        }
        else if (longExp < shortExp * m_sensorRatioTol)
        {
            blend = std::max(m_previous - m_blendStep, 0.0f);
        }
        blend      = std::min(std::max(soundvalue::OrLast(blend, m_previous, 1.0f, "short blend"), 0.0f), 1.0f);
        m_previous = blend;
    }
    m_rContextManager.m_pBankManager->PublishTrigger(m_dataID, blend, nullptr, SourceCore);
    return blend;
}
