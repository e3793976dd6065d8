// The schema of scenes for editors.

#include <algorithm>
#include <charconv>
#include <fmt/format.h>

#include "tools/kirosim/sceneschema.h"
#include "tools/kirosim/scenesections.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/schemanodes.h"

using tuningfile::TextNode;

namespace kirosim
{

namespace
{

constexpr char ModeDefinition[] = "mode";  // beside the sections

/// One of some names; what an editor takes for a number stands there as one, too.
TextNode NamesNode(const std::vector<std::string>& rNames)
{
    TextNode  node   = TextNode::Map();
    TextNode& rItems = node.Add("enum", TextNode::List());
    for (const std::string& rName : rNames)
    {
        rItems.Add(TextNode::Quoted(rName));
        if (std::all_of(rName.begin(), rName.end(), [](char letter) { return letter >= '0' && letter <= '9'; }))
        {
            rItems.Add(TextNode::Scalar(rName));
        }
    }
    return node;
}

TextNode NumberNode(std::string_view type, const SceneRange& rRange)
{
    TextNode node = tuningfile::TypeNode(type);
    node.Add("minimum", TextNode::Scalar(rRange.low));
    node.Add("maximum", TextNode::Scalar(rRange.high));
    return node;
}

TextNode ListNode(TextNode items, const SceneCount& rCount)
{
    TextNode node = tuningfile::TypeNode("array");
    node.Add("items", std::move(items));
    if (rCount.most != SceneCount::Any)
    {
        node.Add("minItems", TextNode::Scalar(std::to_string(rCount.least)));
        node.Add("maxItems", TextNode::Scalar(std::to_string(rCount.most)));
    }
    return node;
}

TextNode DefaultNode(const SceneMember& rMember)
{
    const bool isText = rMember.form.type == SceneType::Name;
    return isText ? TextNode::Quoted(rMember.initial) : TextNode::Scalar(rMember.initial);
}

class SceneSchemaWriter
{
public:
    TextNode Write() const
    {
        TextNode definitions = TextNode::Map();
        for (const SceneSection& rSection : m_sections)
        {
            TextNode properties = TextNode::Map();
            for (const SceneMember& rMember : *rSection.pMembers)
            {
                properties.Add(std::string(rMember.name), MemberNode(rMember));
            }
            definitions.Add(rSection.path, tuningfile::ObjectNode(std::move(properties)));
        }
        TextNode& rMode = definitions.Add(ModeDefinition, tuningfile::TypeNode("string"));
        rMode.Add("pattern", TextNode::Quoted(tuningfile::ModePattern()));

        TextNode root = tuningfile::ReferenceTo(m_sections.front().path);
        root.Add("$schema", TextNode::Quoted("https://json-schema.org/draft/2020-12/schema"));
        root.Add("title", TextNode::Quoted("Scene"));
        root.Add("$defs", std::move(definitions));
        return root;
    }

private:
    /// What a member's text may be, then what an editor says about it.
    TextNode MemberNode(const SceneMember& rMember) const
    {
        const SceneForm& rForm = rMember.form;
        TextNode         node  = ItemNode(rForm);
        for (auto list = rForm.lists.rbegin(); list != rForm.lists.rend(); ++list)
        {
            node = ListNode(std::move(node), *list);
        }
        if (rForm.isByName)
        {
            TextNode maps = tuningfile::TypeNode("object");
            maps.Add("additionalProperties", std::move(node));
            node = std::move(maps);
        }
        if (rForm.type != SceneType::Name && !rForm.names.empty())
        {
            node = tuningfile::AnyOf(std::move(node), NamesNode(rForm.names));
        }
        node.Add("title", TextNode::Quoted(rMember.name));
        node.Add("description",
                 TextNode::Quoted(rMember.unit.empty() ? std::string(rMember.meaning)
                                                       : fmt::format("{} [{}]", rMember.meaning, rMember.unit)));
        if (!rMember.unit.empty())
        {
            node.Add("unit", TextNode::Quoted(rMember.unit));
        }
        if (!rMember.initial.empty())
        {
            node.Add("default", DefaultNode(rMember));
        }
        return node;
    }

    /// A member, or an item of its lists.
    TextNode ItemNode(const SceneForm& rForm) const
    {
        switch (rForm.type)
        {
        case SceneType::Number:
            return NumberNode("number", *rForm.range);
        case SceneType::Whole:
            return NumberNode("integer", *rForm.range);
        case SceneType::Flag:
            return tuningfile::TypeNode("boolean");
        case SceneType::Name:
            return NamesNode(rForm.names);
        case SceneType::Mode:
            return tuningfile::ReferenceTo(ModeDefinition);
        case SceneType::Map:
            return tuningfile::ReferenceTo(SectionOf(m_sections, rForm.members()).path);
        case SceneType::Text:
            break;
        }
        return tuningfile::TypeNode("string");
    }

    const std::vector<SceneSection> m_sections = SceneSections();
};

}  // namespace

std::string SceneJsonSchema()
{
    return tuningfile::ToJson(SceneSchemaWriter().Write());
}

}  // namespace kirosim
