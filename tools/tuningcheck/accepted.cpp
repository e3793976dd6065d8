#include "tools/tuningcheck/accepted.h"

namespace tuningcheck
{

namespace
{

constexpr std::string_view Mark   = "# accepted: ";
constexpr std::string_view Blanks = " \t\r";

/// @return whether a reason stands behind the mark
bool HasReason(std::string_view line, size_t mark)
{
    return mark != line.npos && line.find_first_not_of(Blanks, mark + Mark.size()) != line.npos;
}

}  // namespace

std::set<UINT32> AcceptedLines(std::string_view text)
{
    std::set<UINT32> accepted;
    bool             isPending = false;  // a reason stands above
    for (UINT32 number = 1; !text.empty(); ++number)
    {
        const size_t           end       = text.find('\n');
        const std::string_view line      = text.substr(0, end);
        const size_t           first     = line.find_first_not_of(Blanks);
        const bool             isComment = first != line.npos && line[first] == '#';
        const bool             hasReason = HasReason(line, line.find(Mark));
        if (isComment)
        {
            isPending = isPending || hasReason;
        }
        else
        {
            if (isPending || hasReason)
            {
                accepted.insert(number);
            }
            isPending = false;
        }
        text.remove_prefix((end == text.npos) ? text.size() : end + 1);
    }
    return accepted;
}

}  // namespace tuningcheck
