// Scenes from text.

#include "tools/kirosim/sceneinput.h"

#include <algorithm>
#include <fmt/format.h>

#include "tools/kirosim/camerainput.h"
#include "tools/kirosim/detectorinput.h"
#include "tools/kirosim/eventinput.h"
#include "tools/kirosim/flashinput.h"
#include "tools/kirosim/lightinput.h"
#include "tools/kirosim/modesinput.h"
#include "tools/kirosim/objectinput.h"
#include "tools/kirosim/outsideinput.h"
#include "tools/kirosim/panoramainput.h"
#include "tools/kirosim/scenevalues.h"
#include "tools/kirosim/sensorinput.h"
#include "tools/kirosim/startinput.h"
#include "tools/program/standardstreams.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/names.h"
#include "tools/tuningfile/yamlinput.h"

using tuningfile::YamlEntry;
using tuningfile::YamlInput;
using tuningfile::YamlMap;

namespace kirosim
{

namespace
{

/// Longest run, so that a slip of the pen does not run for hours.
constexpr UINT32 FramesMax = 10000000;

std::string ReadName(const SceneText& rText, const YamlEntry& rEntry)
{
    return rText.Input().Scalar(rEntry.value, "a name");
}

/// For what is read once the other members are.
VOID ReadElsewhere(const SceneText&, const YamlEntry&, Scene&)
{
}

/// The second camera sees the same scene, but for these.
const SceneTable<Scene>& SecondTable()
{
    static const SceneTable<Scene> table("a second camera", "member of a second camera", WholeSceneTable(),
                                         {"lux", "seed", "startOffsetEV", "pattern", "panorama", "sensor", "role",
                                          "modes", "calibration", "sensitivityByCCT", "start"});
    return table;
}

/// What happens to the second camera, as its own; the colour of the light is that of both.
std::vector<Event> EventsOfSecond(const std::vector<Event>& rEvents)
{
    std::vector<Event> events;
    for (const Event& rEvent : rEvents)
    {
        if (rEvent.isForSecond || rEvent.CCT.has_value())
        {
            events.push_back(rEvent);
            events.back().isForSecond = false;
        }
    }
    return events;
}

class SceneReader
{
public:
    explicit SceneReader(const YamlInput& rInput) : m_text(rInput)
    {
    }

    VOID ReadInto(const YAML::Node& rNode, Scene& rScene)
    {
        const YamlMap map = WholeSceneTable().Read(m_text, rNode, rScene);
        if (const YamlEntry* pSecond = map.Find("second"); pSecond != nullptr)
        {
            m_seconds.push_back(pSecond->value);
        }
    }

    /// The second camera is the first one but for what the scene says; a variant may add to that.
    VOID ReadSecond(Scene& rScene) const
    {
        if (m_seconds.empty())
        {
            return;
        }
        auto pSecond    = std::make_shared<Scene>(rScene);
        pSecond->camera = {};
        pSecond->start.reset();
        pSecond->events = EventsOfSecond(rScene.events);
        ++pSecond->seed;
        for (const YAML::Node& rNode : m_seconds)
        {
            SecondTable().Read(m_text, rNode, *pSecond);
        }
        rScene.pSecond = pSecond;
    }

private:
    const SceneText         m_text;
    std::vector<YAML::Node> m_seconds;  ///< what scene and variant say about the second camera
};

/// The text of a scene file as YAML.
YamlInput OpenScene(const std::string& rPath)
{
    return YamlInput(tuningfile::ReadText(rPath), program::InputName(rPath));
}

/// The variants of a scene, which may have none.
YamlMap Variants(const YamlInput& rInput)
{
    const YamlMap    map       = rInput.Map(rInput.Root(), "a scene");
    const YamlEntry* pVariants = map.Find("variants");
    return (pVariants != nullptr) ? rInput.Map(pVariants->value, "variants") : YamlMap({});
}

/// What a variant says.
YAML::Node VariantNode(const YamlInput& rInput, const std::string& rName)
{
    const YamlMap                 variants = Variants(rInput);
    std::vector<std::string_view> names;
    for (const YamlEntry& rVariant : variants)
    {
        names.push_back(rVariant.name);
    }
    if (const YamlEntry* pVariant = variants.Find(rName); pVariant != nullptr)
    {
        return pVariant->value;
    }
    rInput.Fail(rInput.Root(),
                fmt::format("there is no variant '{}', {}", rName,
                            names.empty() ? "the scene has no variants" : tuningfile::Advice(rName, names)));
}

}  // namespace

const SceneTable<Scene>& WholeSceneTable()
{
    static const SceneTable<Scene> table(
        "a scene", "member of a scene",
        {{"name", Made(&Scene::name, ReadName), "", "what reports call the scene"},
         {"fps", Number(&Scene::fps, 1.0, 1000.0), "frames per second", "frame rate, until an event gives a range"},
         {"frames", Whole(&Scene::frames, 1, FramesMax), "frames", "length of the run"},
         {"seed", Whole(&Scene::seed, 0, ~0ULL), "", "seed of the sensor's noise"},
         {"lux", Number(&Scene::lux, 1e-3, 1e6), "lux",
          "mean light of the frame at 0 EV. A luma of 46 takes a gain times time of 18 s over the lux: 45 ms at 400"},
         {"rg", Number(&Scene::rg, ColourMin, ColourMax), "linear", "red over green of the light"},
         {"bg", Number(&Scene::bg, ColourMin, ColourMax), "linear", "blue over green of the light"},
         {"startOffsetEV", Number(&Scene::startOffsetEV, -20.0, 20.0), "EV",
          "the fixed exposure to start with, against the one that shows mid-grey"},
         {"pattern", Map(&Scene::pattern, PatternTable), "", "what the frame shows"},
         {"panorama", PanoramaValue(), "", "a photographed panorama that the camera looks into, instead of a pattern"},
         {"light",
          List(&Scene::light, "points {time, ev}", LightPointTable,
               {&LightPoint::time, true, "light points must stand in ascending time"}),
          "", "steps and ramps of the light"},
         {"ripple", Map(&Scene::ripple, RippleTable), "",
          "a sine in the light, slow enough for every frame to see one value"},
         {"lamp", Map(&Scene::lamp, LampTable), "", "a lamp that flickers within a frame"},
         {"sensor", SensorValue(), "", "the sensor that looks at the scene"},
         {"events", EventsValue(), "", "what happens at which time"},
         {"variants",
          {ReadElsewhere, {.type = SceneType::Map, .members = WholeSceneTable, .isByName = true}},
          "",
          "other runs of the scene, each with what it changes"},
         {"role", Within(&Scene::camera, Choice(&CameraSetup::role, RoleChoices())), "",
          "what the camera is in its group"},
         {"modes", Within(&Scene::camera, Made(&CameraSetup::modes, ReadModes, ModesForm())), "",
          "modes of the tuning from the first frame on, such as Sensor.0"},
         {"calibration", Within(&Scene::camera, CalibrationValue()), "", "what the factory has measured of the module"},
         {"sensitivityByCCT", Within(&Scene::camera, SensitivityByCCTValue()), "",
          "how the module sees light of different colour; linear in between"},
         {"CCT", Number(&Scene::CCT, CCTMin, CCTMax), "K", "colour of the light at first"},
         {"start", NewMap(&Scene::start, StartTable), "", "how the session begins"},
         {"second",
          {ReadElsewhere, {.type = SceneType::Map, .members = SecondTable}},
          "",
          "a second camera: the first one but for what stands here; setup and start are its own"},
         {"object", Map(&Scene::object, ObjectTable), "", "something before the pattern that comes, moves and goes"},
         {"map", Map(&Scene::map, OutsideMapTable), "", "a map of the object from a source outside the camera"},
         {"gyro",
          List(&Scene::gyro, "points {time, rms}", GyroPointTable,
               {&GyroPoint::time, false, "gyro points must stand in ascending time"}),
          "", "how the camera shakes"},
         {"detectors", NewMap(&Scene::detectors, DetectorsTable), "", "what to tell of scene change detectors"},
         {"monitors", Flag(&Scene::isMonitored), "", "whether the summary tells what the monitors said"},
         {"flash", NewMap(&Scene::flash, FlashTable), "", "two LEDs, and pictures that are taken with them"}});
    return table;
}

Scene ReadScene(const std::string& rPath, const std::string& variant)
{
    const YamlInput input = OpenScene(rPath);
    SceneReader     reader(input);
    Scene           scene;
    reader.ReadInto(input.Root(), scene);
    if (!variant.empty())
    {
        reader.ReadInto(VariantNode(input, variant), scene);
    }
    reader.ReadSecond(scene);
    const bool needsSecond =
        std::any_of(scene.events.begin(), scene.events.end(),
                    [](const Event& rEvent) { return rEvent.isForSecond || rEvent.role.has_value(); });
    if (needsSecond && scene.pSecond == nullptr)
    {
        input.Fail(input.Root(), "an event is for a second camera, but the scene has none");
    }
    return scene;
}

std::vector<std::string> ReadVariants(const std::string& rPath)
{
    std::vector<std::string> names;
    for (const YamlEntry& rVariant : Variants(OpenScene(rPath)))
    {
        names.push_back(rVariant.name);
    }
    return names;
}

}  // namespace kirosim
