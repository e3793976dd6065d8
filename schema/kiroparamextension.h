/// @file
/// Tuning module kiroparamextension: parameters that features find by name.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroparamextension
{

/// One named parameter. What data and triggers mean, and how many there must be, is up to the feature.
struct statsExtensionParamType
{
    CHAR*                                Name;          ///< compared as an exact string
    INT32                                ID;            ///< number of the parameter; a mismatch is logged only
    BOOL                                 enableFlag;
    UINT32                               dataCount;     ///< part of the search: variants of a parameter differ in it
    UINT32                               dataID;
    float*                               data;
    UINT32                               triggerCount;
    UINT32                               triggerID;
    ThreeLevelDataBankTriggerSystemType* trigger;
};
TUNING_RECORD(statsExtensionParamType)
    MEMBER(Name)
    MEMBER(ID)
    BOOLEAN(enableFlag)
    VARIABLE(data)
    VARIABLE(trigger)
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
    MODULE_HEADER
    VARIABLE(extensionParam)
TUNING_RECORD_END

} // namespace kiroparamextension
