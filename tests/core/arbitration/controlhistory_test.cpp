// Keeping gain and time of a reference.

#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kiroarbitration;
using kirodbarbitrationtable::AECExpIncTime;

namespace
{

class ControlHistory : public ArbitrationTest
{
protected:
    /// The reference is gain 2 at 10 ms; on the way up it goes to gain 8 at 20 ms, gain first.
    ControlHistory()
    {
        m_reference.dataID                  = 9;
        m_source.bUseStaticTuning           = TRUE;
        m_source.staticTuningGain           = 2.0f;
        m_source.staticTuningTime           = 10 * Millisecond;
        m_source.frameExposureTypeSelection = ExposureSafe;
        m_reference.endSettings             = {EndManualSettings, m_table.dataID, {}, 8.0f, 20 * Millisecond};
    }

    KiroResult RunMatch(UINT64 exposure)
    {
        ArbitrationReferenceType references[] = {{}, m_reference};
        Tune(KIROArbitrationType{.referenceArrayCount = 2, .referenceArray = references});
        SetBank(BankIDArbitrationTable, &m_table);
        m_rAsked.exposure = exposure;
        return Run(BankIDArbitrationTable, 9, ArbCtrlMatchHistory);
    }

    VOID ExpectMatch(UINT64 exposure, FLOAT gain, UINT64 time)
    {
        EXPECT_EQ(RunMatch(exposure), 0) << exposure;
        ExpectExposure(gain, time, std::to_string(exposure));
    }

    /// A frame with one gain, and 11, 12 and 13 ms for Short, Long and Safe.
    VOID SaveFrame(UINT64 frameID, FLOAT gain, BOOL bIsSnapshot = FALSE)
    {
        AECFrameHistory frame = {.frameID = frameID, .bIsSnapshot = bIsSnapshot};
        for (UINT64 type = 0; type < AECAlgoExposureCount; ++type)
        {
            frame.exposureSets[type] = Set(gain, (11 + type) * Millisecond);
        }
        m_context.SaveFrame(frame);
        if (bIsSnapshot == TRUE)
        {
            m_context.m_pHistory->SaveSnapshotFrame(&frame);
        }
    }

    /// Asks for the reference's exposure, so that the result shows its gain and time.
    VOID ExpectReference(UINT64 gain, UINT64 time)
    {
        ExpectMatch(gain * time * Millisecond, static_cast<FLOAT>(gain), time * Millisecond);
    }

    ArbitrationReferenceType m_reference{};
    ReferenceSourceType&     m_source = m_reference.referenceSource;
};

}  // namespace

TEST_F(ControlHistory, LeavesTheReferenceTowardsTheEnd)
{
    ExpectMatch(40000000, 4.0f, 10 * Millisecond);
    ExpectMatch(120000000, 8.0f, 15 * Millisecond);
    m_reference.endSettings.quantityToModifyFirst = AECExpIncTime;
    ExpectMatch(30000000, 2.0f, 15 * Millisecond);
    ExpectMatch(80000000, 4.0f, 20 * Millisecond);
    m_in.range.end.time = 16 * Millisecond;
    ExpectMatch(80000000, 5.0f, 16 * Millisecond);

    // Going down undoes first what going up raises first.
    m_reference.endSettings.manualGain = 1.0f;
    m_reference.endSettings.manualTime = 5 * Millisecond;
    ExpectMatch(15000000, 2.0f, 7500 * Microsecond);
    ExpectMatch(8000000, 1.6f, 5 * Millisecond);
    m_reference.endSettings.quantityToModifyFirst = {};
    ExpectMatch(15000000, 1.5f, 10 * Millisecond);
    ExpectMatch(8000000, 1.0f, 8 * Millisecond);

    SetTable({{AECExpIncTime, 1.0f, 2 * Millisecond}, {AECExpIncTime, 4.0f, 15 * Millisecond}});
    m_reference.endSettings.endSelection = EndLastTableKneePoint;
    ExpectMatch(60000000, 4.0f, 15 * Millisecond);
    m_reference.endSettings.endSelection = EndFirstTableKneePoint;
    ExpectMatch(3000000, 1.0f, 3 * Millisecond);
    m_reference.endSettings.tableID = 99;
    EXPECT_EQ(RunMatch(3000000), 1);
    m_reference.endSettings.endSelection = static_cast<EndKneePointType>(3);
    EXPECT_EQ(RunMatch(3000000), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "could not determine end selection type 3"));
    EXPECT_EQ(m_in.pTable, nullptr) << "none of them is a last used table";
}

TEST_F(ControlHistory, BeyondTheEndIsAnErrorThatCountsAsAppliedAndTheReferenceItselfIsNone)
{
    EXPECT_EQ(RunMatch(161000000), 0);
    EXPECT_EQ(m_out.exposureSet.exposure, 0u);
    EXPECT_TRUE(m_log.HasPart(LevelError, "target exposure 161000000 exceeds end exposure 160000000"));
    EXPECT_EQ(RunMatch(15000000), 0);
    EXPECT_EQ(m_out.exposureSet.exposure, 0u);
    EXPECT_TRUE(m_log.HasPart(LevelError, "target exposure 15000000 smaller than end exposure 160000000"));

    // The exposure of the reference keeps its split even out of range.
    m_in.range.end.time = 5 * Millisecond;
    ExpectMatch(20001000, 2.0f, 10 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.exposure, 20000000u) << "the reference's, not the request's";
}

TEST_F(ControlHistory, BracketedReferenceAppliesToItsSignOnly)
{
    m_reference.bEnableOnlyForBracketedSnapshot = TRUE;
    m_context.SetTrigger(TriggerCtrlBracketEV, 0.9f);
    EXPECT_EQ(RunMatch(20000000), 10) << "not bracketing";
    m_context.SetContextEvent(AECEVBracketing, TRUE);
    for (const auto& [ev, zero, plus, minus] : {std::tuple{0.9f, 0, 10, 10}, {1.0f, 10, 0, 10}, {-1.0f, 10, 10, 0}})
    {
        m_context.SetTrigger(TriggerCtrlBracketEV, ev);
        for (const auto& [type, result] : {std::pair{EVZero, zero}, {EVPlus, plus}, {EVMinus, minus}})
        {
            m_reference.bracketedEVType = type;
            EXPECT_EQ(RunMatch(20000000), result) << ev << " " << type;
        }
    }
    m_reference.bracketedEVType = static_cast<EVOffsetType>(3);
    EXPECT_EQ(RunMatch(20000000), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "error: unknown EV type 3"));
}

TEST_F(ControlHistory, ReferenceCanBeAFrame)
{
    FrameSelectionType& rSelection = m_source.frameSelection;
    m_source.bUseStaticTuning      = FALSE;
    rSelection                     = {TypePreview, {}, {PreviewSearchMethod::SearchLastNonSnapshotRequest, 0}};
    EXPECT_EQ(RunMatch(20000000), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "reference not found"));
    SaveFrame(1, 2.0f);
    SaveFrame(2, 3.0f);
    SaveFrame(3, 4.0f, TRUE);
    ExpectReference(3, 13);
    rSelection.preview = {PreviewSearchMethod::SearchOffset, 3};
    ExpectReference(2, 13);
    rSelection = {TypeSnapshot, {SnapshotSearchMethod::SearchOffset, EVZero, 0}, {}};
    ExpectReference(4, 13);
    m_source.frameExposureTypeSelection = ExposureShort;
    ExpectReference(4, 11);
    m_source.frameExposureTypeSelection = ExposureNone;
    ExpectReference(4, 12);
    for (UINT64 frameID = 4; frameID <= 13; ++frameID)
    {
        SaveFrame(frameID, 4.0f, TRUE);
    }
    rSelection                          = {TypePreview, {}, {PreviewSearchMethod::SearchLastNonSnapshotRequest, 0}};
    m_source.frameExposureTypeSelection = ExposureSafe;
    ExpectReference(3, 13);  // the preview behind a history of snapshots
    rSelection.preview.searchMethod = static_cast<PreviewSearchMethod>(2);
    EXPECT_EQ(RunMatch(20000000), 1);
    rSelection.frameType = static_cast<FrameType>(2);
    EXPECT_EQ(RunMatch(20000000), 6);
    m_reference.dataID = 8;
    EXPECT_EQ(RunMatch(20000000), 6) << "no such reference";
}
