#include "core/base/ckirobankmanager.h"

#include <gtest/gtest.h>

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

/// An entry of a priority map.
struct Rule
{
    std::vector<KIROTunaraEventType> events;
    INT32                            priority;
    INT32                            dataID;
};

/// Most tests use the bank of active detectors, whose payload is small.
class BankManager : public testing::Test
{
protected:
    /// Without a priority map.
    VOID Tune(std::vector<DBConvActiveSCDPayload>& rPayloads)
    {
        m_pBanks->SetBankTuning(BankIDConvActiveSCD, nullptr, rPayloads.data(), static_cast<UINT32>(rPayloads.size()));
    }

    VOID TuneMap(std::vector<Rule> rules)
    {
        m_rules = std::move(rules);
        m_map.clear();
        for (Rule& rRule : m_rules)
        {
            m_map.push_back(
                {static_cast<UINT32>(rRule.events.size()), 0, rRule.events.data(), rRule.priority, rRule.dataID});
        }
        m_bank = {BankIDConvActiveSCD, static_cast<UINT32>(m_map.size()), 0, m_map.data()};
        m_pBanks->SetBankTuning(BankIDConvActiveSCD, &m_bank, m_payloads.data(),
                                static_cast<UINT32>(m_payloads.size()));
    }

    UINT32 SelectedID(INT32 dataID = 0)
    {
        const DBConvActiveSCDPayload* pPayload = m_pBanks->GetDataConvActiveSCD(dataID);
        return (pPayload != nullptr) ? pPayload->dataID : 0;
    }

    UINT32 SelectedAfter(KIRODynamicDataOperationType operation, INT32 dataID)
    {
        EXPECT_EQ(m_pBanks->SetControlDynamicData(operation, BankIDConvActiveSCD, dataID), 0);
        return SelectedID();
    }

    /// The result, and what the query then points at; a pointer of its own before.
    std::pair<KiroResult, VOID*> HostGet(KIROBankIDType bankID, INT32 dataID, INT32 size)
    {
        KIROGetBankData  data{bankID, dataID, Untouched(), size};
        const KiroResult result = m_pBanks->GetControlData(&data);
        return {result, data.pData};
    }

    VOID* Untouched()
    {
        return &m_payloads;
    }

    template <typename Payload>
    KiroResult HostSet(KIROBankIDType bankID, Payload& rPayload, INT32 size = sizeof(Payload))
    {
        const KIROSetBankData data{bankID, &rPayload, size};
        return m_pBanks->SetControlData(&data);
    }

    StatsLogCapture                         m_log;
    TavoPtr<CKIROBankManager>               m_pBanks = TavoNew<CKIROBankManager>();
    std::vector<Rule>                       m_rules;
    std::vector<TunaraBankDataPriorityType> m_map;
    TunaraBankDataType                      m_bank{};
    std::vector<DBConvActiveSCDPayload>     m_payloads = {{5, nullptr, 50}, {7, nullptr, 70}, {9, nullptr, 90}};
};

TEST_F(BankManager, ContextSelectsByPriority)
{
    TuneMap({{{AECDefault}, 0, 5},
             {{AECTouch}, 3, 7},
             {{AECFace}, 3, 9},
             {{AECLock, AECTouch}, 8, 5},
             {{AECDefault, AECCustomContext10}, 20, 9},
             {{AECSettled}, 9, 42},
             {{AECEV}, 10, 0}});
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
    TuneMap({{{AECDefault}, -1, 5}});
    EXPECT_EQ(SelectedID(), 9u);
    EXPECT_TRUE(m_log.Has(LevelTrace, "Bank 14 did not find any priority: using first data"));

    TuneMap({{{}, 0, 7}});
    EXPECT_EQ(SelectedID(), 7u) << "an empty list of events holds always";

    Tune(m_payloads);
    EXPECT_EQ(SelectedID(), 9u);
    EXPECT_TRUE(m_log.Has(LevelTrace, "no priority, needs debugging bank ID 14"));

    // Value banks take no part in the selection, and every other bank says that it has no map.
    m_log.Clear();
    m_pBanks->RunBankStartOfFrame(0);
    EXPECT_EQ(m_log.CountLevel(LevelTrace), 14u);
}

TEST_F(BankManager, AFullBankDropsNewIDsAndRetuningLeavesNothingBehind)
{
    std::vector<DBConvActiveSCDPayload> many(1002);
    for (UINT32 index = 0; index < many.size(); ++index)
    {
        many[index].dataID = index + 1;
    }
    Tune(many);
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
    Tune(none);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(0), nullptr);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(3), nullptr);
}

TEST_F(BankManager, HostEntryReplacesInPlaceOrBecomesTheFallback)
{
    Tune(m_payloads);
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
}

TEST_F(BankManager, OverrideActsOnReadingAndSurvivesRetuning)
{
    Tune(m_payloads);
    EXPECT_EQ(SelectedAfter(DynamicDataOverride, 0), 9u) << "index 0 overrides nothing";
    EXPECT_EQ(SelectedAfter(DynamicDataOverride, 7), 7u);
    EXPECT_EQ(SelectedID(5), 5u);
    Tune(m_payloads);
    EXPECT_EQ(SelectedID(), 7u);
    EXPECT_EQ(SelectedAfter(DynamicDataOverride, 8), 0u);
    EXPECT_EQ(m_pBanks->GetDataConvActiveSCD(0), nullptr);
    EXPECT_EQ(SelectedAfter(DynamicDataReset, 7), 9u);

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
    using Answer = std::pair<KiroResult, VOID*>;
    Tune(m_payloads);
    const INT32 scdSize   = sizeof(DBConvActiveSCDPayload);
    const INT32 floatSize = sizeof(DBFloatPayload);
    EXPECT_EQ(HostGet(BankIDConvActiveSCD, 7, scdSize), Answer(0, &m_payloads[1]));
    EXPECT_EQ(HostGet(BankIDConvActiveSCD, 8, scdSize), Answer(6, Untouched()));
    EXPECT_EQ(HostGet(BankIDConvActiveSCD, 7, floatSize).first, 1);
    EXPECT_TRUE(m_log.Has(LevelError, "get bank failed bank ID 14 bank payload size 24 provided size 16"));
    EXPECT_EQ(HostGet(BankIDMax, 7, scdSize).first, 1);
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
        EXPECT_EQ(HostGet(bankID, 0, size).first, 0);
        EXPECT_NE(HostGet(bankID, 0, size).second, Untouched());
        EXPECT_EQ(HostGet(bankID, 1000, size), Answer(1, nullptr));
        EXPECT_TRUE(m_log.Has(LevelError, pLine));
        EXPECT_EQ(HostGet(bankID, -1, size).first, 1);
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

    const DataBankType analyzer{BankIDSceneAnalyzer, 20};
    const DataBankType calculator{BankIDStatsCalculator, 1};
    EXPECT_EQ(m_pBanks->UtilSetStartEndToBank(&analyzer, {1.0f, 2.0f}, text, BankDataType::startEnd), 0);
    EXPECT_EQ(m_pBanks->GetDataSceneAnalyzer(20)->description, text);
    EXPECT_NE(m_pBanks->UtilSetStartEndToBank(&calculator, {1.0f, 2.0f}, "", BankDataType::startEnd), 0);
    EXPECT_TRUE(m_log.Has(LevelError, "Invalid bank ID 4 for Scene Analyzer Algorithm.\n"));
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
