/// @file
/// What the last lookups of a thread have found. A frame asks for the same two dozen modules along the same path as the
/// frame before; as long as the store stands as it did, the answers are the same and no tree is walked for them.
#pragma once

#include <array>
#include <cstring>

#include "parameters/tuningmode.h"

class ParameterModule;

class LookupMemo
{
public:
    /// Selectors of the longest path that is remembered: one per level.
    static constexpr UINT32 MaxSelectors = static_cast<UINT32>(ModeType::EnumModeType_COUNT);

    /// Along which path a module is looked up, and as of when.
    struct Path
    {
        UINT64            storeSerial;  ///< of what the store holds; no two stores and no two contents share one
        UINT32            tableIndex;
        const TuningMode* pBranch;
        UINT32            count;  ///< of selectors, at most MaxSelectors

        bool operator==(const Path& rOther) const
        {
            return storeSerial == rOther.storeSerial && tableIndex == rOther.tableIndex && count == rOther.count &&
                   std::memcmp(pBranch, rOther.pBranch, count * sizeof(TuningMode)) == 0;
        }
    };

    /// The memo of the calling thread.
    static LookupMemo& OfThread();

    /// @return the module that was noted for the path, null if none was or it has been forgotten
    ParameterModule* Find(const Path& rPath, UINT64 nameHash)
    {
        Answers* pAnswers = FindPath(rPath);
        for (UINT32 probe = 0; pAnswers != nullptr && probe < ProbeCount; ++probe)
        {
            const Slot& rSlot = SlotOf(*pAnswers, nameHash, probe);
            if (rSlot.nameHash == nameHash)
            {
                return rSlot.pModule;
            }
        }
        return nullptr;
    }

    VOID Note(const Path& rPath, UINT64 nameHash, ParameterModule* pModule);

private:
    /// Paths that are remembered: those of a few cameras that take turns on one thread.
    static constexpr UINT32 PathCount = 4;

    /// Four times the modules that the core reads; a power of two.
    static constexpr UINT32 SlotCount = 128;

    /// Places that one hash may lead to.
    static constexpr UINT32 ProbeCount = 4;

    struct Slot
    {
        UINT64           nameHash;
        ParameterModule* pModule;  ///< null marks a free slot
    };

    struct Answers
    {
        Path                                 path;
        std::array<TuningMode, MaxSelectors> branch;  ///< what path points at
        std::array<Slot, SlotCount>          slots;
    };

    static Slot& SlotOf(Answers& rAnswers, UINT64 nameHash, UINT32 probe)
    {
        return rAnswers.slots[(nameHash + probe) % SlotCount];
    }

    /// @return null for a path that is not remembered
    Answers* FindPath(const Path& rPath)
    {
        Answers& rLatest = m_paths[m_latest];
        return (rLatest.path == rPath) ? &rLatest : FindOlderPath(rPath);
    }

    Answers* FindOlderPath(Path path);
    Answers& BeginPath(const Path& rPath);

    std::array<Answers, PathCount> m_paths  = {};
    UINT32                         m_latest = 0;  ///< of m_paths, the one that was asked for last
};
