// The gains of snapshots over the lux index.

#include "interface/ckirotriggermanager.h"

#include "tests/support/testcontext.h"

using namespace kirodbsnapshot;

namespace
{

using Query = VOID (CKIROTriggerManager::*)(const KIROGeneralizedTriggerSystemInput*,
                                            KIROGeneralizedTriggerSystemOutput&);

constexpr Query Queries[] = {
    &CKIROTriggerManager::GetSnapshotDBBracketingEVZero, &CKIROTriggerManager::GetSnapshotDBBracketingEVPlus,
    &CKIROTriggerManager::GetSnapshotDBBracketingEVMinus, &CKIROTriggerManager::GetSnapshotDBNonBracketing};

/// The settings of an ID. The kinds of snapshot have base, base + 10, ... as the ADRC gain up to lux index 100, twice
/// that from 200; the dark boost gain is 1 more.
struct Settings
{
    Settings(INT32 dataID, FLOAT base)
    {
        ExposureConfigType* configs[] = {
            &m_payload.value.bracketingConfig.zeroEVDRCConfig, &m_payload.value.bracketingConfig.positiveEVDRCConfig,
            &m_payload.value.bracketingConfig.negativeEVDRCConfig, &m_payload.value.nonBracketingConfig.DRCConfig};
        m_payload.dataID = dataID;
        for (UINT32 kind = 0; kind < 4; ++kind)
        {
            const FLOAT gain        = base + 10.0f * static_cast<FLOAT>(kind);
            m_zones[kind][0]        = {{50.0f, 100.0f}, {gain, gain + 1.0f}};
            m_zones[kind][1]        = {{200.0f, 300.0f}, {2.0f * gain, 2.0f * gain + 1.0f}};
            configs[kind]->fixedDRC = {2, 0, m_zones[kind]};
        }
    }

    DBSnapshotPayload                m_payload{};
    DRCGainTriggerSystemEndLevelType m_zones[4][2];
};

class SnapshotTriggers : public ContextTest
{
protected:
    VOID Expect(UINT32 kind, UINT32 dataID, FLOAT lux, FLOAT adrcGain, FLOAT darkBoostGain)
    {
        const KIROGeneralizedTriggerSystemInput input{{lux, 0.0f, 0.0f}, 1, dataID};
        KIROGeneralizedTriggerSystemOutput      output{{-1.0f, -1.0f, -1.0f, -1.0f, -1.0f}, 0};
        (m_manager.*Queries[kind])(&input, output);
        EXPECT_EQ(output.data[0], adrcGain) << "kind " << kind << ", lux " << lux;
        EXPECT_EQ(output.data[1], darkBoostGain) << "kind " << kind << ", lux " << lux;
        EXPECT_EQ(output.numOfOutput, 2);
    }

    CKIROTriggerManager m_manager{m_context};
};

TEST_F(SnapshotTriggers, EachKindOfSnapshotHasItsGains)
{
    const Settings    settings(5, 4.0f);
    const Settings    selected(6, 1.0f);
    DBSnapshotPayload payloads[] = {settings.m_payload, selected.m_payload};
    m_context.m_pBankManager->SetBankTuning(BankIDSnapshot, nullptr, payloads, 2);
    for (UINT32 kind = 0; kind < 4; ++kind)
    {
        const FLOAT gain = 4.0f + 10.0f * static_cast<FLOAT>(kind);
        Expect(kind, 5, 20.0f, gain, gain + 1.0f);
        Expect(kind, 5, 150.0f, 1.5f * gain, 1.5f * gain + 1.0f);
        Expect(kind, 5, 400.0f, 2.0f * gain, 2.0f * gain + 1.0f);
        Expect(kind, 0, 60.0f, gain - 3.0f, gain - 2.0f);
    }
    EXPECT_EQ(m_log.CountLevel(LevelError), 0u);

    // Each query starts the search anew: a trigger on a border always belongs to the lower zone.
    Settings bordering(5, 4.0f);
    bordering.m_zones[0][1].triggerLux.start = 100.0f;
    SetBank(BankIDSnapshot, &bordering.m_payload);
    Expect(0, 5, 250.0f, 8.0f, 9.0f);
    Expect(0, 5, 100.0f, 8.0f, 9.0f);
}

TEST_F(SnapshotTriggers, AMissingIDKeepsThePreviousSettingsOfTheTuning)
{
    for (UINT32 kind = 0; kind < 4; ++kind)
    {
        Expect(kind, 7, 60.0f, 0.0f, 0.0f);
    }
    EXPECT_EQ(m_log.Count(LevelError, "Dynamic snapshot payload is NULL"), 4u);
    EXPECT_TRUE(m_log.Has(LevelError, "Failed to get trigger data - m_pBracketingEVZero is NuLL"));

    KIROGeneralizedTriggerSystemOutput output{{7.0f, 7.0f}, 0};
    m_manager.GetSnapshotDBNonBracketing(nullptr, output);
    EXPECT_EQ(output.data[1], 0.0f);
    EXPECT_EQ(output.numOfOutput, 2);

    Settings settings(5, 4.0f);
    Tune(KIRODBSnapshotType{.dataCount = 1, .data = &settings.m_payload});
    Expect(1, 5, 60.0f, 14.0f, 15.0f);
    Expect(2, 7, 60.0f, 24.0f, 25.0f);
}

}  // namespace
