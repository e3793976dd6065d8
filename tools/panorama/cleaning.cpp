#include "tools/panorama/cleaning.h"

#include <algorithm>
#include <fmt/format.h>

#include "tools/tuningfile/inputerror.h"

namespace panorama
{

namespace
{

constexpr FLOAT RangeMax = 1073741824.0f;  // 30 EV

/// Brightest values in which a map of any unit can be summed and scaled.
constexpr FLOAT BrightestMin = 1e-30f;
constexpr FLOAT BrightestMax = 1e30f;

}  // namespace

VOID Clean(RadianceMap& rMap, std::string_view name)
{
    FLOAT brightest = 0.0f;
    for (const Light& rLight : rMap.pixels)
    {
        for (const FLOAT value : {rLight.red, rLight.green, rLight.blue})
        {
            brightest = (value > brightest && value <= BrightestMax) ? value : brightest;
        }
    }
    if (brightest < BrightestMin)
    {
        throw tuningfile::InputError(fmt::format("{}: dark in all directions, expected a picture of some light", name));
    }
    // A comparison with what is no number is false.
    const FLOAT darkest = brightest / RangeMax;
    const auto  clean   = [=](FLOAT value) { return (value >= darkest) ? std::min(value, brightest) : 0.0f; };
    for (Light& rLight : rMap.pixels)
    {
        rLight = {clean(rLight.red), clean(rLight.green), clean(rLight.blue)};
    }
}

}  // namespace panorama
