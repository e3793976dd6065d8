#include "core/base/ckirohistory.h"

#include <gtest/gtest.h>

#include "platform/tavodesk.h"
#include "tests/support/statslogcapture.h"

namespace
{

class History : public testing::Test
{
protected:
    KiroResult Save(UINT64 frameID, bool bSnapshot = false)
    {
        AECFrameHistory frame = {.frameID = frameID, .bIsSnapshot = bSnapshot ? TRUE : FALSE};
        return m_history.SaveFrameToHistory(&frame);
    }

    VOID SaveStart()
    {
        AECFrameHistory frame = {.isStartConfig = TRUE, .averageLuma = 77.0f};
        ASSERT_EQ(m_history.SaveFrameToHistory(&frame), 0);
    }

    /// Starts a mode whose frames have the IDs.
    VOID Run(std::initializer_list<UINT64> frameIDs, UINT64 currentID)
    {
        SaveStart();
        for (UINT64 frameID : frameIDs)
        {
            ASSERT_EQ(Save(frameID), 0);
        }
        ASSERT_EQ(m_history.SaveCurrentFrameID(currentID), 0);
    }

    VOID SaveSnapshot(UINT64 frameID, INT32 evUIVal)
    {
        AECFrameHistory frame = {.frameID = frameID, .evUIVal = evUIVal};
        m_history.SaveSnapshotFrame(&frame);
    }

    UINT64 SnapshotID(kiroarbitration::SnapshotSearchMethod method, kiroarbitration::EVOffsetType type, INT32 value)
    {
        const kiroarbitration::SnapshotFrameSelectionType selection{method, type, value};
        const AECFrameHistory*                            pFrame = m_history.GetSnapshotFrameHistory(&selection);
        return (pFrame != nullptr) ? pFrame->frameID : 0;
    }

    StatsLogCapture m_log;
    CKIROHistory    m_history;
};

TEST_F(History, GrowsFromNothingOverTheStartConfigurationToFrames)
{
    EXPECT_EQ(m_history.GetFrameHistory(0), nullptr);
    EXPECT_TRUE(m_log.Has(2, "Frame History: No start configuration! returning NULL"));
    SaveStart();
    EXPECT_EQ(m_history.IsStartConfigSaved(), TRUE);
    EXPECT_EQ(m_history.GetFrameHistory(200)->averageLuma, 77.0f);
    EXPECT_TRUE(m_log.Has(32, "Frame history: returning start config"));
    EXPECT_EQ(m_history.SaveCurrentFrameID(5), 0);
    EXPECT_EQ(m_history.GetFrameHistory(1)->averageLuma, 77.0f);
    EXPECT_EQ(m_history.IsCurrentModeHistoryEmpty(), TRUE);
    Save(5);
    EXPECT_EQ(m_history.GetFrameHistory(1)->frameID, 5u);

    m_history.InitializeHistory();
    EXPECT_EQ(m_history.GetFrameHistory(0), nullptr);
    EXPECT_EQ(m_history.GetCurrentFrameID(), 0u);
}

TEST_F(History, OffsetsCountFrameIDsNotPositions)
{
    Run({5, 6, 8}, 9);
    const std::pair<UINT8, UINT64> cases[] = {{0, 8}, {1, 8}, {2, 6}, {3, 6}, {4, 5}, {9, 5}, {10, 5}};
    for (const auto& [offset, frameID] : cases)
    {
        const AECFrameHistory* pFrame = m_history.GetFrameHistory(offset);
        ASSERT_NE(pFrame, nullptr);
        EXPECT_EQ(pFrame->frameID, frameID) << "offset " << static_cast<INT>(offset);
    }
    EXPECT_EQ(m_history.GetFrameHistory(11), nullptr);
    EXPECT_TRUE(m_log.Has(2, "Input offset (11) is bigger than the frame history buffer size (10)!"));
}

TEST_F(History, AnOffsetIsLookedUpAnewAfterEachChange)
{
    const auto previousID = [this] { return m_history.GetFrameHistory(1)->frameID; };
    Run({5, 6}, 6);
    EXPECT_EQ(previousID(), 5u);
    m_history.SaveCurrentFrameID(7);
    EXPECT_EQ(previousID(), 6u);

    for (UINT64 frameID = 7; frameID <= 15; ++frameID)
    {
        Save(frameID);
        EXPECT_EQ(previousID(), 6u);
    }
    Save(16);
    EXPECT_EQ(previousID(), 7u) << "the oldest one: frame 6 has dropped out of the list";

    m_history.FinishCurrentModeHistory(AECAlgoOperationModeFastAEC);
    EXPECT_EQ(previousID(), 7u) << "goes on after a fast mode";
    m_history.FinishCurrentModeHistory(AECAlgoOperationModeStreaming);
    EXPECT_EQ(m_history.GetFrameHistory(1), nullptr);
    SaveStart();
    m_history.SaveCurrentFrameID(30);
    EXPECT_EQ(m_history.GetFrameHistory(1)->averageLuma, 77.0f);
}

TEST_F(History, IDsMustRise)
{
    Run({7}, 7);
    EXPECT_EQ(Save(7), 4);
    EXPECT_TRUE(m_log.Has(2, "Saved frame ID is too small! Skipping..."));
    EXPECT_EQ(m_history.SaveCurrentFrameID(7), 1);
    EXPECT_TRUE(m_log.Has(2, "Current stats frame ID (7) is invalid, not larger than previous (7)!"));
    EXPECT_EQ(m_history.GetCurrentFrameID(), 7u);
    EXPECT_EQ(Save(8), 0);
}

TEST_F(History, APreviewFrameThatFellOutIsKeptAndTheOldestOfTheListNotSought)
{
    Run({1}, 1);
    for (UINT64 frameID = 2; frameID <= 10; ++frameID)
    {
        Save(frameID, true);
    }
    m_history.SaveCurrentFrameID(11);
    EXPECT_EQ(m_history.GetPreviousNonSnapshotFrame(), nullptr) << "frame 1 lies ten frames back, and is in the list";
    Save(11, true);
    ASSERT_NE(m_history.GetPreviousNonSnapshotFrame(), nullptr);
    EXPECT_EQ(m_history.GetPreviousNonSnapshotFrame()->frameID, 1u);
}

TEST_F(History, ASteadyCameraTakesNoMemoryAlsoOverChangesOfMode)
{
    const auto run = [this](UINT64 first)
    {
        SaveStart();
        for (UINT64 frameID = first; frameID < first + 30; ++frameID)
        {
            Save(frameID, frameID % 3 == 0);
            SaveSnapshot(frameID, 0);
        }
        EXPECT_EQ(m_history.GetFrameCount(), 10u);
        m_history.FinishCurrentModeHistory(AECAlgoOperationModeStreaming);
    };
    run(1);
    run(51);
    const UINT64 before = TavoDesk::GetAllocationCounters().allocations;
    run(101);
    run(201);
    EXPECT_EQ(TavoDesk::GetAllocationCounters().allocations, before);
    AECFrameHistory last{};
    EXPECT_EQ(m_history.GetPrevModeLastFrame(last), TRUE);
    EXPECT_EQ(last.frameID, 230u);
}

TEST_F(History, SnapshotMarkReachesTheSavedFrameOrTheNextOne)
{
    // Before any frame it refers to frame 0, the start configuration.
    m_history.SetSnapshot();
    EXPECT_TRUE(m_log.Has(2, "previous frame is null"));
    AECFrameHistory start = {.isStartConfig = TRUE};
    m_history.SaveFrameToHistory(&start);
    EXPECT_EQ(start.bIsSnapshot, TRUE);

    // Announced after the end of the frame.
    Run({9}, 9);
    m_history.SetSnapshot();
    EXPECT_EQ(m_history.GetFrameHistory(0)->bIsSnapshot, TRUE);
    m_history.SaveCurrentFrameID(10);
    Save(10);
    EXPECT_EQ(m_history.GetFrameHistory(0)->bIsSnapshot, FALSE);

    // Announced during the frame.
    m_history.SaveCurrentFrameID(11);
    m_history.SetSnapshot();
    EXPECT_EQ(m_history.GetFrameHistory(0)->bIsSnapshot, FALSE) << "frame 10 is not meant";
    AECFrameHistory frame = {.frameID = 11};
    m_history.SaveFrameToHistory(&frame);
    EXPECT_EQ(frame.bIsSnapshot, TRUE) << "the caller sees the mark";
    EXPECT_EQ(m_history.GetFrameHistory(0)->bIsSnapshot, TRUE);

    // A mark for a frame that never comes does not last.
    m_history.SaveCurrentFrameID(12);
    m_history.SetSnapshot();
    Save(13);
    Save(14);
    m_history.SaveCurrentFrameID(14);
    EXPECT_EQ(m_history.GetFrameHistory(0)->bIsSnapshot, FALSE);
}

TEST_F(History, LeavingAModeKeepsWhatTheNextOneStartsFrom)
{
    const std::tuple<AECAlgoOperationModeType, bool, bool> cases[] = {
        {AECAlgoOperationModeInit, false, false},        {AECAlgoOperationModeStreaming, true, false},
        {AECAlgoOperationModePreflash, false, false},    {AECAlgoOperationModeFastAEC, true, true},
        {AECAlgoOperationModeAggressiveAEC, true, true}, {AECAlgoOperationModeFlashMeasurement, false, false},
    };
    for (const auto& [mode, bBecomesPrevious, bKeepsRunning] : cases)
    {
        SCOPED_TRACE(mode);
        CKIROHistory    history;
        AECFrameHistory last{};
        AECFrameHistory start    = {.isStartConfig = TRUE};
        AECFrameHistory frames[] = {{.frameID = 3}, {.frameID = 4}};
        history.SaveFrameToHistory(&start);

        m_log.Clear();
        history.FinishCurrentModeHistory(mode);
        EXPECT_EQ(m_log.Has(32, "No frames in history!"), mode != AECAlgoOperationModeInit);
        EXPECT_EQ(history.IsStartConfigSaved() == TRUE, bKeepsRunning);
        EXPECT_EQ(history.GetPrevModeLastFrame(last), FALSE);

        for (AECFrameHistory* pFrame : {&start, &frames[0], &frames[1]})
        {
            history.SaveFrameToHistory(pFrame);
        }
        history.FinishCurrentModeHistory(mode);
        EXPECT_EQ(history.IsCurrentModeHistoryEmpty() == FALSE, bKeepsRunning);
        EXPECT_EQ(history.GetPrevModeLastFrame(last) == TRUE, bBecomesPrevious);
        EXPECT_EQ(last.frameID, bBecomesPrevious ? 4u : 0u);
    }

    // A preflash leaves the previous mode alone.
    Run({3, 4}, 4);
    m_history.FinishCurrentModeHistory(AECAlgoOperationModeStreaming);
    Run({5, 6}, 6);
    m_history.FinishCurrentModeHistory(AECAlgoOperationModePreflash);
    AECFrameHistory last{};
    EXPECT_EQ(m_history.GetPrevModeLastFrame(last), TRUE);
    EXPECT_EQ(last.frameID, 4u);
}

TEST_F(History, FlashFrames)
{
    m_history.SaveFlashFrame(KIROExtFlashCurrentType::Off);
    EXPECT_TRUE(m_log.Has(2, "AECFlash error empty history"));
    SaveStart();
    AECFrameHistory frame = {
        .frameID = 1, .exposureSets = {{}, {}, {.exposure = 500}}, .exposureTargets = {11, 12, 13}};
    m_history.SaveFrameToHistory(&frame);
    m_history.SaveFlashFrame(KIROExtFlashCurrentType::Off);
    EXPECT_TRUE(m_log.HasPart(16, "AECFlash OFF saved safe exposure 500 targets 11 12 13"));
    Save(2);
    m_history.SaveFlashFrame(KIROExtFlashCurrentType::Low);
    EXPECT_EQ(m_history.GetFlashFrame(KIROExtFlashCurrentType::Off)->frameID, 1u);
    EXPECT_EQ(m_history.GetFlashFrame(KIROExtFlashCurrentType::Full)->frameID, 2u);
    m_history.SaveFlashFrame(KIROExtFlashCurrentType::Off);
    EXPECT_EQ(m_history.GetFlashFrame(KIROExtFlashCurrentType::Low), nullptr);
}

TEST_F(History, FindsSnapshotFrames)
{
    using kiroarbitration::EVMinus;
    using kiroarbitration::EVPlus;
    using kiroarbitration::EVZero;
    using enum kiroarbitration::SnapshotSearchMethod;

    EXPECT_EQ(SnapshotID(SearchOffset, EVZero, 0), 0u);
    EXPECT_TRUE(m_log.Has(2, "Input offset 0 is >= history buffer size 0"));
    EXPECT_EQ(SnapshotID(SearchOffset, EVZero, -1), 0u);

    SaveSnapshot(100, -6);
    for (UINT64 frameID = 1; frameID <= 8; ++frameID)
    {
        SaveSnapshot(frameID, 0);
    }
    SaveSnapshot(9, 6);
    SaveSnapshot(10, 12);  // the eleventh drops frame 100
    Run({}, 10);

    EXPECT_EQ(SnapshotID(SearchEVType, EVZero, 0), 8u);
    EXPECT_EQ(SnapshotID(SearchEVType, EVPlus, 0), 10u);
    EXPECT_EQ(SnapshotID(SearchEVType, EVMinus, 0), 0u);
    EXPECT_EQ(SnapshotID(SearchEVUIVal, EVZero, 6), 9u);
    EXPECT_EQ(SnapshotID(SearchEVUIVal, EVZero, 7), 0u);
    EXPECT_EQ(SnapshotID(SearchOffset, EVZero, 3), 7u);
    EXPECT_EQ(SnapshotID(SearchOffset, EVZero, 9), 1u);
    EXPECT_EQ(SnapshotID(SearchOffset, EVZero, 10), 0u);
    EXPECT_TRUE(m_log.Has(2, "Input offset 10 is >= history buffer size 10"));
    EXPECT_EQ(SnapshotID(SearchOffset, EVZero, 11), 0u);
    EXPECT_TRUE(m_log.Has(2, "Input offset 11 is bigger than the snapshot history size 10"));
    EXPECT_EQ(SnapshotID(static_cast<kiroarbitration::SnapshotSearchMethod>(3), EVZero, 0), 0u);
    EXPECT_TRUE(m_log.Has(2, "Unknown search type 3"));

    m_history.SaveCurrentFrameID(11);
    m_history.InitializeHistory();
    EXPECT_EQ(SnapshotID(SearchEVUIVal, EVZero, 12), 10u) << "snapshots outlive a mode change";
}

}  // namespace
