#include "tools/kirosim/flashinput.h"

#include "tools/kirosim/scenevalues.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

constexpr DOUBLE DistanceMin = 0.05;
constexpr DOUBLE DistanceMax = 1000.0;
constexpr UINT32 PicturesMax = 10000;
constexpr UINT32 CurrentMax  = 100000;

constexpr SceneCount LEDCount{std::tuple_size_v<decltype(FlashScene::leds)>,
                              std::tuple_size_v<decltype(FlashScene::leds)>};

const SceneTable<FlashLED>& LEDTable()
{
    static const SceneTable<FlashLED> table(
        "an LED {luxPerAmpere, rg, bg}", "member of an LED",
        {{"luxPerAmpere", Number(&FlashLED::luxPerAmpere, 0.0, 1e6), "lux per A", "its light at 1 m"},
         {"rg", Within(&FlashLED::colour, Number(&Colour::rg, ColourMin, ColourMax)), "linear",
          "red over green of its light"},
         {"bg", Within(&FlashLED::colour, Number(&Colour::bg, ColourMin, ColourMax)), "linear",
          "blue over green of its light"}});
    return table;
}

VOID ReadLEDs(const SceneText& rText, const YamlEntry& rEntry, FlashScene& rFlash)
{
    const std::vector<YAML::Node> items = rText.Items(rEntry, "LEDs", LEDCount);
    for (size_t index = 0; index < items.size(); ++index)
    {
        LEDTable().Read(rText, items[index], rFlash.leds[index]);
    }
}

std::vector<Colour> ReadColours(const SceneText& rText, const YamlEntry& rEntry)
{
    std::vector<Colour> colours;
    for (const YAML::Node& rItem : rText.Items(rEntry, "colours [rg, bg]"))
    {
        const YamlEntry           item{rEntry.name, rEntry.key, rItem};
        const std::vector<DOUBLE> pair = rText.Numbers(item, 2, ColourMin, ColourMax);
        colours.push_back({pair[0], pair[1]});
    }
    return colours;
}

const SceneTable<FlashPictures>& PicturesTable()
{
    static const SceneTable<FlashPictures> table(
        "pictures {first, interval, count, ...}", "member of pictures",
        {{"first", Number(&FlashPictures::first, 0.0, SceneTimeMax), "s", "when the first picture is asked for"},
         {"interval", Number(&FlashPictures::interval, 0.0, SceneTimeMax), "s",
          "from picture to picture; one that is not done by then delays the next"},
         {"count", Whole(&FlashPictures::count, 0, PicturesMax), "pictures", "length of the series"},
         {"precision", Flag(&FlashPictures::isPrecision), "", "whether the LEDs may light a part of the exposure only"},
         {"light",
          Made(&FlashPictures::light, ReadColours,
               {.type  = SceneType::Number,
                .range = SceneRange{TextOf(ColourMin), TextOf(ColourMax)},
                .lists = {{}, {2, 2}}}),
          "linear", "colours [rg, bg] of the surroundings, one per picture, over and over; else the scene's"}});
    return table;
}

const SceneTable<FlashScene>& NearTable()
{
    static const SceneTable<FlashScene> table(
        "what is near {distance, area}", "member of what is near",
        {{"distance", Number(&FlashScene::nearDistance, DistanceMin, DistanceMax), "m", "distance of what is near"},
         {"area", Number(&FlashScene::nearArea, 0.0, 1.0), "share of the frame",
          "share that it takes, in the middle"}});
    return table;
}

}  // namespace

const SceneTable<FlashScene>& FlashTable()
{
    static const SceneTable<FlashScene> table(
        "a flash", "member of a flash",
        {{"leds", {ReadLEDs, {.type = SceneType::Map, .lists = {LEDCount}, .members = LEDTable}}, "", "the two LEDs"},
         {"maxCurrent", Whole(&FlashScene::maxCurrent, 0, CurrentMax), "mA",
          "current that the camera allows, both LEDs together"},
         {"near", Group(NearTable), "", "what stands near, in the middle of the frame"},
         {"farDistance", Number(&FlashScene::farDistance, DistanceMin, DistanceMax), "m", "distance of all else"},
         {"calibration", Flag(&FlashScene::isCalibrated), "",
          "whether the library learns the LEDs' colour from pictures"},
         {"pictures", NewMap(&FlashScene::pictures, PicturesTable), "", "the series of pictures with flash"}});
    return table;
}

}  // namespace kirosim
