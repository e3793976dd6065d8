/// @file
/// Working records of inline calibration, in the units of interface/kirofic.h.
#pragma once

#include "interface/kirofic.h"

constexpr UINT32 KIROFICGridCellCountMax    = 3072;
constexpr UINT32 KIROFICKneeSampleCountMax  = 150;
constexpr INT32  KIROFICFactoringRegionsMax = 20;

/// Which frame of a flash capture is looked at.
enum KIROFICState : INT32
{
    FICStateFlashOff  = 0,
    FICStatePreFlash  = 1,
    FICStateFullFlash = 2
};

/// Colour of each cell of a frame's grid, row-major.
struct KIROFICRGBGStatsInfo
{
    UINT32 width;
    UINT32 height;
    FLOAT  rg[KIROFICGridCellCountMax];
    FLOAT  bg[KIROFICGridCellCountMax];
};

/// The cells that are neutral before flash.
struct KIROFICRefRegionsInfo
{
    UINT32 width;  ///< of the grid that regionIdx points into
    UINT32 height;
    UINT32 numRegions;
    UINT32 regionIdx[KIROFICGridCellCountMax];
    FLOAT  refRG;  ///< colour of neutral
    FLOAT  refBG;
};

/// What the flash did to the reference cells, over the frames of one capture.
struct KIROFICFlashRegionsInfo
{
    BOOL   isValid;
    UINT32 flashCnt;  ///< frames in the sums
    INT32  LED1;
    INT32  LED2;
    FLOAT  rgSum;
    FLOAT  bgSum;
    FLOAT  targetRG;  ///< the colour that the LEDs have by this measurement
    FLOAT  targetBG;
};

struct KIROFICMixedPower
{
    INT32 LED1;
    INT32 LED2;
};

struct KIROFICCalTuningPoints
{
    INT8              numPoints;
    KIROFICMixedPower point[KIROFICKneeCountMax];
};

/// Mixes of the lowest or of the highest power.
struct KIROFICCalTuningPointsInfo
{
    KIROFICCalTuningPoints calInfo;     ///< those that the factory measured
    KIROFICCalTuningPoints tuningInfo;  ///< all of the table's row
};

/// First and last tuning point of a zone, as indices.
struct KIROFICTriggerPointType
{
    FLOAT start;
    FLOAT end;
};

/// How far a sample of a zone is taken, as shares.
struct KIROFICTargetZoneDataType
{
    FLOAT distancePCT;
    FLOAT targetShiftPCT;
};

struct KIROFICTargetZoneType
{
    KIROFICTriggerPointType   zoneTrigger;
    KIROFICTargetZoneDataType zoneData;
};

struct KIROFICTargetZoneInfo
{
    UINT32                numZones;
    KIROFICTargetZoneType targetZone[KIROFICZoneCountMax];
};

struct KIROFICKneeRGBGData
{
    FLOAT rg;
    FLOAT bg;
};

struct KIROFICKneeMinMaxInfo
{
    FLOAT minRG;
    FLOAT maxRG;
    FLOAT minBG;
    FLOAT maxBG;
};

/// What the samples say about the colour of one knee.
struct KIROFICKneeInfo
{
    UINT16                count;
    KIROFICKneeMinMaxInfo minmax;
    KIROFICKneeRGBGData   ratio[KIROFICKneeSampleCountMax];
};
