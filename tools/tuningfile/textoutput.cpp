#include "tools/tuningfile/textoutput.h"

#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/recordoutput.h"

namespace tuningfile
{

namespace
{

std::string NameOf(const Mode& rMode)
{
    return FormatModeName({rMode.mode, rMode.subMode});
}

/// The path from the root to a mode; entries of the same mode count once.
std::string PathOf(const ModeTable& rTable, UINT32 index)
{
    std::string path = NameOf(rTable.modes[index]);
    while (rTable.modes[index].parent.has_value())
    {
        const bool isGroupEntry = rTable.IsGroupEntry(index);
        index                   = *rTable.modes[index].parent;
        path                    = isGroupEntry ? path : NameOf(rTable.modes[index]) + '|' + path;
    }
    return path;
}

const Module* FindAbove(const ModeTable& rTable, UINT32 index, const tuning::ModuleDescription& rDescription)
{
    for (std::optional<UINT32> above = rTable.modes[index].parent; above.has_value(); above = rTable.modes[*above].parent)
    {
        if (const Module* pModule = FindModuleOf(rTable.modes[*above], rDescription))
        {
            return pModule;
        }
    }
    return nullptr;
}

TextNode ModeToText(const ModeTable& rTable, UINT32 index)
{
    const Mode& rMode = rTable.modes[index];
    TextNode    map   = TextNode::Map();
    if (rMode.preserve)
    {
        map.Add("preserve", TextNode::Scalar("true"));
    }
    if (rMode.group != 0)
    {
        map.Add("group", TextNode::Scalar(std::to_string(rMode.group)));
    }
    if (rMode.link.has_value())
    {
        map.Add("link", TextNode::Scalar(PathOf(rTable, *rMode.link)));
        return map;
    }
    TextNode modules = TextNode::Map();
    for (const Module& rModule : rMode.modules)
    {
        modules.Add(rModule.pDescription->pName,
                    ModuleToText(rModule, FindAbove(rTable, index, *rModule.pDescription)));
    }
    TextNode children = TextNode::Map();
    for (UINT32 child = index + 1; child < rTable.modes.size(); ++child)
    {
        if (rTable.modes[child].parent == index)
        {
            children.Add(NameOf(rTable.modes[child]), ModeToText(rTable, child));
        }
    }
    if (!modules.items.empty())
    {
        map.Add("modules", std::move(modules));
    }
    if (!children.items.empty())
    {
        map.Add("children", std::move(children));
    }
    return map;
}

TextNode ModesToText(const ModeTable& rTable)
{
    TextNode map = TextNode::Map();
    if (!rTable.modes.empty())
    {
        map.Add(NameOf(rTable.modes.front()), ModeToText(rTable, 0));
    }
    return map;
}

} // namespace

std::string WriteText(const Tuning& rTuning)
{
    TextNode root   = TextNode::Map();
    TextNode origin = TextNode::Map();
    origin.Add("createdBy", TextNode::Quoted(rTuning.createdBy));
    origin.Add("binaryTag", TextNode::Quoted(rTuning.binaryTag));
    root.Add("tuning", std::move(origin));

    if (rTuning.tables.size() == 1 && rTuning.tables.front().name.empty())
    {
        root.Add("modes", ModesToText(rTuning.tables.front()));
        return ToYaml(root);
    }
    TextNode tables = TextNode::List();
    for (const ModeTable& rTable : rTuning.tables)
    {
        TextNode table = TextNode::Map();
        table.Add("name", TextNode::Quoted(rTable.name));
        table.Add("modes", ModesToText(rTable));
        tables.Add(std::move(table));
    }
    root.Add("tables", std::move(tables));
    return ToYaml(root);
}

} // namespace tuningfile
