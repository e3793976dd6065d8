/// @file
/// The statistics of a frame from a few bytes: all channels that the example tunings select, alike unless the input
/// says otherwise of one.
#pragma once

#include "fuzz/hostvalues.h"

namespace fuzz
{

class HostStatistics
{
public:
    HostStatistics(UINT64 frameID, HostBytes& rBytes);
    HostStatistics(const HostStatistics&)            = delete;
    HostStatistics& operator=(const HostStatistics&) = delete;

    KIROStatsList& List()
    {
        return m_list;
    }

private:
    VOID AddChannel(const CHAR* pName, const kirocorestatsconfig::ResolutionType& rShape, BYTE level);
    VOID MakeOdd(KIROCntStatsOut& rChannel, HostBytes& rBytes);
    VOID PutOddValue(KIROCntStatsOut& rChannel, HostBytes& rBytes);

    recording::Arena m_memory;
    KIROStatsList    m_list{};
};

}  // namespace fuzz
