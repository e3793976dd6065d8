/// @file
/// Exposure records. Times are nanoseconds, gains linear factors with 1.0 as unity.
///
/// An exposure, also called sensitivity, is one number: gain * time * correction, rounded to whole ns. An index is its
/// logarithm to the base 1.03 over the exposure of index 0: a step of 1 is 3 percent.
#pragma once

#include "platform/tavotypes.h"
#include "schema/exposureindex.h"
#include "schema/tuningrecord.h"

/// Half a period of 50 Hz mains, ns: a lamp flickers at twice the mains frequency.
constexpr UINT64 FlickerPeriod50Hz = 10000000;
/// Half a period of 60 Hz mains, ns.
constexpr UINT64 FlickerPeriod60Hz = 8333333;

/// One complete exposure. Arbitration writes the first five members, and clears the others where an exposure table
/// yields the exposure.
struct KIROExposureSetType
{
    FLOAT  gain;              ///< linear; 0 as an input counts as 1.0
    UINT64 time;              ///< ns; 0 as an input counts as 1
    FLOAT  indx;              ///< index, may be negative; 0 for an exposure of 0
    FLOAT  corr;              ///< factor of the exposure table, 1.0 for none; 0 as an input counts as 1.0
    UINT64 exposure;          ///< gain * time * corr in ns; 0 as an input counts as 1
    UINT32 ISO;               ///< the host's: kept with the frame and put into the debug record, not read otherwise
    FLOAT  snapshotGain;      ///< the host's: kept with the frame, not read
    UINT64 snapshotTime;      ///< the host's, ns: kept with the frame, not read
    UINT64 snapshotExposure;  ///< the host's: kept with the frame, not read
};
TUNING_RECORD(KIROExposureSetType)
    MEMBER(gain)
    MEMBER(time)
    MEMBER(indx)
    MEMBER(corr)
    MEMBER(exposure)
    MEMBER(ISO)
    MEMBER(snapshotGain)
    MEMBER(snapshotTime)
    MEMBER(snapshotExposure)
TUNING_RECORD_END

/// A closed interval in gain, in time and in exposure, each with its own limits: start.gain and start.time are the two
/// floors, end.gain and end.time the ceilings. exposure and indx of both are brought up to date by runArbitration.
struct KIROExposureRange
{
    KIROExposureSetType start;  ///< lower limits; its corr is the correction of the range
    KIROExposureSetType end;    ///< upper limits
};
TUNING_RECORD(KIROExposureRange)
    MEMBER(start)
    MEMBER(end)
TUNING_RECORD_END

/// Hardware limits of a sensor, by the host. Ranges and look-up tables that leave them are refused; maxGain is not
/// checked: it counts as the end of the range that the host begins with.
struct KIROSensorRange
{
    FLOAT  minGain;  ///< linear
    FLOAT  maxGain;  ///< linear
    UINT64 minTime;  ///< ns
    UINT64 maxTime;  ///< ns
};
TUNING_RECORD(KIROSensorRange)
    MEMBER(minGain)
    MEMBER(maxGain)
    MEMBER(minTime)
    MEMBER(maxTime)
TUNING_RECORD_END

/// Limits of a frame's three exposures, which the host finds with runArbitration (bIsConvRange) and hands to
/// RunConvProcess. Copied there; converged exposures stay within them.
struct KIROArbitratedLimits
{
    KIROExposureRange ranges[3];  ///< by AECAlgoExposureType
    /// Exposure of index 0, ns. Above 0: with 0 the indices of exposures and those of limits count from different ones.
    UINT64 indexZeroExposure;
};
TUNING_RECORD(KIROArbitratedLimits)
    PER_EXPOSURE(ranges)
    MEMBER(indexZeroExposure)
TUNING_RECORD_END
