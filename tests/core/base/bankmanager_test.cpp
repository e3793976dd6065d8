#include "core/base/ckirobankmanager.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "core/base/tavomemory.h"
#include "tests/support/statslogcapture.h"

using kirodbconvactivescd::DBConvActiveSCDPayload;
using kirodbconvbase::DBConvBasePayload;

namespace
{

constexpr UINT64 Bit(KIROTunaraEventType event)
{
    return 1ULL << event;
}

/// A priority map that owns its lists of events.
class PriorityMap
{
public:
    VOID Add(std::vector<KIROTunaraEventType> events, INT32 priority, INT32 dataID)
    {
        m_events.push_back(std::move(events));
        m_entries.push_back({static_cast<UINT32>(m_events.back().size()), 0, nullptr, priority, dataID});
    }

    TunaraBankDataType* Get()
    {
        for (size_t index = 0; index < m_entries.size(); ++index)
        {
            m_entries[index].context = m_events[index].data();
        }
        m_bank = {BankIDConvActiveSCD, static_cast<UINT32>(m_entries.size()), 0, m_entries.data()};
        return &m_bank;
    }

private:
    std::vector<std::vector<KIROTunaraEventType>> m_events;
    std::vector<TunaraBankDataPriorityType>       m_entries;
    TunaraBankDataType                            m_bank{};
};

/// Most tests use the bank of active detectors, whose payload is small.
class BankManager : public testing::Test
{
protected:
    BankManager() : m_pBanks(TavoNew<CKIROBankManager>())
    {
    }

    VOID Tune(TunaraBankDataType* pMap, std::vector<DBConvActiveSCDPayload>& rPayloads)
    {
        m_pBanks->SetBankTuning(BankIDConvActiveSCD, pMap, rPayloads.data(), static_cast<UINT32>(rPayloads.size()));
    }

    UINT32 SelectedID(INT32 dataID = 0)
    {
        const DBConvActiveSCDPayload* pPayload = m_pBanks->GetDataConvActiveSCD(dataID);
        return (pPayload != nullptr) ? pPayload->dataID : 0;
    }

    template <typename Payload>
    KiroResult HostSet(KIROBankIDType bankID, Payload& rPayload, INT32 size = sizeof(Payload))
    {
        const KIROSetBankData data{bankID, &rPayload, size};
        return m_pBanks->SetControlData(&data);
    }

    StatsLogCapture                     m_log;
    TavoPtr<CKIROBankManager>           m_pBanks;
    std::vector<DBConvActiveSCDPayload> m_payloads = {{5, nullptr, 50}, {7, nullptr, 70}, {9, nullptr, 90}};
};

TEST_F(BankManager, ContextSelectsByPriority)
{
    PriorityMap map;
    map.Add({AECDefault}, 0, 5);
    map.Add({AECTouch}, 3, 7);
    map.Add({AECFace}, 3, 9);
    map.Add({AECLock, AECTouch}, 8, 5);
    map.Add({AECDefault, AECCustomContext10}, 20, 9);
    map.Add({AECSettled}, 9, 42);
    map.Add({AECEV}, 10, 0);
    Tune(map.Get(), m_payloads);
    EXPECT_EQ(SelectedID(), 5u) << "selected as soon as the tuning is there";

    const std::tuple<UINT64, UINT32, const CHAR*> cases[] = {
        {0, 5, "Bank BankIDConvActiveSCD dynamic data pointed to ID 5"},
        {Bit(AECTouch), 7, "Bank BankIDConvActiveSCD dynamic data pointed to ID 7"},
        {Bit(AECFace), 9, "Bank BankIDConvActiveSCD dynamic data pointed to ID 9"},
        {Bit(AECTouch) | Bit(AECFace), 7, "Bank BankIDConvActiveSCD dynamic data pointed to ID 7"},
        {Bit(AECLock), 5, "Bank BankIDConvActiveSCD dynamic data pointed to ID 5"},
        {Bit(AECLock) | Bit(AECTouch), 5, "Bank BankIDConvActiveSCD dynamic data pointed to ID 5"},
        {Bit(AECCustomContext10), 5, "Bank BankIDConvActiveSCD dynamic data pointed to ID 5"},
        {Bit(AECCustomContext10) | Bit(AECDefault), 9, "Bank BankIDConvActiveSCD dynamic data pointed to ID 9"},
        {Bit(AECSettled), 9,
         "Bank BankIDConvActiveSCD dynamic data pointed to ID 42 and returned KiroResult 6, using first data"},
        {Bit(AECEV), 9, "Bank 14 dynamic data points to 0, using first data as fallback"},
    };
    for (const auto& [context, dataID, pLine] : cases)
    {
        SCOPED_TRACE(context);
        m_log.Clear();
        m_pBanks->RunBankStartOfFrame(context);
        EXPECT_EQ(m_pBanks->GetContext(), context);
        EXPECT_EQ(SelectedID(), dataID);
        EXPECT_TRUE(m_log.Has(LevelTrace, pLine));
    }
}

TEST_F(BankManager, WithoutAWinnerTheLastTunedEntryServes)
{
    PriorityMap negative;
    negative.Add({AECDefault}, -1, 5);
    Tune(negative.Get(), m_payloads);
    EXPECT_EQ(SelectedID(), 9u);
    EXPECT_TRUE(m_log.Has(LevelTrace, "Bank 14 did not find any priority: using first data"));

    PriorityMap listless;
    listless.Add({}, 0, 7);
    Tune(listless.Get(), m_payloads);
    EXPECT_EQ(SelectedID(), 7u) << "an empty list of events holds always";

    Tune(nullptr, m_payloads);
    EXPECT_EQ(SelectedID(), 9u);
    EXPECT_TRUE(m_log.Has(LevelTrace, "no priority, needs debugging bank ID 14"));

    // Value banks take no part in the selection, and every other bank says that it has no map.
    m_log.Clear();
    m_pBanks->RunBankStartOfFrame(0);
    EXPECT_EQ(m_log.CountLevel(LevelTrace), 14u);
    EXPECT_EQ(m_log.Lines().size(), 14u);
}

TEST_F(BankManager, AFullBankDropsNewIDsAndRetuningLeavesNothingBehind)
{
    std::vector<DBConvActiveSCDPayload> many(1002);
    for (UINT32 index = 0; index < many.size(); ++index)
    {
        many[index].dataID = index + 1;
    }
    Tune(nullptr, many);
    EXPECT_EQ(SelectedID(), 1000u) << "entries beyond the thousandth are left out";
    EXPECT_EQ(SelectedID(1), 1u);
    EXPECT_EQ(SelectedID(1001), 0u);

    DBConvActiveSCDPayload fresh{1001, nullptr, 1};
    EXPECT_EQ(HostSet(BankIDConvActiveSCD, fresh), 0);
    EXPECT_EQ(SelectedID(1001), 0u);
    DBConvActiveSCDPayload known{3, nullptr, 33};
    EXPECT_EQ(HostSet(BankIDConvActiveSCD, known), 0);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(3)->SCDID, 33u);

    std::vector<DBConvActiveSCDPayload> none;
    Tune(nullptr, none);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(0), nullptr);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(3), nullptr);
}

TEST_F(BankManager, HostEntryReplacesInPlaceOrBecomesTheFallback)
{
    Tune(nullptr, m_payloads);
    DBConvActiveSCDPayload known{7, nullptr, 77};
    EXPECT_EQ(HostSet(BankIDConvActiveSCD, known), 0);
    m_pBanks->RunBankStartOfFrame(0);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(7), &known) << "the bank keeps the pointer";
    EXPECT_EQ(SelectedID(), 9u);

    DBConvActiveSCDPayload fresh{3, nullptr, 33};
    EXPECT_EQ(HostSet(BankIDConvActiveSCD, fresh), 0);
    m_pBanks->RunBankStartOfFrame(0);
    EXPECT_EQ(SelectedID(), 3u);

    DBConvActiveSCDPayload selected{0, nullptr, 44};
    EXPECT_EQ(HostSet(BankIDConvActiveSCD, selected), 0);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(0), &selected);
    m_pBanks->RunBankStartOfFrame(0);
    EXPECT_EQ(SelectedID(), 3u);

    Tune(nullptr, m_payloads);
    EXPECT_EQ(SelectedID(3), 0u);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(7)->SCDID, 70u);
}

TEST_F(BankManager, OverrideActsOnReadingAndSurvivesRetuning)
{
    Tune(nullptr, m_payloads);
    EXPECT_EQ(m_pBanks->SetControlDynamicData(DynamicDataOverride, BankIDConvActiveSCD, 0), 0);
    EXPECT_EQ(SelectedID(), 9u) << "index 0 overrides nothing";
    EXPECT_EQ(m_pBanks->SetControlDynamicData(DynamicDataOverride, BankIDConvActiveSCD, 7), 0);
    EXPECT_EQ(SelectedID(), 7u);
    EXPECT_EQ(SelectedID(5), 5u);
    Tune(nullptr, m_payloads);
    EXPECT_EQ(SelectedID(), 7u);
    EXPECT_EQ(m_pBanks->SetControlDynamicData(DynamicDataOverride, BankIDConvActiveSCD, 8), 0);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(0), nullptr);
    EXPECT_EQ(m_pBanks->SetControlDynamicData(DynamicDataReset, BankIDConvActiveSCD, 7), 0);
    EXPECT_EQ(SelectedID(), 9u);

    EXPECT_EQ(m_pBanks->SetControlDynamicData(DynamicDataOverride, BankIDTriggers, 1), 0);
    EXPECT_EQ(m_pBanks->SetControlDynamicData(DynamicDataOverride, BankIDMax, 1), 6);
    EXPECT_TRUE(m_log.Has(LevelError, "invalid bank id 17"));
}

TEST_F(BankManager, HostWritesAreChecked)
{
    DBFloatPayload value{999, 1.5f, nullptr};
    EXPECT_EQ(HostSet(BankIDTriggers, value), 0);
    EXPECT_EQ(m_pBanks->GetDataTriggers(999)->value, 1.5f);
    EXPECT_NE(m_pBanks->GetDataTriggers(999), &value);
    EXPECT_EQ(HostSet(BankIDStatsCalculator, value), 0);
    value.dataID = 1000;
    EXPECT_EQ(HostSet(BankIDTriggers, value), 4);
    EXPECT_TRUE(
        m_log.Has(LevelError, "cannot store in trigger bank; index 1000 must be smaller than 1000 and larger than 0"));
    value.dataID = -1;
    EXPECT_EQ(HostSet(BankIDStatsCalculator, value), 4);
    EXPECT_TRUE(m_log.Has(
        LevelError, "cannot store in stats calculator  bank; index -1 must be smaller than 1000 and larger than 0"));

    m_log.Clear();
    DBStartEndPayload range{-1, {1.0f, 2.0f}, nullptr};
    EXPECT_EQ(HostSet(BankIDSceneAnalyzer, range), 0);
    EXPECT_TRUE(m_log.Lines().empty());
    range.dataID = -2;
    EXPECT_EQ(HostSet(BankIDSceneAnalyzer, range), 4);
    EXPECT_TRUE(m_log.Has(LevelError, "Data is not saved in Scene Analyzer DB with index -2"));

    EXPECT_EQ(HostSet(BankIDConvBase, value), 4);
    EXPECT_TRUE(m_log.Has(LevelError, "expected payload size 72 received 16"));
    EXPECT_EQ(HostSet(BankIDTriggers, value, -16), 4);
    const KIROSetBankData noData{BankIDTriggers, nullptr, sizeof(DBFloatPayload)};
    EXPECT_EQ(m_pBanks->SetControlData(&noData), 4);
    EXPECT_TRUE(m_log.Has(LevelError, "invalid null payload pointer"));
    EXPECT_EQ(HostSet(BankIDInvalid, value), 6);
    EXPECT_EQ(HostSet(static_cast<KIROBankIDType>(-1), value), 6);
    EXPECT_TRUE(m_log.Has(LevelError, "invalid bank id -1"));
    EXPECT_EQ(m_pBanks->SetControlData(nullptr), 4);
}

TEST_F(BankManager, HostReads)
{
    Tune(nullptr, m_payloads);
    VOID* const     pUntouched = &m_payloads;
    const INT32     scdSize    = sizeof(DBConvActiveSCDPayload);
    const INT32     floatSize  = sizeof(DBFloatPayload);
    KIROGetBankData data{BankIDConvActiveSCD, 7, pUntouched, scdSize};
    EXPECT_EQ(m_pBanks->GetControlData(&data), 0);
    EXPECT_EQ(data.pData, &m_payloads[1]);

    data = {BankIDConvActiveSCD, 8, pUntouched, scdSize};
    EXPECT_EQ(m_pBanks->GetControlData(&data), 6);
    EXPECT_EQ(data.pData, pUntouched);
    data = {BankIDConvActiveSCD, 7, pUntouched, floatSize};
    EXPECT_EQ(m_pBanks->GetControlData(&data), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "get bank failed bank ID 14 bank payload size 24 provided size 16"));
    data = {BankIDMax, 7, pUntouched, scdSize};
    EXPECT_EQ(m_pBanks->GetControlData(&data), 1);
    EXPECT_TRUE(m_log.HasPart(LevelError, "get bank failed bank ID 17 pBank"));
    EXPECT_EQ(m_pBanks->GetControlData(nullptr), 4);

    const std::tuple<KIROBankIDType, INT32, const CHAR*> valueBanks[] = {
        {BankIDTriggers, floatSize, "GetDataTriggers Invalid data ID 1000"},
        {BankIDStatsCalculator, floatSize, "GetDataStatsCalculator Invalid data ID 1000"},
        {BankIDSceneAnalyzer, sizeof(DBStartEndPayload), "GetDataSceneAnalyzer Invalid data ID 1000"},
    };
    for (const auto& [bankID, size, pLine] : valueBanks)
    {
        SCOPED_TRACE(bankID);
        data = {bankID, 0, pUntouched, size};
        EXPECT_EQ(m_pBanks->GetControlData(&data), 0);
        EXPECT_NE(data.pData, pUntouched);
        data = {bankID, 1000, pUntouched, size};
        EXPECT_EQ(m_pBanks->GetControlData(&data), 1);
        EXPECT_EQ(data.pData, nullptr);
        EXPECT_TRUE(m_log.Has(LevelError, pLine));
        data = {bankID, -1, pUntouched, size};
        EXPECT_EQ(m_pBanks->GetControlData(&data), 1);
    }
}

TEST_F(BankManager, ReferencesResolveIntoNumbersAndRanges)
{
    CHAR              text[] = "text";
    DBROIPayload      roi{4, text, {}, 0.25f};
    DBFloatPayload    value{12, 2.5f, text};
    DBStartEndPayload range{13, {3.0f, 4.0f}, text};
    m_pBanks->SetBankTuning(BankIDROITable, nullptr, &roi, 1);
    HostSet(BankIDTriggers, value);
    HostSet(BankIDStatsCalculator, value);
    HostSet(BankIDSceneAnalyzer, range);

    const std::tuple<DataBankType, KiroResult, KiroResult, FLOAT, FLOAT, bool> cases[] = {
        {{BankIDTriggers, 12}, 0, 0, 2.5f, 2.5f, true},        {{BankIDTriggers, 1000}, 1, 4, 0.0f, 0.0f, false},
        {{BankIDStatsCalculator, 12}, 0, 0, 2.5f, 2.5f, true}, {{BankIDStatsCalculator, -1}, 1, 4, 0.0f, 0.0f, false},
        {{BankIDSceneAnalyzer, 13}, 0, 0, 3.0f, 4.0f, true},   {{BankIDSceneAnalyzer, 1000}, 1, 4, 0.0f, 0.0f, false},
        {{BankIDROITable, 4}, 0, 0, 0.25f, 0.25f, true},       {{BankIDROITable, 0}, 0, 0, 0.25f, 0.25f, true},
        {{BankIDROITable, 5}, 0, 0, 0.0f, 0.0f, false},        {{BankIDConvBase, 1}, 1, 1, 0.0f, 0.0f, false},
        {{BankIDInvalid, 1}, 1, 1, 0.0f, 0.0f, false},
    };
    for (const auto& [reference, floatResult, rangeResult, start, end, bText] : cases)
    {
        SCOPED_TRACE(testing::Message() << reference.bankID << "/" << reference.dataID);
        FLOAT    number       = -9.0f;
        StartEnd pair         = {-9.0f, -9.0f};
        CHAR*    pDescription = nullptr;
        EXPECT_EQ(m_pBanks->UtilGetFloatFromBank(&reference, number, FALSE, &pDescription), floatResult);
        EXPECT_EQ(number, start);
        EXPECT_EQ(pDescription, bText ? text : nullptr);
        EXPECT_EQ(m_pBanks->UtilGetFloatFromBank(&reference, number, FALSE, nullptr), floatResult);
        EXPECT_EQ(m_pBanks->UtilGetStartEndFromBank(&reference, pair, FALSE), rangeResult);
        EXPECT_EQ(pair.start, start);
        EXPECT_EQ(pair.end, end);
    }
    EXPECT_TRUE(m_log.Has(LevelError, "BankIDTriggers Invalid data ID 1000"));
    EXPECT_TRUE(m_log.Has(LevelError, "BankIDStatsCalculator Invalid data ID -1"));
    EXPECT_TRUE(m_log.Has(LevelError, "BankIDSceneAnalyzer Invalid data ID 1000"));
    EXPECT_FALSE(m_log.HasPart(LevelError, "Invalid bankID"));

    const DataBankType wrong{BankIDConvBase, 7};
    FLOAT              number;
    StartEnd           pair;
    m_pBanks->UtilGetFloatFromBank(&wrong, number, TRUE, nullptr);
    m_pBanks->UtilGetStartEndFromBank(&wrong, pair, TRUE);
    EXPECT_TRUE(m_log.Has(LevelError, "Invalid bankID 11 with dataID 7 returning 0.0\n"));
    EXPECT_TRUE(m_log.Has(LevelError, "Invalid bankID 11 with dataID 7 returning [0.0, 0.0]\n"));
}

TEST_F(BankManager, WritesOneEndOrBoth)
{
    const DataBankType analyzer{BankIDSceneAnalyzer, 20};
    EXPECT_EQ(m_pBanks->UtilSetStartEndToBank(&analyzer, {1.0f, 2.0f}, "first", BankDataType::startEnd), 0);
    EXPECT_EQ(m_pBanks->UtilSetStartEndToBank(&analyzer, {8.0f, 9.0f}, "second", BankDataType::start), 0);
    const DBStartEndPayload* pSlot = m_pBanks->GetDataSceneAnalyzer(20);
    EXPECT_EQ(pSlot->value.start, 8.0f);
    EXPECT_EQ(pSlot->value.end, 2.0f);
    EXPECT_STREQ(pSlot->description, "second");
    m_pBanks->UtilSetStartEndToBank(&analyzer, {5.0f, 6.0f}, "third", BankDataType::end);
    EXPECT_EQ(pSlot->value.start, 8.0f);
    EXPECT_EQ(pSlot->value.end, 6.0f);

    const DataBankType trigger{BankIDTriggers, 100};
    m_pBanks->UtilSetStartEndToBank(&trigger, {3.0f, 4.0f}, "trigger", BankDataType::startEnd);
    EXPECT_EQ(m_pBanks->GetDataTriggers(100)->value, 3.0f);
    m_pBanks->UtilSetStartEndToBank(&trigger, {5.0f, 6.0f}, "trigger", BankDataType::end);
    EXPECT_EQ(m_pBanks->GetDataTriggers(100)->value, 3.0f);

    const DataBankType calculator{BankIDStatsCalculator, 1};
    EXPECT_NE(m_pBanks->UtilSetStartEndToBank(&calculator, {1.0f, 2.0f}, "", BankDataType::startEnd), 0);
    EXPECT_TRUE(m_log.Has(LevelError, "Invalid bank ID 4 for Scene Analyzer Algorithm.\n"));
}

TEST_F(BankManager, PublishedTriggerIsACopy)
{
    EXPECT_EQ(m_pBanks->PublishTrigger(TriggerCtrlLux, 250.0f, "CtrlLux", SourceCore), 0);
    const DBFloatPayload* pSlot = m_pBanks->GetDataTriggers(TriggerCtrlLux);
    EXPECT_EQ(pSlot->dataID, 8);
    EXPECT_EQ(pSlot->value, 250.0f);
    EXPECT_STREQ(pSlot->description, "CtrlLux");
    EXPECT_STREQ(m_pBanks->GetBankName(BankIDTriggers), "BankIDTriggers");
}

TEST_F(BankManager, ModulesWriteToTheBanksTheyName)
{
    DBConvBasePayload                           base{};
    kirodbconvstretch::DBConvStretchPayload     stretch{};
    kirodbconvsettle::DBConvSettlePayload       settle{};
    kirodb2dmeterweight::DBMeter2DWeightPayload weights{};
    EXPECT_EQ(m_pBanks->SetDataConvBase({3, &base, SourceModuleConvergence}), 0);
    EXPECT_EQ(m_pBanks->SetDataConvStretch({4, &stretch, SourceModuleConvergence}), 0);
    EXPECT_EQ(m_pBanks->SetDataConvSettle({5, &settle, SourceModuleConvergence}), 0);
    EXPECT_EQ(m_pBanks->SetDataMetering2D({6, &weights, SourceModuleConvergence}), 0);
    EXPECT_EQ(m_pBanks->GetDataConvBase(3), &base);
    EXPECT_EQ(m_pBanks->GetDataConvStretch(4), &stretch);
    EXPECT_EQ(m_pBanks->GetDataConvSettle(5), &settle);
    EXPECT_EQ(m_pBanks->GetDataMetering2D(6), &weights);
}

TEST(Bank, RemovesTheEntriesOfOneSourceInOrder)
{
    StatsLogCapture        log;
    TavoPtr<CKIROBank>     pBank   = TavoNew<CKIROBank>();
    DBConvActiveSCDPayload tuned[] = {{1, nullptr, 0}, {2, nullptr, 0}};
    DBConvActiveSCDPayload added   = {3, nullptr, 0};
    pBank->Initialize(BankIDConvActiveSCD, "BankIDConvActiveSCD", sizeof(tuned[0]));
    pBank->SetTuning(nullptr, tuned, 2);
    pBank->SetBankData({3, &added, SourceModuleConvergence});
    pBank->ResetData(SourceModuleConvergence);
    BankData data{3, nullptr, SourceCore};
    EXPECT_EQ(pBank->GetBankData(data), 6);
    pBank->SetBankBasedOnContext();
    data.dataID = 0;
    EXPECT_EQ(pBank->GetBankData(data), 0);
    EXPECT_EQ(data.dataID, 2) << "the front stays the front";
    EXPECT_EQ(data.source, SourceTuning);

    pBank->ResetData();
    data = {1, nullptr, SourceCore};
    EXPECT_EQ(pBank->GetBankData(data), 6);
    data.dataID = 0;
    EXPECT_EQ(pBank->GetBankData(data), 0);
    EXPECT_EQ(data.pPayload, nullptr);
}

}  // namespace
