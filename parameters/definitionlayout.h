/// @file
/// Where the members of a file's structures lie in its records.
#pragma once

#include "parameters/parameterdefinitions.h"

/// Computes Size of all structures and ParentOffset of their members, and points members of structure type at their
/// structure. Releases ChildOrder and Repeated, which nobody needs afterwards.
/// @param countedArrays records of the file have a count in front of fixed arrays
VOID LayOutStructures(ParameterDefinitions::StructureMap& rStructures, bool countedArrays,
                      const IParameterLoggingAPI* pLog);
