/// @file
/// What a running camera can be asked for: its modes, and its modules.
#pragma once

#include <string>
#include <vector>

#include "tools/kirotune/livecamera.h"

namespace page
{

struct ModeNode
{
    std::string           path;
    std::vector<ModeNode> children = {};
};

/// @return the root with all below it @throws liveclient::Error, also for more modes than any tuning has
ModeNode ReadModes(kirotune::LiveCamera& rCamera);

/// @return names of the modules that frames of the root or of a mode in use find @param rActive paths in use
std::vector<std::string> ReadModules(kirotune::LiveCamera& rCamera, const std::vector<std::string>& rActive);

}  // namespace page
