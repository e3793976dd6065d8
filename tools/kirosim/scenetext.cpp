#include "tools/kirosim/scenetext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>

#include "tools/tuningfile/names.h"
#include "tools/tuningfile/scalarinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

std::string TextOf(const SceneCount& rCount)
{
    if (rCount.least == rCount.most)
    {
        return std::to_string(rCount.least);
    }
    return (rCount.most == SceneCount::Any) ? "" : fmt::format("{} to {}", rCount.least, rCount.most);
}

std::string TextOf(DOUBLE value)
{
    // Six digits hide what conversion between units leaves; read back, the number is printed without an exponent.
    return std::isfinite(value) ? fmt::format("{}", std::stod(fmt::format("{:.6g}", value))) : "";
}

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
    std::vector<DOUBLE> values;
    for (const YAML::Node& rItem : Items(rEntry, "numbers", {count, count}))
    {
        values.push_back(Number(rItem, rEntry.name, low, high));
    }
    return values;
}

INT64 SceneText::Whole(const YamlEntry& rEntry, INT64 low, INT64 high) const
{
    return tuningfile::ReadInteger(m_rInput, rEntry.value, rEntry.name, low, high);
}

UINT64 SceneText::Whole(const YamlEntry& rEntry, UINT64 low, UINT64 high) const
{
    return tuningfile::ReadInteger(m_rInput, rEntry.value, rEntry.name, low, high);
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
        m_rInput.Fail(rEntry.value, fmt::format("'{}' is no {}, {}", rText, rEntry.name,
                                                tuningfile::Advice(rText, {rNames.begin(), rNames.end()})));
    }
    return static_cast<size_t>(found - rNames.begin());
}

std::vector<YAML::Node> SceneText::Items(const YamlEntry& rEntry, const CHAR* pWhat, SceneCount count) const
{
    const YAML::Node& rList = rEntry.value;
    if (!rList.IsSequence() || rList.size() < count.least || rList.size() > count.most)
    {
        const std::string number = TextOf(count);
        m_rInput.Fail(rList,
                      fmt::format("{} wants a list of {}{}{}", rEntry.name, number, number.empty() ? "" : " ", pWhat));
    }
    return {rList.begin(), rList.end()};
}

}  // namespace kirosim
