/// @file
/// The tuning schema for editors and for readers.
#pragma once

#include <string>

namespace tuningfile
{

/// A JSON Schema (draft 2020-12) of text tunings, by which editors complete and check them.
std::string JsonSchema();

/// All tunables as Markdown: members by module, then the enumerations.
std::string Reference();

}  // namespace tuningfile
