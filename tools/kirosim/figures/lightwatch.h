/// @file
/// How much any exposure must lose of the light that a run shows. What the frame shows is looked at when it changes,
/// since a look at all samples takes as long as a frame.
#pragma once

#include <optional>
#include <vector>

#include "tools/kirosim/sensormodel.h"

namespace kirosim
{

class LightWatch
{
public:
    /// @param rScene must outlive this object
    explicit LightWatch(const Scene& rScene);

    /// Whether the light of a frame has to be looked at anew. @param time of the frame in the scene, s
    bool IsViewDue(DOUBLE time) const;

    VOID Look(DOUBLE time, const SensorView& rView);

    /// A frame goes by.
    VOID Advance()
    {
        ++m_framesSince;
    }

    /// Share of the samples, see LeastLoss; 0 as long as nothing was looked at.
    DOUBLE LeastLoss() const
    {
        return m_leastLoss.value_or(0.0);
    }

private:
    size_t ChangesUpTo(DOUBLE time) const;
    bool   IsMoving(DOUBLE time) const;

    const Scene&          m_rScene;
    std::vector<DOUBLE>   m_changes;  ///< times of them, ascending; none where light changes alike all over the frame
    std::optional<DOUBLE> m_leastLoss;
    size_t                m_changesSeen = 0;
    UINT32                m_framesSince = 0;
};

}  // namespace kirosim
