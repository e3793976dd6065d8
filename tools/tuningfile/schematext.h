/// @file
/// The tuning schema for editors and for readers.
#pragma once

#include <string>
#include <vector>

#include "tools/tuningfile/document.h"

namespace tuningfile
{

/// A JSON Schema (draft 2020-12) of text tunings, by which editors complete and check them.
std::string JsonSchema();

/// A page on each module: its members with their words, what it shares with other modules, its enumerations.
std::vector<Document> ReferencePages();

/// The page that leads to them, with all banks and who writes and reads them.
Document ReferenceIndex();

}  // namespace tuningfile
