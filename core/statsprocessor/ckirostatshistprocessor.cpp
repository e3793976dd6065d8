#include "core/statsprocessor/ckirostatshistprocessor.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "interface/kiroresults.h"
#include "platform/tavoprocessors.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToUINT32;

namespace
{

constexpr FLOAT LumaMax = 256.0f;

/// Stands in for an absent weight table. Only bin 0 carries weight, against what the log says: a luma without
/// a table is that of bin 0, and weighing all bins would move it.
constexpr std::array<FLOAT, HistBinCountMax + 1> UniformWeight = {1.0f};

FLOAT Clamp(FLOAT value, FLOAT high)
{
    return std::min(std::max(value, 0.0f), high);
}

/// Most of them in blocks of a constant length, of which the compiler makes vectors.
VOID DivideAll(FLOAT* pValues, UINT32 count, FLOAT divisor)
{
    constexpr UINT32 block = 8;
    UINT32           first = 0;
    for (; first + block <= count; first += block)
    {
        for (UINT32 index = first; index < first + block; ++index)
        {
            pValues[index] /= divisor;
        }
    }
    for (; first < count; ++first)
    {
        pValues[first] /= divisor;
    }
}

/// Of bins from the first up to the last, excluded.
/// @param clamp a bin that lies above it takes the weight of the last one that does not
TAVO_FOR_EACH_PROCESSOR
FLOAT WeightedMean(const KIROCoreChInfo& rChannel, const FLOAT* pWeights, UINT32 start, UINT32 end, FLOAT clamp)
{
    FLOAT weight  = pWeights[start];
    FLOAT weights = 0.0f;
    FLOAT values  = 0.0f;
    for (UINT32 bin = start; bin < end; ++bin)
    {
        const FLOAT value     = rChannel.pValLUT[bin];
        const bool  isClamped = clamp < value;
        weight                = isClamped ? weight : pWeights[bin];
        const FLOAT count     = static_cast<FLOAT>(static_cast<UINT32>(rChannel.Data.pIData[bin])) * weight;
        weights += count;
        values = std::fma(count, isClamped ? clamp : value, values);
    }
    return values / std::max(weights, Epsilon);
}

}  // namespace

/// Where a value falls in a rising table.
struct CKIROStatsHistProcessor::PartialBin
{
    UINT32 index;
    FLOAT  fraction;  ///< share of the bin that lies above the value

    static PartialBin Find(const FLOAT* pValues, FLOAT target, UINT32 start, UINT32 end)
    {
        UINT32 bin = start;
        while (bin < end && !(pValues[bin] - target > -Epsilon))  // one comparison for "above it, or nearly the same"
        {
            ++bin;
        }
        if (bin >= end)
        {
            return {std::max(start, end), 1.0f};
        }
        if (std::abs(pValues[bin] - target) < Epsilon)
        {
            return {bin, 0.0f};
        }
        const FLOAT step = (bin == 0) ? pValues[0] : pValues[bin] - pValues[bin - 1];
        return {bin, (pValues[bin] - target) / step};
    }
};

CKIROStatsHistProcessor::CKIROStatsHistProcessor(IKIROContextManager& rContextManager)
    : m_rContextManager(rContextManager), m_procStats{}, m_processedChannelNum(0)
{
}

VOID CKIROStatsHistProcessor::SetProcStats(const KIROCntStatsOut* pStats, UINT32 count)
{
    for (UINT32 index = 0; index < count; ++index)
    {
        PreprocessCoreStats(pStats[index]);
    }
}

VOID CKIROStatsHistProcessor::ResetProcStats()
{
    // Rows of the cumulative table are written in full before they are read.
    std::fill(std::begin(m_procStats.pChannelName), std::end(m_procStats.pChannelName), nullptr);
    std::fill(std::begin(m_procStats.pRawStats), std::end(m_procStats.pRawStats), nullptr);
    std::fill(std::begin(m_procStats.bPercentileSet), std::end(m_procStats.bPercentileSet), FALSE);
    m_processedChannelNum = 0;
}

VOID CKIROStatsHistProcessor::PreprocessCoreStats(const KIROCntStatsOut& rStats)
{
    const KIROCoreChInfo& rChannel = rStats.channelData;
    const INT32           known    = FindProcStatsChannel(rChannel.pChannelName);
    if (known >= 0 && m_procStats.bPercentileSet[known] == TRUE)
    {
        return;
    }
    const CHAR* pName = (rChannel.pChannelName != nullptr) ? rChannel.pChannelName : "";
    if (rChannel.Data.pIData == nullptr || rChannel.pValLUT == nullptr)
    {
        STATS_LOG_ERROR("Histogram buffer missing for stats %s. Skip the stats.", pName);
        return;
    }
    const UINT32 binCount = rStats.resolution.binCount;
    if (binCount > HistBinCountMax || m_processedChannelNum == KIROStatsChannelCountMax)
    {
        STATS_LOG_ERROR("Histogram %s of %d bins refused, at most %d", pName, binCount, HistBinCountMax);
        return;
    }

    const UINT32 row   = m_processedChannelNum;
    FLOAT*       pRow  = m_procStats.percentile[row];
    FLOAT        total = 0.0f;
    for (UINT32 bin = 0; bin < binCount; ++bin)
    {
        total += static_cast<FLOAT>(static_cast<UINT32>(rChannel.Data.pIData[bin]));
        pRow[bin] = total;
    }
    DivideAll(pRow, binCount, std::max(total, 1.0f));
    m_procStats.bPercentileSet[row] = TRUE;
    m_procStats.pChannelName[row]   = rChannel.pChannelName;
    m_procStats.pRawStats[row]      = &rStats;
    ++m_processedChannelNum;
}

INT32 CKIROStatsHistProcessor::FindProcStatsChannel(const CHAR* pName) const
{
    for (UINT32 row = 0; pName != nullptr && row < m_processedChannelNum; ++row)
    {
        if (m_procStats.pChannelName[row] != nullptr && std::strcmp(m_procStats.pChannelName[row], pName) == 0)
        {
            return static_cast<INT32>(row);
        }
    }
    return ChannelNotFound;
}

INT32 CKIROStatsHistProcessor::ValidateInputParam(const CHAR* pName, const StartEndType* pRange) const
{
    if (pRange->end < pRange->start)
    {
        STATS_LOG_ERROR("start %1f should be smaller than end %f", pRange->start, pRange->end);
        return ChannelNotFound;
    }
    const INT32 row = FindProcStatsChannel(pName);
    if (row < 0 || m_procStats.bPercentileSet[row] != TRUE)
    {
        STATS_LOG_ERROR("Unable to find stats %s from buffer!", (pName != nullptr) ? pName : "");
        return ChannelNotFound;
    }
    return row;
}

KiroResult CKIROStatsHistProcessor::GetHistCDF(const CHAR* pStatsName, const StartEndType* pRange, FLOAT* pOutput)
{
    *pOutput        = 0.0f;
    const INT32 row = ValidateInputParam(pStatsName, pRange);
    if (row < 0)
    {
        return ResultFailed;
    }
    // Bin binCount is included: hosts size the buffer for one entry more, or the tuning keeps the end below.
    const KIROCntStatsOut& rStats = *m_procStats.pRawStats[row];
    const UINT32           last   = std::min(SaturateToUINT32(std::trunc(pRange->end)), rStats.resolution.binCount);
    for (UINT32 bin = 0; bin <= last; ++bin)
    {
        *pOutput += static_cast<FLOAT>(static_cast<UINT32>(rStats.channelData.Data.pIData[bin]));
    }
    return 0;
}

const FLOAT* CKIROStatsHistProcessor::WeightsOf(INT32 metHistID) const
{
    const DBMeter1DWeightPayload* pPayload = m_rContextManager.m_pBankManager->GetDataMetering1D(metHistID);
    if (pPayload == nullptr)
    {
        STATS_LOG_WARNING("no weighted table in ID %d; using 1.0 weights", metHistID);
        return UniformWeight.data();
    }
    STATS_LOG_TRACE("Using [1DMeteringWeightDataBank %d], description: %s", metHistID,
                    (pPayload->description != nullptr) ? pPayload->description : "");
    return pPayload->weights;
}

KiroResult CKIROStatsHistProcessor::GetHistWeightedLuma(const CHAR* pStatsName, const StartEndType* pRange,
                                                        INT32 metHistID, FLOAT& rWeightedLuma, FLOAT statsThreshold)
{
    rWeightedLuma   = 0.0f;
    const INT32 row = ValidateInputParam(pStatsName, pRange);
    if (row < 0)
    {
        return ResultFailed;
    }
    const KIROCntStatsOut& rStats   = *m_procStats.pRawStats[row];
    const UINT32           binCount = rStats.resolution.binCount;
    const FLOAT            bins     = static_cast<FLOAT>(binCount);
    const UINT32           start    = std::min(binCount, SaturateToUINT32(std::trunc(bins * pRange->start)));
    const UINT32           end      = std::min(binCount, SaturateToUINT32(std::trunc(bins * pRange->end)));

    const FLOAT* pWeights = WeightsOf(metHistID);
    if (start >= end)
    {
        return 0;
    }

    rWeightedLuma =
        WeightedMean(rStats.channelData, pWeights, start, end, ClampValue(rStats.resolution, statsThreshold));
    return 0;
}

FLOAT CKIROStatsHistProcessor::MeanLuma(const KIROCntStatsOut& rStats, const PartialBin& rFirst,
                                        const PartialBin& rLast, FLOAT clamp)
{
    const auto value   = [&](UINT32 bin) { return std::min(clamp, rStats.channelData.pValLUT[bin]); };
    const auto samples = [&](UINT32 bin)
    { return static_cast<FLOAT>(static_cast<UINT32>(rStats.channelData.Data.pIData[bin])); };

    // Both ends in one bin count that bin twice, once with each share; counting it once moves the mean.
    FLOAT counts = samples(rFirst.index) * rFirst.fraction;
    FLOAT sum    = value(rFirst.index) * counts;
    for (UINT32 bin = rFirst.index + 1; bin < rLast.index; ++bin)
    {
        counts += samples(bin);
        sum += samples(bin) * value(bin);
    }
    const FLOAT lastCount = samples(rLast.index) * (1.0f - rLast.fraction);
    counts += lastCount;
    sum += lastCount * value(rLast.index);
    return sum / std::max(counts, Epsilon);
}

KiroResult CKIROStatsHistProcessor::GetHistRangeLuma(const CHAR* pStatsName, const StartEndType* pRange,
                                                     KIROHistRangeType type, FLOAT* pOutputs, FLOAT statsThreshold)
{
    pOutputs[0]     = 0.0f;
    pOutputs[1]     = 0.0f;
    const INT32 row = ValidateInputParam(pStatsName, pRange);
    if (row < 0)
    {
        return ResultFailed;
    }
    if (type != HistRangeLuma && type != HistRangePercentile)
    {
        STATS_LOG_ERROR("Unexpected type:% d", type);
        return ResultFailed;
    }
    const KIROCntStatsOut& rStats      = *m_procStats.pRawStats[row];
    const FLOAT*           pPercentile = m_procStats.percentile[row];
    const UINT32           limit       = std::min(rStats.resolution.binCount, HistBinCountMax);
    if (limit == 0)
    {
        return 0;
    }

    const FLOAT* pTable = (type == HistRangeLuma) ? rStats.channelData.pValLUT : pPercentile;
    const FLOAT  high   = (type == HistRangeLuma) ? LumaMax : 1.0f;
    PartialBin   first  = PartialBin::Find(pTable, Clamp(pRange->start, high), 0, limit);
    PartialBin   last   = PartialBin::Find(pTable, Clamp(pRange->end, high), first.index, limit);
    first.index         = std::min(first.index, limit - 1);
    last.index          = std::min(last.index, limit - 1);

    pOutputs[0] = MeanLuma(rStats, first, last, ClampValue(rStats.resolution, statsThreshold));

    const bool isFromStart = std::abs(pRange->start - pRange->end) < Epsilon || std::abs(pRange->start) < Epsilon;
    pOutputs[1]            = isFromStart ? pPercentile[last.index] : pPercentile[last.index] - pPercentile[first.index];
    return 0;
}
