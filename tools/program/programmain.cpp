#include "tools/program/programmain.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

namespace program
{

namespace
{

/// The deepest that a command has been seen to need is a quarter of it, with sanitizers.
constexpr rlim_t MinStack = 1 << 20;

/// A file would get the number of a closed descriptor otherwise, and lines for a person would go into it.
VOID OpenStandardDescriptors()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
    {
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF)
        {
            // The lowest number that is free is this one.
            (VOID) open("/dev/null", (descriptor == STDIN_FILENO) ? O_RDONLY : O_WRONLY);
        }
    }
}

VOID CheckStack()
{
    struct rlimit limit = {};
    if (getrlimit(RLIMIT_STACK, &limit) == 0 && limit.rlim_cur < MinStack)
    {
        throw std::runtime_error(fmt::format("the stack is limited to {} KB, expected at least {} KB",
                                             limit.rlim_cur / 1024, MinStack / 1024));
    }
}

/// What was printed and not written yet is written now.
VOID FinishOutput()
{
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
    {
        throw std::system_error((errno != 0) ? errno : EIO, std::generic_category());
    }
}

/// A write to standard output that fails ends some work as an exception, which does not say what could not be written.
std::string MessageOf(const std::exception& rFault)
{
    const auto* pSystem = dynamic_cast<const std::system_error*>(&rFault);
    return (pSystem != nullptr && std::ferror(stdout) != 0) ? "stdout: cannot be written: " + pSystem->code().message()
                                                            : rFault.what();
}

}  // namespace

int Main(const char* pPrefix, const std::function<int()>& rWork)
{
    OpenStandardDescriptors();
    (VOID) std::signal(SIGXFSZ, SIG_IGN);  // the write fails then, and says why
    try
    {
        CheckStack();
        const int status = rWork();
        FinishOutput();
        return status;
    }
    catch (const std::exception& rFault)
    {
        (VOID) std::fflush(stdout);
        (VOID) std::fprintf(stderr, "%s%s\n", pPrefix, MessageOf(rFault).c_str());
        return ExitBadInput;
    }
}

}  // namespace program
