#include "tools/tuningfile/files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "parameters/binaryfileformat.h"
#include "tools/program/filekind.h"
#include "tools/tuningfile/filereplacement.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/textinput.h"

namespace tuningfile
{

namespace
{

/// An open file, closed at the end of its scope.
class Descriptor
{
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor)
    {
    }

    ~Descriptor()
    {
        if (m_descriptor >= 0)
        {
            (VOID) close(m_descriptor);
        }
    }

    Descriptor(const Descriptor&)            = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const
    {
        return m_descriptor;
    }

private:
    int m_descriptor;
};

[[noreturn]] VOID FailOnSystem(const std::string& rPath, std::string_view what)
{
    throw InputError(fmt::format("{}: {}: {}", rPath, what, std::strerror(errno)));
}

/// The first bytes of a file; none of what is not there to be read twice.
std::string HeadOf(const std::string& rPath)
{
    constexpr std::streamsize HeadSize = 512;

    std::error_code ignored;
    if (!std::filesystem::is_regular_file(rPath, ignored))
    {
        return {};
    }
    std::ifstream file(rPath, std::ios::binary);
    std::string   head(HeadSize, '\0');
    file.read(head.data(), HeadSize);
    head.resize(static_cast<size_t>(file.gcount()));
    return head;
}

bool IsParameterFile(std::string_view head)
{
    return head.starts_with(BinaryFileFormat::HeaderTag);
}

/// A damaged parameter file does not: its header has zeros.
bool LooksLikeText(std::string_view head)
{
    const auto isBinary = [](CHAR letter)
    { return static_cast<unsigned char>(letter) < ' ' && letter != '\t' && letter != '\n' && letter != '\r'; };
    return !head.empty() && std::none_of(head.begin(), head.end(), isBinary);
}

std::string_view ViewOf(const std::vector<BYTE>& rBytes)
{
    return {reinterpret_cast<const CHAR*>(rBytes.data()), rBytes.size()};
}

}  // namespace

bool IsText(const std::string& rPath)
{
    const std::string head = HeadOf(rPath);
    if (IsParameterFile(head))
    {
        return false;
    }
    const std::string extension = std::filesystem::path(rPath).extension().string();
    return extension == ".yaml" || extension == ".yml" || LooksLikeText(head);
}

std::vector<BYTE> ReadBytes(const std::string& rPath, size_t maxSize)
{
    constexpr size_t PieceSize = 1 << 20;

    if (const std::string kind = program::UnusableKind(rPath); !kind.empty())
    {
        throw InputError(fmt::format("{}: is {}, expected a file", rPath, kind));
    }
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
        if (bytes.size() > maxSize)
        {
            throw InputError(fmt::format("{}: too large, expected at most {} bytes", rPath, maxSize));
        }
    }
    return bytes;
}

std::string ReadText(const std::string& rPath)
{
    const std::vector<BYTE> bytes = ReadBytes(rPath, MaxTextSize);
    if (IsParameterFile(ViewOf(bytes)))
    {
        throw InputError(fmt::format("{}: is a parameter file, expected a text; make one with: kirotune dump {} -o OUT",
                                     rPath, rPath));
    }
    return std::string(ViewOf(bytes));
}

std::vector<BYTE> ReadParameterFile(const std::string& rPath)
{
    std::vector<BYTE> bytes = ReadBytes(rPath);
    if (LooksLikeText(ViewOf(bytes)))
    {
        throw InputError(
            fmt::format("{}: is a text tuning, expected a parameter file; make one with: kirotune compile {} -o OUT",
                        rPath, rPath));
    }
    return bytes;
}

Tuning ReadTextFile(const std::string& rPath)
{
    return ParseText(ReadText(rPath), rPath);
}

std::vector<BYTE> CompileFile(const std::string& rPath, const VersionUnion& rVersion)
{
    return WriteBinary(ReadTextFile(rPath), rVersion);
}

std::string CompileFault(const std::string& rText, const std::string& rName)
{
    try
    {
        (VOID) WriteBinary(ParseText(rText, rName), NewestVersion);
        return {};
    }
    catch (const InputError& rError)
    {
        return rError.what();
    }
}

VOID ReplaceFile(const std::string& rPath, std::span<const BYTE> bytes)
{
    FileReplacement file(rPath);
    file.Write(bytes);
    file.Commit();
}

}  // namespace tuningfile
