/// @file
/// Tuning module kiroparamextension.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroparamextension
{

/// One named parameter. What data and triggers mean, and how many there must be, is up to the feature.
struct statsExtensionParamType
{
    CHAR*                                Name;
    INT32                                ID;
    BOOL                                 enableFlag;
    UINT32                               dataCount;     ///< part of the search: variants of a parameter differ in it
    UINT32                               dataID;
    float*                               data;
    UINT32                               triggerCount;
    UINT32                               triggerID;
    ThreeLevelDataBankTriggerSystemType* trigger;
};
TUNING_RECORD(statsExtensionParamType)
    MEMBER(Name,
        .meaning = "Name by which a feature finds the parameter, compared letter by letter; the first entry with that "
                   "name and the wanted number of data is taken. The core looks for AECExtParamMFHDRADRCControl, "
                   "AECExtParamFlickerControl and AECMulticamPriorityMap.",
        .acts = Acts::Never)
    MEMBER(ID,
        .meaning = "Number of the parameter by its name: 4 for AECExtParamMFHDRADRCControl, 5 for "
                   "AECExtParamFlickerControl, 0 for AECMulticamPriorityMap. A wrong one is logged at each look-up "
                   "and the entry used all the same, but that of AECMulticamPriorityMap is not found without its 0.",
        .unit = Unit::ID, .range = {0, 7}, .odd = Any)
    BOOLEAN(enableFlag,
        .meaning = "Switches the feature: off, AECExtParamMFHDRADRCControl and AECMulticamPriorityMap count as "
                   "missing. AECExtParamFlickerControl does not look at it.",
        .start = "true")
    VARIABLE(data,
        .meaning = "AECExtParamMFHDRADRCControl takes 3 or 4 numbers: step of the short blend per frame, ratio of "
                   "long to short below which the two count as one, trigger that receives the blend, value of trigger "
                   "65. AECExtParamFlickerControl takes 2, of which a second one of 0 keeps antibanding from pulling "
                   "exposures unless AECCustomContext1 is set, and AECMulticamPriorityMap the IDs of 3 cameras in "
                   "order of preference, beside which none is taken.",
        .unit = Unit::Varies, .range = Any, .entries = AtLeast(0))
    VARIABLE(trigger,
        .meaning = "Trees of the feature. AECExtParamMFHDRADRCControl needs three: the most that safe may lie above "
                   "short, the most that safe may lie above long, both as ratios, and whether short is blended in "
                   "(exactly 1) or out (anything else).",
        .entries = AtLeast(0))
TUNING_RECORD_END

/// The module.
struct KIROParamExtensionType
{
    UINT32                   SymbolTableID;
    module_versionStruct     module_version;
    parameter_versionStruct  parameter_version;
    UINT32                   extensionParamCount;
    UINT32                   extensionParamID;
    statsExtensionParamType* extensionParam;
};
TUNING_RECORD(KIROParamExtensionType)
    MODULE_HEADER("Parameters that features find by name.")
    VARIABLE(extensionParam,
        .meaning = "The named parameters; one that is missing leaves its feature off, but without "
                   "AECExtParamFlickerControl antibanding goes by antibandingMetering alone, and without "
                   "AECMulticamPriorityMap a master takes the first active peer.",
        .entries = AtLeast(0))
TUNING_RECORD_END

} // namespace kiroparamextension
