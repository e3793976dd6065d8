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
    /// @param fps above 0
    explicit FrameSchedule(DOUBLE fps);

    /// When the next frame is due. The first is due at once. After a frame that is more than one period late the
    /// schedule starts anew: what was missed is not made up for.
    /// @param now of a clock that never steps back, ns
    UINT64 Next(UINT64 now);

private:
    UINT64 DueAt(UINT64 frame) const;

    const DOUBLE          m_period;  ///< ns
    std::optional<UINT64> m_start;   ///< none before the first frame
    UINT64                m_frames;  ///< since the start
};

class FramePacer
{
public:
    /// @param fps above 0
    explicit FramePacer(DOUBLE fps) : m_schedule(fps)
    {
    }

    /// Sleeps until the next frame is due; a signal ends the sleep early if stop says so then.
    template <typename Stop> VOID Wait(const Stop& stop)
    {
        const UINT64 due = m_schedule.Next(Now());
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
