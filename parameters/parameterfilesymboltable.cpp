#include "parameters/parameterfilesymboltable.h"

#include <string>
#include <vector>

#include "parameters/parameterlogging.h"

ParameterFileSymbolTable::ParameterFileSymbolTable(ParameterSetManager* pSetManager, const IParameterLoggingAPI* pLog,
                                                   UINT32 alignment, const VersionUnion& rVersion)
    : m_pSetManager(pSetManager), m_pLog(pLog), m_alignment(alignment), m_version(rVersion)
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
    const bool   symbolRow = IsOfModules(rRows);
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
    auto pElement      = std::make_unique<ParameterDefinitionElement>();
    pElement->NameHash = nameHash;
    auto& rInfo        = pElement->Info.emplace();
    rInfo.Type         = ParameterDefinitionType_Structure;
    rInfo.ID           = pStructure->StructureID;
    rInfo.MaxCount     = 1;
    rInfo.Structure    = pStructure;
    return pElement;
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
