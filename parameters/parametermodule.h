/// @file
/// A tuning module in memory: one instance per distinct block of data, shared by all modes whose data is the same.
#pragma once

#include <atomic>
#include <memory>
#include <unordered_map>
#include <vector>

#include "parameters/modeentry.h"
#include "parameters/moduledata.h"
#include "parameters/versionunion.h"
#include "platform/tavocommonutils.h"

class DefaultModule;
class ParameterFileSymbolTable;
class ParameterParserInfo;

class TAVO_VISIBLE ParameterModule
{
public:
    /// @param pName must outlive the module
    /// @param pData what the file says about the instance, owned by its symbol table; null for a default instance,
    ///              which is never loaded
    ParameterModule(const CHAR* pName, UINT16 major, UINT16 minor, UINT32 patch, ModuleData* pData);
    virtual ~ParameterModule()                         = default;
    ParameterModule(const ParameterModule&)            = delete;
    ParameterModule& operator=(const ParameterModule&) = delete;

    /// Called on a default instance: finds or makes the instance for pData.
    /// @return an instance owned by pDefaultModule; null, with a log, if version or name are not those of this instance
    virtual ParameterModule* Create(ModuleData* pData, DefaultModule* pDefaultModule) const = 0;

    /// Reads the record unless it is in memory. @return whether it is now
    virtual bool LoadModule(ParameterFileSymbolTable* pTable) = 0;

    /// Gives the record's memory back.
    virtual VOID UnloadModule() = 0;

    /// Gives the record's memory back if nobody uses the module. Never waits for a load.
    /// @param rReference where the module's users are counted
    /// @return false if the module is in use, or at work on by another thread
    bool UnloadIfUnused(const ModuleReference& rReference);

    /// Text access by member path; false where a module has none.
    virtual bool GetValue(const CHAR* pPath, CHAR* pValue, UINT32 size);
    virtual bool SetValue(const CHAR* pPath, const CHAR* pValue);
    virtual bool GetInfo(const CHAR* pPath, PList<ParameterParserInfo>& rList);

    /// Gives back one reference that a GetModule call has taken. Does nothing when the file is wholly in memory, where
    /// nothing is ever unloaded.
    VOID Release();

    bool IsLoaded() const
    {
        return m_loaded.load(std::memory_order_acquire);
    }

    /// @return whether the record is in memory and stays there for a caller that has counted its reference before
    bool IsReady() const
    {
        return !m_isLeaving.load() && IsLoaded();
    }

    /// Whether the module could not be read since its file is lost, and that was said; until it is read again.
    std::atomic<bool> IsLossNoted = false;

    /// @return how often the record has been read or changed
    UINT32 GetModified() const
    {
        return m_modified.load(std::memory_order_relaxed);
    }

    const CHAR* GetModuleName() const
    {
        return m_pName;
    }

    UINT64 GetModuleNameHash() const
    {
        return NameHash;
    }

    const UINT64       NameHash;
    const VersionUnion Version;
    ModeUnion          Mode = {};  ///< of the instance's own mode, with the group of its slot
    ModuleData* const  Data;

protected:
    VOID SetLoaded(bool loaded)
    {
        m_loaded.store(loaded, std::memory_order_release);
    }

    VOID RaiseModified()
    {
        m_modified.fetch_add(1, std::memory_order_relaxed);
    }

    ParameterMutex m_mutex;  ///< guards the record and the loaded mark while they change

private:
    const CHAR* const   m_pName;
    std::atomic<bool>   m_loaded    = false;
    std::atomic<bool>   m_isLeaving = false;  ///< an eviction looks whether the module is in use
    std::atomic<UINT32> m_modified  = 0;
};

/// What a set manager knows of one module: the default instance, which makes the others, and all real instances.
class DefaultModule
{
public:
    explicit DefaultModule(std::unique_ptr<ParameterModule> pDefaultInstance);

    const ParameterModule& DefaultInstance() const
    {
        return *m_pDefaultInstance;
    }

    /// Appends an instance. @return the instance, which stays owned here
    ParameterModule* AddModule(std::unique_ptr<ParameterModule> pModule);

    /// Hands an instance back to the caller; null if it is not one of these.
    std::unique_ptr<ParameterModule> RemoveModule(const ParameterModule* pModule);

    /// Hands all instances back, in the order in which they were added.
    std::vector<std::unique_ptr<ParameterModule>> RemoveAll();

    /// @return the first instance whose data has that entry ID, null if there is none
    ParameterModule* Find(UINT32 id) const;

private:
    std::unique_ptr<ParameterModule>              m_pDefaultInstance;
    std::vector<std::unique_ptr<ParameterModule>> m_instances;
    std::unordered_map<UINT32, ParameterModule*>  m_byId;
};
