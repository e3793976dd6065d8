/// @file
/// The parts of the debug record (interface/aecdebugdata.h) that tell what was measured, and how it was judged.
#pragma once

#include "platform/tavotypes.h"

#pragma pack(push, 1)

constexpr UINT32 AECDebugNameLength       = 64;    ///< bytes, terminated unless a name fills them
constexpr UINT32 AECDebugCalculatorCount  = 40;    ///< room for calculators
constexpr UINT32 AECDebugAnalyzerCount    = 20;    ///< room for analyzers
constexpr UINT32 AECDebugOperationCount   = 20;    ///< room for operations of one analyzer
constexpr UINT32 AECDebugChannelCount     = 20;    ///< room for channels
constexpr UINT32 AECDebugGridSizeMax      = 3072;  ///< regions of one channel
constexpr UINT32 AECDebugHistogramSizeMax = 1024;  ///< bins of one channel

/// A pair of values.
struct AECDebugRange
{
    FLOAT start;  ///< first
    FLOAT end;    ///< second
};

/// A bank entry; -1 or 255 for none.
struct AECDebugBank
{
    UINT8 bankID;  ///< KIROBankIDType
    INT16 dataID;  ///< cut to -1 to 32767
};

/// One calculator that ran.
struct AECDebugCalculatorType
{
    CHAR  description[AECDebugNameLength];  ///< tuned name
    INT32 calculatorID;                     ///< tuned
    UINT8 APISelection;                     ///< CalculatorAPIType
    INT16 outputStart;                      ///< slots of the calculator bank
    INT16 outputEnd;                        ///< slots of the calculator bank
    FLOAT results[2];                       ///< -1 for what could not be measured, 0 for a second one that it has not
};

/// Where a result of a scene analyzer came from and went to.
struct AECDebugComponentType
{
    UINT8        method;                           ///< of the aggregation, AggregationMethodType
    AECDebugBank output;                           ///< receives the result
    CHAR         description[AECDebugNameLength];  ///< tuned name of the output
};

/// One arithmetic operation of a scene analyzer.
struct AECDebugOperationType
{
    UINT8         priorityAndDataType;              ///< priority in the low four bits, data type in the high ones
    UINT8         method;                           ///< ArithmeticOperationMethodType
    FLOAT         operands[4];                      ///< A to D
    AECDebugRange result;                           ///< both halves
    AECDebugBank  output;                           ///< receives the result
    CHAR          description[AECDebugNameLength];  ///< tuned name of the output
};

/// One scene analyzer that ran; zeros for one whose algorithm runs in place of all else.
struct AECDebugAnalyzerType
{
    CHAR                  name[AECDebugNameLength];            ///< tuned
    UINT16                analyzerID;                          ///< tuned
    UINT8                 refType;                             ///< KIROExposureSelection that it was measured with
    UINT8                 type;                                ///< KIROExposureSelection that it decides
    FLOAT                 luma;                                ///< on the scale of its channels
    AECDebugRange         target;                              ///< wanted luma
    FLOAT                 confidence;                          ///< as tuned
    AECDebugComponentType lumaOrigin;                          ///< of luma
    AECDebugComponentType targetOrigin;                        ///< of target
    AECDebugComponentType confidenceOrigin;                    ///< of confidence
    FLOAT                 adjustmentRatio;                     ///< as read from its bank, -1 without an operator
    UINT8                 operationCount;                      ///< goes on past the array, up to 255
    AECDebugOperationType operations[AECDebugOperationCount];  ///< in the order in which they ran
};

/// By the metering calls. Calculators and analyzers are recorded where verboseDebugDataEnable of the module
/// kiroextension asks for them; otherwise the counts are 0.
struct AECDebugDataMeteringType
{
    UINT64                 mtrExposures[3];     ///< of KIROMeteringOutput
    UINT64                 exposures[3];        ///< of KIROMeteringOutput, before mixMetering
    UINT8                  bIsMeteringSkipped;  ///< 0: a frame that is skipped does not write it
    FLOAT                  luma;                ///< of the lux analyzer
    FLOAT                  luxIndex;            ///< filtered over frames
    FLOAT                  darkRatio;           ///< trigger TriggerCtrlDarkRatio
    FLOAT                  brightRatio;         ///< trigger TriggerCtrlSatRatio
    UINT16                 calculatorCount;     ///< goes on past the array; without the four fixed ones
    AECDebugCalculatorType calculators[AECDebugCalculatorCount];  ///< in the order in which they ran
    UINT16                 analyzerCount;                         ///< goes on past the array
    AECDebugAnalyzerType   analyzers[AECDebugAnalyzerCount];      ///< in the order of runAnalyzer
    UINT8                  reserved[2];                           ///< zeros
};

/// A rectangle, sensor pixels.
struct AECDebugStatsROIType
{
    UINT32 left;    ///< first column
    UINT32 top;     ///< first row
    UINT32 width;   ///< columns
    UINT32 height;  ///< rows
};

/// Shape of a channel.
struct AECDebugStatsResolutionType
{
    UINT32 width;     ///< grid columns
    UINT32 height;    ///< grid rows
    UINT32 binCount;  ///< histogram bins
    INT32  bitDepth;  ///< full scale of a value is 2^bitDepth - 1
};

/// Values of a channel; the one that its type has not is zeros, as are both without values.
struct AECDebugStatsChInfo
{
    FLOAT  valGrid[AECDebugGridSizeMax];       ///< row-major, the first regions of a larger grid
    UINT32 valHist[AECDebugHistogramSizeMax];  ///< counts, the first bins of a larger histogram
};

/// A channel as it was delivered, taken or not.
struct AECDebugStatsChList
{
    UINT64                      frameID;                          ///< of KIROCntStatsOut
    CHAR                        channelName[AECDebugNameLength];  ///< delivered name
    UINT8                       bChannelEnabled;                  ///< of KIROCoreChInfo
    UINT8                       statsType;                        ///< KIROStatsType
    AECDebugStatsResolutionType resolution;                       ///< of KIROCntStatsOut
    AECDebugStatsChInfo         channelData;                      ///< values
};

/// By setStats, where verboseDebugDataEnable of the module kiroextension asks for the channels.
struct AECDebugDataStatsProcResult
{
    UINT8                numOfChannels;                   ///< entries of channels
    UINT8                bPrepareBeforePreflash;          ///< of KIROStatsList
    UINT8                bIsTouchAEC;                     ///< holds the torch flag, not that of touch
    AECDebugStatsROIType bayerGridROI;                    ///< of KIROStatsList
    AECDebugStatsChList  channels[AECDebugChannelCount];  ///< zeros behind the last one
};

#pragma pack(pop)
