/// @file
/// Another use case for a camera that runs, and back.
#pragma once

#include "tools/kirosim/camera.h"

namespace kirosoak
{

class ModeChange
{
public:
    /// @param rTuning must outlive this object
    ModeChange(kirosim::Camera& rCamera, kirosim::LoadedTuning& rTuning);

    VOID Make();

    /// Back to what it was, unless the scene has chosen other modes meanwhile.
    VOID Undo();

private:
    kirosim::Camera&       m_rCamera;
    kirosim::LoadedTuning& m_rTuning;
    StatsTuningData        m_before;
    StatsTuningData        m_changed;
};

/// The modes that a camera runs in, as a tool names them.
std::string ModePathOf(kirosim::Camera& rCamera);

}  // namespace kirosoak
