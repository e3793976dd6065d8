#include "tools/kirotune/livepatch.h"

#include <algorithm>

#include "tools/liveclient/texts.h"
#include "tools/tuningfile/textnode.h"

namespace kirotune
{

namespace
{

using tuningfile::TextItem;
using tuningfile::TextNode;

/// @return the value of that name in a map, an empty map if it is new
TextNode& ValueOf(TextNode& rMap, const std::string& rName)
{
    const auto found = std::find_if(rMap.items.begin(), rMap.items.end(),
                                    [&rName](const TextItem& rItem) { return rItem.name == rName; });
    return (found != rMap.items.end()) ? found->value : rMap.Add(rName, TextNode::Map());
}

/// @return where a member path such as "data[2].value.tolerance" leads to: an index is a name in a map of positions
TextNode& MemberOf(TextNode& rModule, const std::string& rMember)
{
    TextNode* pNode = &rModule;
    for (const std::string& rComponent : liveclient::Split(rMember, '.'))
    {
        const size_t bracket = rComponent.find('[');
        pNode                = &ValueOf(*pNode, rComponent.substr(0, bracket));
        if (bracket != std::string::npos)
        {
            pNode = &ValueOf(*pNode, rComponent.substr(bracket + 1, rComponent.size() - bracket - 2));
        }
    }
    return *pNode;
}

TextNode& ModeOf(TextNode& rModes, const std::string& rPath)
{
    TextNode* pMode   = &rModes;
    bool      isChild = false;
    for (const std::string& rName : liveclient::Split(rPath, '|'))
    {
        pMode   = &ValueOf(isChild ? ValueOf(*pMode, "children") : *pMode, rName);
        isChild = true;
    }
    return *pMode;
}

}  // namespace

std::string PatchText(const std::string& rTable, const std::vector<PatchedNumber>& rNumbers)
{
    TextNode table = TextNode::Map();
    TextNode modes = TextNode::Map();
    for (const PatchedNumber& rNumber : rNumbers)
    {
        TextNode& rModules                                          = ValueOf(ModeOf(modes, rNumber.path), "modules");
        MemberOf(ValueOf(rModules, rNumber.module), rNumber.member) = TextNode::Scalar(rNumber.text);
    }
    if (rTable.empty())
    {
        table.Add("modes", std::move(modes));
        return tuningfile::ToYaml(table);
    }
    table.Add("name", TextNode::Quoted(rTable));
    table.Add("modes", std::move(modes));
    TextNode root = TextNode::Map();
    root.Add("tables", TextNode::List()).Add(std::move(table));
    return tuningfile::ToYaml(root);
}

}  // namespace kirotune
