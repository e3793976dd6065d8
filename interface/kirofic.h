/// @file
/// What flash inline calibration has learned of the colour of the LEDs: red over green (RG) and blue over green (BG)
/// for currents in mA.
///
/// The records are the core's. The host keeps their contents between sessions as a blob: GetFICData writes it,
/// AECAlgoSetParamFlashInlineCalibrationData gives it back. Little-endian, without gaps but for the reserved bytes:
///
///     offset  size  field
///     0       2     rawDataCount
///     2       1     numOfKnees
///     3       1     numOfZones
///     4       16    each of rawDataCount samples: led1Setting 2, led2Setting 2, rgRatio 4, bgRatio 4, zoneIdx 1,
///                   reserved 3
///             24    each of numOfKnees knees: rgRatioLow, bgRatioLow, rgRatioHigh, bgRatioHigh, confLEDLow and
///                   confLEDHigh, 4 each
///             4     each of numOfZones zones: zoneCntLow 2, zoneCntHigh 2
///
/// A blob without samples changes nothing. One is refused, with a log and with result 0 of setInput all the same, while
/// AECAlgoSetParamFlashInlineCalibrationMode is off, or if it counts too many samples, or fewer knees and zones than
/// the tuned flash table has. The blob must be as long as its counts say.
#pragma once

#include "platform/tavotypes.h"

/// Samples that are kept; a blob that counts more is refused.
constexpr UINT32 KIROFICRawDataCountMax = 1500;
/// Knees, that is mixes of one row of the tuned flash table.
constexpr UINT32 KIROFICKneeCountMax = 16;
/// Zones.
constexpr UINT32 KIROFICZoneCountMax = 16;

/// What a blob begins with. A blob may stand at any address.
struct KIROFICBlobHead
{
    UINT8 rawDataCount[2];  ///< samples, the low byte first
    UINT8 numOfKnees;       ///< knees
    UINT8 numOfZones;       ///< zones
};
static_assert(sizeof(KIROFICBlobHead) == 4 && alignof(KIROFICBlobHead) == 1);

/// Whether the colour of a knee has been learned.
enum KIROFICConfType : INT32
{
    FICConfLow  = 0,  ///< no: its ratios say nothing, the tuned colour stands
    FICConfHigh = 1   ///< yes: its ratios replace the tuned ones, but of the first and the last mix
};

/// One measured flash.
struct KIROFICRawData
{
    UINT16 led1Setting;  ///< mA
    UINT16 led2Setting;  ///< mA
    FLOAT  rgRatio;      ///< RG that the LEDs had by this measurement
    FLOAT  bgRatio;      ///< BG
    UINT8  zoneIdx;      ///< the zone lies between the knees zoneIdx and zoneIdx + 1
};

/// Learned colour of one knee, that is of one mix of the flash table: at the lowest power of the table and at its
/// highest.
struct KIROFICKneeData
{
    FLOAT           rgRatioLow;   ///< RG at the lowest power
    FLOAT           bgRatioLow;   ///< BG at the lowest power
    FLOAT           rgRatioHigh;  ///< RG at the highest power
    FLOAT           bgRatioHigh;  ///< BG at the highest power
    KIROFICConfType confLEDLow;   ///< whether those of the lowest power count
    KIROFICConfType confLEDHigh;  ///< whether those of the highest power count
};

/// How many samples of a zone there are.
struct KIROFICZoneData
{
    UINT16 zoneCntLow;   ///< at the lowest power
    UINT16 zoneCntHigh;  ///< at the highest power
};

/// All that has been learned. Entries beyond the counts are meaningless.
struct KIROFICInfo
{
    UINT16 rawDataCount;  ///< samples
    UINT8  numOfKnees;    ///< mixes of the tuned table; 0 before the mode is set, and for a table of none or above 16
    UINT8  numOfZones;    ///< numOfKnees - 1
    /// Zone by zone, those of the lowest power first, then those of the highest; within a zone the oldest first.
    KIROFICRawData  rawData[KIROFICRawDataCountMax];
    KIROFICKneeData kneeData[KIROFICKneeCountMax];  ///< by mix
    KIROFICZoneData zoneData[KIROFICZoneCountMax];  ///< by zoneIdx
};
