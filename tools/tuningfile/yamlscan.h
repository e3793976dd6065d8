/// @file
/// What stands open at a place of a YAML text. A parser names the place where it cannot go on, which may be far behind
/// the mistake.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

namespace tuningfile
{

/// A letter of a text, and its place, from 1 as people count.
struct YamlLetter
{
    CHAR   letter;
    size_t line;
    size_t column;
};

struct YamlContext
{
    std::vector<YamlLetter>   open;  ///< brackets and at most one quote that wait for their end, the innermost last
    std::optional<YamlLetter> tab;   ///< the first tab in the indentation of a line, where indentation counts
};

/// Reads a text up to a place. It understands as much of YAML as decides what is a bracket, a quote or an indentation;
/// of a text that is no YAML it says something.
YamlContext ScanYaml(std::string_view text, size_t line, size_t column);

}  // namespace tuningfile
