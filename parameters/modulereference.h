/// @file
/// The modules that a mode holds, and how often each is in use.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "parameters/parametersync.h"
#include "platform/tavotypes.h"

class ParameterModule;

/// A module as one mode sees it.
struct ModuleReference
{
    ModuleReference(UINT64 nameHash, ParameterModule* pModule) : NameHash(nameHash), Module(pModule)
    {
    }

    /// Counts one more user. There are users that never give back, and they must not wrap the count: at its top it
    /// stays for good.
    VOID AddUser();

    /// Counts one user less. @return the users left, less than 0 if there was none
    INT32 RemoveUser();

    /// Turns the reference that the caller has added into the one that keeps the module; one is enough.
    VOID KeepForGood();

    bool IsInUse() const
    {
        return Kept.load() || RefCount.load() > 0;
    }

    const UINT64      NameHash;
    ParameterModule*  Module;
    ParameterRefCount RefCount{0};  ///< users of the module; counted in the module's own mode only
    std::atomic<bool> Kept{false};  ///< one of the references is for users that never give back
};

/// The modules of a mode by name hash. Lookup is one probe or two into an open table, since every frame asks for dozens
/// of modules; walks go in the order of insertion, which is the order of the file.
class ModuleReferenceMap
{
public:
    ModuleReference* Find(UINT64 nameHash) const;

    /// @return false if there is a module of that name already; the map then stays as it is
    bool Insert(UINT64 nameHash, ParameterModule* pModule);

    UINT32 Count() const
    {
        return static_cast<UINT32>(m_references.size());
    }

    /// @param index below Count()
    ModuleReference& operator[](UINT32 index) const
    {
        return *m_references[index];
    }

    auto begin() const
    {
        return m_references.begin();
    }

    auto end() const
    {
        return m_references.end();
    }

private:
    struct Slot
    {
        UINT64           nameHash;
        ModuleReference* pReference;  ///< null marks a free slot
    };

    VOID Place(ModuleReference* pReference);
    VOID Grow();

    std::vector<std::unique_ptr<ModuleReference>> m_references;
    std::vector<Slot>                             m_slots;  ///< a power of two, at most half of them taken
};
