/// @file
/// Parts of which a JSON Schema is made.
#pragma once

#include <string_view>

#include "tools/tuningfile/textnode.h"

namespace tuningfile
{

/// A value of one of JSON's types.
TextNode TypeNode(std::string_view type);

/// What stands under a name in "$defs".
TextNode ReferenceTo(std::string_view definition);

TextNode AnyOf(TextNode first, TextNode second);

/// A map of given members and no others.
TextNode ObjectNode(TextNode properties);

}  // namespace tuningfile
