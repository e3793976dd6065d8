#include "core/base/ckirotrigger.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

#include "core/base/kirolog.h"
#include "interface/kiroresults.h"
#include "platform/tavoprocessors.h"

namespace
{

/// Zones are read by copy: the tree consists of records of many types.
template <typename Value> Value Read(const BYTE* pPlace)
{
    Value value;
    std::memcpy(&value, pPlace, sizeof(value));
    return value;
}

// The ends of a zone's range are read apart, each where it is compared.
FLOAT StartOf(const BYTE* pZone)
{
    return Read<FLOAT>(pZone + offsetof(StartEnd, start));
}

FLOAT EndOf(const BYTE* pZone)
{
    return Read<FLOAT>(pZone + offsetof(StartEnd, end));
}

FLOAT Weigh(FLOAT ratio, FLOAT start, FLOAT end)
{
    return std::fma(start, ratio, end * (1.0f - ratio));
}

/// Of one float and more. @return where they were written
TAVO_FOR_EACH_PROCESSOR
FLOAT* WeighFloats(FLOAT* pOut, const FLOAT* pStart, const FLOAT* pEnd, FLOAT ratio, INT count)
{
    *pOut = Weigh(ratio, *pStart, *pEnd);
    for (INT index = 1; index < count; ++index)
    {
        pOut[index] = Weigh(ratio, pStart[index], pEnd[index]);
    }
    return pOut;
}

}  // namespace

alignas(8) BYTE CKIRODataXML::s_buffer[ZeroRecordSize] = {};

CKIRODataXML::CKIRODataXML(KIROMLDataType type) : CKIRODataXML(type, sizeof(FLOAT))
{
}

CKIRODataXML::CKIRODataXML(KIROMLDataType type, INT recordSize)
    : m_interpDataIdx(0), m_coreDataSize(0), m_myDataType(type), m_recordSize(recordSize), m_interpDataSize(0),
      m_selectedZone(0), m_dimTriggerPoint{}, m_prevTriggerPoint(0.0f), m_subLevelTriggerCnt(0), m_triggerDimension(0),
      m_pXMLNodeData(nullptr)
{
}

CKIRODataXML::~CKIRODataXML() = default;

KiroResult CKIRODataXML::CreateInstance(CKIRODataXML*& rpInstance, KIROMLDataType type)
{
    rpInstance              = TavoNew<CKIRODataXML>(type).release();
    const KiroResult result = (rpInstance != nullptr) ? 0 : ResultOutOfMemory;
    STATS_LOG_ERROR("CKIRODataXML::CreateInstance result = %d", result);
    return result;
}

VOID CKIRODataXML::DestroyInstance()
{
    TavoPtr<CKIRODataXML> pThis(this);
}

VOID CKIRODataXML::SetData(VOID* pData, KIROMLDataType type)
{
    if (type != m_myDataType)
    {
        STATS_LOG_ERROR("expected %d received %d", m_myDataType, type);
        return;
    }
    if (pData == nullptr)
    {
        STATS_LOG_ERROR("no description of a trigger tree");
        return;
    }
    const AECTriggerXMLData& rData = *static_cast<const AECTriggerXMLData*>(pData);
    m_triggerDimension             = rData.config.triggerLevel;
    m_pXMLNodeData                 = static_cast<BYTE*>(rData.pData);
    m_coreDataSize                 = rData.config.coreDataSize;
    m_subLevelTriggerCnt           = rData.subLevelTriggerCnt;
    if (m_triggerDimension > LevelCountMax || m_coreDataSize < m_recordSize)
    {
        STATS_LOG_ERROR("trigger tree refused: %d levels, core record of %d bytes", m_triggerDimension, m_coreDataSize);
        m_pXMLNodeData = nullptr;
    }
    else if (m_pInterpData == nullptr)
    {
        m_interpDataSize = static_cast<size_t>(SlotCount) * static_cast<size_t>(m_coreDataSize);
        m_pInterpData    = TavoNewArray<BYTE>(m_interpDataSize);
    }
    m_selectedZone     = 0;
    m_prevTriggerPoint = std::numeric_limits<FLOAT>::lowest();
}

VOID* CKIRODataXML::GetData(FLOAT trigger1D, FLOAT trigger2D, FLOAT trigger3D)
{
    if (m_pXMLNodeData == nullptr)
    {
        STATS_LOG_ERROR("m_pXMLNodeData is NULL. Verify set data");
        return s_buffer;
    }
    m_interpDataIdx      = 0;
    m_dimTriggerPoint[0] = std::isnan(trigger1D) ? 0.0f : trigger1D;
    m_dimTriggerPoint[1] = std::isnan(trigger2D) ? 0.0f : trigger2D;
    m_dimTriggerPoint[2] = std::isnan(trigger3D) ? 0.0f : trigger3D;

    VOID* pResult = GetInterpData(0, m_dimTriggerPoint[0], m_prevTriggerPoint, m_subLevelTriggerCnt, m_pXMLNodeData);
    m_prevTriggerPoint = m_dimTriggerPoint[0];
    return (pResult != nullptr) ? pResult : s_buffer;
}

VOID* CKIRODataXML::GetInterpData(INT curDimension, FLOAT currValue, FLOAT prevValue, INT zoneCount, VOID* pTData)
{
    BYTE* pZones = static_cast<BYTE*>(pTData);
    if (zoneCount <= 0 || pZones == nullptr)
    {
        STATS_LOG_ERROR("trigger level %d has no zones: count %d, %p", curDimension + 1, zoneCount, pTData);
        return nullptr;
    }
    if (zoneCount == 1)
    {
        m_selectedZone = (curDimension == 0) ? 0 : m_selectedZone;
        return EvaluateZone<Level::Any>(curDimension, pZones);
    }
    return (curDimension <= 0) ? SearchFirstLevel(currValue, prevValue, zoneCount, pZones)
                               : SearchLevelBelow(curDimension, currValue, zoneCount, pZones);
}

inline bool CKIRODataXML::IsLastLevel(INT dimension) const
{
    return dimension >= m_triggerDimension - 1;
}

/// Bytes from zone to zone.
template <CKIRODataXML::Level At> inline ptrdiff_t CKIRODataXML::StrideOf(INT dimension) const
{
    const INT leafSize = m_ldNodeSize - static_cast<INT>(sizeof(VOID*)) + m_coreDataSize;
    return (At == Level::Last || IsLastLevel(dimension)) ? leafSize : m_nodeSize;
}

/// Only the first level remembers: below it the sub-array differs from zone to zone.
VOID* CKIRODataXML::SearchFirstLevel(FLOAT currValue, FLOAT prevValue, INT zoneCount, BYTE* pZones)
{
    if (currValue < StartOf(pZones))
    {
        m_selectedZone = 0;
        return EvaluateZone<Level::Any>(0, pZones);
    }
    BYTE* pLast = pZones + (zoneCount - 1) * StrideOf<Level::Any>(0);
    if (EndOf(pLast) <= currValue)
    {
        m_selectedZone = zoneCount - 1;
        return EvaluateZone<Level::Any>(0, pLast);
    }
    return (currValue >= prevValue) ? WalkFirstLevel<true>(currValue, m_selectedZone, zoneCount, pZones)
                                    : WalkFirstLevel<false>(currValue, m_selectedZone, zoneCount, pZones);
}

template <bool LeftToRight>
inline VOID* CKIRODataXML::WalkFirstLevel(FLOAT currValue, INT start, INT zoneCount, BYTE* pZones)
{
    // A start outside the array or a walk off its end leaves the zone before, and the memory as it was.
    constexpr INT   step     = LeftToRight ? 1 : -1;
    const ptrdiff_t stride   = StrideOf<Level::Any>(0);
    BYTE*           pVisited = pZones + std::clamp(start - step, 0, zoneCount - 1) * stride;
    for (INT index = start; index >= 0 && index < zoneCount; index += step)
    {
        BYTE* pZone = pZones + index * stride;
        if (LeftToRight ? currValue < StartOf(pZone) : currValue > EndOf(pZone))
        {
            m_selectedZone = index;
            return EvaluateGap<Level::Any, LeftToRight>(0, currValue, pVisited, pZone);
        }
        if (LeftToRight ? currValue < EndOf(pZone) : currValue > StartOf(pZone))
        {
            m_selectedZone = index;
            return EvaluateZone<Level::Any>(0, pZone);
        }
        pVisited = pZone;
    }
    return EvaluateZone<Level::Any>(0, pVisited);
}

inline VOID* CKIRODataXML::SearchLevelBelow(INT dimension, FLOAT currValue, INT zoneCount, BYTE* pZones)
{
    return IsLastLevel(dimension) ? SearchZones<Level::Last>(dimension, currValue, zoneCount, pZones)
                                  : SearchZones<Level::Any>(dimension, currValue, zoneCount, pZones);
}

template <CKIRODataXML::Level At>
VOID* CKIRODataXML::SearchZones(INT dimension, FLOAT currValue, INT zoneCount, BYTE* pZones)
{
    const ptrdiff_t stride = StrideOf<At>(dimension);
    BYTE*           pLast  = pZones + (zoneCount - 1) * stride;
    if (currValue < StartOf(pZones))
    {
        return EvaluateZone<At>(dimension, pZones);
    }
    if (EndOf(pLast) <= currValue)
    {
        return EvaluateZone<At>(dimension, pLast);
    }
    BYTE* pVisited = pZones;
    BYTE* pZone    = pZones;
    for (INT index = 0; index < zoneCount; ++index, pZone += stride)
    {
        if (currValue < StartOf(pZone))
        {
            return EvaluateGap<At, true>(dimension, currValue, pVisited, pZone);
        }
        if (currValue < EndOf(pZone))
        {
            return EvaluateZone<At>(dimension, pZone);
        }
        pVisited = pZone;
    }
    return EvaluateZone<At>(dimension, pVisited);
}

template <CKIRODataXML::Level At> inline VOID* CKIRODataXML::EvaluateZone(INT dimension, BYTE* pZone)
{
    while (At != Level::Last && !IsLastLevel(dimension))
    {
        ++dimension;
        const INT zoneCount = Read<INT32>(pZone + offsetof(AECTriggerNodeXML, subLevelTriggerCnt));
        BYTE*     pZones    = Read<BYTE*>(pZone + offsetof(AECTriggerNodeXML, pData));
        if (zoneCount < 1 || pZones == nullptr)
        {
            return GetInterpData(dimension, 0.0f, 0.0f, zoneCount, pZones);  // logs it
        }
        if (zoneCount > 1)
        {
            return SearchLevelBelow(dimension, m_dimTriggerPoint[dimension], zoneCount, pZones);
        }
        pZone = pZones;  // a single zone holds wherever the value lies
    }
    return pZone + sizeof(StartEnd);
}

template <CKIRODataXML::Level At, bool LeftToRight>
VOID* CKIRODataXML::EvaluateGap(INT dimension, FLOAT currValue, BYTE* pVisited, BYTE* pReached)
{
    // The division goes on while the levels below are evaluated.
    const FLOAT low   = EndOf(LeftToRight ? pVisited : pReached);
    const FLOAT high  = StartOf(LeftToRight ? pReached : pVisited);
    const FLOAT ratio = 1.0f - (currValue - low) / (high - low);

    VOID* pVisitedData  = EvaluateZone<At>(dimension, pVisited);
    VOID* pReachedData  = EvaluateZone<At>(dimension, pReached);
    VOID* pInterpolated = LeftToRight ? InterpCoreData(ratio, pVisitedData, pReachedData)
                                      : InterpCoreData(ratio, pReachedData, pVisitedData);
    return (pInterpolated != nullptr) ? pInterpolated : pVisitedData;
}

VOID CKIRODataXML::LogNull(const VOID* pStartData, const VOID* pEndData) const
{
    STATS_LOG_ERROR("Failed! pStartData = %p, pEndData = %p", pStartData, pEndData);
}

VOID CKIRODataXML::LogFull(INT stride) const
{
    STATS_LOG_ERROR("no room to interpolate: slot %d of %d bytes", m_interpDataIdx, stride);
}

FLOAT CKIRODataXML::Interp(FLOAT interpRatio, FLOAT start, FLOAT end)
{
    return Weigh(interpRatio, start, end);
}

VOID* CKIRODataXML::InterpFloats(FLOAT interpRatio, const VOID* pStartData, const VOID* pEndData, INT count, INT stride)
{
    if (!AreRecordsValid(pStartData, pEndData))
    {
        return nullptr;
    }
    FLOAT* pSlot = static_cast<FLOAT*>(NextSlot(stride));
    return (pSlot != nullptr) ? WeighFloats(pSlot, static_cast<const FLOAT*>(pStartData),
                                            static_cast<const FLOAT*>(pEndData), interpRatio, count)
                              : nullptr;
}

VOID* CKIRODataXML::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    return InterpFloats(pInterpRatio, pStartData, pEndData, 1, m_coreDataSize);
}
