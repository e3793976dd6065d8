/// @file
/// What light comes from a direction.
#pragma once

#include <algorithm>

#include "tools/panorama/radiancemap.h"

namespace panorama
{

/// A place between two neighbours of a row or column.
struct Neighbours
{
    INT32 first;  ///< -1 before the first one
    FLOAT share;  ///< of the second
};

/// @param place from -1 on, at whole numbers in the middle of a pixel
inline Neighbours NeighboursOf(FLOAT place)
{
    const INT32 first = static_cast<INT32>(place + 1.0f) - 1;
    return {first, place - static_cast<FLOAT>(first)};
}

inline Light Mix(const Light& rFirst, const Light& rSecond, FLOAT share)
{
    return {rFirst.red + share * (rSecond.red - rFirst.red), rFirst.green + share * (rSecond.green - rFirst.green),
            rFirst.blue + share * (rSecond.blue - rFirst.blue)};
}

/// Between two pixels of a row, around the sphere where it ends. Beyond a pole the row goes on at the other side.
inline Light LightInRow(const RadianceMap& rMap, INT32 row, const Neighbours& rColumns)
{
    const INT32 height = static_cast<INT32>(rMap.height);
    const INT32 width  = static_cast<INT32>(rMap.width);
    const bool  isOver = row < 0 || row >= height;
    INT32       first  = rColumns.first + (isOver ? width / 2 : 0);
    first += (first < 0) ? width : 0;
    first -= (first >= width) ? width : 0;
    const INT32  second = (first + 1 == width) ? 0 : first + 1;
    const Light* pRow   = &rMap.pixels[static_cast<size_t>(std::clamp(row, 0, height - 1)) * rMap.width];
    return Mix(pRow[first], pRow[second], rColumns.share);
}

/// Linear between the four pixels around a direction.
/// @param longitude in turns to the right of straight ahead, at most some turns
/// @param latitude  in turns above the horizon, -0.25 to 0.25
inline Light LightFrom(const RadianceMap& rMap, FLOAT longitude, FLOAT latitude)
{
    constexpr FLOAT  turns   = 16.0f;  // makes the angle positive, so that cutting it to a whole number rounds down
    const FLOAT      fromEnd = longitude + 0.5f;
    const FLOAT      turn    = fromEnd - (static_cast<FLOAT>(static_cast<INT32>(fromEnd + turns)) - turns);
    const Neighbours columns = NeighboursOf(turn * static_cast<FLOAT>(rMap.width) - 0.5f);
    const Neighbours rows    = NeighboursOf((0.5f - 2.0f * latitude) * static_cast<FLOAT>(rMap.height) - 0.5f);
    return Mix(LightInRow(rMap, rows.first, columns), LightInRow(rMap, rows.first + 1, columns), rows.share);
}

}  // namespace panorama
