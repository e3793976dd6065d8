/// @file
/// Tuning module kiroev: the scale of EV compensation and the factors of its steps.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroev
{

/// Exposure factors of EV compensation.
struct EVCompTableType
{
    float EVCompTableElements[49];  ///< factor of each step from stepsPerEV * minEVValue up, above 0
};
TUNING_RECORD(EVCompTableType)
    MEMBER(EVCompTableElements)
TUNING_RECORD_END

/// Strength of the EV of bracketed frames: at 0 EV not applied, at 2 stops and beyond in full.
struct BracketingEVType
{
    float bracketingAdjForEVPos2;  ///< share of the stops that frames of +2 EV and above take, 1.0 is all
    float bracketingAdjForEVNeg2;  ///< share of the stops that frames of -2 EV and below take, 1.0 is all
};
TUNING_RECORD(BracketingEVType)
    MEMBER(bracketingAdjForEVPos2)
    MEMBER(bracketingAdjForEVNeg2)
TUNING_RECORD_END

/// The EV scale. Hosts get its three numbers as signed bytes.
struct EVCoreDataType
{
    INT32            stepsPerEV;  ///< steps per stop, 1 to 127
    INT32            minEVValue;  ///< stops, -128 to 127; at most 49 steps from here to maxEVValue
    INT32            maxEVValue;  ///< stops, -128 to 127
    EVCompTableType  EVCompTable;
    BracketingEVType bracketingEV;
};
TUNING_RECORD(EVCoreDataType)
    MEMBER(stepsPerEV)
    MEMBER(minEVValue)
    MEMBER(maxEVValue)
    MEMBER(EVCompTable)
    MEMBER(bracketingEV)
TUNING_RECORD_END

/// The module.
struct KIROEVType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    UINT32                  moduleID;  ///< identifies the module to the tools
    EVCoreDataType          EVCoreData;
};
TUNING_RECORD(KIROEVType)
    MODULE_HEADER
    MEMBER(moduleID)
    MEMBER(EVCoreData)
TUNING_RECORD_END

} // namespace kiroev
