// The reference of scenes as Markdown.

#include <cctype>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "parameters/modenames.h"
#include "tools/kirosim/sceneintroduction.h"
#include "tools/kirosim/sceneschema.h"
#include "tools/kirosim/scenesections.h"

namespace kirosim
{

namespace
{

/// A link to a heading, whose anchor is in lower case and without dots.
std::string LinkTo(const std::string& rHeading)
{
    std::string anchor;
    for (const char letter : rHeading)
    {
        if (letter != '.')
        {
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        }
    }
    return fmt::format("[{}](#{})", rHeading, anchor);
}

std::string Alternatives(const std::vector<std::string>& rNames)
{
    return fmt::format("`{}`", fmt::join(rNames, "`, `"));
}

std::string Capitalised(std::string_view sentence)
{
    std::string text(sentence);
    text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return text;
}

class SceneReferenceWriter
{
public:
    std::string Write() const
    {
        std::string text = SceneIntroduction;
        for (const SceneSection& rSection : m_sections)
        {
            text += fmt::format("\n## {}\n\n{}.\n\n| Member | Type | Range | Unit | Default | Meaning |\n"
                                "|---|---|---|---|---|---|\n",
                                rSection.path, Capitalised(rSection.meaning));
            for (const SceneMember& rMember : *rSection.pMembers)
            {
                text += Line(rMember);
            }
        }
        return text + Modes();
    }

private:
    std::string Line(const SceneMember& rMember) const
    {
        const SceneForm&  rForm = rMember.form;
        const std::string range =
            rForm.range.has_value() ? fmt::format("{} to {}", rForm.range->low, rForm.range->high) : "";
        const std::string initial = rMember.initial.empty() ? "" : Alternatives({rMember.initial});
        return fmt::format("| `{}` | {} | {} | {} | {} | {} |\n", rMember.name, Type(rForm), range, rMember.unit,
                           initial, rMember.meaning);
    }

    std::string Type(const SceneForm& rForm) const
    {
        const bool  isMany = !rForm.lists.empty() || rForm.isByName;
        std::string text   = ItemType(rForm, isMany);
        for (auto list = rForm.lists.rbegin(); list != rForm.lists.rend(); ++list)
        {
            const std::string count   = TextOf(*list);
            const bool        isInner = list + 1 != rForm.lists.rend();
            text = fmt::format("{} of {}{}{}", isInner ? "lists" : "list", count, count.empty() ? "" : " ", text);
        }
        if (rForm.isByName)
        {
            text += " by name";
        }
        const bool isNameToo = rForm.type != SceneType::Name && !rForm.names.empty();
        return isNameToo ? fmt::format("{}; or {}", text, Alternatives(rForm.names)) : text;
    }

    /// What a member is, or what the items of its list are.
    std::string ItemType(const SceneForm& rForm, bool isMany) const
    {
        const CHAR* pPlural = isMany ? "s" : "";
        switch (rForm.type)
        {
        case SceneType::Number:
            return fmt::format("number{}", pPlural);
        case SceneType::Whole:
            return fmt::format("whole number{}", pPlural);
        case SceneType::Flag:
            return Alternatives({"true", "false"});
        case SceneType::Name:
            return Alternatives(rForm.names);
        case SceneType::Mode:
            return LinkTo("modes");
        case SceneType::Map:
            return fmt::format("map{} {}", pPlural, LinkTo(SectionOf(m_sections, rForm.members()).path));
        case SceneType::Text:
            break;
        }
        return "text";
    }

    /// The modes that a tuning may have.
    static std::string Modes()
    {
        std::string text = "\n## modes\n\nA mode is `Default`, or a level and a sub-mode, such as `Sensor.0` or "
                           "`Usecase.Video`; either may be a number.\n\n| Level | Sub-modes |\n|---|---|\n";
        const tuning::EnumDescription& rLevels = ModeNames::Modes();
        for (UINT32 level = 1; level < rLevels.count; ++level)
        {
            const tuning::EnumDescription* pNames =
                ModeNames::SubModes(static_cast<ModeType>(rLevels.pEnumerators[level].value));
            std::vector<std::string> names;
            for (UINT32 index = 0; pNames != nullptr && index < pNames->count; ++index)
            {
                names.emplace_back(pNames->pEnumerators[index].pName);
            }
            text += fmt::format("| `{}` | {} |\n", rLevels.pEnumerators[level].pName,
                                names.empty() ? "numbers" : Alternatives(names));
        }
        return text;
    }

    const std::vector<SceneSection> m_sections = SceneSections();
};

}  // namespace

std::string SceneReference()
{
    return SceneReferenceWriter().Write();
}

}  // namespace kirosim
