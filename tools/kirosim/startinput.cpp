// The start of a session from text.

#include "tools/kirosim/startinput.h"

#include "tools/kirosim/scenevalues.h"

namespace kirosim
{

namespace
{

/// Where the first exposure comes from; without a source the host chooses, unless the start is fixed.
SceneValue<StartPlan> SourceValue()
{
    const SceneChoices<StartPlan> sources = {{"preflash", {.source = KIROStartExpPreflash}},
                                             {"previousMode", {.source = KIROStartExpPrevMode}},
                                             {"master", {.source = KIROStartExpDCFollow}},
                                             {"lightSensor", {.source = KIROStartExpExtLightData}},
                                             {"fixed", {.isFixed = true}},
                                             {"automatic", {}}};
    return ChoiceBy<StartPlan>(
        sources,
        [](StartPlan& rPlan, const StartPlan& rChosen)
        {
            rPlan.source  = rChosen.source;
            rPlan.isFixed = rChosen.isFixed;
        },
        [](const StartPlan& rPlan, const StartPlan& rChosen)
        { return rPlan.source == rChosen.source && rPlan.isFixed == rChosen.isFixed; });
}

}  // namespace

const SceneTable<StartPlan>& StartTable()
{
    static const SceneTable<StartPlan> table("a start {from, ...}", "member of a start",
                                             {{"from", SourceValue(), "", "where the first exposure comes from"},
                                              {"lux", Number(&StartPlan::lux, 0.0, 1e6), "lux",
                                               "what the light sensor reads; without it, the scene's light"}});
    return table;
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
