#include "bench/results.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>
#include <fstream>
#include <sys/utsname.h>
#include <thread>

#include "tools/tuningfile/textnode.h"

namespace
{

using tuningfile::TextNode;

/// A value, in a unit that suits it if it is a time.
std::string ValueText(const CHAR* pUnit, DOUBLE value)
{
    if (std::strcmp(pUnit, "ns") != 0)
    {
        return (std::strcmp(pUnit, "count") == 0) ? fmt::format("{:.0f}", value) : fmt::format("{:.3f}", value);
    }
    if (value < 1e3)
    {
        return fmt::format("{:.1f} ns", value);
    }
    return (value < 1e6) ? fmt::format("{:.2f} us", value / 1e3) : fmt::format("{:.3f} ms", value / 1e6);
}

TextNode Number(DOUBLE value)
{
    return TextNode::Scalar(fmt::format("{:.6g}", value));
}

/// AArch64 has no name of the model but numbers of maker and part.
std::string ProcessorName()
{
    std::ifstream file("/proc/cpuinfo");
    std::string   numbers;
    for (std::string line; std::getline(file, line) && !(line.empty() && !numbers.empty());)
    {
        const size_t colon = line.find(": ");
        if (line.starts_with("model name") && colon != std::string::npos)
        {
            return line.substr(colon + 2);
        }
        if (line.starts_with("CPU implementer") || line.starts_with("CPU part"))
        {
            numbers += (numbers.empty() ? "implementer " : " part ") + line.substr(colon + 2);
        }
    }
    return numbers.empty() ? "unknown" : numbers;
}

TextNode Machine()
{
    utsname names{};
    (VOID) uname(&names);
    DOUBLE load = -1.0;
    (VOID) getloadavg(&load, 1);
    TextNode machine = TextNode::Map();
    machine.Add("uname", TextNode::Quoted(
                             fmt::format("{} {} {} {}", names.sysname, names.nodename, names.release, names.machine)));
    machine.Add("cpu", TextNode::Quoted(ProcessorName()));
    machine.Add("cpus", TextNode::Scalar(std::to_string(std::thread::hardware_concurrency())));
    machine.Add("load", Number(load));
    return machine;
}

}  // namespace

DOUBLE PercentileOf(std::vector<DOUBLE>& rValues, DOUBLE fraction)
{
    const auto place = rValues.begin() + static_cast<ptrdiff_t>(fraction * static_cast<DOUBLE>(rValues.size()));
    std::nth_element(rValues.begin(), place, rValues.end());
    return *place;
}

VOID PrintTable(const CHAR* pTitle, const std::vector<BenchResult>& rResults)
{
    fmt::print("\n{:<40}{:>12}{:>12}{:>9}\n", pTitle, "measured", "bar", "ratio");
    for (const BenchResult& rResult : rResults)
    {
        fmt::print("{:<40}{:>12}", rResult.name, ValueText(rResult.pUnit, rResult.median));
        if (rResult.bar)
        {
            const std::string ratio = (*rResult.bar > 0.0) ? fmt::format("{:.2f}", rResult.median / *rResult.bar) : "";
            fmt::print("{:>12}{:>9}  {}", ValueText(rResult.pUnit, *rResult.bar), ratio,
                       rResult.IsKept() ? "ok" : "above");
        }
        fmt::print("\n");
    }
}

VOID PrintMachine()
{
    fmt::print("{}\n", tuningfile::ToJsonLine(Machine()));
}

VOID PrintJson(const std::vector<BenchResult>& rResults)
{
    TextNode list = TextNode::List();
    for (const BenchResult& rResult : rResults)
    {
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("name", TextNode::Quoted(rResult.name));
        rItem.Add("unit", TextNode::Quoted(rResult.pUnit));
        rItem.Add("median", Number(rResult.median));
        rItem.Add("bar", rResult.bar ? Number(*rResult.bar) : TextNode::Scalar("null"));
        rItem.Add("ok", TextNode::Scalar(!rResult.bar ? "null" : rResult.IsKept() ? "true" : "false"));
    }
    TextNode document = TextNode::Map();
    document.Add("machine", Machine());
    document.Add("results", std::move(list));
    fmt::print("{}\n", tuningfile::ToJson(document));
}
