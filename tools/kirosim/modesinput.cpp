#include "tools/kirosim/modesinput.h"

#include "tools/tuningfile/modepath.h"

namespace kirosim
{

std::vector<TuningMode> ReadModes(const SceneText& rText, const tuningfile::YamlEntry& rEntry)
{
    std::vector<TuningMode> selectors(static_cast<size_t>(ModeType::EnumModeType_COUNT));
    for (size_t level = 0; level < selectors.size(); ++level)
    {
        selectors[level].mode = static_cast<ModeType>(level);
    }
    for (const YAML::Node& rItem : rText.Items(rEntry, "modes such as Sensor.0"))
    {
        tuningfile::ModeName name;
        std::string          fault;
        if (!tuningfile::ParseModeName(rText.Input().Scalar(rItem, "a mode"), name, fault))
        {
            rText.Input().Fail(rItem, fault);
        }
        selectors[name.mode].subMode.value = name.subMode;
    }
    return selectors;
}

SceneForm ModesForm()
{
    return {.type = SceneType::Mode, .lists = {{}}};
}

}  // namespace kirosim
