/// @file
/// Names in a text that must be known. What is not fails with advice.
#pragma once

#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/tuning.h"
#include "tools/tuningfile/yamlinput.h"

namespace tuningfile
{

/// @throws InputError, as all do
ModeName RequireModeName(const YamlInput& rInput, const YAML::Node& rNode, std::string_view text);

/// @return a module whose record is known
const tuning::ModuleDescription& RequireModule(const YamlInput& rInput, const YamlEntry& rEntry);

/// @return the entries of what is to be a record
YamlMap RequireMap(const YamlInput& rInput, const YAML::Node& rNode, const tuning::RecordDescription& rRecord);

const tuning::RecordMember& RequireMember(const YamlInput& rInput, const YamlEntry& rEntry,
                                          const tuning::RecordDescription& rRecord);

}  // namespace tuningfile
