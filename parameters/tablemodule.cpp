#include "parameters/tablemodule.h"

#include <atomic>

#include "parameters/parameterfilesymboltable.h"
#include "parameters/parameterlogging.h"
#include "parameters/parametersetmanager.h"
#include "parameters/recordloader.h"
#include "parameters/recordtext.h"
#include "parameters/tuningmemory.h"
#include "schema/modules.h"

namespace
{

/// The low bits of SymbolTableID are the ID of the entry that holds the data; the rest counts changes of values.
constexpr UINT32 EntryIDMask     = 0xFFFFFF;
constexpr UINT32 OneChange       = 0x1000000;
constexpr UINT32 LastChangeCount = 0xFF000000;

static_assert(alignof(TableModule) <= 8, "tuning memory is aligned to 8 bytes");

/// Keeps a table's file open, so that a load sees one state of it.
class OpenFile
{
public:
    explicit OpenFile(ParameterFileSymbolTable& rTable) : m_rTable(rTable), m_isHeld(rTable.HoldFile())
    {
    }

    ~OpenFile()
    {
        if (m_isHeld)
        {
            m_rTable.FileReference(-1);
        }
    }

    OpenFile(const OpenFile&)            = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool CanRead() const
    {
        return m_isHeld || m_rTable.File() == nullptr;
    }

private:
    ParameterFileSymbolTable& m_rTable;
    const bool                m_isHeld;
};

/// The last stamp that was given to a content, of all stores: a store made in the place of another has its addresses
/// and its IDs again.
std::atomic<UINT64> g_lastStamp{0};

}  // namespace

std::unique_ptr<TableModule> TableModule::Make(const tuning::ModuleDescription& rDescription, ModuleData* pData)
{
    const size_t recordSize = (rDescription.pRecord != nullptr) ? rDescription.pRecord->size : sizeof(BareModuleType);
    const RecordSpace space{TableModuleRecordDistance - sizeof(TableModule) + recordSize};
    return std::unique_ptr<TableModule>(new (space) TableModule(rDescription, pData));
}

TableModule::TableModule(const tuning::ModuleDescription& rDescription, ModuleData* pData)
    : ParameterModule(rDescription.pName, rDescription.major, rDescription.minor, rDescription.patch, pData),
      m_rDescription(rDescription)
{
}

TableModule::~TableModule()
{
    TableModule::UnloadModule();
}

VOID* TableModule::operator new(size_t size, RecordSpace space) noexcept
{
    return AllocateTuningMemory(size + space.size);
}

VOID TableModule::operator delete(VOID* pMemory, RecordSpace)
{
    FreeTuningMemory(pMemory);
}

VOID TableModule::operator delete(VOID* pMemory)
{
    FreeTuningMemory(pMemory);
}

VOID* TableModule::Record()
{
    return reinterpret_cast<BYTE*>(this) + TableModuleRecordDistance;
}

TableModule* TableModule::FromRecord(VOID* pRecord)
{
    return (pRecord != nullptr)
               ? reinterpret_cast<TableModule*>(static_cast<BYTE*>(pRecord) - TableModuleRecordDistance)
               : nullptr;
}

VOID TableModule::RenewStamp()
{
    m_contentStamp.store(g_lastStamp.fetch_add(1, std::memory_order_relaxed) + 1, std::memory_order_release);
}

UINT32& TableModule::SymbolTableID()
{
    return *static_cast<UINT32*>(Record());
}

std::string TableModule::ClassName() const
{
    return (m_rDescription.pRecord != nullptr) ? std::string(m_rDescription.pRecord->pName) + "Class"
                                               : std::string(m_rDescription.pName) + "TypeClass";
}

ParameterModule* TableModule::Create(ModuleData* pData, DefaultModule* pDefaultModule) const
{
    if (pData->Version != Version)
    {
        ParameterLogging::Write(pData->SetManager, ParameterLogging::Error,
                                "Unable to create %s, binary version (%lld) does not match source version (%lld)\n",
                                ClassName().c_str(), static_cast<INT64>(pData->Version.Value),
                                static_cast<INT64>(Version.Value));
        return nullptr;
    }
    if (pData->NameHash != NameHash)
    {
        ParameterLogging::Write(
            pData->SetManager, ParameterLogging::Error,
            "Unable to create %s, binary name hash (0x%016llx) does not match source name hash (0x%016llx)\n",
            ClassName().c_str(), pData->NameHash, NameHash);
        return nullptr;
    }

    // Modes whose data is identical share one instance, which belongs to the first of them.
    const UINT32 id = (pData->DuplicateID != 0) ? pData->DuplicateID : pData->ID;
    if (ParameterModule* pShared = pDefaultModule->Find(id))
    {
        return pShared;
    }
    std::unique_ptr<TableModule> pModule = Make(m_rDescription, pData);
    if (pModule == nullptr)
    {
        return nullptr;
    }
    pModule->SymbolTableID() = id;
    return pDefaultModule->AddModule(std::move(pModule));
}

bool TableModule::LoadModule(ParameterFileSymbolTable* pTable)
{
    // Frames find the module loaded and need no lock for it: the mark is set last and cleared first.
    if (IsReady())
    {
        return true;
    }
    const std::lock_guard<ParameterMutex> lock(m_mutex);
    if (IsLoaded())
    {
        return true;
    }
    const bool isFound = m_rDescription.pRecord == nullptr || LoadRecord(*pTable);
    RaiseModified();
    RenewStamp();
    SetLoaded(isFound);
    IsLossNoted = IsLossNoted && !isFound;
    return isFound;
}

bool TableModule::LoadRecord(ParameterFileSymbolTable& rTable)
{
    const UINT32                  id = SymbolTableID() & EntryIDMask;
    const OpenFile                file(rTable);
    ParameterFileSymbolTableEntry entry;
    const bool                    isLost = !file.CanRead();
    const bool                    found  = !isLost && rTable.Find(entry, id, true);
    if (!found)
    {
        ParameterLogging::Write(rTable.Log(), ParameterLogging::Error,
                                "%s::LoadModule Failed to find module ID (%d) in Symbol Table\n", ClassName().c_str(),
                                id);
    }
    if (isLost)
    {
        return false;
    }
    // The load runs without a find as well: the empty entry leaves a record of zeros instead of one from former days.
    RecordLoader::LoadModule(*m_rDescription.pRecord, Record(), entry, NameHash);
    const bool isWhole = found && (rTable.IsInMemory() || rTable.IsFileUnchanged());
    if (!isWhole)
    {
        RecordLoader::Unload(*m_rDescription.pRecord, Record(), &rTable);
    }
    return isWhole;
}

VOID TableModule::UnloadModule()
{
    const std::lock_guard<ParameterMutex> lock(m_mutex);
    if (!IsLoaded())
    {
        return;
    }
    SetLoaded(false);
    if (Data->SymbolTable == nullptr)
    {
        ParameterLogging::Write(Data->SetManager, ParameterLogging::Warning,
                                "UnloadModule %s called with nullptr Data->SymbolTable object\n", GetModuleName());
    }
    if (m_rDescription.pRecord != nullptr)
    {
        RecordLoader::Unload(*m_rDescription.pRecord, Record(), Data->SymbolTable);
    }
}

bool TableModule::HasText() const
{
    return m_rDescription.pRecord != nullptr && IsLoaded();
}

bool TableModule::GetValue(const CHAR* pPath, CHAR* pValue, UINT32 size)
{
    return HasText() && pValue != nullptr && size > 0 &&
           RecordText::GetValue(*m_rDescription.pRecord, Record(), pPath, pValue, size);
}

bool TableModule::SetValue(const CHAR* pPath, const CHAR* pValue)
{
    if (!HasText() || !RecordText::SetValue(*m_rDescription.pRecord, Record(), pPath, pValue))
    {
        return false;
    }
    // Behind its top the count goes on with 1: 0 is for a record as the file has it.
    UINT32&      rID = SymbolTableID();
    const UINT32 old = (rID >= LastChangeCount) ? (rID & EntryIDMask) : rID;
    std::atomic_ref(rID).store(old + OneChange, std::memory_order_release);
    RaiseModified();
    RenewStamp();
    return true;
}

const VOID* TableModule::PlaceInArray(const CHAR* pPath)
{
    const VOID* pPlace = HasText() ? RecordText::PlaceOf(*m_rDescription.pRecord, Record(), pPath) : nullptr;
    return (pPlace != nullptr && RecordText::ReachesInArray(*m_rDescription.pRecord, Record(), pPlace)) ? pPlace
                                                                                                        : nullptr;
}

VOID TableModule::NoteSharedEdit(const VOID* pPlace)
{
    // The record stays as it is meanwhile: a frame may be about to load it, or to evict it.
    const std::lock_guard<ParameterMutex> lock(m_mutex);
    if (HasText() && RecordText::ReachesInArray(*m_rDescription.pRecord, Record(), pPlace))
    {
        RenewStamp();
    }
}

bool TableModule::GetInfo(const CHAR* pPath, PList<ParameterParserInfo>& rList)
{
    return HasText() && RecordText::GetInfo(*m_rDescription.pRecord, Record(), pPath, rList);
}
