/// @file
/// How soon the host's watch sees that it was told a wrong pipeline delay, and how often it cries wolf.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "tools/kirosim/camera.h"
#include "tools/kirosim/figures/figure.h"

namespace kirosim
{

class DelayAlarms
{
public:
    /// @param rScene must outlive this object
    explicit DelayAlarms(const Scene& rScene) : m_rScene(rScene)
    {
    }

    VOID Add(const FrameRecord& rRecord);

    /// The scene starts again: what was counted so far is forgotten.
    VOID BeginRound();

    VOID AddTo(std::vector<Figure>& rFigures) const;

private:
    /// An exposure that a frame showed.
    struct Shown
    {
        DOUBLE time;  ///< s
        DOUBLE ev;
    };

    bool IsChange(const FrameRecord& rRecord);

    const Scene&          m_rScene;
    std::deque<Shown>     m_lastSecond;
    std::optional<UINT64> m_changeFrame;  ///< the first one that shows an exposure far from one before
    std::optional<UINT64> m_foundFrame;   ///< the first one in which the true delay is known
    std::optional<UINT8>  m_seen;         ///< in the last frame
    UINT32                m_falseAlarms = 0;
};

}  // namespace kirosim
