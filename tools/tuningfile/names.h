/// @file
/// Help for a person who has mistyped a name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tuningfile
{

/// What to say behind an unknown name: "did you mean 'a' or 'b'?" if some names are near, otherwise
/// "expected one of: a, b, c", shortened if there are many.
std::string Advice(std::string_view unknown, const std::vector<std::string_view>& rNames);

}  // namespace tuningfile
