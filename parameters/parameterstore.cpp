#include "parameters/parameterstore.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "parameters/live/parametervernierworker.h"
#include "parameters/parameterfilesymboltable.h"
#include "parameters/tablemodule.h"
#include "schema/modules.h"

ParameterStore::ParameterStore(ParameterSetManager& rManager, const CHAR* pName,
                               std::span<const tuning::ModuleDescription> modules, const Options& rOptions)
    : m_rManager(rManager), m_options(rOptions), m_modes(*this, rOptions.activeModeCacheSize), m_values(*this),
      m_name((pName != nullptr) ? pName : ""), m_modules(modules), m_replacement(*this)
{
    ForgetLookups();
    PublishLoggingIdentifier(m_name);
    if (rOptions.liveTuning)
    {
        m_pWorker = std::make_unique<ParameterVernierWorker>(&rManager);
    }
}

ParameterStore::~ParameterStore()
{
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    m_replacement.Clear();
    FreeBinaryParameters();
}

DefaultModule* ParameterStore::AddDefaultModule(std::unique_ptr<ParameterModule> pModule)
{
    const UINT64                          nameHash = pModule->NameHash;
    std::unique_ptr<DefaultModule>        pDefault = std::make_unique<DefaultModule>(std::move(pModule));
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    return (m_defaultModules[nameHash] = std::move(pDefault)).get();
}

DefaultModule* ParameterStore::FindDefaultModule(UINT64 nameHash)
{
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    if (const auto known = m_defaultModules.find(nameHash); known != m_defaultModules.end())
    {
        return known->second.get();
    }
    // A file holds few of the modules that there are, so that each is made when it is first met.
    const auto isNamed = [nameHash](const tuning::ModuleDescription& rModule) { return rModule.nameHash == nameHash; };
    const auto described = std::find_if(m_modules.begin(), m_modules.end(), isNamed);
    std::unique_ptr<ParameterModule> pModule;
    if (described != m_modules.end())
    {
        pModule = TableModule::Make(*described, nullptr);
    }
    return (pModule != nullptr) ? AddDefaultModule(std::move(pModule)) : nullptr;
}

VOID ParameterStore::SetError(const CHAR* pText, const ModuleData* pModuleData)
{
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
    ParameterLogging::Write(&m_rManager, ParameterLogging::Error, "%s", text);
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    m_errorText = text;
}

VOID ParameterStore::Refuse(const CHAR* pFormat, ...)
{
    CHAR    text[BinaryFileFormat::MaxErrorText];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(text, sizeof(text), pFormat, arguments);
    va_end(arguments);
    ParameterLogging::Write(&m_rManager, ParameterLogging::Error, "%s", text);

    std::string reason(text);
    if (reason.ends_with('\n'))
    {
        reason.pop_back();
    }
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    m_errorText = std::move(reason);
}

std::string ParameterStore::GetErrorText() const
{
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    return m_errorText;
}

VOID ParameterStore::PublishLoggingIdentifier(const std::string& rText)
{
    // Texts of a set stay in place until it goes, and a reload mostly brings back one that is there.
    m_pLoggingIdentifier.store(m_loggingIdentifiers.insert(rText).first->c_str(), std::memory_order_release);
}

bool ParameterStore::LoggingEnabled(ParameterLogging::ParameterLogLevel level) const
{
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

UINT32 ParameterStore::GetModeTableCount() const
{
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    return static_cast<UINT32>(m_content.modeTables.size());
}

VOID ParameterStore::GetModeTableNames(PList<const CHAR*>& rList) const
{
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    for (const auto& rpTable : m_content.modeTables)
    {
        rList.Add(rpTable->Name.c_str());
    }
}
