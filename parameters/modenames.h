/// @file
/// Names of modes and sub-modes, and mode paths as text.
///
/// A numeric path holds items of mode and sub-mode with "." between them, joined by "|", as in "0.0|2.1".
#pragma once

#include <vector>

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

/// Appends the selectors of a numeric path to rBranch. An item with anything but digits and one "." ends the path at
/// once; the items before it are kept.
/// @return whether the path was clean to its end and rBranch is not empty
TAVO_VISIBLE bool GetModeBranchFromPath(const CHAR* pPath, std::vector<TuningMode>& rBranch);

/// Appends one item to the numeric path in pText, with "|" before it if the text is not empty. An item that does not
/// fit in size bytes is left out whole. @return whether it fitted
bool AppendPathItem(CHAR* pText, size_t size, UINT32 mode, UINT32 subMode);

}  // namespace ModeNames
