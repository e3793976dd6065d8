/// @file
/// Two small grids of a frame, luma and saturation, kept beyond the frame: a flash compares frames.
#pragma once

#include <array>

#include "interface/kirostats.h"

class FlashStats
{
public:
    static constexpr UINT32 RegionCount  = 256;  ///< 16 x 16
    static constexpr UINT32 ChannelCount = 2;    ///< luma, 8 bits, and the share of clipped samples on that scale

    /// @param pLumaName, pSaturationName under which the grids are handed on, as tuning names them; must outlive this
    FlashStats(const CHAR* pLumaName, const CHAR* pSaturationName);
    FlashStats(const FlashStats&)            = delete;
    FlashStats& operator=(const FlashStats&) = delete;

    /// Keeps a frame's grids. @return false, with the old ones kept, if the frame does not have both
    bool Save(const KIROStatsList& rStats);

    /// The grids as channels, under the names of this object. They point into it.
    const KIROCntStatsOut* Channels() const
    {
        return m_channels.data();
    }

private:
    struct Grid
    {
        std::array<FLOAT, RegionCount> values;
    };

    std::array<Grid, ChannelCount>            m_grids;
    std::array<KIROCntStatsOut, ChannelCount> m_channels;
};

namespace flashstats
{

/// Channel of a list by name; null if there is none.
const KIROCntStatsOut* Find(const KIROStatsList& rStats, const CHAR* pName);

/// The statistics of a flash snapshot: a frame's channels but for those that the snapshot does not read, and the grids
/// without LED and under low LED. A list holds KIROStatsChannelCountMax channels; what does not fit is left out, the
/// frame's own last.
KIROStatsList Compose(const KIROStatsList& rFrame, const FlashStats& rOff, const FlashStats& rLow);

}  // namespace flashstats
