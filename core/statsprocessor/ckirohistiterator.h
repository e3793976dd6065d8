/// @file
/// Walks the bins of a histogram channel.
#pragma once

#include "core/statsprocessor/ikiroiterator.h"

class CKIROHistIterator final : public IKIROIterator
{
public:
    CKIROHistIterator();

    /// Must precede Configure. The record stays the caller's.
    VOID SetStats(const KIROCntStatsOut* pStats)
    {
        m_pStats = pStats;
    }

    /// @return 1, or 0 without a channel
    BOOL Configure();

    BOOL  HasNext() override;
    FLOAT NextGridData() override;
    /// Advances first and reads afterwards: a full pass yields bins 1, 2, ... N - 1 and then bin 0.
    /// @return overwritten by the next call
    KIROHistData* NextHistData() override;
    UINT32        GetTotalNumOfRegions() override;

private:
    const KIROCntStatsOut* m_pStats;
    UINT32                 m_estNumOfRegions;
    UINT32                 m_currentIndex;
    KIROHistData           m_histData;
};
