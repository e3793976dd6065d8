#include "tools/kirosim/scenerows.h"

#include <algorithm>

namespace kirosim
{

size_t SceneMembers::IndexOf(const SceneText& rText, const tuningfile::YamlEntry& rEntry) const
{
    const auto found =
        std::find_if(begin(), end(), [&rEntry](const SceneMember& rMember) { return rMember.name == rEntry.name; });
    if (found == end())
    {
        std::vector<std::string_view> names;
        for (const SceneMember& rMember : m_members)
        {
            names.push_back(rMember.name);
        }
        rText.Input().FailUnknown(rEntry, m_what, names);
    }
    return static_cast<size_t>(found - begin());
}

}  // namespace kirosim
