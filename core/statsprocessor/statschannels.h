/// @file
/// The ring of one type of channels, which come in frame by frame, and the search in it.
#pragma once

#include <cmath>
#include <cstring>

#include "core/base/statsdeque.h"
#include "interface/kirostats.h"

constexpr INT32 ChannelNotFound = -1;

class AECCoreStatsDeque : public Tavo::StatsDeque<KIROCntStatsOut, KIROStatsChannelCountMax>
{
public:
    VOID clear()
    {
        StatsDeque::clear();
        m_lastFound = 0;
    }

    /// @return position of the first one of the name, ChannelNotFound for a null name or no match
    INT32 Find(const CHAR* pName) const
    {
        // Requests mostly ask for the channel of the request before. Others come in behind it.
        if (m_lastFound < size() && IsNamed(m_lastFound, pName))
        {
            return static_cast<INT32>(m_lastFound);
        }
        for (UINT32 position = 0; position < size(); ++position)
        {
            if (IsNamed(position, pName))
            {
                m_lastFound = position;
                return static_cast<INT32>(position);
            }
        }
        return ChannelNotFound;
    }

private:
    bool IsNamed(UINT32 position, const CHAR* pName) const
    {
        const CHAR* pChannel = (*this)[position].channelData.pChannelName;
        return pName != nullptr && pChannel != nullptr && std::strcmp(pChannel, pName) == 0;
    }

    mutable UINT32 m_lastFound = 0;  ///< always the first one of its name
};

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
    constexpr INT32 shiftMax = 62;
    const INT32     bitDepth = rResolution.bitDepth;
    const DOUBLE    steps    = (bitDepth >= 0 && bitDepth <= shiftMax) ? static_cast<DOUBLE>(UINT64{1} << bitDepth)
                                                                       : std::ldexp(1.0, bitDepth);
    return static_cast<FLOAT>(steps - 1.0) * statsThreshold;
}
