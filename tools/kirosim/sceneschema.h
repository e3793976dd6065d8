/// @file
/// What a scene may say, for readers and for editors.
#pragma once

#include <string>

namespace kirosim
{

/// All members of a scene as Markdown, behind an introduction.
std::string SceneReference();

/// A JSON Schema (draft 2020-12) of scenes, by which editors complete, explain and check them.
std::string SceneJsonSchema();

}  // namespace kirosim
