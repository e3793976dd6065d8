/// @file
/// A tree of scalars, lists and maps, and its printed forms.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

namespace tuningfile
{

struct TextItem;

struct TextNode
{
    enum class Kind
    {
        Scalar,
        List,
        Map
    };

    static TextNode Scalar(std::string text);

    /// A scalar in quotes, whatever it holds.
    static TextNode Quoted(std::string_view text);

    static TextNode List();
    static TextNode Map();

    /// Appends to a list. @return the item, valid until the next one is added
    TextNode& Add(TextNode item);

    /// Appends to a map. @return the value, valid until the next one is added
    TextNode& Add(std::string name, TextNode value);

    Kind                  kind;
    std::string           scalar;  ///< as printed, with its quotes
    std::vector<TextItem> items;   ///< of a list or a map
};

struct TextItem
{
    std::string name;  ///< empty in a list
    TextNode    value;
};

/// Prints a map as YAML in blocks; what fits on a line stands on one, long lists of scalars are wrapped.
std::string ToYaml(const TextNode& rMap);

/// Prints as indented JSON.
std::string ToJson(const TextNode& rNode);

/// Prints as JSON on one line.
std::string ToJsonLine(const TextNode& rNode);

}  // namespace tuningfile
