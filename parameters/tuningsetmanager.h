/// @file
/// The tuning stores that hosts construct, with one typed accessor per tuning module.
///
/// A host makes a TuningSetManager, loads a file, and hands the manager to the core in a StatsTuningData together with
/// the selectors of the current mode path: seven TuningMode, one per ModeType in the order of the enumeration.
#pragma once

#include <memory>

#include "parameters/parametersetmanager.h"
#include "parameters/tablemodule.h"
#include "schema/namehash.h"

// A caller of an accessor includes the header of the module's record, schema/<name>.h; this one does without them all.
#define TUNING_MODULE(name, RecordType, major, minor, patch)                                                           \
    namespace name                                                                                                     \
    {                                                                                                                  \
    struct RecordType;                                                                                                 \
    }
#define TUNING_MODULE_BARE(name, major, minor, patch)
#include "schema/fdmodules.def"
#include "schema/imagesensormodules.def"
#include "schema/modules.def"
#undef TUNING_MODULE
#undef TUNING_MODULE_BARE

/// The accessors: the record of the deepest mode on the branch that has the module.
/// @param pBranch   selectors, Default first; null gives the Default variant
/// @param count     of selectors
/// @param pPrevious a record of the same accessor whose reference is given back, after the new one is taken; may be
/// null
/// @return null if no mode on the branch has the module or it could not be read. A record stays valid while its
///         reference is held, at most until the manager is reloaded twice or destroyed. References are counted in file
///         mode; one is given back through pPrevious, or by TableModule::FromRecord(pRecord)->Release().
#define TUNING_ACCESSOR(name, Type)                                                                                    \
    Type* GetModule_##name(const TuningMode* pBranch, UINT32 count, Type* pPrevious)                                   \
    {                                                                                                                  \
        constexpr UINT64 NameHash = namehash::OfName(#name);                                                           \
        return static_cast<Type*>(GetModuleRecord(#name, NameHash, pBranch, count, pPrevious));                        \
    }
#define TUNING_MODULE(name, RecordType, major, minor, patch) TUNING_ACCESSOR(name, name::RecordType)
#define TUNING_MODULE_BARE(name, major, minor, patch) TUNING_ACCESSOR(name, BareModuleType)

/// What the stores have in common.
class TAVO_VISIBLE ModuleSetManager : public ParameterSetManager
{
public:
    ~ModuleSetManager() override;

    /// Replacing single modules from a buffer is not part of this build: always false.
    bool UpdateBinaryParameters(const BYTE* pBuffer, UINT64 length);

protected:
    /// A main manager. @param pClassName for messages; must outlive the manager, as must modules
    ModuleSetManager(const CHAR* pClassName, const CHAR* pName, std::span<const tuning::ModuleDescription> modules,
                     const Options& rOptions);

    /// A derived manager.
    ModuleSetManager(const CHAR* pClassName, ParameterSetManager* pMain, BYTE tableIndex);

private:
    const CHAR* const m_pClassName;
};

/// What makes further managers of its own kind.
template <typename Manager> class SetManagerOf : public ModuleSetManager
{
public:
    /// Makes a derived manager for another mode table, on the main manager, which must outlive it.
    /// @return null, with a log, if there is no such table
    std::unique_ptr<Manager> CreateSetManager(BYTE tableIndex)
    {
        return HasTableForDerived(tableIndex) ? std::make_unique<Manager>(GetMainSetManager(), tableIndex) : nullptr;
    }

    std::unique_ptr<Manager> CreateSetManager(const CHAR* pTableName)
    {
        BYTE tableIndex = 0;
        return FindTableForDerived(pTableName, tableIndex) ? std::make_unique<Manager>(GetMainSetManager(), tableIndex)
                                                           : nullptr;
    }

protected:
    using ModuleSetManager::ModuleSetManager;
};

/// The tuning of image processing, exposure, focus and white balance. Serves tuning tools from the first load on,
/// unless SetLiveTuningAutostart forbids it.
class TAVO_VISIBLE TuningSetManager : public SetManagerOf<TuningSetManager>
{
public:
    /// @param pName of the camera, for log lines; may be null
    explicit TuningSetManager(const CHAR* pName);

    /// A derived manager for a further mode table. @param pMain must outlive it
    TuningSetManager(ParameterSetManager* pMain, BYTE tableIndex);

    ~TuningSetManager() override;

#include "schema/modules.def"
};

/// What is known of the camera module: sensor, actuator, flash, EEPROM.
class TAVO_VISIBLE ImageSensorModuleSetManager : public SetManagerOf<ImageSensorModuleSetManager>
{
public:
    explicit ImageSensorModuleSetManager(const CHAR* pName);
    ImageSensorModuleSetManager(ParameterSetManager* pMain, BYTE tableIndex);

#include "schema/imagesensormodules.def"
};

/// The settings of face detection.
class TAVO_VISIBLE fdSetManager : public SetManagerOf<fdSetManager>
{
public:
    explicit fdSetManager(const CHAR* pName);
    fdSetManager(ParameterSetManager* pMain, BYTE tableIndex);

#include "schema/fdmodules.def"
};

#undef TUNING_MODULE
#undef TUNING_MODULE_BARE
#undef TUNING_ACCESSOR
