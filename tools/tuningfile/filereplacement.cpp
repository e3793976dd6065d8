#include "tools/tuningfile/filereplacement.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/program/filekind.h"
#include "tools/program/standardstreams.h"
#include "tools/tuningfile/inputerror.h"

namespace tuningfile
{

namespace
{

[[noreturn]] VOID FailOnWriting(const std::string& rPath, int error)
{
    throw InputError(fmt::format("{}: cannot be written: {}", rPath, std::strerror(error)));
}

/// Gives a new file the owner and the mode of the one that it will replace.
/// @return whether it has them
bool TakeOver(int descriptor, const struct stat& rOld)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
    {
        return false;
    }
    const bool isOwned = status.st_uid == rOld.st_uid && status.st_gid == rOld.st_gid;
    return (isOwned || fchown(descriptor, rOld.st_uid, rOld.st_gid) == 0) &&
           fchmod(descriptor, rOld.st_mode & 07777) == 0;
}

}  // namespace

FileReplacement::FileReplacement(const std::string& rPath) : m_path(program::OutputName(rPath)), m_stream(-1), m_size(0)
{
    if (program::IsStandardStream(rPath))
    {
        OpenStream(STDOUT_FILENO);
        return;
    }
    if (const std::string kind = program::UnusableKind(rPath); !kind.empty())
    {
        throw InputError(fmt::format("{}: is {}, expected a file", rPath, kind));
    }
    struct stat              status     = {};
    const bool               exists     = stat(rPath.c_str(), &status) == 0;
    const std::optional<int> descriptor = program::DescriptorOf(rPath);
    if (descriptor.has_value() || (exists && !S_ISREG(status.st_mode)))
    {
        OpenStream(descriptor);
        return;
    }
    OpenTemporary();
    if (exists && !TakeOver(m_temporary->Descriptor(), status))
    {
        throw InputError(
            fmt::format("{}: cannot be replaced, its owner would change: {}", rPath, std::strerror(errno)));
    }
}

VOID FileReplacement::OpenStream(std::optional<int> descriptor)
{
    m_stream = descriptor.has_value() ? fcntl(*descriptor, F_DUPFD_CLOEXEC, 0)
                                      : open(m_path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (m_stream < 0)
    {
        FailOnWriting(m_path, errno);
    }
}

VOID FileReplacement::OpenTemporary()
{
    try
    {
        m_target = program::EndOfLinks(m_path);
        m_temporary.emplace(m_target);
    }
    catch (const std::system_error& rFault)
    {
        FailOnWriting(m_path, rFault.code().value());
    }
}

FileReplacement::~FileReplacement()
{
    if (m_stream >= 0)
    {
        (VOID) close(m_stream);
    }
}

VOID FileReplacement::Write(std::span<const BYTE> bytes)
{
    while (!bytes.empty())
    {
        const ssize_t written =
            (m_stream >= 0) ? write(m_stream, bytes.data(), bytes.size())
                            : pwrite(m_temporary->Descriptor(), bytes.data(), bytes.size(), static_cast<off_t>(m_size));
        if (written < 0 && errno != EINTR)
        {
            FailOnWriting(m_path, errno);
        }
        const size_t count = (written > 0) ? static_cast<size_t>(written) : 0;
        bytes              = bytes.subspan(count);
        m_size += count;
    }
}

VOID FileReplacement::Skip(UINT64 bytes)
{
    static constexpr BYTE zeros[4096] = {};

    if (m_stream < 0)
    {
        m_size += bytes;
        return;
    }
    for (UINT64 left = bytes; left > 0;)
    {
        const size_t count = std::min<UINT64>(left, sizeof(zeros));
        Write({zeros, count});
        left -= count;
    }
}

VOID FileReplacement::Commit()
{
    if (m_stream >= 0)
    {
        return;
    }
    if (ftruncate(m_temporary->Descriptor(), static_cast<off_t>(m_size)) != 0)
    {
        FailOnWriting(m_path, errno);
    }
    try
    {
        m_temporary->Replace(m_target);
    }
    catch (const std::system_error& rFault)
    {
        FailOnWriting(m_path, rFault.code().value());
    }
    m_temporary.reset();
}

}  // namespace tuningfile
