#include "tools/tuningfile/schemanodes.h"

#include <fmt/format.h>

namespace tuningfile
{

TextNode TypeNode(std::string_view type)
{
    TextNode node = TextNode::Map();
    node.Add("type", TextNode::Quoted(type));
    return node;
}

TextNode ReferenceTo(std::string_view definition)
{
    TextNode node = TextNode::Map();
    node.Add("$ref", TextNode::Quoted(fmt::format("#/$defs/{}", definition)));
    return node;
}

TextNode AnyOf(TextNode first, TextNode second)
{
    TextNode  node   = TextNode::Map();
    TextNode& rItems = node.Add("anyOf", TextNode::List());
    rItems.Add(std::move(first));
    rItems.Add(std::move(second));
    return node;
}

TextNode ObjectNode(TextNode properties)
{
    TextNode node = TypeNode("object");
    node.Add("additionalProperties", TextNode::Scalar("false"));
    node.Add("properties", std::move(properties));
    return node;
}

}  // namespace tuningfile
