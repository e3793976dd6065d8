#include "parameters/parametersetmanager.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "parameters/live/parametervernierworker.h"
#include "parameters/parameterfilesymboltable.h"
#include "parameters/tablemodule.h"
#include "schema/modules.h"

ParameterSetManager::ParameterSetManager(const CHAR* pName, std::span<const tuning::ModuleDescription> modules,
                                         const Options& rOptions)
    : m_pMain(nullptr), m_modeTableIndex(0), m_options(rOptions), m_name((pName != nullptr) ? pName : ""),
      m_modules(modules)
{
    PublishLoggingIdentifier(m_name);
    for (const tuning::ModuleDescription& rDescription : modules)
    {
        AddDefaultModule(TableModule::Make(rDescription, nullptr));
    }
    if (rOptions.liveTuning)
    {
        m_pWorker = std::make_unique<ParameterVernierWorker>(this);
    }
}

ParameterSetManager::ParameterSetManager(ParameterSetManager* pMain, BYTE tableIndex)
    : m_pMain(pMain), m_modeTableIndex(tableIndex)
{
}

ParameterSetManager::~ParameterSetManager()
{
    StopLiveTuning();
    ParameterLogging::Write(this, ParameterLogging::Debug, "ParameterSetManager deleting\n");
    if (IsDerived())
    {
        return;
    }
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    m_replacedModules.clear();
    FreeReplacedParameters();
    FreeBinaryParameters();
    m_merged.clear();
}

ParameterSetManager* ParameterSetManager::GetMainSetManager()
{
    ParameterSetManager* pManager = this;
    while (pManager->m_pMain != nullptr)
    {
        pManager = pManager->m_pMain;
    }
    return pManager;
}

VOID ParameterSetManager::AddDefaultModule(std::unique_ptr<ParameterModule> pModule)
{
    if (IsDerived() || pModule == nullptr)
    {
        SetError("AddDefaultModule called on a derived set manager object");
        return;
    }
    const UINT64 nameHash      = pModule->NameHash;
    m_defaultModules[nameHash] = std::make_unique<DefaultModule>(std::move(pModule));
}

DefaultModule* ParameterSetManager::FindDefaultModule(UINT64 nameHash)
{
    const auto& rModules = GetMainSetManager()->m_defaultModules;
    const auto  found    = rModules.find(nameHash);
    return (found != rModules.end()) ? found->second.get() : nullptr;
}

DefaultModule* ParameterSetManager::GetDefaultModule(UINT64 nameHash)
{
    DefaultModule* pModule = FindDefaultModule(nameHash);
    if (pModule == nullptr)
    {
        ParameterLogging::Write(this, ParameterLogging::Error, "Failed to find module 0x%llx in DefaultModuleMap\n",
                                nameHash);
    }
    return pModule;
}

VOID ParameterSetManager::SetError(const CHAR* pText, const ModuleData* pModuleData)
{
    if (IsDerived())
    {
        m_pMain->SetError(pText, pModuleData);
        return;
    }
    CHAR text[BinaryFileFormat::MaxErrorText];
    if (pModuleData == nullptr)
    {
        std::snprintf(text, sizeof(text), "%s", pText);
    }
    else
    {
        const auto&          rVersion = pModuleData->Version.Version;
        const DefaultModule* pModule  = FindDefaultModule(pModuleData->NameHash);
        if (pModule != nullptr)
        {
            std::snprintf(text, sizeof(text), "%s Name: %s, Major: %u, Minor: %u, Patch: %u, Mode: %u", pText,
                          pModule->DefaultInstance().GetModuleName(), rVersion.Major, rVersion.Minor, rVersion.Patch,
                          pModuleData->ModeId);
        }
        else
        {
            std::snprintf(text, sizeof(text), "%s Name Hash: %llx, Major: %u, Minor: %u, Patch: %u, Mode: %u", pText,
                          pModuleData->NameHash, rVersion.Major, rVersion.Minor, rVersion.Patch, pModuleData->ModeId);
        }
    }
    ParameterLogging::Write(this, ParameterLogging::Error, "%s", text);
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    m_errorText = text;
}

VOID ParameterSetManager::Refuse(const CHAR* pFormat, ...)
{
    CHAR    text[BinaryFileFormat::MaxErrorText];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(text, sizeof(text), pFormat, arguments);
    va_end(arguments);
    ParameterLogging::Write(this, ParameterLogging::Error, "%s", text);

    std::string reason(text);
    if (reason.ends_with('\n'))
    {
        reason.pop_back();
    }
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    m_errorText = std::move(reason);
}

std::string ParameterSetManager::GetErrorText() const
{
    if (IsDerived())
    {
        return m_pMain->GetErrorText();
    }
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    return m_errorText;
}

const CHAR* ParameterSetManager::GetLoggingIdentifier() const
{
    return IsDerived() ? m_pMain->GetLoggingIdentifier() : m_pLoggingIdentifier.load(std::memory_order_acquire);
}

VOID ParameterSetManager::PublishLoggingIdentifier(const std::string& rText)
{
    // Texts of a set stay in place until it goes, and a reload mostly brings back one that is there.
    m_pLoggingIdentifier.store(m_loggingIdentifiers.insert(rText).first->c_str(), std::memory_order_release);
}

ParameterMutex& ParameterSetManager::GetDataMutex()
{
    return GetMainSetManager()->m_dataMutex;
}

bool ParameterSetManager::LoggingEnabled(ParameterLogging::ParameterLogLevel level) const
{
    if (IsDerived())
    {
        return m_pMain->LoggingEnabled(level);
    }
    switch (level)
    {
    case ParameterLogging::Error:
        return m_options.logErrors;
    case ParameterLogging::Warning:
        return m_options.logWarnings;
    case ParameterLogging::Debug:
        return m_options.logDebug;
    default:
        return true;
    }
}

UINT32 ParameterSetManager::GetModeTableCount() const
{
    if (IsDerived())
    {
        return m_pMain->GetModeTableCount();
    }
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    return static_cast<UINT32>(m_content.modeTables.size());
}

VOID ParameterSetManager::GetModeTableNames(PList<const CHAR*>& rList) const
{
    if (IsDerived())
    {
        m_pMain->GetModeTableNames(rList);
        return;
    }
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    for (const auto& rpTable : m_content.modeTables)
    {
        rList.Add(rpTable->Name.c_str());
    }
}

bool ParameterSetManager::HasTableForDerived(BYTE tableIndex) const
{
    if (tableIndex < GetModeTableCount())
    {
        return true;
    }
    ParameterLogging::Write(this, ParameterLogging::Error, "%s called mode table index (%u) >= mode table count (%u)\n",
                            "CreateSetManager", tableIndex, GetModeTableCount());
    return false;
}

bool ParameterSetManager::FindTableForDerived(const CHAR* pTableName, BYTE& rTableIndex)
{
    if (pTableName == nullptr)
    {
        return false;
    }
    constexpr UINT32                      MaxTables = 256;  // what mode IDs and callers can address
    const std::lock_guard<ParameterMutex> lock(GetMainSetManager()->m_dataMutex);
    PList<const CHAR*>                    names;
    GetModeTableNames(names);
    for (UINT32 index = 0; index < std::min(names.Count(), MaxTables); ++index)
    {
        if (std::string_view(names[index]) == pTableName)
        {
            rTableIndex = static_cast<BYTE>(index);
            return true;
        }
    }
    ParameterLogging::Write(this, ParameterLogging::Error, "%s unable to find mode table %s\n", "CreateSetManager",
                            pTableName);
    return false;
}
