// The commands that read the values of a record.

#include "tools/kirotune/livesession.h"

#include <algorithm>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "parameters/parameterparserinfo.h"
#include "schema/modules.h"
#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/texts.h"
#include "tools/meaning/wordpath.h"
#include "tools/meaning/wordtext.h"
#include "tools/tuningfile/names.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;
using tuningfile::TextNode;

}  // namespace

/// Describes the members of a record, or one member. For the latter the service has no answer: it is found among the
/// members of its record.
/// @param rRecord the text by which the record is named
std::vector<liveclient::MemberInfo> LiveSession::Describe(const std::string& rPath, const std::string& rModule,
                                                          std::string& rRecord)
{
    rRecord                                   = rModule;
    std::vector<liveclient::MemberInfo> infos = m_client.Info(rPath, rModule);
    const size_t                        dot   = rModule.rfind('.');
    if (infos.empty() && dot != std::string::npos)
    {
        const std::string member = rModule.substr(dot + 1, rModule.find('[', dot) - dot - 1);
        rRecord                  = rModule.substr(0, dot);
        infos                    = m_client.Info(rPath, rRecord);
        std::erase_if(infos, [&](const liveclient::MemberInfo& rInfo) { return rInfo.name != member; });
    }
    if (infos.empty())
    {
        throw NothingThere(rPath, rModule, {});
    }
    return infos;
}

namespace
{

/// What the schema of this program says of a member of a module, or of a record within it.
meaning::WordPath WordsOfMember(const std::string& rRecord, const std::string& rMember)
{
    return meaning::FindWords(fmt::format("{}.{}", rRecord, rMember));
}

/// @return the range with its unit, empty if there is none
std::string RangeOf(const std::string& rRecord, const std::string& rMember)
{
    const meaning::WordPath found = WordsOfMember(rRecord, rMember);
    return (found.unknown.empty() && found.pJudged != nullptr)
               ? meaning::ExpectedText(found.pJudged->range, found.pJudged->unit)
               : "";
}

std::string MeaningOf(const std::string& rRecord, const std::string& rMember)
{
    const meaning::WordPath found = WordsOfMember(rRecord, rMember);
    return (found.unknown.empty() && found.pWords != nullptr) ? meaning::FullText(found.pWords->words) : "";
}

}  // namespace

VOID LiveSession::Info(const std::string& rPath, const std::string& rModule)
{
    std::string                               record;
    const std::vector<liveclient::MemberInfo> infos = Describe(rPath, rModule, record);
    std::vector<Row>                          rows;
    TextNode                                  list = TextNode::List();
    for (const liveclient::MemberInfo& rInfo : infos)
    {
        const std::string count = rInfo.count ? std::to_string(*rInfo.count) : "";
        const Value       value{rInfo.name, rInfo.value};
        const std::string range = RangeOf(record, rInfo.name);
        rows.push_back({rInfo.name, rInfo.type, count, WithEnumerator(record, value), range});
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("name", JsonText(rInfo.name));
        rItem.Add("type", JsonText(rInfo.type));
        if (rInfo.count)
        {
            rItem.Add("count", TextNode::Scalar(count));
        }
        if (!range.empty())
        {
            rItem.Add("range", JsonText(range));
        }
        if (!rInfo.value.empty())
        {
            const bool isText = rInfo.type == ParameterParserInfo::TypeString;
            rItem.Add("value", isText ? JsonText(rInfo.value) : JsonValue(record, value));
        }
    }
    if (m_isJson)
    {
        PrintJson(list);
        return;
    }
    PrintTable({"member", "type", "count", "value", "range"}, rows);
    if (infos.size() == 1)
    {
        PrintTable({}, {{MeaningOf(record, infos[0].name)}});
    }
}

VOID LiveSession::Get(const std::string& rPath, const std::string& rModule, const std::string& rMembers)
{
    std::vector<Row> rows;
    TextNode         node = TextNode::Map();
    for (const Value& rValue : m_camera.GetAll(rPath, rModule, liveclient::Split(rMembers, ',')))
    {
        rows.push_back({rValue.name, WithEnumerator(rModule, rValue)});
        node.Add(Clean(rValue.name), JsonValue(rModule, rValue));
    }
    if (m_isJson)
    {
        PrintJson(node);
        return;
    }
    PrintTable({}, rows);
}

}  // namespace kirotune
