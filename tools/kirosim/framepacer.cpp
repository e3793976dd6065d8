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

UINT64 FrameSchedule::DueAt(DOUBLE time) const
{
    return *m_start + static_cast<UINT64>(std::round((time - m_startTime) * static_cast<DOUBLE>(WholeNsPerSecond)));
}

UINT64 FrameSchedule::Next(UINT64 now, DOUBLE time)
{
    const DOUBLE period = time - m_lastTime;
    if (!m_start.has_value() || now > DueAt(time + period))
    {
        m_start     = now;
        m_startTime = time;
    }
    m_lastTime = time;
    return DueAt(time);
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
