#include "tools/program/temporaries.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <random>
#include <system_error>

#include <climits>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace program
{

namespace
{

/// Signals that end a program which does nothing about them.
constexpr int EndingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM};

/// What a handler may look at: names in memory that does not move.
struct Slot
{
    std::atomic<bool> isTaken = false;
    std::atomic<bool> isMade  = false;  ///< the path is whole, and the file is there
    char              path[PATH_MAX];
};

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler reads it");

/// No command has as many outputs.
std::array<Slot, 16> g_slots;

[[noreturn]] VOID ThrowSystem(int error)
{
    throw std::system_error(error, std::generic_category());
}

/// A program that handles a signal itself goes on to do so.
VOID WatchSignals()
{
    for (const int signal : EndingSignals)
    {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_DFL)
        {
            action.sa_handler = EndBySignal;
            (VOID) sigaction(signal, &action, nullptr);
        }
    }
}

size_t TakeSlot(const std::string& rPath)
{
    if (rPath.size() >= sizeof(Slot::path))
    {
        ThrowSystem(ENAMETOOLONG);
    }
    for (size_t index = 0; index < g_slots.size(); ++index)
    {
        if (!g_slots[index].isTaken.exchange(true))
        {
            std::memcpy(g_slots[index].path, rPath.c_str(), rPath.size() + 1);
            return index;
        }
    }
    ThrowSystem(EMFILE);
}

VOID FreeSlot(size_t index)
{
    g_slots[index].isMade  = false;
    g_slots[index].isTaken = false;
}

/// A number of the process would come again in a container.
std::string NameBeside(const std::string& rTarget)
{
    std::random_device device;
    return fmt::format("{}.{:08x}{:08x}.tmp", rTarget, device(), device());
}

}  // namespace

VOID EndBySignal(int signal)
{
    for (const Slot& rSlot : g_slots)
    {
        if (rSlot.isMade)
        {
            (VOID) unlink(rSlot.path);
        }
    }
    struct sigaction action = {};
    action.sa_handler       = SIG_DFL;
    (VOID) sigaction(signal, &action, nullptr);
    (VOID) raise(signal);
}

Temporary::Temporary(const std::string& rTarget) : m_descriptor(-1), m_slot(0)
{
    WatchSignals();
    do
    {
        m_path       = NameBeside(rTarget);
        m_slot       = TakeSlot(m_path);
        m_descriptor = open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (m_descriptor < 0)
        {
            FreeSlot(m_slot);
        }
    } while (m_descriptor < 0 && errno == EEXIST);
    if (m_descriptor < 0)
    {
        ThrowSystem(errno);
    }
    g_slots[m_slot].isMade = true;
}

Temporary::~Temporary()
{
    if (m_descriptor >= 0)
    {
        (VOID) close(m_descriptor);
    }
    if (!m_path.empty())
    {
        (VOID) unlink(m_path.c_str());
        FreeSlot(m_slot);
    }
}

VOID Temporary::Replace(const std::string& rTarget)
{
    const bool isShut = close(m_descriptor) == 0;
    m_descriptor      = -1;
    if (!isShut || rename(m_path.c_str(), rTarget.c_str()) != 0)
    {
        ThrowSystem(errno);
    }
    m_path.clear();
    FreeSlot(m_slot);
}

}  // namespace program
