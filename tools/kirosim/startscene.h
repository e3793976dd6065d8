/// @file
/// How a session begins, as a scene says it.
#pragma once

#include <optional>
#include <string>

#include "interface/kirostartexposure.h"

namespace kirosim
{

struct StartPlan
{
    std::optional<KIROAlgoStartExpType> source  = {};  ///< none lets the host choose
    bool                                isFixed = false;
    std::optional<DOUBLE> lux = {};  ///< what the light sensor reads; the scene's light if nothing is said
};

/// "previous mode", "light sensor", ...
std::string NameOfSource(const std::optional<KIROAlgoStartExpType>& rSource);

}  // namespace kirosim
