#include "tools/panorama/reduction.h"

namespace panorama
{

namespace
{

/// A block of pixels from begin up to end.
struct Block
{
    UINT32 begin;
    UINT32 end;
};

/// Which of so many pixels become one of fewer.
Block BlockOf(UINT32 index, UINT32 count, UINT32 reduced)
{
    const auto first = [=](UINT64 place) { return static_cast<UINT32>(place * count / reduced); };
    return {first(index), first(static_cast<UINT64>(index) + 1)};
}

Light MeanOf(const RadianceMap& rMap, const Block& rColumns, const Block& rRows)
{
    DOUBLE red   = 0.0;
    DOUBLE green = 0.0;
    DOUBLE blue  = 0.0;
    for (UINT32 row = rRows.begin; row < rRows.end; ++row)
    {
        for (UINT32 column = rColumns.begin; column < rColumns.end; ++column)
        {
            const Light& rLight = rMap.pixels[static_cast<size_t>(row) * rMap.width + column];
            red += static_cast<DOUBLE>(rLight.red);
            green += static_cast<DOUBLE>(rLight.green);
            blue += static_cast<DOUBLE>(rLight.blue);
        }
    }
    const DOUBLE count = static_cast<DOUBLE>(rColumns.end - rColumns.begin) * (rRows.end - rRows.begin);
    return {static_cast<FLOAT>(red / count), static_cast<FLOAT>(green / count), static_cast<FLOAT>(blue / count)};
}

}  // namespace

RadianceMap Reduce(RadianceMap map, UINT32 widthMax)
{
    if (map.width <= widthMax)
    {
        return map;
    }
    RadianceMap reduced{widthMax, widthMax / 2, {}};
    reduced.pixels.reserve(static_cast<size_t>(reduced.width) * reduced.height);
    for (UINT32 row = 0; row < reduced.height; ++row)
    {
        for (UINT32 column = 0; column < reduced.width; ++column)
        {
            reduced.pixels.push_back(
                MeanOf(map, BlockOf(column, map.width, reduced.width), BlockOf(row, map.height, reduced.height)));
        }
    }
    return reduced;
}

}  // namespace panorama
