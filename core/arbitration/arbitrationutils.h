/// @file
/// Helpers of arbitration without state.
#pragma once

#include "core/base/instancetuning.h"
#include "interface/kiroframe.h"
#include "interface/kiromulticam.h"
#include "schema/kiroarbitration.h"
#include "schema/kirodbarbitrationlut.h"
#include "schema/kirodbarbitrationrange.h"

/// Recomputes exposure and index of both bounds from their gain, time and correction. An exposure that gain and time
/// approximate within the tolerance of equality stays; an end below the start is raised to it.
VOID UtilUpdateExposureAndIndexLimits(KIROExposureRange* pR, UINT64 indexZeroExposure);

/// Lets the tuned solution decide what gives way when gain and time do not fit their ranges together.
/// @return 0, or 1 when the control does not apply
KiroResult UtilResolveRangeConflicts(KIROExposureRange* pRange, const KIROSensorRange* pSensorRange, FLOAT* pGain,
                                     UINT64* pTime, kirodbarbitrationrange::RangeConflictHandlingType solution);

/// Clamps or refuses a looked-up gain and time that leave the current range or the sensor's limits.
/// @return 0, or 1 when the LUT does not apply
KiroResult UtilResolveLUTConflicts(const KIROExposureRange* pRange, const KIROSensorRange* pSensorRange,
                                   KIROExposureSetType*                             pOut,
                                   const kirodbarbitrationlut::LUTConflictHandling* pHandling);

/// Moves gain and time of a table's result into the current range, keeping the exposure.
/// @return 0 (a gain above the range counts as fitted), or 1
KiroResult UtilMakeTableExposureFit(KIROExposureSetType* pExp, const KIROExposureRange* pRange);

/// @return 0 when an EV value is of the wanted sign, 10 when not, 1 for an unknown sign
KiroResult UtilMatchEV(INT32 ev, kiroarbitration::EVOffsetType evType);

/// Takes the exposure time of a master.
/// @param pOutTime receives the time in ns; untouched without tuning or peer
/// @return 0, or 1 when the time is not to be matched
KiroResult UtilSyncUpExposureTime(AECAlgoExposureType expType, InstanceTuning* pTuningData,
                                  const AECMultiCamInfo* pPeerInfo, FLOAT* pOutTime);

/// @return whether a time lies outside a range
bool IsTimeOutside(UINT64 time, UINT64 startTime, UINT64 endTime);

/// @return whether gain, correction and index are finite
bool IsSoundExposure(const KIROExposureSetType& rSet);

/// @return pText, or an empty text for null
const CHAR* TextOrEmpty(const CHAR* pText);
