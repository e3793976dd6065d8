#include "tools/kirosim/detectorinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

SceneChangeDetector ReadDetector(const SceneText& rText, const YAML::Node& rNode)
{
    SceneChangeDetector detector{};
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "a detector {id, hosts}"))
    {
        if (rEntry.name == "id")
        {
            detector.id = static_cast<UINT32>(rText.Unsigned(rEntry, ~0U));
        }
        else if (rEntry.name == "hosts")
        {
            detector.isHosts = rText.Flag(rEntry);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of a detector", {"id", "hosts"});
        }
    }
    return detector;
}

}  // namespace

DetectorScene ReadDetectors(const SceneText& rText, const YAML::Node& rNode)
{
    DetectorScene scene;
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "detectors {watch, pass}"))
    {
        if (rEntry.name == "watch")
        {
            for (const YAML::Node& rItem : rText.Items(rEntry, "detectors {id, hosts}"))
            {
                scene.watched.push_back(ReadDetector(rText, rItem));
            }
        }
        else if (rEntry.name == "pass")
        {
            const std::vector<DOUBLE> times = rText.Numbers(rEntry, 2, 0.0, 1e6);
            scene.pass                      = PassInterval{times[0], times[1]};
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of detectors", {"watch", "pass"});
        }
    }
    return scene;
}

}  // namespace kirosim
