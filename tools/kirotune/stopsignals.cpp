#include "tools/kirotune/stopsignals.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

#include "platform/tavotypes.h"

namespace kirotune
{

StopSignals::StopSignals()
{
    sigemptyset(&m_signals);
    sigaddset(&m_signals, SIGINT);
    sigaddset(&m_signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
}

bool StopSignals::CameUntil(std::chrono::steady_clock::time_point then) const
{
    using namespace std::chrono;
    while (true)
    {
        const INT64    left = std::max<INT64>((then - steady_clock::now()) / nanoseconds(1), 0);
        const timespec wait{static_cast<time_t>(left / 1000000000), static_cast<long>(left % 1000000000)};
        if (sigtimedwait(&m_signals, nullptr, &wait) > 0)
        {
            return true;
        }
        if (errno == EAGAIN)
        {
            return false;
        }
    }
}

}  // namespace kirotune
