#include "parameters/modecache.h"

#include <algorithm>
#include <mutex>

#include "parameters/branchwalk.h"
#include "parameters/parameterfilesymboltable.h"
#include "parameters/parameterstore.h"

namespace
{

/// Modes that stay loaded at least, however small the cache.
constexpr UINT32 MinActiveModes = 5;

/// Default and Sensor modes are always loaded and need no place in the list of active modes.
bool IsCachedLevel(const ModeEntry* pMode)
{
    return pMode->Mode.Mode >= static_cast<UINT16>(ModeType::Usecase);
}

/// Whether all modules of a mode are in memory, or can be read. A mode counts as loaded also when a module that it
/// shares has gone with the module's own mode.
bool IsReadable(const ModeEntry& rMode)
{
    return std::all_of(rMode.ModuleMap.begin(), rMode.ModuleMap.end(),
                       [](const auto& rpReference)
                       {
                           ParameterModule& rModule = *rpReference->Module;
                           return rModule.IsLoaded() || rModule.Data->SymbolTable->CanRead();
                       });
}

}  // namespace

bool ModeCache::LoadMode(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pReason)
{
    if (m_rStore.GetContent().pSymbolTable == nullptr)
    {
        m_rStore.SetError("LoadMode called with no binary file loaded");
        return false;
    }
    if (!m_rStore.IsFileMode())
    {
        m_rStore.SetError("LoadMode is not valid in buffer mode");
        return false;
    }
    return LoadBranch(tableIndex, {pReason, pBranch, count});
}

bool ModeCache::LoadBranch(BYTE tableIndex, const Request& rRequest)
{
    if (!m_rStore.HasModeTable("LoadModeInternal", tableIndex))
    {
        return false;
    }
    ModeEntry* pRoot = m_rStore.GetContent().modeTables[tableIndex]->RootMode.Entry;
    if (pRoot == nullptr)
    {
        return false;
    }
    INT32      fileReferences = 0;
    bool       loaded         = LoadModules(pRoot, rRequest, fileReferences);
    BranchWalk walk(m_rStore, "LoadModeInternal", pRoot, rRequest.pBranch, rRequest.count);
    while (loaded && walk.Next())
    {
        loaded = LoadModules(walk.Mode(), rRequest, fileReferences);
    }
    if (fileReferences > 0)
    {
        m_rStore.GetContent().pSymbolTable->FileReference(-fileReferences);
    }
    return loaded && !walk.IsLost();
}

bool ModeCache::CanRead(BYTE tableIndex, const TuningMode* pBranch, UINT32 count)
{
    if (!m_rStore.IsFileMode() || tableIndex >= m_rStore.GetContent().modeTables.size())
    {
        return true;
    }
    ModeEntry* pRoot = m_rStore.GetContent().modeTables[tableIndex]->RootMode.Entry;
    if (pRoot == nullptr)
    {
        return true;
    }
    (VOID) LoadBranch(tableIndex, {nullptr, pBranch, count});
    BranchWalk walk(m_rStore, "CanRead", pRoot, pBranch, count);
    bool       isReadable = true;
    while (isReadable && walk.Next())
    {
        isReadable = IsReadable(*walk.Mode()->Target());
    }
    return isReadable;
}

bool ModeCache::UnloadMode(BYTE tableIndex, const TuningMode* pBranch, UINT32 count)
{
    // Text access counts on its module while it reads; so does nobody else.
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
    if (!m_rStore.IsFileMode())
    {
        m_rStore.SetError("UnloadMode is not valid in buffer mode");
        return false;
    }
    if (!m_rStore.HasModeTable("UnloadMode", tableIndex))
    {
        return false;
    }
    ModeEntry* pRoot = m_rStore.GetContent().modeTables[tableIndex]->RootMode.Entry;
    if (pRoot == nullptr)
    {
        m_rStore.SetError("UnloadMode root mode is nullptr");
        return false;
    }
    ModeEntry* pMode = BranchWalk(m_rStore, "UnloadMode", pRoot, pBranch, count).End();
    if (pMode != nullptr && !pMode->Target()->Preserve)
    {
        UnloadModules(pMode->Target(), pMode);
        m_rStore.ForgetLookups();
    }
    return pMode != nullptr;
}

bool ModeCache::LoadModules(ModeEntry* pMode, const Request& rRequest, INT32& rFileReferences)
{
    ModeEntry* pTarget = pMode->Target();
    const bool touch   = IsCachedLevel(pTarget) && pTarget->HasLocalModules();
    if (pTarget->Loaded)
    {
        TouchModes({&pTarget, touch ? 1U : 0U}, *pTarget->Table);
        return true;
    }

    TouchedModes touched;
    if (touch)
    {
        touched.push_back(pTarget);
    }
    const bool loaded = LoadTarget(pMode, rRequest, touched, rFileReferences);
    TouchModes(touched, *pTarget->Table);
    return loaded;
}

bool ModeCache::LoadTarget(ModeEntry* pMode, const Request& rRequest, TouchedModes& rTouched, INT32& rFileReferences)
{
    ModeEntry*                            pTarget = pMode->Target();
    const std::lock_guard<ParameterMutex> lock(pTarget->Mutex);
    if (pTarget->Loaded)
    {
        return true;  // another thread was first
    }
    // The file stays open until the whole branch is loaded.
    rFileReferences += m_rStore.GetContent().pSymbolTable->HoldFile() ? 1 : 0;
    if (!IsReadable(*pTarget))
    {
        rTouched.clear();  // what cannot be read pushes nothing out
        return false;
    }
    LogMove("L", rRequest, pMode, pTarget);
    pTarget->Loaded = LoadModuleMap(pTarget, rTouched);
    return pTarget->Loaded;
}

bool ModeCache::LoadModuleMap(ModeEntry* pTarget, TouchedModes& rTouched)
{
    for (const auto& rpReference : pTarget->ModuleMap)
    {
        ParameterModule* pModule = rpReference->Module;
        if (!pModule->LoadModule(pModule->Data->SymbolTable))
        {
            return false;
        }
        // A module shared with another mode is unloaded with that one, which therefore counts as used, too.
        ModeEntry* pOwnMode = pModule->Data->Mode->Entry;
        if (m_size > 0 && std::find(rTouched.begin(), rTouched.end(), pOwnMode) == rTouched.end())
        {
            rTouched.push_back(pOwnMode);
        }
    }
    return true;
}

VOID ModeCache::UnloadModules(ModeEntry* pTarget, const ModeEntry* pMode)
{
    const std::string prefix = TablePrefix(pTarget);
    {
        const std::lock_guard<ParameterMutex> lock(pTarget->Mutex);
        LogMove("Unl", {}, pMode, pTarget);
        pTarget->Loaded = false;
        for (const auto& rpReference : pTarget->ModuleMap)
        {
            ParameterModule* pModule = rpReference->Module;
            if (!pTarget->Owns(pModule))
            {
                continue;
            }
            const INT32 references = rpReference->RefCount.load();
            if (references > 0)
            {
                CHAR path[ModeEntry::MaxPathText];
                pModule->Data->GetModePath(path, sizeof(path));
                ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Warning,
                                        "%sUnloading referenced module %s, Mode: %s, Ref count: %u\n", prefix.c_str(),
                                        pModule->GetModuleName(), path, static_cast<UINT32>(references));
            }
            pModule->UnloadModule();
        }
    }
    const std::lock_guard<ParameterMutex> lock(pTarget->Table->ActModeMutex);
    DropReferences(pTarget, ModeEntry::Counts::All);
    pTarget->Table->Unlist(pTarget);
}

VOID ModeCache::DropReferences(ModeEntry* pUnloaded, ModeEntry::Counts counts)
{
    const UINT32 unreleased = pUnloaded->GetReferenceCount(counts);
    if (unreleased != 0)
    {
        CHAR path[ModeEntry::MaxPathText];
        pUnloaded->GetModePath(path, sizeof(path));
        ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Warning,
                                "%sUnloading mode with %u unreleased modules: %s\n", TablePrefix(pUnloaded).c_str(),
                                unreleased, path);
    }
    pUnloaded->ReleaseReferences(counts);
}

VOID ModeCache::NoteLoad(ModeEntry* pOwnMode)
{
    if (m_size > 0)
    {
        TouchModes({&pOwnMode, 1}, *pOwnMode->Table);
    }
}

VOID ModeCache::TouchModes(std::span<ModeEntry* const> touched, ParameterModeTable& rTable)
{
    for (ModeEntry* pMode : touched)
    {
        if (IsCachedLevel(pMode))
        {
            pMode->Table->Touch(pMode);
        }
    }
    EvictModes(rTable);
    // Shared modules can belong to modes of other tables.
    for (ModeEntry* pMode : touched)
    {
        if (pMode->Table != &rTable)
        {
            EvictModes(*pMode->Table);
        }
    }
}

VOID ModeCache::EvictModes(ParameterModeTable& rTable)
{
    // Frames come by many times and find nothing due nearly always. While the file is lost, what goes could not be read
    // again.
    if (!rTable.EvictionDue || m_rStore.GetContent().pSymbolTable->IsFileLost())
    {
        return;
    }
    const std::lock_guard<ParameterMutex> lock(rTable.ActModeMutex);
    const UINT32                          limit   = std::max(m_size, MinActiveModes);
    const PList<ModeEntry*>&              rActive = rTable.ActiveModes;
    rTable.EvictionDue                            = false;
    rTable.SortActiveModes();
    for (UINT32 index = 0; index < rActive.Count(); ++index)
    {
        rActive[index]->IsSurplus = (index >= limit);
    }
    for (UINT32 index = rActive.Count(); index > limit; --index)
    {
        ModeEntry* pMode       = rActive[index - 1];
        const bool isUsedAgain = pMode->LastUse != pMode->SortedUse;  // by somebody who may not have seen the mark
        if (!isUsedAgain && (pMode->Preserve || m_size == 0))
        {
            rTable.Unlist(pMode);
        }
        else if (isUsedAgain || (!pMode->IsActive() && !EvictMode(pMode)))
        {
            rTable.EvictionDue = true;  // at the next use of any mode
        }
    }
}

bool ModeCache::EvictMode(ModeEntry* pMode)
{
    // A mode that is being loaded is held for as long as the file takes, and nobody may wait for that here.
    const std::unique_lock<ParameterMutex> lock(pMode->Mutex, std::try_to_lock);
    if (!lock.owns_lock())
    {
        return false;
    }
    LogMove("Unl", {}, pMode, pMode);
    pMode->Table->Unlist(pMode);  // first, see Touch
    pMode->Loaded = false;
    bool isGone   = true;
    for (const auto& rpReference : pMode->ModuleMap)
    {
        if (pMode->Owns(rpReference->Module))
        {
            isGone = rpReference->Module->UnloadIfUnused(*rpReference) && isGone;
        }
    }
    if (isGone)
    {
        // A fetch may already count on a module of the mode's own again, which it then reads from the file.
        DropReferences(pMode, ModeEntry::Counts::OfOtherModes);
    }
    else
    {
        pMode->Table->List(pMode);
    }
    return isGone;
}

VOID ModeCache::LogMove(const CHAR* pMove, const Request& rRequest, const ModeEntry* pMode, const ModeEntry* pTarget)
{
    if (!m_rStore.Manager().LoggingEnabled(ParameterLogging::Debug))
    {
        return;
    }
    CHAR branchPath[ModeEntry::MaxPathText];
    CHAR path[ModeEntry::MaxPathText];
    m_rStore.GetPathFromModeBranch(rRequest.pBranch, rRequest.count, branchPath, sizeof(branchPath));
    pMode->GetModePath(path, sizeof(path));
    std::string shown(path);
    if (pTarget != pMode)
    {
        pTarget->GetModePath(path, sizeof(path));
        shown += std::string("->") + path;
    }
    ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Debug, "%s%soading modules (GetModule:%s:%s): %s\n",
                            TablePrefix(pTarget).c_str(), pMove,
                            (rRequest.pReason != nullptr) ? rRequest.pReason : "Unknown", branchPath, shown.c_str());
}

std::string ModeCache::TablePrefix(const ModeEntry* pMode) const
{
    return (m_rStore.GetContent().modeTables.size() > 1) ? "(" + pMode->Table->Name + "): " : std::string();
}
