#include "tools/recording/statistics.h"

#include <fmt/format.h>

namespace recording
{

VOID RefuseShape(const KIROCntStatsOut& rChannel)
{
    const auto&  rShape = rChannel.resolution;
    const CHAR*  pName  = rChannel.channelData.pChannelName;
    const UINT64 values = std::max(UINT64{rShape.width} * rShape.height, UINT64{rShape.binCount});
    std::string  reason;
    if (values > ChannelValuesMax)
    {
        reason = fmt::format("at most {} values", ChannelValuesMax);
    }
    else if (rChannel.type == kiroglobalelements::KIROStatsHist && values > rShape.binCount)
    {
        reason = "a histogram has no more regions than bins";
    }
    if (!reason.empty())
    {
        throw MalformedError(fmt::format(
            "channel {} of statistics has an impossible shape: {} x {} regions, {} bins; {}",
            (pName != nullptr) ? pName : "without a name", rShape.width, rShape.height, rShape.binCount, reason));
    }
}

}  // namespace recording
