#include "tools/tuningfile/binaryoutput.h"

#include <algorithm>
#include <charconv>
#include <map>

#include <fmt/format.h>

#include "tools/tuningfile/checksum.h"
#include "tools/tuningfile/definitionoutput.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/recordblocks.h"
#include "tools/tuningfile/slotwriter.h"

namespace tuningfile
{

namespace
{

using Format = BinaryFileFormat;

/// A device fetches this much of a file to find the sections, and refuses a file that has less.
constexpr size_t MinFileSize = 3388;

constexpr size_t MaxModes        = 0xFFFFFF;  ///< 24 bits of a mode ID
constexpr UINT32 SectionRowWidth = 3;         ///< type, offset, size

UINT32 ModeId(size_t table, size_t index)
{
    return static_cast<UINT32>(table << 24 | index);
}

/// Symbol table, data table, data and definitions of a tuning.
class RecordSections
{
public:
    RecordSections(const Tuning& rTuning, const VersionUnion& rVersion);

    std::vector<BYTE> symbols;
    std::vector<BYTE> dataTable;
    std::vector<BYTE> data;
    std::vector<BYTE> definitions;

private:
    VOID   AddSymbol(const Module& rModule, UINT32 modeId, UINT32 group);
    UINT32 AddDataEntry(UINT32 block);
    UINT32 Place(UINT32 block);
    UINT32 SizeOf(UINT32 block) const
    {
        return static_cast<UINT32>(m_pool[block].bytes.size());
    }

    /// The data entry that empty members refer to, since readers report an ID of 0.
    static constexpr UINT32 EmptyEntry = 1;

    RecordBlockPool                             m_pool;
    UINT32                                      m_symbolCount    = 0;
    UINT32                                      m_dataEntryCount = 0;
    std::map<std::pair<UINT32, UINT32>, UINT32> m_firstSymbols;  ///< first ID by block and group
    std::map<UINT32, UINT32>                    m_firstEntries;  ///< first ID in the data table by block
    std::map<UINT32, UINT32>                    m_offsets;       ///< in data by block
    std::map<std::vector<BYTE>, UINT32>         m_known;         ///< offset by content, references being filled in
};

/// Files below 6.0.0 have tables for form's sake: one symbol that is no module, and an empty piece of data.
VOID WriteNoModules(const VersionUnion& rVersion, std::vector<BYTE>& rSymbols, std::vector<BYTE>& rData)
{
    constexpr UINT32 NameSize = 32;
    const UINT32     packing  = Format::GetAlignment(rVersion);
    SlotWriter       symbol(packing);
    symbol.Add(UINT32{1});
    symbol.AddText("", NameSize);
    symbol.Add(UINT64{0});
    if (packing == 1 && rVersion < Format::AlignedEndVersion)
    {
        symbol.Add(UINT64{0});
    }
    symbol.Add(Format::NoMode);
    rSymbols = std::move(symbol.bytes);
    // What is left of the entry are offset, size and duplicate ID, none of which matters here.
    rSymbols.resize(Format::GetSymbolEntrySize(rVersion));
    rData.assign(sizeof(UINT32), 0);
}

RecordSections::RecordSections(const Tuning& rTuning, const VersionUnion& rVersion)
    : m_pool(rVersion >= Format::MultiModeTableVersion)
{
    if (rVersion < Format::StructSymbolsVersion)
    {
        WriteNoModules(rVersion, symbols, data);
        return;
    }
    // An ID of 0 means no entry, so that the first row of both tables is a placeholder.
    SlotWriter placeholder(1);
    placeholder.Add(UINT64{0});
    placeholder.Add(UINT64{0});
    placeholder.Add(Format::NoMode);
    symbols = std::move(placeholder.bytes);
    symbols.resize(Format::GetSymbolEntrySize(rVersion));
    m_symbolCount = 1;

    data.assign(sizeof(UINT32), 0);
    dataTable.resize(Format::GetDataTableEntrySize(rVersion));
    AppendInteger(dataTable, UINT32{0});
    AppendInteger(dataTable, static_cast<UINT32>(data.size()));
    AppendInteger(dataTable, EmptyEntry);
    m_dataEntryCount = EmptyEntry + 1;

    std::vector<const tuning::ModuleDescription*> modules;
    for (size_t table = 0; table < rTuning.tables.size(); ++table)
    {
        for (size_t index = 0; index < rTuning.tables[table].modes.size(); ++index)
        {
            const Mode& rMode = rTuning.tables[table].modes[index];
            for (const Module& rModule : rMode.modules)
            {
                AddSymbol(rModule, ModeId(table, index), rMode.group);
                if (std::find(modules.begin(), modules.end(), rModule.pDescription) == modules.end())
                {
                    modules.push_back(rModule.pDescription);
                }
            }
        }
    }
    // Below 7.0.0 fixed arrays have no count, but some readers reckon with one when they compute a record's size from
    // its definition, and drop the last items of an array of records. Without definitions all go by their own schema.
    if (rVersion >= Format::MultiModeTableVersion)
    {
        definitions = WriteDefinitions(modules);
    }
}

/// Modules of equal data name the first of them, by which readers share one instance. An instance has one group, so it
/// is shared within a group only.
VOID RecordSections::AddSymbol(const Module& rModule, UINT32 modeId, UINT32 group)
{
    const tuning::ModuleDescription& rDescription = *rModule.pDescription;

    const UINT32 id     = m_symbolCount++;
    const UINT32 block  = m_pool.AddRecord(*rDescription.pRecord, rModule.pRecord, &rDescription);
    const UINT32 offset = Place(block);
    SlotWriter   writer(1);
    writer.Add(rDescription.nameHash);
    writer.Add(VersionUnion(rDescription.major, rDescription.minor, rDescription.patch).Value);
    writer.Add(modeId);
    writer.Add(offset);
    writer.Add(SizeOf(block));
    writer.Add(m_firstSymbols.try_emplace({block, group}, id).first->second);
    symbols.insert(symbols.end(), writer.bytes.begin(), writer.bytes.end());
}

/// Each reference has an entry of its own; entries of equal data name the first of them, as modules do.
UINT32 RecordSections::AddDataEntry(UINT32 block)
{
    if (block == RecordBlockPool::EmptyBlock)
    {
        return EmptyEntry;
    }
    const UINT32 id    = m_dataEntryCount++;
    const size_t start = dataTable.size();
    dataTable.resize(start + 3 * sizeof(UINT32));
    const UINT32 offset = Place(block);
    StoreInteger(dataTable, start, offset);
    StoreInteger(dataTable, start + 4, SizeOf(block));
    StoreInteger(dataTable, start + 8, m_firstEntries.try_emplace(block, id).first->second);
    return id;
}

/// Writes a block behind those that it refers to, unless it is there already. @return its offset
UINT32 RecordSections::Place(UINT32 block)
{
    const auto placed = m_offsets.find(block);
    if (placed != m_offsets.end())
    {
        return placed->second;
    }
    std::vector<BYTE> bytes = m_pool[block].bytes;
    for (const RecordBlock::Reference& rReference : m_pool[block].references)
    {
        StoreInteger(bytes, rReference.position, AddDataEntry(rReference.block));
    }
    const auto [known, isNew] = m_known.try_emplace(std::move(bytes), static_cast<UINT32>(data.size()));
    if (isNew)
    {
        data.insert(data.end(), known->first.begin(), known->first.end());
    }
    m_offsets.emplace(block, known->second);
    return known->second;
}

VOID CheckLimits(const Tuning& rTuning, const VersionUnion& rVersion)
{
    const UINT32 nameSize = Format::GetModeTableNameSize(rVersion);
    if (rTuning.tables.size() > MaxModeTables)
    {
        throw InputError(fmt::format("{}: {} mode tables, expected at most {}", rTuning.source, rTuning.tables.size(),
                                     MaxModeTables));
    }
    for (const ModeTable& rTable : rTuning.tables)
    {
        if (rTable.modes.size() > MaxModes)
        {
            throw InputError(fmt::format("{}: {} modes in table '{}', expected at most {}", rTuning.source,
                                         rTable.modes.size(), rTable.name, MaxModes));
        }
        if (nameSize > 0 && rTable.name.size() >= nameSize)
        {
            throw InputError(
                fmt::format("{}: table name '{}' is too long for the file version, expected at most {} bytes",
                            rTuning.source, rTable.name, nameSize - 1));
        }
    }
}

std::vector<BYTE> WriteModes(const ModeTable& rTable, size_t table, const VersionUnion& rVersion)
{
    SlotWriter   writer(Format::GetAlignment(rVersion));
    const UINT32 nameSize = Format::GetModeTableNameSize(rVersion);
    writer.AddText((nameSize > 0) ? rTable.name : std::string(), nameSize);
    // Before there were trees of modes, a file held the Default mode alone.
    const size_t count =
        (rVersion >= Format::ModeTreeMinVersion) ? rTable.modes.size() : std::min<size_t>(rTable.modes.size(), 1);
    for (size_t index = 0; index < count; ++index)
    {
        const Mode& rMode = rTable.modes[index];
        writer.Add(ModeId(table, index));
        writer.Add(UINT64{rMode.mode} | UINT64{rMode.subMode} << 16 | UINT64{rMode.group} << 32);
        writer.Add(ModeId(table, rMode.parent.value_or(static_cast<UINT32>(index))));
        if (rVersion >= Format::LinkVersion)
        {
            writer.Add(rMode.link.has_value() ? ModeId(table, *rMode.link) : Format::NoLink);
        }
        if (rVersion >= Format::ModeFlagsVersion)
        {
            writer.Add(rMode.preserve ? Format::PreserveModeFlag : UINT32{0});
        }
    }
    return std::move(writer.bytes);
}

/// The header ignores the packing.
std::vector<BYTE> WriteHeader(const Tuning& rTuning, const VersionUnion& rVersion, UINT32 sectionCount, UINT32 fileSize)
{
    SlotWriter writer(1);
    writer.AddText(Format::HeaderTag, Format::HeaderTagSize);
    writer.Add(fileSize);
    writer.Add(rVersion.Value);
    if (rVersion >= Format::ModeTreeMinVersion)
    {
        writer.AddText(rTuning.createdBy, Format::CreatedBySize);
        writer.AddText(rTuning.binaryTag, Format::BinaryTagSize);
    }
    if (rVersion >= Format::HeaderFlagsVersion)
    {
        writer.Add(UINT64{0});
    }
    writer.Add(static_cast<UINT32>(writer.bytes.size() + 2 * sizeof(UINT32)));
    writer.Add(sectionCount);
    return std::move(writer.bytes);
}

struct Section
{
    Format::SectionType type;
    std::vector<BYTE>   bytes;
};

/// The sections of a file, in the order in which they stand there.
std::vector<Section> MakeSections(const Tuning& rTuning, const VersionUnion& rVersion)
{
    std::vector<Section> sections;
    for (size_t table = 0; table < rTuning.tables.size(); ++table)
    {
        sections.push_back({Format::ModeTableSection, WriteModes(rTuning.tables[table], table, rVersion)});
    }
    RecordSections records(rTuning, rVersion);
    sections.push_back({Format::SymbolTableSection, std::move(records.symbols)});
    if (!records.dataTable.empty())
    {
        sections.push_back({Format::DataTableSection, std::move(records.dataTable)});
    }
    if (!records.definitions.empty())
    {
        sections.push_back({Format::DefinitionTableSection, std::move(records.definitions)});
    }
    sections.push_back({Format::DataSection, std::move(records.data)});
    return sections;
}

}  // namespace

std::optional<VersionUnion> ParseVersion(std::string_view text)
{
    UINT16      major = 0;
    UINT16      minor = 0;
    UINT32      patch = 0;
    const CHAR* pEnd  = text.data() + text.size();
    const CHAR* pNext = text.data();

    const auto number = [&](auto& rNumber, bool isFirst)
    {
        if (!isFirst && (pNext == pEnd || *pNext++ != '.'))
        {
            return false;
        }
        const auto result = std::from_chars(pNext, pEnd, rNumber);
        pNext             = result.ptr;
        return result.ec == std::errc();
    };
    if (!number(major, true) || !number(minor, false) || !number(patch, false) || pNext != pEnd)
    {
        return std::nullopt;
    }
    const VersionUnion version(major, minor, patch);
    return (version >= OldestVersion && version <= NewestVersion) ? std::optional(version) : std::nullopt;
}

std::vector<BYTE> WriteBinary(const Tuning& rTuning, const VersionUnion& rVersion)
{
    CheckLimits(rTuning, rVersion);
    const std::vector<Section> sections     = MakeSections(rTuning, rVersion);
    const UINT32               sectionCount = static_cast<UINT32>(sections.size());
    const UINT32               packing      = Format::GetAlignment(rVersion);
    const size_t               headerSize   = WriteHeader(rTuning, rVersion, sectionCount, 0).size();

    size_t offset = headerSize + sections.size() * SectionRowWidth * std::max<size_t>(sizeof(UINT32), packing);
    if (offset > MinFileSize)
    {
        throw InputError(fmt::format("{}: {} mode tables, expected fewer in this file version", rTuning.source,
                                     rTuning.tables.size()));
    }
    SlotWriter rows(packing);
    for (const Section& rSection : sections)
    {
        rows.Add(static_cast<UINT32>(rSection.type));
        rows.Add(static_cast<UINT32>(offset));
        rows.Add(static_cast<UINT32>(rSection.bytes.size()));
        offset += rSection.bytes.size();
    }
    const size_t fileSize = std::max(offset + ChecksumSize(rVersion), MinFileSize);
    if (fileSize > MaxFileSize)
    {
        throw InputError(fmt::format("{}: the file would have {} bytes, expected at most {}", rTuning.source, fileSize,
                                     MaxFileSize));
    }

    std::vector<BYTE> bytes = WriteHeader(rTuning, rVersion, sectionCount, static_cast<UINT32>(fileSize));
    bytes.reserve(fileSize);
    bytes.insert(bytes.end(), rows.bytes.begin(), rows.bytes.end());
    for (const Section& rSection : sections)
    {
        bytes.insert(bytes.end(), rSection.bytes.begin(), rSection.bytes.end());
    }
    bytes.resize(fileSize);
    Seal(bytes, rVersion);
    return bytes;
}

std::vector<std::string> LeftOut(const Tuning& rTuning, const VersionUnion& rVersion)
{
    const auto anyMode = [&rTuning](auto condition)
    {
        return std::any_of(rTuning.tables.begin(), rTuning.tables.end(),
                           [&](const ModeTable& rTable)
                           { return std::any_of(rTable.modes.begin(), rTable.modes.end(), condition); });
    };
    std::vector<std::string> leftOut;
    const auto               check = [&](const VersionUnion& rSince, bool isUsed, const CHAR* pWhat)
    {
        if (rVersion < rSince && isUsed)
        {
            leftOut.push_back(pWhat);
        }
    };
    check(Format::StructSymbolsVersion, anyMode([](const Mode& rMode) { return !rMode.modules.empty(); }), "modules");
    check(Format::ModeFlagsVersion, anyMode([](const Mode& rMode) { return rMode.preserve; }), "preserve flags");
    check(Format::DataTableVersion,
          std::any_of(rTuning.tables.begin(), rTuning.tables.end(),
                      [](const ModeTable& rTable) { return !rTable.name.empty(); }),
          "names of mode tables");
    check(Format::LinkVersion, anyMode([](const Mode& rMode) { return rMode.link.has_value(); }), "links");
    check(Format::ModeTreeMinVersion, anyMode([](const Mode& rMode) { return rMode.parent.has_value(); }),
          "modes below Default");
    check(Format::ModeTreeMinVersion, !rTuning.binaryTag.empty(), "the binary tag");
    return leftOut;
}

}  // namespace tuningfile
