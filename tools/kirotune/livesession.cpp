#include "tools/kirotune/livesession.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <ctime>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "parameters/parameterparserinfo.h"
#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/kirotune/livesharing.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/names.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;
using tuningfile::TextNode;

VOID Print(const TextNode& rNode)
{
    fmt::print("{}", tuningfile::ToJson(rNode));
}

/// What an answer without content may mean. The service does not say more.
/// @param rMembers those that are missing; none if all were asked for
Error Nothing(const std::string& rPath, const std::string& rModule, const std::vector<std::string>& rMembers)
{
    const std::string             name = rModule.substr(0, rModule.find('.'));
    std::vector<std::string_view> names;
    for (const tuning::ModuleDescription& rKnown : tuning::TuningModules)
    {
        if (rKnown.pRecord != nullptr)
        {
            names.push_back(rKnown.pName);
        }
    }
    std::string text = "no such mode path, module or member";
    text += rMembers.empty() ? ", or no values right below it" : "";
    text += fmt::format(": '{}' {}", rPath, rModule);
    text += rMembers.empty() ? "" : fmt::format(" {}", fmt::join(rMembers, ","));
    if (std::find(names.begin(), names.end(), name) == names.end())
    {
        text += "; for the module, " + tuningfile::Advice(name, names);
    }
    return Error(text);
}

/// Takes the value of that name out of a list. @return whether there was one
bool Take(const std::string& rName, std::vector<Value>& rValues, Value& rValue)
{
    const auto found =
        std::find_if(rValues.begin(), rValues.end(), [&](const Value& rOther) { return rOther.name == rName; });
    if (found == rValues.end())
    {
        return false;
    }
    rValue = std::move(*found);
    rValues.erase(found);
    return true;
}

/// Whether a value reads back as it was set, but for what single precision and ten decimals leave of it.
bool IsNear(const std::string& rWanted, const std::string& rRead)
{
    const DOUBLE wanted = std::strtod(rWanted.c_str(), nullptr);
    const DOUBLE read   = std::strtod(rRead.c_str(), nullptr);
    return std::fabs(wanted - read) <= 1e-9 + 1e-6 * std::fabs(wanted);
}

/// Waits, and ends early on a signal that asks to stop.
class StopSignals
{
public:
    /// Takes SIGINT and SIGTERM from their handlers, so that a signal never cuts an exchange in two.
    StopSignals()
    {
        sigemptyset(&m_signals);
        sigaddset(&m_signals, SIGINT);
        sigaddset(&m_signals, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    }

    /// @return whether such a signal has come until then
    bool CameUntil(std::chrono::steady_clock::time_point then) const
    {
        using namespace std::chrono;
        while (true)
        {
            const INT64    left = std::max<INT64>((then - steady_clock::now()) / nanoseconds(1), 0);
            const timespec wait{static_cast<time_t>(left / 1000000000), static_cast<long>(left % 1000000000)};
            if (sigtimedwait(&m_signals, nullptr, &wait) > 0)
            {
                return true;
            }
            if (errno == EAGAIN)
            {
                return false;
            }
        }
    }

private:
    sigset_t m_signals;
};

}  // namespace

LiveSession::LiveSession(const liveclient::Options& rOptions, bool isJson)
    : m_client(rOptions), m_place(fmt::format("{}:{}", rOptions.host, rOptions.port)), m_isJson(isJson)
{
}

VOID LiveSession::PrintTexts(const std::vector<std::string>& rTexts) const
{
    if (m_isJson)
    {
        Print(JsonList(rTexts));
        return;
    }
    for (const std::string& rText : rTexts)
    {
        fmt::print("{}\n", Clean(rText));
    }
}

VOID LiveSession::NameCamera()
{
    fmt::print(stderr, "camera at {}: {}\n", m_place, Clean(m_client.Device().name));
}

VOID LiveSession::Device()
{
    const liveclient::DeviceInfo info    = m_client.Device();
    const std::string            version = fmt::format("{}.{}", info.major, info.minor);
    const std::string            id      = fmt::format("{:#018x}", info.id);
    if (m_isJson)
    {
        TextNode node = TextNode::Map();
        node.Add("name", JsonText(info.name));
        node.Add("version", JsonText(version));
        node.Add("id", JsonText(id));
        node.Add("tables", JsonList(info.tables));
        Print(node);
        return;
    }
    std::vector<Row> rows = {{"name", info.name}, {"protocol", version}, {"id", id}};
    if (!info.tables.empty())
    {
        rows.push_back({"mode tables", fmt::format("{}", fmt::join(info.tables, ", "))});
    }
    PrintTable({}, rows);
}

/// For a path that the tuning does not have, the service lists what is below the root.
VOID LiveSession::RequireMode(const std::string& rPath)
{
    const std::vector<std::string> items = liveclient::Split(rPath, '|');
    std::string                    above = items[0];
    for (size_t index = 1; index < items.size(); ++index)
    {
        const std::vector<std::string> children = m_client.ChildModes(above);
        if (std::find(children.begin(), children.end(), items[index]) == children.end())
        {
            throw Error(
                fmt::format("the tuning has no mode '{}' below '{}', there {}", items[index], above,
                            children.empty() ? "are none" : Clean(fmt::format("are {}", fmt::join(children, ", ")))));
        }
        above += '|' + items[index];
    }
}

VOID LiveSession::Modes(const std::string& rPath)
{
    const std::string path = liveclient::NamedPath(rPath);
    RequireMode(path);
    PrintTexts(m_client.ChildModes(path));
}

VOID LiveSession::ActiveModes()
{
    PrintTexts(m_client.ActiveModes());
}

VOID LiveSession::Controls()
{
    std::vector<Row> rows;
    TextNode         list = TextNode::List();
    for (const liveclient::ControlValue& rControl : m_client.ControlValues())
    {
        const std::string id   = std::to_string(rControl.id);
        const std::string text = fmt::format("{}", rControl.value);
        rows.push_back({id, text, ControlName(rControl.id)});
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("id", TextNode::Scalar(id));
        rItem.Add("name", JsonText(ControlName(rControl.id)));
        rItem.Add("value", std::isfinite(rControl.value) ? TextNode::Scalar(text) : JsonText(text));
    }
    if (m_isJson)
    {
        Print(list);
        return;
    }
    PrintTable({"id", "value", "name"}, rows);
}

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
        throw Nothing(rPath, rModule, {});
    }
    return infos;
}

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
        rows.push_back({rInfo.name, rInfo.type, count, WithEnumerator(record, value)});
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("name", JsonText(rInfo.name));
        rItem.Add("type", JsonText(rInfo.type));
        if (rInfo.count)
        {
            rItem.Add("count", TextNode::Scalar(count));
        }
        if (!rInfo.value.empty())
        {
            const bool isText = rInfo.type == ParameterParserInfo::TypeString;
            rItem.Add("value", isText ? JsonText(rInfo.value) : JsonValue(record, value));
        }
    }
    if (m_isJson)
    {
        Print(list);
        return;
    }
    PrintTable({"member", "type", "count", "value"}, rows);
}

/// @param rMembers all of which must be there; none for all that there are
std::vector<Value> LiveSession::GetAll(const std::string& rPath, const std::string& rModule,
                                       const std::vector<std::string>& rMembers)
{
    std::vector<Value> values = m_client.Get(rPath, rModule, rMembers);
    std::vector<Value> left   = values;

    std::vector<std::string> missing;
    for (const std::string& rMember : rMembers)
    {
        Value value;
        if (!Take(rMember, left, value))
        {
            missing.push_back(rMember);
        }
    }
    if (values.empty() || !missing.empty())
    {
        throw Nothing(rPath, rModule, missing);
    }
    return values;
}

VOID LiveSession::Get(const std::string& rPath, const std::string& rModule, const std::string& rMembers)
{
    std::vector<Row> rows;
    TextNode         node = TextNode::Map();
    for (const Value& rValue : GetAll(rPath, rModule, liveclient::Split(rMembers, ',')))
    {
        rows.push_back({rValue.name, WithEnumerator(rModule, rValue)});
        node.Add(Clean(rValue.name), JsonValue(rModule, rValue));
    }
    if (m_isJson)
    {
        Print(node);
        return;
    }
    PrintTable({}, rows);
}

VOID LiveSession::PrintSet(const std::string& rModule, const std::vector<Value>& rOld,
                           const std::vector<Value>& rNew) const
{
    std::vector<Row> rows;
    TextNode         list = TextNode::List();
    for (size_t index = 0; index < rNew.size(); ++index)
    {
        rows.push_back(
            {rNew[index].name, WithEnumerator(rModule, rOld[index]), "->", WithEnumerator(rModule, rNew[index])});
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("name", JsonText(rNew[index].name));
        rItem.Add("old", JsonValue(rModule, rOld[index]));
        rItem.Add("new", JsonValue(rModule, rNew[index]));
    }
    if (m_isJson)
    {
        Print(list);
        return;
    }
    PrintTable({}, rows);
}

VOID LiveSession::Set(const std::string& rPath, const std::string& rModule,
                      const std::vector<std::string>& rAssignments)
{
    // The service would edit the deepest mode that exists.
    RequireMode(liveclient::NamedPath(rPath));
    std::vector<Value>       wanted;
    std::vector<std::string> names;
    for (const std::string& rAssignment : rAssignments)
    {
        const size_t equal = rAssignment.find('=');
        if (equal == std::string::npos)
        {
            throw Error(fmt::format("'{}': expected NAME=VALUE", rAssignment));
        }
        Value value{rAssignment.substr(0, equal), rAssignment.substr(equal + 1)};
        value.text = NumberFor(rModule, value);
        names.push_back(value.name);
        wanted.push_back(std::move(value));
    }

    // Nothing is changed unless all of it can be read.
    std::vector<Value> before = GetAll(rPath, rModule, names);
    SharedEdit         shared(m_client, liveclient::NamedPath(rPath), rModule, names);
    NameCamera();
    std::vector<Value> readBack = m_client.Set(rPath, rModule, wanted);
    std::vector<Value> oldValues;
    std::vector<Value> newValues;
    std::string        refused;
    for (const Value& rWanted : wanted)
    {
        Value oldValue;
        Value newValue;
        (VOID) Take(rWanted.name, before, oldValue);
        if (!Take(rWanted.name, readBack, newValue))
        {
            refused += ' ' + rWanted.name;
            continue;
        }
        if (!IsNear(rWanted.text, newValue.text))
        {
            fmt::print(stderr, "{}: asked for {}, reads back {}\n", rWanted.name, rWanted.text, Clean(newValue.text));
        }
        oldValues.push_back(std::move(oldValue));
        newValues.push_back(std::move(newValue));
    }
    PrintSet(rModule, oldValues, newValues);
    for (const std::string& rTouched : shared.Touched())
    {
        fmt::print(stderr, "shared, and set as well: {}\n", Clean(rTouched));
    }
    if (!refused.empty())
    {
        throw Error("the camera did not set:" + refused);
    }
}

VOID LiveSession::PrintSample(const std::string& rModule, DOUBLE seconds, const std::vector<Value>& rValues) const
{
    std::string line = fmt::format("{:9.3f}", seconds);
    TextNode    node = TextNode::Map();
    node.Add("seconds", TextNode::Scalar(fmt::format("{:.3f}", seconds)));
    TextNode& rMembers = node.Add("values", TextNode::Map());
    for (const Value& rValue : rValues)
    {
        line += fmt::format("  {}={}", Clean(rValue.name), Clean(WithEnumerator(rModule, rValue)));
        rMembers.Add(Clean(rValue.name), JsonValue(rModule, rValue));
    }
    fmt::print("{}", m_isJson ? tuningfile::ToJsonLine(node) : line + '\n');
    std::fflush(stdout);
}

VOID LiveSession::Watch(const std::string& rPath, const std::string& rModule, const std::string& rMembers,
                        const WatchOptions& rOptions)
{
    using namespace std::chrono;
    const StopSignals              signals;
    const std::vector<std::string> members = liveclient::Split(rMembers, ',');
    const auto                     period  = duration_cast<nanoseconds>(duration<DOUBLE>(1.0 / rOptions.rate));
    const auto                     start   = steady_clock::now();
    auto                           next    = start;
    std::vector<Value>             shown;
    UINT64                         lines = 0;
    while (!signals.CameUntil(next))
    {
        const auto         now     = steady_clock::now();
        std::vector<Value> values  = GetAll(rPath, rModule, members);
        const auto         isEqual = [](const Value& rFirst, const Value& rSecond)
        { return rFirst.name == rSecond.name && rFirst.text == rSecond.text; };
        if (rOptions.everySample || !std::equal(values.begin(), values.end(), shown.begin(), shown.end(), isEqual))
        {
            PrintSample(rModule, duration<DOUBLE>(now - start).count(), values);
            shown = std::move(values);
            if (++lines == rOptions.count)
            {
                return;
            }
        }
        next = std::max(next + period, now);  // a slow camera is not asked in a rush afterwards
    }
}

VOID LiveSession::PrintTableIndex(UINT32 index)
{
    const std::vector<std::string> names = m_client.Device().tables;
    const std::string              name  = (index < names.size()) ? names[index] : "";
    if (m_isJson)
    {
        TextNode node = TextNode::Map();
        node.Add("table", TextNode::Scalar(std::to_string(index)));
        node.Add("name", JsonText(name));
        Print(node);
        return;
    }
    fmt::print("{}{}\n", index, name.empty() ? "" : fmt::format(" ({})", Clean(name)));
}

VOID LiveSession::ShowTable()
{
    PrintTableIndex(m_client.TableIndex());
}

VOID LiveSession::SelectTable(UINT32 index)
{
    NameCamera();
    const UINT32 selected = m_client.SelectTable(index);
    if (selected != index)
    {
        throw Error(fmt::format("no mode table {}, table {} stays in use", index, selected));
    }
    PrintTableIndex(selected);
}

VOID LiveSession::Custom(const std::string& rFile)
{
    const std::vector<BYTE> bytes = tuningfile::ReadBytes(rFile);
    NameCamera();
    const liveclient::CustomResult answer = m_client.Custom(bytes);
    if (m_isJson)
    {
        TextNode node = TextNode::Map();
        node.Add("result", TextNode::Scalar(std::to_string(answer.result)));
        node.Add("hex", JsonText(Hex(answer.bytes, "")));
        Print(node);
        return;
    }
    fmt::print("result {}, {} bytes\n", answer.result, answer.bytes.size());
    if (IsPlainText(answer.bytes))
    {
        fmt::print("{}{}", std::string(answer.bytes.begin(), answer.bytes.end()), answer.bytes.empty() ? "" : "\n");
        return;
    }
    constexpr size_t BytesPerLine = 16;
    for (size_t begin = 0; begin < answer.bytes.size(); begin += BytesPerLine)
    {
        const size_t end = std::min(begin + BytesPerLine, answer.bytes.size());
        fmt::print("{:04x}  {}\n", begin, Hex({answer.bytes.begin() + begin, answer.bytes.begin() + end}, " "));
    }
}

}  // namespace kirotune
