/// @file
/// Mode paths as text, in two notations.
///
/// A numeric path holds items of mode and sub-mode with "." between them, joined by "|", as in "0.0|2.1". A named path
/// is the same with names, as in "Default|Usecase.Snapshot"; sub-modes of a sensor are numbers in either. A list of
/// paths is joined by ";".
#pragma once

#include <vector>

#include "parameters/tuningmode.h"
#include "platform/tavocommonutils.h"

namespace ModePaths
{

/// Appends the selectors of a numeric path to rBranch. An item with anything but digits and one "." ends the path at
/// once, as does one of more than nine characters; the items before it are kept.
/// @param pPath null counts as empty
/// @return whether the path was clean to its end and rBranch is not empty
TAVO_VISIBLE bool GetModeBranchFromPath(const CHAR* pPath, std::vector<TuningMode>& rBranch);

/// Turns a named path into a numeric one. A name that is none becomes 0. Only names are known for modes: the items of a
/// path that is numeric already all become mode 0, so a tool has to send names.
/// @return false if an argument is missing
bool GetModeShorthand(const CHAR* pPath, CHAR* pText, UINT32 size);

/// Turns a list of numeric paths into named ones. A sub-mode without a name stays a number.
/// @param size of pText, at least 1; what does not fit is cut
VOID GetVernierModesString(const CHAR* pPaths, CHAR* pText, UINT32 size);

/// Appends one item to the numeric path in pText, with "|" before it if the text is not empty. An item that does not
/// fit in size bytes is left out whole. @return whether it fitted
bool AppendItem(CHAR* pText, size_t size, UINT32 mode, UINT32 subMode);

}  // namespace ModePaths
