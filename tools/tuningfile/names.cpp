#include "tools/tuningfile/names.h"

#include <algorithm>
#include <cctype>
#include <numeric>

#include <fmt/ranges.h>

namespace tuningfile
{

namespace
{

constexpr size_t MaxNear   = 3;
constexpr size_t MaxListed = 24;

bool SameLetter(char first, char second)
{
    return std::tolower(static_cast<unsigned char>(first)) == std::tolower(static_cast<unsigned char>(second));
}

/// Letters to insert, drop or replace to make one name of the other, upper and lower case being the same.
size_t Distance(std::string_view first, std::string_view second)
{
    std::vector<size_t> row(second.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t line = 0; line < first.size(); ++line)
    {
        size_t diagonal = row[0];
        row[0]          = line + 1;
        for (size_t column = 0; column < second.size(); ++column)
        {
            const size_t replaced = diagonal + (SameLetter(first[line], second[column]) ? 0 : 1);
            diagonal              = row[column + 1];
            row[column + 1]       = std::min({replaced, row[column] + 1, diagonal + 1});
        }
    }
    return row[second.size()];
}

}  // namespace

std::string Advice(std::string_view unknown, const std::vector<std::string_view>& rNames)
{
    struct Candidate
    {
        size_t           distance;
        std::string_view name;
    };
    std::vector<Candidate> near;
    const size_t           limit = std::max<size_t>(1, unknown.size() / 3);
    for (const std::string_view name : rNames)
    {
        // As far apart as their lengths at least: a name may be as long as a file.
        const size_t least = std::max(unknown.size(), name.size()) - std::min(unknown.size(), name.size());
        if (least > limit)
        {
            continue;
        }
        const size_t distance = Distance(unknown, name);
        if (distance <= limit)
        {
            near.push_back({distance, name});
        }
    }
    if (near.empty())
    {
        const size_t listed = std::min(rNames.size(), MaxListed);
        return fmt::format("expected one of: {}{}", fmt::join(rNames.begin(), rNames.begin() + listed, ", "),
                           (listed < rNames.size()) ? ", ..." : "");
    }
    std::stable_sort(near.begin(), near.end(),
                     [](const Candidate& rFirst, const Candidate& rSecond)
                     { return rFirst.distance < rSecond.distance; });
    std::vector<std::string> quoted;
    for (size_t index = 0; index < std::min(near.size(), MaxNear) && near[index].distance <= near[0].distance + 1;
         ++index)
    {
        quoted.push_back(fmt::format("'{}'", near[index].name));
    }
    return fmt::format("did you mean {}?", fmt::join(quoted, " or "));
}

}  // namespace tuningfile
