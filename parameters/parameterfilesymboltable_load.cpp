/// Reading of the tables when a file is loaded.
#include "parameters/parameterfilesymboltable.h"

#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"

namespace
{

// What all modules together may claim as their data. Modules with the same data claim the same bytes each, so that real
// files claim a multiple of their size.
constexpr UINT64 ClaimBase    = 1024ULL * 1024 * 1024;
constexpr UINT64 ClaimPerByte = 64;

}  // namespace

bool ParameterFileSymbolTable::Load(const BYTE* pBuffer, UINT64 length, std::shared_ptr<ParameterBinaryFile> pFile,
                                    const BinaryFileSections& rSections, IModeTable* pModeTable, bool readDefinitions)
{
    m_pFile      = std::move(pFile);
    m_pBuffer    = (m_pFile == nullptr) ? pBuffer : nullptr;
    m_length     = (m_pFile == nullptr) ? length : m_pFile->Length();
    m_data       = rSections.Data;
    m_pModeTable = pModeTable;
    m_fileAllowance.emplace(m_length, m_pLog);

    const auto check = [pLog = m_pLog](bool isRead, const CHAR* pTable)
    {
        if (!isRead)
        {
            ParameterLogging::Write(pLog, ParameterLogging::Error, "Failed to read %s table from binary file\n",
                                    pTable);
        }
        return isRead;
    };
    const SectionInfo& rDefinitions = rSections.Definitions;
    return CountEntries(rSections) && AllocateEntries() &&
           check(rDefinitions.Size == 0 || ReadDefinitions(rDefinitions, readDefinitions), "definition") &&
           check(ReadTable(m_symbols), "symbol") &&
           check(m_pDataRows != &m_dataTable || ReadTable(m_dataTable), "data") && AreClaimsPlausible();
}

bool ParameterFileSymbolTable::CountEntries(const BinaryFileSections& rSections)
{
    const auto count = [this](Rows& rRows, UINT32 rowSize, const CHAR* pTable)
    {
        rRows.count = rRows.section.Size / rowSize;
        if (rRows.section.Size % rowSize != 0)
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Invalid %s table size: %d, expected: %d\n",
                                    pTable, rRows.section.Size, rRows.count * rowSize);
            return false;
        }
        return true;
    };
    m_symbols.section   = rSections.Symbols;
    m_dataTable.section = rSections.DataTable;
    if (!count(m_symbols, BinaryFileFormat::GetSymbolEntrySize(m_version), "symbol"))
    {
        return false;
    }
    if (m_dataTable.section.Size == 0 || m_dataTable.section.Offset == 0)
    {
        return true;
    }
    const UINT32 dataSize = BinaryFileFormat::GetDataTableEntrySize(m_version);
    if (dataSize == 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Data table entry size is zero\n");
        return true;
    }
    m_pDataRows = &m_dataTable;
    return count(m_dataTable, dataSize, "data");
}

bool ParameterFileSymbolTable::AllocateEntries()
{
    // Counts come from section sizes, so a section that the file cannot hold must not be believed here.
    for (const Rows* pRows : {&m_symbols, m_pDataRows})
    {
        if (static_cast<UINT64>(pRows->section.Offset) + pRows->section.Size > m_length)
        {
            LogUnreadable(pRows->section, NameOf(*pRows));
            return false;
        }
    }
    try
    {
        for (Rows* pRows : {&m_symbols, &m_dataTable})
        {
            pRows->entries = std::vector<ParameterFileSymbolTableEntry>(static_cast<size_t>(pRows->count) + 1);
            pRows->lookup.assign(static_cast<size_t>(pRows->count) + 1, EntryData{});
        }
    }
    catch (const std::bad_alloc&)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Failed to allocate entry/lookup tables\n");
        return false;
    }
    return true;
}

const BYTE* ParameterFileSymbolTable::ReadSection(const SectionInfo& rSection, const CHAR* pTable,
                                                  TuningBlock& rBlock) const
{
    const BYTE* const pSection = BinaryFileFormat::GetSection(rSection, m_pBuffer, m_length, m_pFile.get(), rBlock);
    if (pSection == nullptr)
    {
        LogUnreadable(rSection, pTable);
    }
    return pSection;
}

VOID ParameterFileSymbolTable::LogUnreadable(const SectionInfo& rSection, const CHAR* pTable) const
{
    ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                            "Failed to read %s table buffer (offset: %d, size: %d) from binary file\n", pTable,
                            rSection.Offset, rSection.Size);
}

bool ParameterFileSymbolTable::ReadDefinitions(const SectionInfo& rSection, bool keep)
{
    TuningBlock       pBlock;
    const BYTE* const pSection = ReadSection(rSection, "definition", pBlock);
    if (pSection == nullptr)
    {
        return false;
    }
    const bool countedArrays = m_version >= BinaryFileFormat::MultiModeTableVersion;
    const bool complete      = m_definitions.Read(pSection, rSection.Size, m_alignment, countedArrays, m_pLog);
    if (!keep)
    {
        m_definitions = ParameterDefinitions();
    }
    return complete;
}

bool ParameterFileSymbolTable::ReadTable(Rows& rRows)
{
    if (rRows.section.Size == 0)
    {
        return true;
    }
    TuningBlock       pBlock;
    const BYTE* const pRows = ReadSection(rRows.section, NameOf(rRows), pBlock);
    if (pRows == nullptr || !ParseTable(rRows, pRows, rRows.section.Size))
    {
        return false;
    }
    AssignDupSlots(rRows);
    for (ParameterFileSymbolTableEntry& rEntry : rRows.entries)
    {
        if (rEntry.Module != nullptr)
        {
            m_modules.push_back(std::move(rEntry.Module));
        }
    }
    if (m_pFile == nullptr)
    {
        PointAtBlocks(rRows);
    }
    return true;
}

bool ParameterFileSymbolTable::ParseTable(Rows& rRows, const BYTE* pRows, UINT64 length)
{
    const bool   storedIds = m_version < BinaryFileFormat::StructSymbolsVersion;
    UINT64       position  = 0;
    const UINT32 first     = storedIds ? 1 : 0;
    for (UINT32 row = 0; row < rRows.count; ++row)
    {
        UINT32       id    = first + row;
        const UINT64 start = position;
        if (storedIds)
        {
            UINT64 idPosition = position;
            if (!ParameterUtils::ReadField(id, pRows, length, idPosition, m_alignment, m_pLog))
            {
                ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Failed to read entry ID from Symbol table\n");
                return false;
            }
        }
        const bool usable = id <= rRows.count && (id != 0 || row == 0);
        if (!usable)
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Symbol table entry ID %d out of range 1 - %d\n",
                                    id, rRows.count);
        }
        ParameterFileSymbolTableEntry  skipped;
        ParameterFileSymbolTableEntry& rEntry = usable ? rRows.entries[id] : skipped;
        rEntry.Init(this);
        if (!rEntry.LoadRow(pRows, length, position, m_pModeTable, IsOfModules(rRows), id))
        {
            return false;
        }
        if (usable)
        {
            rRows.lookup[id] = {rEntry.DuplicateID, static_cast<UINT32>(start)};
        }
    }
    return true;
}

VOID ParameterFileSymbolTable::AssignDupSlots(Rows& rRows) const
{
    std::vector<UINT32> users(rRows.lookup.size(), 0);
    for (const EntryData& rData : rRows.lookup)
    {
        if (rData.Dup < users.size())
        {
            ++users[rData.Dup];
        }
    }
    // Rows that were never read count as users of ID 0, which names no entry.
    users[0] = 0;

    std::vector<UINT32> slots(users.size(), 0);
    rRows.dupCount = 1;
    for (size_t id = 0; id < users.size(); ++id)
    {
        if (users[id] >= 2)
        {
            slots[id] = rRows.dupCount++;
        }
    }
    for (EntryData& rData : rRows.lookup)
    {
        rData.Dup = (rData.Dup < slots.size()) ? slots[rData.Dup] : 0;
    }
}

VOID ParameterFileSymbolTable::PointAtBlocks(Rows& rRows) const
{
    for (ParameterFileSymbolTableEntry& rEntry : rRows.entries)
    {
        const UINT64 offset = static_cast<UINT64>(m_data.Offset) + rEntry.DataOffset;
        if (offset <= m_length && rEntry.DataSize <= m_length - offset)
        {
            rEntry.Data = m_pBuffer + offset;
        }
    }
}

bool ParameterFileSymbolTable::AreClaimsPlausible() const
{
    if (m_pFile == nullptr)
    {
        return true;  // nothing is fetched
    }
    UINT64 claimed = 0;
    for (const ParameterFileSymbolTableEntry& rEntry : m_symbols.entries)
    {
        claimed += rEntry.DataSize;
    }
    if (claimed > ClaimBase + ClaimPerByte * m_length)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "Symbol table entries claim %llu bytes of a file of %llu bytes\n", claimed, m_length);
        return false;
    }
    return true;
}
