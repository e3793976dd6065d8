#include "parameters/modeentry.h"

#include "parameters/modepaths.h"
#include "parameters/parameterlogging.h"
#include "parameters/parametermodetable.h"
#include "parameters/parametermodule.h"
#include "parameters/parametersetmanager.h"

namespace
{

/// Levels of one kind hardly nest; a longer run of selectors finds nothing, and recursion stays shallow.
constexpr UINT32 MaxSelectorRun = 64;

/// Steps that the search with a run may take. Links can make a small tree look like an endless one.
constexpr UINT32 MaxSearchSteps = 10000;

/// Nodes that a path text shows at most.
constexpr UINT32 MaxPathNodes = 64;

const IParameterLoggingAPI* LogOf(const ParameterModule* pModule)
{
    return pModule->Data->SetManager;
}

}  // namespace

VOID ModeEntry::Initialize(ParameterModeTable* pTable, UINT32 id, const ModeUnion& rMode, ModeEntry** ppLink)
{
    Table = pTable;
    Id    = id;
    Mode  = rMode;
    Link  = ppLink;
}

VOID ModeEntry::AddMode(ModeEntry* pMode)
{
    pMode->Parent = this;
    if (LastChild == nullptr)
    {
        FirstChild = pMode;
    }
    else
    {
        LastChild->Next = pMode;
    }
    LastChild = pMode;
}

ModeEntry* ModeEntry::FindMode(const TuningMode& rSelector)
{
    ModeEntry* pChild = Target()->FirstChild;
    while (pChild != nullptr && !pChild->Mode.IsModeMatch(rSelector))
    {
        pChild = pChild->Next;
    }
    return pChild;
}

ModeEntry* ModeEntry::FindMode(const TuningMode* pBranch, UINT32 count)
{
    UINT32 stepsLeft = MaxSearchSteps;
    return (count <= MaxSelectorRun) ? FindMode(pBranch, count, 0, stepsLeft) : nullptr;
}

ModeEntry* ModeEntry::FindMode(const TuningMode* pBranch, UINT32 count, UINT32 depth, UINT32& rStepsLeft)
{
    for (UINT32 index = 0; index < count && rStepsLeft > 0; ++index)
    {
        ModeEntry* pChild = FindMode(pBranch[index]);
        if (pChild != nullptr)
        {
            --rStepsLeft;
            ModeEntry* pFound = (count <= depth + 1) ? pChild : pChild->FindMode(pBranch, count, depth + 1, rStepsLeft);
            if (pFound != nullptr)
            {
                return pFound;
            }
        }
    }
    return nullptr;
}

ParameterModule* ModeEntry::FindModule(UINT64 nameHash)
{
    const ModuleReference* pReference = Target()->ModuleMap.Find(nameHash);
    return (pReference != nullptr) ? pReference->Module : nullptr;
}

bool ModeEntry::Owns(const ParameterModule* pModule) const
{
    return pModule->Data->Mode->Entry == this;
}

VOID ModeEntry::AddModule(ParameterModule* pModule)
{
    if (ModuleMap.Insert(pModule->NameHash, pModule) && Owns(pModule))
    {
        ++m_localModules;
    }
}

ParameterModule* ModeEntry::ReplaceModule(ParameterModule* pModule)
{
    ModuleReference* pReference = ModuleMap.Find(pModule->NameHash);
    if (pReference == nullptr)
    {
        AddModule(pModule);
        return nullptr;
    }
    ParameterModule* pReplaced = pReference->Module;
    m_localModules             = m_localModules - (Owns(pReplaced) ? 1 : 0) + (Owns(pModule) ? 1 : 0);
    pReference->Module         = pModule;
    return pReplaced;
}

VOID ModeEntry::GetModules(PList<ParameterModule*>& rList, bool local, bool inherited, const PipelineType* pPipeline)
{
    ModeEntry* pTarget = Target();
    for (const auto& rpReference : pTarget->ModuleMap)
    {
        ParameterModule* pModule = rpReference->Module;
        if (pPipeline != nullptr && pModule->Mode.Group != static_cast<UINT32>(*pPipeline) + 1)
        {
            continue;
        }
        if (pTarget->Owns(pModule) ? local : inherited)
        {
            rList.Add(pModule);
        }
    }
}

ModuleReference* ModeEntry::OwnReference(ParameterModule* pModule, ReferenceChange change)
{
    const bool add = (change == ReferenceChange::Add);
    if (Table == nullptr)
    {
        ParameterLogging::Write(LogOf(pModule), ParameterLogging::Error,
                                "Attempt to lock Active Mode Mutex failed, mode table not found for ModeID: %u\n", Id);
    }
    ModuleReference* pReference = ModuleMap.Find(pModule->NameHash);
    if (pReference == nullptr)
    {
        ParameterLogging::Write(LogOf(pModule), ParameterLogging::Error,
                                add ? "Attempt to add reference to a non-existant module.  Mode: %d, SubMode: %d, "
                                      "Module %s\n"
                                    : "Attempt to release a non-existant module.  Mode: %d, SubMode: %d, Module %s\n",
                                Mode.Mode, Mode.SubMode, pModule->GetModuleName());
        return nullptr;
    }
    if (!Owns(pReference->Module))
    {
        CHAR path[MaxPathText];
        pReference->Module->Data->GetModePath(path, sizeof(path));
        ParameterLogging::Write(LogOf(pModule), ParameterLogging::Error,
                                add ? "Attempt to add module reference from wrong mode.  Mode: %d, SubMode: %d, "
                                      "Module %s, ModePath: %s\n"
                                    : "Attempt to release module reference from wrong mode.  Mode: %d, SubMode: %d, "
                                      "Module %s, ModePath: %s\n",
                                Mode.Mode, Mode.SubMode, pModule->GetModuleName(), path);
        return nullptr;
    }
    return pReference;
}

ModuleReference* ModeEntry::AddReference(ParameterModule* pModule)
{
    ModuleReference* pReference = OwnReference(pModule, ReferenceChange::Add);
    if (pReference != nullptr)
    {
        pReference->AddUser();
    }
    return pReference;
}

bool ModeEntry::ReleaseReference(ParameterModule* pModule)
{
    ModuleReference* pReference = OwnReference(pModule, ReferenceChange::Release);
    if (pReference == nullptr)
    {
        return false;
    }
    const INT32 left = pReference->RemoveUser();
    if (left < 0)
    {
        ParameterLogging::Write(LogOf(pModule), ParameterLogging::Error,
                                "Attempt to release unreferenced module.  Mode: %d, SubMode: %d, Module %s\n",
                                Mode.Mode, Mode.SubMode, pModule->GetModuleName());
        return false;
    }
    if (left == 0 && Table != nullptr)
    {
        Table->EvictionDue = true;
    }
    return true;
}

bool ModeEntry::IsKept(const ParameterModule* pModule) const
{
    const ModuleReference* pReference = ModuleMap.Find(pModule->NameHash);
    return pReference != nullptr && pReference->Module == pModule && pReference->Kept;
}

bool ModeEntry::IsAmong(Counts counts, const ModuleReference& rReference) const
{
    return counts == Counts::All || !Owns(rReference.Module);
}

VOID ModeEntry::ReleaseReferences(Counts counts)
{
    for (const auto& rpReference : ModuleMap)
    {
        if (!IsAmong(counts, *rpReference))
        {
            continue;
        }
        const INT32 count = rpReference->RefCount.exchange(0);
        rpReference->Kept = false;
        if (count != 0)
        {
            ParameterLogging::Write(LogOf(rpReference->Module), ParameterLogging::Warning,
                                    "ReleaseReferences called with unreleased module: %s, RefCnt: %u\n",
                                    rpReference->Module->GetModuleName(), static_cast<UINT32>(count));
        }
    }
}

UINT32 ModeEntry::GetReferenceCount(Counts counts) const
{
    UINT32 count = 0;
    for (const auto& rpReference : ModuleMap)
    {
        count += IsAmong(counts, *rpReference) ? static_cast<UINT32>(rpReference->RefCount.load()) : 0;
    }
    return count;
}

bool ModeEntry::IsActive() const
{
    for (const auto& rpReference : ModuleMap)
    {
        if (rpReference->IsInUse() && Owns(rpReference->Module))
        {
            return true;
        }
    }
    return false;
}

bool ModeEntry::IsParent(const ModeEntry* pMode) const
{
    const ModeEntry* pNode = pMode->Parent;
    while (pNode != nullptr && pNode != this)
    {
        pNode = pNode->Parent;
    }
    return pNode != nullptr;
}

VOID ModeEntry::GetModePath(CHAR* pText, size_t size) const
{
    const ModeEntry* nodes[MaxPathNodes];
    UINT32           count = 0;
    for (const ModeEntry* pNode = this; pNode != nullptr && count < MaxPathNodes; pNode = pNode->Parent)
    {
        nodes[count++] = pNode;
    }
    pText[0] = '\0';
    while (count > 0)
    {
        --count;
        ModePaths::AppendItem(pText, size, nodes[count]->Mode.Mode, nodes[count]->Mode.SubMode);
    }
}
