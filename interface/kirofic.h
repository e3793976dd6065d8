/// @file
/// What inline calibration has learned of the flash's colour.
#pragma once

#include "platform/tavotypes.h"

constexpr UINT32 KIROFICRawDataCountMax = 1500;
constexpr UINT32 KIROFICKneeCountMax    = 16;
constexpr UINT32 KIROFICZoneCountMax    = 16;

/// Whether the colour of a knee has been learned.
enum KIROFICConfType : INT32
{
    FICConfLow  = 0,
    FICConfHigh = 1
};

/// One measured flash.
struct KIROFICRawData
{
    UINT16 led1Setting;  ///< mA
    UINT16 led2Setting;  ///< mA
    FLOAT  rgRatio;
    FLOAT  bgRatio;
    UINT8  zoneIdx;  ///< the zone lies between the knees zoneIdx and zoneIdx + 1
};

/// Learned colour of one knee, that is of one mix of the flash table.
struct KIROFICKneeData
{
    FLOAT           rgRatioLow;
    FLOAT           bgRatioLow;
    FLOAT           rgRatioHigh;
    FLOAT           bgRatioHigh;
    KIROFICConfType confLEDLow;
    KIROFICConfType confLEDHigh;
};

struct KIROFICZoneData
{
    UINT16 zoneCntLow;   ///< samples of the zone at the lowest power
    UINT16 zoneCntHigh;  ///< samples of the zone at the highest power
};

struct KIROFICInfo
{
    UINT16          rawDataCount;
    UINT8           numOfKnees;
    UINT8           numOfZones;
    KIROFICRawData  rawData[KIROFICRawDataCountMax];
    KIROFICKneeData kneeData[KIROFICKneeCountMax];
    KIROFICZoneData zoneData[KIROFICZoneCountMax];
};
