#include "tools/kirosim/bracketinput.h"

#include <cmath>

namespace kirosim
{

BracketRequest ReadBracket(const SceneText& rText, const tuningfile::YamlEntry& rEntry)
{
    constexpr size_t picturesMax = 16;
    const size_t     count       = rText.Items(rEntry, "EV steps").size();
    if (count == 0 || count > picturesMax)
    {
        rText.Input().Fail(rEntry.value, "bracket wants 1 to 16 EV steps");
    }
    BracketRequest request;
    for (const DOUBLE ev : rText.Numbers(rEntry, count, -EVStepsMax, EVStepsMax))
    {
        if (ev != std::floor(ev))
        {
            rText.Input().Fail(rEntry.value, "bracket wants whole EV steps");
        }
        request.push_back(static_cast<INT32>(ev));
    }
    return request;
}

}  // namespace kirosim
