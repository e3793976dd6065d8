/// Which module applies to a branch. All of this may run on any thread, and FetchModule runs many times per frame.
#include "parameters/parameterstore.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "parameters/branchwalk.h"
#include "parameters/lookupmemo.h"
#include "parameters/modepaths.h"
#include "parameters/parameterfilesymboltable.h"

namespace
{

bool CanNote(const TuningMode* pBranch, UINT32 count)
{
    return pBranch != nullptr && count <= LookupMemo::MaxSelectors;
}

/// @return what the calling thread has found before, null if it has to search
ParameterModule* FindKnown(const LookupMemo::Path& rPath, UINT64 nameHash)
{
    return CanNote(rPath.pBranch, rPath.count) ? LookupMemo::OfThread().Find(rPath, nameHash) : nullptr;
}

/// Serials are of one row for all stores: one that is made in the place of another must not find its answers.
std::atomic<UINT64> g_lastSerial{0};

/// How log lines name a lookup. @param pName null for one of all modules
std::string LookupText(const CHAR* pName)
{
    return (pName != nullptr) ? "GetModule(" + std::string(pName) + ")" : "GetModules()";
}

}  // namespace

bool ParameterStore::ValidateMode(const CHAR* pCaller, const TuningMode* pBranch, UINT32 index)
{
    constexpr UINT32 LastMode = static_cast<UINT32>(ModeType::EnumModeType_COUNT) - 1;

    CHAR         text[256];
    const UINT32 mode = static_cast<UINT32>(pBranch[index].mode);
    if (mode > LastMode)
    {
        std::snprintf(text, sizeof(text),
                      "%s Error: Invalid Mode value (%u) found in modeBranch[%u]. Expected range: %u to %u", pCaller,
                      mode, index, static_cast<UINT32>(ModeType::Default), LastMode);
        SetError(text);
        return false;
    }
    if (index > 0 && pBranch[index].mode == ModeType::Default)
    {
        std::snprintf(text, sizeof(text),
                      "%s Error: Default mode found in modeBranch at an index > 0 (%u). Index 0 must be Default, but "
                      "only index 0 may be Default",
                      pCaller, index);
        SetError(text);
        return false;
    }
    return true;
}

VOID ParameterStore::GetPathFromModeBranch(const TuningMode* pBranch, UINT32 count, CHAR* pText, size_t size)
{
    pText[0] = '\0';
    if (pBranch == nullptr)
    {
        return;
    }
    for (UINT32 index = 0; index < count && ValidateMode("GetPathFromModeBranch", pBranch, index); ++index)
    {
        if (!ModePaths::AppendItem(pText, size, static_cast<UINT32>(pBranch[index].mode), pBranch[index].subMode.value))
        {
            return;
        }
    }
}

ParameterModule* ParameterStore::FetchModule(BYTE tableIndex, const CHAR* pName, UINT64 nameHash,
                                             const TuningMode* pBranch, UINT32 count, ParameterModule* pPrevious)
{
    if (IsFileMode())  // where each reference is counted
    {
        return WalkToModule(tableIndex, pName, nameHash, pBranch, count, pPrevious, Hold::UntilReleased);
    }
    const UINT64     serial = m_serial.load(std::memory_order_acquire);
    ParameterModule* pKnown = FindKnown({serial, tableIndex, pBranch, count}, nameHash);
    if (pKnown == nullptr)
    {
        return SearchModule(tableIndex, pName, nameHash, pBranch, count, pPrevious, Hold::UntilReleased);
    }
    if (pPrevious != nullptr)
    {
        pPrevious->Release();
    }
    return pKnown;
}

ParameterModule* ParameterStore::KeepModule(BYTE tableIndex, const CHAR* pName, UINT64 nameHash,
                                            const TuningMode* pBranch, UINT32 count, LookupStamp* pStamp)
{
    const UINT64     serial = m_serial.load(std::memory_order_acquire);
    ParameterModule* pKnown = FindKnown({serial, tableIndex, pBranch, count}, nameHash);
    if (pKnown == nullptr)
    {
        return SearchModule(tableIndex, pName, nameHash, pBranch, count, nullptr, Hold::ForGood);
    }
    if (IsFileMode())
    {
        m_modes.LoadMode(tableIndex, pBranch, count, nullptr);  // the path is in use as much as ever
    }
    else if (pStamp != nullptr)
    {
        *pStamp = {&m_serial, serial};
    }
    return pKnown;
}

ParameterModule* ParameterStore::SearchModule(BYTE tableIndex, const CHAR* pName, UINT64 nameHash,
                                              const TuningMode* pBranch, UINT32 count, ParameterModule* pPrevious,
                                              Hold hold)
{
    const UINT64     serial  = m_serial.load(std::memory_order_acquire);
    ParameterModule* pModule = WalkToModule(tableIndex, pName, nameHash, pBranch, count, pPrevious, hold);
    if (pModule != nullptr && CanNote(pBranch, count) && IsRepeatable(pModule, tableIndex, nameHash, pBranch, count))
    {
        LookupMemo::OfThread().Note({serial, tableIndex, pBranch, count}, nameHash, pModule);
    }
    return pModule;
}

ParameterModule* ParameterStore::WalkToModule(BYTE tableIndex, const CHAR* pName, UINT64 nameHash,
                                              const TuningMode* pBranch, UINT32 count, ParameterModule* pPrevious,
                                              Hold hold)
{
    ParameterModule* pModule = nullptr;
    ModeEntry*       pRoot   = RootForLookup(pName, tableIndex, pBranch, count);
    if (pRoot != nullptr)
    {
        if (IsFileMode())
        {
            m_modes.LoadMode(tableIndex, pBranch, count, nullptr);
        }
        pModule = FindModuleOnBranch(pRoot, pName, nameHash, pBranch, count);
    }
    const Held held = (pModule != nullptr) ? HoldModule(pModule, hold) : Held::NoAsBefore;
    if (pPrevious != nullptr)
    {
        pPrevious->Release();
    }
    if (held == Held::No)
    {
        CHAR path[ModeEntry::MaxPathText];
        GetPathFromModeBranch(pBranch, count, path, sizeof(path));
        ParameterLogging::Write(&m_rManager, ParameterLogging::Error,
                                "GetModule %s failed to find a loaded module in %s, returning null\n", pName, path);
    }
    return (held == Held::Yes) ? pModule : nullptr;
}

bool ParameterStore::IsRepeatable(const ParameterModule* pModule, BYTE tableIndex, UINT64 nameHash,
                                  const TuningMode* pBranch, UINT32 count)
{
    const auto isBelowRoot = [](const TuningMode& rSelector)
    { return rSelector.mode > ModeType::Default && rSelector.mode < ModeType::EnumModeType_COUNT; };
    const bool isWellFormed = count > 0 && pBranch[0].mode == ModeType::Default && pBranch[0].subMode.value == 0 &&
                              std::all_of(pBranch + 1, pBranch + count, isBelowRoot);
    const bool isKept = !IsFileMode() || pModule->Data->Mode->Entry->IsKept(pModule);
    return isWellFormed && isKept && m_content.modeTables[tableIndex]->RootMode.Entry->FindModule(nameHash) != nullptr;
}

VOID ParameterStore::ForgetLookups()
{
    m_serial.store(g_lastSerial.fetch_add(1, std::memory_order_relaxed) + 1, std::memory_order_release);
}

bool ParameterStore::HasModeTable(const CHAR* pCaller, BYTE tableIndex) const
{
    if (tableIndex < m_content.modeTables.size())
    {
        return true;
    }
    ParameterLogging::Write(&m_rManager, ParameterLogging::Error,
                            "%s called with mode table index (%u) >= mode table count (%u)\n", pCaller, tableIndex,
                            static_cast<UINT32>(m_content.modeTables.size()));
    return false;
}

ModeEntry* ParameterStore::RootForLookup(const CHAR* pName, BYTE tableIndex, const TuningMode* pBranch, UINT32 count)
{
    if (!m_content.modeTables.empty() &&
        !HasModeTable((pName != nullptr) ? "GetModuleInternal" : "GetModules", tableIndex))
    {
        return nullptr;
    }
    const ParameterModeTable* pTable = m_content.modeTables.empty() ? nullptr : m_content.modeTables[tableIndex].get();
    ModeEntry*                pRoot  = (pTable != nullptr) ? pTable->RootMode.Entry : nullptr;
    LogOddBranch(pName, pBranch, count);
    if (pRoot == nullptr)
    {
        LogMissingRoot(pName, pTable);
    }
    return pRoot;
}

VOID ParameterStore::LogOddBranch(const CHAR* pName, const TuningMode* pBranch, UINT32 count)
{
    if (count == 0)
    {
        return;
    }
    if (pBranch == nullptr)
    {
        ParameterLogging::Write(
            &m_rManager, ParameterLogging::Warning,
            "%s called with modeBranch == null and modeCount = %d, will return default mode module data\n",
            LookupText(pName).c_str(), count);
    }
    else if (pBranch[0].mode != ModeType::Default || pBranch[0].subMode.value != 0)
    {
        CHAR path[ModeEntry::MaxPathText];
        GetPathFromModeBranch(pBranch, count, path, sizeof(path));
        ParameterLogging::Write(&m_rManager, ParameterLogging::Warning,
                                "%s called with first mode != Default, might not return module data from the desired "
                                "mode path: %s\n",
                                LookupText(pName).c_str(), path);
    }
}

VOID ParameterStore::LogMissingRoot(const CHAR* pName, const ParameterModeTable* pTable) const
{
    ParameterLogging::Write(
        &m_rManager, ParameterLogging::Error,
        "%s Uninitialized Set Manager. this: %lx, SymbolTable: %lx, Modes: %lx, ModeCount: %d, RootMode: %lx\n",
        LookupText(pName).c_str(), reinterpret_cast<unsigned long>(&m_rManager),
        reinterpret_cast<unsigned long>(m_content.pSymbolTable.get()),
        reinterpret_cast<unsigned long>((pTable != nullptr) ? pTable->Modes.data() : nullptr),
        (pTable != nullptr) ? pTable->Count() : 0, 0UL);
}

ParameterModule* ParameterStore::FindModuleOnBranch(ModeEntry* pRoot, const CHAR* pName, UINT64 nameHash,
                                                    const TuningMode* pBranch, UINT32 count)
{
    ParameterModule* pModule = pRoot->FindModule(nameHash);
    if (pModule == nullptr)
    {
        CHAR rootPath[ModeEntry::MaxPathText];
        CHAR branchPath[ModeEntry::MaxPathText];
        pRoot->GetModePath(rootPath, sizeof(rootPath));
        GetPathFromModeBranch(pBranch, count, branchPath, sizeof(branchPath));
        ParameterLogging::Write(&m_rManager, ParameterLogging::Warning,
                                "GetModule %s module not found in default scenario (%s), mode path: %s\n", pName,
                                rootPath, branchPath);
    }
    BranchWalk walk(*this, "GetModuleInternal", pRoot, pBranch, count);
    while (walk.Next())
    {
        ParameterModule* pDeeper = walk.Mode()->FindModule(nameHash);
        if (pDeeper != nullptr)
        {
            pModule = pDeeper;
        }
    }
    return pModule;
}

ParameterStore::Held ParameterStore::HoldModule(ParameterModule* pModule, Hold hold)
{
    // The reference comes first: from then on the module's mode is not evicted any more. A module that is kept for good
    // has one that serves.
    ModeEntry*       pOwnMode   = pModule->Data->Mode->Entry;
    ModuleReference* pReference = nullptr;
    if (IsFileMode() && !(hold == Hold::ForGood && pOwnMode->IsKept(pModule)))
    {
        pReference = pOwnMode->AddReference(pModule);
    }
    const bool                wasLoaded = pModule->IsReady();
    ParameterFileSymbolTable& rTable    = *pModule->Data->SymbolTable;
    const bool                isGivenUp =
        !pModule->IsLoaded() && IsFileMode() && rTable.IsFileLost() && !rTable.CanRead() && pModule->IsLossNoted;
    if (isGivenUp || !pModule->LoadModule(pModule->Data->SymbolTable))
    {
        if (pReference != nullptr)
        {
            pOwnMode->ReleaseReference(pModule);
        }
        if (isGivenUp)
        {
            return Held::NoAsBefore;
        }
        pModule->IsLossNoted = rTable.IsFileLost();
        CHAR path[ModeEntry::MaxPathText];
        pModule->Data->GetModePath(path, sizeof(path));
        ParameterLogging::Write(&m_rManager, ParameterLogging::Error, "Failed to load module %s, path: %s, skipping\n",
                                pModule->GetModuleName(), path);
        return Held::No;
    }
    if (hold == Hold::ForGood && pReference != nullptr)
    {
        pReference->KeepForGood();
    }
    if (!wasLoaded && IsFileMode())
    {
        m_modes.NoteLoad(pOwnMode);
    }
    return Held::Yes;
}

VOID ParameterStore::GetModules(BYTE tableIndex, PList<ParameterModule*>& rList, const TuningMode* pBranch,
                                UINT32 count, bool local, bool inherited, const PipelineType* pPipeline)
{
    m_rManager.ReleaseModules(rList);
    ModeEntry* pRoot = RootForLookup(nullptr, tableIndex, pBranch, count);
    if (pRoot == nullptr)
    {
        return;
    }
    if (IsFileMode())
    {
        m_modes.LoadMode(tableIndex, pBranch, count, nullptr);
    }
    ModeEntry* pMode = BranchWalk(*this, "GetModules", pRoot, pBranch, count).End();
    if (pMode == nullptr)
    {
        return;
    }
    PList<ParameterModule*> found;
    pMode->GetModules(found, local, inherited, pPipeline);
    for (UINT32 index = 0; index < found.Count(); ++index)
    {
        if (HoldModule(found[index], Hold::UntilReleased) == Held::Yes)
        {
            rList.Add(found[index]);
        }
    }
}

ModeEntryInfo* ParameterStore::GetModeEntry(UINT32 id)
{
    const auto&  rTables    = m_content.modeTables;
    const UINT32 tableIndex = BinaryFileFormat::GetModeTableIndex(id);
    const UINT32 modeIndex  = BinaryFileFormat::GetModeIDValue(id);
    if (tableIndex >= rTables.size() || modeIndex >= rTables[tableIndex]->Count())
    {
        return nullptr;
    }
    ModeEntryInfo& rInfo = rTables[tableIndex]->Modes[modeIndex];
    return (rInfo.Entry != nullptr) ? &rInfo : nullptr;
}

ModeEntry* ParameterStore::GetModeEntry(BYTE tableIndex, const TuningMode* pBranch, UINT32 count)
{
    if (!HasModeTable("GetModeEntry", tableIndex))
    {
        return nullptr;
    }
    ModeEntry* pRoot = m_content.modeTables[tableIndex]->RootMode.Entry;
    return (pRoot != nullptr) ? BranchWalk(*this, "GetModeEntry", pRoot, pBranch, count).End() : nullptr;
}
