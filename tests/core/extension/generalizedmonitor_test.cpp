// A rule engine over bank values: scores, scenes, and what a rebase does to them.

#include "core/extension/ckirogeneralizedmonitor.h"

#include "tests/support/testcontext.h"

namespace
{

using namespace kiroextension;

constexpr INT32 SlotA = 100;
constexpr INT32 SlotB = 101;

class GeneralizedMonitor : public ContextTest
{
protected:
    /// Two criteria in the first scene, none in the second, which does not pass.
    GeneralizedMonitor()
    {
        m_context.m_pHistory->SaveCurrentFrameID(10);
        m_monitor.SetTuning(&m_tuning);
    }

    VOID SetValues(FLOAT a, FLOAT b)
    {
        m_context.SetTrigger(SlotA, a);
        m_context.SetTrigger(SlotB, b);
    }

    /// @return whether the first scene scores as expected: it passes just below and fails just above
    bool Scores(FLOAT expected)
    {
        m_scenes[0].passThreshold = expected - 0.001f;
        const bool isReached      = m_monitor.RunCriteriaCheck() == TRUE;
        m_scenes[0].passThreshold = expected + 0.001f;
        return isReached && m_monitor.RunCriteriaCheck() == FALSE;
    }

    TriggerSystemEndLevelType   m_identity[2] = {{{0.0f, 0.0f}, 0.0f}, {{100.0f, 100.0f}, 100.0f}};
    SceneCriterion              m_criteria[2] = {{{BankIDTriggers, SlotA}, OriginalData, 2, 0, m_identity},
                                                 {{BankIDTriggers, SlotB}, OriginalData, 2, 0, m_identity}};
    MonitorSceneConfiguration   m_scenes[2]   = {{nullptr, 2, 0, m_criteria, 0.0f}, {nullptr, 0, 0, nullptr, 1.0f}};
    ExtensionGeneralizedMonitor m_tuning{nullptr, 2, 0, m_scenes};
    CKIROGeneralizedMonitor     m_monitor{m_context};
};

TEST_F(GeneralizedMonitor, CriteriaScoreByHowValuesMovedSinceTheRebase)
{
    SetValues(4.0f, 20.0f);
    EXPECT_EQ(m_monitor.RebaseData(), TRUE);
    EXPECT_EQ(m_monitor.GetRebasedFrameID(), 10u);
    SetValues(10.0f, 5.0f);
    const auto expectScores = [this](FLOAT original, FLOAT difference, FLOAT percentage, FLOAT division)
    {
        const std::pair<MonitorDataCalculatorType, FLOAT> scores[] = {
            {OriginalData, original},
            {AbsoluteDifference, difference},
            {AbsoluteDifferencePercentage, percentage},
            {Division, division},
            {static_cast<MonitorDataCalculatorType>(4), 0.0f}};
        for (const auto& [calculation, score] : scores)
        {
            m_criteria[0].postCalculation = calculation;
            m_criteria[1].postCalculation = calculation;
            EXPECT_TRUE(Scores(score)) << calculation;
        }
    };
    // In the frame of the rebase a value is compared with itself, whatever the bank says.
    expectScores(24.0f, 0.0f, 0.0f, 2.0f);
    m_context.m_pHistory->SaveCurrentFrameID(11);
    expectScores(15.0f, 21.0f, 2.25f, 2.75f);
}

TEST_F(GeneralizedMonitor, AnySceneThatReachesItsThresholdPasses)
{
    SetValues(3.0f, 4.0f);
    m_scenes[0].passThreshold = 8.0f;
    m_monitor.RebaseData();
    EXPECT_EQ(m_monitor.RunCriteriaCheck(), FALSE);
    m_scenes[1].passThreshold = 0.0f;
    EXPECT_EQ(m_monitor.RunCriteriaCheck(), TRUE);
    EXPECT_EQ(m_monitor.GetOneSceneDecision(0), FALSE);
    EXPECT_EQ(m_monitor.GetOneSceneDecision(1), TRUE);
    EXPECT_EQ(m_monitor.GetOneSceneDecision(2), FALSE);

    FLOAT value = 0.0f;
    EXPECT_EQ(m_monitor.GetOneRebasedData(0, 1, value), TRUE);
    EXPECT_EQ(value, 4.0f);
    EXPECT_EQ(m_monitor.GetOneRebasedData(0, 2, value), FALSE);
    EXPECT_EQ(m_monitor.GetOneRebasedData(2, 0, value), FALSE);
    EXPECT_EQ(value, 4.0f);
}

TEST_F(GeneralizedMonitor, UnreadableValuesCountAsZeroAndWithoutTuningNothingPasses)
{
    SetValues(3.0f, 4.0f);
    m_criteria[0].dataBankSource.bankID = BankIDConvBase;
    EXPECT_EQ(m_monitor.RebaseData(), FALSE);
    EXPECT_TRUE(Scores(4.0f));
    m_context.m_pHistory->SaveCurrentFrameID(11);
    m_criteria[1].dataBankSource.dataID = 1000;
    EXPECT_TRUE(Scores(0.0f));

    // Without a tuning nothing passes.
    m_monitor.RebaseData();
    m_monitor.FreeDataMemory();
    m_monitor.SetTuning(nullptr);
    FLOAT value = 0.0f;
    EXPECT_EQ(m_monitor.GetRebasedFrameID(), 0u);
    EXPECT_EQ(m_monitor.RebaseData(), FALSE);
    EXPECT_EQ(m_monitor.RunCriteriaCheck(), FALSE);
    EXPECT_EQ(m_monitor.GetOneSceneDecision(0), FALSE);
    EXPECT_EQ(m_monitor.GetOneRebasedData(0, 0, value), FALSE);

    m_tuning.scenesCount = 0;
    m_monitor.SetTuning(&m_tuning);
    EXPECT_EQ(m_monitor.RebaseData(), TRUE) << "nothing failed to be read";
    EXPECT_EQ(m_monitor.RunCriteriaCheck(), FALSE);
}

}  // namespace
