/// @file
/// Measures over histogram channels. The cumulative table of a channel is computed on its first request in a frame.
#pragma once

#include "core/ikirocontextmanager.h"
#include "core/statsprocessor/ckirohistiterator.h"
#include "core/statsprocessor/statschannels.h"

constexpr UINT32 HistBinCountMax = 1024;

enum KIROHistRangeType : INT32
{
    HistRangeLuma       = 0,  ///< luma values, clamped to 0 to 256 whatever the bit depth
    HistRangePercentile = 1   ///< shares of the samples, 0 to 1
};

class CKIROStatsHistProcessor
{
public:
    explicit CKIROStatsHistProcessor(IKIROContextManager& rContextManager);

    /// Computes the cumulative tables of channels that have none yet. The records must outlive the frame.
    VOID SetProcStats(const KIROCntStatsOut* pStats, UINT32 count);
    VOID ResetProcStats();

    // All measures return 0, or 1 on failure.

    /// Weighted mean over bins. @param pRange fractions of the bin count
    KiroResult GetHistWeightedLuma(const CHAR* pStatsName, const StartEndType* pRange, INT32 metHistID,
                                   FLOAT& rWeightedLuma, FLOAT statsThreshold);

    /// @param pOutputs receives the mean luma of the range and its share of the samples
    KiroResult GetHistRangeLuma(const CHAR* pStatsName, const StartEndType* pRange, KIROHistRangeType type,
                                FLOAT* pOutputs, FLOAT statsThreshold);

    /// Samples up to a bin. @param pRange end is the bin, start is not used
    KiroResult GetHistCDF(const CHAR* pStatsName, const StartEndType* pRange, FLOAT* pOutput);

    CKIROHistIterator& Iterator()
    {
        return m_histItr;
    }

private:
    /// Derived data of one frame.
    struct KIROHistProcStats
    {
        const CHAR*            pChannelName[KIROStatsChannelCountMax];
        const KIROCntStatsOut* pRawStats[KIROStatsChannelCountMax];
        FLOAT                  percentile[KIROStatsChannelCountMax][HistBinCountMax];  ///< cumulative share, 0 to 1
        BOOL                   bPercentileSet[KIROStatsChannelCountMax];
    };

    struct PartialBin;

    VOID  PreprocessCoreStats(const KIROCntStatsOut& rStats);
    INT32 FindProcStatsChannel(const CHAR* pName) const;
    INT32 ValidateInputParam(const CHAR* pName, const StartEndType* pRange) const;

    /// The mean luma of the samples from a part of one bin to a part of another.
    /// @param clamp limit to the luma of a bin
    static FLOAT MeanLuma(const KIROCntStatsOut& rStats, const PartialBin& rFirst, const PartialBin& rLast,
                          FLOAT clamp);

    /// @return one weight per bin; without a table only bin 0 has any
    const FLOAT* WeightsOf(INT32 metHistID) const;

    IKIROContextManager& m_rContextManager;
    KIROHistProcStats    m_procStats;
    UINT32               m_processedChannelNum;
    CKIROHistIterator    m_histItr;
};
