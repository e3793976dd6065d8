#include "host/snapshotgains.h"

#include <algorithm>

#include "interface/kirocontextaccess.h"

using namespace kirodbsnapshot;

SnapshotGains::SnapshotGains(IKIROCoreAlgo* pAlgo) : m_pAlgo(pAlgo)
{
    IKIROContextManager* pContext = GetKiroContextManager(pAlgo);
    if (pContext != nullptr)
    {
        m_triggers.emplace(*pContext);
    }
}

const SnapshotTuningType* SnapshotGains::Settings() const
{
    KIROGetBankData query = {BankIDSnapshot, 0, nullptr, sizeof(DBSnapshotPayload)};
    if (m_pAlgo->getBankData(m_pAlgo, &query) != 0 || query.pData == nullptr)
    {
        return nullptr;
    }
    return &static_cast<const DBSnapshotPayload*>(query.pData)->value;
}

DRCGains SnapshotGains::ForBracket(INT32 evSteps, FLOAT luxIndex, const DRCGains& rPreview)
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
        gains = (rConfig.fixedDRC.triggerSystemCount > 0) ? TunedGains(evSteps, luxIndex) : gains;
        break;
    default:
        break;
    }
    return {std::max(gains.ADRC, 1.0f), std::max(gains.darkBoost, 1.0f)};
}

DRCGains SnapshotGains::TunedGains(INT32 evSteps, FLOAT luxIndex)
{
    if (!m_triggers.has_value())
    {
        return {1.0f, 1.0f};
    }
    const KIROGeneralizedTriggerSystemInput input = {{luxIndex, 0.0f, 0.0f}, 1, 0};
    KIROGeneralizedTriggerSystemOutput      output{};
    if (evSteps > 0)
    {
        m_triggers->GetSnapshotDBBracketingEVPlus(&input, output);
    }
    else if (evSteps < 0)
    {
        m_triggers->GetSnapshotDBBracketingEVMinus(&input, output);
    }
    else
    {
        m_triggers->GetSnapshotDBBracketingEVZero(&input, output);
    }
    return {output.data[0], output.data[1]};
}
