#include "tools/tuningfile/document.h"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

namespace tuningfile
{

namespace
{

constexpr std::string_view HtmlHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{}</title>
<style>
:root {{ color-scheme: light dark; }}
body {{ font: 16px/1.5 system-ui, sans-serif; margin: 2rem auto; max-width: 80rem; padding: 0 1rem; }}
table {{ border-collapse: collapse; display: block; overflow-x: auto; }}
th, td {{ border-bottom: 1px solid #8885; padding: .3rem .8rem .3rem 0; text-align: left; vertical-align: top; }}
code {{ font-size: .9em; overflow-wrap: anywhere; }}
</style>
</head>
<body>
)";

std::string Replaced(std::string text, std::string_view from, std::string_view to)
{
    for (size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
    {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string EscapedHtml(std::string_view text)
{
    return Replaced(Replaced(Replaced(Replaced(std::string(text), "&", "&amp;"), "<", "&lt;"), ">", "&gt;"), "\"",
                    "&quot;");
}

/// Anchors of headings are in lower case, without what is neither letter nor digit.
std::string AnchorOf(std::string_view heading)
{
    std::string anchor;
    for (const CHAR letter : heading)
    {
        if (std::isalnum(static_cast<unsigned char>(letter)) != 0)
        {
            anchor += static_cast<CHAR>(std::tolower(static_cast<unsigned char>(letter)));
        }
        else if (letter == ' ' || letter == '-')
        {
            anchor += '-';
        }
    }
    return anchor;
}

std::string TargetOf(const Inline& rLink, std::string_view ending)
{
    return (rLink.target[0] == '#') ? "#" + AnchorOf(rLink.target.substr(1))
                                    : fmt::format("{}{}", rLink.target, ending);
}

std::string MarkdownOf(const Line& rLine, bool isInTable)
{
    std::string text;
    for (const Inline& rPart : rLine)
    {
        const std::string part = isInTable ? Replaced(rPart.text, "|", "\\|") : rPart.text;
        text += (rPart.kind == Inline::Kind::Code)   ? fmt::format("`{}`", part)
                : (rPart.kind == Inline::Kind::Link) ? fmt::format("[{}]({})", part, TargetOf(rPart, ".md"))
                                                     : part;
    }
    return text;
}

std::string HtmlOf(const Line& rLine)
{
    std::string text;
    for (const Inline& rPart : rLine)
    {
        const std::string part = EscapedHtml(rPart.text);
        text += (rPart.kind == Inline::Kind::Code) ? fmt::format("<code>{}</code>", part)
                : (rPart.kind == Inline::Kind::Link)
                    ? fmt::format("<a href=\"{}\">{}</a>", EscapedHtml(TargetOf(rPart, ".html")), part)
                    : part;
    }
    return text;
}

std::string MarkdownOf(const Table& rTable)
{
    std::string text = "|";
    std::string rule = "|";
    for (const std::string& rCell : rTable.header)
    {
        text += fmt::format(" {} |", rCell);
        rule += "---|";
    }
    text += '\n' + rule + '\n';
    for (const std::vector<Line>& rRow : rTable.rows)
    {
        text += '|';
        for (const Line& rCell : rRow)
        {
            text += fmt::format(" {} |", MarkdownOf(rCell, true));
        }
        text += '\n';
    }
    return text;
}

std::string HtmlOf(const Table& rTable)
{
    std::string text = "<table>\n<tr>";
    for (const std::string& rCell : rTable.header)
    {
        text += fmt::format("<th>{}</th>", EscapedHtml(rCell));
    }
    text += "</tr>\n";
    for (const std::vector<Line>& rRow : rTable.rows)
    {
        text += "<tr>";
        for (const Line& rCell : rRow)
        {
            text += fmt::format("<td>{}</td>", HtmlOf(rCell));
        }
        text += "</tr>\n";
    }
    return text + "</table>\n";
}

}  // namespace

Inline Plain(std::string_view text)
{
    return {Inline::Kind::Text, std::string(text), ""};
}

Inline Code(std::string_view text)
{
    return {Inline::Kind::Code, std::string(text), ""};
}

Inline Link(std::string_view text, std::string_view target)
{
    return {Inline::Kind::Link, std::string(text), std::string(target)};
}

Line Joined(const std::vector<Line>& rLines)
{
    Line line;
    for (const Line& rNext : rLines)
    {
        if (!line.empty())
        {
            line.push_back(Plain(", "));
        }
        line.insert(line.end(), rNext.begin(), rNext.end());
    }
    return line;
}

VOID Document::AddHeading(UINT32 level, std::string_view text)
{
    blocks.push_back({level, {Plain(text)}, {}});
}

VOID Document::AddParagraph(Line line)
{
    blocks.push_back({0, std::move(line), {}});
}

VOID Document::AddTable(Table table)
{
    blocks.push_back({0, {}, std::move(table)});
}

std::string ToMarkdown(const Document& rDocument)
{
    std::string text;
    for (const Block& rBlock : rDocument.blocks)
    {
        text += text.empty() ? "" : "\n";
        text += !rBlock.table.header.empty() ? MarkdownOf(rBlock.table)
                : (rBlock.level == 0)        ? MarkdownOf(rBlock.line, false) + '\n'
                                      : fmt::format("{:#>{}} {}\n", "", rBlock.level, MarkdownOf(rBlock.line, false));
    }
    return text;
}

std::string ToHtml(const Document& rDocument)
{
    std::string text = fmt::format(HtmlHead, EscapedHtml(rDocument.title));
    for (const Block& rBlock : rDocument.blocks)
    {
        if (!rBlock.table.header.empty())
        {
            text += HtmlOf(rBlock.table);
        }
        else if (rBlock.level == 0)
        {
            text += fmt::format("<p>{}</p>\n", HtmlOf(rBlock.line));
        }
        else
        {
            text += fmt::format("<h{0} id=\"{1}\">{2}</h{0}>\n", rBlock.level, AnchorOf(rBlock.line[0].text),
                                HtmlOf(rBlock.line));
        }
    }
    return text + "</body>\n</html>\n";
}

}  // namespace tuningfile
