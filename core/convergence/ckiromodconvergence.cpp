#include "core/convergence/ckiromodconvergence.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/base/tuningaccess.h"

using namespace convergencestages;
using exposurearithmetic::SensiLog103;

namespace
{

constexpr FLOAT Unity = 1.0f;

/// Safe over Short, without what the predictive gain makes up for.
FLOAT ADRCOf(UINT64 safe, UINT64 shortExposure, FLOAT predictiveGain)
{
    const DOUBLE ratio = static_cast<DOUBLE>(safe) / static_cast<DOUBLE>(shortExposure);
    return static_cast<FLOAT>((predictiveGain >= 1.0f) ? ratio / static_cast<DOUBLE>(predictiveGain) : ratio);
}

FLOAT RatioOfTargets(UINT64 numerator, UINT64 denominator)
{
    return static_cast<FLOAT>(static_cast<DOUBLE>(numerator) / std::max(static_cast<DOUBLE>(denominator), 1.0));
}

}  // namespace

CKIROConvergence::CKIROConvergence(InstanceTuning& rTuningData, IKIROContextManager& rContextManager)
    : ModuleCommon(rTuningData, rContextManager), m_input{}, m_previousLog103{}, m_range{},
      m_pRange(nullptr), m_output{}, m_bIsTargetFixed(FALSE), m_pTuning(nullptr), m_pConvBase(nullptr),
      m_pConvStretch(nullptr), m_pConvSettle(nullptr), m_pBaseCoreData(nullptr), m_scdID(0),
      m_settleCount(0), m_bSettleArray{}, m_smoothADRC{}, m_smoothDarkBoost{}, m_convEventManager(rContextManager)
{
    m_moduleID = tuningaccess::Require_kiroconvergence(rTuningData).moduleID;
}

KiroResult CKIROConvergence::RunConvProcesss(KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput)
{
    const KiroResult result = Initialize(rInput);
    if (result != 0)
    {
        return result;
    }
    if (m_bIsTargetFixed == TRUE)
    {
        std::copy(std::begin(m_input.sensiLog103), std::end(m_input.sensiLog103), m_output.sensiLog103.begin());
    }
    else if (ConvBasedOnDirection() && IfRunConvBasedOnConditions())
    {
        if (RunStages())
        {
            rOutput.bIfConvProcRun = TRUE;
        }
    }
    else
    {
        STATS_LOG_TRACE("Convergence is skipped");
    }

    AdjustExpWithUnitStepSize(*m_pRange, GridStep(m_pTuning->unitStepSize), m_output.sensiLog103);
    rOutput.mfhdrLongADRC = 1.0f;
    if (IsLongCompensated())
    {
        const FLOAT delta =
            static_cast<FLOAT>(m_output.sensiLog103[AECAlgoExposureSafe] - m_output.sensiLog103[AECAlgoExposureLong]);
        rOutput.mfhdrLongADRC = std::max(std::pow(exposurearithmetic::IndexBase, delta), 1.0f);
    }
    rOutput.compensationDarkBoost = CalculateCompensationDarkBoostGain(rInput, rOutput);
    PopulateOutput(rOutput);
    return 0;
}

/// Goes from the exposures of the previous frame to those of this one.
/// @return false when the base tuning yields no speeds, and nothing was computed
bool CKIROConvergence::RunStages()
{
    const ExposureMove safeMove = MoveOf(AECAlgoExposureSafe);
    m_pBaseCoreData             = SelectSpeeds();
    if (m_pBaseCoreData == nullptr)
    {
        STATS_LOG_ERROR("ConvBase core data is NULL.");
        return false;
    }
    const MoveTuning tuning{*m_pTuning, m_pConvBase->value, *m_pBaseCoreData};

    const DOUBLE converged = ComputeBasicSafeConvergence(tuning, safeMove, m_rContextManager.GetInput()->systemLatency,
                                                         PreviousFrame()->shortStretchOffset);
    ComputeTargetStretchOutput(converged);
    const KIROLogExposures drc = ComputeDRCConvergence(tuning, m_output.sensiLog103[AECAlgoExposureSafe]);
    DRCStretchAggregator(m_pTuning->drcStretchAgg, drc, m_output);
    return true;
}

/// @return the speeds that the frame's triggers select; null without tuning
const kirodbconvbase::ConvBaseCoreDataType* CKIROConvergence::SelectSpeeds()
{
    if (m_pConvBase == nullptr || m_pConvStretch == nullptr || m_pConvSettle == nullptr)
    {
        return nullptr;
    }
    const auto& rBase = m_pConvBase->value;
    return static_cast<const kirodbconvbase::ConvBaseCoreDataType*>(
        m_triggerBase.GetData(GetTriggerValue(rBase.trigger1DataBank), GetTriggerValue(rBase.trigger2DataBank),
                              GetTriggerValue(rBase.trigger3DataBank)));
}

/// @param converged what the speed law made of the frame
VOID CKIROConvergence::ComputeTargetStretchOutput(DOUBLE converged)
{
    const auto& rTuning = m_pConvStretch->value;
    m_tgtStretchOut.clear();
    for (UINT32 index = 0; index < StretchCount(rTuning); ++index)
    {
        const auto& rStretch = rTuning.convStretch[index];
        const auto* pData =
            static_cast<const kirodbconvstretch::ConvStretchCoreDataType*>(m_triggerStretch[index].GetData(
                GetTriggerValue(rStretch.trigger1DataBank), GetTriggerValue(rStretch.trigger2DataBank),
                GetTriggerValue(rStretch.trigger3DataBank)));
        SetStretch(rStretch.stretchType, *pData, m_tgtStretchOut[index]);
    }
    const BOOL bBrightToDark = (GetExposureInfo(KIROConvTgtMatchDelta, AECAlgoExposureSafe) < 0.0) ? TRUE : FALSE;
    const KIROTargetStretchOutType aggOut = AggregateStretchOutput(rTuning, bBrightToDark, m_tgtStretchOut);
    const StretchOffsets           offsets =
        ComputeStretchOffset(aggOut, PreviousFrame()->shortStretchOffset, GridStep(m_pTuning->unitStepSize));

    m_output.predGain                          = offsets.predGain;
    m_output.shortStretchOffset                = offsets.shortStretchOffset;
    m_output.sensiLog103[AECAlgoExposureShort] = converged + static_cast<DOUBLE>(offsets.shortStretchOffset);
    m_output.sensiLog103[AECAlgoExposureLong]  = converged;
    m_output.sensiLog103[AECAlgoExposureSafe]  = converged + static_cast<DOUBLE>(offsets.safeStretchOffset);
}

/// @param safe what speed law and stretch made of Safe
KIROLogExposures CKIROConvergence::ComputeDRCConvergence(const MoveTuning& rTuning, DOUBLE safe)
{
    DOUBLE* pTargets = m_input.sensiLog103;
    if (m_pTuning->smoothADRC.enableSmoothDRC == TRUE)
    {
        pTargets[AECAlgoExposureShort] =
            ConvergeSmoothNode(AECAlgoExposureShort, m_pTuning->smoothADRC, ADRCGainTarget(), pTargets, m_smoothADRC);
    }
    if (m_pTuning->smoothDarkBoost.enableSmoothDRC == TRUE)
    {
        const FLOAT gainTarget =
            RatioOfTargets(m_input.exposures[AECAlgoExposureLong], m_input.exposures[AECAlgoExposureSafe]);
        pTargets[AECAlgoExposureLong] = ConvergeSmoothNode(AECAlgoExposureLong, m_pTuning->smoothDarkBoost, gainTarget,
                                                           pTargets, m_smoothDarkBoost);
    }
    KIROLogExposures output;
    output[AECAlgoExposureSafe] = safe;
    for (const AECAlgoExposureType type : {AECAlgoExposureShort, AECAlgoExposureLong})
    {
        output[type] = DRCDeltaConvergence(rTuning, MoveOf(type), safe);
    }
    return output;
}

FLOAT CKIROConvergence::ADRCGainTarget() const
{
    const FLOAT gainTarget =
        RatioOfTargets(m_input.exposures[AECAlgoExposureSafe], m_input.exposures[AECAlgoExposureShort]);
    if (m_rContextManager.m_bIsHybridHDR != TRUE)
    {
        return gainTarget;
    }
    CKIROBankManager& rBanks  = *m_rContextManager.m_pBankManager;
    const FLOAT       cap     = rBanks.GetDataTriggers(TriggerCtrlADRCCap)->value;
    const FLOAT       binning = rBanks.GetDataTriggers(TriggerCtrl3HDRBinning)->value;
    return (exposurearithmetic::SaturateToINT32(binning) == 1) ? std::min(gainTarget, cap) : gainTarget;
}

KiroResult CKIROConvergence::Initialize(const KIROConvergenceInput& rInput)
{
    m_pRange = nullptr;
    if (rInput.pRange != nullptr)
    {
        m_range  = *rInput.pRange;
        m_pRange = &m_range;
    }
    const AECFrameHistory* pPrevious = PreviousFrame();
    if (pPrevious == nullptr || m_pRange == nullptr)
    {
        // Settling comes after a failed process too. It goes by the tuning of this frame, and without a frame to
        // compare with counts the exposures as unsettled.
        UpdateDBTriggers();
        m_output.predGain           = 1.0f;
        m_output.shortStretchOffset = 0.0f;
        STATS_LOG_ERROR("KIROCONVRG no previous frame in history! Abort convergence");
        return 1;
    }
    m_output.predGain           = pPrevious->predictiveGain;
    m_output.shortStretchOffset = pPrevious->shortStretchOffset;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        m_input.exposures[type]    = rInput.sensitivities[type];
        m_input.sensiLog103[type]  = SensiLog103(static_cast<FLOAT>(rInput.sensitivities[type]));
        m_previousLog103[type]     = SensiLog103(static_cast<FLOAT>(pPrevious->exposureSets[type].exposure));
        m_output.sensiLog103[type] = m_previousLog103[type];
    }
    m_input.bIsMeteringSkipped = rInput.bIsMeteringSkipped;
    m_bIsTargetFixed           = m_convEventManager.IsTargetFixed(m_input);
    UpdateDBTriggers();
    return 0;
}

bool CKIROConvergence::ConvBasedOnDirection() const
{
    if (m_pConvBase == nullptr || m_pConvBase->value.convSameDirection != TRUE)
    {
        return true;
    }
    const DOUBLE matchDelta    = GetExposureInfo(KIROConvTgtMatchDelta, AECAlgoExposureSafe);
    const DOUBLE previousDelta = GetExposureInfo(KIROConvTgtPreviousDelta, AECAlgoExposureSafe);
    if (matchDelta * previousDelta >= 0.0 || !(std::abs(1.0f - m_output.predGain) < exposurearithmetic::Epsilon))
    {
        return true;
    }
    STATS_LOG_TRACE("KIROCONVRG Tgt prev delta direction opp wrt and match delta, skip convergence");
    return false;
}

bool CKIROConvergence::IfRunConvBasedOnConditions()
{
    const auto* pActive = m_rContextManager.m_pBankManager->GetDataConvActiveSCD(0);
    if (pActive != nullptr)
    {
        m_scdID = pActive->SCDID;
    }
    if (CheckRunConvConditions())
    {
        return true;
    }
    // A detector that nobody knows does not hold convergence.
    KIROSCDOutput output{};
    (VOID) m_rContextManager.GetSCDOutput(m_scdID, output);
    return output.htState != KIROHoldTimeOn;
}

bool CKIROConvergence::CheckRunConvConditions() const
{
    const AECFrameHistory* pPrevious = PreviousFrame();
    if (pPrevious == nullptr)
    {
        STATS_LOG_ERROR("Frame History is null. Cannot deduce if convergence can be ran or not.");
        return false;
    }
    if (pPrevious->predictiveGain > 1.0f)
    {
        STATS_LOG_TRACE("KIROCONVRG Last frame predictive, skip detector and run conv");
        return true;
    }
    if (m_rContextManager.GetInput()->opMode == AECAlgoOperationModePreflash)
    {
        STATS_LOG_TRACE("KIROCONVRG In preflash always run conv");
        return true;
    }
    return false;
}

/// Without analyzers targets are 0, and without ranges exposures are: their ratios and logs are no numbers. The value
/// of the frame before stands in for one.
VOID CKIROConvergence::PopulateOutput(KIROConvergenceOutput& rOutput)
{
    const SetInputData*    pInput     = m_rContextManager.GetInput();
    const AECFrameHistory& rLast      = *PreviousFrame();  // Initialize has seen it
    UINT64*                pExposures = rOutput.exposures;
    rOutput.mfhdrLongADRC = soundvalue::OrLast(rOutput.mfhdrLongADRC, rLast.mfhdrLongADRC, Unity, "long ADRC");
    m_output.predGain     = soundvalue::OrLast(m_output.predGain, rLast.predictiveGain, Unity, "predictive gain");
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        pExposures[type] = exposurearithmetic::SaturateToUINT64(m_steadyExposures[type].Of(m_output.sensiLog103[type]));
    }
    m_output.predGain = CapExposure(*m_pRange, rOutput.mfhdrLongADRC, m_output.predGain, pExposures);

    rOutput.predictiveGain = m_output.predGain;
    rOutput.shortStretchOffset =
        soundvalue::OrLast(m_output.shortStretchOffset, rLast.shortStretchOffset, 0.0f, "short stretch");
    rOutput.evMultiplier       = pInput->evContext.evFactor;
    rOutput.bBrightnessSettle  = FALSE;
    rOutput.bSettle            = FALSE;
    rOutput.bIsConvTargetFixed = m_bIsTargetFixed;

    rOutput.compensationADRC =
        ADRCOf(pExposures[AECAlgoExposureSafe], pExposures[AECAlgoExposureShort], rOutput.predictiveGain);
    if (!std::isfinite(rOutput.compensationADRC))
    {
        const auto& rLastSets = rLast.exposureSets;
        const FLOAT lastADRC = ADRCOf(rLastSets[AECAlgoExposureSafe].exposure, rLastSets[AECAlgoExposureShort].exposure,
                                      rLast.predictiveGain);
        rOutput.compensationADRC = soundvalue::OrLast(rOutput.compensationADRC, lastADRC, Unity, "ADRC");
    }
    if (pInput->manualSetting.manualMode == AECAlgoModeManualFull)
    {
        rOutput.compensationDarkBoost = static_cast<FLOAT>(static_cast<DOUBLE>(pExposures[AECAlgoExposureLong]) /
                                                           static_cast<DOUBLE>(pExposures[AECAlgoExposureSafe]));
    }
    rOutput.compensationDarkBoost =
        soundvalue::OrLast(rOutput.compensationDarkBoost, rLast.compensationDarkBoost, Unity, "dark boost");
    m_convEventManager.GetLockedEV0(rOutput.lockedEV0Exposures);
}
