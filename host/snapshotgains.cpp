#include "host/snapshotgains.h"

#include <algorithm>

using namespace kirodbsnapshot;

const SnapshotTuningType* SnapshotGains::Settings() const
{
    KIROGetBankData query = {BankIDSnapshot, 0, nullptr, sizeof(DBSnapshotPayload)};
    if (m_pAlgo->getBankData(m_pAlgo, &query) != 0 || query.pData == nullptr)
    {
        return nullptr;
    }
    return &static_cast<const DBSnapshotPayload*>(query.pData)->value;
}

DRCGains SnapshotGains::ForBracket(INT32 evSteps, FLOAT luxIndex, const DRCGains& rPreview) const
{
    const SnapshotTuningType* pSettings = Settings();
    if (pSettings == nullptr || pSettings->bApplyDRCWhenBracketing != TRUE)
    {
        return {1.0f, 1.0f};
    }
    const BracketingExposureType& rBracket = pSettings->bracketingConfig;
    const ExposureConfigType&     rConfig  = (evSteps > 0)   ? rBracket.positiveEVDRCConfig
                                             : (evSteps < 0) ? rBracket.negativeEVDRCConfig
                                                             : rBracket.zeroEVDRCConfig;
    DRCGains                      gains    = {1.0f, 1.0f};
    switch (rConfig.method)
    {
    case DRCFromBaseExposureWithConstraints:
        gains = {std::min(rPreview.ADRC, rConfig.baseExposureConstraints.maxADRCGain),
                 std::min(rPreview.darkBoost, rConfig.baseExposureConstraints.maxDarkBoostGain)};
        break;
    case FixedDRCFromTuning:
        // A configuration without zones has nothing to answer with.
        gains = (rConfig.fixedDRC.triggerSystemCount > 0) ? TunedGains(rConfig.fixedDRC, luxIndex) : gains;
        break;
    default:
        break;
    }
    return {std::max(gains.ADRC, 1.0f), std::max(gains.darkBoost, 1.0f)};
}

DRCGains SnapshotGains::TunedGains(const FixedDRCTriggerType& rTuned, FLOAT luxIndex) const
{
    DRCGains             gains  = {1.0f, 1.0f};
    CKIROTriggerDataXML* pZones = m_pAlgo->createDataXml(m_pAlgo, KIROMLTwoFloatsDataType);
    if (pZones == nullptr)
    {
        return gains;
    }
    constexpr INT32   levels = 1;
    AECTriggerXMLData tree   = {
          rTuned.triggerSystem, {levels, sizeof(DRCGainType)}, static_cast<INT32>(rTuned.triggerSystemCount)};
    pZones->SetData(pZones, &tree, KIROMLTwoFloatsDataType);
    if (const VOID* pTuned = pZones->GetData(pZones, luxIndex, 0.0f, 0.0f))
    {
        const auto& rTunedGains = *static_cast<const DRCGainType*>(pTuned);
        gains                   = {rTunedGains.ADRCGain, rTunedGains.darkBoostGain};
    }
    pZones->DestoryInstance(pZones);
    return gains;
}
