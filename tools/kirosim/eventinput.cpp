#include "tools/kirosim/eventinput.h"

#include <algorithm>

#include "tools/kirosim/bracketinput.h"
#include "tools/kirosim/camerainput.h"
#include "tools/kirosim/startinput.h"
#include "tools/tuningfile/modepath.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

VOID ReadTouch(const SceneText& rText, const YamlEntry& rEntry, Event& rEvent)
{
    if (rEntry.value.IsScalar() && rEntry.value.Scalar() == "none")
    {
        rEvent.isTouchEnd = true;
        return;
    }
    const std::vector<DOUBLE> box = rText.Numbers(rEntry, 4, 0.0, 1.0);
    rEvent.touch = AECAlgoROI{static_cast<FLOAT>(box[0]), static_cast<FLOAT>(box[1]), static_cast<FLOAT>(box[2]),
                              static_cast<FLOAT>(box[3]), 1.0f};
}

StatisticsAntibanding ReadAntibanding(const SceneText& rText, const YamlEntry& rEntry)
{
    constexpr StatisticsAntibanding modes[] = {StatisticsAntibandingOff, StatisticsAntibanding50Hz,
                                               StatisticsAntibanding60Hz};
    return modes[rText.Choice(rEntry, {"off", "50", "60"})];
}

AECAlgoHDRType ReadHDR(const SceneText& rText, const YamlEntry& rEntry)
{
    constexpr AECAlgoHDRType types[] = {HDRDisabled, SensorHDR, StaggeredHDR, MultiframeHDR};
    return types[rText.Choice(rEntry, {"off", "sensor", "staggered", "multiframe"})];
}

AECAlgoManualSetting ReadManual(const SceneText& rText, const YAML::Node& rNode)
{
    constexpr DOUBLE     nsPerUs = 1000.0;
    AECAlgoManualSetting manual{};
    bool                 hasGain = false;
    bool                 hasTime = false;
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "a manual setting"))
    {
        if (rEntry.name == "iso")
        {
            manual.manualMode = AECAlgoModeManualISO;
            manual.ISOValue   = static_cast<UINT32>(rText.Unsigned(rEntry, 1000000));
        }
        else if (rEntry.name == "gain")
        {
            hasGain     = true;
            manual.gain = static_cast<FLOAT>(rText.Number(rEntry, 1e-3, 1e4));
        }
        else if (rEntry.name == "timeUs")
        {
            hasTime             = true;
            manual.exposureTime = static_cast<UINT64>(rText.Number(rEntry, 1.0, 1e7) * nsPerUs);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of a manual setting", {"iso", "gain", "timeUs"});
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

VOID ReadEventEntry(const SceneText& rText, const YamlEntry& rEntry, Event& rEvent)
{
    const std::string& rName = rEntry.name;
    if (rName == "time")
    {
        rEvent.time = rText.Number(rEntry, 0.0, 1e6);
    }
    else if (rName == "ev")
    {
        rEvent.ev = static_cast<INT32>(rText.Number(rEntry, -1000.0, 1000.0));
    }
    else if (rName == "lock")
    {
        rEvent.lock = rText.Flag(rEntry);
    }
    else if (rName == "touch")
    {
        ReadTouch(rText, rEntry, rEvent);
    }
    else if (rName == "antibanding")
    {
        rEvent.antibanding = ReadAntibanding(rText, rEntry);
    }
    else if (rName == "fps")
    {
        const std::vector<DOUBLE> bounds = rText.Numbers(rEntry, 2, 0.1, 1000.0);
        rEvent.fps = AECAlgoFPSRange{static_cast<FLOAT>(bounds[1]), static_cast<FLOAT>(bounds[0])};
    }
    else if (rName == "manual")
    {
        rEvent.manual = ReadManual(rText, rEntry.value);
    }
    else if (rName == "hdr")
    {
        rEvent.hdr = ReadHDR(rText, rEntry);
    }
    else if (rName == "modes")
    {
        rEvent.modes = ReadModes(rText, rEntry);
    }
    else if (rName == "bracket")
    {
        rEvent.bracket = ReadBracket(rText, rEntry);
    }
    else if (rName == "led")
    {
        constexpr AECAlgoLEDModeType modes[] = {AECAlgoLEDModeOff, AECAlgoLEDModeAuto, AECAlgoLEDModeOn};
        rEvent.LEDMode                       = modes[rText.Choice(rEntry, {"off", "auto", "on"})];
    }
    else if (rName == "camera")
    {
        rEvent.isForSecond = rText.Choice(rEntry, {"first", "second"}) == 1;
    }
    else if (rName == "role")
    {
        rEvent.role = ReadRole(rText, rEntry);
    }
    else if (rName == "start")
    {
        rEvent.start = ReadStart(rText, rEntry.value);
    }
    else if (rName == "CCT")
    {
        rEvent.CCT = rText.Number(rEntry, 1000.0, 1e5);
    }
    else
    {
        rText.Input().FailUnknown(rEntry, "member of an event",
                                  {"time", "ev", "lock", "touch", "antibanding", "fps", "manual", "hdr", "modes",
                                   "bracket", "led", "camera", "role", "start", "CCT"});
    }
}

}  // namespace

std::vector<TuningMode> ReadModes(const SceneText& rText, const YamlEntry& rEntry)
{
    std::vector<TuningMode> selectors(static_cast<size_t>(ModeType::EnumModeType_COUNT));
    for (size_t level = 0; level < selectors.size(); ++level)
    {
        selectors[level].mode = static_cast<ModeType>(level);
    }
    for (const YAML::Node& rItem : rText.Items(rEntry, "modes such as Sensor.0"))
    {
        tuningfile::ModeName name;
        std::string          fault;
        if (!tuningfile::ParseModeName(rText.Input().Scalar(rItem, "a mode"), name, fault))
        {
            rText.Input().Fail(rItem, fault);
        }
        selectors[name.mode].subMode.value = name.subMode;
    }
    return selectors;
}

std::vector<Event> ReadEvents(const SceneText& rText, const YamlEntry& rEntry)
{
    std::vector<Event> events;
    for (const YAML::Node& rItem : rText.Items(rEntry, "events {time, ...}"))
    {
        Event event;
        for (const YamlEntry& rMember : rText.Input().Map(rItem, "an event {time, ...}"))
        {
            ReadEventEntry(rText, rMember, event);
        }
        events.push_back(event);
    }
    std::stable_sort(events.begin(), events.end(),
                     [](const Event& rFirst, const Event& rSecond) { return rFirst.time < rSecond.time; });
    return events;
}

}  // namespace kirosim
