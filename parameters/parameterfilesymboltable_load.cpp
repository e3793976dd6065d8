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
    m_pBuffer    = (m_pFile == nullptr) ? pBuffer : m_pFile->Whole();
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
            pRows->resident = std::vector<Row>(static_cast<size_t>(pRows->count) + 1);
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
    const bool isInMemory = m_pBuffer != nullptr && static_cast<UINT64>(rSection.Offset) + rSection.Size <= m_length;
    const BYTE* const pSection =
        BinaryFileFormat::GetSection(rSection, m_pBuffer, m_length, isInMemory ? nullptr : m_pFile.get(), rBlock);
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
    const bool complete = m_definitions.Read(pSection, rSection.Size, m_alignment, m_hasArrayCounts, m_pLog);
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
    for (Row& rRow : rRows.resident)
    {
        if (rRow.pModule != nullptr)
        {
            m_modules.push_back(std::move(rRow.pModule));
        }
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
        Row  skipped;
        Row& rRow = usable ? rRows.resident[id] : skipped;
        if (!ReadRow(rRow, pRows, length, position, IsOfModules(rRows), id))
        {
            return false;
        }
        if (usable)
        {
            rRows.lookup[id] = {rRow.duplicateId, static_cast<UINT32>(start)};
        }
    }
    return true;
}

/// Parses a row.
/// @param pRows     the table's rows, all of them or one
/// @param rPosition start of the row; behind it on return
/// @param isModule  the row is one of the symbol table
/// @param id        of the row, for files that do not store it
/// @return false if the row is not wholly there
bool ParameterFileSymbolTable::ReadRow(Row& rRow, const BYTE* pRows, UINT64 length, UINT64& rPosition, bool isModule,
                                       UINT32 id)
{
    constexpr UINT32 NameSize = 32;
    const bool       named    = m_version < BinaryFileFormat::StructSymbolsVersion;
    const auto       read     = [&](auto& rValue)
    { return ParameterUtils::ReadField(rValue, pRows, length, rPosition, m_alignment, m_pLog); };

    VersionUnion moduleVersion;
    UINT64       nameHash = 0;
    UINT64       reserved = 0;
    UINT32       modeId   = BinaryFileFormat::NoMode;

    rRow    = {};
    rRow.id = id;
    if (named && !read(rRow.id))
    {
        return false;
    }
    if (isModule)
    {
        if (named)
        {
            ParameterUtils::ReadText(pRows, length, rPosition, NameSize, m_alignment);
        }
        const bool hasReserved = m_version < BinaryFileFormat::AlignedEndVersion && m_alignment == 1;
        if ((!named && !read(nameHash)) || !read(moduleVersion.Value) || (hasReserved && !read(reserved)) ||
            !read(modeId))
        {
            return false;
        }
    }
    if (!read(rRow.offset) || !read(rRow.size))
    {
        return false;
    }
    rRow.duplicateId = rRow.id;
    if (m_version > BinaryFileFormat::AlignedEndVersion && !read(rRow.duplicateId))
    {
        return false;
    }

    const UINT32 count = isModule ? Count() : DTCount();
    rRow.isModule      = isModule && modeId != BinaryFileFormat::NoMode;
    rRow.isSilent      = rRow.duplicateId <= count;
    if (rRow.duplicateId > count)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                isModule ? "Invalid DuplicateID value %u, should be less than module table count: %u\n"
                                         : "Invalid DuplicateID value %u, should be less than data table count: %u\n",
                                rRow.duplicateId, count);
    }
    if (rRow.isModule)
    {
        rRow.pModule  = std::make_unique<ModuleData>(nameHash, rRow.id, rRow.duplicateId, moduleVersion, modeId,
                                                    m_pModeTable, m_pSetManager, this, m_pLog);
        rRow.isSilent = rRow.isSilent && rRow.pModule->HasMode();
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

bool ParameterFileSymbolTable::AreClaimsPlausible() const
{
    if (m_pFile == nullptr)
    {
        return true;  // nothing is fetched
    }
    UINT64 claimed = 0;
    for (const Row& rRow : m_symbols.resident)
    {
        claimed += rRow.size;
    }
    if (claimed > ClaimBase + ClaimPerByte * m_length)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "Symbol table entries claim %llu bytes of a file of %llu bytes\n", claimed, m_length);
        return false;
    }
    return true;
}
