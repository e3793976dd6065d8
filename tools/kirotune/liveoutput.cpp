#include "tools/kirotune/liveoutput.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "host/controlvalues.h"
#include "tools/kirotune/livemembers.h"
#include "tools/liveclient/texts.h"

namespace kirotune
{

namespace
{

using tuningfile::TextNode;

/// @return bytes of the well-formed UTF-8 character at the start of a text, 0 if there is none
size_t CharacterSize(std::string_view text)
{
    // By first byte: size, and the range of the second byte, which rules out overlong forms and surrogates.
    struct Form
    {
        BYTE   first;
        BYTE   last;
        size_t size;
        BYTE   low;
        BYTE   high;
    };
    static constexpr Form Forms[] = {
        {0x00, 0x7F, 1, 0x80, 0xBF}, {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF},
        {0xE1, 0xEC, 3, 0x80, 0xBF}, {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF},
        {0xF0, 0xF0, 4, 0x90, 0xBF}, {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F}};
    const auto byteAt = [text](size_t index) { return static_cast<BYTE>(text[index]); };
    for (const Form& rForm : Forms)
    {
        if (byteAt(0) < rForm.first || byteAt(0) > rForm.last)
        {
            continue;
        }
        bool isGood = text.size() >= rForm.size;
        for (size_t index = 1; isGood && index < rForm.size; ++index)
        {
            const BYTE low  = (index == 1) ? rForm.low : BYTE{0x80};
            const BYTE high = (index == 1) ? rForm.high : BYTE{0xBF};
            isGood          = byteAt(index) >= low && byteAt(index) <= high;
        }
        return isGood ? rForm.size : 0;
    }
    return 0;
}

/// Whether JSON takes a number as it stands, which must not begin with needless zeros or with the point.
bool IsJsonNumber(std::string_view text)
{
    if (!liveclient::IsNumber(text) || text.ends_with('.'))
    {
        return false;
    }
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    return !digits.starts_with('.') && (digits.size() == 1 || digits[0] != '0' || digits[1] == '.');
}

TextNode JsonScalar(const std::string& rText)
{
    return IsJsonNumber(rText) ? TextNode::Scalar(rText) : JsonText(rText);
}

}  // namespace

VOID PrintTable(const Row& rHeader, const std::vector<Row>& rRows)
{
    std::vector<Row> lines;
    if (!rHeader.empty())
    {
        lines.push_back(rHeader);
    }
    lines.insert(lines.end(), rRows.begin(), rRows.end());
    std::vector<size_t> widths;
    for (Row& rLine : lines)
    {
        widths.resize(std::max(widths.size(), rLine.size()));
        for (size_t column = 0; column < rLine.size(); ++column)
        {
            rLine[column]  = Clean(rLine[column]);
            widths[column] = std::max(widths[column], rLine[column].size());
        }
    }
    for (const Row& rLine : lines)
    {
        std::string text;
        for (size_t column = 0; column < rLine.size(); ++column)
        {
            text += fmt::format("{:<{}}", rLine[column], widths[column] + 2);
        }
        text.erase(text.find_last_not_of(' ') + 1);
        fmt::print("{}\n", text);
    }
}

VOID PrintChanges(const std::vector<Change>& rChanges, bool isJson)
{
    TextNode list = TextNode::List();
    for (const Change& rChange : rChanges)
    {
        const liveclient::Value before{rChange.member, rChange.oldText};
        const liveclient::Value after{rChange.member, rChange.newText};
        if (!isJson)
        {
            fmt::print("{}\n", Clean(fmt::format("{} {}.{}: {} -> {}", rChange.path, rChange.module, rChange.member,
                                                 WithEnumerator(rChange.module, before),
                                                 WithEnumerator(rChange.module, after))));
            continue;
        }
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("path", JsonText(rChange.path));
        rItem.Add("module", JsonText(rChange.module));
        rItem.Add("name", JsonText(rChange.member));
        rItem.Add("old", JsonValue(rChange.module, before));
        rItem.Add("new", JsonValue(rChange.module, after));
    }
    if (isJson)
    {
        PrintJson(list);
    }
}

VOID PrintJson(const tuningfile::TextNode& rNode)
{
    fmt::print("{}", tuningfile::ToJson(rNode));
}

std::string Clean(std::string_view text)
{
    std::string clean;
    while (!text.empty())
    {
        const size_t size      = CharacterSize(text);
        const bool   isControl = size == 1 && (static_cast<BYTE>(text[0]) < ' ' || text[0] == '\x7f');
        const bool   isC1      = size == 2 && text[0] == '\xC2' && static_cast<BYTE>(text[1]) < 0xA0;
        clean += (size == 0 || isControl || isC1) ? "\uFFFD" : text.substr(0, size);
        text.remove_prefix(std::max<size_t>(size, 1));
    }
    return clean;
}

TextNode JsonText(std::string_view text)
{
    return TextNode::Quoted(Clean(text));
}

TextNode JsonList(const std::vector<std::string>& rTexts)
{
    TextNode list = TextNode::List();
    for (const std::string& rText : rTexts)
    {
        list.Add(JsonText(rText));
    }
    return list;
}

TextNode JsonValue(const std::string& rModule, const liveclient::Value& rValue)
{
    const std::optional<KnownMember> known = FindMember(rModule, rValue.name);
    if (known && known->pMember->type == tuning::ValueType::Text && !known->isWholeArray)
    {
        return JsonText(rValue.text);
    }
    const std::vector<std::string> parts  = liveclient::Split(rValue.text, ',');
    const bool                     isList = known ? known->isWholeArray
                                                  : parts.size() > 1 && std::all_of(parts.begin(), parts.end(),
                                                                                    [](const auto& rPart) { return IsJsonNumber(rPart); });
    if (!isList)
    {
        return JsonScalar(rValue.text);
    }
    TextNode list = TextNode::List();
    for (const std::string& rPart : parts)
    {
        list.Add(JsonScalar(rPart));
    }
    return list;
}

TextNode JsonPrinted(const std::string& rNumber)
{
    return std::isfinite(std::strtod(rNumber.c_str(), nullptr)) ? TextNode::Scalar(rNumber) : JsonText(rNumber);
}

std::string ControlName(UINT32 id)
{
    const CHAR* const pName = controlvalues::NameOf(id);
    return (pName != nullptr) ? pName : "";
}

bool IsPlainText(const std::vector<BYTE>& rBytes)
{
    return std::all_of(rBytes.begin(), rBytes.end(),
                       [](BYTE byte) { return (byte >= ' ' && byte < 0x7F) || byte == '\n' || byte == '\t'; });
}

std::string Hex(const std::vector<BYTE>& rBytes, const char* pSeparator)
{
    return fmt::format("{:02x}", fmt::join(rBytes, pSeparator));
}

}  // namespace kirotune
