#include "parameters/modulereference.h"

#include <limits>

VOID ModuleReference::AddUser()
{
    INT32 count = RefCount.load();
    while (count < std::numeric_limits<INT32>::max() && !RefCount.compare_exchange_weak(count, count + 1))
    {
    }
}

INT32 ModuleReference::RemoveUser()
{
    INT32 count = RefCount.load();
    while (count > 0 && count < std::numeric_limits<INT32>::max() && !RefCount.compare_exchange_weak(count, count - 1))
    {
    }
    return (count < std::numeric_limits<INT32>::max()) ? count - 1 : count;
}

VOID ModuleReference::KeepForGood()
{
    if (Kept.exchange(true))
    {
        RemoveUser();
    }
}

ModuleReference* ModuleReferenceMap::Find(UINT64 nameHash) const
{
    if (m_slots.empty())
    {
        return nullptr;
    }
    const size_t mask = m_slots.size() - 1;
    for (size_t index = nameHash & mask;; index = (index + 1) & mask)
    {
        const Slot& rSlot = m_slots[index];
        if (rSlot.pReference == nullptr || rSlot.nameHash == nameHash)
        {
            return rSlot.pReference;
        }
    }
}

bool ModuleReferenceMap::Insert(UINT64 nameHash, ParameterModule* pModule)
{
    if (Find(nameHash) != nullptr)
    {
        return false;
    }
    if ((m_references.size() + 1) * 2 > m_slots.size())
    {
        Grow();
    }
    m_references.push_back(std::make_unique<ModuleReference>(nameHash, pModule));
    Place(m_references.back().get());
    return true;
}

VOID ModuleReferenceMap::Place(ModuleReference* pReference)
{
    const size_t mask  = m_slots.size() - 1;
    size_t       index = pReference->NameHash & mask;
    while (m_slots[index].pReference != nullptr)
    {
        index = (index + 1) & mask;
    }
    m_slots[index] = {pReference->NameHash, pReference};
}

VOID ModuleReferenceMap::Grow()
{
    constexpr size_t FirstSize = 4;
    const size_t     size      = m_slots.empty() ? FirstSize : m_slots.size() * 2;
    m_slots.assign(size, Slot{0, nullptr});
    for (const auto& rpReference : m_references)
    {
        Place(rpReference.get());
    }
}
