/// @file
/// How far the exposure lags behind light that moves.
#pragma once

#include <cmath>
#include <optional>

#include "platform/tavotypes.h"

namespace kirosim
{

/// Mean distance of the exposure from the one that has moved one for one with the light since it last stood still.
class RampLag
{
public:
    /// A frame in still light: the ramps behind it start from there.
    VOID AddRest(DOUBLE exposureEV, DOUBLE lightEV)
    {
        m_rest = Rest{exposureEV, lightEV};
    }

    /// A frame in a ramp. One that no still light has come before does not count.
    VOID AddRamp(DOUBLE exposureEV, DOUBLE lightEV)
    {
        if (m_rest.has_value())
        {
            m_sum += std::abs(exposureEV - (m_rest->exposureEV - (lightEV - m_rest->lightEV)));
            ++m_count;
        }
    }

    /// EV; none without a frame that counts.
    std::optional<DOUBLE> Mean() const
    {
        return (m_count > 0) ? std::optional<DOUBLE>(m_sum / m_count) : std::nullopt;
    }

private:
    struct Rest
    {
        DOUBLE exposureEV;
        DOUBLE lightEV;
    };

    std::optional<Rest> m_rest;
    DOUBLE              m_sum   = 0.0;
    UINT32              m_count = 0;
};

}  // namespace kirosim
