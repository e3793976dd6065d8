#include "core/arbitration/arbitrationmemo.h"

#include <bit>

#include "core/arbitration/arbitrationutils.h"
#include "core/base/exposurearithmetic.h"

namespace
{

bool AreSameBits(FLOAT one, FLOAT other)
{
    return std::bit_cast<UINT32>(one) == std::bit_cast<UINT32>(other);
}

bool IsSameKnee(const kirodbarbitrationtable::ExposureKneeType& rOne,
                const kirodbarbitrationtable::ExposureKneeType& rOther)
{
    return AreSameBits(rOne.gain, rOther.gain) && rOne.time == rOther.time;
}

/// Of what the exposure of a bound, and its index, are worked out.
bool IsSameBound(const KIROExposureSetType& rOne, const KIROExposureSetType& rOther)
{
    return AreSameBits(rOne.gain, rOther.gain) && rOne.time == rOther.time && AreSameBits(rOne.corr, rOther.corr) &&
           rOne.exposure == rOther.exposure;
}

bool IsZero(FLOAT gain, UINT64 time, FLOAT corr)
{
    return exposurearithmetic::IsProductZero(exposurearithmetic::Product(gain, time, corr));
}

}  // namespace

const KIROExposureSetType* SplitMemo::Find(const TableSegment& rSegment, FLOAT correction,
                                           UINT64 indexZeroExposure) const
{
    const bool isSame = m_isKept && rSegment.target == m_segment.target && rSegment.priority == m_segment.priority &&
                        IsSameKnee(rSegment.start, m_segment.start) && IsSameKnee(rSegment.end, m_segment.end) &&
                        AreSameBits(correction, m_correction) && indexZeroExposure == m_indexZeroExposure;
    return isSame ? &m_split : nullptr;
}

VOID SplitMemo::Keep(const TableSegment& rSegment, FLOAT correction, UINT64 indexZeroExposure,
                     const KIROExposureSetType& rSplit)
{
    m_isKept =
        !IsZero(rSplit.gain, rSplit.time, correction) && !IsZero(rSegment.start.gain, rSegment.start.time, correction);
    m_segment           = rSegment;
    m_correction        = correction;
    m_indexZeroExposure = indexZeroExposure;
    m_split             = rSplit;
}

bool LimitsMemo::IsSame(const KIROExposureRange& rRange, UINT64 indexZeroExposure) const
{
    return m_isKept && indexZeroExposure == m_indexZeroExposure && IsSameBound(rRange.start, m_range.start) &&
           IsSameBound(rRange.end, m_range.end);
}

VOID LimitsMemo::Update(KIROExposureRange* pR, UINT64 indexZeroExposure)
{
    if (!IsSame(*pR, indexZeroExposure))
    {
        m_range             = *pR;
        m_indexZeroExposure = indexZeroExposure;
        UtilUpdateExposureAndIndexLimits(pR, indexZeroExposure);
        m_updated = *pR;
        // An end that had to be raised to the start has been logged.
        m_isKept = m_updated.start.exposure < m_updated.end.exposure &&
                   !IsZero(m_range.start.gain, m_range.start.time, m_range.start.corr) &&
                   !IsZero(m_range.end.gain, m_range.end.time, m_range.end.corr);
        return;
    }
    pR->start.exposure = m_updated.start.exposure;
    pR->start.indx     = m_updated.start.indx;
    pR->end.exposure   = m_updated.end.exposure;
    pR->end.indx       = m_updated.end.indx;
}
