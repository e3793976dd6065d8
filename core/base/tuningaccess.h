/// @file
/// Fetching tuning records. tuningaccess::Get_<module>(tuningData) yields the record of the deepest mode on the current
/// path that holds the module, or null if not even the Default mode has it; Require_<module> yields a record of zeros
/// then, so that a file that lacks a module switches the feature off rather than stopping the camera.
#pragma once

#include "core/base/instancetuning.h"
#include "schema/namehash.h"

namespace tuningaccess
{

/// @return the record; for null a record of zeros, the same one at each call
template <typename Record> const Record& OrZeros(const Record* pRecord)
{
    static const Record absent{};
    return (pRecord != nullptr) ? *pRecord : absent;
}

// No reference is ever given back: a record that the core has read once stays, with what a tool has edited in it, over
// all changes of mode. A caller includes the header of the module's record, schema/<module>.h; Require_ is a template
// so that this one does without them all.
#define TUNING_MODULE(name, RecordType, major, minor, patch)                                                           \
    inline name::RecordType* Get_##name(const StatsTuningData& rTuningData)                                            \
    {                                                                                                                  \
        constexpr UINT64 NameHash = namehash::OfName(#name);                                                           \
        return static_cast<name::RecordType*>(                                                                         \
            static_cast<TuningSetManager*>(rTuningData.pTuningSetManager)                                              \
                ->KeepModuleRecord(#name, NameHash, static_cast<const TuningMode*>(rTuningData.pTuningModeSelectors),  \
                                   rTuningData.numSelectors));                                                         \
    }                                                                                                                  \
    inline name::RecordType* Get_##name(InstanceTuning& rTuning)                                                       \
    {                                                                                                                  \
        constexpr UINT64 NameHash = namehash::OfName(#name);                                                           \
        return static_cast<name::RecordType*>(rTuning.Record(RecordModule::name, #name, NameHash));                    \
    }                                                                                                                  \
    template <typename Record = name::RecordType, typename Tuning> const Record& Require_##name(Tuning& rTuning)       \
    {                                                                                                                  \
        return OrZeros<Record>(Get_##name(rTuning));                                                                   \
    }
#define TUNING_MODULE_BARE(name, major, minor, patch)

#include "schema/modules.def"

#undef TUNING_MODULE
#undef TUNING_MODULE_BARE

}  // namespace tuningaccess
