/// @file
/// Single values from text.
#pragma once

#include "schema/tuningrecord.h"
#include "tools/tuningfile/yamlinput.h"

namespace tuningfile
{

/// Reads a number, a boolean or an enumerator of the member's type into memory of that type.
/// @param rMember neither a text nor a nested record
/// @throws InputError if the scalar is not of the type or out of its range
VOID ReadScalar(const YamlInput& rInput, const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue);

/// @param what for messages
/// For INT64 and UINT64.
/// @throws InputError if the scalar is not a decimal or hexadecimal integer within the limits
template <typename T>
T ReadInteger(const YamlInput& rInput, const YAML::Node& rNode, std::string_view what, T least, T most);

/// @throws InputError if the scalar is neither true nor false
bool ReadFlag(const YamlInput& rInput, const YAML::Node& rNode, std::string_view what);

}  // namespace tuningfile
