#include "tools/kirosim/lightinput.h"

#include "tools/kirosim/scenevalues.h"

namespace kirosim
{

const SceneTable<Pattern>& PatternTable()
{
    static const SceneTable<Pattern> table(
        "a pattern", "member of a pattern",
        {{"kind",
          Choice(&Pattern::kind, {{"uniform", PatternKind::Uniform},
                                  {"natural", PatternKind::Natural},
                                  {"highContrast", PatternKind::HighContrast},
                                  {"window", PatternKind::Window},
                                  {"subject", PatternKind::Subject}}),
          "", "what the frame shows: grey, 4 x 4 blocks, two parts, a window in a dark room, a subject before a wall"},
         {"contrastEV", Number(&Pattern::contrastEV, 0.0, 20.0), "EV",
          "between the bright and the dark part of highContrast, window and subject"},
         {"area", Number(&Pattern::area, 0.0, 1.0), "share of the frame",
          "taken by the bright part of highContrast and window, or by the subject"},
         {"textureEV", Number(&Pattern::textureEV, 0.0, 5.0), "EV", "sigma of the texture within the parts"}});
    return table;
}

const SceneTable<LightPoint>& LightPointTable()
{
    static const SceneTable<LightPoint> table(
        "a point {time, ev}", "member of a light point",
        {{"time", Number(&LightPoint::time, 0.0, SceneTimeMax), "s", "when the light is as bright as ev says"},
         {"ev", Number(&LightPoint::ev, -20.0, 20.0), "EV", "brightness of the light, relative to lux"},
         {"ramp", Flag(&LightPoint::isRamp), "",
          "whether the light changes evenly from the point before; otherwise it steps"}});
    return table;
}

const SceneTable<Ripple>& RippleTable()
{
    static const SceneTable<Ripple> table(
        "a ripple", "member of a ripple",
        {{"hertz", Number(&Ripple::hertz, 0.0, 1000.0), "Hz", "how often the light swells and fades; 0 for no ripple"},
         {"percent", Number(&Ripple::percent, 0.0, 100.0), "percent of the light", "amplitude"},
         {"start", Number(&Ripple::start, 0.0, SceneTimeMax), "s", "when the ripple begins"}});
    return table;
}

const SceneTable<Lamp>& LampTable()
{
    static const SceneTable<Lamp> table(
        "a lamp", "member of a lamp",
        {{"hertz", Number(&Lamp::hertz, 0.0, 1000.0), "Hz",
          "flicker within a frame: 100 or 120; 0 for steady light. For a lamp that is switched, see light"},
         {"depth", Number(&Lamp::depth, 0.0, 1.0), "share of the mean", "amplitude of the flicker"}});
    return table;
}

}  // namespace kirosim
