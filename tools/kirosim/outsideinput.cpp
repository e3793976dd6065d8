#include "tools/kirosim/outsideinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

constexpr DOUBLE MapDistanceMax = 1e4;    // m
constexpr DOUBLE ShakeMax       = 100.0;  // rad/s

GyroPoint ReadGyroPoint(const SceneText& rText, const YAML::Node& rNode)
{
    GyroPoint point{};
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "a point {time, rms}"))
    {
        if (rEntry.name == "time")
        {
            point.time = rText.Number(rEntry, 0.0, SceneTimeMax);
        }
        else if (rEntry.name == "rms")
        {
            point.rms = rText.Number(rEntry, 0.0, ShakeMax);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of a gyro point", {"time", "rms"});
        }
    }
    return point;
}

}  // namespace

VOID ReadOutsideMap(const SceneText& rText, const YAML::Node& rNode, OutsideMap& rMap)
{
    constexpr MapKind kinds[] = {MapKind::Depth, MapKind::Segmentation};
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "a map"))
    {
        if (rEntry.name == "kind")
        {
            rMap.kind = kinds[rText.Choice(rEntry, {"depth", "segmentation"})];
        }
        else if (rEntry.name == "near")
        {
            rMap.near = rText.Number(rEntry, 0.0, MapDistanceMax);
        }
        else if (rEntry.name == "far")
        {
            rMap.far = rText.Number(rEntry, 0.0, MapDistanceMax);
        }
        else if (rEntry.name == "appears")
        {
            rMap.appears = rText.Number(rEntry, 0.0, SceneTimeMax);
        }
        else if (rEntry.name == "goes")
        {
            rMap.goes = rText.Number(rEntry, 0.0, SceneTimeMax);
        }
        else if (rEntry.name == "targetLuma")
        {
            rMap.targetLuma = rText.Number(rEntry, 1.0, 255.0);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of a map",
                                      {"kind", "near", "far", "appears", "goes", "targetLuma"});
        }
    }
}

std::vector<GyroPoint> ReadGyro(const SceneText& rText, const YamlEntry& rList)
{
    std::vector<GyroPoint> points;
    for (const YAML::Node& rItem : rText.Items(rList, "points {time, rms}"))
    {
        const GyroPoint point = ReadGyroPoint(rText, rItem);
        if (!points.empty() && point.time <= points.back().time)
        {
            rText.Input().Fail(rItem, "gyro points must stand in ascending time");
        }
        points.push_back(point);
    }
    return points;
}

}  // namespace kirosim
