#include "tools/tuningfile/files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/textinput.h"

namespace tuningfile
{

namespace
{

constexpr size_t MaxFileSize = 0xFFFFFFFF;

/// An open file, closed at the end of its scope.
class Descriptor
{
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor)
    {
    }

    ~Descriptor()
    {
        Close();
    }

    Descriptor(const Descriptor&)            = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const
    {
        return m_descriptor;
    }

    /// @return whether all that was written has arrived
    bool Close()
    {
        const bool closed = m_descriptor < 0 || close(m_descriptor) == 0;
        m_descriptor      = -1;
        return closed;
    }

private:
    int m_descriptor;
};

[[noreturn]] VOID FailOnSystem(const std::string& rPath, std::string_view what)
{
    throw InputError(fmt::format("{}: {}: {}", rPath, what, std::strerror(errno)));
}

bool WriteAll(int descriptor, std::span<const BYTE> bytes)
{
    while (!bytes.empty())
    {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
        {
            return false;
        }
        bytes = bytes.subspan(static_cast<size_t>(std::max<ssize_t>(written, 0)));
    }
    return true;
}

/// The file that a name stands for: what a symbolic link points to, otherwise itself.
std::string ResolveTarget(const std::string& rPath)
{
    std::error_code   error;
    const std::string target = std::filesystem::canonical(rPath, error).string();
    return error ? rPath : target;
}

}  // namespace

bool IsText(const std::string& rPath)
{
    const std::string extension = std::filesystem::path(rPath).extension().string();
    return extension == ".yaml" || extension == ".yml";
}

std::vector<BYTE> ReadBytes(const std::string& rPath)
{
    constexpr size_t PieceSize = 1 << 20;

    const Descriptor file(open(rPath.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.Get() < 0)
    {
        FailOnSystem(rPath, "cannot be opened");
    }
    std::vector<BYTE> bytes;
    for (ssize_t length = -1; length != 0;)
    {
        const size_t start = bytes.size();
        bytes.resize(start + PieceSize);
        length = read(file.Get(), bytes.data() + start, PieceSize);
        if (length < 0 && errno != EINTR)
        {
            FailOnSystem(rPath, "cannot be read");
        }
        bytes.resize(start + static_cast<size_t>(std::max<ssize_t>(length, 0)));
        if (bytes.size() > MaxFileSize)
        {
            throw InputError(fmt::format("{}: too large, expected at most {} bytes", rPath, MaxFileSize));
        }
    }
    return bytes;
}

Tuning ReadTextFile(const std::string& rPath)
{
    const std::vector<BYTE> bytes = ReadBytes(rPath);
    return ParseText(std::string_view(reinterpret_cast<const CHAR*>(bytes.data()), bytes.size()), rPath);
}

std::vector<BYTE> CompileFile(const std::string& rPath, const VersionUnion& rVersion)
{
    return WriteBinary(ReadTextFile(rPath), rVersion);
}

VOID ReplaceFile(const std::string& rPath, std::span<const BYTE> bytes)
{
    const std::string target = ResolveTarget(rPath);
    struct stat       status = {};
    if (stat(target.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
    {
        throw InputError(fmt::format("{}: cannot be replaced, expected a plain file", rPath));
    }
    const std::string temporary = fmt::format("{}.{}.tmp", target, getpid());
    Descriptor        file(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (file.Get() < 0)
    {
        FailOnSystem(rPath, "cannot be written");
    }
    if (!WriteAll(file.Get(), bytes) || !file.Close() || rename(temporary.c_str(), target.c_str()) != 0)
    {
        const int reason = errno;
        unlink(temporary.c_str());
        errno = reason;
        FailOnSystem(rPath, "cannot be written");
    }
}

}  // namespace tuningfile
