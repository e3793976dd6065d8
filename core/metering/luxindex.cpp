#include "core/metering/luxindex.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::IndexOfRatio;

namespace
{

/// A stored index below this counts as no history: banks start at 0.
constexpr FLOAT StoredIndexMin = 0.5f;

}  // namespace

namespace luxindex
{

FLOAT StepsToTarget(FLOAT luma, FLOAT target)
{
    FLOAT ratio = std::max(target, Epsilon) / std::max(luma, Epsilon);
    if (!(ratio > 0.0f))
    {
        STATS_LOG_ERROR("Invalid Adj: Luma %f target %f", luma, target);
        ratio = 1.0f;
    }
    return IndexOfRatio(ratio);
}

FLOAT SnapshotIndex(FLOAT offIndex, FLOAT luma, INT32 target)
{
    return (luma > 0.0f) ? std::max(0.0f, offIndex + IndexOfRatio(static_cast<FLOAT>(target) / luma)) : offIndex;
}

FLOAT Filter(FLOAT luxIndex, FLOAT previous, FLOAT share)
{
    return (std::abs(previous) >= StoredIndexMin) ? std::fma(share, previous, (1.0f - share) * luxIndex) : luxIndex;
}

FLOAT FlashInfluence(FLOAT luma, FLOAT exposure, FLOAT offLuma, FLOAT offExposure)
{
    const FLOAT influence = ((offExposure * luma) / std::max(exposure, Epsilon) + Epsilon) / (offLuma + Epsilon);
    return std::max(NoInfluence, influence);
}

}  // namespace luxindex
