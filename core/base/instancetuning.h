/// @file
/// The tuning of an instance, and the records that it has found there.
#pragma once

#include <cstring>

#include "interface/statstuningdata.h"
#include "parameters/tuningsetmanager.h"

/// Modules that have a record, under their names.
enum class RecordModule : UINT32
{
#define TUNING_MODULE(name, RecordType, major, minor, patch) name,
#define TUNING_MODULE_BARE(name, major, minor, patch)
#include "schema/modules.def"
#undef TUNING_MODULE
#undef TUNING_MODULE_BARE
    Count
};

/// What the host has set. A frame asks for the same two dozen records as the frame before: as long as store and path
/// stand as they did, the answers are the same, and the store is not asked for them. A path has a selector of each
/// level; records on other paths are looked up each time.
class InstanceTuning : public StatsTuningData
{
public:
    InstanceTuning() : StatsTuningData{}
    {
    }

    InstanceTuning& operator=(const StatsTuningData& rTuningData);

    /// @param pName    of the module
    /// @param nameHash namehash::OfName(pName)
    /// @return as KeepModuleRecord
    [[gnu::noinline]] VOID* Record(RecordModule module, const CHAR* pName, UINT64 nameHash)
    {
        VOID* pRecord = m_pRecords[static_cast<UINT32>(module)];
        return (pRecord != nullptr && IsAsBefore()) ? pRecord : LookUp(module, pName, nameHash);
    }

private:
    static constexpr UINT32 PathLength = static_cast<UINT32>(ModeType::EnumModeType_COUNT);

    /// Of an instance that remembers records. A host may change the selectors where they lie.
    bool IsAsBefore() const
    {
        return m_stamp.IsCurrent() && std::memcmp(pTuningModeSelectors, m_path, sizeof(m_path)) == 0;
    }

    // Apart from Record(), which saves no registers then.
    [[gnu::noinline]] VOID* LookUp(RecordModule module, const CHAR* pName, UINT64 nameHash);

    LookupStamp m_stamp                                              = {};  ///< as of which the records were found
    BYTE        m_path[PathLength * sizeof(TuningMode)]              = {};  ///< along which: the selectors as they lay
    VOID*       m_pRecords[static_cast<UINT32>(RecordModule::Count)] = {};  ///< null where none is remembered
};
