/// @file
/// The container of a parameter file: header, section table, and what each version changed.
///
/// All integers are little-endian and may stand at any address. Outside the header a file has a packing of 1 or 8: a
/// value of W bytes takes a slot of max(W, packing) bytes and stands in the slot's first bytes.
#pragma once

#include <string>
#include <vector>

#include "parameters/tuningmemory.h"
#include "parameters/versionunion.h"
#include "platform/tavotypes.h"

class IParameterLoggingAPI;
class ParameterBinaryFile;

/// Where a section stands in the file. Bytes; both are 0 for a section that the file lacks.
struct SectionInfo
{
    UINT32 Offset;
    UINT32 Size;
};

/// What the fixed header says.
struct BinaryFileHeader
{
    UINT32       SectionTableOffset = 0;  ///< bytes from the start of the file
    UINT32       SectionCount       = 0;
    UINT32       Alignment          = 1;  ///< the packing, 1 or 8
    VersionUnion Version;
    std::string  BinaryTag;  ///< the tool's name for this tuning; at most 64 characters
    UINT64       Flags = 0;
};

/// The sections of a file by type.
struct BinaryFileSections
{
    SectionInfo              Symbols{};
    SectionInfo              DataTable{};
    std::vector<SectionInfo> ModeTables;  ///< in file order, which gives the index of each mode table
    SectionInfo              Data{};
    SectionInfo              Definitions{};
};

class BinaryFileFormat
{
public:
    // Versions at which the format changed.
    static constexpr VersionUnion ModeTreeMinVersion{1, 0, 2};     ///< created-by text and binary tag in the header
    static constexpr VersionUnion WidePackingVersion{1, 1, 0};     ///< packing becomes 8
    static constexpr VersionUnion LinkVersion{2, 0, 0};            ///< mode entries carry a link
    static constexpr VersionUnion HeaderFlagsVersion{3, 0, 0};     ///< flags in the header
    static constexpr VersionUnion AlignedEndVersion{3, 0, 1};      ///< packing is 1 again
    static constexpr VersionUnion DataTableVersion{4, 0, 0};       ///< data table; mode tables have names
    static constexpr VersionUnion ModeFlagsVersion{5, 0, 0};       ///< mode entries carry flags
    static constexpr VersionUnion StructSymbolsVersion{6, 0, 0};   ///< CRC-64, name hashes, byte counts of records
    static constexpr VersionUnion MultiModeTableVersion{7, 0, 0};  ///< long table names; the newest version read

    static constexpr const CHAR* HeaderTag        = "PELTO Tunara Header";
    static constexpr UINT32      HeaderTagSize    = 28;
    static constexpr UINT32      CreatedBySize    = 48;
    static constexpr UINT32      BinaryTagSize    = 64;
    static constexpr UINT64      CompressedFlag   = 2;  ///< header flag; compressed files are no longer read
    static constexpr UINT32      MinSections      = 2;
    static constexpr UINT32      NoLink           = 0xFFFFFFFF;  ///< link ID of a mode entry without a link
    static constexpr UINT32      NoMode           = 0xFFFFFFFF;  ///< mode ID of a symbol that is no module
    static constexpr UINT32      PreserveModeFlag = 1;           ///< mode entry flag
    static constexpr size_t      MaxErrorText     = 2048;        ///< terminator included

    enum SectionType : UINT32
    {
        SymbolTableSection     = 0,
        DataSection            = 1,
        ModeTableSection       = 2,
        DataTableSection       = 3,
        DefinitionTableSection = 4
    };

    /// Parses and checks the header and the checksum over the whole buffer.
    /// @param rPosition  0 on entry, behind the header on return
    /// @param rHeader    Alignment is set on failure as well
    /// @param rErrorText empty on entry. The reason of a refusal; a warning about an old file may stand in it also when
    ///                   the header is accepted
    static bool ReadHeader(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, BinaryFileHeader& rHeader,
                           std::string& rErrorText, const IParameterLoggingAPI* pLog);

    /// Reads the section table. A section type that occurs twice counts with its last row, except mode tables.
    /// @param rPosition start of the table on entry
    static bool ReadSectionInfo(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 alignment,
                                UINT32 sectionCount, BinaryFileSections& rSections, std::string& rErrorText,
                                const IParameterLoggingAPI* pLog);

    /// The bytes of a section.
    /// @param pBuffer the whole file, length bytes; not used if there is a file object
    /// @param pFile   null to take them from the buffer
    /// @param rBlock  holds what is read from the file
    /// @return null if the source does not have them all
    static const BYTE* GetSection(const SectionInfo& rSection, const BYTE* pBuffer, UINT64 length,
                                  ParameterBinaryFile* pFile, TuningBlock& rBlock);

    /// @return the packing of a version
    static UINT32 GetAlignment(const VersionUnion& rVersion);

    /// Bytes by which the number of symbol table entries is found.
    static UINT32 GetSymbolEntrySize(const VersionUnion& rVersion);

    /// @return 0 for versions without a data table
    static UINT32 GetDataTableEntrySize(const VersionUnion& rVersion);

    static UINT32 GetModeEntrySize(const VersionUnion& rVersion);

    /// Bytes of the table name in front of the mode entries; 0 for versions without one.
    static UINT32 GetModeTableNameSize(const VersionUnion& rVersion);

    /// Splits a mode ID: bits 31 to 24 the mode table, bits 23 to 0 the entry in it.
    static constexpr UINT32 GetModeTableIndex(UINT32 modeId)
    {
        return modeId >> 24;
    }

    static constexpr UINT32 GetModeIDValue(UINT32 modeId)
    {
        return modeId & 0xFFFFFF;
    }
};
