// Scene change detectors: when a trigger's move is a change, when the scene is stable again, and how long a change is
// held.

#include "core/ckiroscenechangedetector.h"

#include <cmath>
#include <string>
#include <vector>

#include "core/base/tuningaccess.h"
#include "tests/support/testcontext.h"

namespace
{

using namespace kiroscenechangedetector;

constexpr INT32  InputSlot  = 70;
constexpr INT32  ThresSlot1 = 71;  // the threshold is the value of this trigger, plus 100 times the second one
constexpr INT32  ThresSlot2 = 72;
constexpr INT32  HoldSlot   = 73;  // seconds
constexpr UINT32 ID         = 4;

// Monitoring, changed, stable again; hold off, on, ended.
constexpr CHAR StateLetters[] = "mcs";
constexpr CHAR HoldLetters[]  = "-he";

/// One detector with the baseline 100, a threshold of 10 for 2 frames, a stable window of 3 frames and 10 percent, and
/// a hold of 1 s at 2 frames per second.
class SceneChange : public ContextTest
{
protected:
    SceneChange()
    {
        m_rDetector.enable                                     = TRUE;
        m_rDetector.priority                                   = ConvergenceStart;
        m_rDetector.SCDId                                      = ID;
        m_rDetector.SCDName                                    = const_cast<CHAR*>("SCD");
        m_rDetector.SCDetectionConfig.inputDataConfig          = {{BankIDTriggers, InputSlot}, 1, Disable};
        m_rDetector.SCDetectionConfig.thresConfig.baselineType = UseRebasedData;
        m_rDetector.SCDetectionConfig.thresConfig.thresData    = {
               {BankIDTriggers, ThresSlot1}, {BankIDTriggers, ThresSlot2}, {BankIDInvalid, -1}, 2, 0, m_thres1};
        m_rDetector.SCDetectionConfig.SCPostStableConfig = {3, 10.0f};
        m_rDetector.holdTimeConfig.enable                = TRUE;
        m_rDetector.holdTimeConfig.strictHoldTimeEn      = TRUE;
        m_rDetector.holdTimeConfig.holdTimeFilterType    = CurrentHoldTime;
        m_rDetector.holdTimeConfig.holdTimeData          = {
                     {BankIDTriggers, HoldSlot}, {BankIDTriggers, ThresSlot2}, {BankIDInvalid, -1}, 2, 0, m_hold1};
        m_detectors[1]          = m_rDetector;
        m_detectors[1].SCDId    = ID + 1;
        m_detectors[1].priority = EndOfFrame;

        m_context.SetTrigger(TriggerCtrlFPS, 2.0f);
        m_context.SetTrigger(InputSlot, 100.0f);
        m_context.SetTrigger(ThresSlot1, 10.0f);
        m_context.SetTrigger(HoldSlot, 1.0f);
        m_context.SetContextEvent(AECSettled, TRUE);
    }

    /// A new manager over the records as they are.
    VOID Load()
    {
        Tune(KIROSceneChangeDetectorType{.scdBankCount = 2, .scdBank = m_detectors});
        m_pManager = TavoNew<CSCDManager>(m_context);
    }

    /// A new manager that has taken 100 for its baseline in a first frame.
    VOID Start()
    {
        Load();
        EXPECT_EQ(Frame(100.0f), 'm');
    }

    /// @return the state after a frame with this value
    CHAR Frame(FLOAT value, BOOL bStatsValid = TRUE)
    {
        m_context.SetTrigger(InputSlot, value);
        m_pManager->RunSCDetectors(ConvergenceStart, bStatsValid);
        return State();
    }

    /// @return the state after each frame
    std::string States(const std::vector<FLOAT>& rValues)
    {
        std::string states;
        for (FLOAT value : rValues)
        {
            states += Frame(value);
        }
        return states;
    }

    /// @return the hold after each frame
    std::string Holds(const std::vector<FLOAT>& rValues)
    {
        std::string holds;
        for (FLOAT value : rValues)
        {
            Frame(value);
            holds += HoldLetters[Output().htState];
        }
        return holds;
    }

    KIROSCDOutput Output(UINT32 id = ID)
    {
        KIROSCDOutput output{};
        EXPECT_EQ(m_pManager->GetSCDOutput(id, output), TRUE);
        return output;
    }

    CHAR State(UINT32 id = ID)
    {
        return StateLetters[Output(id).scState];
    }

    VOID SetCountThres(UINT32 count)
    {
        for (SCThresLevel3DataType& rZone : m_thres3)
        {
            rZone.triggerData.countThres = count;
        }
    }

    // Both trees yield their first trigger; the third level adds 100 times its own, from 0 to 1. The second level is
    // flat.
    SCThresLevel3DataType m_thres3[4] = {{{0.0f, 0.0f}, {0.0f, 2}},
                                         {{1.0f, 1.0f}, {100.0f, 2}},
                                         {{0.0f, 0.0f}, {1024.0f, 2}},
                                         {{1.0f, 1.0f}, {1124.0f, 2}}};
    SCThresLevel2DataType m_thres2[2] = {{{0.0f, 9.0f}, 2, 0, &m_thres3[0]}, {{0.0f, 9.0f}, 2, 0, &m_thres3[2]}};
    SCThresLevel1DataType m_thres1[2] = {{{0.0f, 0.0f}, 1, 0, &m_thres2[0]}, {{1024.0f, 1024.0f}, 1, 0, &m_thres2[1]}};
    TriggerSystemEndLevelType         m_hold3[2] = {{{0.0f, 9.0f}, 0.0f}, {{0.0f, 9.0f}, 1024.0f}};
    ThreeLevelTriggerSystemLevel2Type m_hold2[2] = {{{0.0f, 9.0f}, 1, 0, &m_hold3[0]},
                                                    {{0.0f, 9.0f}, 1, 0, &m_hold3[1]}};
    ThreeLevelTriggerSystemLevel1Type m_hold1[2] = {{{0.0f, 0.0f}, 1, 0, &m_hold2[0]},
                                                    {{1024.0f, 1024.0f}, 1, 0, &m_hold2[1]}};
    AECSCDType                        m_detectors[2]{};
    AECSCDType&                       m_rDetector = m_detectors[0];
    TavoPtr<CSCDManager>              m_pManager;
};

TEST_F(SceneChange, DetectsChangesAndStabilityInTurn)
{
    Start();
    // A single outlier is no change; two are. Three values within 10 percent are stable: 20 * 200 / 260 is above,
    // 10 * 200 / 270 below. From there the same threshold detects again, and the hold has cleared the count.
    EXPECT_EQ(States({110.0f, 105.0f, 110.0f, 120.0f, 140.0f, 130.0f, 132.0f, 140.0f, 140.0f}), "mmmcccssc");
    EXPECT_STREQ(Output().pName, "SCD");
    m_pManager->Rebase(ID);
    EXPECT_EQ(State(), 'm');
    EXPECT_EQ(States({131.0f, 149.0f, 151.0f, 151.0f, 151.0f}), "mmmcs");
}

TEST_F(SceneChange, ThresholdFollowsItsTriggers)
{
    Start();
    // The second trigger drives the third level: 10 + 100 * 0.5 = 60. The third entry is not even valid.
    m_context.SetTrigger(ThresSlot2, 0.5f);
    EXPECT_EQ(States({159.0f, 159.0f, 161.0f, 161.0f}), "mmmc");

    // In percent of a baseline above 0, otherwise in units.
    m_context.SetTrigger(ThresSlot2, 0.0f);
    m_rDetector.SCDetectionConfig.thresConfig.bUsePercentageError = TRUE;
    for (FLOAT baseline : {200.0f, 0.0f, -200.0f})
    {
        m_rDetector.SCDetectionConfig.thresConfig.baselineType       = UseFixedBaseline;
        m_rDetector.SCDetectionConfig.thresConfig.fixedBaselineValue = baseline;
        Load();
        const FLOAT step = (baseline > 0.0f) ? 20.0f : 10.0f;
        Frame(baseline + step * 0.95f);
        EXPECT_EQ(States({baseline + step, baseline - step}), "mc");
    }

    SetCountThres(0);
    Load();
    EXPECT_EQ(Frame(-200.0f), 'c') << "without a count at once";
}

TEST_F(SceneChange, FiltersItsInput)
{
    // expected: frames at 200 before the filtered value has moved by 10
    const std::tuple<SCDetectionDataFilterType, UINT32, UINT32> filters[] = {
        {Disable, 5, 1}, {Average, 1, 1}, {Average, 99, 1}, {Median, 4, 3}, {Median, 5, 3}, {Median, 99, 6}};
    const std::vector<FLOAT> calm(10, 100.0f);
    SetCountThres(1);
    for (const auto& [filter, window, expected] : filters)
    {
        m_rDetector.SCDetectionConfig.inputDataConfig.filterType = filter;
        m_rDetector.SCDetectionConfig.inputDataConfig.windowSize = window;
        Load();
        EXPECT_EQ(States(calm), "mmmmmmmmmm");
        const size_t frames = States(std::vector<FLOAT>(10, 200.0f)).find('c') + 1;
        EXPECT_EQ(frames, expected) << filter << ", " << window;
    }

    // The mean of ten moves by a tenth of the step; of no values it is 0, and so is the median.
    m_rDetector.SCDetectionConfig.inputDataConfig = {{BankIDTriggers, InputSlot}, 10, Average};
    Load();
    States(calm);
    EXPECT_EQ(States({190.0f, 105.0f, 105.0f}), "mmc");
    for (SCDetectionDataFilterType filter : {Average, Median})
    {
        m_rDetector.SCDetectionConfig.inputDataConfig = {{BankIDTriggers, InputSlot}, 0, filter};
        Load();
        EXPECT_EQ(Frame(100.0f), 'c');
    }
    m_rDetector.SCDetectionConfig.inputDataConfig = {{BankIDTriggers, InputSlot}, 10, Median};
    Load();
    EXPECT_EQ(States({NAN, NAN, 100.0f}), "mmm");
}

TEST_F(SceneChange, StartsOnlyOnceTheExposureHasSettled)
{
    m_context.SetContextEvent(AECSettled, FALSE);
    Load();
    EXPECT_EQ(States({200.0f, 200.0f, 200.0f}), "mmm");
    m_context.SetContextEvent(AECSettled, TRUE);
    EXPECT_EQ(Frame(300.0f), 'm') << "the baseline of now";
    m_context.SetContextEvent(AECSettled, FALSE);
    EXPECT_EQ(States({350.0f, 350.0f}), "mc");
    // A frame that may not run keeps the states and asks for a new settling.
    EXPECT_EQ(Frame(300.0f, FALSE), 'c');
    EXPECT_EQ(States({350.0f, 350.0f, 350.0f}), "ccc");
    m_context.SetContextEvent(AECSettled, TRUE);
    EXPECT_EQ(Frame(350.0f), 'm');
}

TEST_F(SceneChange, StableNeedsAFullWindowAndAMeanOffZero)
{
    const std::tuple<UINT32, FLOAT, std::vector<FLOAT>, std::string> cases[] = {
        {1, 0.0f, {200.0f, 200.0f, 900.0f}, "mcs"},
        {3, 10.0f, {0.0f, 0.0f, 0.0f}, "mcs"},
        {3, 0.0f, {0.0f, 0.0f, 0.0f}, "mcc"},
        {2, 1e30f, {200.0f, 200.0f, -200.0f, -200.0f}, "mccs"},
        {99, 1.0f, std::vector<FLOAT>(10, 200.0f), "mccccccccs"},
    };
    for (const auto& [window, variation, values, states] : cases)
    {
        SCOPED_TRACE(testing::Message() << window << ", " << variation);
        m_rDetector.SCDetectionConfig.SCPostStableConfig             = {window, variation};
        m_rDetector.SCDetectionConfig.thresConfig.baselineType       = UseFixedBaseline;
        m_rDetector.SCDetectionConfig.thresConfig.fixedBaselineValue = 100.0f;
        Load();
        EXPECT_EQ(States(values), states);
    }
    // The values before a rebase count as present; they are the baseline now.
    m_pManager->Rebase(ID);
    EXPECT_EQ(States({200.0f, 200.0f, 200.0f}), "mcc");
}

TEST_F(SceneChange, HoldsAChangeForItsTime)
{
    Start();
    // Elapsed at the checks: 0, 0.5, 1.0, 1.5; strictly above 1 s ends the hold, and only a rebase ends the end.
    EXPECT_EQ(Holds({150.0f, 150.0f, 150.0f, 150.0f, 150.0f, 150.0f, 150.0f}), "-hhhhee");
    m_pManager->Rebase(ID);
    EXPECT_EQ(Output().htState, KIROHoldTimeOff);

    // An unknown frame rate stops the clock.
    m_context.SetTrigger(TriggerCtrlFPS, 0.0f);
    EXPECT_EQ(Holds({250.0f, 250.0f, 250.0f, 250.0f, 250.0f, 250.0f, 250.0f}), "-hhhhhh");
    m_context.SetTrigger(TriggerCtrlFPS, 2.0f);

    m_rDetector.holdTimeConfig.strictHoldTimeEn = FALSE;
    Start();
    EXPECT_EQ(Holds({350.0f, 350.0f, 350.0f}), "-he");
    EXPECT_EQ(State(), 's');

    // The hold waits for a value that is settled: 1 s within 60 of the baseline, so within two frames in a row.
    m_rDetector.holdTimeConfig.holdTimeEnterConfig = {TRUE, 60.0f, 1.0f};
    Start();
    EXPECT_EQ(Holds({170.0f, 180.0f, 150.0f, 120.0f}), "---h");
    EXPECT_EQ(State(), 'c');

    m_rDetector.holdTimeConfig.enable = FALSE;
    Start();
    EXPECT_EQ(Holds({450.0f, 450.0f}), "--");
    EXPECT_EQ(State(), 'c');
}

TEST_F(SceneChange, HoldTimeKeepsItsExtreme)
{
    // Frames after 0, 0.5, 1 ... s: 1.5 s exceed 1.25 s, 3.5 s exceed 3 s, 2 s exceed 1.75 s
    const std::pair<HoldTimeFilterType, UINT32> filters[] = {{MinHoldTime, 4}, {MaxHoldTime, 8}, {CurrentHoldTime, 5}};
    for (const auto& [filter, frames] : filters)
    {
        m_rDetector.holdTimeConfig.holdTimeFilterType = filter;
        Start();
        Frame(150.0f);
        std::string holds = Holds({150.0f});
        for (FLOAT holdTime : {2.0f, 1.25f, 3.0f, 3.0f, 1.75f, 1.75f, 1.75f, 1.75f})
        {
            m_context.SetTrigger(HoldSlot, holdTime);
            holds += Holds({150.0f});
        }
        EXPECT_EQ(holds.find('e'), frames) << filter;
    }
}

TEST_F(SceneChange, MissingTriggerFreezesTheStates)
{
    Start();
    Frame(150.0f);
    auto& rTuned = tuningaccess::Get_kiroscenechangedetector(m_context.m_tuningData)->scdBank[0];
    for (DataBankType* pBank :
         {&rTuned.SCDetectionConfig.inputDataConfig.inputDataSource,
          &rTuned.SCDetectionConfig.thresConfig.thresData.trigger1DataBank,
          &rTuned.SCDetectionConfig.thresConfig.thresData.trigger2DataBank,
          &rTuned.holdTimeConfig.holdTimeData.trigger1DataBank, &rTuned.holdTimeConfig.holdTimeData.trigger2DataBank})
    {
        const DataBankType intact = *pBank;
        for (DataBankType invalid : {DataBankType{BankIDStatsCalculator, 1}, DataBankType{BankIDTriggers, 1000},
                                     DataBankType{BankIDTriggers, -1}})
        {
            *pBank = invalid;
            EXPECT_EQ(Frame(150.0f), 'm');
        }
        *pBank = intact;
    }
    EXPECT_TRUE(m_log.Has(LevelError, "KIROSCND ID:SCD Failed to get HoldTime triggers"));
    EXPECT_EQ(Frame(150.0f), 'c');
    // Nor does a rebase without its input touch them.
    rTuned.SCDetectionConfig.inputDataConfig.inputDataSource.bankID = BankIDMax;
    m_pManager->Rebase(ID);
    EXPECT_EQ(State(), 'c');
}

TEST_F(SceneChange, RunsAndAnswersByPriorityAndID)
{
    Start();
    Frame(150.0f);
    m_pManager->RunSCDetectors(EndOfFrame, TRUE);
    m_pManager->RunSCDetectors(MeteringStart, TRUE);
    EXPECT_EQ(Frame(150.0f), 'c');
    EXPECT_EQ(State(ID + 1), 'm');

    KIROSCDOutput untouched{nullptr, KIROSCDStateMax, KIROHoldTimeMax};
    EXPECT_EQ(m_pManager->GetSCDOutput(ID + 7, untouched), FALSE);
    EXPECT_EQ(untouched.scState, KIROSCDStateMax);
    m_pManager->Rebase(ID + 7);

    // Of two with one ID the last one answers.
    tuningaccess::Get_kiroscenechangedetector(m_context.m_tuningData)->scdBank[1].SCDId = ID;
    EXPECT_EQ(State(), 'm');
}

}  // namespace
