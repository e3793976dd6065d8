#include "tools/tuningfile/files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <fmt/format.h>

#include "parameters/binaryfileformat.h"
#include "tools/program/standardstreams.h"
#include "tools/tuningfile/bytesource.h"
#include "tools/tuningfile/filereplacement.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/textinput.h"

namespace tuningfile
{

namespace
{

std::string_view ViewOf(const std::vector<BYTE>& rBytes)
{
    return {reinterpret_cast<const CHAR*>(rBytes.data()), rBytes.size()};
}

/// The first bytes of a file; none of a pipe, which can be read only once.
std::string HeadOf(const std::string& rPath)
{
    constexpr size_t headSize = 512;

    if (program::IsStandardStream(rPath))
    {
        return std::string(ViewOf(ByteSource::StandardInput().Read(headSize)).substr(0, headSize));
    }
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(rPath, ignored))
    {
        return {};
    }
    std::ifstream file(rPath, std::ios::binary);
    std::string   head(headSize, '\0');
    file.read(head.data(), headSize);
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
    if (program::IsStandardStream(rPath))
    {
        return ByteSource::StandardInput().ReadAll(maxSize);
    }
    ByteSource file(rPath);
    return std::move(file.ReadAll(maxSize));
}

std::string ReadText(const std::string& rPath)
{
    const std::vector<BYTE> bytes = ReadBytes(rPath, MaxTextSize);
    if (IsParameterFile(ViewOf(bytes)))
    {
        throw InputError(fmt::format("{}: is a parameter file, expected a text; make one with: kirotune dump {} -o OUT",
                                     program::InputName(rPath), rPath));
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
                        program::InputName(rPath), rPath));
    }
    return bytes;
}

Tuning ReadTextFile(const std::string& rPath)
{
    return ParseText(ReadText(rPath), program::InputName(rPath));
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
