// The commands that ask what a camera is, which modes, modules and tables it has, and which numbers it publishes.

#include "tools/kirotune/livesession.h"

#include <algorithm>
#include <cstdio>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "schema/modules.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/files.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using tuningfile::TextNode;

}  // namespace

LiveSession::LiveSession(const liveclient::Options& rOptions, bool isJson)
    : m_camera(rOptions), m_client(m_camera.Client()), m_isJson(isJson)
{
}

/// On stderr, which does not belong to the answer.
VOID LiveSession::PrintRemark(const std::string& rRemark)
{
    fmt::print(stderr, "{}\n", rRemark);
}

VOID LiveSession::PrintTexts(const std::vector<std::string>& rTexts) const
{
    if (m_isJson)
    {
        PrintJson(JsonList(rTexts));
        return;
    }
    for (const std::string& rText : rTexts)
    {
        fmt::print("{}\n", Clean(rText));
    }
}

VOID LiveSession::NameCamera()
{
    fmt::print(stderr, "camera at {}: {}\n", m_camera.Place(), Clean(m_camera.Device().name));
}

VOID LiveSession::Device()
{
    const liveclient::DeviceInfo& rInfo   = m_camera.Device();
    const std::string             version = fmt::format("{}.{}", rInfo.major, rInfo.minor);
    const std::string             id      = fmt::format("{:#018x}", rInfo.id);
    if (m_isJson)
    {
        TextNode node = TextNode::Map();
        node.Add("name", JsonText(rInfo.name));
        node.Add("version", JsonText(version));
        node.Add("id", JsonText(id));
        node.Add("tables", JsonList(rInfo.tables));
        PrintJson(node);
        return;
    }
    std::vector<Row> rows = {{"name", rInfo.name}, {"protocol", version}, {"id", id}};
    if (!rInfo.tables.empty())
    {
        rows.push_back({"mode tables", fmt::format("{}", fmt::join(rInfo.tables, ", "))});
    }
    PrintTable({}, rows);
}

VOID LiveSession::Modes(const std::string& rPath)
{
    const std::string path = liveclient::NamedPath(rPath);
    m_camera.RequireMode(path);
    PrintTexts(m_client.ChildModes(path));
}

VOID LiveSession::ActiveModes()
{
    PrintTexts(m_client.ActiveModes());
}

VOID LiveSession::Modules(const std::string& rPath)
{
    const std::string path = liveclient::NamedPath(rPath);
    m_camera.RequireMode(path);
    std::vector<std::string> names;
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord != nullptr && !m_client.Info(path, rModule.pName).empty())
        {
            names.push_back(rModule.pName);
        }
    }
    PrintTexts(names);
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
        rItem.Add("value", JsonPrinted(text));
    }
    if (m_isJson)
    {
        PrintJson(list);
        return;
    }
    PrintTable({"id", "value", "name"}, rows);
}

VOID LiveSession::PrintTableIndex(UINT32 index)
{
    const std::vector<std::string>& rNames = m_camera.Device().tables;
    const std::string               name   = (index < rNames.size()) ? rNames[index] : "";
    if (m_isJson)
    {
        TextNode node = TextNode::Map();
        node.Add("table", TextNode::Scalar(std::to_string(index)));
        node.Add("name", JsonText(name));
        PrintJson(node);
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
        PrintJson(node);
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
