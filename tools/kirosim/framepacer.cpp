#include "tools/kirosim/framepacer.h"

#include <cerrno>
#include <cmath>
#include <ctime>

namespace kirosim
{

namespace
{

constexpr UINT64 WholeNsPerSecond = 1000000000;

}  // namespace

FrameSchedule::FrameSchedule(DOUBLE fps) : m_period(static_cast<DOUBLE>(WholeNsPerSecond) / fps), m_frames(0)
{
}

UINT64 FrameSchedule::DueAt(UINT64 frame) const
{
    return *m_start + static_cast<UINT64>(std::round(static_cast<DOUBLE>(frame) * m_period));
}

UINT64 FrameSchedule::Next(UINT64 now)
{
    if (!m_start.has_value() || now > DueAt(m_frames + 1))
    {
        m_start  = now;
        m_frames = 0;
    }
    return DueAt(m_frames++);
}

UINT64 FramePacer::Now()
{
    timespec now = {};
    (VOID) clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<UINT64>(now.tv_sec) * WholeNsPerSecond + static_cast<UINT64>(now.tv_nsec);
}

bool FramePacer::SleepUntil(UINT64 due)
{
    const timespec time = {static_cast<time_t>(due / WholeNsPerSecond), static_cast<long>(due % WholeNsPerSecond)};
    return clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr) != EINTR;
}

}  // namespace kirosim
