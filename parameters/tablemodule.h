/// @file
/// A tuning module whose record is described by a table of the schema: one class for all modules.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>

#include "parameters/parametermodule.h"
#include "schema/tuningrecord.h"

namespace tuning
{
struct ModuleDescription;
}

/// What the accessor of a module without a parsed record hands out.
struct BareModuleType
{
    UINT32 SymbolTableID;  ///< as in every module record
};

/// A module and, behind it at a fixed distance in the same block of memory, its record. So a record that a caller holds
/// leads back to its module.
class TableModule final : public ParameterModule
{
public:
    /// @param rDescription must outlive the module
    /// @param pData        as for ParameterModule
    /// @return null if there is no memory
    static std::unique_ptr<TableModule> Make(const tuning::ModuleDescription& rDescription, ModuleData* pData);

    ~TableModule() override;

    ParameterModule* Create(ModuleData* pData, DefaultModule* pDefaultModule) const override;
    bool             LoadModule(ParameterFileSymbolTable* pTable) override;
    VOID             UnloadModule() override;

    // Text access to the record; none while it is not loaded, and none for a bare module. A value that is set shows in
    // the change count of SymbolTableID, by which users of the record notice.
    bool GetValue(const CHAR* pPath, CHAR* pValue, UINT32 size) override;
    bool SetValue(const CHAR* pPath, const CHAR* pValue) override;
    bool GetInfo(const CHAR* pPath, PList<ParameterParserInfo>& rList) override;

    /// @return where SetValue stores, if that is in an array, which other records may have as well; null otherwise
    const VOID* PlaceInArray(const CHAR* pPath);

    /// Tells that a number in an array has been set through another record. If this record has the array, too, it has
    /// another content from now on, and its users build themselves anew; its SymbolTableID stays.
    VOID NoteSharedEdit(const VOID* pPlace);

    /// The module's record: a struct of the described type, or a BareModuleType. It lives as long as the module.
    TAVO_VISIBLE VOID* Record();

    /// The module that a record belongs to. @param pRecord a result of Record(), or null, which gives null
    TAVO_VISIBLE static TableModule* FromRecord(VOID* pRecord);

    /// Names what a record holds at present: no other content of any record in the process has or had the same stamp,
    /// whatever store it is in and at whatever address. A new one comes with each load and each live edit; whoever sees
    /// the stamp of an edit also sees the value.
    /// @param pRecord a result of Record(), loaded; or null, which gives 0, the stamp of no content
    static UINT64 ContentStamp(const VOID* pRecord);

    static VOID operator delete(VOID* pMemory);

private:
    /// Bytes that an instance takes behind the object itself.
    struct RecordSpace
    {
        size_t size;
    };
    static VOID* operator new(size_t size, RecordSpace space) noexcept;
    static VOID  operator delete(VOID* pMemory, RecordSpace space);

    TableModule(const tuning::ModuleDescription& rDescription, ModuleData* pData);

    bool    HasText() const;
    UINT32& SymbolTableID();
    bool    LoadRecord(ParameterFileSymbolTable& rTable);
    VOID    RenewStamp();

    /// As messages name it: the record type, or a bare module's name with "Type", and "Class" behind.
    std::string ClassName() const;

    const tuning::ModuleDescription& m_rDescription;
    std::atomic<UINT64>              m_contentStamp{0};
};

/// From the start of a module to its record.
constexpr size_t TableModuleRecordDistance = tuning::AlignUp(sizeof(TableModule), alignof(std::max_align_t));

inline UINT64 TableModule::ContentStamp(const VOID* pRecord)
{
    if (pRecord == nullptr)
    {
        return 0;
    }
    const BYTE* pModule = static_cast<const BYTE*>(pRecord) - TableModuleRecordDistance;
    return reinterpret_cast<const TableModule*>(pModule)->m_contentStamp.load(std::memory_order_acquire);
}
