/// @file
/// The definition table of a parameter file: the shape of its records, for readers built for another schema.
#pragma once

#include <vector>

#include "schema/modules.h"

namespace tuningfile
{

/// @param rModules each once; all with a described record
std::vector<BYTE> WriteDefinitions(const std::vector<const tuning::ModuleDescription*>& rModules);

}  // namespace tuningfile
