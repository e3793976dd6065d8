/// @file
/// A page of headings, paragraphs and tables, and its printed forms.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

namespace tuningfile
{

/// A piece of a line.
struct Inline
{
    enum class Kind
    {
        Text,
        Code,
        Link
    };

    Kind        kind;
    std::string text;
    std::string target;  ///< of a link: name of a page without its ending, or "#" and a heading of this page
};

using Line = std::vector<Inline>;

Inline Plain(std::string_view text);
Inline Code(std::string_view text);
Inline Link(std::string_view text, std::string_view target);

/// Puts ", " between lines.
Line Joined(const std::vector<Line>& rLines);

struct Table
{
    std::vector<std::string>       header;
    std::vector<std::vector<Line>> rows;
};

struct Block
{
    UINT32 level;  ///< of a heading, from 1; 0 for a paragraph or a table
    Line   line;   ///< of a heading or a paragraph
    Table  table;  ///< without a header: none
};

struct Document
{
    std::string        name;  ///< of the file, without ending
    std::string        title;
    std::vector<Block> blocks;

    VOID AddHeading(UINT32 level, std::string_view text);
    VOID AddParagraph(Line line);
    VOID AddTable(Table table);
};

std::string ToMarkdown(const Document& rDocument);

/// A page of its own, without need of any other file.
std::string ToHtml(const Document& rDocument);

}  // namespace tuningfile
