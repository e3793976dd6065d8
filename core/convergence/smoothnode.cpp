#include "core/convergence/smoothnode.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"

using exposurearithmetic::Epsilon;
using kiroconvergence::DRCSmoothType;
using kiroconvergence::SmoothNodeType;

namespace
{

bool IsEqual(FLOAT first, FLOAT second)
{
    return std::abs(first - second) < Epsilon;
}

/// Ramps the gain up or down by one increment. @return whether a ramp was running
bool Ramp(SmoothNodeConvergenceContext& rContext, FLOAT increment)
{
    if (rContext.state == SmoothTransitionIncrease)
    {
        const FLOAT next    = rContext.gain + increment;
        const bool  isThere = next > rContext.gainNode - Epsilon;
        rContext.state      = isThere ? SmoothTransitionNone : rContext.state;
        rContext.gain       = isThere ? rContext.gainNode : next;
        return true;
    }
    if (rContext.state == SmoothTransitionDecrease)
    {
        const FLOAT next    = rContext.gain - increment;
        const bool  isThere = next < rContext.gainNode + Epsilon;
        rContext.state      = isThere ? SmoothTransitionNone : rContext.state;
        rContext.gain       = isThere ? rContext.gainNode : next;
        return true;
    }
    return false;
}

/// Moves to a neighbouring node when the held gain stands on the border and the target lies far enough beyond.
VOID SelectNode(SmoothNodeConvergenceContext& rContext, const DRCSmoothType& rTuning, FLOAT gainTarget,
                bool isUpwardChecked)
{
    const UINT index = rContext.nodeIndex;
    if (isUpwardChecked && index + 1 < rTuning.nodesCount)
    {
        const SmoothNodeType& rUpper = rTuning.nodes[index + 1];
        if (IsEqual(rContext.gainNode, rUpper.minNodeDRCGain) &&
            gainTarget > rUpper.minNodeDRCGain + rUpper.triggerPointUp - Epsilon)
        {
            rContext.nodeIndex = index + 1;
            return;
        }
    }
    if (index > 0)
    {
        const SmoothNodeType& rLower = rTuning.nodes[index - 1];
        if (IsEqual(rContext.gainNode, rLower.maxNodeDRCGain) &&
            gainTarget < rLower.maxNodeDRCGain - rLower.triggerPointDown + Epsilon)
        {
            rContext.nodeIndex = index - 1;
        }
    }
}

/// Starts a ramp, or jumps, when the target is beyond a trigger distance of the held gain.
VOID TriggerMove(SmoothNodeConvergenceContext& rContext, const SmoothNodeType& rNode, FLOAT gainTarget)
{
    const bool isSizeZero = IsEqual(rNode.nodeSize, 0.0f);
    FLOAT&     rGainNode  = rContext.gainNode;
    rContext.gain         = rGainNode;
    if (rNode.maxNodeDRCGain - Epsilon > rGainNode && !(rGainNode + rNode.triggerPointUp - Epsilon > gainTarget))
    {
        if (isSizeZero)
        {
            rGainNode     = std::min(gainTarget, rNode.maxNodeDRCGain);
            rContext.gain = rGainNode;
        }
        else
        {
            rContext.state = SmoothTransitionIncrease;
            rGainNode      = std::min(rNode.nodeSize + rGainNode, rNode.maxNodeDRCGain);
        }
    }
    else if (rNode.minNodeDRCGain + Epsilon < rGainNode && !(rGainNode - rNode.triggerPointDown + Epsilon < gainTarget))
    {
        if (isSizeZero)
        {
            rGainNode     = std::max(gainTarget, rNode.minNodeDRCGain);
            rContext.gain = rGainNode;
        }
        else
        {
            rContext.state = SmoothTransitionDecrease;
            rGainNode      = std::max(rGainNode - rNode.nodeSize, rNode.minNodeDRCGain);
        }
    }
}

VOID Step(SmoothNodeConvergenceContext& rContext, const DRCSmoothType& rTuning, FLOAT gainTarget)
{
    bool isUpwardChecked = true;
    if (rContext.state == SmoothInitialize)
    {
        rContext.gainNode  = rTuning.nodes[0].minNodeDRCGain;
        rContext.gain      = rContext.gainNode;
        rContext.nodeIndex = 0;
        rContext.state     = SmoothTransitionNone;
    }
    else
    {
        const UINT last    = rTuning.nodesCount - 1;
        isUpwardChecked    = rContext.nodeIndex < last;
        rContext.nodeIndex = std::min(rContext.nodeIndex, last);
        if (Ramp(rContext, rTuning.nodes[rContext.nodeIndex].multiplierIncrement))
        {
            return;
        }
        if (rContext.state != SmoothTransitionNone)
        {
            STATS_LOG_ERROR("unknown state %d", rContext.state);
            return;
        }
    }
    SelectNode(rContext, rTuning, gainTarget, isUpwardChecked);
    TriggerMove(rContext, rTuning.nodes[rContext.nodeIndex], gainTarget);
}

}  // namespace

VOID StepSmoothNode(SmoothNodeConvergenceContext& rContext, const DRCSmoothType& rTuning, FLOAT gainTarget)
{
    if (rTuning.nodesCount == 0)
    {
        return;
    }
    // A gain that is no number would stay one: each frame goes on from the last.
    const SmoothNodeConvergenceContext last = rContext;
    Step(rContext, rTuning, gainTarget);
    if (!std::isfinite(rContext.gain) || !std::isfinite(rContext.gainNode))
    {
        STATS_LOG_ERROR("gain %f towards node gain %f with target %f; gain %f stands", rContext.gain, rContext.gainNode,
                        gainTarget, last.gain);
        rContext = last;
    }
}
