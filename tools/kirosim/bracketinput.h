/// @file
/// The bracket of an event from its text.
#pragma once

#include "tools/kirosim/bracketscene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

/// @throws tuningfile::InputError
BracketRequest ReadBracket(const SceneText& rText, const tuningfile::YamlEntry& rEntry);

/// What ReadBracket reads.
SceneForm BracketForm();

}  // namespace kirosim
