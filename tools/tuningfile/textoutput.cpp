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

class TableOutput
{
public:
    explicit TableOutput(const ModeTable& rTable) : m_rTable(rTable), m_children(rTable.modes.size())
    {
        for (UINT32 index = 0; index < rTable.modes.size(); ++index)
        {
            if (rTable.modes[index].parent.has_value())
            {
                m_children[*rTable.modes[index].parent].push_back(index);
            }
        }
    }

    TextNode ModeToText(UINT32 index) const
    {
        const Mode& rMode = m_rTable.modes[index];
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
            map.Add("link", TextNode::Scalar(PathOf(m_rTable, *rMode.link)));
            return map;
        }
        if (!rMode.modules.empty())
        {
            TextNode& rModules = map.Add("modules", TextNode::Map());
            for (const Module& rModule : rMode.modules)
            {
                rModules.Add(rModule.pDescription->pName,
                             ModuleToText(rModule, FindModuleAbove(m_rTable, index, *rModule.pDescription)));
            }
        }
        if (!m_children[index].empty())
        {
            TextNode& rChildren = map.Add("children", TextNode::Map());
            for (const UINT32 child : m_children[index])
            {
                rChildren.Add(NameOf(m_rTable.modes[child]), ModeToText(child));
            }
        }
        return map;
    }

private:
    const ModeTable&                 m_rTable;
    std::vector<std::vector<UINT32>> m_children;  ///< by mode
};

TextNode ModesToText(const ModeTable& rTable)
{
    TextNode map = TextNode::Map();
    if (!rTable.modes.empty())
    {
        map.Add(NameOf(rTable.modes.front()), TableOutput(rTable).ModeToText(0));
    }
    return map;
}

}  // namespace

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

}  // namespace tuningfile
