#include "tools/tuningcheck/rules/smoothnodes.h"

#include <cmath>

#include <fmt/format.h>

#include "schema/kiroconvergence.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kiroconvergence::DRCSmoothType;
using kiroconvergence::SmoothNodeType;

/// Gains nearer than this are one border.
constexpr FLOAT SameBorder = 1e-7F;

VOID CheckNode(const SmoothNodeType& rNode, const RecordJudge& rJudge)
{
    if (rNode.minNodeDRCGain > rNode.maxNodeDRCGain)
    {
        rJudge.Error("minNodeDRCGain", fmt::format("is {}", rNode.minNodeDRCGain),
                     fmt::format("at most {}, the node's maxNodeDRCGain", rNode.maxNodeDRCGain));
    }
    if (rNode.nodeSize > 0.0F && rNode.multiplierIncrement <= 0.0F)
    {
        rJudge.Error("multiplierIncrement", fmt::format("is {}", rNode.multiplierIncrement),
                     "above 0 (factor), with a nodeSize above 0", "a ramp without increment never ends");
    }
    if (rNode.nodeSize > 0.0F && rNode.nodeSize >= rNode.triggerPointUp + rNode.triggerPointDown)
    {
        rJudge.Error("nodeSize", fmt::format("is {}", rNode.nodeSize),
                     fmt::format("below {}, the sum of triggerPointUp and triggerPointDown",
                                 rNode.triggerPointUp + rNode.triggerPointDown),
                     "with a step that large the gain hunts up and down");
    }
}

VOID CheckBorders(const DRCSmoothType& rSmooth, const RecordJudge& rJudge)
{
    const auto nodes = ListOf(rSmooth.nodes, (rSmooth.enableSmoothDRC != FALSE) ? rSmooth.nodesCount : 0);
    for (UINT32 index = 1; index < nodes.size(); ++index)
    {
        const FLOAT border = nodes[index - 1].maxNodeDRCGain;
        if (std::abs(nodes[index].minNodeDRCGain - border) >= SameBorder)
        {
            rJudge.ErrorIn("nodes", index, fmt::format("starts at a gain of {}", nodes[index].minNodeDRCGain),
                           fmt::format("a minNodeDRCGain of {}, where the node before it ends", border),
                           "elsewhere the gain never crosses from one to the other");
        }
    }
}

}  // namespace

VOID CheckSmoothNodes(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<SmoothNodeType>(rModule, rFindings, CheckNode);
    JudgeEach<DRCSmoothType>(rModule, rFindings, CheckBorders);
}

}  // namespace tuningcheck
