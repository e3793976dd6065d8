#include "tools/kirosim/missingmodes.h"

#include <algorithm>

#include <fmt/format.h>

namespace kirosim
{

std::vector<std::string> MissingModes(const Scene& rScene, LoadedTuning& rTuning)
{
    std::vector<std::string> lines;
    const auto               look = [&](const std::vector<TuningMode>& rSelectors)
    {
        const std::optional<std::string> missing = rTuning.MissingMode(rSelectors);
        const std::string                line =
            fmt::format("the tuning has no mode {}, for which the scene asks", missing.value_or(""));
        if (missing.has_value() && std::ranges::find(lines, line) == lines.end())
        {
            lines.push_back(line);
        }
    };
    look(rScene.camera.modes);
    if (rScene.pSecond != nullptr)
    {
        look(rScene.pSecond->camera.modes);
    }
    for (const Event& rEvent : rScene.events)
    {
        look(rEvent.modes);
    }
    return lines;
}

}  // namespace kirosim
