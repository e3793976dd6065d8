/// @file
/// States of a camera over its frames, as stretches of time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/report/page.h"

namespace kirosim
{

class StateBands
{
public:
    /// @param time s, rising from frame to frame
    VOID BeginFrame(DOUBLE time);

    /// Says of the present frame whether a state holds; to be said of each frame. Bands stand in the order in which
    /// they are first named.
    /// @param words which of its states, if the band has several
    VOID Set(std::string_view band, bool isSet, std::string_view words = {});

    /// @return the bands that held in any frame. The last frame counts as long as the one before it
    std::vector<report::Band> Finish() const;

private:
    std::vector<report::Band> m_bands;  ///< a stretch that goes on has no end yet, NaN
    DOUBLE                    m_time   = 0.0;
    DOUBLE                    m_period = 0.0;    ///< from the frame before to the present one, s
    bool                      m_isOpen = false;  ///< a frame has begun
};

}  // namespace kirosim
