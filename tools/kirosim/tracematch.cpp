#include "tools/kirosim/tracematch.h"

#include <cmath>

#include <fmt/format.h>

namespace kirosim
{

namespace
{

UINT64 LengthOf(const TraceTable& rTrace)
{
    return rTrace.DroppedCount() + rTrace.FrameCount();
}

/// @return the first light that differs, in words; empty if none does
std::string OtherLight(const TraceTable& rTrace, const TraceTable& rOther)
{
    constexpr DOUBLE           rounding    = 1e-6;
    const std::vector<DOUBLE>* pLight      = rTrace.Find("scene_lux");
    const std::vector<DOUBLE>* pOtherLight = rOther.Find("scene_lux");
    if (pLight == nullptr || pOtherLight == nullptr)
    {
        return {};
    }
    const std::vector<DOUBLE>& rTimes      = rTrace.Get("time_s");
    const std::vector<DOUBLE>& rOtherTimes = rOther.Get("time_s");
    size_t                     other       = 0;
    for (size_t frame = 0; frame < rTimes.size(); ++frame)
    {
        // A camera that runs slower for its tuning sees the same light at times of its own.
        while (other < rOtherTimes.size() && rOtherTimes[other] < rTimes[frame] - rounding)
        {
            ++other;
        }
        const bool isAtOnce = other < rOtherTimes.size() && rOtherTimes[other] <= rTimes[frame] + rounding;
        if (isAtOnce && std::abs((*pLight)[frame] - (*pOtherLight)[other]) > rounding * (*pLight)[frame])
        {
            return fmt::format("{:.4g} lux against {:.4g} at {:.2f} s", (*pLight)[frame], (*pOtherLight)[other],
                               rTimes[frame]);
        }
    }
    return {};
}

}  // namespace

std::string SceneMismatch(const TraceTable& rTrace, const TraceTable& rOther)
{
    const std::string light = OtherLight(rTrace, rOther);
    std::string       text;
    if (LengthOf(rTrace) != LengthOf(rOther))
    {
        text = fmt::format("{} frames against {}", LengthOf(rTrace), LengthOf(rOther));
    }
    if (!light.empty())
    {
        text += (text.empty() ? "" : ", ") + light;
    }
    return text.empty() ? text
                        : fmt::format("{} and {} are not of one {}: {}", rTrace.Name(), rOther.Name(),
                                      light.empty() ? "length" : "scene", text);
}

}  // namespace kirosim
