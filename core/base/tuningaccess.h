/// @file
/// Fetching tuning records: tuningaccess::Get_<module>(tuningData) yields the record of the deepest mode on the current
/// path that holds the module, or null if not even the Default mode has it.
#pragma once

#include "interface/statstuningdata.h"
#include "parameters/tuningsetmanager.h"

namespace tuningaccess
{

#define TUNING_MODULE(name, RecordType, major, minor, patch)                                                           \
    inline name::RecordType* Get_##name(const StatsTuningData& rTuningData)                                            \
    {                                                                                                                  \
        return static_cast<TuningSetManager*>(rTuningData.pTuningSetManager)                                           \
            ->GetModule_##name(static_cast<TuningMode*>(rTuningData.pTuningModeSelectors), rTuningData.numSelectors,   \
                               nullptr);                                                                               \
    }
#define TUNING_MODULE_BARE(name, major, minor, patch)

#include "schema/modules.def"

#undef TUNING_MODULE
#undef TUNING_MODULE_BARE

} // namespace tuningaccess
