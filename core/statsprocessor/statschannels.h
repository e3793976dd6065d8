/// @file
/// The ring of one type of channels and the search in it.
#pragma once

#include <cmath>
#include <cstring>

#include "core/base/statsdeque.h"
#include "interface/kirostats.h"

typedef Tavo::StatsDeque<KIROCntStatsOut, KIROStatsChannelCountMax> AECCoreStatsDeque;

constexpr INT32 ChannelNotFound = -1;

/// @return position in the ring of the first one, ChannelNotFound for a null name or no match
inline INT32 FindStatsChannel(const AECCoreStatsDeque& rRing, const CHAR* pName)
{
    for (UINT32 position = 0; pName != nullptr && position < rRing.size(); ++position)
    {
        const CHAR* pChannel = rRing[position].channelData.pChannelName;
        if (pChannel != nullptr && std::strcmp(pChannel, pName) == 0)
        {
            return static_cast<INT32>(position);
        }
    }
    return ChannelNotFound;
}

inline bool IsSameShape(const kirocorestatsconfig::ResolutionType& rFirst,
                        const kirocorestatsconfig::ResolutionType& rSecond)
{
    return rFirst.binCount == rSecond.binCount && rFirst.bitDepth == rSecond.bitDepth &&
           rFirst.height == rSecond.height && rFirst.width == rSecond.width;
}

/// @return the value at which samples of a channel are clamped
/// @param statsThreshold fraction of full scale
inline FLOAT ClampValue(const kirocorestatsconfig::ResolutionType& rResolution, FLOAT statsThreshold)
{
    return static_cast<FLOAT>(std::ldexp(1.0, rResolution.bitDepth) - 1.0) * statsThreshold;
}
