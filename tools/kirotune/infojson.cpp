#include "tools/kirotune/infojson.h"

#include <fmt/format.h>

#include "tools/kirotune/liveoutput.h"
#include "tools/tuningfile/modepath.h"

namespace kirotune
{

namespace
{

using namespace tuningfile;

TextNode Number(UINT64 value)
{
    return TextNode::Scalar(std::to_string(value));
}

TextNode SectionsJson(const BinaryFileSections& rSections)
{
    const std::pair<const CHAR*, const SectionInfo&> sections[] = {{"symbols", rSections.Symbols},
                                                                   {"dataTable", rSections.DataTable},
                                                                   {"data", rSections.Data},
                                                                   {"definitions", rSections.Definitions}};
    TextNode                                         node       = TextNode::Map();
    for (const auto& [pName, rSection] : sections)
    {
        if (rSection.Size != 0)
        {
            TextNode& rNode = node.Add(pName, TextNode::Map());
            rNode.Add("bytes", Number(rSection.Size));
            rNode.Add("offset", Number(rSection.Offset));
        }
    }
    return node;
}

TextNode ModeJson(const ModeTable& rTable, UINT32 index)
{
    const Mode& rMode = rTable.modes[index];
    TextNode    node  = TextNode::Map();
    node.Add("path", JsonText(PathOf(rTable, index)));
    node.Add("group", Number(rMode.group));
    node.Add("preserved", TextNode::Scalar(rMode.preserve ? "true" : "false"));
    if (rMode.link.has_value())
    {
        node.Add("link", JsonText(PathOf(rTable, *rMode.link)));
    }
    TextNode& rModules = node.Add("modules", TextNode::List());
    for (const Module& rModule : rMode.modules)
    {
        rModules.Add(JsonText(rModule.pDescription->pName));
    }
    return node;
}

}  // namespace

TextNode InfoJson(const BinaryTuning& rBinary)
{
    const auto& rVersion = rBinary.header.Version.Version;
    TextNode    node     = TextNode::Map();
    node.Add("version", JsonText(fmt::format("{}.{}.{}", rVersion.Major, rVersion.Minor, rVersion.Patch)));
    node.Add("createdBy", JsonText(rBinary.tuning.createdBy));
    node.Add("binaryTag", JsonText(rBinary.tuning.binaryTag));
    node.Add("sections", SectionsJson(rBinary.sections));
    TextNode& rTables = node.Add("tables", TextNode::List());
    for (const ModeTable& rTable : rBinary.tuning.tables)
    {
        TextNode& rNode = rTables.Add(TextNode::Map());
        rNode.Add("name", JsonText(rTable.name));
        TextNode& rModes = rNode.Add("modes", TextNode::List());
        for (UINT32 index = 0; index < rTable.modes.size(); ++index)
        {
            rModes.Add(ModeJson(rTable, index));
        }
    }
    node.Add("notes", JsonList(rBinary.notes));
    return node;
}

}  // namespace kirotune
