#include "host/bracketcapture.h"

#include <algorithm>

#include "interface/ckiroctrlcorecommon.h"
#include "schema/kirodbstatscalculator.h"

using namespace kirodbsnapshot;

namespace
{

/// Longer than any camera exposes.
constexpr DOUBLE ExposureMax = 1e18;

UINT64 ToExposure(DOUBLE exposure)
{
    return static_cast<UINT64>(std::clamp(exposure, 1.0, ExposureMax));
}

AECAlgoExposureType TypeOf(KIROExposureSelection selection)
{
    switch (selection)
    {
    case ExposureShort:
        return AECAlgoExposureShort;
    case ExposureLong:
        return AECAlgoExposureLong;
    default:
        return AECAlgoExposureSafe;
    }
}

/// The exposure that a bracket is built around. The user's EV is in the converged exposures, and not in the targets.
DOUBLE BaseExposure(const SnapshotTuningType* pSettings, const KiroHostFrame& rFrame)
{
    const KIROConvergenceOutput& rConverged = rFrame.convergence;
    if (pSettings == nullptr)
    {
        return static_cast<DOUBLE>(rConverged.exposures[AECAlgoExposureSafe]);
    }
    const BaseExposureType&   rBase    = pSettings->bracketingConfig.baseExposure;
    const AECAlgoExposureType type     = TypeOf(rBase.exposureType);
    const bool                isTarget = rBase.source == BaseExposureTarget;
    const bool                isEVKept = pSettings->bApplyBracketingOnTopOfPreviewEV == TRUE;
    const DOUBLE previewEV = (rConverged.evMultiplier > 0.0f) ? static_cast<DOUBLE>(rConverged.evMultiplier) : 1.0;
    const UINT64 exposure  = isTarget ? rFrame.metering.exposures[type] : rConverged.exposures[type];
    const DOUBLE base      = static_cast<DOUBLE>(exposure);
    if (isTarget == isEVKept)
    {
        return isTarget ? base * previewEV : base / previewEV;
    }
    return base;
}

}  // namespace

BracketCapture::BracketCapture(KiroHost& rHost)
    : m_rHost(rHost), m_gains(rHost.Algo()), m_hasShownPicture(false), m_frame{}
{
}

VOID BracketCapture::Start(const std::vector<INT32>& rEVSteps)
{
    m_pending.insert(m_pending.end(), rEVSteps.begin(), rEVSteps.end());
}

const KiroHostFrame& BracketCapture::RunFrame(UINT64 frameID, KIROStatsList& rStats)
{
    m_hasShownPicture = StatsShowPicture(frameID);
    m_picture.reset();
    if (!m_pending.empty() && m_rHost.IsStreaming())
    {
        TakePicture(frameID, rStats, !m_hasShownPicture);
    }
    else if (m_hasShownPicture)
    {
        m_metering.reset();
        // The history finds frames by ID: a frame that the core has not seen leaves no gap for it.
        m_frame = m_rHost.LastFrame();
    }
    else
    {
        m_metering.reset();
        m_frame = m_rHost.RunFrame(frameID, rStats);
    }
    return m_frame;
}

bool BracketCapture::StatsShowPicture(UINT64 frameID)
{
    const UINT64 age = m_rHost.StatisticsAge();
    while (!m_taken.empty() && m_taken.front() + age < frameID)
    {
        m_taken.pop_front();
    }
    return !m_taken.empty() && m_taken.front() + age == frameID;
}

VOID BracketCapture::TakePicture(UINT64 frameID, KIROStatsList& rStats, bool isMetered)
{
    IKIROCoreAlgo* pAlgo = m_rHost.Algo();
    pAlgo->SetContextEvent(pAlgo, AECEVBracketing, TRUE);
    PublishEV(m_pending.front());
    m_pending.pop_front();
    m_taken.push_back(frameID);
    m_picture.emplace();
    m_frame = m_rHost.RunSnapshotFrame(frameID, rStats, KIROCoreSnapshotType::Normal, isMetered,
                                       [&](KiroHostFrame& rFrame) { ChooseExposures(rFrame, isMetered); });
    pAlgo->SetContextEvent(pAlgo, AECEVBracketing, FALSE);
    PublishEV(0);
}

VOID BracketCapture::ChooseExposures(KiroHostFrame& rFrame, bool isMetered)
{
    if (isMetered)
    {
        m_metering = rFrame.metering;
    }
    else if (m_metering.has_value())
    {
        rFrame.metering = *m_metering;
    }
    KIROConvergenceOutput& rConverged = rFrame.convergence;
    BracketPicture&        rPicture   = *m_picture;
    rPicture.isLocked                 = rFrame.metering.bIsMeteringSkipped == TRUE;
    rPicture.evSteps                  = static_cast<INT32>(m_rHost.Trigger(TriggerCtrlBracketEV));
    rPicture.multiplier =
        CKIROCtrlCoreCommon::UtilGetEVMultiplier(&m_rHost.Tuning(), rPicture.evSteps, KIROEVBracketing);
    rPicture.gains = m_gains.ForBracket(rPicture.evSteps, rFrame.luxIndex,
                                        {rConverged.compensationADRC, rConverged.compensationDarkBoost});

    const DOUBLE safe = BaseExposure(m_gains.Settings(), rFrame) * static_cast<DOUBLE>(rPicture.multiplier);
    rConverged.exposures[AECAlgoExposureSafe]  = ToExposure(safe);
    rConverged.exposures[AECAlgoExposureShort] = ToExposure(safe / static_cast<DOUBLE>(rPicture.gains.ADRC));
    rConverged.exposures[AECAlgoExposureLong]  = ToExposure(safe * static_cast<DOUBLE>(rPicture.gains.darkBoost));
    rConverged.predictiveGain                  = 1.0f;
    rConverged.compensationADRC                = rPicture.gains.ADRC;
    rConverged.compensationDarkBoost           = rPicture.gains.darkBoost;
}

VOID BracketCapture::PublishEV(INT32 evSteps)
{
    kirodbstatscalculator::DBFloatPayload payload{};
    payload.dataID              = TriggerCtrlBracketEV;
    payload.value               = static_cast<FLOAT>(evSteps);
    const KIROSetBankData entry = {BankIDTriggers, &payload, sizeof(payload)};
    IKIROCoreAlgo*        pAlgo = m_rHost.Algo();
    (VOID) pAlgo->setBankData(pAlgo, &entry);
}
