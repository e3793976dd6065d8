#include "tools/kirosim/stopsignal.h"

#include <atomic>
#include <csignal>

#include "tools/program/temporaries.h"

namespace kirosim
{

namespace
{

/// A closed terminal and a reader that has left are no reason to lose what a run has found so far.
constexpr int Signals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

std::atomic<bool> g_isRaised = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

extern "C" void RaiseStop(int signal)
{
    // Each further line that nobody reads raises SIGPIPE again.
    if (g_isRaised.exchange(true) && signal != SIGPIPE)
    {
        program::EndBySignal(signal);
    }
}

VOID Handle(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler       = handler;
    action.sa_flags         = flags;
    (VOID) sigemptyset(&action.sa_mask);
    for (const int signal : Signals)
    {
        (VOID) sigaction(signal, &action, nullptr);
    }
}

}  // namespace

StopSignal::StopSignal()
{
    g_isRaised = false;
    Handle(RaiseStop, SA_RESTART);
}

StopSignal::~StopSignal()
{
    Handle(SIG_DFL, 0);
}

bool StopSignal::IsRaised()
{
    return g_isRaised;
}

}  // namespace kirosim
