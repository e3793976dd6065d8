#include "tools/panorama/mapinput.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <mutex>

#include <fmt/format.h>

#include "tools/panorama/cleaning.h"
#include "tools/panorama/exrinput.h"
#include "tools/panorama/hdrinput.h"
#include "tools/panorama/reduction.h"
#include "tools/panorama/spheremean.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"

namespace panorama
{

namespace
{

constexpr size_t FileSizeMax = 256 << 20;

/// A camera of 128 samples across a view of 45 degrees sees each pixel.
constexpr UINT32 WidthMax = 1024;

}  // namespace

RadianceMap ReadMap(std::span<const BYTE> bytes, std::string_view name)
{
    if (IsExr(bytes))
    {
        return ReadExr(bytes, name);
    }
    if (IsHdr(bytes))
    {
        return ReadHdr(bytes, name);
    }
    throw tuningfile::InputError(fmt::format("{}: neither an OpenEXR nor a Radiance picture", name));
}

RadianceMap ReadLookable(std::span<const BYTE> bytes, std::string_view name)
{
    RadianceMap map = ReadMap(bytes, name);
    Clean(map, name);
    const DOUBLE scale  = std::exp2(-MeanLog2Luminance(map));
    const auto   scaled = [scale](FLOAT value) { return static_cast<FLOAT>(static_cast<DOUBLE>(value) * scale); };

    map = Reduce(std::move(map), WidthMax);
    for (Light& rLight : map.pixels)
    {
        rLight = {scaled(rLight.red), scaled(rLight.green), scaled(rLight.blue)};
    }
    return map;
}

std::shared_ptr<const RadianceMap> SharedMap(const std::string& rPath)
{
    static std::mutex                                              mutex;
    static std::map<std::string, std::weak_ptr<const RadianceMap>> maps;  // by path without links

    std::error_code   ignored;
    const std::string key = std::filesystem::weakly_canonical(rPath, ignored).string();

    const std::lock_guard<std::mutex>  lock(mutex);
    std::weak_ptr<const RadianceMap>&  rShared = maps[key];
    std::shared_ptr<const RadianceMap> pMap    = rShared.lock();
    if (pMap == nullptr)
    {
        pMap    = std::make_shared<const RadianceMap>(ReadLookable(tuningfile::ReadBytes(rPath, FileSizeMax), rPath));
        rShared = pMap;
    }
    return pMap;
}

}  // namespace panorama
