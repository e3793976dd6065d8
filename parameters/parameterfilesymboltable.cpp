#include "parameters/parameterfilesymboltable.h"

#include <string>
#include <vector>

#include "parameters/parameterlogging.h"

ParameterFileSymbolTable::ParameterFileSymbolTable(ParameterSetManager* pSetManager, const IParameterLoggingAPI* pLog,
                                                   UINT32 alignment, const VersionUnion& rVersion)
    : m_pSetManager(pSetManager), m_pLog(pLog), m_alignment(alignment), m_version(rVersion),
      m_hasRecordSizes(rVersion >= BinaryFileFormat::StructSymbolsVersion),
      m_hasArrayCounts(rVersion >= BinaryFileFormat::MultiModeTableVersion)
{
}

ParameterFileSymbolTable::~ParameterFileSymbolTable()
{
    if (m_sharedObjects.Count() > 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "%d DupInfo object were not released\n",
                                static_cast<INT32>(m_sharedObjects.Count()));
    }
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
    const Row* const  pRow   = !rRows.resident.empty() ? &rRows.resident[id] : nullptr;
    const BYTE* const pBlock = (pRow != nullptr) ? BlockInMemory(*pRow) : nullptr;
    if (m_pFile != nullptr && (pBlock == nullptr || pRow->size == 0 || !pRow->isSilent))
    {
        return FindInFile(rEntry, rRows, id, isModule);
    }
    if (pRow == nullptr)
    {
        return false;
    }
    if (pBlock == nullptr && pRow->size > 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Find: data of entry ID %d lies outside of the file\n",
                                id);
        return false;
    }
    // A load from a file costs the same, in memory or not.
    if (m_pFile != nullptr && !isModule && !rEntry.ChargeWork(pRow->size))
    {
        return false;
    }
    rEntry.ID          = pRow->id;
    rEntry.DuplicateID = pRow->duplicateId;
    rEntry.DataSize    = pRow->size;
    rEntry.IsModule    = m_pFile != nullptr && pRow->isModule;
    rEntry.Data        = pBlock;
    return true;
}

/// @return null if nothing is in memory, or if the block reaches beyond the file
const BYTE* ParameterFileSymbolTable::BlockInMemory(const Row& rRow) const
{
    const UINT64 offset  = static_cast<UINT64>(m_data.Offset) + rRow.offset;
    const bool   isThere = m_pBuffer != nullptr && offset <= m_length && rRow.size <= m_length - offset;
    return isThere ? m_pBuffer + offset : nullptr;
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
    const bool   symbolRow = IsOfModules(rRows);
    const UINT32 rowSize   = symbolRow ? BinaryFileFormat::GetSymbolEntrySize(m_version)
                                       : BinaryFileFormat::GetDataTableEntrySize(m_version);
    BYTE         bytes[MaxRowSize];
    UINT64       filePosition = rRows.lookup[id].Position;
    UINT64       rowPosition  = 0;
    Row          row;
    rEntry.Init(this);
    if (!m_pFile->Read(bytes, rRows.section.Offset, filePosition, rowSize, 1) ||
        !ReadRow(row, bytes, rowSize, rowPosition, symbolRow, id))
    {
        return false;
    }
    rEntry.ID          = row.id;
    rEntry.DuplicateID = row.duplicateId;
    rEntry.DataSize    = row.size;
    rEntry.IsModule    = row.isModule;
    if (row.size == 0)
    {
        return true;
    }
    if (!isModule && !rEntry.ChargeWork(row.size))
    {
        return false;
    }
    rEntry.OwnedData = m_pFile->Read(static_cast<UINT64>(m_data.Offset) + row.offset, row.size);
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

std::optional<ParameterDefinitionElement> ParameterFileSymbolTable::BuildModuleElement(UINT64 nameHash) const
{
    ParameterDefinitionStructure* pStructure = FindModuleStructure(nameHash);
    if (pStructure == nullptr)
    {
        return std::nullopt;
    }
    ParameterDefinitionElementInfo info;
    info.Type      = ParameterDefinitionType_Structure;
    info.ID        = pStructure->StructureID;
    info.MaxCount  = 1;
    info.Structure = pStructure;
    return std::optional<ParameterDefinitionElement>(std::in_place, nameHash, info);
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
                                static_cast<UINT32>(rRows.lookup.size()), static_cast<VOID*>(&m_sharedObjects),
                                static_cast<const VOID*>(rRows.lookup.data()), rSite.location);
        return nullptr;
    }
    const UINT32 slot = rRows.lookup[id].Dup;
    return (slot != 0) ? m_sharedObjects.Get({&rRows, slot, rSite, count}) : nullptr;
}

bool ParameterFileSymbolTable::SetDupObject(bool isModule, UINT32 id, VOID* pObject, const ReadingSite& rSite,
                                            UINT32 count)
{
    const Rows&  rRows   = RowsOf(isModule);
    const bool   isKnown = id < rRows.lookup.size();
    const UINT32 slot    = isKnown ? rRows.lookup[id].Dup : 0;
    if (isKnown && slot == 0)
    {
        return false;
    }
    if (!isKnown || pObject == nullptr)
    {
        const std::string slotText = isKnown ? ", EntryLookup[id].Dup: " + std::to_string(slot) : "";
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "SetDupObject called with invalid values, This: %p, IsModule: %d, ID: %u, Obj: %p, "
                                "DupCount: %u, LookupCnt: %u, DupEntries: %p, EntryLookup: %p%s, Loc: %s:%d\n",
                                static_cast<VOID*>(this), isModule ? 1 : 0, id, pObject, rRows.dupCount,
                                static_cast<UINT32>(rRows.lookup.size()), static_cast<VOID*>(&m_sharedObjects),
                                static_cast<const VOID*>(rRows.lookup.data()), slotText.c_str(), rSite.pRecord->pName,
                                rSite.location);
        return false;
    }
    return m_sharedObjects.Set({&rRows, slot, rSite, count}, pObject);
}

bool ParameterFileSymbolTable::ReleaseDupObject(VOID* pObject)
{
    return pObject != nullptr && m_sharedObjects.Release(pObject);
}

VOID ParameterFileSymbolTable::FreeEntryData()
{
    for (Rows* pRows : {&m_symbols, &m_dataTable})
    {
        std::vector<Row>().swap(pRows->resident);
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
