/// @file
/// What a first tuning is made from.
#pragma once

#include "platform/tavotypes.h"

namespace newtuning
{

constexpr DOUBLE NsPerUs     = 1e3;
constexpr DOUBLE NsPerMs     = 1e6;
constexpr DOUBLE NsPerSecond = 1e9;

enum class Mains
{
    Off,
    Hz50,
    Hz60
};

/// Where a picture is to be exposed right.
enum class Metering
{
    Average,
    Centre,
    Spot,
    Faces
};

/// A sensor, and what is wanted of it. Times are in ns.
struct Answers
{
    DOUBLE   gainMin  = 0;
    DOUBLE   gainMax  = 0;
    UINT64   lineTime = 0;  ///< the shortest time as well
    UINT64   timeMax  = 0;
    DOUBLE   FPS      = 0;
    Mains    mains    = Mains::Off;
    DOUBLE   topGain  = 0;  ///< the most that the tuning is to allow
    Metering metering = Metering::Average;
    bool     isHDR    = false;
};

}  // namespace newtuning
