/// @file
/// What a scene analyzer makes of luma, target and the adjustment of its operators: its exposure.
///
/// Exposures are linear; a ratio is the factor that brings an exposure to its target.
#pragma once

#include "interface/kiroexposure.h"
#include "schema/kiroenums.h"

namespace analyzerstages
{

/// The exposure that an analyzer's own starts from.
/// @param pExposures of the matched frame, by AECAlgoExposureType
/// @param refType    ExposureNone, and what is out of range, stands for the short one
DOUBLE ReferenceExposure(const DOUBLE* pExposures, KIROExposureSelection refType);

/// @param adjustment of the analyzer's operators; replaces the ratio of target to luma if it is above 0
FLOAT RatioToTarget(FLOAT adjustment, FLOAT luma, FLOAT target);

/// @return the analyzer's exposure: truncated, and kept within UINT64
UINT64 ExposureByRatio(DOUBLE reference, FLOAT ratio);

/// The exposure of a result that the host amended. The product is taken in single precision.
/// @param luma 0 under a target above 0 yields the largest exposure; a ratio of target to luma that is too small, or
///             none (0 over 0), leaves the reference as it is
UINT64 AmendedExposure(DOUBLE reference, FLOAT luma, FLOAT target);

}  // namespace analyzerstages
