/// @file
/// When frames start, from the rate at which the camera runs.
#pragma once

#include "platform/tavotypes.h"

namespace kirosim
{

/// Times of a stretch at one rate count from its start, so that errors do not add up.
class FrameClock
{
public:
    /// Start of the next frame, s; the first starts at 0.
    DOUBLE Now() const
    {
        return m_start + static_cast<DOUBLE>(m_frames) / m_fps;
    }

    /// A frame has been taken. @param fps its rate, above 0
    VOID Advance(DOUBLE fps)
    {
        if (fps != m_fps)
        {
            m_start  = Now();
            m_frames = 0;
            m_fps    = fps;
        }
        ++m_frames;
    }

private:
    DOUBLE m_start  = 0.0;  ///< of the stretch, s
    UINT64 m_frames = 0;    ///< of the stretch
    DOUBLE m_fps    = 1.0;
};

}  // namespace kirosim
