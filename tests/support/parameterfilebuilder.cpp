#include "tests/support/parameterfilebuilder.h"

#include <fstream>
#include <functional>

#include "schema/namehash.h"
#include "tools/tuningfile/checksum.h"

namespace
{

constexpr size_t PieceSize = 3388;  ///< what a reader takes of a file to find its sections

}  // namespace

VOID ParameterFile::Seal()
{
    tuningfile::Seal(bytes, version);
}

VOID ParameterFile::WriteTo(const std::string& rPath) const
{
    std::ofstream stream(rPath, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const CHAR*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

ParameterFileBuilder::ParameterFileBuilder(const VersionUnion& rVersion)
    : m_version(rVersion), m_packing(BinaryFileFormat::GetAlignment(rVersion)),
      m_firstId(rVersion >= BinaryFileFormat::StructSymbolsVersion ? 0 : 1), m_minimumSize(PieceSize + 64),
      m_definitions(m_packing)
{
    // The data section begins with a few bytes of nobody, so that an offset of 0 stands out.
    m_blocks.Zeros(8);
    if (m_firstId == 0)
    {
        m_modules.emplace_back();
        m_data.emplace_back();
    }
}

VOID ParameterFileBuilder::SetHeader(const std::string& rBinaryTag, const std::string& rCreatedBy, UINT64 flags)
{
    m_binaryTag = rBinaryTag;
    m_createdBy = rCreatedBy;
    m_flags     = flags;
}

UINT32 ParameterFileBuilder::AddModeTable(const std::string& rName)
{
    m_modeTables.push_back({rName, ByteWriter(m_packing), 0});
    return static_cast<UINT32>(m_modeTables.size() - 1);
}

UINT32 ParameterFileBuilder::AddMode(UINT32 table, UINT16 mode, UINT16 subMode, UINT32 parentId, UINT32 group,
                                     UINT32 linkId, UINT32 flags)
{
    ModeTable&   rTable = m_modeTables[table];
    const UINT32 id     = (table << 24) | rTable.count++;
    rTable.entries.Add(id).Add(mode | (static_cast<UINT64>(subMode) << 16) | (static_cast<UINT64>(group) << 32));
    rTable.entries.Add(parentId);
    if (m_version >= BinaryFileFormat::LinkVersion)
    {
        rTable.entries.Add(linkId);
    }
    if (m_version >= BinaryFileFormat::ModeFlagsVersion)
    {
        rTable.entries.Add(flags);
    }
    return id;
}

UINT32 ParameterFileBuilder::AddRootMode(UINT32 table)
{
    return AddMode(table, 0, 0, (table << 24) | m_modeTables[table].count);
}

UINT32 ParameterFileBuilder::AddRow(std::vector<Row>& rRows, Row row, const std::vector<BYTE>& rBlock,
                                    UINT32 duplicateOf)
{
    const UINT32 id = static_cast<UINT32>(rRows.size()) + m_firstId;
    if (duplicateOf != 0)
    {
        const Row& rOriginal = rRows[duplicateOf - m_firstId];
        row.offset           = rOriginal.offset;
        row.size             = rOriginal.size;
        row.duplicateId      = duplicateOf;
    }
    else
    {
        row.offset      = static_cast<UINT32>(m_blocks.Size());
        row.size        = static_cast<UINT32>(rBlock.size());
        row.duplicateId = id;
        m_blocks.Bytes(rBlock);
    }
    rRows.push_back(row);
    return id;
}

UINT32 ParameterFileBuilder::AddModule(const std::string& rName, const VersionUnion& rVersion, UINT32 modeId,
                                       const std::vector<BYTE>& rBlock, UINT32 duplicateOf)
{
    Row row;
    row.name    = rName;
    row.version = rVersion;
    row.modeId  = modeId;
    return AddRow(m_modules, row, rBlock, duplicateOf);
}

UINT32 ParameterFileBuilder::AddData(const std::vector<BYTE>& rBlock, UINT32 duplicateOf)
{
    return AddRow(m_data, Row(), rBlock, duplicateOf);
}

UINT32 ParameterFileBuilder::EmptyData()
{
    if (m_emptyData == 0)
    {
        m_emptyData = AddData({});
    }
    return m_emptyData;
}

VOID ParameterFileBuilder::AddText(const std::string& rText)
{
    m_definitions.Add(static_cast<UINT32>(rText.size() + 1));
    const size_t size = rText.size() + 1;
    m_definitions.Field(rText, (size + m_packing - 1) / m_packing * m_packing);
}

VOID ParameterFileBuilder::DefineModule(const std::string& rName, UINT32 structureId)
{
    m_definitions.Add<BYTE>(ParameterDefinitionType_Module).Add(structureId).Add(namehash::OfName(rName.c_str()));
    AddText(rName);
    m_definitions.Add<UINT32>(1).Raw<BYTE>(0);  // description
}

VOID ParameterFileBuilder::DefineStructure(UINT32 structureId, const std::string& rTypeName,
                                           const std::vector<DefinedMember>& rMembers)
{
    m_definitions.Add<BYTE>(ParameterDefinitionType_Structure).Add(structureId);
    AddText(rTypeName);
    m_definitions.Add(namehash::OfName(rTypeName.c_str())).Add(static_cast<UINT32>(rMembers.size()));
    for (const DefinedMember& rMember : rMembers)
    {
        m_definitions.Add<BYTE>(rMember.type).Add(rMember.structureId);
        AddText(rMember.name);
        m_definitions.Add(rMember.flags).Add(rMember.minimum).Add(rMember.maximum);
        m_definitions.Add<UINT32>(1).Raw<BYTE>(0);  // description
    }
}

std::vector<BYTE> ParameterFileBuilder::Rows(const std::vector<Row>& rRows, bool modules) const
{
    const bool byHash = m_version >= BinaryFileFormat::StructSymbolsVersion;
    ByteWriter writer(m_packing);
    for (size_t index = 0; index < rRows.size(); ++index)
    {
        const Row& rRow = rRows[index];
        if (!byHash)
        {
            writer.Add(static_cast<UINT32>(index + m_firstId));
        }
        if (modules)
        {
            if (byHash)
            {
                writer.Add<UINT64>(rRow.name.empty() ? 0 : namehash::OfName(rRow.name.c_str()));
            }
            else
            {
                writer.Field(rRow.name, 32);
            }
            writer.Add(rRow.version.Value);
            if (m_version < BinaryFileFormat::AlignedEndVersion && m_packing == 1)
            {
                writer.Add<UINT64>(0);
            }
            writer.Add(rRow.modeId);
        }
        writer.Add(rRow.offset).Add(rRow.size);
        if (m_version > BinaryFileFormat::AlignedEndVersion)
        {
            writer.Add(rRow.duplicateId);
        }
    }
    // The table is as long as its entry size says, which is more than its rows take at packing 8.
    const UINT32 entrySize =
        modules ? BinaryFileFormat::GetSymbolEntrySize(m_version) : BinaryFileFormat::GetDataTableEntrySize(m_version);
    writer.Zeros(rRows.size() * entrySize - writer.Size());
    return writer.Get();
}

std::vector<BYTE> ParameterFileBuilder::Header(UINT32 size, UINT32 sectionTableOffset, UINT32 sectionCount) const
{
    ByteWriter writer;
    writer.Field(BinaryFileFormat::HeaderTag, BinaryFileFormat::HeaderTagSize).Add(size).Add(m_version.Value);
    if (m_version >= BinaryFileFormat::ModeTreeMinVersion)
    {
        writer.Field(m_createdBy, BinaryFileFormat::CreatedBySize).Field(m_binaryTag, BinaryFileFormat::BinaryTagSize);
    }
    if (m_version >= BinaryFileFormat::HeaderFlagsVersion)
    {
        writer.Add(m_flags);
    }
    writer.Add(sectionTableOffset).Add(sectionCount);
    return writer.Get();
}

ParameterFile ParameterFileBuilder::Build() const
{
    std::vector<std::pair<BinaryFileFormat::SectionType, std::vector<BYTE>>> sections;
    for (const ModeTable& rTable : m_modeTables)
    {
        ByteWriter writer;
        writer.Field(rTable.name, BinaryFileFormat::GetModeTableNameSize(m_version)).Bytes(rTable.entries.Get());
        sections.emplace_back(BinaryFileFormat::ModeTableSection, writer.Get());
    }
    sections.emplace_back(BinaryFileFormat::SymbolTableSection, Rows(m_modules, true));
    if (m_version >= BinaryFileFormat::DataTableVersion)
    {
        sections.emplace_back(BinaryFileFormat::DataTableSection, Rows(m_data, false));
    }
    if (m_definitions.Size() > 0)
    {
        sections.emplace_back(BinaryFileFormat::DefinitionTableSection, m_definitions.Get());
    }
    sections.emplace_back(BinaryFileFormat::DataSection, m_blocks.Get());

    ParameterFile file;
    file.version            = m_version;
    file.sectionTableOffset = static_cast<UINT32>(Header(0, 0, 0).size());

    const UINT32 sectionCount = static_cast<UINT32>(sections.size());
    const size_t rowSize      = 3 * std::max<size_t>(sizeof(UINT32), m_packing);
    ByteWriter   table(m_packing);
    ByteWriter   content;
    const size_t contentStart = file.sectionTableOffset + sectionCount * rowSize;
    for (const auto& [type, bytes] : sections)
    {
        const SectionInfo info{static_cast<UINT32>(contentStart + content.Size()), static_cast<UINT32>(bytes.size())};
        table.Add<UINT32>(type).Add(info.Offset).Add(info.Size);
        content.Bytes(bytes);
        file.sections.emplace(type, info);
    }

    const size_t sumSize = tuningfile::ChecksumSize(m_version);
    const size_t size    = std::max(contentStart + content.Size() + sumSize, m_minimumSize);
    ByteWriter   whole;
    whole.Bytes(Header(static_cast<UINT32>(size), file.sectionTableOffset, sectionCount))
        .Bytes(table.Get())
        .Bytes(content.Get());
    whole.Zeros(size - whole.Size());
    file.bytes = whole.Get();
    file.Seal();
    return file;
}
