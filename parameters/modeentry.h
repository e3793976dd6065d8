/// @file
/// A node of the tree of modes.
///
/// A node holds a module for each variant that the file has at this place of the tree; what a node lacks is inherited
/// from its nearest ancestor on the caller's path. The tree is built when a file is loaded and does not change shape
/// while the file stays loaded; what changes is whether the modules of a node are in memory, and how often they are in
/// use.
#pragma once

#include <atomic>
#include <cstddef>

#include "parameters/modulereference.h"
#include "parameters/parametersync.h"
#include "parameters/plist.h"
#include "parameters/tuningmode.h"

class ModeEntry;
class ParameterModule;
struct ParameterModeTable;

/// Mode and sub-mode of a node, as a file stores them.
union ModeUnion
{
    UINT64 Value;
    struct
    {
        UINT16 Mode;
        UINT16 SubMode;
        UINT32 Group;  ///< the hardware block that a part of the mode's modules belongs to, 0 for none
    };

    bool IsModeMatch(const TuningMode& rSelector) const
    {
        return Mode == static_cast<UINT32>(rSelector.mode) && SubMode == rSelector.subMode.value;
    }

    bool IsModeMatch(const ModeUnion& rOther) const
    {
        return Mode == rOther.Mode && SubMode == rOther.SubMode;
    }
};

static_assert(sizeof(ModeUnion) == 8);

/// One slot of a mode table. Several slots can name one node, each with a group of its own.
struct ModeEntryInfo
{
    ModeEntry* Entry;
    BYTE       Group;
};

/// The hardware blocks by which GetModules can filter. A module of block p has the group p + 1.
enum class PipelineType : UINT32
{
    BPS        = 0,
    IFE        = 1,
    IPE        = 2,
    SW_CONTROL = 3,
    STATS      = 4,
    Preproc    = 5,
    IPEPreproc = 6,
    Postproc   = 7,
    TFE        = 8
};

/// A node of the mode tree. Owned by its ParameterModeTable, as are all nodes that it points to.
class ModeEntry
{
public:
    /// Room for the longest text of GetModePath, terminator included.
    static constexpr size_t MaxPathText = 1024;

    ModeEntry()                            = default;
    ModeEntry(const ModeEntry&)            = delete;
    ModeEntry& operator=(const ModeEntry&) = delete;

    /// @param pTable the owner
    /// @param ppLink slot of the table that names the entry whose modules stand in for this one's; null for none
    VOID Initialize(ParameterModeTable* pTable, UINT32 id, const ModeUnion& rMode, ModeEntry** ppLink);

    /// Appends a child. @param pMode a node without a parent
    VOID AddMode(ModeEntry* pMode);

    /// The node whose modules and children stand for this one: the end of its chain of links. A link to a slot without
    /// a node counts as none; a node whose chain never ends stands for itself.
    ModeEntry* Target()
    {
        return m_pTarget;
    }

    /// The first child that the selector names, null if there is none.
    ModeEntry* FindMode(const TuningMode& rSelector);

    /// Searches with a run of selectors of one level, which may nest: the result stands count levels below this node,
    /// each step down taking one of the selectors, the earlier ones first. A run of more than 64 finds nothing.
    ModeEntry* FindMode(const TuningMode* pBranch, UINT32 count);

    ParameterModule* FindModule(UINT64 nameHash);

    /// Enters the module under its name hash unless the mode has one of that name. Does not follow the link.
    VOID AddModule(ParameterModule* pModule);

    /// Enters the module in the place of the one of the same name, or as a new one.
    /// @return the module that was replaced, null if there was none
    ParameterModule* ReplaceModule(ParameterModule* pModule);

    /// Appends modules of the target to rList.
    /// @param local     take modules that the mode owns
    /// @param inherited take modules that the mode shares with another mode, which owns them
    /// @param pPipeline take only modules of that block; null for all
    VOID GetModules(PList<ParameterModule*>& rList, bool local, bool inherited, const PipelineType* pPipeline);

    /// Counts one more user of a module whose own mode this is. No lock is taken, here and in ReleaseReference.
    /// @return where it is counted; null, with a log, if this is not its own mode
    ModuleReference* AddReference(ParameterModule* pModule);

    /// Counts one user less; a log, if there is none to take off.
    bool ReleaseReference(ParameterModule* pModule);

    /// @return whether a reference for users that never give back is counted here
    bool IsKept(const ParameterModule* pModule) const;

    /// Counts of a mode.
    enum class Counts
    {
        All,
        OfOtherModes  ///< at modules that other modes own, left there when the module was replaced; they keep nothing
    };

    /// Sets counts to zero, with a log for each that was not. Nothing is kept for good there any more.
    VOID ReleaseReferences(Counts counts = Counts::All);

    /// @return the sum of the counts
    UINT32 GetReferenceCount(Counts counts = Counts::All) const;

    /// @return whether a module of this very mode is in use
    bool IsActive() const;

    /// @return whether the mode owns modules, rather than only sharing those of others
    bool HasLocalModules() const
    {
        return m_localModules > 0;
    }

    /// @return whether this node stands on the way from the root to pMode
    bool IsParent(const ModeEntry* pMode) const;

    /// Writes the numeric path from the root down, as in "0.0|1.2|2.1". Of a chain of more than 64 nodes the upper ones
    /// are left out.
    /// @param size of pText, at least 1
    VOID GetModePath(CHAR* pText, size_t size) const;

    bool Owns(const ParameterModule* pModule) const;

    UINT32              Id         = 0xFFFFFFFF;  ///< bits 31 to 24 the table, bits 23 to 0 the index in its Modes
    ModeUnion           Mode       = {};
    std::atomic<bool>   Loaded     = false;  ///< its modules are in memory; set under Mutex
    std::atomic<bool>   Preserve   = false;  ///< never unload
    ModeEntry**         Link       = nullptr;
    ModeEntry*          Parent     = nullptr;
    ModeEntry*          FirstChild = nullptr;
    ModeEntry*          LastChild  = nullptr;
    ModeEntry*          Next       = nullptr;
    ParameterModeTable* Table      = nullptr;
    std::atomic<UINT64> LastUse    = 0;      ///< by the use clock of Table
    std::atomic<bool>   IsListed   = false;  ///< among the ActiveModes of Table; written under ActModeMutex
    std::atomic<bool>   IsSurplus  = false;  ///< behind those that the cache holds, as of the last look; see EvictModes
    UINT64              SortedUse  = 0;      ///< LastUse as of the last sort; guarded by ActModeMutex
    ParameterMutex      Mutex;
    ModuleReferenceMap  ModuleMap;

private:
    friend struct ParameterModeTable;

    ModeEntry* FindMode(const TuningMode* pBranch, UINT32 count, UINT32 depth, UINT32& rStepsLeft);

    enum class ReferenceChange
    {
        Add,
        Release
    };
    bool             IsAmong(Counts counts, const ModuleReference& rReference) const;
    ModuleReference* OwnReference(ParameterModule* pModule, ReferenceChange change);

    enum class LinkState : UINT8
    {
        Unresolved,
        OnPath,
        Resolved,
        Endless
    };

    ModeEntry* m_pTarget      = this;
    UINT32     m_localModules = 0;
    LinkState  m_linkState    = LinkState::Unresolved;
};
