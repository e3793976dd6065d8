// Scenes from text.

#include "tools/kirosim/scene.h"

#include <algorithm>
#include <fmt/format.h>

#include "tools/kirosim/camerainput.h"
#include "tools/kirosim/detectorinput.h"
#include "tools/kirosim/eventinput.h"
#include "tools/kirosim/flashinput.h"
#include "tools/kirosim/objectinput.h"
#include "tools/kirosim/outsideinput.h"
#include "tools/kirosim/startinput.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/yamlinput.h"

using tuningfile::YamlEntry;
using tuningfile::YamlInput;
using tuningfile::YamlMap;

namespace kirosim
{

namespace
{

/// Longest run and fastest frame rate, so that a slip of the pen does not run for hours.
constexpr UINT64 FramesMax = 10000000;

/// What a variant names changes what the scene has.
template <typename T> T& Emplaced(std::optional<T>& rValue)
{
    return rValue.has_value() ? *rValue : rValue.emplace();
}

class SceneReader
{
public:
    explicit SceneReader(const YamlInput& rInput) : m_rInput(rInput), m_text(rInput)
    {
    }

    VOID ReadInto(const YAML::Node& rNode, Scene& rScene)
    {
        static const std::vector<std::string_view> members = {
            "name",    "fps",         "frames",           "seed", "lux",    "rg",     "bg",       "startOffsetEV",
            "pattern", "light",       "ripple",           "lamp", "sensor", "events", "variants", "role",
            "modes",   "calibration", "sensitivityByCCT", "CCT",  "start",  "second", "object",   "map",
            "gyro",    "detectors",   "monitors",         "flash"};
        for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a scene"))
        {
            if (!ReadSceneEntry(rEntry, rScene))
            {
                m_rInput.FailUnknown(rEntry, "member of a scene", members);
            }
            if (rEntry.name == "second")
            {
                m_seconds.push_back(rEntry.value);
            }
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
        pSecond->events.clear();
        ++pSecond->seed;
        for (const YAML::Node& rNode : m_seconds)
        {
            for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a second camera"))
            {
                static const std::vector<std::string_view> names = {
                    "lux",  "seed",  "startOffsetEV", "pattern",          "sensor",
                    "role", "modes", "calibration",   "sensitivityByCCT", "start"};
                if (std::find(names.begin(), names.end(), rEntry.name) == names.end())
                {
                    m_rInput.FailUnknown(rEntry, "member of a second camera", names);
                }
                (VOID) ReadSceneEntry(rEntry, *pSecond);
            }
        }
        rScene.pSecond = pSecond;
    }

private:
    bool ReadSceneEntry(const YamlEntry& rEntry, Scene& rScene) const
    {
        const std::string& rName = rEntry.name;
        if (rName == "name")
        {
            rScene.name = m_rInput.Scalar(rEntry.value, "a name");
        }
        else if (rName == "fps")
        {
            rScene.fps = m_text.Number(rEntry, 1.0, 1000.0);
        }
        else if (rName == "frames")
        {
            rScene.frames = static_cast<UINT32>(m_text.Unsigned(rEntry, FramesMax));
            if (rScene.frames == 0)
            {
                m_rInput.Fail(rEntry.value, "a scene has at least one frame");
            }
        }
        else if (rName == "seed")
        {
            rScene.seed = m_text.Unsigned(rEntry, ~0ULL);
        }
        else if (rName == "lux")
        {
            rScene.lux = m_text.Number(rEntry, 1e-3, 1e6);
        }
        else if (rName == "rg")
        {
            rScene.rg = m_text.Number(rEntry, 0.01, 100.0);
        }
        else if (rName == "bg")
        {
            rScene.bg = m_text.Number(rEntry, 0.01, 100.0);
        }
        else if (rName == "startOffsetEV")
        {
            rScene.startOffsetEV = m_text.Number(rEntry, -20.0, 20.0);
        }
        else if (rName == "pattern")
        {
            ReadPattern(rEntry.value, rScene.pattern);
        }
        else if (rName == "light")
        {
            ReadLight(rEntry, rScene.light);
        }
        else if (rName == "ripple")
        {
            ReadRipple(rEntry.value, rScene.ripple);
        }
        else if (rName == "lamp")
        {
            ReadLamp(rEntry.value, rScene.lamp);
        }
        else if (rName == "sensor")
        {
            ReadSensor(rEntry.value, rScene.sensor);
        }
        else if (rName == "object")
        {
            ReadObject(m_text, rEntry.value, Emplaced(rScene.object));
        }
        else if (rName == "map")
        {
            ReadOutsideMap(m_text, rEntry.value, Emplaced(rScene.map));
        }
        else if (rName == "gyro")
        {
            rScene.gyro = ReadGyro(m_text, rEntry);
        }
        else if (rName == "events")
        {
            rScene.events = ReadEvents(m_text, rEntry);
        }
        else if (rName == "detectors")
        {
            rScene.detectors = ReadDetectors(m_text, rEntry.value);
        }
        else if (rName == "monitors")
        {
            rScene.isMonitored = m_text.Flag(rEntry);
        }
        else if (rName == "flash")
        {
            rScene.flash = ReadFlash(m_text, rEntry);
        }
        else if (rName == "start")
        {
            rScene.start = ReadStart(m_text, rEntry.value);
        }
        else if (rName == "CCT")
        {
            rScene.CCT = m_text.Number(rEntry, 1000.0, 1e5);
        }
        else
        {
            return ReadCameraEntry(m_text, rEntry, rScene.camera) || rName == "variants" || rName == "second";
        }
        return true;
    }

    VOID ReadPattern(const YAML::Node& rNode, Pattern& rPattern) const
    {
        for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a pattern"))
        {
            if (rEntry.name == "kind")
            {
                rPattern.kind = ReadKind(rEntry);
            }
            else if (rEntry.name == "contrastEV")
            {
                rPattern.contrastEV = m_text.Number(rEntry, 0.0, 20.0);
            }
            else if (rEntry.name == "area")
            {
                rPattern.area = m_text.Number(rEntry, 0.0, 1.0);
            }
            else if (rEntry.name == "textureEV")
            {
                rPattern.textureEV = m_text.Number(rEntry, 0.0, 5.0);
            }
            else
            {
                m_rInput.FailUnknown(rEntry, "member of a pattern", {"kind", "contrastEV", "area", "textureEV"});
            }
        }
    }

    PatternKind ReadKind(const YamlEntry& rEntry) const
    {
        constexpr PatternKind kinds[] = {PatternKind::Uniform, PatternKind::Natural, PatternKind::HighContrast,
                                         PatternKind::Window, PatternKind::Subject};
        return kinds[m_text.Choice(rEntry, {"uniform", "natural", "highContrast", "window", "subject"})];
    }

    VOID ReadLight(const YamlEntry& rList, std::vector<LightPoint>& rLight) const
    {
        rLight.clear();
        for (const YAML::Node& rItem : m_text.Items(rList, "points {time, ev}"))
        {
            LightPoint point{};
            for (const YamlEntry& rEntry : m_rInput.Map(rItem, "a point {time, ev}"))
            {
                if (rEntry.name == "time")
                {
                    point.time = m_text.Number(rEntry, 0.0, 1e6);
                }
                else if (rEntry.name == "ev")
                {
                    point.ev = m_text.Number(rEntry, -20.0, 20.0);
                }
                else if (rEntry.name == "ramp")
                {
                    point.isRamp = m_text.Flag(rEntry);
                }
                else
                {
                    m_rInput.FailUnknown(rEntry, "member of a light point", {"time", "ev", "ramp"});
                }
            }
            if (!rLight.empty() && point.time < rLight.back().time)
            {
                m_rInput.Fail(rItem, "light points must stand in ascending time");
            }
            rLight.push_back(point);
        }
    }

    VOID ReadRipple(const YAML::Node& rNode, Ripple& rRipple) const
    {
        for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a ripple"))
        {
            if (rEntry.name == "hertz")
            {
                rRipple.hertz = m_text.Number(rEntry, 0.0, 1000.0);
            }
            else if (rEntry.name == "percent")
            {
                rRipple.percent = m_text.Number(rEntry, 0.0, 100.0);
            }
            else if (rEntry.name == "start")
            {
                rRipple.start = m_text.Number(rEntry, 0.0, 1e6);
            }
            else
            {
                m_rInput.FailUnknown(rEntry, "member of a ripple", {"hertz", "percent", "start"});
            }
        }
    }

    VOID ReadLamp(const YAML::Node& rNode, Lamp& rLamp) const
    {
        for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a lamp"))
        {
            if (rEntry.name == "hertz")
            {
                rLamp.hertz = m_text.Number(rEntry, 0.0, 1000.0);
            }
            else if (rEntry.name == "depth")
            {
                rLamp.depth = m_text.Number(rEntry, 0.0, 1.0);
            }
            else
            {
                m_rInput.FailUnknown(rEntry, "member of a lamp", {"hertz", "depth"});
            }
        }
    }

    VOID ReadSensor(const YAML::Node& rNode, Sensor& rSensor) const
    {
        constexpr DOUBLE nsPerUs = 1000.0;
        for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a sensor"))
        {
            const std::string& rName = rEntry.name;
            if (rName == "latency")
            {
                rSensor.latency = static_cast<UINT8>(m_text.Number(rEntry, 1.0, 9.0));
            }
            else if (rName == "minGain")
            {
                rSensor.minGain = m_text.Number(rEntry, 1e-3, 1e4);
            }
            else if (rName == "maxGain")
            {
                rSensor.maxGain = m_text.Number(rEntry, 1e-3, 1e4);
            }
            else if (rName == "gainStep")
            {
                rSensor.gainStep = m_text.Number(rEntry, 1e-6, 1.0);
            }
            else if (rName == "lineTimeUs")
            {
                rSensor.lineTime = m_text.Number(rEntry, 0.1, 1000.0) * 1e-6;
            }
            else if (rName == "minTimeUs")
            {
                rSensor.minTime = static_cast<UINT64>(m_text.Number(rEntry, 1.0, 1e7) * nsPerUs);
            }
            else if (rName == "maxTimeUs")
            {
                rSensor.maxTime = static_cast<UINT64>(m_text.Number(rEntry, 1.0, 1e7) * nsPerUs);
            }
            else if (rName == "readoutMs")
            {
                rSensor.readout = m_text.Number(rEntry, 0.0, 1000.0) * 1e-3;
            }
            else if (rName == "bitDepth")
            {
                rSensor.bitDepth = static_cast<INT32>(m_text.Unsigned(rEntry, 16));
            }
            else if (rName == "regionNoise")
            {
                rSensor.regionNoise = m_text.Number(rEntry, 0.0, 1.0);
            }
            else if (rName == "shotNoise")
            {
                rSensor.shotNoise = m_text.Number(rEntry, 0.0, 1.0);
            }
            else if (rName == "readNoise")
            {
                rSensor.readNoise = m_text.Number(rEntry, 0.0, 1.0);
            }
            else if (rName == "sensitivity")
            {
                rSensor.sensitivity = m_text.Number(rEntry, 1e-3, 1e3);
            }
            else
            {
                m_rInput.FailUnknown(rEntry, "member of a sensor",
                                     {"latency", "minGain", "maxGain", "gainStep", "lineTimeUs", "minTimeUs",
                                      "maxTimeUs", "readoutMs", "bitDepth", "regionNoise", "shotNoise", "readNoise",
                                      "sensitivity"});
            }
        }
        if (rSensor.minGain > rSensor.maxGain || rSensor.minTime > rSensor.maxTime)
        {
            m_rInput.Fail(rNode, "a sensor's minimum lies above its maximum");
        }
    }

    const YamlInput&        m_rInput;
    const SceneText         m_text;
    std::vector<YAML::Node> m_seconds;  ///< what scene and variant say about the second camera
};

/// The text of a scene file as YAML.
YamlInput OpenScene(const std::string& rPath)
{
    return YamlInput(tuningfile::ReadText(rPath), rPath);
}

}  // namespace

Scene ReadScene(const std::string& rPath, const std::string& variant)
{
    const YamlInput input = OpenScene(rPath);
    SceneReader     reader(input);
    Scene           scene;
    reader.ReadInto(input.Root(), scene);
    if (!variant.empty())
    {
        const YamlMap    map       = input.Map(input.Root(), "a scene");
        const YamlEntry* pVariants = map.Find("variants");
        if (pVariants == nullptr)
        {
            input.Fail(input.Root(), fmt::format("there is no variant '{}': the scene has no variants", variant));
        }
        const YamlMap    variants = input.Map(pVariants->value, "variants");
        const YamlEntry* pVariant = variants.Find(variant);
        if (pVariant == nullptr)
        {
            input.Fail(pVariants->value, fmt::format("there is no variant '{}'", variant));
        }
        reader.ReadInto(pVariant->value, scene);
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
    const YamlInput          input = OpenScene(rPath);
    const YamlMap            map   = input.Map(input.Root(), "a scene");
    std::vector<std::string> names;
    if (const YamlEntry* pVariants = map.Find("variants"); pVariants != nullptr)
    {
        for (const YamlEntry& rEntry : input.Map(pVariants->value, "variants"))
        {
            names.push_back(rEntry.name);
        }
    }
    return names;
}

}  // namespace kirosim
