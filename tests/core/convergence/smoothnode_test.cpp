#include "core/convergence/smoothnode.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/statslogcapture.h"

using kiroconvergence::SmoothNodeType;

namespace
{

class SmoothNode : public testing::Test
{
protected:
    VOID ExpectGains(FLOAT target, const std::vector<FLOAT>& rExpected)
    {
        const kiroconvergence::DRCSmoothType tuning{TRUE, static_cast<UINT32>(m_nodes.size()), 0, m_nodes.data()};
        for (size_t frame = 0; frame < rExpected.size(); ++frame)
        {
            StepSmoothNode(m_context, tuning, target);
            EXPECT_NEAR(m_context.gain, rExpected[frame], 1e-5f) << "frame " << frame << " towards " << target;
        }
    }

    std::vector<SmoothNodeType>  m_nodes{{1.0f, 2.0f, 0.5f, 0.25f, 0.25f, 0.2f}, {2.0f, 4.0f, 1.0f, 0.5f, 0.5f, 0.4f}};
    SmoothNodeConvergenceContext m_context{};
};

} // namespace

TEST_F(SmoothNode, RampsUpThroughAllNodesAndDownAgain)
{
    // A frame that starts a ramp still shows the held gain; the last increment is cut at the end of the ramp.
    ExpectGains(5.0f, {1.0f, 1.2f, 1.4f, 1.5f, 1.5f, 1.7f, 1.9f, 2.0f});
    EXPECT_EQ(m_context.nodeIndex, 0u);
    ExpectGains(5.0f, {2.0f, 2.4f, 2.8f, 3.0f, 3.0f, 3.4f, 3.8f, 4.0f, 4.0f, 4.0f});
    EXPECT_EQ(m_context.nodeIndex, 1u);
    ExpectGains(1.0f, {4.0f, 3.6f, 3.2f, 3.0f, 3.0f, 2.6f, 2.2f, 2.0f});
    EXPECT_EQ(m_context.nodeIndex, 1u);
    ExpectGains(1.0f, {2.0f, 1.8f, 1.6f, 1.5f, 1.5f, 1.3f, 1.1f, 1.0f, 1.0f});
    EXPECT_EQ(m_context.nodeIndex, 0u);
}

TEST_F(SmoothNode, HoldsUntilTheTargetIsATriggerDistanceAwayAndFinishesItsRamps)
{
    ExpectGains(1.24f, {1.0f, 1.0f});
    ExpectGains(1.25f, {1.0f, 1.2f});
    ExpectGains(1.0f, {1.4f, 1.5f});
    ExpectGains(1.74f, {1.5f, 1.5f});
    ExpectGains(1.26f, {1.5f, 1.5f});
    ExpectGains(1.24f, {1.5f, 1.3f, 1.1f, 1.0f});
    ExpectGains(2.49f, {1.0f, 1.2f, 1.4f, 1.5f, 1.5f, 1.7f, 1.9f, 2.0f, 2.0f, 2.0f});
    EXPECT_EQ(m_context.nodeIndex, 0u) << "the next node asks for more";
}

TEST_F(SmoothNode, NodeWithoutSizeFollowsTheTargetAtOnce)
{
    m_nodes = {{1.0f, 4.0f, 0.0f, 0.3f, 0.3f, 0.1f}};
    for (const auto& [target, expected] : {std::pair{2.0f, 2.0f}, {2.2f, 2.0f}, {2.4f, 2.4f}, {6.0f, 4.0f},
                                           {3.8f, 4.0f}, {3.6f, 3.6f}, {0.5f, 1.0f}})
    {
        ExpectGains(target, {expected});
    }
}

TEST_F(SmoothNode, SurvivesATuningWithFewerNodesAndABrokenState)
{
    StatsLogCapture log;
    m_context = {SmoothTransitionNone, 4.0f, 4.0f, 9};
    ExpectGains(1.0f, {4.0f, 3.6f});
    m_context = {static_cast<SmoothNodeConvergenceState>(4), 2.0f, 1.5f, 0};
    ExpectGains(5.0f, {1.5f});
    EXPECT_TRUE(log.Has(2, "unknown state 4"));
    m_nodes.clear();
    ExpectGains(5.0f, {1.5f});
}
