#include "core/statsprocessor/ckirohistiterator.h"

#include "core/statsprocessor/notmeasured.h"

CKIROHistIterator::CKIROHistIterator() : m_pStats(nullptr), m_estNumOfRegions(0), m_currentIndex(0), m_histData{}
{
}

BOOL CKIROHistIterator::Configure()
{
    if (m_pStats == nullptr)
    {
        return FALSE;
    }
    m_estNumOfRegions = m_pStats->resolution.binCount;
    m_currentIndex    = 0;
    return TRUE;
}

BOOL CKIROHistIterator::HasNext()
{
    return (m_currentIndex < m_estNumOfRegions) ? TRUE : FALSE;
}

FLOAT CKIROHistIterator::NextGridData()
{
    return NotMeasured;
}

KIROHistData* CKIROHistIterator::NextHistData()
{
    ++m_currentIndex;
    const UINT32 bin    = (m_currentIndex < m_estNumOfRegions) ? m_currentIndex : 0;
    m_histData.binCount = static_cast<UINT32>(m_pStats->channelData.Data.pIData[bin]);
    m_histData.binValue = m_pStats->channelData.pValLUT[bin];
    return &m_histData;
}

UINT32 CKIROHistIterator::GetTotalNumOfRegions()
{
    return m_estNumOfRegions;
}
