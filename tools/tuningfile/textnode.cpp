#include "tools/tuningfile/textnode.h"

#include <algorithm>

#include <fmt/format.h>

namespace tuningfile
{

namespace
{

constexpr size_t LineWidth   = 110;
constexpr size_t IndentWidth = 2;

bool IsScalar(const TextNode& rNode)
{
    return rNode.kind == TextNode::Kind::Scalar;
}

enum class Names
{
    Plain,
    Quoted
};

/// Appends a node in the form that stands on one line: "{a: 1, b: [2, 3]}", which is JSON if names are quoted.
VOID AppendFlow(const TextNode& rNode, Names names, std::string& rText)
{
    if (IsScalar(rNode))
    {
        rText += rNode.scalar;
        return;
    }
    const bool isMap = rNode.kind == TextNode::Kind::Map;
    rText += isMap ? '{' : '[';
    const char* pSeparator = "";
    for (const auto& [rName, rValue] : rNode.items)
    {
        rText += pSeparator;
        if (isMap)
        {
            rText += ((names == Names::Quoted) ? TextNode::Quoted(rName).scalar : rName) + ": ";
        }
        AppendFlow(rValue, names, rText);
        pSeparator = ", ";
    }
    rText += isMap ? '}' : ']';
}

/// Adds the width that a node takes on one line. @return false as soon as the limit is passed
bool FitsFlow(const TextNode& rNode, size_t limit, size_t& rWidth)
{
    rWidth += IsScalar(rNode) ? rNode.scalar.size() : 2;
    for (const auto& [rName, rValue] : rNode.items)
    {
        rWidth += rName.size() + 2;
        if (rWidth > limit || !FitsFlow(rValue, limit, rWidth))
        {
            return false;
        }
    }
    return rWidth <= limit;
}

class YamlPrinter
{
public:
    /// Prints the items of a map or a list, each on lines of its own.
    VOID PrintBlock(const TextNode& rNode, size_t indent);

    std::string text;

private:
    VOID PrintValue(const TextNode& rNode, size_t indent, size_t used);
    VOID PrintWrapped(const TextNode& rList, size_t indent);
};

VOID YamlPrinter::PrintBlock(const TextNode& rNode, size_t indent)
{
    for (const auto& [rName, rValue] : rNode.items)
    {
        text.append(indent, ' ');
        const std::string lead = (rNode.kind == TextNode::Kind::Map) ? rName + ":" : "-";
        text += lead;
        PrintValue(rValue, indent + IndentWidth, indent + lead.size());
    }
}

/// Prints what stands behind a name or a dash, and ends the line.
VOID YamlPrinter::PrintValue(const TextNode& rNode, size_t indent, size_t used)
{
    size_t width = used + 1;
    if (IsScalar(rNode) || rNode.items.empty() || FitsFlow(rNode, LineWidth, width))
    {
        text += ' ';
        AppendFlow(rNode, Names::Plain, text);
        text += '\n';
        return;
    }
    const bool isList = rNode.kind == TextNode::Kind::List;
    if (isList &&
        std::all_of(rNode.items.begin(), rNode.items.end(), [](const auto& rItem) { return IsScalar(rItem.value); }))
    {
        PrintWrapped(rNode, indent);
        return;
    }
    if (text.back() != '-')
    {
        text += '\n';
        PrintBlock(rNode, indent);
        return;
    }
    // An item of a list starts on the line of its dash.
    YamlPrinter item;
    item.PrintBlock(rNode, indent);
    text += ' ' + item.text.substr(indent);
}

VOID YamlPrinter::PrintWrapped(const TextNode& rList, size_t indent)
{
    text += " [\n";
    size_t column = LineWidth;
    for (size_t index = 0; index < rList.items.size(); ++index)
    {
        const std::string& rScalar = rList.items[index].value.scalar;
        if (column + rScalar.size() + 2 > LineWidth)
        {
            text += (index == 0) ? "" : "\n";
            text.append(indent, ' ');
            column = indent;
        }
        else
        {
            text += ' ';
        }
        text += rScalar;
        text += (index + 1 < rList.items.size()) ? "," : "]\n";
        column += rScalar.size() + 2;
    }
}

VOID AppendJson(const TextNode& rNode, size_t indent, std::string& rText)
{
    if (IsScalar(rNode))
    {
        rText += rNode.scalar;
        return;
    }
    const bool isMap = rNode.kind == TextNode::Kind::Map;
    rText += isMap ? '{' : '[';
    for (size_t index = 0; index < rNode.items.size(); ++index)
    {
        rText += (index == 0) ? "\n" : ",\n";
        rText.append(indent + IndentWidth, ' ');
        if (isMap)
        {
            rText += TextNode::Quoted(rNode.items[index].name).scalar + ": ";
        }
        AppendJson(rNode.items[index].value, indent + IndentWidth, rText);
    }
    if (!rNode.items.empty())
    {
        rText += '\n';
        rText.append(indent, ' ');
    }
    rText += isMap ? '}' : ']';
}

}  // namespace

TextNode TextNode::Scalar(std::string text)
{
    return {Kind::Scalar, std::move(text), {}};
}

TextNode TextNode::List()
{
    return {Kind::List, {}, {}};
}

TextNode TextNode::Map()
{
    return {Kind::Map, {}, {}};
}

/// The escapes used are the same in YAML and in JSON.
TextNode TextNode::Quoted(std::string_view text)
{
    std::string quoted = "\"";
    for (const char letter : text)
    {
        if (letter == '"' || letter == '\\')
        {
            quoted += '\\';
            quoted += letter;
        }
        else if (static_cast<unsigned char>(letter) < ' ' || letter == '\x7f')
        {
            quoted += fmt::format("\\u{:04x}", static_cast<unsigned>(letter));
        }
        else
        {
            quoted += letter;
        }
    }
    return Scalar(quoted + '"');
}

TextNode& TextNode::Add(TextNode item)
{
    return Add(std::string(), std::move(item));
}

TextNode& TextNode::Add(std::string name, TextNode value)
{
    items.push_back({std::move(name), std::move(value)});
    return items.back().value;
}

std::string ToYaml(const TextNode& rMap)
{
    YamlPrinter printer;
    printer.PrintBlock(rMap, 0);
    return printer.text;
}

std::string ToJson(const TextNode& rNode)
{
    std::string text;
    AppendJson(rNode, 0, text);
    return text + '\n';
}

std::string ToJsonLine(const TextNode& rNode)
{
    std::string text;
    AppendFlow(rNode, Names::Quoted, text);
    return text + '\n';
}

}  // namespace tuningfile
