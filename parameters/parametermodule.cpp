#include "parameters/parametermodule.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "parameters/parameterlogging.h"
#include "parameters/parametersetmanager.h"
#include "schema/namehash.h"

ParameterModule::ParameterModule(const CHAR* pName, UINT16 major, UINT16 minor, UINT32 patch, ModuleData* pData)
    : NameHash(namehash::OfName(pName)), Version(major, minor, patch), Data(pData), m_pName(pName)
{
    if (pData != nullptr)
    {
        Mode       = pData->Mode->Entry->Mode;
        Mode.Group = pData->Mode->Group;
    }
}

bool ParameterModule::GetValue(const CHAR*, CHAR*, UINT32)
{
    return false;
}

bool ParameterModule::SetValue(const CHAR*, const CHAR*)
{
    return false;
}

bool ParameterModule::GetInfo(const CHAR*, PList<ParameterParserInfo>&)
{
    return false;
}

bool ParameterModule::UnloadIfUnused(const ModuleReference& rReference)
{
    const std::unique_lock<ParameterMutex> lock(m_mutex, std::try_to_lock);
    if (!lock.owns_lock())
    {
        return false;
    }
    // A fetch counts its reference first and then asks IsReady; here the announcement comes first and then the look at
    // the count. All four are in one order for all threads, so at least one of the two sees the other: the count, and
    // the record stays, or the announcement, and the fetch takes the mutex, which it gets when the record is gone, and
    // reads it again. The mark of being loaded stays while it is undecided: text access that holds the module reads it.
    m_isLeaving         = true;
    const bool isUnused = !rReference.IsInUse();
    if (isUnused)
    {
        UnloadModule();
    }
    m_isLeaving = false;
    return isUnused;
}

VOID ParameterModule::Release()
{
    if (Data == nullptr || Data->SetManager == nullptr)
    {
        ParameterLogging::Write(nullptr, ParameterLogging::Error,
                                "Attempt to release module reference when Data or SetManager is nullptr. Module %s\n",
                                m_pName);
        return;
    }
    Data->SetManager->ReleaseModule(this);
}

DefaultModule::DefaultModule(std::unique_ptr<ParameterModule> pDefaultInstance)
    : m_pDefaultInstance(std::move(pDefaultInstance))
{
}

ParameterModule* DefaultModule::AddModule(std::unique_ptr<ParameterModule> pModule)
{
    m_byId.emplace(pModule->Data->ID, pModule.get());
    m_instances.push_back(std::move(pModule));
    return m_instances.back().get();
}

std::unique_ptr<ParameterModule> DefaultModule::RemoveModule(const ParameterModule* pModule)
{
    const auto found = std::find_if(m_instances.begin(), m_instances.end(),
                                    [pModule](const auto& rpInstance) { return rpInstance.get() == pModule; });
    if (found == m_instances.end())
    {
        return nullptr;
    }
    std::unique_ptr<ParameterModule> pRemoved = std::move(*found);
    m_instances.erase(found);
    m_byId.erase(pRemoved->Data->ID);
    return pRemoved;
}

std::vector<std::unique_ptr<ParameterModule>> DefaultModule::RemoveAll()
{
    m_byId.clear();
    return std::exchange(m_instances, {});
}

ParameterModule* DefaultModule::Find(UINT32 id) const
{
    const auto found = m_byId.find(id);
    return (found != m_byId.end()) ? found->second : nullptr;
}
