#include "parameters/tuningsetmanager.h"

#include "schema/modules.h"

namespace
{

/// The schema tool whose records and messages this store carries.
constexpr const CHAR* ToolVersion = "Parameter Parser V7.4.1";

} // namespace

ModuleSetManager::ModuleSetManager(const CHAR* pClassName, const CHAR* pName,
                                   std::span<const tuning::ModuleDescription> modules)
    : ParameterSetManager(pName, modules, Options{}), m_pClassName(pClassName)
{
    ParameterLogging::Write(this, ParameterLogging::Debug, "%s constructed: %s\n", pClassName, ToolVersion);
}

ModuleSetManager::ModuleSetManager(const CHAR* pClassName, ParameterSetManager* pMain, BYTE tableIndex)
    : ParameterSetManager(pMain, tableIndex), m_pClassName(pClassName)
{
    if (pMain == nullptr)
    {
        ParameterLogging::Write(this, ParameterLogging::Error, "%s called with null main parameter\n", pClassName);
    }
}

ModuleSetManager::~ModuleSetManager()
{
    ParameterLogging::Write(this, ParameterLogging::Debug, "%s deleting\n", m_pClassName);
}

bool ModuleSetManager::UpdateBinaryParameters(const BYTE*, UINT64)
{
    ParameterLogging::Write(this, ParameterLogging::Error,
                            "%s not available.  To enable, add --update when generating parser utility code\n",
                            "UpdateBinaryParameters");
    return false;
}

bool ModuleSetManager::FindTableForDerived(UINT32 tableIndex) const
{
    return HasModeTable("CreateSetManager", tableIndex);
}

bool ModuleSetManager::FindTableForDerived(const CHAR* pTableName, BYTE& rTableIndex) const
{
    return pTableName != nullptr && FindModeTable("CreateSetManager", pTableName, rTableIndex);
}

TuningSetManager::TuningSetManager(const CHAR* pName)
    : ModuleSetManager("TuningSetManager", pName, tuning::TuningModules)
{
}

TuningSetManager::TuningSetManager(ParameterSetManager* pMain, BYTE tableIndex)
    : ModuleSetManager("TuningSetManager", pMain, tableIndex)
{
}

std::unique_ptr<TuningSetManager> TuningSetManager::CreateSetManager(BYTE tableIndex)
{
    return MakeDerived<TuningSetManager>(tableIndex);
}

std::unique_ptr<TuningSetManager> TuningSetManager::CreateSetManager(const CHAR* pTableName)
{
    return MakeDerived<TuningSetManager>(pTableName);
}

ImageSensorModuleSetManager::ImageSensorModuleSetManager(const CHAR* pName)
    : ModuleSetManager("ImageSensorModuleSetManager", pName, tuning::ImageSensorModules)
{
}

ImageSensorModuleSetManager::ImageSensorModuleSetManager(ParameterSetManager* pMain, BYTE tableIndex)
    : ModuleSetManager("ImageSensorModuleSetManager", pMain, tableIndex)
{
}

std::unique_ptr<ImageSensorModuleSetManager> ImageSensorModuleSetManager::CreateSetManager(BYTE tableIndex)
{
    return MakeDerived<ImageSensorModuleSetManager>(tableIndex);
}

std::unique_ptr<ImageSensorModuleSetManager> ImageSensorModuleSetManager::CreateSetManager(const CHAR* pTableName)
{
    return MakeDerived<ImageSensorModuleSetManager>(pTableName);
}

fdSetManager::fdSetManager(const CHAR* pName) : ModuleSetManager("fdSetManager", pName, tuning::FaceDetectionModules)
{
}

fdSetManager::fdSetManager(ParameterSetManager* pMain, BYTE tableIndex)
    : ModuleSetManager("fdSetManager", pMain, tableIndex)
{
}

std::unique_ptr<fdSetManager> fdSetManager::CreateSetManager(BYTE tableIndex)
{
    return MakeDerived<fdSetManager>(tableIndex);
}

std::unique_ptr<fdSetManager> fdSetManager::CreateSetManager(const CHAR* pTableName)
{
    return MakeDerived<fdSetManager>(pTableName);
}
