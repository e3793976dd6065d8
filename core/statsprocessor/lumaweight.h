/// @file
/// Weights of a region by its luma and by its distance from a colour.
#pragma once

#include "schema/kiroglobalelements.h"

/// A piecewise-linear map: row k maps trigger.start..end to triggerData.start..end.
/// @return 0 for no rows
FLOAT GetRegionalLumaWeight(UINT32 count, const kiroglobalelements::TriggerSystemEndLevelStartEndType* pRows,
                            FLOAT luma);

/// Soft edge: 1 up to min, falling to 0 at min + buffer.
FLOAT GetSoftEdgeWeight(FLOAT value, FLOAT min, FLOAT buffer);
