#include "parameters/tuningsetmanager.h"

#include "schema/modules.h"

namespace
{

/// The schema tool whose records and messages this store carries.
constexpr const CHAR* ToolVersion = "Parameter Parser V7.4.1";

}  // namespace

ModuleSetManager::ModuleSetManager(const CHAR* pClassName, const CHAR* pName,
                                   std::span<const tuning::ModuleDescription> modules, const Options& rOptions)
    : ParameterSetManager(pName, modules, rOptions), m_pClassName(pClassName)
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

TuningSetManager::TuningSetManager(const CHAR* pName)
    : SetManagerOf("TuningSetManager", pName, tuning::TuningModules, {.liveTuning = true})
{
}

TuningSetManager::TuningSetManager(ParameterSetManager* pMain, BYTE tableIndex)
    : SetManagerOf("TuningSetManager", pMain, tableIndex)
{
}

TuningSetManager::~TuningSetManager()
{
    StopLiveTuning();
}

ImageSensorModuleSetManager::ImageSensorModuleSetManager(const CHAR* pName)
    : SetManagerOf("ImageSensorModuleSetManager", pName, tuning::ImageSensorModules, {})
{
}

ImageSensorModuleSetManager::ImageSensorModuleSetManager(ParameterSetManager* pMain, BYTE tableIndex)
    : SetManagerOf("ImageSensorModuleSetManager", pMain, tableIndex)
{
}

fdSetManager::fdSetManager(const CHAR* pName) : SetManagerOf("fdSetManager", pName, tuning::FaceDetectionModules, {})
{
}

fdSetManager::fdSetManager(ParameterSetManager* pMain, BYTE tableIndex)
    : SetManagerOf("fdSetManager", pMain, tableIndex)
{
}
