#include "tools/kirosim/flashinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

constexpr DOUBLE ColourMin   = 0.01;
constexpr DOUBLE ColourMax   = 100.0;
constexpr DOUBLE DistanceMin = 0.05;
constexpr DOUBLE DistanceMax = 1000.0;
constexpr UINT64 PicturesMax = 10000;
constexpr UINT64 CurrentMax  = 100000;

FlashLED ReadLED(const SceneText& rText, const YAML::Node& rNode)
{
    FlashLED led;
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "an LED {luxPerAmpere, rg, bg}"))
    {
        if (rEntry.name == "luxPerAmpere")
        {
            led.luxPerAmpere = rText.Number(rEntry, 0.0, 1e6);
        }
        else if (rEntry.name == "rg")
        {
            led.colour.rg = rText.Number(rEntry, ColourMin, ColourMax);
        }
        else if (rEntry.name == "bg")
        {
            led.colour.bg = rText.Number(rEntry, ColourMin, ColourMax);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of an LED", {"luxPerAmpere", "rg", "bg"});
        }
    }
    return led;
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

FlashPictures ReadPictures(const SceneText& rText, const YAML::Node& rNode)
{
    FlashPictures pictures;
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "pictures {first, interval, count, ...}"))
    {
        if (rEntry.name == "first")
        {
            pictures.first = rText.Number(rEntry, 0.0, 1e6);
        }
        else if (rEntry.name == "interval")
        {
            pictures.interval = rText.Number(rEntry, 0.0, 1e6);
        }
        else if (rEntry.name == "count")
        {
            pictures.count = static_cast<UINT32>(rText.Unsigned(rEntry, PicturesMax));
        }
        else if (rEntry.name == "precision")
        {
            pictures.isPrecision = rText.Flag(rEntry);
        }
        else if (rEntry.name == "light")
        {
            pictures.light = ReadColours(rText, rEntry);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of pictures",
                                      {"first", "interval", "count", "precision", "light"});
        }
    }
    return pictures;
}

VOID ReadLEDs(const SceneText& rText, const YamlEntry& rEntry, FlashScene& rFlash)
{
    const std::vector<YAML::Node> items = rText.Items(rEntry, "two LEDs");
    if (items.size() != rFlash.leds.size())
    {
        rText.Input().Fail(rEntry.value, "a flash has two LEDs");
    }
    for (size_t index = 0; index < items.size(); ++index)
    {
        rFlash.leds[index] = ReadLED(rText, items[index]);
    }
}

VOID ReadNear(const SceneText& rText, const YAML::Node& rNode, FlashScene& rFlash)
{
    for (const YamlEntry& rEntry : rText.Input().Map(rNode, "what is near {distance, area}"))
    {
        if (rEntry.name == "distance")
        {
            rFlash.nearDistance = rText.Number(rEntry, DistanceMin, DistanceMax);
        }
        else if (rEntry.name == "area")
        {
            rFlash.nearArea = rText.Number(rEntry, 0.0, 1.0);
        }
        else
        {
            rText.Input().FailUnknown(rEntry, "member of what is near", {"distance", "area"});
        }
    }
}

}  // namespace

FlashScene ReadFlash(const SceneText& rText, const YamlEntry& rEntry)
{
    FlashScene flash;
    for (const YamlEntry& rMember : rText.Input().Map(rEntry.value, "a flash"))
    {
        if (rMember.name == "leds")
        {
            ReadLEDs(rText, rMember, flash);
        }
        else if (rMember.name == "maxCurrent")
        {
            flash.maxCurrent = static_cast<INT32>(rText.Unsigned(rMember, CurrentMax));
        }
        else if (rMember.name == "near")
        {
            ReadNear(rText, rMember.value, flash);
        }
        else if (rMember.name == "farDistance")
        {
            flash.farDistance = rText.Number(rMember, DistanceMin, DistanceMax);
        }
        else if (rMember.name == "calibration")
        {
            flash.isCalibrated = rText.Flag(rMember);
        }
        else if (rMember.name == "pictures")
        {
            flash.pictures = ReadPictures(rText, rMember.value);
        }
        else
        {
            rText.Input().FailUnknown(rMember, "member of a flash",
                                      {"leds", "maxCurrent", "near", "farDistance", "calibration", "pictures"});
        }
    }
    return flash;
}

}  // namespace kirosim
