#include "tools/tuningfile/filereplacement.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/tuningfile/inputerror.h"

namespace tuningfile
{

namespace
{

[[noreturn]] VOID FailOnWriting(const std::string& rPath)
{
    throw InputError(fmt::format("{}: cannot be written: {}", rPath, std::strerror(errno)));
}

/// The file that a name stands for: what a symbolic link points to, otherwise itself.
std::string ResolveTarget(const std::string& rPath)
{
    std::error_code   error;
    const std::string target = std::filesystem::canonical(rPath, error).string();
    return error ? rPath : target;
}

}  // namespace

FileReplacement::FileReplacement(const std::string& rPath)
    : m_path(rPath), m_target(ResolveTarget(rPath)), m_descriptor(-1), m_size(0)
{
    struct stat status = {};
    if (stat(m_target.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
    {
        throw InputError(fmt::format("{}: cannot be replaced, expected a plain file", rPath));
    }
    m_temporary  = fmt::format("{}.{}.tmp", m_target, getpid());
    m_descriptor = open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_descriptor < 0)
    {
        FailOnWriting(rPath);
    }
}

FileReplacement::~FileReplacement()
{
    if (m_descriptor >= 0)
    {
        (VOID) close(m_descriptor);
    }
    if (!m_temporary.empty())
    {
        (VOID) unlink(m_temporary.c_str());
    }
}

VOID FileReplacement::Write(std::span<const BYTE> bytes)
{
    while (!bytes.empty())
    {
        const ssize_t written = pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(m_size));
        if (written < 0 && errno != EINTR)
        {
            FailOnWriting(m_path);
        }
        const size_t count = (written > 0) ? static_cast<size_t>(written) : 0;
        bytes              = bytes.subspan(count);
        m_size += count;
    }
}

VOID FileReplacement::Skip(UINT64 bytes)
{
    m_size += bytes;
}

VOID FileReplacement::Commit()
{
    const bool isWhole = ftruncate(m_descriptor, static_cast<off_t>(m_size)) == 0;
    const bool isShut  = close(m_descriptor) == 0;
    m_descriptor       = -1;
    if (!isWhole || !isShut || rename(m_temporary.c_str(), m_target.c_str()) != 0)
    {
        FailOnWriting(m_path);
    }
    m_temporary.clear();
}

}  // namespace tuningfile
