/// @file
/// What every program does around its work.
#pragma once

#include <functional>

#include "platform/tavotypes.h"

namespace program
{

constexpr int ExitBadInput = 1;
constexpr int ExitBadUsage = 2;

/// Does a program's work with all that a rough world wants around it: closed standard descriptors do not become the
/// first files that are opened, a full disk or a limit of file sizes is an error rather than a death, and what was
/// printed must have been written.
/// @param pPrefix in front of an error's line: "kirosim: ", or nothing where most errors begin with a place in a file
/// @param rWork @return the status
/// @return the status, ExitBadInput with a line on stderr for an exception and for a standard output that cannot be
/// written
int Main(const char* pPrefix, const std::function<int()>& rWork);

}  // namespace program
