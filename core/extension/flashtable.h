/// @file
/// Arithmetic over the table of LED mixes. Currents are milliamperes; tuning can hold any value, so differences are
/// taken in 64 bits and results saturate.
#pragma once

#include <algorithm>
#include <limits>
#include <span>

#include "core/base/exposurearithmetic.h"
#include "schema/kiroflash.h"

namespace flashtable
{

inline INT32 Saturated(INT64 current)
{
    return static_cast<INT32>(
        std::clamp<INT64>(current, std::numeric_limits<INT32>::min(), std::numeric_limits<INT32>::max()));
}

/// minuend - subtrahend
inline FLOAT Difference(INT32 minuend, INT32 subtrahend)
{
    return static_cast<FLOAT>(static_cast<INT64>(minuend) - subtrahend);
}

/// start + (end - start) * ratio
inline FLOAT Between(FLOAT start, FLOAT end, FLOAT ratio)
{
    return start + (end - start) * ratio;
}

/// The same for currents, truncated.
inline INT32 CurrentBetween(INT32 start, INT32 end, FLOAT ratio)
{
    return exposurearithmetic::SaturateToINT32(static_cast<FLOAT>(start) + Difference(end, start) * ratio);
}

/// Where a calibrated mix stands in the table; may lie outside of it.
inline INT64 LinearIndex(const kiroflash::KIROLEDMixCalibType& rEntry, INT32 countMix)
{
    return rEntry.indexMix + static_cast<INT64>(countMix) * rEntry.indexPower;
}

/// The mixes of one power, as far as the table and maxCount reach.
inline std::span<const kiroflash::LEDMixType> RowOf(const kiroflash::LEDMatchTableType& rTable, INT64 power,
                                                    UINT32 maxCount)
{
    const INT64 start = power * rTable.countMix;
    if (rTable.table == nullptr || rTable.countMix < 0 || start < 0 || start >= rTable.tableCount)
    {
        return {};
    }
    const INT64 count = std::min<INT64>({rTable.countMix, rTable.tableCount - start, maxCount});
    return {rTable.table + start, static_cast<size_t>(count)};
}

}  // namespace flashtable
