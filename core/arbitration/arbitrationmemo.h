/// @file
/// What arbitration has worked out last, as long as it is asked for the same: ranges mostly stay from frame to frame,
/// and the exposures of a settled camera do too. Comparing waits for nothing, other than a chain of conversions,
/// divisions and logarithms. What logs is not kept, so that it logs each time.
#pragma once

#include "interface/kiroexposure.h"
#include "schema/kirodbarbitrationtable.h"

/// The piece of a table, or between the table and the range, on which an exposure lies.
struct TableSegment
{
    kirodbarbitrationtable::ExposureKneeType    start;
    kirodbarbitrationtable::ExposureKneeType    end;
    kirodbarbitrationtable::ExposureIncPrioType priority;
    UINT64                                      target;  ///< the exposure to reach
};

/// An exposure split along a segment.
class SplitMemo
{
public:
    /// @return null unless the last split that was kept is of the same bits
    const KIROExposureSetType* Find(const TableSegment& rSegment, FLOAT correction, UINT64 indexZeroExposure) const;

    /// Forgets the one before, whether or not this one can be kept.
    VOID Keep(const TableSegment& rSegment, FLOAT correction, UINT64 indexZeroExposure,
              const KIROExposureSetType& rSplit);

private:
    bool                m_isKept            = false;
    TableSegment        m_segment           = {};
    FLOAT               m_correction        = 0.0f;
    UINT64              m_indexZeroExposure = 0;
    KIROExposureSetType m_split             = {};
};

/// The exposures and indices of a range.
class LimitsMemo
{
public:
    /// UtilUpdateExposureAndIndexLimits.
    VOID Update(KIROExposureRange* pR, UINT64 indexZeroExposure);

private:
    bool IsSame(const KIROExposureRange& rRange, UINT64 indexZeroExposure) const;

    bool              m_isKept            = false;
    UINT64            m_indexZeroExposure = 0;
    KIROExposureRange m_range             = {};  ///< as it was handed in
    KIROExposureRange m_updated           = {};
};
