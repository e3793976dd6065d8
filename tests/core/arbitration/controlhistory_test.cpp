// Keeping gain and time of a reference.

#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kiroarbitration;
using kirodbarbitrationtable::AECExpIncGain;
using kirodbarbitrationtable::AECExpIncTime;

namespace
{

class ControlHistory : public ArbitrationTest
{
protected:
    /// The reference is gain 2 at 10 ms; on the way up it goes to gain 8 at 20 ms.
    ControlHistory()
    {
        m_reference.dataID                            = 9;
        m_reference.referenceSource.bUseStaticTuning  = TRUE;
        m_reference.referenceSource.staticTuningGain  = 2.0f;
        m_reference.referenceSource.staticTuningTime  = 10 * Millisecond;
        m_reference.referenceSource.frameExposureTypeSelection = ExposureSafe;
        m_reference.endSettings = {EndManualSettings, m_table.dataID, AECExpIncGain, 8.0f, 20 * Millisecond};
    }

    KiroResult RunMatch(UINT64 exposure)
    {
        ArbitrationReferenceType references[2]{};
        references[1] = m_reference;
        KIROArbitrationType tuning{};
        tuning.referenceArrayCount = 2;
        tuning.referenceArray      = references;
        m_context.SetTuning(TestTuning().Add(tuning));
        m_context.m_pBankManager->SetBankTuning(BankIDArbitrationTable, nullptr, &m_table, 1);
        AskExposure(exposure);
        return Run(BankIDArbitrationTable, 9, ArbCtrlMatchHistory);
    }

    VOID ExpectMatch(UINT64 exposure, FLOAT gain, UINT64 time)
    {
        EXPECT_EQ(RunMatch(exposure), 0) << exposure;
        ExpectExposure(gain, time, std::to_string(exposure));
    }

    /// A frame with one gain, and times of 1, 2 and 3 ms more than time for Short, Long and Safe.
    VOID SaveFrame(UINT64 frameID, FLOAT gain, UINT64 time, BOOL bIsSnapshot = FALSE)
    {
        AECFrameHistory frame{};
        frame.frameID     = frameID;
        frame.bIsSnapshot = bIsSnapshot;
        for (UINT64 type = 0; type < AECAlgoExposureCount; ++type)
        {
            frame.exposureSets[type] = Set(gain, time + (type + 1) * Millisecond);
        }
        m_context.SaveFrame(frame);
        if (bIsSnapshot == TRUE)
        {
            m_context.m_pHistory->SaveSnapshotFrame(&frame);
        }
    }

    /// With an exposure that is the reference's, so that the result shows its gain and time.
    VOID ExpectReference(FLOAT gain, UINT64 time)
    {
        ExpectMatch(static_cast<UINT64>(gain) * time, gain, time);
    }

    ArbitrationReferenceType m_reference{};
};

} // namespace

TEST_F(ControlHistory, ExposureOfTheReferenceKeepsItsSplitEvenOutOfRange)
{
    ExpectMatch(20000000, 2.0f, 10 * Millisecond);
    ExpectMatch(20001000, 2.0f, 10 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.exposure, 20000000u) << "the reference's, not the request's";
    m_in.range.end.time = 5 * Millisecond;
    ExpectMatch(20000000, 2.0f, 10 * Millisecond);
    EXPECT_EQ(m_in.pTable, nullptr) << "no table was used";
}

TEST_F(ControlHistory, GoesUpTowardsTheEndAndFitsTheRange)
{
    ExpectMatch(40000000, 4.0f, 10 * Millisecond);
    ExpectMatch(80000000, 8.0f, 10 * Millisecond);
    ExpectMatch(120000000, 8.0f, 15 * Millisecond);
    m_reference.endSettings.quantityToModifyFirst = AECExpIncTime;
    ExpectMatch(30000000, 2.0f, 15 * Millisecond);
    ExpectMatch(80000000, 4.0f, 20 * Millisecond);
    m_in.range.end.time = 16 * Millisecond;
    ExpectMatch(80000000, 5.0f, 16 * Millisecond);
}

TEST_F(ControlHistory, GoesDownUndoingFirstWhatGoingUpRaisesFirst)
{
    m_reference.endSettings.manualGain = 1.0f;
    m_reference.endSettings.manualTime = 5 * Millisecond;
    ExpectMatch(15000000, 1.5f, 10 * Millisecond);
    ExpectMatch(8000000, 1.0f, 8 * Millisecond);
    m_reference.endSettings.quantityToModifyFirst = AECExpIncTime;
    ExpectMatch(15000000, 2.0f, 7500 * Microsecond);
    ExpectMatch(8000000, 1.6f, 5 * Millisecond);
}

TEST_F(ControlHistory, BeyondTheEndIsAnErrorThatCountsAsApplied)
{
    EXPECT_EQ(RunMatch(161000000), 0);
    EXPECT_EQ(m_out.exposureSet.exposure, 0u);
    EXPECT_TRUE(m_log.HasPart(LevelError, "error: ref exposure 20000000 target exposure 161000000 exceeds end exposure "
                                          "160000000 end gain 8.000000 end time 20000000"));
    m_reference.endSettings.manualGain = 1.0f;
    EXPECT_EQ(RunMatch(15000000), 0) << "the end is 20000000";
    EXPECT_EQ(m_out.exposureSet.exposure, 0u);
    EXPECT_TRUE(m_log.HasPart(LevelError, "error: ref exposure 20000000 target exposure 15000000 smaller than end "
                                          "exposure 20000000"));
}

TEST_F(ControlHistory, EndCanBeAKneeOfATable)
{
    SetTable({{AECExpIncTime, 1.0f, 5 * Millisecond}, {AECExpIncTime, 4.0f, 20 * Millisecond}});
    m_reference.endSettings.endSelection = EndLastTableKneePoint;
    ExpectMatch(60000000, 4.0f, 15 * Millisecond);
    m_reference.endSettings.endSelection = EndFirstTableKneePoint;
    ExpectMatch(8000000, 1.0f, 8 * Millisecond);
    m_reference.endSettings.tableID = 99;
    EXPECT_EQ(RunMatch(8000000), 1);
    m_reference.endSettings.endSelection = static_cast<EndKneePointType>(3);
    EXPECT_EQ(RunMatch(8000000), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "could not determine end selection type 3"));
}

TEST_F(ControlHistory, BracketedReferenceAppliesToItsSignOnly)
{
    m_reference.bEnableOnlyForBracketedSnapshot = TRUE;
    m_reference.bracketedEVType                 = EVPlus;
    EXPECT_EQ(RunMatch(20000000), 10);
    m_context.SetContextEvent(AECEVBracketing, TRUE);
    m_context.SetTrigger(TriggerCtrlBracketEV, 2.0f);
    EXPECT_EQ(RunMatch(20000000), 0);
    const struct
    {
        EVOffsetType type;
        INT32        ev;
        KiroResult   result;
    } cases[] = {{EVPlus, 1, 0},   {EVPlus, 0, 10},  {EVPlus, -1, 10}, {EVMinus, -1, 0}, {EVMinus, 0, 10},
                 {EVMinus, 1, 10}, {EVZero, 0, 0},   {EVZero, 1, 10},  {EVZero, -1, 10}, {static_cast<EVOffsetType>(3), 0, 1}};
    for (const auto& rCase : cases)
    {
        EXPECT_EQ(UtilMatchEV(rCase.ev, rCase.type), rCase.result) << rCase.type << " " << rCase.ev;
    }
}

TEST_F(ControlHistory, ReferenceCanBeAFrame)
{
    m_reference.referenceSource.bUseStaticTuning = FALSE;
    FrameSelectionType& rSelection               = m_reference.referenceSource.frameSelection;
    rSelection.frameType                         = TypePreview;
    rSelection.preview = {PreviewSearchMethod::SearchLastNonSnapshotRequest, 0};
    EXPECT_EQ(RunMatch(20000000), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "reference not found"));

    SaveFrame(1, 2.0f, 10 * Millisecond);
    SaveFrame(2, 3.0f, 10 * Millisecond);
    SaveFrame(3, 4.0f, 10 * Millisecond, TRUE);
    ExpectReference(3.0f, 13 * Millisecond);
    rSelection.preview = {PreviewSearchMethod::SearchOffset, 3};
    ExpectReference(2.0f, 13 * Millisecond);
    rSelection.frameType = TypeSnapshot;
    rSelection.snapshot  = {SnapshotSearchMethod::SearchOffset, EVZero, 1};
    ExpectReference(4.0f, 13 * Millisecond);
    m_reference.referenceSource.frameExposureTypeSelection = ExposureShort;
    ExpectReference(4.0f, 11 * Millisecond);
    m_reference.referenceSource.frameExposureTypeSelection = ExposureNone;
    ExpectReference(4.0f, 12 * Millisecond);  // Long

    rSelection.preview.searchMethod = static_cast<PreviewSearchMethod>(2);
    rSelection.frameType            = TypePreview;
    EXPECT_EQ(RunMatch(20000000), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "unexpected preview search method 2"));
    rSelection.frameType = static_cast<FrameType>(2);
    EXPECT_EQ(RunMatch(20000000), 6);
    m_reference.dataID = 8;
    EXPECT_EQ(RunMatch(20000000), 6) << "no such reference";
}

TEST_F(ControlHistory, LastPreviewIsFoundBehindAHistoryOfSnapshots)
{
    m_reference.referenceSource.bUseStaticTuning         = FALSE;
    m_reference.referenceSource.frameSelection.frameType = TypePreview;
    SaveFrame(1, 2.0f, 10 * Millisecond);
    for (UINT64 frameID = 2; frameID <= 12; ++frameID)
    {
        SaveFrame(frameID, 4.0f, 10 * Millisecond, TRUE);
    }
    ExpectReference(2.0f, 13 * Millisecond);
}
