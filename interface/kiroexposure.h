/// @file
/// Exposure records. Times are nanoseconds, gains are linear factors with 1.0 as unity.
#pragma once

#include "platform/tavotypes.h"

/// Half a mains period: light flickers at twice the mains frequency.
constexpr UINT64 FlickerPeriod50Hz = 10000000;  // ns
constexpr UINT64 FlickerPeriod60Hz = 8333333;   // ns

/// One complete exposure.
struct KIROExposureSetType
{
    FLOAT  gain;
    UINT64 time;
    FLOAT  indx;      ///< log of exposure over the index-zero exposure, to the base 1.03
    FLOAT  corr;      ///< correction factor of the exposure table
    UINT64 exposure;  ///< sensitivity: gain * time * corr, rounded
    UINT32 ISO;
    FLOAT  snapshotGain;
    UINT64 snapshotTime;
    UINT64 snapshotExposure;
};

/// A closed interval in gain, in time and in exposure, each with its own limits.
struct KIROExposureRange
{
    KIROExposureSetType start;
    KIROExposureSetType end;
};

/// Hardware limits of a sensor.
struct KIROSensorRange
{
    FLOAT  minGain;
    FLOAT  maxGain;
    UINT64 minTime;
    UINT64 maxTime;
};

/// Limits of a frame's three exposures, indexed by AECAlgoExposureType.
struct KIROArbitratedLimits
{
    KIROExposureRange ranges[3];
    UINT64            indexZeroExposure;  ///< exposure of index 0
};
