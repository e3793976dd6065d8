#include "tools/kirosim/stopsignal.h"

#include <atomic>
#include <csignal>

namespace kirosim
{

namespace
{

constexpr int Signals[] = {SIGINT, SIGTERM};

std::atomic<bool> g_isRaised = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

extern "C" void RaiseStop(int)
{
    g_isRaised = true;
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
    Handle(RaiseStop, SA_RESTART | static_cast<int>(SA_RESETHAND));
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
