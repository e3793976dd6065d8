/// @file
/// Facts of a run as JSON. A name ends with the unit of its number.
#pragma once

#include <cmath>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "tools/tuningfile/textnode.h"

namespace kirosim
{

using tuningfile::TextItem;
using tuningfile::TextNode;

inline TextNode Json(std::string_view text)
{
    return TextNode::Quoted(text);
}

template <std::same_as<bool> Flag> TextNode Json(Flag value)
{
    return TextNode::Scalar(value ? "true" : "false");
}

template <std::integral Number>
requires(!std::same_as<Number, bool>) TextNode Json(Number value)
{
    return TextNode::Scalar(fmt::to_string(+value));
}

/// JSON has no number for what is none.
template <std::floating_point Number> TextNode Json(Number value)
{
    return TextNode::Scalar(std::isfinite(value) ? fmt::to_string(value) : "null");
}

template <typename Value> TextNode Json(const std::optional<Value>& rValue)
{
    return rValue.has_value() ? Json(*rValue) : TextNode::Scalar("null");
}

inline TextNode JsonObject(std::vector<TextItem> items)
{
    return {TextNode::Kind::Map, {}, std::move(items)};
}

/// @param toJson makes an item of the list of an item of the range
template <typename Range, typename ToJson> TextNode JsonList(const Range& rRange, ToJson&& toJson)
{
    TextNode list = TextNode::List();
    for (const auto& rItem : rRange)
    {
        list.Add(toJson(rItem));
    }
    return list;
}

}  // namespace kirosim
