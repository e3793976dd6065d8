/// @file
/// What a parameter file holds, for scripts.
#pragma once

#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/textnode.h"

namespace kirotune
{

/// @return what the command info prints, as one object; offsets and sizes in bytes
tuningfile::TextNode InfoJson(const tuningfile::BinaryTuning& rBinary);

}  // namespace kirotune
