#include "core/convergence/ckiromodconvergence.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/base/tuningaccess.h"

using exposurearithmetic::IndexBase;
using exposurearithmetic::SensiLog103;

namespace
{

constexpr FLOAT DefaultGridStep = 0.5f;

/// A long compensation above this lets Long stay below Safe.
constexpr FLOAT CompensationInForce = 1.0000001f;

constexpr FLOAT Unity = 1.0f;

/// Safe over Short, without what the predictive gain makes up for.
FLOAT ADRCOf(UINT64 safe, UINT64 shortExposure, FLOAT predictiveGain)
{
    const DOUBLE ratio = static_cast<DOUBLE>(safe) / static_cast<DOUBLE>(shortExposure);
    return static_cast<FLOAT>((predictiveGain >= 1.0f) ? ratio / static_cast<DOUBLE>(predictiveGain) : ratio);
}

}  // namespace

CKIROConvergence::CKIROConvergence(StatsTuningData& rTuningData, IKIROContextManager& rContextManager)
    : ModuleCommon(rTuningData, rContextManager), m_input{}, m_range{}, m_pRange(nullptr), m_output{}, m_DRCOutput{},
      m_pTuning(nullptr), m_pConvBase(nullptr), m_pConvStretch(nullptr), m_pConvSettle(nullptr),
      m_pBaseCoreData(nullptr), m_scdID(0), m_bBrightnessSettle(FALSE), m_bSettle(FALSE), m_bSettleArray{},
      m_settleCount(0), m_convEventManager(rContextManager),
      m_bIsTargetFixed(FALSE), m_smoothADRC{}, m_smoothDarkBoost{}
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
        std::copy(std::begin(m_input.sensiLog103), std::end(m_input.sensiLog103), m_output.sensiLog103);
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

    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        AdjustExpWithUnitStepSize(m_output.sensiLog103[type], type);
    }
    rOutput.mfhdrLongADRC     = 1.0f;
    const AECAlgoHDRType type = m_rContextManager.GetInput()->HDRType;
    if (type == StaggeredHDR || type == MultiframeHDR)
    {
        const FLOAT delta =
            static_cast<FLOAT>(m_output.sensiLog103[AECAlgoExposureSafe] - m_output.sensiLog103[AECAlgoExposureLong]);
        rOutput.mfhdrLongADRC = std::max(std::pow(IndexBase, delta), 1.0f);
    }
    CalculateCompensationDarkBoostGain(rInput, rOutput);
    PopulateOutput(rOutput);
    return 0;
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
        m_output.sensiLog103[type] = SensiLog103(static_cast<FLOAT>(pPrevious->exposureSets[type].exposure));
    }
    m_input.bIsMeteringSkipped = rInput.bIsMeteringSkipped;
    m_bIsTargetFixed           = m_convEventManager.IsTargetFixed(m_input);
    UpdateDBTriggers();
    return 0;
}

/// @return false when the base tuning yields no speeds, and nothing was computed
bool CKIROConvergence::RunStages()
{
    ComputeBasicSafeConvergence();
    if (m_pBaseCoreData == nullptr)
    {
        return false;
    }
    ComputeTargetStretchOutput();
    ComputeDRCConvergence();
    DRCStretchAggregator();
    return true;
}

bool CKIROConvergence::ConvBasedOnDirection()
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

bool CKIROConvergence::CheckRunConvConditions()
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

VOID CKIROConvergence::AdjustExpWithUnitStepSize(DOUBLE& rLogExp, UINT32 exposureType) const
{
    const KIROExposureRange& rRange         = m_pRange->ranges[exposureType];
    const UINT64             indexZero      = m_pRange->indexZeroExposure;
    const FLOAT              expIndexOffset = (indexZero == 0) ? 0.0f : SensiLog103(static_cast<FLOAT>(indexZero));
    const FLOAT              logExp         = static_cast<FLOAT>(rLogExp);
    const FLOAT              expIndex       = logExp - expIndexOffset;
    // At the edges the value stays off the grid, so that a limit exposure stays exact.
    if (rRange.start.indx < expIndex && rRange.end.indx > expIndex)
    {
        const FLOAT stepSize = GridStep();
        rLogExp              = std::round(logExp / stepSize) * stepSize;
    }
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
        pExposures[type] =
            exposurearithmetic::SaturateToUINT64(exposurearithmetic::ExposureOfSensiLog103(m_output.sensiLog103[type]));
    }
    CapExposure(rOutput);

    rOutput.predictiveGain = m_output.predGain;
    rOutput.shortStretchOffset =
        soundvalue::OrLast(m_output.shortStretchOffset, rLast.shortStretchOffset, 0.0f, "short stretch");
    rOutput.evMultiplier       = pInput->evContext.evFactor;
    rOutput.bBrightnessSettle  = FALSE;
    rOutput.bSettle            = FALSE;
    rOutput.bIsConvTargetFixed = m_bIsTargetFixed;

    const auto& rLastSets    = rLast.exposureSets;
    rOutput.compensationADRC = soundvalue::OrLast(
        ADRCOf(pExposures[AECAlgoExposureSafe], pExposures[AECAlgoExposureShort], rOutput.predictiveGain),
        ADRCOf(rLastSets[AECAlgoExposureSafe].exposure, rLastSets[AECAlgoExposureShort].exposure, rLast.predictiveGain),
        Unity, "ADRC");
    if (pInput->manualSetting.manualMode == AECAlgoModeManualFull)
    {
        rOutput.compensationDarkBoost = static_cast<FLOAT>(static_cast<DOUBLE>(pExposures[AECAlgoExposureLong]) /
                                                           static_cast<DOUBLE>(pExposures[AECAlgoExposureSafe]));
    }
    rOutput.compensationDarkBoost =
        soundvalue::OrLast(rOutput.compensationDarkBoost, rLast.compensationDarkBoost, Unity, "dark boost");
    m_convEventManager.GetLockedEV0(rOutput.lockedEV0Exposures);
}

VOID CKIROConvergence::CapExposure(KIROConvergenceOutput& rOutput)
{
    UINT64* pExposures = rOutput.exposures;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        const KIROExposureRange& rRange = m_pRange->ranges[type];
        pExposures[type] = std::min(std::max(pExposures[type], rRange.start.exposure), rRange.end.exposure);
    }
    UINT64& rShort = pExposures[AECAlgoExposureShort];
    UINT64& rSafe  = pExposures[AECAlgoExposureSafe];
    UINT64& rLong  = pExposures[AECAlgoExposureLong];
    rShort         = std::min({rLong, rShort, rSafe});
    if (rOutput.mfhdrLongADRC < CompensationInForce)
    {
        rLong = std::max(rLong, rSafe);
    }
    m_output.predGain = std::min(m_output.predGain, static_cast<FLOAT>(rSafe) / static_cast<FLOAT>(rShort));
}

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

    for (UINT32 index = 0; index < StretchCount(); ++index)
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
        return m_input.sensiLog103[AECAlgoExposureSafe] - m_input.sensiLog103[expType];
    }
    if (type == KIROConvDRCPrevDelta)
    {
        return DRCPrevDelta(expType);
    }

    const bool             isPrevious = type == KIROConvPrevious || type == KIROConvTgtPreviousDelta;
    const UINT8            offset     = isPrevious ? 1 : m_rContextManager.GetInput()->systemLatency;
    const AECFrameHistory* pFrame     = m_rContextManager.m_pHistory->GetFrameHistory(offset);
    if (pFrame == nullptr)
    {
        STATS_LOG_ERROR("Frame History is null. Sensitivity will not be converted to index");
        return 0.0;
    }
    DOUBLE exposure = SensiLog103(static_cast<FLOAT>(pFrame->exposureSets[expType].exposure));
    if (expType == AECAlgoExposureShort && pFrame->predictiveGain > 1.0f)
    {
        exposure += static_cast<DOUBLE>(SensiLog103(pFrame->predictiveGain));
    }
    const bool isDelta = type == KIROConvTgtMatchDelta || type == KIROConvTgtPreviousDelta;
    return isDelta ? m_input.sensiLog103[expType] - exposure : exposure;
}

DOUBLE CKIROConvergence::DRCPrevDelta(UINT32 expType) const
{
    const AECFrameHistory* pFrame = PreviousFrame();
    if (pFrame == nullptr)
    {
        STATS_LOG_ERROR("Frame History is null. Sensitivity will not be converted to index");
        return 0.0;
    }
    const FLOAT safe  = static_cast<FLOAT>(pFrame->exposureSets[AECAlgoExposureSafe].exposure);
    const FLOAT other = static_cast<FLOAT>(pFrame->exposureSets[expType].exposure);
    DOUBLE      delta = static_cast<DOUBLE>(SensiLog103(safe)) - static_cast<DOUBLE>(SensiLog103(other));
    if (expType == AECAlgoExposureShort && pFrame->predictiveGain > 1.0f)
    {
        delta -= static_cast<DOUBLE>(SensiLog103(pFrame->predictiveGain));
    }
    return delta;
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

/// Step of the output grid, in log steps.
FLOAT CKIROConvergence::GridStep() const
{
    const FLOAT step = m_pTuning->unitStepSize;
    return (step > 0.0f && step <= 1.0f) ? step : DefaultGridStep;
}

FLOAT CKIROConvergence::PreviousShortStretch() const
{
    const AECFrameHistory* pPrevious = PreviousFrame();
    return (pPrevious != nullptr) ? pPrevious->shortStretchOffset : 0.0f;
}
