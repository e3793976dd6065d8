#include "parameters/parameterfilesymboltable.h"

#include <algorithm>
#include <functional>

#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"

namespace
{

// What all modules together may claim as their data. Modules with the same data claim the same bytes each, so that real
// files claim a multiple of their size.
constexpr UINT64 ClaimBase    = 1024ULL * 1024 * 1024;
constexpr UINT64 ClaimPerByte = 64;

}  // namespace

ParameterFileSymbolTable::ParameterFileSymbolTable(ParameterSetManager* pSetManager, const IParameterLoggingAPI* pLog,
                                                   UINT32 alignment, const VersionUnion& rVersion)
    : m_pSetManager(pSetManager), m_pLog(pLog), m_alignment(alignment), m_version(rVersion)
{
}

ParameterFileSymbolTable::~ParameterFileSymbolTable()
{
    const auto alive = std::count_if(m_dupEntries.begin(), m_dupEntries.end(),
                                     [](const auto& rEntry) { return rEntry.second.Object != nullptr; });
    if (alive > 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "%d DupInfo object were not released\n",
                                static_cast<INT32>(alive));
    }
}

bool ParameterFileSymbolTable::Load(const BYTE* pBuffer, UINT64 length, std::shared_ptr<ParameterBinaryFile> pFile,
                                    const BinaryFileSections& rSections, IModeTable* pModeTable, bool readDefinitions)
{
    m_pFile      = std::move(pFile);
    m_pBuffer    = (m_pFile == nullptr) ? pBuffer : nullptr;
    m_length     = (m_pFile == nullptr) ? length : m_pFile->Length();
    m_data       = rSections.Data;
    m_pModeTable = pModeTable;
    m_fileAllowance.emplace(m_length, m_pLog);

    if (!CountEntries(rSections) || !AllocateEntries(rSections))
    {
        return false;
    }
    if (rSections.Definitions.Size != 0 && !ReadDefinitions(rSections.Definitions, readDefinitions))
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Failed to read definition table from binary file\n");
        return false;
    }
    if (!ReadTable(m_symbols, true))
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Failed to read symbol table from binary file\n");
        return false;
    }
    if (m_pDataRows == &m_dataTable && !ReadTable(m_dataTable, false))
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Failed to read data table from binary file\n");
        return false;
    }
    return AreClaimsPlausible();
}

bool ParameterFileSymbolTable::CountEntries(const BinaryFileSections& rSections)
{
    const UINT32 symbolSize = BinaryFileFormat::GetSymbolEntrySize(m_version);
    m_symbols.section       = rSections.Symbols;
    m_symbols.count         = m_symbols.section.Size / symbolSize;
    if (m_symbols.section.Size % symbolSize != 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Invalid symbol table size: %d, expected: %d\n",
                                m_symbols.section.Size, m_symbols.count * symbolSize);
        return false;
    }

    m_dataTable.section = rSections.DataTable;
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
    m_dataTable.count = m_dataTable.section.Size / dataSize;
    m_pDataRows       = &m_dataTable;
    if (m_dataTable.section.Size % dataSize != 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Invalid data table size: %d, expected: %d\n",
                                m_dataTable.section.Size, m_dataTable.count * dataSize);
        return false;
    }
    return true;
}

bool ParameterFileSymbolTable::AllocateEntries(const BinaryFileSections& rSections)
{
    // Counts come from section sizes, so a section that the file cannot hold must not be believed here.
    if (!IsInSource(rSections.Symbols))
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "Failed to read symbol table buffer (offset: %d, size: %d) from binary file\n",
                                rSections.Symbols.Offset, rSections.Symbols.Size);
        return false;
    }
    if (m_pDataRows == &m_dataTable && !IsInSource(rSections.DataTable))
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "Failed to read data table buffer (offset: %d, size: %d) from binary file\n",
                                rSections.DataTable.Offset, rSections.DataTable.Size);
        return false;
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

bool ParameterFileSymbolTable::ReadDefinitions(const SectionInfo& rSection, bool keep)
{
    TuningBlock       pBlock;
    const BYTE* const pSection = SectionBytes(rSection, pBlock);
    if (pSection == nullptr)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "Failed to read definition table buffer (offset: %d, size: %d) from binary file\n",
                                rSection.Offset, rSection.Size);
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

bool ParameterFileSymbolTable::ReadTable(Rows& rRows, bool isModule)
{
    if (rRows.section.Size == 0)
    {
        return true;
    }
    TuningBlock       pBlock;
    const BYTE* const pRows = SectionBytes(rRows.section, pBlock);
    if (pRows == nullptr)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                isModule
                                    ? "Failed to read symbol table buffer (offset: %d, size: %d) from binary file\n"
                                    : "Failed to read data table buffer (offset: %d, size: %d) from binary file\n",
                                rRows.section.Offset, rRows.section.Size);
        return false;
    }
    if (!ParseTable(rRows, pRows, rRows.section.Size, isModule))
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

bool ParameterFileSymbolTable::ParseTable(Rows& rRows, const BYTE* pRows, UINT64 length, bool isModule)
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
        if (!rEntry.LoadRow(pRows, length, position, m_pModeTable, isModule, id))
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

bool ParameterFileSymbolTable::Find(ParameterFileSymbolTableEntry& rEntry, UINT32 id, bool isModule)
{
    rEntry.Init(this);
    const Rows& rRows = RowsOf(isModule);
    if (id == 0 || id > rRows.count)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Find: Symbol table entry ID %d out of range 1 - %d\n",
                                id, rRows.count);
        return false;
    }
    if (m_pFile != nullptr)
    {
        return FindInFile(rEntry, rRows, id, isModule);
    }
    if (rRows.entries.empty())
    {
        return false;
    }
    const ParameterFileSymbolTableEntry& rResident = rRows.entries[id];
    if (rResident.Data == nullptr && rResident.DataSize > 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Find: data of entry ID %d lies outside of the file\n",
                                id);
        return false;
    }
    rEntry.ShareBlock(rResident);
    return true;
}

bool ParameterFileSymbolTable::FindInFile(ParameterFileSymbolTableEntry& rEntry, const Rows& rRows, UINT32 id,
                                          bool isModule)
{
    if (rRows.lookup.empty())
    {
        return false;
    }
    m_pFile->Reference(1);
    const bool found = FetchEntry(rEntry, rRows, id, isModule);
    m_pFile->Reference(-1);
    if (!found)
    {
        rEntry.Init(this);
    }
    return found;
}

bool ParameterFileSymbolTable::FetchEntry(ParameterFileSymbolTableEntry& rEntry, const Rows& rRows, UINT32 id,
                                          bool isModule)
{
    const bool   symbolRow = &rRows == &m_symbols;
    const UINT32 rowSize   = symbolRow ? BinaryFileFormat::GetSymbolEntrySize(m_version)
                                       : BinaryFileFormat::GetDataTableEntrySize(m_version);
    BYTE         row[MaxRowSize];
    UINT64       filePosition = rRows.lookup[id].Position;
    UINT64       rowPosition  = 0;
    rEntry.Init(this);
    if (!m_pFile->Read(row, rRows.section.Offset, filePosition, rowSize, 1) ||
        !rEntry.LoadRow(row, rowSize, rowPosition, m_pModeTable, symbolRow, id))
    {
        return false;
    }
    if (rEntry.DataSize == 0)
    {
        return true;
    }
    if (!isModule && !rEntry.ChargeWork(rEntry.DataSize))
    {
        return false;
    }
    rEntry.OwnedData = m_pFile->Read(static_cast<UINT64>(m_data.Offset) + rEntry.DataOffset, rEntry.DataSize);
    rEntry.Data      = rEntry.OwnedData.get();
    return rEntry.Data != nullptr;
}

bool ParameterFileSymbolTable::ReadPointerEntry(ParameterFileSymbolTableEntry& rEntry,
                                                ParameterFileSymbolTableEntry* pHolder, UINT32 limit)
{
    UINT32 id    = 0;
    bool   found = false;
    if (pHolder->ReadLimited(id, limit) && id != 0)
    {
        rEntry.Allowance = pHolder->Allowance;
        found            = rEntry.ChargeWork(LoadAllowance::VisitCharge) && Find(rEntry, id, false);
        if (!found)
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "ReadPointerEntry: Unable to find pointer entry ID %u in Symbol table%d\n", id,
                                    (m_pDataRows == &m_dataTable) ? 1 : 0);
        }
    }
    if (!found)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "ReadPointerEntry: Unable to read pointer entry from Symbol table\n");
    }
    return found;
}

std::unique_ptr<ParameterDefinitionElement> ParameterFileSymbolTable::BuildModuleElement(UINT64 nameHash) const
{
    ParameterDefinitionStructure* pStructure = FindModuleStructure(nameHash);
    if (pStructure == nullptr)
    {
        return nullptr;
    }
    auto pElement             = std::make_unique<ParameterDefinitionElement>();
    pElement->NameHash        = nameHash;
    pElement->Info            = std::make_unique<ParameterDefinitionElementInfo>();
    pElement->Info->Type      = ParameterDefinitionType_Structure;
    pElement->Info->ID        = pStructure->StructureID;
    pElement->Info->MaxCount  = 1;
    pElement->Info->Structure = pStructure;
    return pElement;
}

size_t ParameterFileSymbolTable::DupKeyHash::operator()(const DupKey& rKey) const
{
    size_t seed = std::hash<const VOID*>()(rKey.pRows);
    seed        = seed * 31 + std::hash<const VOID*>()(rKey.site.pRecord);
    seed        = seed * 31 + rKey.slot;
    seed        = seed * 31 + static_cast<UINT32>(rKey.site.location);
    return seed * 31 + rKey.count;
}

VOID* ParameterFileSymbolTable::GetDupObject(bool isModule, UINT32 id, const ReadingSite& rSite, UINT32 count)
{
    const Rows& rRows = RowsOf(isModule);
    if (id >= rRows.lookup.size())
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "GetDupObject called with invalid values, This: %p, IsModule: %d, ID: %u, DupCount: "
                                "%u, LookupCnt: %u, DupEntries: %p, EntryLookup: %p, Loc: %d\n",
                                static_cast<VOID*>(this), isModule ? 1 : 0, id, rRows.dupCount,
                                static_cast<UINT32>(rRows.lookup.size()), static_cast<VOID*>(&m_dupEntries),
                                static_cast<const VOID*>(rRows.lookup.data()), rSite.location);
        return nullptr;
    }
    const UINT32 slot = rRows.lookup[id].Dup;
    if (slot == 0)
    {
        return nullptr;
    }
    std::shared_lock<std::shared_mutex> lock(m_dupInfoMutex);
    const auto                          entry = m_dupEntries.find(DupKey{&rRows, slot, rSite, count});
    if (entry == m_dupEntries.end() || entry->second.Object == nullptr)
    {
        return nullptr;
    }
    ++entry->second.RefCount;
    return entry->second.Object;
}

bool ParameterFileSymbolTable::SetDupObject(bool isModule, UINT32 id, VOID* pObject, const ReadingSite& rSite,
                                            UINT32 count)
{
    const Rows& rRows = RowsOf(isModule);
    if (id >= rRows.lookup.size())
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "SetDupObject called with invalid values, This: %p, IsModule: %d, ID: %u, Obj: %p, "
                                "DupCount: %u, LookupCnt: %u, DupEntries: %p, EntryLookup: %p, Loc: %s:%d\n",
                                static_cast<VOID*>(this), isModule ? 1 : 0, id, pObject, rRows.dupCount,
                                static_cast<UINT32>(rRows.lookup.size()), static_cast<VOID*>(&m_dupEntries),
                                static_cast<const VOID*>(rRows.lookup.data()), rSite.pRecord->pName, rSite.location);
        return false;
    }
    const UINT32 slot = rRows.lookup[id].Dup;
    if (slot == 0)
    {
        return false;
    }
    if (pObject == nullptr)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "SetDupObject called with invalid values, This: %p, IsModule: %d, ID: %u, Obj: %p, "
                                "DupCount: %u, LookupCnt: %u, DupEntries: %p, EntryLookup: %p, EntryLookup[id].Dup: "
                                "%u, Loc: %s:%d\n",
                                static_cast<VOID*>(this), isModule ? 1 : 0, id, pObject, rRows.dupCount,
                                static_cast<UINT32>(rRows.lookup.size()), static_cast<VOID*>(&m_dupEntries),
                                static_cast<const VOID*>(rRows.lookup.data()), slot, rSite.pRecord->pName,
                                rSite.location);
        return false;
    }

    std::unique_lock<std::shared_mutex> lock(m_dupInfoMutex);
    DupObjInfo&                         rInfo = m_dupEntries[DupKey{&rRows, slot, rSite, count}];
    if (rInfo.Object != nullptr)
    {
        return false;
    }
    if (rInfo.RefCount.load() > 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "SetDuplicateObject called on existing object with nullptr Object and RefCount %u: "
                                "ID: %d, DupID: %d, Loc: %s:%d, ignored\n",
                                rInfo.RefCount.load(), id, slot, rSite.pRecord->pName, rSite.location);
    }
    rInfo.Object = pObject;
    ++rInfo.RefCount;
    m_dupInfoMap[pObject] = &rInfo;
    return true;
}

bool ParameterFileSymbolTable::ReleaseDupObject(VOID* pObject)
{
    if (pObject == nullptr)
    {
        return false;
    }
    std::unique_lock<std::shared_mutex> lock(m_dupInfoMutex);
    const auto                          entry = m_dupInfoMap.find(pObject);
    if (entry == m_dupInfoMap.end())
    {
        return true;
    }
    if (--entry->second->RefCount > 0)
    {
        return false;
    }
    entry->second->Object = nullptr;
    m_dupInfoMap.erase(entry);
    return true;
}

VOID ParameterFileSymbolTable::FreeEntryData()
{
    for (Rows* pRows : {&m_symbols, &m_dataTable})
    {
        std::vector<ParameterFileSymbolTableEntry>().swap(pRows->entries);
    }
    m_pBuffer = nullptr;
}

VOID ParameterFileSymbolTable::FreeLookupData()
{
    for (Rows* pRows : {&m_symbols, &m_dataTable})
    {
        std::vector<EntryData>().swap(pRows->lookup);
    }
}

VOID ParameterFileSymbolTable::ClearDefinitions(bool all)
{
    if (all)
    {
        m_definitions = ParameterDefinitions();
    }
    else
    {
        m_definitions.Prune();
    }
    m_fileAllowance.reset();
}

INT32 ParameterFileSymbolTable::FileReference(INT32 adjust)
{
    if (m_pFile == nullptr)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "FileReference called with null File object, Adjust: %d\n", adjust);
        return 0;
    }
    return m_pFile->Reference(adjust);
}

bool ParameterFileSymbolTable::IsFileLost() const
{
    return m_pFile != nullptr && m_pFile->IsLost();
}

bool ParameterFileSymbolTable::HoldFile()
{
    if (m_pFile == nullptr || m_pFile->IsModified())
    {
        return false;
    }
    FileReference(1);
    if (m_pFile->IsLost())
    {
        FileReference(-1);
        return false;
    }
    return true;
}

bool ParameterFileSymbolTable::CanRead()
{
    if (m_pFile == nullptr)
    {
        return true;
    }
    const bool isHeld = HoldFile();
    if (isHeld)
    {
        FileReference(-1);
    }
    return isHeld;
}

bool ParameterFileSymbolTable::IsFileUnchanged() const
{
    return m_pFile == nullptr || m_pFile->IsUnchanged();
}

bool ParameterFileSymbolTable::IsInSource(const SectionInfo& rSection) const
{
    return static_cast<UINT64>(rSection.Offset) + rSection.Size <= m_length;
}

const BYTE* ParameterFileSymbolTable::SectionBytes(const SectionInfo& rSection, TuningBlock& rBlock) const
{
    if (m_pFile != nullptr)
    {
        rBlock = m_pFile->Read(rSection.Offset, rSection.Size);
        return rBlock.get();
    }
    return (m_pBuffer != nullptr && IsInSource(rSection)) ? m_pBuffer + rSection.Offset : nullptr;
}
