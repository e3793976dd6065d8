// External maps: when a map counts as usable, how far a mark may move, and when tracking ends.

#include "core/metering/ckiroextmapmanager.h"

#include <cmath>
#include <set>
#include <string>

#include "core/base/tuningaccess.h"
#include "parameters/tablemodule.h"
#include "tests/support/testcontext.h"

namespace
{

using namespace kiroexternalmapprocessor;

constexpr INT32  InputID     = 7;
constexpr INT32  OutputID    = 8;
constexpr UINT32 ColumnCount = 16;

using Cells = std::set<UINT32>;

constexpr UINT32 At(UINT32 row, UINT32 column)
{
    return row * ColumnCount + column;
}

class ExternalMap : public ContextTest
{
protected:
    ExternalMap()
    {
        m_processor.enable                            = TRUE;
        m_processor.input                             = {selectionMap, InputID, {2, 0, m_ranges}};
        m_processor.output.dataIDWeight2D             = OutputID;
        m_processor.validStateConsecutiveFrameCount   = 1;
        m_processor.invalidStateConsecutiveFrameCount = 100;
        m_processor.timeoutStateConsecutiveFrameCount = 100;
        m_input.dataID                                = InputID;
    }

    VOID Load()
    {
        Tune(KIROExternalMapProcessorType{.externalMapProcessorCount = 1, .externalMapProcessor = &m_processor});
        m_context.m_pBankManager->SetDataMetering2D({InputID, &m_input, SourceControl});
    }

    /// Cells of the output table after a frame with these weights.
    Cells Run()
    {
        m_manager.RunExtMapProcessors();
        const auto* pOutput = m_context.m_pBankManager->GetDataMetering2D(OutputID);
        Cells       cells;
        for (UINT32 cell = 0; pOutput != nullptr && cell < std::size(pOutput->weights); ++cell)
        {
            if (pOutput->weights[cell] == 1.0f)
            {
                cells.insert(cell);
            }
        }
        return cells;
    }

    Cells Frame(const Cells& rMarked)
    {
        std::fill(std::begin(m_input.weights), std::end(m_input.weights), 0.0f);
        for (UINT32 cell : rMarked)
        {
            m_input.weights[cell] = 1.0f;
        }
        return Run();
    }

    RangeStartEndType        m_ranges[2] = {{{0.0f, 100.0f}, {2.0f, 4.0f}}, {{200.0f, 300.0f}, {6.0f, 8.0f}}};
    ExternalMapProcessorType m_processor{};
    DBMeter2DWeightPayload   m_input{};
    CKIROExtMapManager       m_manager{m_context};
};

TEST_F(ExternalMap, TracksOnlyAfterEnoughUsableFramesInARow)
{
    const Cells four                            = {10, 20, 30, 40};
    const Cells five                            = {10, 20, 30, 40, 50};
    m_processor.validGridRatio                  = 4.0f / 256.0f;
    m_processor.validStateConsecutiveFrameCount = 2;
    Load();
    EXPECT_EQ(Frame(five), Cells());
    EXPECT_EQ(Frame(four), Cells()) << "exactly at the ratio";
    EXPECT_EQ(Frame(five), Cells());
    EXPECT_EQ(Frame(five), five);
    EXPECT_TRUE(m_log.Has(LevelTrace, "Switch from Stand By --> Tracking, 2 2 "));
    EXPECT_EQ(Frame(four), four) << "tracking has a threshold of its own";
    EXPECT_EQ(Frame(five), four) << "a lost cell does not come back at a distance";
}

TEST_F(ExternalMap, MarkMovesOnlyWithinItsNeighbourhood)
{
    const std::tuple<UINT32, UINT32, UINT32, bool> moves[] = {
        {0, At(8, 8), At(8, 8), true},     {0, At(8, 8), At(8, 9), false},  {1, At(8, 8), At(9, 7), true},
        {1, At(8, 8), At(8, 10), false},   {2, At(8, 8), At(8, 10), true},  {2, At(8, 8), At(8, 6), true},
        {9, At(8, 8), At(6, 8), true},     {2, At(8, 8), At(10, 8), true},  {2, At(8, 8), At(9, 10), false},
        {2, At(8, 8), At(10, 10), false},  {2, At(8, 8), At(8, 11), false}, {1, At(3, 15), At(4, 0), false},
        {2, At(3, 0), At(2, 15), false},   {2, At(0, 0), At(1, 1), true},   {2, At(15, 15), At(13, 15), true},
        {2, At(14, 14), At(15, 15), true}, {2, At(1, 1), At(0, 0), true},
    };
    for (const auto& [strength, from, to, isTracked] : moves)
    {
        m_processor.spatialConsistencyStrength = strength;
        Load();
        EXPECT_EQ(Frame({from}), Cells({from}));
        EXPECT_EQ(Frame({to}), isTracked ? Cells({to}) : Cells()) << strength << ": " << from << " to " << to;
    }
}

TEST_F(ExternalMap, GivesUpRebasesAndTimesOut)
{
    const Cells region                            = {0, 1, 2, 3};
    const Cells other                             = {100, 101, 102, 103};
    m_processor.validGridRatio                    = 2.0f / 256.0f;
    m_processor.invalidGridRatio                  = 2.0f / 256.0f;
    m_processor.timeoutGridRatio                  = 1.0f / 256.0f;
    m_processor.validStateConsecutiveFrameCount   = 2;
    m_processor.invalidStateConsecutiveFrameCount = 2;
    m_processor.timeoutStateConsecutiveFrameCount = 2;
    Load();
    Frame(region);
    EXPECT_EQ(Frame(region), region);
    EXPECT_EQ(Frame({0, 1}), Cells({0, 1})) << "just enough";
    EXPECT_EQ(Frame({0}), Cells({0}));
    EXPECT_EQ(Frame({0}), Cells({0})) << "the frame of giving up";
    EXPECT_TRUE(m_log.Has(LevelTrace, "Switch from Tracking --> Rebasing, 2 2 "));

    EXPECT_EQ(Frame(other), Cells()) << "rebasing";
    EXPECT_EQ(Frame(other), Cells());
    EXPECT_TRUE(m_log.Has(LevelTrace, "Switch from Rebasing --> Tracking, 2 2 "));
    EXPECT_EQ(Frame(other), other) << "from the input of the frame before";

    // Empty frames add up over a good one; two of them end the rebasing.
    Frame({});
    Frame({});
    Frame({});
    Frame(region);
    EXPECT_FALSE(m_log.HasPart(LevelTrace, "Stand By, "));
    Frame({});
    EXPECT_TRUE(m_log.Has(LevelTrace, "Switch from Tracking --> Stand By, 2 2 "));
    Frame(region);
    EXPECT_EQ(Frame(region), region) << "usable after two frames again";
}

TEST_F(ExternalMap, ReadsBothKindsOfMaps)
{
    m_processor.input.mapType = selectionMap;
    Load();
    const FLOAT weights[] = {0.9f, 1.0f, 1.9f, 2.0f, -1.0f, 4.0f, 4.1f, 6.0f, 1e20f, NAN};
    std::copy(std::begin(weights), std::end(weights), m_input.weights);
    EXPECT_EQ(Run(), Cells({1, 2}));

    m_processor.input.mapType = statsMap;
    Load();
    m_context.SetTrigger(TriggerCtrlLux, 50.0f);
    EXPECT_EQ(Run(), Cells({3, 5}));
    Load();
    m_context.SetTrigger(TriggerCtrlLux, 150.0f);  // 4 to 6 between the two ranges
    EXPECT_EQ(Run(), Cells({5, 6, 7}));

    // A map of an unknown kind, or none, is an empty one.
    m_processor.input.mapType = static_cast<ExternalMapType>(5);
    Load();
    EXPECT_EQ(Run(), Cells());
    m_processor.input = {selectionMap, 99, {}};
    Load();
    EXPECT_EQ(Run(), Cells());
    EXPECT_NE(m_context.m_pBankManager->GetDataMetering2D(OutputID), nullptr);
}

TEST_F(ExternalMap, TheFirstCellAloneHasTheRangeBelowABorderThatTheLuxIndexFallsTo)
{
    m_processor.input.mapType = statsMap;
    m_ranges[1].trigger1Lux   = {100.0f, 300.0f};
    Load();
    m_context.SetTrigger(TriggerCtrlLux, 250.0f);
    EXPECT_EQ(Run(), Cells());
    std::fill(std::begin(m_input.weights), std::end(m_input.weights), 7.0f);
    m_context.SetTrigger(TriggerCtrlLux, 100.0f);
    const Cells cells = Run();
    EXPECT_EQ(cells.size(), 255U);
    EXPECT_FALSE(cells.contains(0));
}

TEST_F(ExternalMap, ChangedTuningLeavesNoTableOfADeletedProcessor)
{
    CKIROBankManager& rBanks = *m_context.m_pBankManager;
    Load();
    EXPECT_EQ(Frame({5}), Cells({5}));
    rBanks.RunBankStartOfFrame(0);
    EXPECT_EQ(rBanks.GetDataMetering2D(0), rBanks.GetDataMetering2D(OutputID)) << "the newest entry is selected";

    // A live edit does not rebuild the banks.
    auto*             pTuning = tuningaccess::Get_kiroexternalmapprocessor(m_context.m_tuningData);
    const std::string other   = std::to_string(OutputID + 1);
    EXPECT_TRUE(
        TableModule::FromRecord(pTuning)->SetValue("externalMapProcessor[0].output.dataIDWeight2D", other.c_str()));
    EXPECT_EQ(Frame({5}), Cells());
    EXPECT_EQ(rBanks.GetDataMetering2D(OutputID), nullptr);
    EXPECT_EQ(rBanks.GetDataMetering2D(OutputID + 1)->weights[5], 1.0f);
    EXPECT_EQ(rBanks.GetDataMetering2D(0), &m_input);
}

}  // namespace
