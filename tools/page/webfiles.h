/// @file
/// The files of the page, in the program.
#pragma once

#include "tools/webfile/webfile.h"

namespace webfile
{

extern const std::span<const File> PageFiles;

}  // namespace webfile
