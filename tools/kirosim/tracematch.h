/// @file
/// Whether two traces that are laid side by side are of the same scene.
#pragma once

#include <string>

#include "tools/kirosim/tracetable.h"

namespace kirosim
{

/// Compares how many frames the traces have, and the light of the frames that both have at the same time. What a
/// trace does not have is not compared.
/// @return one line that names both, with how they differ; empty if nothing speaks against one scene
std::string SceneMismatch(const TraceTable& rTrace, const TraceTable& rOther);

}  // namespace kirosim
