#include "host/delayevidence.h"

#include <algorithm>
#include <cmath>

namespace
{

/// What is left of a frame's weight when another one that tells the same two apart has come.
constexpr DOUBLE Memory = 0.98;

}  // namespace

bool DelayEvidence::AreApart(const ByDelay<DOUBLE>& rPredicted) const
{
    const auto [least, most] = std::minmax_element(rPredicted.begin() + 1, rPredicted.end());
    return *most - *least >= m_scale.differenceMin;
}

VOID DelayEvidence::Add(DOUBLE seen, const ByDelay<DOUBLE>& rPredicted)
{
    for (UINT8 delay = 1; delay <= DelayMax; ++delay)
    {
        for (UINT8 other = 1; other <= DelayMax; ++other)
        {
            DOUBLE&      rMisses    = m_misses[delay][other];
            const DOUBLE difference = rPredicted[delay] - rPredicted[other];
            if (std::abs(difference) >= m_scale.differenceMin)
            {
                rMisses = Memory * rMisses + MissOf(seen - rPredicted[delay], difference);
            }
        }
    }
}

bool DelayEvidence::IsBelieved(UINT8 delay) const
{
    const DOUBLE needed = m_scale.missesMin * m_scale.weightMax * m_scale.weightMax;
    for (UINT8 other = 1; other <= DelayMax; ++other)
    {
        const DOUBLE missesOfOther = m_misses[other][delay];
        if (other != delay && (missesOfOther < needed || m_misses[delay][other] > m_scale.shareMax * missesOfOther))
        {
            return false;
        }
    }
    return true;
}

/// How far off a prediction is, measured by how much the other one differs: where samples are clipped, the picture
/// changes by less than the exposure. What is off by more is light that has changed by itself, and counts no more.
DOUBLE DelayEvidence::MissOf(DOUBLE off, DOUBLE difference) const
{
    const DOUBLE share = std::min(std::abs(off / difference), 1.0);
    const DOUBLE miss  = share * std::min(std::abs(difference), m_scale.weightMax);
    return miss * miss;
}
