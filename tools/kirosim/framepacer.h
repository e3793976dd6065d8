/// @file
/// Frames at the pace of a real camera.
#pragma once

#include <optional>

#include "platform/tavotypes.h"

namespace kirosim
{

/// When frames are due. Each time counts from the start of the schedule, so that errors do not add up.
class FrameSchedule
{
public:
    /// When the next frame is due. The first is due at once. After a frame that is more than one period late the
    /// schedule starts anew: what was missed is not made up for.
    /// @param now  of a clock that never steps back, ns
    /// @param time of the frame in the run, s; rising from frame to frame
    UINT64 Next(UINT64 now, DOUBLE time);

private:
    UINT64 DueAt(DOUBLE time) const;

    std::optional<UINT64> m_start;            ///< none before the first frame
    DOUBLE                m_startTime = 0.0;  ///< of the frame that was due then
    DOUBLE                m_lastTime  = 0.0;
};

class FramePacer
{
public:
    /// Sleeps until the next frame is due; a signal ends the sleep early if stop says so then.
    /// @param time of the frame in the run, s
    template <typename Stop> VOID Wait(DOUBLE time, const Stop& stop)
    {
        const UINT64 due = m_schedule.Next(Now(), time);
        while (!stop() && !SleepUntil(due))
        {
        }
    }

private:
    static UINT64 Now();

    /// @return false if a signal came first
    static bool SleepUntil(UINT64 due);

    FrameSchedule m_schedule;
};

}  // namespace kirosim
