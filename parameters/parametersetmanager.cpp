#include "parameters/parametersetmanager.h"

#include <algorithm>
#include <vector>

#include "parameters/binaryfileformat.h"
#include "parameters/modepaths.h"
#include "parameters/parameterbinaryfile.h"
#include "parameters/parameterstore.h"
#include "parameters/parameterutils.h"
#include "parameters/tablemodule.h"
#include "schema/modules.h"
#include "schema/namehash.h"

namespace
{

/// All instances are made by the default instances of the store.
VOID* RecordOf(ParameterModule* pModule)
{
    return (pModule != nullptr) ? static_cast<TableModule*>(pModule)->Record() : nullptr;
}

/// The selectors of a path; none if it is not clean.
std::vector<TuningMode> BranchOf(const CHAR* pPath)
{
    std::vector<TuningMode> branch;
    if (!ModePaths::GetModeBranchFromPath(pPath, branch))
    {
        branch.clear();
    }
    return branch;
}

}  // namespace

ParameterSetManager::ParameterSetManager(const CHAR* pName, std::span<const tuning::ModuleDescription> modules,
                                         const Options& rOptions)
    : m_isDerived(false), m_pOwnStore(std::make_unique<ParameterStore>(*this, pName, modules, rOptions)),
      m_rStore(*m_pOwnStore), m_tableIndex(0)
{
}

ParameterSetManager::ParameterSetManager(ParameterSetManager* pMain, BYTE tableIndex)
    : m_isDerived(pMain != nullptr),
      m_pOwnStore((pMain == nullptr) ? std::make_unique<ParameterStore>(
                                           *this, nullptr, std::span<const tuning::ModuleDescription>(), Options())
                                     : nullptr),
      m_rStore((pMain != nullptr) ? pMain->m_rStore : *m_pOwnStore), m_tableIndex(tableIndex)
{
}

ParameterSetManager::~ParameterSetManager()
{
    StopLiveTuning();
    ParameterLogging::Write(this, ParameterLogging::Debug, "ParameterSetManager deleting\n");
    m_pOwnStore.reset();  // while its log lines can still ask this manager
}

ParameterSetManager* ParameterSetManager::GetMainSetManager()
{
    return &m_rStore.Manager();
}

bool ParameterSetManager::LoadBinaryParameters(const CHAR* pFileName)
{
    return m_rStore.LoadBinaryParameters(pFileName);
}

bool ParameterSetManager::LoadBinaryParameters(const BYTE* pBuffer, UINT64 length)
{
    return m_rStore.LoadBinaryParameters(pBuffer, length);
}

bool ParameterSetManager::ReloadBinaryParameters(bool bufferMode)
{
    return m_rStore.Replacement().ReloadBinaryParameters(bufferMode);
}

bool ParameterSetManager::UpdateParameters(std::unique_ptr<ParameterSetManager> pOther)
{
    return m_rStore.Replacement().UpdateParameters(std::move(pOther));
}

VOID ParameterSetManager::SetError(const CHAR* pText, const ModuleData* pModuleData)
{
    m_rStore.SetError(pText, pModuleData);
}

std::string ParameterSetManager::GetErrorText() const
{
    return m_rStore.GetErrorText();
}

const CHAR* ParameterSetManager::GetLoggingIdentifier() const
{
    return IsDerived() ? m_rStore.Manager().GetLoggingIdentifier() : m_rStore.GetLoggingIdentifier();
}

bool ParameterSetManager::LoggingEnabled(ParameterLogging::ParameterLogLevel level) const
{
    return IsDerived() ? m_rStore.Manager().LoggingEnabled(level) : m_rStore.LoggingEnabled(level);
}

ParameterMutex& ParameterSetManager::GetDataMutex()
{
    return m_rStore.DataMutex();
}

VOID ParameterSetManager::AddDefaultModule(std::unique_ptr<ParameterModule> pModule)
{
    if (IsDerived() || pModule == nullptr)
    {
        SetError("AddDefaultModule called on a derived set manager object");
        return;
    }
    (VOID) m_rStore.AddDefaultModule(std::move(pModule));
}

DefaultModule* ParameterSetManager::GetDefaultModule(UINT64 nameHash)
{
    DefaultModule* pModule = m_rStore.FindDefaultModule(nameHash);
    if (pModule == nullptr)
    {
        ParameterLogging::Write(this, ParameterLogging::Error, "Failed to find module 0x%llx in DefaultModuleMap\n",
                                nameHash);
    }
    return pModule;
}

VOID ParameterSetManager::SaveAndClearModules()
{
    IsDerived() ? m_rStore.Manager().SaveAndClearModules() : m_rStore.Replacement().SaveAndClearModules();
}

VOID ParameterSetManager::SaveAndClearModule(DefaultModule* pModule)
{
    IsDerived() ? m_rStore.Manager().SaveAndClearModule(pModule) : m_rStore.Replacement().SaveAndClearModule(pModule);
}

UINT32 ParameterSetManager::GetModeTableCount() const
{
    return IsDerived() ? m_rStore.Manager().GetModeTableCount() : m_rStore.GetModeTableCount();
}

VOID ParameterSetManager::GetModeTableNames(PList<const CHAR*>& rList) const
{
    IsDerived() ? m_rStore.Manager().GetModeTableNames(rList) : m_rStore.GetModeTableNames(rList);
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
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
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

bool ParameterSetManager::ModeTableEntryExists(const CHAR* pFileName, const CHAR* pTableName)
{
    if (pTableName == nullptr)
    {
        return false;
    }
    ParameterBinaryFile file(pFileName, nullptr);
    const TuningBlock   pWhole = file.Read(0, file.Length());
    BinaryFileHeader    header;
    BinaryFileSections  sections;
    UINT64              position = 0;
    std::string         errorText;
    if (pWhole == nullptr ||
        !BinaryFileFormat::ReadHeader(pWhole.get(), file.Length(), position, header, errorText, nullptr) ||
        header.Version.Version.Major < BinaryFileFormat::MultiModeTableVersion.Version.Major)
    {
        return false;
    }
    position = header.SectionTableOffset;
    if (!BinaryFileFormat::ReadSectionInfo(pWhole.get(), file.Length(), position, header.Alignment, header.SectionCount,
                                           sections, errorText, nullptr))
    {
        return false;
    }
    const UINT32 nameSize = BinaryFileFormat::GetModeTableNameSize(header.Version);
    for (const SectionInfo& rSection : sections.ModeTables)
    {
        UINT64 namePosition = rSection.Offset;
        if (ParameterUtils::ReadText(pWhole.get(), file.Length(), namePosition, nameSize, header.Alignment) ==
            pTableName)
        {
            return true;
        }
    }
    return false;
}

ModeEntryInfo* ParameterSetManager::GetModeEntry(UINT32 id)
{
    return m_rStore.GetModeEntry(id);
}

ModeEntry* ParameterSetManager::GetModeEntry(BYTE tableIndex, const TuningMode* pBranch, UINT32 count)
{
    const BYTE table = TableFor(tableIndex);
    return IsDerived() ? m_rStore.Manager().GetModeEntry(table, pBranch, count)
                       : m_rStore.GetModeEntry(table, pBranch, count);
}

ModeEntry* ParameterSetManager::GetModeEntry(BYTE tableIndex, const CHAR* pPath)
{
    std::vector<TuningMode> branch;
    if (!ModePaths::GetModeBranchFromPath(pPath, branch))
    {
        return nullptr;
    }
    return GetModeEntry(tableIndex, branch.data(), static_cast<UINT32>(branch.size()));
}

VOID ParameterSetManager::GetPathFromModeBranch(const TuningMode* pBranch, UINT32 count, CHAR* pText, size_t size)
{
    m_rStore.GetPathFromModeBranch(pBranch, count, pText, size);
}

bool ParameterSetManager::LoadMode(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pReason)
{
    return m_rStore.Modes().LoadMode(TableFor(tableIndex), pBranch, count, pReason);
}

bool ParameterSetManager::CanRead(BYTE tableIndex, const TuningMode* pBranch, UINT32 count)
{
    return m_rStore.Modes().CanRead(TableFor(tableIndex), pBranch, count);
}

bool ParameterSetManager::UnloadMode(BYTE tableIndex, const TuningMode* pBranch, UINT32 count)
{
    return m_rStore.Modes().UnloadMode(TableFor(tableIndex), pBranch, count);
}

ParameterModule* ParameterSetManager::GetModuleInternal(BYTE tableIndex, const CHAR* pName, const TuningMode* pBranch,
                                                        UINT32 count, ParameterModule* pPrevious)
{
    return GetModuleInternal(tableIndex, pName, namehash::OfName(pName), pBranch, count, pPrevious);
}

ParameterModule* ParameterSetManager::GetModuleInternal(BYTE tableIndex, const CHAR* pName, UINT64 nameHash,
                                                        const TuningMode* pBranch, UINT32 count,
                                                        ParameterModule* pPrevious)
{
    return m_rStore.FetchModule(TableFor(tableIndex), pName, nameHash, pBranch, count, pPrevious);
}

VOID* ParameterSetManager::GetModuleRecord(const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch, UINT32 count,
                                           VOID* pPreviousRecord)
{
    return RecordOf(
        m_rStore.FetchModule(m_tableIndex, pName, nameHash, pBranch, count, TableModule::FromRecord(pPreviousRecord)));
}

VOID* ParameterSetManager::KeepModuleRecord(const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch, UINT32 count)
{
    return KeepModuleRecord(pName, nameHash, pBranch, count, nullptr);
}

VOID* ParameterSetManager::KeepModuleRecord(const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch, UINT32 count,
                                            LookupStamp* pStamp)
{
    return RecordOf(m_rStore.KeepModule(m_tableIndex, pName, nameHash, pBranch, count, IsDerived() ? nullptr : pStamp));
}

VOID ParameterSetManager::GetModules(BYTE tableIndex, PList<ParameterModule*>& rList, const TuningMode* pBranch,
                                     UINT32 count, bool local, bool inherited, const PipelineType* pPipeline)
{
    m_rStore.GetModules(TableFor(tableIndex), rList, pBranch, count, local, inherited, pPipeline);
}

VOID ParameterSetManager::ReleaseModule(ParameterModule* pModule)
{
    const auto logMissing = [this, pModule](const CHAR* pWhat)
    {
        ParameterLogging::Write(
            this, ParameterLogging::Error,
            "Attempt to release module with a nullptr %s object.  Mode: %d, SubMode: %d, Module %s\n", pWhat,
            pModule->Mode.Mode, pModule->Mode.SubMode, pModule->GetModuleName());
    };
    if (pModule->Data == nullptr)
    {
        logMissing("Data");
    }
    else if (pModule->Data->Mode == nullptr)
    {
        logMissing("Data->Mode");
    }
    else if (m_rStore.IsFileMode())
    {
        pModule->Data->Mode->Entry->ReleaseReference(pModule);
    }
}

VOID ParameterSetManager::ReleaseModules(PList<ParameterModule*>& rList)
{
    for (UINT32 index = 0; index < rList.Count(); ++index)
    {
        rList[index]->Release();
    }
    rList.Clear();
}

bool ParameterSetManager::GetValue(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pModuleText,
                                   const CHAR* pMembers, CHAR* pValue, UINT32 size)
{
    return m_rStore.Values().GetValue(TableFor(tableIndex), pBranch, count, pModuleText, pMembers, pValue, size);
}

bool ParameterSetManager::SetValue(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pModuleText,
                                   const CHAR* pName, const CHAR* pValue)
{
    return m_rStore.Values().SetValue(TableFor(tableIndex), pBranch, count, pModuleText, pName, pValue);
}

bool ParameterSetManager::GetInfo(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pPath,
                                  PList<ParameterParserInfo>& rList)
{
    return m_rStore.Values().GetInfo(TableFor(tableIndex), pBranch, count, pPath, rList);
}

bool ParameterSetManager::GetValue(BYTE tableIndex, const CHAR* pModePath, const CHAR* pModuleText,
                                   const CHAR* pMembers, CHAR* pValue, UINT32 size)
{
    const std::vector<TuningMode> branch = BranchOf(pModePath);
    return GetValue(tableIndex, branch.data(), static_cast<UINT32>(branch.size()), pModuleText, pMembers, pValue, size);
}

bool ParameterSetManager::SetValue(BYTE tableIndex, const CHAR* pModePath, const CHAR* pModuleText, const CHAR* pName,
                                   const CHAR* pValue)
{
    const std::vector<TuningMode> branch = BranchOf(pModePath);
    return SetValue(tableIndex, branch.data(), static_cast<UINT32>(branch.size()), pModuleText, pName, pValue);
}

bool ParameterSetManager::GetInfo(BYTE tableIndex, const CHAR* pModePath, const CHAR* pPath,
                                  PList<ParameterParserInfo>& rList)
{
    const std::vector<TuningMode> branch = BranchOf(pModePath);
    return GetInfo(tableIndex, branch.data(), static_cast<UINT32>(branch.size()), pPath, rList);
}

bool ParameterSetManager::GetActiveModes(BYTE tableIndex, CHAR* pText, UINT32 size)
{
    const BYTE table = TableFor(tableIndex);
    return IsDerived() ? m_rStore.Manager().GetActiveModes(table, pText, size)
                       : m_rStore.Values().GetActiveModes(table, pText, size);
}

bool ParameterSetManager::GetModeShorthand(const CHAR* pPath, CHAR* pText, UINT32 size)
{
    return ModePaths::GetModeShorthand(pPath, pText, size);
}

UINT32 ParameterSetManager::GetChildModes(BYTE tableIndex, const CHAR* pPath, CHAR* pText, UINT32 size)
{
    const BYTE table = TableFor(tableIndex);
    return IsDerived() ? m_rStore.Manager().GetChildModes(table, pPath, pText, size)
                       : m_rStore.Values().GetChildModes(table, pPath, pText, size);
}

UINT32 ParameterSetManager::GetSetValueCount() const
{
    return m_rStore.Values().GetSetValueCount();
}
