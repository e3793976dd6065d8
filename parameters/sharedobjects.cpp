#include "parameters/sharedobjects.h"

#include <functional>
#include <mutex>

size_t SharedObjects::KeyHash::operator()(const Key& rKey) const
{
    size_t seed = std::hash<const VOID*>()(rKey.pTable);
    seed        = seed * 31 + std::hash<const VOID*>()(rKey.site.pRecord);
    seed        = seed * 31 + rKey.group;
    seed        = seed * 31 + static_cast<UINT32>(rKey.site.location);
    return seed * 31 + rKey.count;
}

VOID* SharedObjects::Get(const Key& rKey)
{
    const std::shared_lock<std::shared_mutex> lock(m_dupInfoMutex);
    const auto                                entry = m_dupEntries.find(rKey);
    if (entry == m_dupEntries.end())
    {
        return nullptr;
    }
    ++entry->second.RefCount;
    return entry->second.Object;
}

bool SharedObjects::Set(const Key& rKey, VOID* pObject)
{
    const std::unique_lock<std::shared_mutex> lock(m_dupInfoMutex);
    const auto [entry, isNew] = m_dupEntries.try_emplace(rKey);
    if (isNew)
    {
        entry->second.Object   = pObject;
        entry->second.RefCount = 1;
        m_dupInfoMap[pObject]  = &*entry;
    }
    return isNew;
}

bool SharedObjects::Release(VOID* pObject)
{
    const std::unique_lock<std::shared_mutex> lock(m_dupInfoMutex);
    const auto                                found = m_dupInfoMap.find(pObject);
    if (found == m_dupInfoMap.end())
    {
        return true;
    }
    if (--found->second->second.RefCount > 0)
    {
        return false;
    }
    const Key key = found->second->first;
    m_dupEntries.erase(key);
    m_dupInfoMap.erase(found);
    return true;
}
