// The command that prints values as they change.

#include "tools/kirotune/livesession.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/kirotune/stopsignals.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/names.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;
using tuningfile::TextNode;

}  // namespace

/// @param rNames as 'controls' lists them; the ID of a number without a name
std::vector<Value> LiveSession::ReadControls(const std::vector<std::string>& rNames)
{
    if (rNames.empty())
    {
        return {};
    }
    std::vector<Value> published;
    for (const liveclient::ControlValue& rControl : m_client.ControlValues())
    {
        const std::string name = ControlName(rControl.id);
        published.push_back({name.empty() ? std::to_string(rControl.id) : name, fmt::format("{}", rControl.value)});
    }
    std::vector<Value> values;
    for (const std::string& rName : rNames)
    {
        const auto isIt  = [&rName](const Value& rValue) { return rValue.name == rName; };
        const auto found = std::find_if(published.begin(), published.end(), isIt);
        if (found == published.end())
        {
            std::vector<std::string_view> names;
            std::transform(published.begin(), published.end(), std::back_inserter(names),
                           [](const Value& rValue) { return std::string_view(rValue.name); });
            throw Error(fmt::format("the camera publishes no '{}'{}", rName,
                                    names.empty() ? " and no other number" : ", " + tuningfile::Advice(rName, names)));
        }
        values.push_back(*found);
    }
    return values;
}

VOID LiveSession::PrintSample(const std::string& rModule, DOUBLE seconds, const Sample& rSample) const
{
    std::string line = fmt::format("{:9.3f}", seconds);
    TextNode    node = TextNode::Map();
    node.Add("seconds", TextNode::Scalar(fmt::format("{:.3f}", seconds)));
    TextNode& rMembers = node.Add("values", TextNode::Map());
    for (const Value& rValue : rSample.members)
    {
        line += fmt::format("  {}={}", Clean(rValue.name), Clean(WithEnumerator(rModule, rValue)));
        rMembers.Add(Clean(rValue.name), JsonValue(rModule, rValue));
    }
    if (!rSample.controls.empty())
    {
        TextNode& rControls = node.Add("controls", TextNode::Map());
        for (const Value& rValue : rSample.controls)
        {
            line += fmt::format("  {}={}", rValue.name, rValue.text);
            rControls.Add(rValue.name, JsonPrinted(rValue.text));
        }
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
    std::optional<Sample>          shown;
    UINT64                         lines = 0;
    while (!signals.CameUntil(next))
    {
        const auto now = steady_clock::now();
        Sample     sample{{}, ReadControls(rOptions.controls)};
        if (!members.empty())
        {
            sample.members = m_camera.GetAll(rPath, rModule, members);
        }
        if (rOptions.everySample || sample != shown)
        {
            PrintSample(rModule, duration<DOUBLE>(now - start).count(), sample);
            shown = std::move(sample);
            if (++lines == rOptions.count)
            {
                return;
            }
        }
        next = std::max(next + period, now);  // a slow camera is not asked in a rush afterwards
    }
}

}  // namespace kirotune
