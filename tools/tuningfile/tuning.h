/// @file
/// A tuning in memory, between its text and its binary form: trees of modes, and the records of each mode's modules.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"
#include "schema/modules.h"
#include "tools/tuningfile/textplaces.h"

namespace tuningfile
{

/// Modes that a text may nest in one another.
constexpr UINT32 MaxModeDepth = 64;

/// A module of a mode.
struct Module
{
    const tuning::ModuleDescription* pDescription;
    const VOID*                      pRecord;     ///< of pDescription->pRecord; owned by Tuning::pMemory
    std::optional<TextPlace>         place = {};  ///< of its name; none if it does not come from text
};

/// A node of a tree of modes.
struct Mode
{
    UINT16                mode;
    UINT16                subMode;
    UINT32                group;     ///< hardware block that the modules of this entry belong to, 0 for none
    std::optional<UINT32> parent;    ///< index in the table; none for the root
    std::optional<UINT32> link;      ///< index in the table of the mode that stands in for this one
    bool                  preserve;  ///< its modules stay in memory once they are loaded
    std::vector<Module>   modules;

    std::optional<TextPlace> place = {};  ///< of its name; none if it does not come from text
};

/// Tables of a tuning: the index of one more would make the mode ID that means none.
constexpr size_t MaxModeTables = 255;

/// One tree of modes. A parent stands before its children.
struct ModeTable
{
    std::string       name;
    std::vector<Mode> modes;

    /// @return whether the mode is one more entry of its parent's mode, which is how a file gives groups to modules
    bool IsGroupEntry(UINT32 index) const;
};

struct Tuning
{
    std::string                 source;  ///< name of the file it came from, for messages
    std::string                 createdBy;
    std::string                 binaryTag;
    std::vector<ModeTable>      tables;
    std::shared_ptr<const VOID> pMemory;  ///< whatever keeps the records alive
    TextPlaces                  places;   ///< of the values; empty if they do not come from text
};

/// @return the described module of that name; null if there is none or its record is not known
const tuning::ModuleDescription* FindModule(std::string_view name);

/// @return the mode's module of that description; null if it has none
const Module* FindModuleOf(const Mode& rMode, const tuning::ModuleDescription& rDescription);

/// @return the same module of the nearest mode above; null if there is none
const Module* FindModuleAbove(const ModeTable& rTable, UINT32 index, const tuning::ModuleDescription& rDescription);

/// Writes what a module's record holds before a text says anything: the version of the schema.
/// @param pRecord zero-filled
VOID InitializeModuleRecord(const tuning::ModuleDescription& rDescription, VOID* pRecord);

/// Zero-filled memory for records, released as a whole.
class RecordArena
{
public:
    /// What the records of one tuning may take: far above any real tuning, far below what a desk has.
    static constexpr size_t MaxBytes = size_t{256} << 20;

    /// @return memory aligned for any record; null if the arena would exceed MaxBytes
    VOID* Allocate(size_t size);

private:
    std::vector<std::unique_ptr<std::byte[]>> m_blocks;
    std::byte*                                m_pFree     = nullptr;
    size_t                                    m_available = 0;
    size_t                                    m_used      = 0;
};

}  // namespace tuningfile
