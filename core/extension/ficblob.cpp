// What has been learned, as the host keeps it between sessions: interface/kirofic.h has the layout.

#include <bit>

#include "core/base/kirolog.h"
#include "core/extension/cficmanager.h"

namespace
{

constexpr UINT32 HeaderSize    = sizeof(KIROFICBlobHead);
constexpr UINT32 SampleSize    = 16;
constexpr UINT32 KneeSize      = 24;
constexpr UINT32 ZoneSize      = 4;
constexpr UINT32 ReservedBytes = 3;

class BlobWriter
{
public:
    explicit BlobWriter(BYTE* pBytes) : m_pBytes(pBytes)
    {
    }

    VOID Put(UINT32 value, UINT32 size)
    {
        for (UINT32 i = 0; i < size; ++i)
        {
            *m_pBytes++ = static_cast<BYTE>(value >> (8 * i));
        }
    }

    VOID Put(FLOAT value)
    {
        Put(std::bit_cast<UINT32>(value), sizeof(value));
    }

private:
    BYTE* m_pBytes;
};

class BlobReader
{
public:
    explicit BlobReader(const BYTE* pBytes) : m_pBytes(pBytes)
    {
    }

    UINT8 Byte()
    {
        return *m_pBytes++;
    }

    UINT16 Word()
    {
        const UINT32 low = Byte();
        return static_cast<UINT16>(low | static_cast<UINT32>(Byte()) << 8);
    }

    UINT32 Long()
    {
        const UINT32 low = Word();
        return low | static_cast<UINT32>(Word()) << 16;
    }

    FLOAT Float()
    {
        return std::bit_cast<FLOAT>(Long());
    }

    VOID Skip(UINT32 bytes)
    {
        m_pBytes += bytes;
    }

private:
    const BYTE* m_pBytes;
};

UINT32 SizeOfKneesAndZones(UINT32 knees, UINT32 zones)
{
    return KneeSize * knees + ZoneSize * zones;
}

/// @return whether the blob can be taken; the reason is logged if not
bool IsUsable(UINT16 samples, UINT8 knees, UINT8 zones, const KIROFICInfo& rInfo)
{
    if (samples > KIROFICRawDataCountMax)
    {
        STATS_LOG_ERROR("AECCoreInline: %d samples exceed %d, inline calibration info is refused", samples,
                        KIROFICRawDataCountMax);
        return false;
    }
    // Knees and zones are read in the number of this instance: a blob of a smaller table ends before that.
    if (SizeOfKneesAndZones(knees, zones) < SizeOfKneesAndZones(rInfo.numOfKnees, rInfo.numOfZones))
    {
        STATS_LOG_ERROR("AECCoreInline: %d knees and %d zones, expected %d and %d, inline calibration info is refused",
                        knees, zones, rInfo.numOfKnees, rInfo.numOfZones);
        return false;
    }
    return true;
}

}  // namespace

KiroResult CFICManager::SetFICData(const VOID* pFICData)
{
    const BOOL bIsFICMode = m_rContext.GetInput()->bIsFICMode;
    if (bIsFICMode == FALSE || pFICData == nullptr)
    {
        STATS_LOG_ERROR("AECCoreInline: not setting inline calibration info. pFICData: %p, DynamicInlineCalibration "
                        "mode : %d",
                        pFICData, bIsFICMode);
        return 1;
    }
    STATS_LOG_TRACE("AECCoreInline: setting inline calibration info");
    BlobReader   reader(static_cast<const BYTE*>(pFICData));
    const UINT16 samples = reader.Word();
    const UINT8  knees   = reader.Byte();
    const UINT8  zones   = reader.Byte();
    if (samples == 0)
    {
        STATS_LOG_TRACE("AECCoreInline: no input inline calibration information");
        return 0;
    }
    if (!IsUsable(samples, knees, zones, m_ficInfo))
    {
        return 1;
    }

    m_ficInfo.rawDataCount = samples;
    for (UINT32 i = 0; i < samples; ++i)
    {
        m_ficInfo.rawData[i] = {reader.Word(), reader.Word(), reader.Float(), reader.Float(), reader.Byte()};
        reader.Skip(ReservedBytes);
    }
    for (UINT32 i = 0; i < m_ficInfo.numOfKnees; ++i)
    {
        KIROFICKneeData& rKnee = m_ficInfo.kneeData[i];
        rKnee                  = {reader.Float(), reader.Float(), reader.Float(), reader.Float(), {}, {}};
        rKnee.confLEDLow       = static_cast<KIROFICConfType>(reader.Long());
        rKnee.confLEDHigh      = static_cast<KIROFICConfType>(reader.Long());
    }
    for (UINT32 i = 0; i < m_ficInfo.numOfZones; ++i)
    {
        m_ficInfo.zoneData[i] = {reader.Word(), reader.Word()};
    }
    LogFICData();
    return 0;
}

VOID CFICManager::LogFICData() const
{
    for (UINT32 i = 0; i < m_ficInfo.rawDataCount; ++i)
    {
        const KIROFICRawData& rSample = m_ficInfo.rawData[i];
        STATS_LOG_TRACE("AECCoreInline: Set raw data - idx %d : LED1 %d, LED2 %d, RG %f, BG %f, zoneIdx %d", i,
                        rSample.led1Setting, rSample.led2Setting, rSample.rgRatio, rSample.bgRatio, rSample.zoneIdx);
    }
    for (UINT32 i = 0; i < m_ficInfo.numOfKnees; ++i)
    {
        const KIROFICKneeData& rKnee = m_ficInfo.kneeData[i];
        STATS_LOG_TRACE("AECCoreInline: Set knee data - idx %d : low RG %f, BG %f, conf %d, high RG %f, BG %f, conf %d",
                        i, rKnee.rgRatioLow, rKnee.bgRatioLow, rKnee.confLEDLow, rKnee.rgRatioHigh, rKnee.bgRatioHigh,
                        rKnee.confLEDHigh);
    }
    for (UINT32 i = 0; i < m_ficInfo.numOfZones; ++i)
    {
        const KIROFICZoneData& rZone = m_ficInfo.zoneData[i];
        STATS_LOG_TRACE("AECCoreInline: Set zone data - idx %d : low count %d, high count %d", i, rZone.zoneCntLow,
                        rZone.zoneCntHigh);
    }
}

UINT32 CFICManager::GetFICData(VOID* pFICData) const
{
    const UINT32 size = HeaderSize + SampleSize * m_ficInfo.rawDataCount +
                        SizeOfKneesAndZones(m_ficInfo.numOfKnees, m_ficInfo.numOfZones);
    if (pFICData == nullptr)
    {
        return size;
    }
    BlobWriter writer(static_cast<BYTE*>(pFICData));
    writer.Put(m_ficInfo.rawDataCount, 2);
    writer.Put(m_ficInfo.numOfKnees, 1);
    writer.Put(m_ficInfo.numOfZones, 1);
    for (UINT32 i = 0; i < m_ficInfo.rawDataCount; ++i)
    {
        const KIROFICRawData& rSample = m_ficInfo.rawData[i];
        writer.Put(rSample.led1Setting, 2);
        writer.Put(rSample.led2Setting, 2);
        writer.Put(rSample.rgRatio);
        writer.Put(rSample.bgRatio);
        writer.Put(rSample.zoneIdx, 1);
        writer.Put(0, ReservedBytes);
    }
    for (UINT32 i = 0; i < m_ficInfo.numOfKnees; ++i)
    {
        const KIROFICKneeData& rKnee = m_ficInfo.kneeData[i];
        for (const FLOAT ratio : {rKnee.rgRatioLow, rKnee.bgRatioLow, rKnee.rgRatioHigh, rKnee.bgRatioHigh})
        {
            writer.Put(ratio);
        }
        writer.Put(static_cast<UINT32>(rKnee.confLEDLow), 4);
        writer.Put(static_cast<UINT32>(rKnee.confLEDHigh), 4);
    }
    for (UINT32 i = 0; i < m_ficInfo.numOfZones; ++i)
    {
        writer.Put(m_ficInfo.zoneData[i].zoneCntLow, 2);
        writer.Put(m_ficInfo.zoneData[i].zoneCntHigh, 2);
    }
    return size;
}
