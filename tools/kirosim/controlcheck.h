/// @file
/// Whether a camera is in control of its exposure at all: a core that does nothing rests, which is no settling.
#pragma once

#include <string>

#include "tools/kirosim/camera.h"

namespace kirosim
{

class ControlCheck
{
public:
    VOID Add(const KiroHostFrame& rFrame);

    /// Whether an exposure has followed a metered target in any frame, if there were frames.
    bool HasControlled() const
    {
        return m_controlled > 0 || m_frames == 0;
    }

    /// What did not work in any frame, or not for the last second or so; empty if all did.
    std::string Fault() const;

    /// The same as a line, ended by a newline; else empty. @param pCamera in front of it
    std::string Format(const CHAR* pCamera) const;

private:
    /// How often something worked, and for how many frames it has not.
    struct Count
    {
        UINT64 frames;
        UINT64 since;
    };

    static VOID Add(Count& rCount, bool isWorking);

    Count  m_analyzers   = {};  ///< at least one of them ran
    Count  m_targets     = {};  ///< metering had a luma and a target for the safe exposure
    Count  m_convergence = {};
    UINT64 m_controlled  = 0;  ///< frames in which all three worked
    UINT64 m_frames      = 0;
};

}  // namespace kirosim
