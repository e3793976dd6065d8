/// @file
/// The table that owns a tree of modes, and its list of the modes that are in memory, by their last use.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "parameters/modeentry.h"
#include "parameters/parametersync.h"
#include "parameters/plist.h"

/// One tree of modes. Not movable: nodes point into Modes.
struct ParameterModeTable
{
    ParameterModeTable(std::string name, UINT32 index, UINT32 count) : Name(std::move(name)), Index(index), Modes(count)
    {
    }
    ParameterModeTable(const ParameterModeTable&)            = delete;
    ParameterModeTable& operator=(const ParameterModeTable&) = delete;

    UINT32 Count() const
    {
        return static_cast<UINT32>(Modes.size());
    }

    /// Makes a node that the table owns; the caller files it in Modes.
    ModeEntry* NewEntry();

    /// Follows the links of all nodes to their ends, once all nodes stand.
    VOID ResolveLinks();

    /// Makes the mode the one used last, and lists it. A listed mode costs no lock. One that comes back from behind the
    /// limit pushes another one there, so that an eviction is due.
    VOID Touch(ModeEntry* pMode);

    // For the holder of ActModeMutex.
    VOID List(ModeEntry* pMode);
    VOID Unlist(ModeEntry* pMode);

    /// Puts ActiveModes in the order of their last use, the latest first.
    VOID SortActiveModes();

    const std::string          Name;  ///< empty for a table without a name
    const UINT32               Index;
    ModeEntryInfo              RootMode = {};
    std::vector<ModeEntryInfo> Modes;  ///< by the index of the mode ID; a slot that the file did not fill is empty
    PList<ModeEntry*>          ActiveModes;          ///< guarded by ActModeMutex; see SortActiveModes
    ParameterMutex             ActModeMutex;         ///< guards ActiveModes, and eviction
    std::atomic<bool>          EvictionDue = false;  ///< who has to go may have changed since the last eviction

private:
    std::atomic<UINT64>                     m_useClock = 0;
    std::vector<std::unique_ptr<ModeEntry>> m_entries;
};
