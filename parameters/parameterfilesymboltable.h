/// @file
/// The tables by which a parameter file describes itself: symbols, data blocks and definitions.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "parameters/binaryfileformat.h"
#include "parameters/loadallowance.h"
#include "parameters/moduledata.h"
#include "parameters/parameterbinaryfile.h"
#include "parameters/parameterdefinitions.h"
#include "parameters/parameterfilesymboltableentry.h"
#include "parameters/sharedobjects.h"

/// What stays in memory of an entry of which the rest is read again when it is wanted.
struct EntryData
{
    UINT32 Dup;       ///< number of the group of entries with the same block, 0 for an entry alone
    UINT32 Position;  ///< of the row inside its table, bytes
};

/// Resolves IDs of a file to blocks of data.
///
/// Without a file object, blocks lie in the caller's buffer, which must stay until FreeEntryData. With one they are
/// read from the file on demand; while it is kept in memory, they are used there, until FreeEntryData as well. Find and
/// the operations on shared objects may be called from any thread once the table is loaded.
class ParameterFileSymbolTable
{
public:
    /// @param pSetManager handed on to the module data, not used here
    /// @param pLog        must outlive the table
    /// @param alignment   packing of the file
    ParameterFileSymbolTable(ParameterSetManager* pSetManager, const IParameterLoggingAPI* pLog, UINT32 alignment,
                             const VersionUnion& rVersion);
    ~ParameterFileSymbolTable();
    ParameterFileSymbolTable(const ParameterFileSymbolTable&)            = delete;
    ParameterFileSymbolTable& operator=(const ParameterFileSymbolTable&) = delete;

    /// Reads definitions, symbol table and data table.
    /// @param pBuffer         the whole file; not used if there is a file object, which may have it in memory as well
    /// @param pFile           null to work from the buffer
    /// @param readDefinitions false parses the definitions and keeps none
    bool Load(const BYTE* pBuffer, UINT64 length, std::shared_ptr<ParameterBinaryFile> pFile,
              const BinaryFileSections& rSections, IModeTable* pModeTable, bool readDefinitions);

    /// Makes rEntry a reader of the block of an entry.
    /// @param isModule the ID is one of the symbol table, otherwise of the data table
    /// @return false, with a log, if there is no such entry or its block cannot be had; rEntry is then empty
    bool Find(ParameterFileSymbolTableEntry& rEntry, UINT32 id, bool isModule);

    /// Reads an entry ID at the position of pHolder and finds it in the data table.
    /// @param limit end of what may be read of pHolder's block
    bool ReadPointerEntry(ParameterFileSymbolTableEntry& rEntry, ParameterFileSymbolTableEntry* pHolder, UINT32 limit);

    const ParameterDefinitions& Definitions() const
    {
        return m_definitions;
    }

    ParameterDefinitionStructure* FindStructure(UINT32 structureId) const
    {
        return m_definitions.FindStructure(structureId);
    }

    ParameterDefinitionStructure* FindModuleStructure(UINT64 nameHash) const
    {
        return m_definitions.FindModuleStructure(nameHash);
    }

    /// Makes an element by which a module's record can be read as a member of nothing.
    /// @return none if there are no definitions for the module
    std::optional<ParameterDefinitionElement> BuildModuleElement(UINT64 nameHash) const;

    /// The object that another read of the site has made of the same data; one more reference is taken for it.
    /// @param id    entry whose data is the same
    /// @param count of the values in it; an object of another size does not serve
    /// @return null if there is none
    VOID* GetDupObject(bool isModule, UINT32 id, const ReadingSite& rSite, UINT32 count);

    /// Offers an object to other reads of the site.
    /// @return false if it will not be shared, since the entry is alone or another object is registered
    bool SetDupObject(bool isModule, UINT32 id, VOID* pObject, const ReadingSite& rSite, UINT32 count);

    /// Gives a reference back.
    /// @return whether the caller has to free the object: it was the last reference, or the object was never shared
    bool ReleaseDupObject(VOID* pObject);

    UINT32 Count() const
    {
        return m_symbols.count;
    }

    UINT32 DTCount() const
    {
        return m_pDataRows->count;
    }

    /// The modules of the file, in table order.
    UINT32 ModuleCount() const
    {
        return static_cast<UINT32>(m_modules.size());
    }

    /// @param index below ModuleCount()
    ModuleData* GetModule(UINT32 index) const
    {
        return m_modules[index].get();
    }

    /// @return whether blocks are used where they lie in memory
    bool IsInMemory() const
    {
        return m_pBuffer != nullptr;
    }

    /// Drops the rows that are in memory; with a file they are read again one by one. The buffer may go.
    VOID FreeEntryData();

    /// Drops what Find needs; no Find works after it.
    VOID FreeLookupData();

    /// Ends the load of a file: drops all definitions, or those that have matched.
    VOID ClearDefinitions(bool all);

    /// Adds to the references of the file, which keep it open. @return the number of references
    INT32 FileReference(INT32 adjust);

    ParameterBinaryFile* File() const
    {
        return m_pFile.get();
    }

    /// @return whether the file had changed, or could not be opened, when somebody last tried
    bool IsFileLost() const;

    /// Tries to open the file, and keeps it open until FileReference(-1). One that has changed is not tried: it is not
    /// read before the tuning is loaded anew. @return whether it is held; false also without a file
    bool HoldFile();

    /// @return whether records can be read: from a buffer always, from a file by trying
    bool CanRead();

    /// Looks at the open file, if there is one. @return false if what was read of it since may be of another state
    bool IsFileUnchanged() const;

    const VersionUnion& Version() const
    {
        return m_version;
    }

    /// @return whether records have their number of bytes in front
    bool HasRecordSizes() const
    {
        return m_hasRecordSizes;
    }

    /// @return whether counted inline arrays have their count in front
    bool HasArrayCounts() const
    {
        return m_hasArrayCounts;
    }

    UINT32 Alignment() const
    {
        return m_alignment;
    }

    const IParameterLoggingAPI* Log() const
    {
        return m_pLog;
    }

    /// The allowance that all records share which are loaded with the file. @return null once the file is loaded: then
    ///         each load has its own
    LoadAllowance* FileAllowance()
    {
        return m_fileAllowance.has_value() ? &*m_fileAllowance : nullptr;
    }

    /// An allowance for one load.
    LoadAllowance NewAllowance() const
    {
        return {m_length, m_pLog};
    }

private:
    static constexpr UINT32 MaxRowSize = 76;  ///< bytes, of all versions and both tables

    /// A row, as a file stores it.
    struct Row
    {
        UINT32                      id          = 0;
        UINT32                      duplicateId = 0;
        UINT32                      offset      = 0;  ///< of the block, bytes from the start of the data section
        UINT32                      size        = 0;  ///< of the block, bytes
        bool                        isModule    = false;
        bool                        isSilent    = false;  ///< reading it once more would log nothing
        std::unique_ptr<ModuleData> pModule;              ///< of a module, until the table has taken it
    };

    /// One of the two tables.
    struct Rows
    {
        std::vector<Row>       resident;  ///< by ID; empty when rows are read on demand
        std::vector<EntryData> lookup;    ///< by ID
        SectionInfo            section{};
        UINT32                 count    = 0;
        UINT32                 dupCount = 0;  ///< groups of entries with the same block, plus 1
    };

    bool        CountEntries(const BinaryFileSections& rSections);
    bool        AllocateEntries();
    const BYTE* ReadSection(const SectionInfo& rSection, const CHAR* pTable, TuningBlock& rBlock) const;
    VOID        LogUnreadable(const SectionInfo& rSection, const CHAR* pTable) const;
    bool        ReadDefinitions(const SectionInfo& rSection, bool keep);
    bool        ReadTable(Rows& rRows);
    bool        ParseTable(Rows& rRows, const BYTE* pRows, UINT64 length);
    VOID        AssignDupSlots(Rows& rRows) const;
    bool        AreClaimsPlausible() const;
    bool        ReadRow(Row& rRow, const BYTE* pRows, UINT64 length, UINT64& rPosition, bool isModule, UINT32 id);
    const BYTE* BlockInMemory(const Row& rRow) const;
    bool        FindInFile(ParameterFileSymbolTableEntry& rEntry, const Rows& rRows, UINT32 id, bool isModule);
    bool        FetchEntry(ParameterFileSymbolTableEntry& rEntry, const Rows& rRows, UINT32 id, bool isModule);

    bool IsOfModules(const Rows& rRows) const
    {
        return &rRows == &m_symbols;
    }

    /// For log lines.
    const CHAR* NameOf(const Rows& rRows) const
    {
        return IsOfModules(rRows) ? "symbol" : "data";
    }

    const Rows& RowsOf(bool isModule) const
    {
        return isModule ? m_symbols : *m_pDataRows;
    }

    ParameterSetManager* const           m_pSetManager;
    const IParameterLoggingAPI* const    m_pLog;
    const UINT32                         m_alignment;
    const VersionUnion                   m_version;
    const bool                           m_hasRecordSizes;
    const bool                           m_hasArrayCounts;
    std::shared_ptr<ParameterBinaryFile> m_pFile;
    const BYTE*                          m_pBuffer = nullptr;  ///< the whole file, while it is in memory
    UINT64                               m_length  = 0;        ///< of the file or the buffer
    SectionInfo                          m_data{};
    IModeTable*                          m_pModeTable = nullptr;
    ParameterDefinitions                 m_definitions;
    Rows                                 m_symbols;
    Rows                                 m_dataTable;
    Rows*                                m_pDataRows = &m_symbols;  ///< the symbol table for files without the other
    std::vector<std::unique_ptr<ModuleData>> m_modules;
    std::optional<LoadAllowance>             m_fileAllowance;
    SharedObjects                            m_sharedObjects;
};
