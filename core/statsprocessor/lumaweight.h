/// @file
/// Weights of a region by its luma and by its distance from a colour. They stand in the header because every region of
/// the grid asks for them.
#pragma once

#include <algorithm>

#include "schema/kiroglobalelements.h"

/// A straight line through two points; at a step the later value.
inline FLOAT InterpolateLumaWeight(FLOAT x1, FLOAT y1, FLOAT x2, FLOAT y2, FLOAT x)
{
    return (x1 == x2) ? y2 : y1 + (y2 - y1) * ((x - x1) / (x2 - x1));
}

/// A piecewise-linear map: row k maps trigger.start..end to triggerData.start..end.
/// @return 0 for no rows
inline FLOAT GetRegionalLumaWeight(UINT32 count, const kiroglobalelements::TriggerSystemEndLevelStartEndType* pRows,
                                   FLOAT luma)
{
    for (UINT32 index = 0; index < count; ++index)
    {
        const auto& rRow = pRows[index];
        if (rRow.trigger.start > luma)
        {
            if (index == 0)
            {
                return rRow.triggerData.start;
            }
            const auto& rBefore = pRows[index - 1];
            return InterpolateLumaWeight(rBefore.trigger.end, rBefore.triggerData.end, rRow.trigger.start,
                                         rRow.triggerData.start, luma);
        }
        if (rRow.trigger.end >= luma)
        {
            return InterpolateLumaWeight(rRow.trigger.start, rRow.triggerData.start, rRow.trigger.end,
                                         rRow.triggerData.end, luma);
        }
    }
    return (count == 0) ? 0.0f : pRows[count - 1].triggerData.end;
}

/// Soft edge: 1 up to min, falling to 0 at min + buffer.
inline FLOAT GetSoftEdgeWeight(FLOAT value, FLOAT min, FLOAT buffer)
{
    return !(value > min) ? 1.0f : std::max(1.0f - (value - min) / buffer, 0.0f);
}
