/// @file
/// Tuned parameters that are found by name, for the core itself: as CKIROCtrlCoreCommon finds them for everyone, but in
/// the records that an instance remembers.
#pragma once

#include "core/base/tuningaccess.h"
#include "interface/ckiroctrlcorecommon.h"
#include "schema/kiroparamextension.h"

namespace extensionparameters
{

using Parameter = CKIROCtrlCoreCommon::Parameter;

/// ParseExtensionParam in a record, which may be null.
KiroResult Parse(const kiroparamextension::KIROParamExtensionType* pTuning, INT32 parameterType, UINT32 dataCount,
                 Parameter& rParameter);

// The record is fetched for each search: a store that lacks the module says so each time.

/// @param rTuning StatsTuningData or InstanceTuning
template <typename Tuning> KiroResult GetMFHDRADRC(Tuning& rTuning, Parameter& rParameter)
{
    const KiroResult result =
        Parse(tuningaccess::Get_kiroparamextension(rTuning), AECExtParamMFHDRADRCControl, 3, rParameter);
    return (result == 0)
               ? 0
               : Parse(tuningaccess::Get_kiroparamextension(rTuning), AECExtParamMFHDRADRCControl, 4, rParameter);
}

/// @param rTuning StatsTuningData or InstanceTuning
template <typename Tuning> KiroResult GetFlickerControl(Tuning& rTuning, Parameter& rParameter)
{
    return Parse(tuningaccess::Get_kiroparamextension(rTuning), AECExtParamFlickerControl, 2, rParameter);
}

}  // namespace extensionparameters
