/// Weighted means of any tables and regions over any grids, frame by frame: walked together, each has the bits that it
/// has alone.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/base/kirolog.h"
#include "core/statsprocessor/weightedwalks.h"
#include "host/discardlog.h"

namespace
{

constexpr UINT32 TableMax   = 48;  ///< more than share a walk
constexpr UINT32 FrameMax   = 8;
constexpr UINT32 RequestMax = 64;
constexpr UINT32 ColumnMax  = 80;
constexpr UINT32 RowMax     = 60;  ///< some grids have more regions than walks cover
constexpr FLOAT  FullScale  = 255.0f;

/// Takes an input apart; zeros behind its end.
class Choices
{
public:
    Choices(const BYTE* pData, size_t size) : m_pData(pData), m_size(size)
    {
    }

    bool AreLeft() const
    {
        return m_position < m_size;
    }

    template <typename T> T Take()
    {
        T            value{};
        const size_t count = std::min(sizeof(value), m_size - m_position);
        std::memcpy(&value, m_pData + m_position, count);
        m_position += count;
        return value;
    }

    UINT32 UpTo(UINT32 last)
    {
        return Take<BYTE>() % (last + 1);
    }

    /// A share of a scale, or now and then any number at all.
    FLOAT Number(FLOAT scale)
    {
        const BYTE choice = Take<BYTE>();
        return (choice == 255) ? Take<FLOAT>() : scale * static_cast<FLOAT>(choice) / 254.0f;
    }

private:
    const BYTE* m_pData;
    size_t      m_size;
    size_t      m_position = 0;
};

using Table = std::vector<FLOAT>;

Table MakeTable(Choices& rChoices)
{
    Table       table(CKIRO2DMetIterator::TableSize);
    const FLOAT first = rChoices.Number(4.0f);
    const FLOAT step  = rChoices.Number(1.0f);
    if (rChoices.UpTo(3) == 0)
    {
        return Table(CKIRO2DMetIterator::TableSize, 1.0f);
    }
    for (size_t entry = 0; entry < table.size(); ++entry)
    {
        table[entry] = first + step * static_cast<FLOAT>(entry % 13);
    }
    table[rChoices.Take<BYTE>()] = (rChoices.UpTo(3) == 0) ? CKIRO2DMetIterator::NoWeight : rChoices.Number(2.0f);
    return table;
}

AECAlgoROI MakeROI(Choices& rChoices)
{
    const auto number = [&rChoices](FLOAT low, FLOAT high)
    { return low + (high - low) * static_cast<FLOAT>(rChoices.Take<BYTE>()) / 255.0f; };
    AECAlgoROI roi = FullFrameROI;
    if (rChoices.UpTo(1) == 1)
    {
        roi.x  = number(0.0f, 1.0f);
        roi.y  = number(0.0f, 1.0f);
        roi.dx = number(0.0f, 1.0f - roi.x);
        roi.dy = number(0.0f, 1.0f - roi.y);
    }
    return roi;
}

CKIROWeightedWalk::Sums WalkAlone(const CKIROGridIterator& rRegions, CKIRO2DMetIterator& rWeights, const FLOAT* pValues,
                                  FLOAT clamp)
{
    CKIROWeightedWalk::Sums sums = {0.0f, 0.0f};
    rRegions.ForEachRegion(
        [&](UINT32 region)
        {
            const FLOAT weight = rWeights.GetWeight(region);
            if (weight != CKIRO2DMetIterator::NoWeight)
            {
                sums.weights += weight;
                sums.weighted = std::fma(weight, std::min(pValues[region], clamp), sums.weighted);
            }
        });
    return sums;
}

/// Of several NaN, any may be what a sum keeps.
bool AreSame(FLOAT first, FLOAT second)
{
    return std::bit_cast<UINT32>(first) == std::bit_cast<UINT32>(second) || (std::isnan(first) && std::isnan(second));
}

/// A grid under measures that share walks.
class Measures
{
public:
    explicit Measures(Choices& rChoices)
        : m_rChoices(rChoices), m_width(1 + rChoices.UpTo(ColumnMax - 1)), m_height(1 + rChoices.UpTo(RowMax - 1)),
          m_values(static_cast<size_t>(m_width) * m_height), m_rois{MakeROI(rChoices), MakeROI(rChoices)},
          m_clamps{FullScale, rChoices.Number(FullScale)}
    {
        for (UINT32 table = 1 + rChoices.UpTo(TableMax - 1); table > 0; --table)
        {
            m_tables.push_back(MakeTable(rChoices));
        }
        m_stats.resolution              = {m_width, m_height, 0, 8};
        m_stats.channelData.Data.pFData = m_values.data();
        m_regions.SetStats(&m_stats);
    }

    VOID RunFrame()
    {
        const FLOAT scale    = m_rChoices.Number(FullScale);
        const bool  areWhole = m_rChoices.UpTo(1) == 0;
        for (size_t region = 0; region < m_values.size(); ++region)
        {
            const FLOAT value = scale * static_cast<FLOAT>(region * 7919 % 251) / 128.0f;
            m_values[region]  = areWhole ? std::floor(value / 2.0f) : value;
        }
        m_values[m_rChoices.Take<UINT16>() % m_values.size()] = m_rChoices.Number(FullScale);
        m_walks.BeginFrame();
        for (UINT32 request = m_rChoices.UpTo(RequestMax); request > 0; --request)
        {
            const BYTE choice = m_rChoices.Take<BYTE>();
            Ask(m_tables[(request + choice / 64) % m_tables.size()], choice % 2, choice / 2 % 2);
        }
    }

private:
    VOID Ask(const Table& rTable, UINT32 roi, UINT32 clamp)
    {
        const AECAlgoROI&   rROI         = m_rois[roi];
        KIROSubsamplingInfo noTile       = {nullptr, 0, 0};
        const bool          isConfigured = m_regions.Configure({&noTile, &rROI}, TRUE) == TRUE &&
                                  m_weights.Configure(m_width, m_height, rROI, rTable.data(), TRUE) == TRUE;
        if (!isConfigured || std::isnan(m_clamps[clamp]))
        {
            return;
        }
        const WeightedWalkKey key    = {0, m_stats.resolution, rROI, m_clamps[clamp]};
        const auto            alone  = WalkAlone(m_regions, m_weights, m_values.data(), key.clamp);
        const auto            shared = m_walks.Measure(key, m_weights, m_values.data());
        if (!shared.has_value())
        {
            m_walks.Add(key, m_regions, m_weights, alone.weights);
        }
        else if (!AreSame(shared->weighted, alone.weighted) || !AreSame(shared->weights, alone.weights))
        {
            std::abort();
        }
    }

    Choices&           m_rChoices;
    const UINT32       m_width;
    const UINT32       m_height;
    std::vector<FLOAT> m_values;
    AECAlgoROI         m_rois[2];
    FLOAT              m_clamps[2];
    std::vector<Table> m_tables;
    KIROCntStatsOut    m_stats{};
    CKIROGridIterator  m_regions;
    CKIRO2DMetIterator m_weights;
    CKIROWeightedWalks m_walks;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    kirolog::SharedLogger().store(DiscardLog);
    Choices  choices(pData, size);
    Measures measures(choices);
    for (UINT32 frame = 0; frame < FrameMax && choices.AreLeft(); ++frame)
    {
        measures.RunFrame();
    }
    return 0;
}
