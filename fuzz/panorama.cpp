/// Panoramas from anywhere, of both formats: each is refused with one line, or is light that can be looked at.
#include <cmath>
#include <cstdlib>
#include <string>

#include "tools/panorama/lookup.h"
#include "tools/panorama/mapinput.h"
#include "tools/tuningfile/inputerror.h"

namespace
{

/// A light in each direction is what a camera can be exposed to.
VOID LookAround(const panorama::RadianceMap& rMap)
{
    for (INT32 longitude = -8; longitude <= 8; ++longitude)
    {
        for (INT32 latitude = -4; latitude <= 4; ++latitude)
        {
            const FLOAT luminance = panorama::Luminance(
                panorama::LightFrom(rMap, static_cast<FLOAT>(longitude) / 16.0f, static_cast<FLOAT>(latitude) / 16.0f));
            if (!std::isfinite(luminance) || luminance < 0.0f)
            {
                std::abort();
            }
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    try
    {
        LookAround(panorama::ReadLookable({pData, size}, "fuzz"));
    }
    catch (const tuningfile::InputError& rError)
    {
        if (std::string(rError.what()).find('\n') != std::string::npos)
        {
            std::abort();  // a message is one line
        }
    }
    return 0;
}
