/// @file
/// Builds parameter files in memory, of any version, whole or damaged.
///
///     ParameterFileBuilder builder;
///     const UINT32 table = builder.AddModeTable("main");
///     const UINT32 root  = builder.AddRootMode(table);
///     builder.AddModule("kirotouch", {10, 0, 0}, root, recordBytes);
///     ParameterFile file = builder.Build();
#pragma once

#include <map>
#include <string>
#include <vector>

#include "parameters/binaryfileformat.h"
#include "parameters/parameterdefinitions.h"
#include "platform/tavotypes.h"
#include "tests/support/bytewriter.h"

/// A built file. Tests may change its bytes.
struct ParameterFile
{
    std::vector<BYTE>                                         bytes;
    VersionUnion                                              version;
    std::multimap<BinaryFileFormat::SectionType, SectionInfo> sections;
    UINT32                                                    sectionTableOffset = 0;

    /// The first section of a type.
    SectionInfo Section(BinaryFileFormat::SectionType type) const
    {
        return sections.lower_bound(type)->second;
    }

    template <typename T> VOID Put(size_t offset, T value)
    {
        std::memcpy(bytes.data() + offset, &value, sizeof(value));
    }

    /// Makes the checksum match the bytes again.
    VOID Seal();

    VOID WriteTo(const std::string& rPath) const;
};

/// A member in the definition table.
struct DefinedMember
{
    std::string             name;
    ParameterDefinitionType type;
    UINT32                  minimum     = 1;
    UINT32                  maximum     = 1;
    UINT32                  structureId = 0;  ///< for a structure
    UINT16                  flags       = 0;
};

class ParameterFileBuilder
{
public:
    /// One row of the symbol table or the data table.
    struct Row
    {
        std::string  name;  ///< of a module
        VersionUnion version;
        UINT32       modeId      = BinaryFileFormat::NoMode;
        UINT32       offset      = 0;
        UINT32       size        = 0;
        UINT32       duplicateId = 0;
    };

    explicit ParameterFileBuilder(const VersionUnion& rVersion = BinaryFileFormat::MultiModeTableVersion);

    /// Header texts and flags.
    VOID SetHeader(const std::string& rBinaryTag, const std::string& rCreatedBy, UINT64 flags = 0);

    /// Least size of the file; the default is enough for it to be read piece by piece.
    VOID SetMinimumSize(size_t size)
    {
        m_minimumSize = size;
    }

    /// @return index of the new mode table
    UINT32 AddModeTable(const std::string& rName = "");

    /// @param mode, subMode, group as stored; parentId a result of AddMode
    /// @return the mode ID
    UINT32 AddMode(UINT32 table, UINT16 mode, UINT16 subMode, UINT32 parentId, UINT32 group = 0,
                   UINT32 linkId = BinaryFileFormat::NoLink, UINT32 flags = 0);

    /// The Default mode, which is its own parent. @return the mode ID
    UINT32 AddRootMode(UINT32 table);

    /// Appends a block to the data section and a row for it to the symbol table.
    /// @param duplicateOf ID of a module with the same block, whose bytes are then used; 0 for none
    /// @return ID of the entry
    UINT32 AddModule(const std::string& rName, const VersionUnion& rVersion, UINT32 modeId,
                     const std::vector<BYTE>& rBlock, UINT32 duplicateOf = 0);

    /// Appends a block and a row for it to the data table. @return ID of the entry
    UINT32 AddData(const std::vector<BYTE>& rBlock, UINT32 duplicateOf = 0);

    /// An entry without data, for arrays without items. @return ID of the entry
    UINT32 EmptyData();

    VOID DefineModule(const std::string& rName, UINT32 structureId);
    VOID DefineStructure(UINT32 structureId, const std::string& rTypeName, const std::vector<DefinedMember>& rMembers);

    /// The definition section as written so far, for what the two calls above cannot write.
    ByteWriter& Definitions()
    {
        return m_definitions;
    }

    /// Rows by entry ID, to be damaged.
    Row& Module(UINT32 id)
    {
        return m_modules[id - m_firstId];
    }

    Row& Data(UINT32 id)
    {
        return m_data[id - m_firstId];
    }

    const VersionUnion& Version() const
    {
        return m_version;
    }

    ParameterFile Build() const;

private:
    struct ModeTable
    {
        std::string name;
        ByteWriter  entries;
        UINT32      count = 0;
    };

    UINT32            AddRow(std::vector<Row>& rRows, Row row, const std::vector<BYTE>& rBlock, UINT32 duplicateOf);
    VOID              AddText(const std::string& rText);
    std::vector<BYTE> Rows(const std::vector<Row>& rRows, bool modules) const;
    std::vector<BYTE> Header(UINT32 size, UINT32 sectionTableOffset, UINT32 sectionCount) const;

    VersionUnion           m_version;
    UINT32                 m_packing;
    UINT32                 m_firstId;  ///< 0 where the first row is a placeholder
    std::string            m_binaryTag = "test tuning";
    std::string            m_createdBy = "test";
    UINT64                 m_flags     = 0;
    size_t                 m_minimumSize;
    std::vector<ModeTable> m_modeTables;
    std::vector<Row>       m_modules;
    std::vector<Row>       m_data;
    UINT32                 m_emptyData = 0;
    ByteWriter             m_definitions;
    ByteWriter             m_blocks;
};
