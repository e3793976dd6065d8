#include "tools/kirosim/scenetext.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tuningfile/scalarinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

DOUBLE SceneText::Number(const YamlEntry& rEntry, DOUBLE low, DOUBLE high) const
{
    return Number(rEntry.value, rEntry.name, low, high);
}

DOUBLE SceneText::Number(const YAML::Node& rNode, const std::string& rName, DOUBLE low, DOUBLE high) const
{
    const std::string& rText  = m_rInput.Scalar(rNode, "a number");
    DOUBLE             value  = 0.0;
    const auto         result = std::from_chars(rText.data(), rText.data() + rText.size(), value);
    if (result.ec != std::errc() || result.ptr != rText.data() + rText.size() || !(value >= low && value <= high))
    {
        m_rInput.Fail(rNode, fmt::format("'{}' is no {}, expected a number from {} to {}", rText, rName, low, high));
    }
    return value;
}

std::vector<DOUBLE> SceneText::Numbers(const YamlEntry& rEntry, size_t count, DOUBLE low, DOUBLE high) const
{
    if (!rEntry.value.IsSequence() || rEntry.value.size() != count)
    {
        m_rInput.Fail(rEntry.value, fmt::format("{} wants a list of {} numbers", rEntry.name, count));
    }
    std::vector<DOUBLE> values;
    for (const YAML::Node& rItem : rEntry.value)
    {
        values.push_back(Number(rItem, rEntry.name, low, high));
    }
    return values;
}

UINT64 SceneText::Unsigned(const YamlEntry& rEntry, UINT64 maximum) const
{
    return tuningfile::ReadUnsigned(m_rInput, rEntry.value, rEntry.name, maximum);
}

bool SceneText::Flag(const YamlEntry& rEntry) const
{
    return tuningfile::ReadFlag(m_rInput, rEntry.value, rEntry.name);
}

size_t SceneText::Choice(const YamlEntry& rEntry, const std::vector<std::string>& rNames) const
{
    const std::string& rText = m_rInput.Scalar(rEntry.value, "a name");
    const auto         found = std::find(rNames.begin(), rNames.end(), rText);
    if (found == rNames.end())
    {
        const auto last = rNames.end() - 1;
        m_rInput.Fail(rEntry.value, fmt::format("'{}' is no {}, expected {} or {}", rText, rEntry.name,
                                                fmt::join(rNames.begin(), last, ", "), *last));
    }
    return static_cast<size_t>(found - rNames.begin());
}

std::vector<YAML::Node> SceneText::Items(const YamlEntry& rEntry, const CHAR* pWhat) const
{
    if (!rEntry.value.IsSequence())
    {
        m_rInput.Fail(rEntry.value, fmt::format("{} wants a list of {}", rEntry.name, pWhat));
    }
    return {rEntry.value.begin(), rEntry.value.end()};
}

}  // namespace kirosim
