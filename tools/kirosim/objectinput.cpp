#include "tools/kirosim/objectinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

PathPoint ReadPoint(const SceneText& rText, const YAML::Node& rNode)
{
    PathPoint point{0.0, 0.5, 0.5};
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "a point {time, x, y}"))
    {
        if (rEntry.name == "time")
        {
            point.time = rText.Number(rEntry, 0.0, SceneTimeMax);
        }
        else if (rEntry.name == "x")
        {
            point.x = rText.Number(rEntry, -1.0, 2.0);
        }
        else if (rEntry.name == "y")
        {
            point.y = rText.Number(rEntry, -1.0, 2.0);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of a path's point", {"time", "x", "y"});
        }
    }
    return point;
}

std::vector<PathPoint> ReadPath(const SceneText& rText, const YamlEntry& rList)
{
    std::vector<PathPoint> path;
    for (const YAML::Node& rItem : rText.Items(rList, "points {time, x, y}"))
    {
        const PathPoint point = ReadPoint(rText, rItem);
        if (!path.empty() && point.time <= path.back().time)
        {
            rText.Input().Fail(rItem, "points of a path must stand in ascending time");
        }
        path.push_back(point);
    }
    return path;
}

}  // namespace

VOID ReadObject(const SceneText& rText, const YAML::Node& rNode, SceneObject& rObject)
{
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "an object"))
    {
        if (rEntry.name == "contrastEV")
        {
            rObject.contrastEV = rText.Number(rEntry, -20.0, 20.0);
        }
        else if (rEntry.name == "size")
        {
            rObject.size = rText.Number(rEntry, 0.0, 1.0);
        }
        else if (rEntry.name == "path")
        {
            rObject.path = ReadPath(rText, rEntry);
        }
        else if (rEntry.name == "appears")
        {
            rObject.appears = rText.Number(rEntry, 0.0, SceneTimeMax);
        }
        else if (rEntry.name == "goes")
        {
            rObject.goes = rText.Number(rEntry, 0.0, SceneTimeMax);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of an object", {"contrastEV", "size", "path", "appears", "goes"});
        }
    }
}

}  // namespace kirosim
