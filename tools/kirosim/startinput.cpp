// The start of a session from text.

#include "tools/kirosim/startinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

VOID ReadSource(const SceneText& rText, const YamlEntry& rEntry, StartPlan& rPlan)
{
    constexpr KIROAlgoStartExpType sources[] = {KIROStartExpPreflash, KIROStartExpPrevMode, KIROStartExpDCFollow,
                                                KIROStartExpExtLightData};
    const size_t                   choice =
        rText.Choice(rEntry, {"preflash", "previousMode", "master", "lightSensor", "fixed", "automatic"});
    rPlan.isFixed = choice == std::size(sources);
    rPlan.source.reset();
    if (choice < std::size(sources))
    {
        rPlan.source = sources[choice];
    }
}

}  // namespace

StartPlan ReadStart(const SceneText& rText, const YAML::Node& rNode)
{
    StartPlan plan;
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "a start {from, ...}"))
    {
        if (rEntry.name == "from")
        {
            ReadSource(rText, rEntry, plan);
        }
        else if (rEntry.name == "lux")
        {
            plan.lux = rText.Number(rEntry, 0.0, 1e6);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of a start", {"from", "lux"});
        }
    }
    return plan;
}

std::string NameOfSource(const std::optional<KIROAlgoStartExpType>& rSource)
{
    if (!rSource.has_value())
    {
        return "fixed";
    }
    switch (*rSource)
    {
    case KIROStartExpPreflash:
        return "preflash";
    case KIROStartExpPrevMode:
        return "previous mode";
    case KIROStartExpDCFollow:
        return "master";
    case KIROStartExpExtLightData:
        return "light sensor";
    default:
        return "unknown";
    }
}

}  // namespace kirosim
