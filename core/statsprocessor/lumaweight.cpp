#include "core/statsprocessor/lumaweight.h"

#include <algorithm>

namespace
{

FLOAT Interpolate(FLOAT x1, FLOAT y1, FLOAT x2, FLOAT y2, FLOAT x)
{
    return (x1 == x2) ? y2 : y1 + (y2 - y1) * ((x - x1) / (x2 - x1));
}

} // namespace

FLOAT GetRegionalLumaWeight(UINT32 count, const kiroglobalelements::TriggerSystemEndLevelStartEndType* pRows,
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
            return Interpolate(rBefore.trigger.end, rBefore.triggerData.end, rRow.trigger.start,
                               rRow.triggerData.start, luma);
        }
        if (rRow.trigger.end >= luma)
        {
            return Interpolate(rRow.trigger.start, rRow.triggerData.start, rRow.trigger.end, rRow.triggerData.end,
                               luma);
        }
    }
    return (count == 0) ? 0.0f : pRows[count - 1].triggerData.end;
}

FLOAT GetSoftEdgeWeight(FLOAT value, FLOAT min, FLOAT buffer)
{
    return !(value > min) ? 1.0f : std::max(1.0f - (value - min) / buffer, 0.0f);
}
