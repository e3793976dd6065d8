#include "parameters/binaryfileformat.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

#include "parameters/parameterbinaryfile.h"
#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"

namespace
{

/// Fields of the header that only its checks need.
struct HeaderChecks
{
    CHAR   tag[BinaryFileFormat::HeaderTagSize] = {};
    bool   hasTag                               = false;
    UINT32 expectedSize                         = 0;
};

std::string __attribute__((format(printf, 1, 2))) FormatError(const CHAR* pFormat, ...)
{
    CHAR    text[BinaryFileFormat::MaxErrorText];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(text, sizeof(text), pFormat, arguments);
    va_end(arguments);
    return text;
}

/// @return whether all fields were there
bool ReadHeaderFields(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, BinaryFileHeader& rHeader,
                      HeaderChecks& rChecks, const IParameterLoggingAPI* pLog)
{
    rChecks.hasTag = ParameterUtils::HasBytes(length, rPosition, BinaryFileFormat::HeaderTagSize, pLog);
    if (!rChecks.hasTag)
    {
        return false;
    }
    ParameterUtils::ReadString(rChecks.tag, pBuffer, length, rPosition, sizeof(rChecks.tag), sizeof(rChecks.tag), 1,
                               pLog);
    if (!ParameterUtils::ReadField(rChecks.expectedSize, pBuffer, length, rPosition, 1, pLog) ||
        !ParameterUtils::ReadField(rHeader.Version.Value, pBuffer, length, rPosition, 1, pLog))
    {
        return false;
    }

    const VersionUnion& rVersion = rHeader.Version;
    if (rVersion >= BinaryFileFormat::ModeTreeMinVersion)
    {
        if (!ParameterUtils::HasBytes(length, rPosition, BinaryFileFormat::CreatedBySize, pLog))
        {
            return false;
        }
        const std::string createdBy(
            ParameterUtils::ReadText(pBuffer, length, rPosition, BinaryFileFormat::CreatedBySize, 1));
        if (!ParameterUtils::HasBytes(length, rPosition, BinaryFileFormat::BinaryTagSize, pLog))
        {
            return false;
        }
        rHeader.BinaryTag = ParameterUtils::ReadText(pBuffer, length, rPosition, BinaryFileFormat::BinaryTagSize, 1);
        ParameterLogging::Write(pLog, ParameterLogging::Debug,
                                "ReadHeader: Binary Version %d.%d.%d BinaryTag: %s, Created By: %s\n",
                                rVersion.Version.Major, rVersion.Version.Minor, rVersion.Version.Patch,
                                rHeader.BinaryTag.c_str(), createdBy.c_str());
    }
    else
    {
        ParameterLogging::Write(pLog, ParameterLogging::Debug,
                                "ReadHeader: Binary Version %d.%d.%d < ModeTreeMinVersion, BinaryTag not set\n",
                                rVersion.Version.Major, rVersion.Version.Minor, rVersion.Version.Patch);
    }
    if (rVersion >= BinaryFileFormat::HeaderFlagsVersion &&
        !ParameterUtils::ReadField(rHeader.Flags, pBuffer, length, rPosition, 1, pLog))
    {
        return false;
    }
    return ParameterUtils::ReadField(rHeader.SectionTableOffset, pBuffer, length, rPosition, 1, pLog) &&
           ParameterUtils::ReadField(rHeader.SectionCount, pBuffer, length, rPosition, 1, pLog);
}

/// @return whether the header is one that this code reads; if so, the text may hold a warning
bool CheckHeader(const BinaryFileHeader& rHeader, const HeaderChecks& rChecks, UINT64 length, std::string& rErrorText)
{
    const VersionUnion& rVersion = rHeader.Version;
    if (std::strcmp(rChecks.tag, BinaryFileFormat::HeaderTag) != 0)
    {
        rErrorText = FormatError("Invalid binary header tag: %s", rChecks.tag);
        return false;
    }
    if (length < rChecks.expectedSize && (rHeader.Flags & BinaryFileFormat::CompressedFlag) == 0)
    {
        rErrorText = FormatError("Binary header data too small: Expected: %d bytes, Actual: %u bytes",
                                 rChecks.expectedSize, static_cast<UINT32>(length));
        return false;
    }
    if (rVersion < BinaryFileFormat::ModeTreeMinVersion)
    {
        rErrorText =
            "Warning: This is an older binary format, only Default mode data is supported. To support multiple "
            "modes, please re-generate binary using the latest version of Tunara";
    }
    if (rVersion > BinaryFileFormat::MultiModeTableVersion)
    {
        rErrorText = FormatError("Unsupported binary header version : %u.%u.%u. Please re-generate parser code using "
                                 "the latest version of ParameterParser",
                                 rVersion.Version.Major, rVersion.Version.Minor, rVersion.Version.Patch);
        return false;
    }
    return true;
}

}  // namespace

bool BinaryFileFormat::ReadHeader(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, BinaryFileHeader& rHeader,
                                  std::string& rErrorText, const IParameterLoggingAPI* pLog)
{
    HeaderChecks checks;
    const bool   complete = ReadHeaderFields(pBuffer, length, rPosition, rHeader, checks, pLog);
    rHeader.Alignment     = GetAlignment(rHeader.Version);
    if (!checks.hasTag)
    {
        rErrorText = "Failed to read binary header tag";
        return false;
    }
    if (!complete)
    {
        rErrorText = "General error parsing binary header data header";
        return false;
    }
    if (!CheckHeader(rHeader, checks, length, rErrorText))
    {
        return false;
    }
    if (length > std::numeric_limits<UINT32>::max() ||
        !ParameterBinaryFile::ValidateCRC(pBuffer, static_cast<UINT32>(length), rHeader.Version >= StructSymbolsVersion,
                                          pLog))
    {
        rErrorText = "Binary file CRC validation failed";
        return false;
    }
    return true;
}

bool BinaryFileFormat::ReadSectionInfo(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 alignment,
                                       UINT32 sectionCount, BinaryFileSections& rSections, std::string& rErrorText,
                                       const IParameterLoggingAPI* pLog)
{
    if (sectionCount < MinSections)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error,
                                "ReadSectionInfo: Section count %d is less than Min sections %d\n", sectionCount,
                                MinSections);
        return false;
    }
    if (pBuffer == nullptr)
    {
        rErrorText = "ReadSectionInfo: buffer is nullptr";
        return false;
    }
    for (UINT32 row = 0; row < sectionCount; ++row)
    {
        UINT32      type = 0;
        SectionInfo section{};
        if (!ParameterUtils::ReadField(type, pBuffer, length, rPosition, alignment, pLog) ||
            !ParameterUtils::ReadField(section.Offset, pBuffer, length, rPosition, alignment, pLog) ||
            !ParameterUtils::ReadField(section.Size, pBuffer, length, rPosition, alignment, pLog))
        {
            rErrorText = "Error reading data from header sections";
            return false;
        }
        switch (type)
        {
        case SymbolTableSection:
            rSections.Symbols = section;
            break;
        case DataSection:
            rSections.Data = section;
            break;
        case ModeTableSection:
            rSections.ModeTables.push_back(section);
            break;
        case DataTableSection:
            rSections.DataTable = section;
            break;
        case DefinitionTableSection:
            rSections.Definitions = section;
            break;
        default:
            ParameterLogging::Write(pLog, ParameterLogging::Error, "Invalid binary section type %d\n", type);
            return false;
        }
    }
    return true;
}

const BYTE* BinaryFileFormat::GetSection(const SectionInfo& rSection, const BYTE* pBuffer, UINT64 length,
                                         ParameterBinaryFile* pFile, TuningBlock& rBlock)
{
    if (pFile != nullptr)
    {
        rBlock = pFile->Read(rSection.Offset, rSection.Size);
        return rBlock.get();
    }
    const bool isInside = static_cast<UINT64>(rSection.Offset) + rSection.Size <= length;
    return (pBuffer != nullptr && isInside) ? pBuffer + rSection.Offset : nullptr;
}

UINT32 BinaryFileFormat::GetAlignment(const VersionUnion& rVersion)
{
    return (rVersion >= WidePackingVersion && rVersion < AlignedEndVersion) ? 8 : 1;
}

UINT32 BinaryFileFormat::GetSymbolEntrySize(const VersionUnion& rVersion)
{
    if (GetAlignment(rVersion) == 8)
    {
        return 76;  // rows take 72 bytes but the table has 76 for each: counted by 72, its size does not divide
    }
    if (rVersion >= StructSymbolsVersion)
    {
        return 32;
    }
    if (rVersion > AlignedEndVersion)
    {
        return 60;
    }
    return (rVersion == AlignedEndVersion) ? 56 : 64;
}

UINT32 BinaryFileFormat::GetDataTableEntrySize(const VersionUnion& rVersion)
{
    if (rVersion >= StructSymbolsVersion)
    {
        return 12;
    }
    return (rVersion >= DataTableVersion) ? 16 : 0;
}

UINT32 BinaryFileFormat::GetModeEntrySize(const VersionUnion& rVersion)
{
    if (GetAlignment(rVersion) == 8)
    {
        return (rVersion >= LinkVersion) ? 32 : 24;
    }
    if (rVersion >= ModeFlagsVersion)
    {
        return 24;
    }
    return (rVersion >= AlignedEndVersion) ? 20 : 16;
}

UINT32 BinaryFileFormat::GetModeTableNameSize(const VersionUnion& rVersion)
{
    if (rVersion >= MultiModeTableVersion)
    {
        return 128;
    }
    return (rVersion >= DataTableVersion) ? 32 : 0;
}
