/// @file
/// Weights of regions by their luma and by their distance from a colour, many regions at a time: each weight stands for
/// itself, so the compiler computes several in one step.
#pragma once

#include "schema/kiroglobalelements.h"

namespace regionweights
{

/// Regions that are weighted at a time.
constexpr UINT32 BatchSize = 128;

/// One number for each region of a batch.
using Batch = FLOAT[BatchSize];

/// A row of a map of luma.
using Row = kiroglobalelements::TriggerSystemEndLevelStartEndType;

/// The luma of a batch, or what it is clamped at.
VOID Clamp(const FLOAT* __restrict pLuma, FLOAT clamp, FLOAT* __restrict pClamped);

/// A piecewise-linear map of luma: row k maps trigger.start..end to triggerData.start..end, the later value where both
/// are the same. Between rows it goes straight from the end of one to the start of the next, before and behind them it
/// stays.
/// @param pLuma    of a batch
/// @param rWeights 0 for no rows
VOID ByLuma(UINT32 count, const Row* pRows, const FLOAT* pLuma, Batch& rWeights);

/// A colour ratio around which regions count.
struct SoftEdge
{
    FLOAT center;
    FLOAT half;     ///< up to this distance the weight is 1
    FLOAT fallOff;  ///< over which it falls to 0 beyond
};

/// The lesser of what the two ratios weigh.
/// @param pRG, pBG of a batch
VOID ByColor(const SoftEdge& rRGEdge, const SoftEdge& rBGEdge, const FLOAT* pRG, const FLOAT* pBG, Batch& rWeights);

}  // namespace regionweights
