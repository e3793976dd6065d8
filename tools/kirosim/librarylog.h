/// @file
/// What the library has to say, for a person: one line per message, "kirosim: warning: file.cpp:12: text".
#pragma once

#include <string>
#include <string_view>

#include "interface/ikirocorealgo.h"

namespace kirosim::librarylog
{

/// Shows errors and warnings of core and store on stderr from now on, or nothing, as at the start.
VOID Show(bool isShown);

/// For the core's stats log.
VOID Write(const CHAR* pFile, INT32 line, const CHAR* pFunction, UINT32 group, UINT32 level, const CHAR* pFormat, ...);

/// A line of the system log as a person sees it: with its level in words, without numbers of processes, threads and
/// addresses. @param letter as it was logged, "E" or "W"
std::string LineOf(std::string_view letter, std::string_view line);

}  // namespace kirosim::librarylog
