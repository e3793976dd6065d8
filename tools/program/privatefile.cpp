#include "tools/program/privatefile.h"

#include <cerrno>
#include <system_error>

#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

namespace program
{

PrivateFile::PrivateFile(std::span<const BYTE> bytes) : m_descriptor(memfd_create("kiro", MFD_CLOEXEC))
{
    while (m_descriptor >= 0 && !bytes.empty())
    {
        const ssize_t written = write(m_descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
        {
            const int error = errno;
            (VOID) close(m_descriptor);
            throw std::system_error(error, std::generic_category());
        }
        bytes = bytes.subspan((written > 0) ? static_cast<size_t>(written) : 0);
    }
    if (m_descriptor < 0)
    {
        throw std::system_error(errno, std::generic_category());
    }
}

PrivateFile::~PrivateFile()
{
    (VOID) close(m_descriptor);
}

std::string PrivateFile::Path() const
{
    return fmt::format("/proc/self/fd/{}", m_descriptor);
}

}  // namespace program
