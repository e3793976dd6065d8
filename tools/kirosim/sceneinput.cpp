// Scenes from text.

#include "tools/kirosim/scene.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>

#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/scalarinput.h"
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

class SceneReader
{
public:
    explicit SceneReader(const YamlInput& rInput) : m_rInput(rInput)
    {
    }

    VOID ReadInto(const YAML::Node& rNode, Scene& rScene) const
    {
        for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a scene"))
        {
            if (!ReadSceneEntry(rEntry, rScene))
            {
                m_rInput.FailUnknown(rEntry, "member of a scene",
                                     {"name", "fps", "frames", "seed", "lux", "rg", "bg", "startOffsetEV", "pattern",
                                      "light", "ripple", "lamp", "sensor", "events", "variants"});
            }
        }
    }

private:
    DOUBLE Number(const YamlEntry& rEntry, DOUBLE low, DOUBLE high) const
    {
        return Number(rEntry.value, rEntry.name, low, high);
    }

    DOUBLE Number(const YAML::Node& rNode, const std::string& rName, DOUBLE low, DOUBLE high) const
    {
        const std::string& rText  = m_rInput.Scalar(rNode, "a number");
        DOUBLE             value  = 0.0;
        const auto         result = std::from_chars(rText.data(), rText.data() + rText.size(), value);
        if (result.ec != std::errc() || result.ptr != rText.data() + rText.size() || !(value >= low && value <= high))
        {
            m_rInput.Fail(rNode,
                          fmt::format("'{}' is no {}, expected a number from {} to {}", rText, rName, low, high));
        }
        return value;
    }

    std::vector<DOUBLE> Numbers(const YamlEntry& rEntry, size_t count, DOUBLE low, DOUBLE high) const
    {
        if (!rEntry.value.IsSequence() || rEntry.value.size() != count)
        {
            m_rInput.Fail(rEntry.value, fmt::format("{} wants a list of {} numbers", rEntry.name, count));
        }
        std::vector<DOUBLE> values;
        for (const YAML::Node& rItem : rEntry.value)
        {
            values.push_back(Number(rItem, rEntry.name, low, high));
        }
        return values;
    }

    UINT64 Unsigned(const YamlEntry& rEntry, UINT64 maximum) const
    {
        return tuningfile::ReadUnsigned(m_rInput, rEntry.value, rEntry.name, maximum);
    }

    bool ReadSceneEntry(const YamlEntry& rEntry, Scene& rScene) const
    {
        const std::string& rName = rEntry.name;
        if (rName == "name")
        {
            rScene.name = m_rInput.Scalar(rEntry.value, "a name");
        }
        else if (rName == "fps")
        {
            rScene.fps = Number(rEntry, 1.0, 1000.0);
        }
        else if (rName == "frames")
        {
            rScene.frames = static_cast<UINT32>(Unsigned(rEntry, FramesMax));
        }
        else if (rName == "seed")
        {
            rScene.seed = Unsigned(rEntry, ~0ULL);
        }
        else if (rName == "lux")
        {
            rScene.lux = Number(rEntry, 1e-3, 1e6);
        }
        else if (rName == "rg")
        {
            rScene.rg = Number(rEntry, 0.01, 100.0);
        }
        else if (rName == "bg")
        {
            rScene.bg = Number(rEntry, 0.01, 100.0);
        }
        else if (rName == "startOffsetEV")
        {
            rScene.startOffsetEV = Number(rEntry, -20.0, 20.0);
        }
        else if (rName == "pattern")
        {
            ReadPattern(rEntry.value, rScene.pattern);
        }
        else if (rName == "light")
        {
            ReadLight(rEntry.value, rScene.light);
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
        else if (rName == "events")
        {
            ReadEvents(rEntry.value, rScene.events);
        }
        else
        {
            return rName == "variants";
        }
        return true;
    }

    VOID ReadPattern(const YAML::Node& rNode, Pattern& rPattern) const
    {
        for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a pattern"))
        {
            if (rEntry.name == "kind")
            {
                rPattern.kind = ReadKind(rEntry.value);
            }
            else if (rEntry.name == "contrastEV")
            {
                rPattern.contrastEV = Number(rEntry, 0.0, 20.0);
            }
            else if (rEntry.name == "area")
            {
                rPattern.area = Number(rEntry, 0.0, 1.0);
            }
            else if (rEntry.name == "textureEV")
            {
                rPattern.textureEV = Number(rEntry, 0.0, 5.0);
            }
            else
            {
                m_rInput.FailUnknown(rEntry, "member of a pattern", {"kind", "contrastEV", "area", "textureEV"});
            }
        }
    }

    PatternKind ReadKind(const YAML::Node& rNode) const
    {
        static const std::pair<const CHAR*, PatternKind> kinds[] = {{"uniform", PatternKind::Uniform},
                                                                    {"natural", PatternKind::Natural},
                                                                    {"highContrast", PatternKind::HighContrast},
                                                                    {"window", PatternKind::Window},
                                                                    {"subject", PatternKind::Subject}};
        const std::string&                               rText   = m_rInput.Scalar(rNode, "a kind of pattern");
        for (const auto& [pName, kind] : kinds)
        {
            if (rText == pName)
            {
                return kind;
            }
        }
        m_rInput.Fail(rNode, fmt::format("'{}' is no kind of pattern, expected uniform, natural, highContrast, window "
                                         "or subject",
                                         rText));
    }

    VOID ReadLight(const YAML::Node& rNode, std::vector<LightPoint>& rLight) const
    {
        if (!rNode.IsSequence())
        {
            m_rInput.Fail(rNode, "light wants a list of points {time, ev}");
        }
        rLight.clear();
        for (const YAML::Node& rItem : rNode)
        {
            LightPoint point{};
            for (const YamlEntry& rEntry : m_rInput.Map(rItem, "a point {time, ev}"))
            {
                if (rEntry.name == "time")
                {
                    point.time = Number(rEntry, 0.0, 1e6);
                }
                else if (rEntry.name == "ev")
                {
                    point.ev = Number(rEntry, -20.0, 20.0);
                }
                else if (rEntry.name == "ramp")
                {
                    point.isRamp = tuningfile::ReadFlag(m_rInput, rEntry.value, rEntry.name);
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
                rRipple.hertz = Number(rEntry, 0.0, 1000.0);
            }
            else if (rEntry.name == "percent")
            {
                rRipple.percent = Number(rEntry, 0.0, 100.0);
            }
            else if (rEntry.name == "start")
            {
                rRipple.start = Number(rEntry, 0.0, 1e6);
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
                rLamp.hertz = Number(rEntry, 0.0, 1000.0);
            }
            else if (rEntry.name == "depth")
            {
                rLamp.depth = Number(rEntry, 0.0, 1.0);
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
                rSensor.latency = static_cast<UINT8>(Number(rEntry, 1.0, 9.0));
            }
            else if (rName == "minGain")
            {
                rSensor.minGain = Number(rEntry, 1e-3, 1e4);
            }
            else if (rName == "maxGain")
            {
                rSensor.maxGain = Number(rEntry, 1e-3, 1e4);
            }
            else if (rName == "gainStep")
            {
                rSensor.gainStep = Number(rEntry, 1e-6, 1.0);
            }
            else if (rName == "lineTimeUs")
            {
                rSensor.lineTime = Number(rEntry, 0.1, 1000.0) * 1e-6;
            }
            else if (rName == "minTimeUs")
            {
                rSensor.minTime = static_cast<UINT64>(Number(rEntry, 1.0, 1e7) * nsPerUs);
            }
            else if (rName == "maxTimeUs")
            {
                rSensor.maxTime = static_cast<UINT64>(Number(rEntry, 1.0, 1e7) * nsPerUs);
            }
            else if (rName == "readoutMs")
            {
                rSensor.readout = Number(rEntry, 0.0, 1000.0) * 1e-3;
            }
            else if (rName == "bitDepth")
            {
                rSensor.bitDepth = static_cast<INT32>(Unsigned(rEntry, 16));
            }
            else if (rName == "regionNoise")
            {
                rSensor.regionNoise = Number(rEntry, 0.0, 1.0);
            }
            else if (rName == "shotNoise")
            {
                rSensor.shotNoise = Number(rEntry, 0.0, 1.0);
            }
            else if (rName == "readNoise")
            {
                rSensor.readNoise = Number(rEntry, 0.0, 1.0);
            }
            else
            {
                m_rInput.FailUnknown(rEntry, "member of a sensor",
                                     {"latency", "minGain", "maxGain", "gainStep", "lineTimeUs", "minTimeUs",
                                      "maxTimeUs", "readoutMs", "bitDepth", "regionNoise", "shotNoise", "readNoise"});
            }
        }
        if (rSensor.minGain > rSensor.maxGain || rSensor.minTime > rSensor.maxTime)
        {
            m_rInput.Fail(rNode, "a sensor's minimum lies above its maximum");
        }
    }

    VOID ReadEvents(const YAML::Node& rNode, std::vector<Event>& rEvents) const
    {
        if (!rNode.IsSequence())
        {
            m_rInput.Fail(rNode, "events wants a list of events {time, ...}");
        }
        rEvents.clear();
        for (const YAML::Node& rItem : rNode)
        {
            Event event;
            for (const YamlEntry& rEntry : m_rInput.Map(rItem, "an event {time, ...}"))
            {
                ReadEventEntry(rEntry, event);
            }
            rEvents.push_back(event);
        }
        std::stable_sort(rEvents.begin(), rEvents.end(),
                         [](const Event& rFirst, const Event& rSecond) { return rFirst.time < rSecond.time; });
    }

    VOID ReadEventEntry(const YamlEntry& rEntry, Event& rEvent) const
    {
        const std::string& rName = rEntry.name;
        if (rName == "time")
        {
            rEvent.time = Number(rEntry, 0.0, 1e6);
        }
        else if (rName == "ev")
        {
            rEvent.ev = static_cast<INT32>(Number(rEntry, -1000.0, 1000.0));
        }
        else if (rName == "lock")
        {
            rEvent.lock = tuningfile::ReadFlag(m_rInput, rEntry.value, rName);
        }
        else if (rName == "touch")
        {
            ReadTouch(rEntry, rEvent);
        }
        else if (rName == "antibanding")
        {
            rEvent.antibanding = ReadAntibanding(rEntry.value);
        }
        else if (rName == "fps")
        {
            const std::vector<DOUBLE> bounds = Numbers(rEntry, 2, 0.1, 1000.0);
            rEvent.fps = AECAlgoFPSRange{static_cast<FLOAT>(bounds[1]), static_cast<FLOAT>(bounds[0])};
        }
        else if (rName == "manual")
        {
            rEvent.manual = ReadManual(rEntry.value);
        }
        else if (rName == "modes")
        {
            rEvent.modes = ReadModes(rEntry.value);
        }
        else
        {
            m_rInput.FailUnknown(rEntry, "member of an event",
                                 {"time", "ev", "lock", "touch", "antibanding", "fps", "manual", "modes"});
        }
    }

    VOID ReadTouch(const YamlEntry& rEntry, Event& rEvent) const
    {
        if (rEntry.value.IsScalar() && rEntry.value.Scalar() == "none")
        {
            rEvent.isTouchEnd = true;
            return;
        }
        const std::vector<DOUBLE> box = Numbers(rEntry, 4, 0.0, 1.0);
        rEvent.touch = AECAlgoROI{static_cast<FLOAT>(box[0]), static_cast<FLOAT>(box[1]), static_cast<FLOAT>(box[2]),
                                  static_cast<FLOAT>(box[3]), 1.0f};
    }

    StatisticsAntibanding ReadAntibanding(const YAML::Node& rNode) const
    {
        const std::string& rText = m_rInput.Scalar(rNode, "off, 50 or 60");
        if (rText == "off")
        {
            return StatisticsAntibandingOff;
        }
        if (rText == "50")
        {
            return StatisticsAntibanding50Hz;
        }
        if (rText == "60")
        {
            return StatisticsAntibanding60Hz;
        }
        m_rInput.Fail(rNode, fmt::format("'{}' is no antibanding, expected off, 50 or 60", rText));
    }

    AECAlgoManualSetting ReadManual(const YAML::Node& rNode) const
    {
        constexpr DOUBLE     nsPerUs = 1000.0;
        AECAlgoManualSetting manual{};
        bool                 hasGain = false;
        bool                 hasTime = false;
        for (const YamlEntry& rEntry : m_rInput.Map(rNode, "a manual setting"))
        {
            if (rEntry.name == "iso")
            {
                manual.manualMode = AECAlgoModeManualISO;
                manual.ISOValue   = static_cast<UINT32>(Unsigned(rEntry, 1000000));
            }
            else if (rEntry.name == "gain")
            {
                hasGain     = true;
                manual.gain = static_cast<FLOAT>(Number(rEntry, 1e-3, 1e4));
            }
            else if (rEntry.name == "timeUs")
            {
                hasTime             = true;
                manual.exposureTime = static_cast<UINT64>(Number(rEntry, 1.0, 1e7) * nsPerUs);
            }
            else
            {
                m_rInput.FailUnknown(rEntry, "member of a manual setting", {"iso", "gain", "timeUs"});
            }
        }
        if (hasGain || hasTime)
        {
            manual.manualMode = (hasGain && hasTime) ? AECAlgoModeManualFull
                                : hasGain            ? AECAlgoModeManualGain
                                                     : AECAlgoModeManualExpTime;
        }
        return manual;
    }

    std::vector<TuningMode> ReadModes(const YAML::Node& rNode) const
    {
        if (!rNode.IsSequence())
        {
            m_rInput.Fail(rNode, "modes wants a list such as [Sensor.0, Usecase.Video]");
        }
        std::vector<TuningMode> selectors(static_cast<size_t>(ModeType::EnumModeType_COUNT));
        for (size_t level = 0; level < selectors.size(); ++level)
        {
            selectors[level].mode = static_cast<ModeType>(level);
        }
        for (const YAML::Node& rItem : rNode)
        {
            tuningfile::ModeName name;
            std::string          fault;
            if (!tuningfile::ParseModeName(m_rInput.Scalar(rItem, "a mode"), name, fault))
            {
                m_rInput.Fail(rItem, fault);
            }
            selectors[name.mode].subMode.value = name.subMode;
        }
        return selectors;
    }

    const YamlInput& m_rInput;
};

/// The text of a scene file as YAML.
YamlInput OpenScene(const std::string& rPath)
{
    const std::vector<BYTE> bytes = tuningfile::ReadBytes(rPath);
    return YamlInput({reinterpret_cast<const CHAR*>(bytes.data()), bytes.size()}, rPath);
}

}  // namespace

Scene ReadScene(const std::string& rPath, const std::string& variant)
{
    const YamlInput   input = OpenScene(rPath);
    const SceneReader reader(input);
    Scene             scene;
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
