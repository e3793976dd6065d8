#include "tools/kirosim/eventinput.h"

#include <algorithm>

#include "tools/kirosim/bracketinput.h"
#include "tools/kirosim/camerainput.h"
#include "tools/kirosim/modesinput.h"
#include "tools/kirosim/scenevalues.h"
#include "tools/kirosim/startinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

VOID SetTouch(Event& rEvent, const std::vector<DOUBLE>& rBox)
{
    rEvent.touch = AECAlgoROI{static_cast<FLOAT>(rBox[0]), static_cast<FLOAT>(rBox[1]), static_cast<FLOAT>(rBox[2]),
                              static_cast<FLOAT>(rBox[3]), 1.0f};
}

VOID EndTouch(Event& rEvent)
{
    rEvent.isTouchEnd = true;
}

VOID SetFPS(Event& rEvent, const std::vector<DOUBLE>& rBounds)
{
    rEvent.fps = AECAlgoFPSRange{static_cast<FLOAT>(rBounds[1]), static_cast<FLOAT>(rBounds[0])};
}

/// What a manual setting names.
struct ManualText
{
    std::optional<UINT32> iso;
    std::optional<FLOAT>  gain;
    std::optional<UINT64> time;  ///< ns
};

const SceneTable<ManualText>& ManualTable()
{
    constexpr DOUBLE                    nsPerUs = 1000.0;
    static const SceneTable<ManualText> table(
        "a manual setting", "member of a manual setting",
        {{"iso", Whole(&ManualText::iso, 0, 1000000), "ISO", "sensitivity, for the mode of a manual ISO"},
         {"gain", Number(&ManualText::gain, 1e-3, 1e4), "linear", "gain, for the mode of a manual gain"},
         {"timeUs", Number(&ManualText::time, 1.0, 1e7, nsPerUs), "us",
          "exposure time, for the mode of a manual time; together with gain, both are set by hand"}});
    return table;
}

AECAlgoManualSetting ReadManual(const SceneText& rText, const YamlEntry& rEntry)
{
    ManualText said;
    ManualTable().Read(rText, rEntry.value, said);
    AECAlgoManualSetting manual{};
    if (said.gain.has_value() || said.time.has_value())
    {
        manual.manualMode = !said.time.has_value()   ? AECAlgoModeManualGain
                            : !said.gain.has_value() ? AECAlgoModeManualExpTime
                                                     : AECAlgoModeManualFull;
    }
    else if (said.iso.has_value())
    {
        manual.manualMode = AECAlgoModeManualISO;
    }
    manual.ISOValue     = said.iso.value_or(0);
    manual.gain         = said.gain.value_or(0.0f);
    manual.exposureTime = said.time.value_or(0);
    return manual;
}

const SceneTable<Event>& EventTable()
{
    static const SceneTable<Event> table(
        "an event {time, ...}", "member of an event",
        {{"time", Number(&Event::time, 0.0, SceneTimeMax), "s", "when it happens"},
         {"ev", Whole(&Event::ev, -EVStepsMax, EVStepsMax), "EV steps", "exposure compensation from now on"},
         {"lock", Flag(&Event::lock), "", "whether the exposure is locked"},
         {"touch", OrNone(Numbers<Event>(4, 0.0, 1.0, SetTouch), EndTouch), "share of the frame",
          "the part that is touched: left edge, upper edge, width and height; none ends the touch"},
         {"antibanding",
          Choice(&Event::antibanding, {{"off", StatisticsAntibandingOff},
                                       {"50", StatisticsAntibanding50Hz},
                                       {"60", StatisticsAntibanding60Hz}}),
          "",
          "mains frequency in Hz whose flicker exposure times avoid, by the grid of the tuning for it; off until an "
          "event says so"},
         {"fps", Numbers<Event>(2, 0.1, 1000.0, SetFPS), "frames per second",
          "lowest and highest frame rate; exposure times may last a period of the lowest"},
         {"manual", Made(&Event::manual, ReadManual, {.type = SceneType::Map, .members = ManualTable}), "",
          "what the user sets by hand; {} goes back to automatic"},
         {"hdr",
          Choice(&Event::hdr, {{"off", HDRDisabled},
                               {"sensor", SensorHDR},
                               {"staggered", StaggeredHDR},
                               {"multiframe", MultiframeHDR}}),
          "", "how the sensor takes several exposures"},
         {"modes", Made(&Event::modes, ReadModes, ModesForm()), "",
          "modes of the tuning from now on, such as Usecase.Video"},
         {"bracket", Made(&Event::bracket, ReadBracket, BracketForm()), "EV steps",
          "a series of pictures, one value for each"},
         {"led",
          Choice(&Event::LEDMode, {{"off", AECAlgoLEDModeOff}, {"auto", AECAlgoLEDModeAuto}, {"on", AECAlgoLEDModeOn}}),
          "", "the user's flash mode: decides the flags for flash and for LED assist, takes no picture"},
         {"camera", Choice(&Event::isForSecond, {{"first", false}, {"second", true}}), "",
          "which camera the event is for"},
         {"role", Choice(&Event::role, RoleChoices()), "", "what the camera is in its group from now on"},
         {"start", NewMap(&Event::start, StartTable), "", "a new session begins"},
         {"CCT", Number(&Event::CCT, CCTMin, CCTMax), "K", "colour of the light from now on, for both cameras"}});
    return table;
}

VOID SortByTime(const SceneText&, const YamlEntry&, Scene& rScene)
{
    std::stable_sort(rScene.events.begin(), rScene.events.end(),
                     [](const Event& rFirst, const Event& rSecond) { return rFirst.time < rSecond.time; });
}

}  // namespace

SceneValue<Scene> EventsValue()
{
    return Then(List(&Scene::events, "events {time, ...}", EventTable), SortByTime);
}

}  // namespace kirosim
