/// @file
/// Names of modes and sub-modes.
#pragma once

#include <string_view>

#include "parameters/tuningmode.h"
#include "platform/tavocommonutils.h"
#include "schema/tuningrecord.h"

namespace ModeNames
{

/// The levels by name.
TAVO_VISIBLE const tuning::EnumDescription& Modes();

/// @return the sub-modes of a level by name; null for Default and Sensor, whose sub-modes have none, and for a value
///         that is no level
TAVO_VISIBLE const tuning::EnumDescription* SubModes(ModeType mode);

/// @return the name of a sub-mode, null if it has none
TAVO_VISIBLE const CHAR* GetSubModeName(ModeType mode, UINT32 subMode);

/// @param name in any case
/// @return the level of that name, Default if there is none
ModeType GetModeIndex(std::string_view name);

/// @param name a number, or a sub-mode's name in any case
/// @return the number, or the sub-mode of that name; 0 if there is none
UINT32 GetSubModeIndex(ModeType mode, std::string_view name);

}  // namespace ModeNames
