#include "tools/panorama/radiancemap.h"

#include <fmt/format.h>

#include "tools/tuningfile/inputerror.h"

namespace panorama
{

namespace
{

/// Even a grey sky does not compress better, while a damaged header may ask for any size.
constexpr UINT64 PixelsPerByteMax = 256;

}  // namespace

VOID CheckMapSize(INT64 width, INT64 height, size_t fileSize, std::string_view name)
{
    const auto isSide = [](INT64 side) { return side > 0 && side <= static_cast<INT64>(PixelsMax); };
    if (!isSide(width) || !isSide(height) || width != 2 * height)
    {
        throw tuningfile::InputError(
            fmt::format("{}: a picture of {} by {}, expected a panorama twice as wide as high", name, width, height));
    }
    const UINT64 count = static_cast<UINT64>(width) * static_cast<UINT64>(height);
    if (count > PixelsMax)
    {
        throw tuningfile::InputError(
            fmt::format("{}: a picture of {} by {}, expected at most {} pixels", name, width, height, PixelsMax));
    }
    if (count > fileSize * PixelsPerByteMax)
    {
        throw tuningfile::InputError(
            fmt::format("{}: a picture of {} by {} in {} bytes, expected more bytes", name, width, height, fileSize));
    }
}

RadianceMap MakeMap(INT64 width, INT64 height, size_t fileSize, std::string_view name)
{
    CheckMapSize(width, height, fileSize, name);
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    return {static_cast<UINT32>(width), static_cast<UINT32>(height), std::vector<Light>(count)};
}

}  // namespace panorama
