#include "tools/kirosim/bracketinput.h"

namespace kirosim
{

namespace
{

constexpr SceneCount PictureCount{1, 16};

}  // namespace

BracketRequest ReadBracket(const SceneText& rText, const tuningfile::YamlEntry& rEntry)
{
    BracketRequest request;
    for (const YAML::Node& rItem : rText.Items(rEntry, "EV steps", PictureCount))
    {
        const tuningfile::YamlEntry item{rEntry.name, rEntry.key, rItem};
        request.push_back(static_cast<INT32>(rText.Whole(item, INT64{-EVStepsMax}, INT64{EVStepsMax})));
    }
    return request;
}

SceneForm BracketForm()
{
    return {.type  = SceneType::Whole,
            .range = SceneRange{std::to_string(-EVStepsMax), std::to_string(EVStepsMax)},
            .lists = {PictureCount}};
}

}  // namespace kirosim
