#include "tools/program/filelock.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace program
{

FileLock::FileLock(const std::string& rPath)
    : m_descriptor(open(rPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600))
{
    int status = m_descriptor;
    while (status >= 0 && (status = flock(m_descriptor, LOCK_EX)) != 0 && errno == EINTR)
    {
        status = 0;
    }
    if (status < 0)
    {
        const int error = errno;
        (VOID) close(m_descriptor);
        throw std::system_error(error, std::generic_category(), rPath);
    }
}

FileLock::~FileLock()
{
    (VOID) close(m_descriptor);
}

}  // namespace program
