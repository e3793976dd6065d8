/// @file
/// Statistics of one frame, as the host delivers them.
#pragma once

#include "interface/aecalgoinput.h"
#include "platform/tavotypes.h"
#include "schema/kirocorestatsconfig.h"
#include "schema/kiroglobalelements.h"

/// Payload of a channel. All pointers are the host's and stay valid until the next setStats.
struct KIROCoreChInfo
{
    BOOL  bChannelEnabled;
    CHAR* pChannelName;  ///< what tuning names in its selections, compared exactly
    union
    {
        INT*   pIData;  ///< histogram: bin counts, UINT32 each
        FLOAT* pFData;  ///< grid: one value per region, row-major, row stride is the width
    } Data;
    UINT32 dataSize;  ///< bytes, as the host declares it
    FLOAT* pValLUT;   ///< histogram: the value that each bin stands for
};

/// One channel of one frame.
struct KIROCntStatsOut
{
    UINT64                              frameID;
    kiroglobalelements::KIROStatsType   type;
    kirocorestatsconfig::ResolutionType resolution;
    KIROCoreChInfo                      channelData;
};

enum StatisticsStartUp : INT32
{
    StatisticsStartUpValid   = 0,
    StatisticsStartUpInvalid = 1  ///< statistics that must not be trusted at start-up
};

struct StatsDataPointer
{
    VOID*  pData;
    UINT32 dataSize;
};

constexpr UINT32 KIROStatsChannelCountMax = 20;

struct KIROStatsList
{
    StatisticsStartUp startup;
    UINT64            frameID;
    StatsRectangle    bayerGridROI;
    BOOL              prepareBeforePreflash;
    StatsDataPointer  debugData;
    BOOL              bIsTorchAEC;
    BOOL              bIsDepthAEC;
    KIROCntStatsOut   pList[KIROStatsChannelCountMax];
    UINT32            count;  ///< filled entries of pList
};
