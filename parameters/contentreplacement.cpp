#include "parameters/contentreplacement.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "parameters/parameterbinaryfile.h"
#include "parameters/parameterstore.h"

ContentReplacement::ContentReplacement(ParameterStore& rStore) : m_rStore(rStore)
{
}

ContentReplacement::~ContentReplacement() = default;

bool ContentReplacement::ReloadBinaryParameters(bool bufferMode)
{
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
    const std::string                     fileName = m_rStore.FileName();
    if (fileName.empty())
    {
        m_rStore.SetError("ReloadBinaryParameters called with empty file name");
        return false;
    }
    ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Debug, "Reloading binary file %s%s\n",
                            fileName.c_str(), bufferMode ? " in buffer mode" : "");
    FreeReplacedParameters();
    m_rStore.Manager().SaveAndClearModules();
    m_previousContent = m_rStore.TakeContent();

    if (!ReadReplacement(fileName, bufferMode))
    {
        // What is wrong with the file may be mended, and the reload tried again.
        m_rStore.SetFileName(fileName);
        return false;
    }
    TransferReferences();
    return true;
}

bool ContentReplacement::ReadReplacement(const std::string& rFileName, bool bufferMode)
{
    if (!bufferMode)
    {
        return m_rStore.LoadBinaryParameters(rFileName.c_str());
    }
    ParameterBinaryFile file(rFileName.c_str(), &m_rStore.Manager());
    if (!file.IsValid())
    {
        m_rStore.SetError("ReloadBinaryParameters: Failed to open file");
        return false;
    }
    const TuningBlock pWhole = file.Read(0, file.Length());
    if (pWhole == nullptr)
    {
        m_rStore.SetError("ReloadBinaryParameters: Failed to allocate space to read data from file");
        return false;
    }
    return m_rStore.LoadBinaryParameters(pWhole.get(), file.Length());
}

VOID ContentReplacement::Clear()
{
    m_replacedModules.clear();
    FreeReplacedParameters();
}

VOID ContentReplacement::FreeReplacedParameters()
{
    ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Debug, "FreeReplacedParameters called\n");
    // The modules' data stands in the tables.
    m_parkedModules.clear();
    m_previousContent.pSymbolTable.reset();
    m_previousContent.modeTables.clear();
    m_previousMerged.clear();
}

VOID ContentReplacement::SaveAndClearModules()
{
    for (const auto& [nameHash, rpDefault] : m_rStore.DefaultModules())
    {
        m_rStore.Manager().SaveAndClearModule(rpDefault.get());
    }
    std::ranges::move(m_replacedModules, std::back_inserter(m_parkedModules));
    m_replacedModules.clear();
    m_previousMerged = std::move(m_merged);
    m_merged.clear();
}

VOID ContentReplacement::SaveAndClearModule(DefaultModule* pModule)
{
    std::ranges::move(pModule->RemoveAll(), std::back_inserter(m_parkedModules));
}

VOID ContentReplacement::TransferReferences() const
{
    const auto& rOldTables = m_previousContent.modeTables;
    const auto& rNewTables = m_rStore.GetContent().modeTables;
    if (rOldTables.size() != rNewTables.size())
    {
        return;
    }
    for (size_t table = 0; table < rNewTables.size(); ++table)
    {
        const ParameterModeTable& rOld = *rOldTables[table];
        ParameterModeTable&       rNew = *rNewTables[table];
        if (rOld.Count() != rNew.Count())
        {
            continue;
        }
        for (UINT32 index = 0; index < rNew.Count(); ++index)
        {
            // A node that several slots name is transferred once, with the slot of its own ID.
            const ModeEntry* pOld = rOld.Modes[index].Entry;
            ModeEntry*       pNew = rNew.Modes[index].Entry;
            if (pOld != nullptr && pNew != nullptr && BinaryFileFormat::GetModeIDValue(pNew->Id) == index)
            {
                TransferModeReferences(*pOld, *pNew, index);
            }
        }
    }
}

VOID ContentReplacement::TransferModeReferences(const ModeEntry& rPrevious, ModeEntry& rMode, UINT32 index) const
{
    const UINT32 count = std::min(rPrevious.ModuleMap.Count(), rMode.ModuleMap.Count());
    for (UINT32 place = 0; place < count; ++place)
    {
        const ModuleReference& rOld = rPrevious.ModuleMap[place];
        ModuleReference&       rNew = rMode.ModuleMap[place];
        if (rOld.NameHash != rNew.NameHash)
        {
            ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Debug,
                                    "ReloadBinaryParameters: Failed to transfer reference counts, current module name "
                                    "(%s) does not match prev name (%s) in mode index %d\n",
                                    rNew.Module->GetModuleName(), rOld.Module->GetModuleName(), index);
            return;
        }
        const INT32 references = rOld.RefCount.load();
        if (references > 0)
        {
            const INT64 sum = static_cast<INT64>(rNew.RefCount.load()) + references;
            rNew.RefCount   = static_cast<INT32>(std::min<INT64>(sum, std::numeric_limits<INT32>::max()));
            rNew.Kept       = rOld.Kept.load();  // else the next fetch would count once more with each reload
        }
    }
}

bool ContentReplacement::UpdateParameters(std::unique_ptr<ParameterSetManager> pOther)
{
    if (pOther != nullptr)
    {
        // One service for one set of records.
        pOther->StopLiveTuning();
    }
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
    if (pOther == nullptr || pOther->IsDerived() || !m_rStore.CanMerge(pOther->m_rStore))
    {
        return false;
    }
    const auto& rTables      = m_rStore.GetContent().modeTables;
    const auto& rOtherTables = pOther->m_rStore.GetContent().modeTables;
    bool        matched      = false;
    for (const auto& rpOtherTable : rOtherTables)
    {
        const auto found = (rTables.size() == 1 && rOtherTables.size() == 1)
                               ? rTables.begin()
                               : std::ranges::find_if(rTables, [&](const auto& rpTable)
                                                      { return rpTable->Name == rpOtherTable->Name; });
        if (found != rTables.end())
        {
            matched = true;
            MergeTree((*found)->RootMode.Entry, rpOtherTable->RootMode.Entry);
        }
    }
    m_rStore.ForgetLookups();
    if (!matched)
    {
        m_rStore.SetError(
            "UpdateParameters: Error: No matching module tables names found, unable to update parameters");
        return false;
    }
    m_merged.push_back(std::move(pOther));
    return true;
}

VOID ContentReplacement::MergeTree(ModeEntry* pRoot, ModeEntry* pOtherRoot)
{
    if (pRoot == nullptr || pOtherRoot == nullptr)
    {
        return;
    }
    // Not recursive: how deep a tree goes is up to the file.
    std::vector<std::pair<ModeEntry*, ModeEntry*>> pairs = {{pRoot, pOtherRoot}};
    while (!pairs.empty())
    {
        const auto [pMode, pOtherMode] = pairs.back();
        pairs.pop_back();
        MergeMode(pMode, pOtherMode);
        for (ModeEntry* pOtherChild = pOtherMode->FirstChild; pOtherChild != nullptr; pOtherChild = pOtherChild->Next)
        {
            TuningMode selector{};
            selector.mode          = static_cast<ModeType>(pOtherChild->Mode.Mode);
            selector.subMode.value = pOtherChild->Mode.SubMode;
            if (ModeEntry* pChild = pMode->FindMode(selector))
            {
                pairs.emplace_back(pChild, pOtherChild);
            }
        }
    }
}

VOID ContentReplacement::MergeMode(ModeEntry* pMode, ModeEntry* pOtherMode)
{
    // What was in a buffer cannot be read again, so the new modules are never unloaded.
    pOtherMode->Preserve = true;
    for (const auto& rpReference : pOtherMode->ModuleMap)
    {
        rpReference->Module->Data->Mode->Entry->Preserve = true;  // the owner of a shared one
        const ParameterModule* pReplaced                 = pMode->ReplaceModule(rpReference->Module);
        DefaultModule*         pDefault                  = m_rStore.Manager().GetDefaultModule(rpReference->NameHash);
        if (pReplaced == nullptr || pDefault == nullptr)
        {
            continue;
        }
        // Holders of the old record, and other modes that share it, keep it until the reload after next. A module that
        // is not in the list was set aside before, or came from yet another manager.
        if (std::unique_ptr<ParameterModule> pOld = pDefault->RemoveModule(pReplaced))
        {
            m_replacedModules.push_back(std::move(pOld));
        }
    }
}
