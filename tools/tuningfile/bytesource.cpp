#include "tools/tuningfile/bytesource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "tools/program/filekind.h"
#include "tools/program/standardstreams.h"
#include "tools/tuningfile/inputerror.h"

namespace tuningfile
{

namespace
{

[[noreturn]] VOID FailOnSystem(const std::string& rName, std::string_view what, int error)
{
    throw InputError(fmt::format("{}: {}: {}", rName, what, std::strerror(error)));
}

int OpenFile(const std::string& rPath)
{
    if (const std::string kind = program::UnusableKind(rPath); !kind.empty())
    {
        throw InputError(fmt::format("{}: is {}, expected a file", rPath, kind));
    }
    const int descriptor = open(rPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
    {
        FailOnSystem(rPath, "cannot be opened", errno);
    }
    return descriptor;
}

}  // namespace

ByteSource::ByteSource(int descriptor, std::string name)
    : m_descriptor(descriptor), m_name(std::move(name)), m_isAtEnd(false)
{
}

ByteSource::ByteSource(const std::string& rPath) : ByteSource(OpenFile(rPath), rPath)
{
}

ByteSource::~ByteSource()
{
    (VOID) close(m_descriptor);
}

ByteSource& ByteSource::StandardInput()
{
    static ByteSource source(STDIN_FILENO, program::InputName("-"));
    return source;
}

std::vector<BYTE>& ByteSource::Read(size_t count)
{
    constexpr size_t pieceSize = 1 << 20;

    while (!m_isAtEnd && m_bytes.size() < count)
    {
        const size_t start = m_bytes.size();
        m_bytes.resize(start + pieceSize);
        const ssize_t length = read(m_descriptor, m_bytes.data() + start, pieceSize);
        const int     error  = errno;
        m_bytes.resize(start + static_cast<size_t>(std::max<ssize_t>(length, 0)));
        if (length < 0 && error != EINTR)
        {
            FailOnSystem(m_name, "cannot be read", error);
        }
        m_isAtEnd = length == 0;
    }
    return m_bytes;
}

std::vector<BYTE>& ByteSource::ReadAll(size_t maxSize)
{
    std::vector<BYTE>& rBytes = Read(maxSize + 1);
    if (rBytes.size() > maxSize)
    {
        throw InputError(fmt::format("{}: too large, expected at most {} bytes", m_name, maxSize));
    }
    return rBytes;
}

}  // namespace tuningfile
