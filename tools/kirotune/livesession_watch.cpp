// The command that prints values as they change.

#include "tools/kirotune/livesession.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/kirotune/stopsignals.h"
#include "tools/liveclient/texts.h"

namespace kirotune
{

namespace
{

using liveclient::Value;
using tuningfile::TextNode;

}  // namespace

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

}  // namespace kirotune
