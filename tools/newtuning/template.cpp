#include "tools/newtuning/template.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace newtuning
{

namespace
{

constexpr std::string_view PartBegin = "@if ";
constexpr std::string_view PartEnd   = "@end@";

template <typename T> const T& Find(const std::map<std::string, T, std::less<>>& rValues, std::string_view name)
{
    const auto found = rValues.find(name);
    if (found == rValues.end())
    {
        throw std::logic_error("nothing to fill in for '" + std::string(name) + "'");
    }
    return found->second;
}

/// Takes what stands before a separator off a text, and the separator.
std::string_view TakeUpTo(std::string_view& rText, CHAR separator)
{
    const size_t           length = std::min(rText.find(separator), rText.size());
    const std::string_view part   = rText.substr(0, length);
    rText.remove_prefix(std::min(length + 1, rText.size()));
    return part;
}

VOID AddLine(std::string& rFilled, std::string_view line, const Filling& rFilling)
{
    rFilled += TakeUpTo(line, '@');
    while (!line.empty())
    {
        rFilled += Find(rFilling.texts, TakeUpTo(line, '@'));
        rFilled += TakeUpTo(line, '@');
    }
    rFilled += '\n';
}

}  // namespace

std::string Fill(std::string_view text, const Filling& rFilling)
{
    std::string       filled;
    std::vector<bool> parts;  // that the line stands in, from the outermost one
    while (!text.empty())
    {
        std::string_view line = TakeUpTo(text, '\n');
        if (line.starts_with(PartBegin))
        {
            line.remove_prefix(PartBegin.size());
            parts.push_back(Find(rFilling.switches, TakeUpTo(line, '@')));
        }
        else if (line == PartEnd)
        {
            parts.pop_back();
        }
        else if (std::find(parts.begin(), parts.end(), false) == parts.end())
        {
            AddLine(filled, line, rFilling);
        }
    }
    return filled;
}

}  // namespace newtuning
