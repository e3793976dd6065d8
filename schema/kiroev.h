/// @file
/// Tuning module kiroev.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroev
{

/// Exposure factors of EV compensation.
struct EVCompTableType
{
    float EVCompTableElements[49];
};
TUNING_RECORD(EVCompTableType)
    MEMBER(EVCompTableElements,
        .meaning = "Exposure factor of each step of the user's EV, from stepsPerEV times minEVValue upwards, the one "
                   "of EV 0 being 1.0; an element of twice the size brightens that EV by a stop. Elements beyond "
                   "maxEVValue are not read.",
        .unit = Unit::Factor, .range = Above(0), .odd = AtLeast(0),
        .start = "[0.0625, 0.0702, 0.0787, 0.0884, 0.0992, 0.1114, 0.1250, 0.1403, 0.1575, 0.1768, 0.1984, 0.2227, "
                 "0.2500, 0.2806, 0.3150, 0.3536, 0.3969, 0.4454, 0.5000, 0.5612, 0.6300, 0.7071, 0.7937, 0.8909, "
                 "1.0000, 1.1225, 1.2599, 1.4142, 1.5874, 1.7818, 2.0000, 2.2449, 2.5198, 2.8284, 3.1748, 3.5636, "
                 "4.0000, 4.4898, 5.0397, 5.6569, 6.3496, 7.1272, 8.0000, 8.9797, 10.0794, 11.3137, 12.6992, 14.2544, "
                 "16.0000]",
        .acts = Acts::EVChange)
TUNING_RECORD_END

/// Strength of the EV of bracketed frames: at 0 EV not applied, at 2 stops and beyond in full.
struct BracketingEVType
{
    float bracketingAdjForEVPos2;
    float bracketingAdjForEVNeg2;
};
TUNING_RECORD(BracketingEVType)
    MEMBER(bracketingAdjForEVPos2,
        .meaning = "Share of their stops that bracketed pictures of +2 EV and above take: 1 takes all, twice the "
                   "share doubles the stops. Between there and 0 EV it counts in part, towards 0 ever less.",
        .unit = Unit::Share, .range = AtLeast(0), .odd = Any, .start = "1.0")
    MEMBER(bracketingAdjForEVNeg2,
        .meaning = "Share of their stops that bracketed pictures of -2 EV and below take: 1 takes all, twice the "
                   "share doubles the stops. Between there and 0 EV it counts in part, towards 0 ever less.",
        .unit = Unit::Share, .range = AtLeast(0), .odd = Any, .start = "1.0")
TUNING_RECORD_END

/// The EV scale. Hosts get its three numbers as signed bytes.
struct EVCoreDataType
{
    INT32            stepsPerEV;
    INT32            minEVValue;
    INT32            maxEVValue;
    EVCompTableType  EVCompTable;
    BracketingEVType bracketingEV;
};
TUNING_RECORD(EVCoreDataType)
    MEMBER(stepsPerEV,
        .meaning = "EV steps in a stop, for the user and for brackets; twice as many halve the stops of a bracket's "
                   "step, from the next bracket on, and move the table's EV 0. Hosts get it as a signed byte.",
        .unit = Unit::Count, .range = {1, 127}, .start = "6", .acts = Acts::EVChange)
    MEMBER(minEVValue,
        .meaning = "Lowest EV that users and brackets can ask for, in stops; lower ones count as this one. At most 48 "
                   "steps lie between here and maxEVValue, and moving it moves the table's EV 0.",
        .unit = Unit::EV, .range = {-128, 0}, .odd = {-128, 127}, .start = "-4", .acts = Acts::EVChange)
    MEMBER(maxEVValue,
        .meaning = "Highest EV that users and brackets can ask for, in stops; higher ones count as this one.",
        .unit = Unit::EV, .range = {0, 127}, .odd = {-128, 127}, .start = "4", .acts = Acts::EVChange)
    MEMBER(EVCompTable,
        .meaning = "Exposure factors of the user's EV.",
        .acts = Acts::EVChange)
    MEMBER(bracketingEV,
        .meaning = "Strength of the EV of bracketed pictures.")
TUNING_RECORD_END

/// The module.
struct KIROEVType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    UINT32                  moduleID;
    EVCoreDataType          EVCoreData;
};
TUNING_RECORD(KIROEVType)
    MODULE_HEADER("The scale of EV compensation and the factors of its steps.")
    MEMBER(moduleID,
        .meaning = "Identifies the module to the tools; read by no stage.",
        .unit = Unit::ID, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(EVCoreData,
        .meaning = "The EV scale and its factors; brackets and queries take an edit at once, the user's factor "
                   "follows when the EV changes.",
        .acts = Acts::EVChange)
TUNING_RECORD_END

} // namespace kiroev
