/// @file
/// Tunings of the examples with other modules in the place of their own.
#pragma once

#include <string>

#include "tools/tuningfile/tuning.h"

namespace exampletuning
{

/// @param pFile of the examples' tunings
/// @param rText a tuning whose Default mode holds the modules
/// @param pName of the text, for errors
/// @return the example with these modules in its Default mode, as far as it has modules of their names
/// @throws tuningfile::InputError if either cannot be read
tuningfile::Tuning With(const CHAR* pFile, const std::string& rText, const CHAR* pName);

}  // namespace exampletuning
