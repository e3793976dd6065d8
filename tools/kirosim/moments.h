/// @file
/// What changes in a scene, in words: its light, and what its events do.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/kirosim/scene.h"

namespace kirosim
{

struct Moment
{
    DOUBLE                    time;  ///< in the scene, s
    std::string               words;
    std::optional<AECAlgoROI> touch      = {};  ///< of the first camera, begins
    bool                      isTouchEnd = false;
};

/// In ascending time: steps of the light, beginnings of its ramps, and events.
std::vector<Moment> MomentsOf(const Scene& rScene);

/// Walks along the moments of a scene with its frames, round after round.
class MomentWalk
{
public:
    explicit MomentWalk(const Scene& rScene) : m_moments(MomentsOf(rScene))
    {
    }

    /// @param sceneTime of the frame, s; smaller than that of the frame before where a round begins
    /// @return the words of what the frame is the first to show; empty if there is nothing new
    std::string Advance(DOUBLE sceneTime);

    /// @return whether something changes up to a time behind the present frame
    bool IsDueBy(DOUBLE sceneTime) const
    {
        return m_next < m_moments.size() && m_moments[m_next].time <= sceneTime;
    }

    /// The part of the frame that is touched; none if no part is.
    const std::optional<AECAlgoROI>& Touch() const
    {
        return m_touch;
    }

private:
    std::vector<Moment>       m_moments;
    size_t                    m_next      = 0;
    DOUBLE                    m_sceneTime = 0.0;
    std::optional<AECAlgoROI> m_touch;
};

}  // namespace kirosim
