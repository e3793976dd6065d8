#include "tools/tuningfile/yamlinput.h"

#include <algorithm>

#include <fmt/format.h>
#include <yaml-cpp/depthguard.h>

#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/names.h"
#include "tools/tuningfile/yamldocument.h"
#include "tools/tuningfile/yamlscan.h"

namespace tuningfile
{

namespace
{

constexpr std::string_view MergeKey      = "<<";
constexpr UINT32           MaxMergeDepth = 32;
constexpr size_t           MaxQuoted     = 60;

/// Values that a text may come to once its aliases and merge keys are followed: a few lines could ask for more than any
/// machine can hold. The largest tuning has a tenth of it.
constexpr UINT64 MaxValues = 4000000;

/// What values of a text stand between, and how many of those it may have. A value takes up to 700 bytes while it is
/// read, and two in the text: a list of 16 MB would take 3.7 GB. The largest tuning has a fifth of it.
constexpr std::string_view Separators    = ",\n[{";
constexpr size_t           MaxSeparators = 1000000;

/// Keeps a message on one line, whatever was quoted from the file.
std::string OneLine(std::string_view text)
{
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char letter) { return static_cast<unsigned char>(letter) < ' '; }, '?');
    return line;
}

/// The parser takes a quote for closed where the text ends with its line. A comment behind it changes nothing else.
std::string WithMarkedEnd(std::string_view text)
{
    std::string marked(text);
    marked += text.ends_with('\n') ? "#" : "";
    return marked;
}

/// @return whether a message of the parser is about a bracket or a quote without its end
bool IsUnclosed(std::string_view message)
{
    using namespace YAML::ErrorMsg;
    const std::string_view unclosed[] = {END_OF_MAP_FLOW, END_OF_SEQ_FLOW, FLOW_END, EOF_IN_SCALAR, DOC_IN_SCALAR};
    return std::find(std::begin(unclosed), std::end(unclosed), message) != std::end(unclosed);
}

std::string ClosingOf(CHAR opening)
{
    switch (opening)
    {
    case '[':
        return "',' or ']'";
    case '{':
        return "',' or '}'";
    default:
        return fmt::format("another {}", opening);
    }
}

}  // namespace

TextPlace PlaceOf(const YAML::Node& rNode)
{
    const YAML::Mark mark = rNode.Mark();
    return {static_cast<UINT32>(mark.line + 1), static_cast<UINT32>(mark.column + 1)};
}

std::string Describe(const YAML::Node& rNode)
{
    switch (rNode.Type())
    {
    case YAML::NodeType::Sequence:
        return "a list";
    case YAML::NodeType::Map:
        return "a map";
    case YAML::NodeType::Scalar:
        return (rNode.Scalar().size() <= MaxQuoted) ? fmt::format("'{}'", rNode.Scalar())
                                                    : fmt::format("'{}...'", rNode.Scalar().substr(0, MaxQuoted));
    default:
        return "nothing";
    }
}

const YamlEntry* YamlMap::Find(std::string_view name) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [name](const YamlEntry& rEntry) { return rEntry.name == name; });
    return (found != m_entries.end()) ? &*found : nullptr;
}

YamlInput::YamlInput(std::string_view text, std::string fileName) : m_fileName(std::move(fileName))
{
    RequireFewValues(text);
    try
    {
        m_root = LoadDocument(WithMarkedEnd(text));
    }
    catch (const DocumentCountFault& rFault)
    {
        Fail(rFault.mark, rFault.msg);
    }
    catch (const YAML::DeepRecursion& rFault)
    {
        Fail(rFault.mark, "nested too deeply, expected a tuning");
    }
    catch (const YAML::Exception& rFault)
    {
        FailParsing(text, rFault);
    }
}

VOID YamlInput::FailParsing(std::string_view text, const YAML::Exception& rFault) const
{
    const YamlContext context = ScanYaml(text, rFault.mark.line + 1, rFault.mark.column + 1);
    if (context.tab.has_value())
    {
        FailAt(context.tab->line, context.tab->column, "a tab in the indentation, expected spaces");
    }
    if (IsUnclosed(rFault.msg) && !context.open.empty())
    {
        const YamlLetter& rOpening = context.open.back();
        Fail(rFault.mark, fmt::format("'{}' opened at {}:{} is not closed, expected {}", rOpening.letter, rOpening.line,
                                      rOpening.column, ClosingOf(rOpening.letter)));
    }
    Fail(rFault.mark, fmt::format("{}, expected YAML", rFault.msg));
}

VOID YamlInput::RequireFewValues(std::string_view text) const
{
    size_t count = 0;
    size_t line  = 1;
    for (size_t at = text.find_first_of(Separators); at != text.npos; at = text.find_first_of(Separators, at + 1))
    {
        line += (text[at] == '\n') ? 1 : 0;
        if (++count > MaxSeparators)
        {
            throw InputError(fmt::format("{}:{}:1: more than {} values in lists and lines, expected less", m_fileName,
                                         line, MaxSeparators));
        }
    }
}

VOID YamlInput::FailAt(size_t line, size_t column, std::string_view message) const
{
    throw InputError(fmt::format("{}:{}:{}: {}", m_fileName, line, column, OneLine(message)));
}

VOID YamlInput::Fail(const YAML::Mark& rMark, std::string_view message) const
{
    FailAt(static_cast<size_t>(rMark.line) + 1, static_cast<size_t>(rMark.column) + 1, message);
}

VOID YamlInput::Fail(const YAML::Node& rNode, std::string_view message) const
{
    Fail(rNode.Mark(), message);
}

VOID YamlInput::FailUnknown(const YamlEntry& rEntry, std::string_view what,
                            const std::vector<std::string_view>& rKnown) const
{
    Fail(rEntry.key, fmt::format("unknown {} '{}', {}", what, rEntry.name, Advice(rEntry.name, rKnown)));
}

const std::string& YamlInput::Scalar(const YAML::Node& rNode, std::string_view expected) const
{
    if (!rNode.IsScalar())
    {
        Fail(rNode, fmt::format("{} found, expected {}", Describe(rNode), expected));
    }
    CountValue(rNode);
    return rNode.Scalar();
}

VOID YamlInput::CountValue(const YAML::Node& rNode) const
{
    if (++m_valueCount > MaxValues)
    {
        Fail(rNode,
             fmt::format("aliases and merge keys make more than {} values of the text, expected less", MaxValues));
    }
}

YamlMap YamlInput::Map(const YAML::Node& rNode, std::string_view expected) const
{
    Collection collection;
    Merge(rNode, expected, collection, 0);
    return YamlMap(std::move(collection.entries));
}

VOID YamlInput::Merge(const YAML::Node& rMap, std::string_view expected, Collection& rCollection, UINT32 depth) const
{
    if (!rMap.IsMap())
    {
        Fail(rMap, fmt::format("{} found, expected {}", Describe(rMap), expected));
    }
    if (depth > MaxMergeDepth)
    {
        Fail(rMap, "maps merged too deeply, expected no cycle of merge keys");
    }
    CountValue(rMap);
    const size_t first = rCollection.entries.size();
    for (const auto& rPair : rMap)
    {
        const std::string& rName = Scalar(rPair.first, "a name");
        if (rName == MergeKey)
        {
            continue;
        }
        const auto [known, isNew] = rCollection.indices.try_emplace(rName, rCollection.entries.size());
        if (isNew)
        {
            rCollection.entries.push_back({rName, rPair.first, rPair.second});
        }
        else if (known->second >= first)
        {
            Fail(rPair.first, fmt::format("'{}' given twice, expected once", rName));
        }
    }
    for (const auto& rPair : rMap)
    {
        if (rPair.first.Scalar() != MergeKey)
        {
            continue;
        }
        if (rPair.second.IsSequence())
        {
            for (const YAML::Node& rMerged : rPair.second)
            {
                Merge(rMerged, "a map to merge", rCollection, depth + 1);
            }
        }
        else
        {
            Merge(rPair.second, "a map to merge", rCollection, depth + 1);
        }
    }
}

}  // namespace tuningfile
