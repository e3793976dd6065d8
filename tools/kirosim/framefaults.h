/// @file
/// What goes wrong between a sensor and its host: statistics that are missing, and decisions that come late.
#pragma once

#include "tools/kirosim/deterministic.h"
#include "tools/kirosim/scene.h"

namespace kirosim
{

struct FrameFault
{
    bool isDropped;  ///< the frame's statistics do not reach the host
    bool isLate;     ///< the decision for this frame's write comes a frame late
};

/// The same seed has the same faults, round by round.
class FrameFaults
{
public:
    /// @param rScene must outlive this object
    explicit FrameFaults(const Scene& rScene);

    VOID StartRound();

    /// Those of the next frame.
    FrameFault Next();

private:
    const Scene& m_rScene;
    RandomStream m_random;
};

}  // namespace kirosim
