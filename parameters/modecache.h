/// @file
/// The modes that a store has in memory in file mode: read from the file when a caller's path first leads there,
/// unloaded again when they were used longest ago and nobody counts on a module of theirs.
///
/// Locks: a mode's Mutex is held while its modules are loaded or unloaded, as long as the file takes; a table's
/// ActModeMutex while its list of active modes changes, and over an eviction. Under an ActModeMutex a mode's Mutex and
/// a module's are only tried, so that it is never held for long; none is taken the other way round, and no thread holds
/// two ActModeMutexes. References are counted without a lock: how a fetch and an eviction of the same module get out of
/// each other's way, ParameterModule::UnloadIfUnused says. A frame whose modes are all loaded and listed takes no lock,
/// but an ActModeMutex for the look at its list when an eviction is due.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "parameters/modeentry.h"

class ParameterStore;
struct ParameterModeTable;

class ModeCache
{
public:
    /// @param rStore owns the cache
    /// @param size   modes that stay loaded unused; see ParameterSetManager::Options
    ModeCache(ParameterStore& rStore, UINT32 size) : m_rStore(rStore), m_size(size)
    {
    }

    // The operations of ParameterSetManager.
    bool LoadMode(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pReason);
    bool CanRead(BYTE tableIndex, const TuningMode* pBranch, UINT32 count);
    bool UnloadMode(BYTE tableIndex, const TuningMode* pBranch, UINT32 count);

    /// Notes that a module was read for a caller who found it through a mode that shares it, while its own mode was
    /// unloaded, with which it has to go again.
    VOID NoteLoad(ModeEntry* pOwnMode);

private:
    /// Modes that a load has to do with: those to move to the front of the lists of active modes.
    using TouchedModes = std::vector<ModeEntry*>;

    /// What a caller wants loaded, for log lines.
    struct Request
    {
        const CHAR*       pReason = nullptr;
        const TuningMode* pBranch = nullptr;
        UINT32            count   = 0;
    };

    bool LoadBranch(BYTE tableIndex, const Request& rRequest);
    bool LoadModules(ModeEntry* pMode, const Request& rRequest, INT32& rFileReferences);
    bool LoadTarget(ModeEntry* pMode, const Request& rRequest, TouchedModes& rTouched, INT32& rFileReferences);
    bool LoadModuleMap(ModeEntry* pTarget, TouchedModes& rTouched);
    VOID UnloadModules(ModeEntry* pTarget, const ModeEntry* pMode);
    VOID DropReferences(ModeEntry* pUnloaded, ModeEntry::Counts counts);

    VOID TouchModes(std::span<ModeEntry* const> touched, ParameterModeTable& rTable);
    VOID EvictModes(ParameterModeTable& rTable);
    bool EvictMode(ModeEntry* pMode);

    /// @param pMove "L" or "Unl", what comes before "oading"
    VOID        LogMove(const CHAR* pMove, const Request& rRequest, const ModeEntry* pMode, const ModeEntry* pTarget);
    std::string TablePrefix(const ModeEntry* pMode) const;

    ParameterStore& m_rStore;
    const UINT32    m_size;
};
