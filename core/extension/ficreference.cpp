// The cells that are neutral before flash.

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/extension/cficmanager.h"
#include "core/statsprocessor/ckiromodstatsprocessor.h"

using exposurearithmetic::SaturateToINT32;

namespace
{

/// First and last cell of the central window along one side of the grid.
struct Window
{
    INT32 first;
    INT32 last;
};

Window CentralWindow(UINT32 size, FLOAT share)
{
    const INT32 middle = static_cast<INT32>(size / 2);
    const INT32 cells  = static_cast<INT32>(size);
    const FLOAT half   = static_cast<FLOAT>(size) * share * 0.5f;
    // Twice the size is beyond the grid already, so it bounds the sums below.
    const INT32 before = std::clamp(SaturateToINT32(half + 0.5f), -2 * cells, 2 * cells);
    const INT32 after  = std::clamp(SaturateToINT32(half - 0.5f), -2 * cells, 2 * cells);
    return {std::max(middle - before, 0), std::min(middle + after, cells - 1)};
}

bool IsNear(FLOAT value, FLOAT centre, FLOAT range)
{
    return value >= centre - range && value <= centre + range;
}

/// @return the channel, null if it is missing or larger than the working space
const KIROCntStatsOut* FindGrid(const CKIROStatsProcessor* pStats, const CHAR* pChannel)
{
    const KIROCntStatsOut* pGrid =
        (pStats != nullptr) ? pStats->GetRawStats(pChannel, kiroglobalelements::KIROStatsGrid) : nullptr;
    if (pGrid == nullptr || pGrid->channelData.Data.pFData == nullptr)
    {
        return nullptr;
    }
    const UINT64 cells = static_cast<UINT64>(pGrid->resolution.width) * pGrid->resolution.height;
    return (cells <= KIROFICGridCellCountMax) ? pGrid : nullptr;
}

}  // namespace

VOID CFICManager::GetReferenceRegionsInfo()
{
    m_skipProcess   = FALSE;
    m_refRegInfo    = {};
    m_preflashInfo  = {};
    m_fullflashInfo = {};
    m_rgbg          = {};
    if (!SetReferenceColour() || GetRgBgStats() != 0)
    {
        STATS_LOG_ERROR("AECCoreInline: No reference regions. Skip process");
        m_skipProcess = TRUE;
        return;
    }
    CollectReferenceRegions();
    const INT64 regions = m_refRegInfo.numRegions;
    m_skipProcess       = (regions < m_validRefCnt) ? TRUE : FALSE;
    STATS_LOG_TRACE("AECCoreInline: m_validRefCnt %d, Skip process %d", m_validRefCnt, m_skipProcess);
}

/// Neutral is what the white balance turns grey. @return false without a white balance
bool CFICManager::SetReferenceColour()
{
    const AECAlgoWhiteBalanceState& rGains = m_wbFlashOff;
    if (!(rGains.redGain > 0.0f && rGains.greenGain > 0.0f && rGains.blueGain > 0.0f))
    {
        return false;
    }
    m_refRegInfo.refRG = rGains.greenGain / rGains.redGain;
    m_refRegInfo.refBG = rGains.greenGain / rGains.blueGain;
    STATS_LOG_TRACE("AECCoreInline: refRG %f, refBG %f", m_refRegInfo.refRG, m_refRegInfo.refBG);
    return true;
}

VOID CFICManager::CollectReferenceRegions()
{
    m_refRegInfo.width   = m_rgbg.width;
    m_refRegInfo.height  = m_rgbg.height;
    const Window columns = CentralWindow(m_rgbg.width, m_refRegionPercent);
    const Window rows    = CentralWindow(m_rgbg.height, m_refRegionPercent);
    for (INT32 row = rows.first; row <= rows.last; ++row)
    {
        for (INT32 column = columns.first; column <= columns.last; ++column)
        {
            const UINT32 cell = static_cast<UINT32>(row) * m_rgbg.width + static_cast<UINT32>(column);
            if (IsNear(m_rgbg.rg[cell], m_refRegInfo.refRG, m_refRange) &&
                IsNear(m_rgbg.bg[cell], m_refRegInfo.refBG, m_refRange))
            {
                m_refRegInfo.regionIdx[m_refRegInfo.numRegions] = cell;
                ++m_refRegInfo.numRegions;
            }
        }
    }
}

/// Copies the colours of the frame's grid. @return 0, or 1 with the last frame's colours kept
KiroResult CFICManager::GetRgBgStats()
{
    const KIROCntStatsOut* pRG = FindGrid(m_rContext.m_pStatsProcessor, "gridRGratio");
    if (pRG == nullptr)
    {
        STATS_LOG_ERROR("could not get grid rg ratio stats");
        return 1;
    }
    const UINT32           width  = pRG->resolution.width;
    const UINT32           height = pRG->resolution.height;
    const KIROCntStatsOut* pBG    = FindGrid(m_rContext.m_pStatsProcessor, "gridBGratio");
    if (pBG == nullptr || pBG->resolution.width != width || pBG->resolution.height != height)
    {
        STATS_LOG_ERROR("could not get grid bg ratio stats");
        return 1;
    }
    m_rgbg.width  = width;
    m_rgbg.height = height;
    std::copy_n(pRG->channelData.Data.pFData, width * height, m_rgbg.rg);
    std::copy_n(pBG->channelData.Data.pFData, width * height, m_rgbg.bg);
    return 0;
}
