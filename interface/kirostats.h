/// @file
/// Statistics of one frame, as the host delivers them with setStats: channels, each a name with values.
///
/// Names are the tuning's. Its calculators, table generators and flash tuning ask for channels by name, compared letter
/// by letter, case included; inline calibration of the flash asks for "gridRGratio" and "gridBGratio". What a channel
/// of a name holds is agreed between the tuning and the host: the core gives no name a meaning. Of two channels of one
/// name the first counts; channels that nobody asks for do no harm. For a name that is asked for and not delivered no
/// call fails: "When nothing is metered" in docs/integration.md tells how it shows.
///
/// Layouts are the record's. A grid has height rows of width values, the upper row first, each from left to right,
/// without padding: region (column, row) is pFData[row * width + column]. A histogram has binCount counts of samples,
/// from bin 0, and beside them a table of as many values in rising order: bin b says that pIData[b] samples have the
/// value pValLUT[b].
///
/// The full scale of a value is 2^bitDepth - 1. The core rescales nothing: targets, thresholds and ranges of a tuning
/// are in units of the channel that they are about. Lumas are cut at 0.98 of full scale, or lower where a calculator
/// follows the ratio of the exposures; ratios of colours are not cut, and take the bitDepth of the luma channel that
/// they go with: channels that one calculator reads must agree in all four numbers of their resolution. A range of luma
/// that is tuned for a histogram ends at 256, whatever the bit depth.
///
/// setStats copies the records. Names, values and value tables stay the host's: they are neither freed nor changed
/// until the next setStats of the instance or its end. Where debug data take the list of statistics, channels that are
/// off and those of a refused list are read during setStats as well: their pointers are null or good.
/// isPreflashMeteringNeeded reads its channels during the call only.
#pragma once

#include "interface/aecalgoinput.h"
#include "platform/tavotypes.h"
#include "schema/kirocorestatsconfig.h"
#include "schema/kiroglobalelements.h"
#include "schema/tuningrecord.h"

/// Payload of a channel.
struct KIROCoreChInfo
{
    BOOL  bChannelEnabled;  ///< 0: the channel is off and passed over, which is no error
    CHAR* pChannelName;     ///< ends with a zero; a channel whose name is null is never found
    /// The values, as type of KIROCntStatsOut says.
    union
    {
        INT*   pIData;  ///< histogram: UINT32 counts; null: it is kept, and measured as if it were missing
        FLOAT* pFData;  ///< grid: values; null: the channel is refused with ResultInvalidInput
    } Data;             ///< the host's
    UINT32 dataSize;    ///< bytes behind Data; the core goes by the resolution alone
    FLOAT* pValLUT;     ///< histogram: its values, null as for pIData; not read of a grid
};

/// One channel of one frame.
struct KIROCntStatsOut
{
    UINT64                            frameID;  ///< of the frame; must not be 0 in isPreflashMeteringNeeded
    kiroglobalelements::KIROStatsType type;     ///< any value but KIROStatsHist is a grid
    /// Grid: width and height; up to 3072 regions serve every measure, table generators need 16 x 16 of 8 bits, flash
    /// 16 x 16. Histogram: binCount, at most 1024. What does not apply is 0.
    kirocorestatsconfig::ResolutionType resolution;
    KIROCoreChInfo                      channelData;  ///< name and values
};
TUNING_RECORD(KIROCntStatsOut)
    MEMBER(frameID)
    MEMBER(type)
    MEMBER(resolution)
    ADDRESS(channelData)
TUNING_RECORD_END

/// Whether the statistics of a frame may be used.
enum StatisticsStartUp : INT32
{
    StatisticsStartUpValid   = 0,  ///< they show a known exposure
    StatisticsStartUpInvalid = 1   ///< they do not, as in the first frames of a session: no channel is taken
};

/// Data of the host's own.
struct StatsDataPointer
{
    VOID*  pData;     ///< the host's
    UINT32 dataSize;  ///< bytes
};

/// Channels of one frame.
constexpr UINT32 KIROStatsChannelCountMax = 20;

/// Argument of setStats, once per frame. setStats answers ResultInvalidInput when no grid could be stored, when the
/// list is too long and when its last channel was refused, else 0: a channel that was refused before the last one shows
/// in the log alone. Truth values are 0 and 1: any other counts as a change in every frame.
struct KIROStatsList
{
    StatisticsStartUp startup;                ///< Invalid: nothing is stored, result 11
    UINT64            frameID;                ///< not read
    StatsRectangle    bayerGridROI;           ///< part of the sensor that the grids cover, pixels; debug record only
    BOOL              prepareBeforePreflash;  ///< debug record only; what counts is said in KIROExtFlashInfo
    StatsDataPointer  debugData;              ///< not read
    BOOL              bIsTorchAEC;  ///< 1 while the LED burns as a torch: event AECTorch, AECTorchChange at a change
    BOOL              bIsDepthAEC;  ///< 1 while depth data are in use: event AECDepth
    KIROCntStatsOut   pList[KIROStatsChannelCountMax];  ///< the channels
    UINT32            count;                            ///< filled entries of pList; above the room nothing is stored
};
