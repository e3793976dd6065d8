#include "tools/hostilefiles/storeuser.h"

#include <string>

#include "parameters/modeentry.h"
#include "parameters/tablemodule.h"
#include "tools/hostilefiles/recordreader.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/modepath.h"

namespace hostilefiles
{

VOID StoreUser::UseAll()
{
    std::vector<std::string>                 notes;
    const std::vector<tuningfile::ModeTable> tables = tuningfile::ReadModeTables(m_rStore, notes);
    for (size_t table = 0; table < tables.size(); ++table)
    {
        for (UINT32 mode = 0; mode < tables[table].modes.size(); ++mode)
        {
            UseBranch(static_cast<BYTE>(table), tuningfile::BranchOf(tables[table], mode));
        }
    }
}

VOID StoreUser::UseBranch(BYTE table, const std::vector<TuningMode>& rBranch)
{
    const UINT32 count = static_cast<UINT32>(rBranch.size());
    if (m_plan.loadsModes)
    {
        const UINT64 complaints = Complaints();
        (VOID) m_rStore.LoadMode(table, rBranch.data(), count, "campaign");
        m_findings.isDoubted = m_findings.isDoubted || Complaints() > complaints;
    }
    std::vector<ParameterModule*> held;
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        const UINT64     complaints = Complaints();
        const bool       isOwn      = IsModuleOf(table, rBranch, rModule);
        ParameterModule* pModule =
            m_rStore.GetModuleInternal(table, rModule.pName, rModule.nameHash, rBranch.data(), count, nullptr);
        const bool isDoubted = Complaints() > complaints;
        m_findings.isDoubted = m_findings.isDoubted || isDoubted;
        if (pModule == nullptr)
        {
            // A module that is there and cannot be had is nothing that a store may keep to itself.
            m_findings.withheld += isOwn ? 1 : 0;
            m_findings.isReticent = m_findings.isReticent || (isOwn && !isDoubted);
            continue;
        }
        held.push_back(pModule);
        ++m_findings.fetched;
        // What a mode has from those above is read there.
        if (isOwn && rModule.pRecord != nullptr)
        {
            UseModule(table, rBranch, rModule, *pModule);
        }
    }
    for (ParameterModule* pModule : held)
    {
        m_rStore.ReleaseModule(pModule);
    }
    AskOfEachModule(table, rBranch);
    (VOID) m_rStore.GetActiveModes(table, m_questions.Answer(), TextQuestions::AnswerSize);
    (VOID) m_rStore.GetChildModes(table, "0.0", m_questions.Answer(), TextQuestions::AnswerSize);
    if (m_plan.loadsModes && m_rRandom() % 2 == 0)
    {
        (VOID) m_rStore.UnloadMode(table, rBranch.data(), count);
        AskOfEachModule(table, rBranch);
    }
}

/// Those that the mode has from above, too: the text operations find them by their names.
VOID StoreUser::AskOfEachModule(BYTE table, const std::vector<TuningMode>& rBranch)
{
    if (!m_plan.recordMax.has_value())
    {
        return;
    }
    PList<ParameterModule*> modules;
    (VOID)
        m_rStore.GetModules(table, modules, rBranch.data(), static_cast<UINT32>(rBranch.size()), true, true, nullptr);
    for (UINT32 index = 0; index < modules.Count(); ++index)
    {
        m_questions.AskAll(table, rBranch, modules[index]->GetModuleName());
    }
    m_rStore.ReleaseModules(modules);
}

VOID StoreUser::UseModule(BYTE table, const std::vector<TuningMode>& rBranch, const tuning::ModuleDescription& rModule,
                          ParameterModule& rLoaded)
{
    const VOID* pRecord = static_cast<TableModule&>(rLoaded).Record();
    m_sum += RecordReader().Read(*rModule.pRecord, static_cast<const BYTE*>(pRecord));
    if (!m_plan.recordMax.has_value())
    {
        m_questions.AskOne(table, rBranch, rModule.pName, m_rRandom);
    }
}

bool StoreUser::IsModuleOf(BYTE table, const std::vector<TuningMode>& rBranch, const tuning::ModuleDescription& rModule)
{
    ModeEntry* pMode = m_rStore.GetModeEntry(table, rBranch.data(), static_cast<UINT32>(rBranch.size()));
    return pMode != nullptr && pMode->FindModule(rModule.nameHash) != nullptr;
}

}  // namespace hostilefiles
