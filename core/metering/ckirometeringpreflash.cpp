// Whether the preflash must go on to be metered.

#include <algorithm>
#include <cstring>

#include "core/base/binarymask.h"
#include "core/base/kirolog.h"
#include "core/metering/ckiromodmetering.h"

namespace
{

constexpr INT32 NotFound = -1;

INT32 FindByName(const KIROCntStatsOut* pStats, UINT32 count, const CHAR* pName)
{
    for (UINT32 index = 0; pStats != nullptr && pName != nullptr && index < count; ++index)
    {
        const CHAR* pChannel = pStats[index].channelData.pChannelName;
        if (pChannel != nullptr && std::strcmp(pChannel, pName) == 0)
        {
            return static_cast<INT32>(index);
        }
    }
    return NotFound;
}

/// Regions that both channels of a pair have; none if one comes without values.
UINT32 RegionCount(const KIROCntStatsOut& rLevel, const KIROCntStatsOut& rSaturation)
{
    if (rLevel.channelData.Data.pFData == nullptr || rSaturation.channelData.Data.pFData == nullptr)
    {
        return 0;
    }
    return std::min(rLevel.resolution.width * rLevel.resolution.height,
                    rSaturation.resolution.width * rSaturation.resolution.height);
}

}  // namespace

BOOL CKIROMetering::IsPreflashMeteringNeeded(const KIROCntStatsOut* pOff, UINT32 offCount, const KIROCntStatsOut* pLow,
                                             UINT32 lowCount, const kiroflash::FlashStatsPreprocessingType* pTuning)
{
    const auto& rLevel      = pTuning->stopMeteringYLevel;
    const auto& rSaturation = pTuning->stopMeteringYSaturation;

    const INT32 offLevel      = FindByName(pOff, offCount, rLevel.statsNameOff);
    const INT32 offSaturation = FindByName(pOff, offCount, rSaturation.statsNameOff);
    if (offLevel == NotFound || offSaturation == NotFound)
    {
        STATS_LOG_ERROR("cannot find OFF stats level index %d or saturation index %d", offLevel, offSaturation);
        return TRUE;
    }
    STATS_LOG_TRACE("stats backup fID: %llu curr fID: %llu", m_preflashContext.fID, pOff[offLevel].frameID);
    if (pOff[offLevel].frameID != m_preflashContext.fID)
    {
        BuildLEDOffMask(pOff[offLevel], pOff[offSaturation], *pTuning);
    }

    const INT32 lowLevel      = FindByName(pLow, lowCount, rLevel.statsNameLow);
    const INT32 lowSaturation = FindByName(pLow, lowCount, rSaturation.statsNameLow);
    if (lowLevel == NotFound || lowSaturation == NotFound)
    {
        STATS_LOG_ERROR("cannot find LOW stats level index %d or saturation index %d", lowLevel, lowSaturation);
        return TRUE;
    }
    const FLOAT* pLevels     = pLow[lowLevel].channelData.Data.pFData;
    const FLOAT* pSaturation = pLow[lowSaturation].channelData.Data.pFData;
    const FLOAT  levelLimit  = rLevel.absoluteThreshold + rLevel.differenceThreshold;
    const FLOAT  satLimit    = rSaturation.absoluteThreshold + rSaturation.differenceThreshold;
    const UINT32 count       = std::min({RegionCount(pLow[lowLevel], pLow[lowSaturation]),
                                         RegionCount(pOff[offLevel], pOff[offSaturation]), binarymask::CellCount});
    for (UINT32 index = 0; index < count; ++index)
    {
        const bool wasDark = m_preflashContext.LEDOffDilatedBrightTable[index] == binarymask::Clear;
        if (wasDark && (pSaturation[index] > satLimit || pLevels[index] > levelLimit))
        {
            return TRUE;
        }
    }
    return FALSE;
}

VOID CKIROMetering::BuildLEDOffMask(const KIROCntStatsOut& rLevel, const KIROCntStatsOut& rSaturation,
                                    const kiroflash::FlashStatsPreprocessingType& rTuning)
{
    INT32* pMask = m_preflashContext.LEDOffDilatedBrightTable;
    std::fill_n(pMask, binarymask::CellCount, binarymask::Clear);
    const UINT32 count = std::min(RegionCount(rLevel, rSaturation), binarymask::CellCount);
    for (UINT32 index = 0; index < count; ++index)
    {
        const bool isBright =
            rLevel.channelData.Data.pFData[index] > rTuning.stopMeteringYLevel.absoluteThreshold ||
            rSaturation.channelData.Data.pFData[index] > rTuning.stopMeteringYSaturation.absoluteThreshold;
        pMask[index] = isBright ? binarymask::Set : binarymask::Clear;
    }
    binarymask::UtilDilateBinaryMask(pMask);
}
