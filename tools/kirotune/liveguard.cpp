#include "tools/kirotune/liveguard.h"

#include <cstdlib>

#include <fmt/format.h>

#include "tools/liveclient/error.h"
#include "tools/meaning/numbersense.h"
#include "tools/meaning/wordpath.h"

namespace kirotune
{

std::string SenselessIn(const EditCommand& rCommand)
{
    std::string faults;
    for (const Edit& rEdit : rCommand.edits)
    {
        const meaning::WordPath found = meaning::FindWords(fmt::format("{}.{}", rCommand.module, rEdit.member));
        if (!found.unknown.empty() || found.pJudged == nullptr)
        {
            continue;
        }
        if (const auto fault = meaning::FaultOf(*found.pJudged, std::strtod(rEdit.newText.c_str(), nullptr)))
        {
            faults += fmt::format("{}{}={}: expected {}{}{}", faults.empty() ? "" : "; ", rEdit.member, rEdit.newText,
                                  fault->expected, fault->advice.empty() ? "" : "; ", fault->advice);
        }
    }
    return faults;
}

VOID RequireSense(const EditCommand& rCommand)
{
    const std::string faults = SenselessIn(rCommand);
    if (!faults.empty())
    {
        throw liveclient::Error(faults + "; --force sends it all the same");
    }
}

}  // namespace kirotune
