#include "parameters/moduledata.h"

#include "parameters/binaryfileformat.h"
#include "parameters/modeentry.h"
#include "parameters/parameterlogging.h"

ModuleData::ModuleData(UINT64 nameHash, UINT32 id, UINT32 duplicateId, const VersionUnion& rVersion, UINT32 modeId,
                       IModeTable* pModeTable, ParameterSetManager* pSetManager, ParameterFileSymbolTable* pSymbolTable,
                       const IParameterLoggingAPI* pLog)
    : NameHash(nameHash), ID(id), DuplicateID(duplicateId), Version(rVersion), ModeId(modeId), SetManager(pSetManager),
      SymbolTable(pSymbolTable)
{
    if (pModeTable == nullptr)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "ModuleData called with nullptr modeTable parameter\n");
    }
    else
    {
        Mode = pModeTable->GetModeEntry(modeId);
        if (Mode == nullptr || Mode->Entry == nullptr)
        {
            Mode = nullptr;
            ParameterLogging::Write(pLog, ParameterLogging::Error,
                                    "Failed to find ModeID %d in mode table when creating ModuleData\n", modeId);
        }
    }
    if (Mode == nullptr)
    {
        m_pStandInMode        = std::make_unique<ModeEntry>();
        m_pStandInInfo        = std::make_unique<ModeEntryInfo>();
        m_pStandInInfo->Entry = m_pStandInMode.get();
        Mode                  = m_pStandInInfo.get();
    }
}

ModuleData::~ModuleData() = default;

UINT32 ModuleData::GetModeTableIndex() const
{
    return BinaryFileFormat::GetModeTableIndex(ModeId);
}

UINT32 ModuleData::GetModeIDValue() const
{
    return BinaryFileFormat::GetModeIDValue(ModeId);
}

VOID ModuleData::GetModePath(CHAR* pText, size_t size) const
{
    Mode->Entry->GetModePath(pText, size);
}
