/// @file
/// Keeps the host's signals away from threads of the library.
#pragma once

#include <csignal>

/// While it lives, the calling thread takes no signals, and neither do threads that it starts, for good: a host's
/// handler runs on a thread of the host, and no wait of the library is cut short.
class BlockedSignals
{
public:
    BlockedSignals()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_previous);
    }

    ~BlockedSignals()
    {
        pthread_sigmask(SIG_SETMASK, &m_previous, nullptr);
    }

    BlockedSignals(const BlockedSignals&)            = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t m_previous;
};
