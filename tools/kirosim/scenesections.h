/// @file
/// The kinds of maps that a scene may hold, for a reference of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/kirosim/scenerows.h"

namespace kirosim
{

/// One kind of map.
struct SceneSection
{
    std::string         path;     ///< "scene", or where such a map may first stand: "flash.leds"
    std::string_view    meaning;  ///< of such a map there
    const SceneMembers* pMembers;
};

/// All of them, the scene itself first and then by path.
std::vector<SceneSection> SceneSections();

/// The section that has the members of a map.
const SceneSection& SectionOf(const std::vector<SceneSection>& rSections, const SceneMembers& rMembers);

}  // namespace kirosim
