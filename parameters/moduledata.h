/// @file
/// What a parameter file says about one module instance, apart from its values.
#pragma once

#include <memory>

#include "parameters/versionunion.h"
#include "platform/tavotypes.h"

class IParameterLoggingAPI;
class ModeEntry;
class ParameterFileSymbolTable;
class ParameterSetManager;
struct ModeEntryInfo;

/// Resolves the mode IDs of a file.
class IModeTable
{
public:
    /// @return the slot of a mode, null if there is none; valid as long as the file stays loaded
    virtual ModeEntryInfo* GetModeEntry(UINT32 modeId) = 0;

    virtual ~IModeTable() = default;
};

/// One row of the symbol table: a module, its version, and the mode that it applies to.
struct ModuleData
{
    /// Looks the mode up. A mode that cannot be found is logged, and an empty one stands in for it.
    /// @param pModeTable null is logged, and treated as if the mode were not found
    ModuleData(UINT64 nameHash, UINT32 id, UINT32 duplicateId, const VersionUnion& rVersion, UINT32 modeId,
               IModeTable* pModeTable, ParameterSetManager* pSetManager, ParameterFileSymbolTable* pSymbolTable,
               const IParameterLoggingAPI* pLog);
    ~ModuleData();
    ModuleData(const ModuleData&)            = delete;
    ModuleData& operator=(const ModuleData&) = delete;

    UINT32 GetModeTableIndex() const;
    UINT32 GetModeIDValue() const;

    /// @return whether its mode was found, so that none stands in for it
    bool HasMode() const
    {
        return m_pStandInMode == nullptr;
    }

    /// Writes the path of the mode, numeric, for messages.
    /// @param size of pText, ModeEntry::MaxPathText for the longest
    VOID GetModePath(CHAR* pText, size_t size) const;

    const UINT64              NameHash;
    const UINT32              ID;           ///< entry of the symbol table
    const UINT32              DuplicateID;  ///< entry whose data is identical; ID itself if there is no other
    const VersionUnion        Version;      ///< of the module's schema
    const UINT32              ModeId;
    ModeEntryInfo*            Mode = nullptr;  ///< never null
    ParameterSetManager*      SetManager;
    ParameterFileSymbolTable* SymbolTable;

private:
    std::unique_ptr<ModeEntry>     m_pStandInMode;
    std::unique_ptr<ModeEntryInfo> m_pStandInInfo;
};
