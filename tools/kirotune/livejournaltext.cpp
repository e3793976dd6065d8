#include "tools/kirotune/livejournaltext.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include <fmt/format.h>

#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/tuning.h"

namespace kirotune
{

namespace
{

using liveclient::Error;

constexpr std::string_view Title     = "kirotune journal 1";
constexpr std::string_view CameraKey = "camera";
constexpr std::string_view SetKey    = "set";

/// Fields of a line before its edits, and of an edit.
constexpr size_t HeadFields = 5;
constexpr size_t EditFields = 3;

bool IsNamedPath(const std::string& rPath)
{
    try
    {
        return liveclient::NamedPath(rPath) == rPath;
    }
    catch (const Error&)
    {
        return false;
    }
}

/// Reads the lines of a journal one after the other.
class JournalReader
{
public:
    JournalReader(const std::string& rText, const std::string& rName) : m_rest(rText), m_rName(rName)
    {
    }

    bool IsAtEnd() const
    {
        return m_rest.empty();
    }

    std::string_view TakeLine();
    EditCommand      TakeCommand();

    [[noreturn]] VOID Fail(std::string_view expected) const
    {
        throw Error(fmt::format("{}:{}: no line of a journal of edits, expected {}; move the file away to begin anew",
                                m_rName, m_line, expected));
    }

private:
    std::string_view   m_rest;
    const std::string& m_rName;
    UINT32             m_line = 0;
};

std::string_view JournalReader::TakeLine()
{
    ++m_line;
    const size_t end = m_rest.find('\n');
    if (end == std::string_view::npos)
    {
        Fail("a line with an end");
    }
    const std::string_view line = m_rest.substr(0, end);
    m_rest.remove_prefix(end + 1);
    return line;
}

EditCommand JournalReader::TakeCommand()
{
    const std::vector<std::string> fields = liveclient::Split(TakeLine(), '\t');
    if (fields.size() < HeadFields + EditFields || (fields.size() - HeadFields) % EditFields != 0 ||
        fields[0] != SetKey || std::any_of(fields.begin(), fields.end(), [](const auto& rOne) { return rOne.empty(); }))
    {
        Fail("'set', time, mode table, mode path, module, and member, old and new number, with tabs between");
    }
    EditCommand command{fields[1], 0, fields[3], fields[4], {}};
    if (!IsNamedPath(command.path))
    {
        Fail("a mode path by names");
    }
    const auto end  = fields[2].data() + fields[2].size();
    const auto read = std::from_chars(fields[2].data(), end, command.table);
    if (read.ec != std::errc() || read.ptr != end || command.table >= tuningfile::MaxModeTables)
    {
        Fail("the index of a mode table");
    }
    for (size_t field = HeadFields; field < fields.size(); field += EditFields)
    {
        command.edits.push_back({fields[field], fields[field + 1], fields[field + 2]});
        if (!liveclient::IsNumber(command.edits.back().newText))
        {
            Fail("a number behind each member and its old number");
        }
    }
    return command;
}

/// What comes from a camera must not look like the end of a field. @return the text, or something in its place
std::string Field(const std::string& rText)
{
    return rText.empty() ? "-" : Clean(rText);
}

}  // namespace

std::string FormatJournal(const JournalContent& rContent)
{
    std::string text = fmt::format("{}\n{}\t{}\n", Title, CameraKey, Field(rContent.camera));
    for (const EditCommand& rCommand : rContent.commands)
    {
        text += fmt::format("{}\t{}\t{}\t{}\t{}", SetKey, rCommand.time, rCommand.table, Field(rCommand.path),
                            Field(rCommand.module));
        for (const Edit& rEdit : rCommand.edits)
        {
            text += fmt::format("\t{}\t{}\t{}", Field(rEdit.member), Field(rEdit.oldText), Field(rEdit.newText));
        }
        text += '\n';
    }
    return text;
}

JournalContent ParseJournal(const std::string& rText, const std::string& rName)
{
    JournalReader reader(rText, rName);
    if (reader.TakeLine() != Title)
    {
        reader.Fail(fmt::format("'{}'", Title));
    }
    JournalContent                 content;
    const std::vector<std::string> fields = liveclient::Split(reader.TakeLine(), '\t');
    if (fields.size() != 2 || fields[0] != CameraKey || fields[1].empty())
    {
        reader.Fail("'camera', a tab, and which camera it is");
    }
    content.camera = fields[1];
    while (!reader.IsAtEnd())
    {
        content.commands.push_back(reader.TakeCommand());
    }
    return content;
}

std::vector<std::string> NamesOf(const EditCommand& rCommand)
{
    std::vector<std::string> names;
    for (const Edit& rEdit : rCommand.edits)
    {
        names.push_back(rEdit.member);
    }
    return names;
}

std::vector<EditCommand> Joined(const std::vector<EditCommand>& rCommands)
{
    std::vector<EditCommand> joined;
    for (const EditCommand& rCommand : rCommands)
    {
        const auto same = std::find_if(joined.begin(), joined.end(),
                                       [&](const EditCommand& rOther) {
                                           return rOther.table == rCommand.table && rOther.path == rCommand.path &&
                                                  rOther.module == rCommand.module;
                                       });
        if (same == joined.end())
        {
            joined.push_back(rCommand);
            continue;
        }
        same->time = rCommand.time;
        for (const Edit& rEdit : rCommand.edits)
        {
            const auto known = std::find_if(same->edits.begin(), same->edits.end(),
                                            [&](const Edit& rOther) { return rOther.member == rEdit.member; });
            if (known == same->edits.end())
            {
                same->edits.push_back(rEdit);
                continue;
            }
            known->newText = rEdit.newText;
        }
    }
    return joined;
}

}  // namespace kirotune
