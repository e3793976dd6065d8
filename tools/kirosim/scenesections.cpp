#include "tools/kirosim/scenesections.h"

#include <algorithm>

#include "tools/kirosim/sceneinput.h"

namespace kirosim
{

namespace
{

const SceneSection* FindSection(const std::vector<SceneSection>& rSections, const SceneMembers& rMembers)
{
    const auto found =
        std::find_if(rSections.begin(), rSections.end(),
                     [&rMembers](const SceneSection& rSection) { return rSection.pMembers == &rMembers; });
    return (found != rSections.end()) ? &*found : nullptr;
}

}  // namespace

std::vector<SceneSection> SceneSections()
{
    std::vector<SceneSection> sections = {{"scene", "what a scene may say", &WholeSceneTable()}};
    // Level by level, so that what stands in several maps goes under its shortest path.
    for (size_t index = 0; index < sections.size(); ++index)
    {
        const std::string prefix = (index == 0) ? "" : sections[index].path + '.';
        for (const SceneMember& rMember : *sections[index].pMembers)
        {
            if (rMember.form.members && FindSection(sections, rMember.form.members()) == nullptr)
            {
                sections.push_back({prefix + std::string(rMember.name), rMember.meaning, &rMember.form.members()});
            }
        }
    }
    std::sort(sections.begin() + 1, sections.end(),
              [](const SceneSection& rFirst, const SceneSection& rSecond) { return rFirst.path < rSecond.path; });
    return sections;
}

const SceneSection& SectionOf(const std::vector<SceneSection>& rSections, const SceneMembers& rMembers)
{
    return *FindSection(rSections, rMembers);
}

}  // namespace kirosim
