#include "tools/page/cameramodes.h"

#include <algorithm>

#include <fmt/format.h>

#include "schema/modules.h"

namespace page
{

namespace
{

using kirotune::LiveCamera;

/// Far above any tuning.
constexpr size_t MaxModes = 2000;

VOID ReadBelow(LiveCamera& rCamera, ModeNode& rMode, size_t& rCount)
{
    for (const std::string& rChild : rCamera.Client().ChildModes(rMode.path))
    {
        if (++rCount > MaxModes)
        {
            throw liveclient::Error(fmt::format("the camera tells of more than {} modes", MaxModes));
        }
        rMode.children.push_back({rMode.path + '|' + rChild});
        ReadBelow(rCamera, rMode.children.back(), rCount);
    }
}

}  // namespace

ModeNode ReadModes(LiveCamera& rCamera)
{
    ModeNode root{"Default"};
    size_t   count = 1;
    ReadBelow(rCamera, root, count);
    return root;
}

std::vector<std::string> ReadModules(LiveCamera& rCamera, const std::vector<std::string>& rActive)
{
    std::vector<std::string> modes = {"Default"};
    modes.insert(modes.end(), rActive.begin(), rActive.end());
    std::vector<std::string> names;
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        const bool isThere =
            rModule.pRecord != nullptr &&
            std::any_of(modes.begin(), modes.end(),
                        [&](const std::string& rMode) { return !rCamera.Client().Info(rMode, rModule.pName).empty(); });
        if (isThere)
        {
            names.push_back(rModule.pName);
        }
    }
    return names;
}

}  // namespace page
