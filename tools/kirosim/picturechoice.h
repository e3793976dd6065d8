/// @file
/// Of which frames a report shows pictures.
#pragma once

#include <optional>
#include <string>

#include "tools/kirosim/camera.h"

namespace kirosim
{

/// What a frame has to do with the moments of its scene.
struct FrameMoment
{
    std::string begins;            ///< what the frame is the first to show; empty for nothing
    bool        isBefore = false;  ///< something begins with the next frame
};

/// The first frame, those before, at and, once the exposure has settled, after each moment, pictures of flash and
/// brackets, and each so-manieth.
class PictureChoice
{
public:
    /// @param every so many frames, from the first one; none for no further ones
    explicit PictureChoice(std::optional<UINT32> every) : m_every(every)
    {
    }

    /// To be asked once for each frame.
    /// @return why there is to be a picture of it; empty for none
    std::string ReasonFor(const FrameRecord& rRecord, const FrameMoment& rMoment);

private:
    std::optional<UINT32> m_every;
    bool                  m_isRestAwaited = true;   ///< since the last moment, or the start
    bool                  m_hasMoved      = false;  ///< since then: an exposure may rest on for a while
    bool                  m_isFirst       = true;
};

}  // namespace kirosim
