/// @file
/// The definition section of a parameter file, taken apart record by record.
#pragma once

#include "parameters/parameterdefinitions.h"

/// Enters the modules and structures of the section. Of those with the same name or ID the first stays, with an error.
/// @return false, with what was read before, if the section ends early or holds an unknown kind of record
bool ReadDefinitionSection(const BYTE* pSection, UINT32 size, UINT32 alignment, const IParameterLoggingAPI* pLog,
                           ParameterDefinitions::ModuleMap& rModules, ParameterDefinitions::StructureMap& rStructures);
