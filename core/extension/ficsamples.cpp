// The samples, kept in the order that KIROFICInfo says.

#include <algorithm>
#include <limits>

#include "core/base/kirolog.h"
#include "core/extension/cficmanager.h"

namespace
{

UINT16 SaturateToUINT16(INT32 value)
{
    return static_cast<UINT16>(std::clamp<INT32>(value, 0, std::numeric_limits<UINT16>::max()));
}

KIROFICRawData SampleOf(const KIROFICFlashRegionsInfo& rFlash, UINT8 zone)
{
    return {SaturateToUINT16(rFlash.LED1), SaturateToUINT16(rFlash.LED2), rFlash.targetRG, rFlash.targetBG, zone};
}

/// Whether a flash adds to the zone between two tuning points. LED 1 descends from point to point.
bool IsInZone(const KIROFICFlashRegionsInfo& rFlash, const KIROFICCalTuningPoints& rPoints, UINT8 zone)
{
    return rFlash.isValid == TRUE && zone + 1 < rPoints.numPoints && rFlash.LED1 < rPoints.point[zone].LED1 &&
           rFlash.LED1 >= rPoints.point[zone + 1].LED1;
}

/// Copies samples zone by zone. A blob of the host may count more samples than it has: what is not there is not
/// carried over.
class SampleRewriter
{
public:
    SampleRewriter(const KIROFICRawData* pOld, UINT32 oldCount, KIROFICRawData* pNew, INT32 maxZoneCount)
        : m_pOld(pOld), m_oldCount(oldCount), m_pNew(pNew), m_maxZoneCount(maxZoneCount)
    {
    }

    /// Carries the next samples over, with a new one at their end.
    /// @param rZoneCount samples of the zone, before and after
    /// @param pSample    null for none
    VOID RewriteZone(UINT16& rZoneCount, const KIROFICRawData* pSample)
    {
        UINT32       count = std::min<UINT32>(rZoneCount, m_oldCount - m_position);
        const UINT32 next  = m_position + count;
        if (pSample != nullptr && !HasRoom(count))
        {
            if (count == 0)
            {
                STATS_LOG_ERROR("AECCoreInline: no room for a sample of zone %d", pSample->zoneIdx);
                pSample = nullptr;
            }
            else
            {
                ++m_position;
                --count;
            }
        }
        std::copy_n(m_pOld + m_position, count, m_pNew + m_newCount);
        m_newCount += count;
        m_position = next;
        if (pSample != nullptr)
        {
            m_pNew[m_newCount] = *pSample;
            ++m_newCount;
            ++count;
        }
        rZoneCount = static_cast<UINT16>(count);
    }

    UINT32 NewCount() const
    {
        return m_newCount;
    }

private:
    /// @return whether a zone of this many samples may grow, with all that is still to be carried over
    bool HasRoom(UINT32 zoneCount) const
    {
        return static_cast<INT64>(zoneCount) < m_maxZoneCount &&
               m_newCount + (m_oldCount - m_position) < KIROFICRawDataCountMax;
    }

    const KIROFICRawData* m_pOld;
    UINT32                m_oldCount;
    KIROFICRawData*       m_pNew;
    INT32                 m_maxZoneCount;
    UINT32                m_position = 0;  ///< of the next old sample
    UINT32                m_newCount = 0;
};

}  // namespace

VOID CFICManager::StoreFICRawData()
{
    SampleRewriter rewriter(m_ficInfo.rawData, m_ficInfo.rawDataCount, m_backup, m_maxZoneCnt);
    const auto     rewriteZone =
        [&](UINT8 zone, UINT16& rCount, const KIROFICFlashRegionsInfo& rFlash, const KIROFICCalTuningPoints& rPoints)
    {
        const KIROFICRawData sample = SampleOf(rFlash, zone);
        rewriter.RewriteZone(rCount, IsInZone(rFlash, rPoints, zone) ? &sample : nullptr);
    };
    for (UINT8 zone = 0; zone < m_ficInfo.numOfZones; ++zone)
    {
        rewriteZone(zone, m_ficInfo.zoneData[zone].zoneCntLow, m_preflashInfo, m_LEDTuneCalInfoLow.tuningInfo);
    }
    for (UINT8 zone = 0; zone < m_ficInfo.numOfZones; ++zone)
    {
        rewriteZone(zone, m_ficInfo.zoneData[zone].zoneCntHigh, m_fullflashInfo, m_LEDTuneCalInfoHigh.tuningInfo);
    }

    m_ficInfo.rawDataCount = static_cast<UINT16>(rewriter.NewCount());
    std::copy_n(m_backup, m_ficInfo.rawDataCount, m_ficInfo.rawData);
    for (UINT32 i = 0; i < m_ficInfo.rawDataCount; ++i)
    {
        const KIROFICRawData& rSample = m_ficInfo.rawData[i];
        STATS_LOG_TRACE("AECCoreInline: Raw data - idx %d : LED1 %d, LED2 %d, RG %f, BG %f, zoneIdx %d", i,
                        rSample.led1Setting, rSample.led2Setting, rSample.rgRatio, rSample.bgRatio, rSample.zoneIdx);
    }
}
