#include "parameters/parametermodetable.h"

#include <algorithm>
#include <functional>
#include <mutex>

ModeEntry* ParameterModeTable::NewEntry()
{
    m_entries.push_back(std::make_unique<ModeEntry>());
    return m_entries.back().get();
}

VOID ParameterModeTable::Touch(ModeEntry* pMode)
{
    // Only then the look at the list: an eviction takes the mode off the list before it looks at what is loaded, so
    // that either it sees the load that the caller has done, or the caller sees that the mode is off and lists it
    // again.
    pMode->LastUse = ++m_useClock;
    if (!pMode->IsListed)
    {
        const std::lock_guard<ParameterMutex> lock(ActModeMutex);
        List(pMode);
    }
    else if (pMode->IsSurplus)
    {
        EvictionDue = true;
    }
}

VOID ParameterModeTable::List(ModeEntry* pMode)
{
    if (!pMode->IsListed)
    {
        ActiveModes.Add(pMode);
        pMode->IsListed = true;
        EvictionDue     = true;
    }
}

VOID ParameterModeTable::Unlist(ModeEntry* pMode)
{
    pMode->IsListed = false;
    ActiveModes.Remove(pMode);
}

VOID ParameterModeTable::SortActiveModes()
{
    // Modes are used meanwhile: what is compared stands still.
    for (UINT32 index = 0; index < ActiveModes.Count(); ++index)
    {
        ActiveModes[index]->SortedUse = ActiveModes[index]->LastUse;
    }
    ModeEntry** const ppModes = ActiveModes.ToArray();
    std::ranges::sort(ppModes, ppModes + ActiveModes.Count(), std::greater<>(), &ModeEntry::SortedUse);
}

VOID ParameterModeTable::ResolveLinks()
{
    using LinkState = ModeEntry::LinkState;

    std::vector<ModeEntry*> path;
    for (const auto& rpEntry : m_entries)
    {
        // Walk until the chain ends or meets a node whose end is known. Each node is walked over once.
        path.clear();
        ModeEntry* pNode = rpEntry.get();
        ModeEntry* pEnd  = nullptr;
        while (pEnd == nullptr && pNode->m_linkState == LinkState::Unresolved)
        {
            pNode->m_linkState = LinkState::OnPath;
            path.push_back(pNode);
            ModeEntry* pNext = (pNode->Link != nullptr) ? *pNode->Link : nullptr;
            if (pNext == nullptr)
            {
                pEnd = pNode;
            }
            else
            {
                pNode = pNext;
            }
        }
        if (pEnd == nullptr && pNode->m_linkState == LinkState::Resolved)
        {
            pEnd = pNode->m_pTarget;
        }
        for (ModeEntry* pWalked : path)
        {
            pWalked->m_linkState = (pEnd != nullptr) ? LinkState::Resolved : LinkState::Endless;
            pWalked->m_pTarget   = (pEnd != nullptr) ? pEnd : pWalked;
        }
    }
}
