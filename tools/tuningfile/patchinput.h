/// @file
/// Patches of tunings: texts that change numbers of what a tuning has, as edits of a running camera do.
#pragma once

#include <string>
#include <string_view>

#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

/// Changes the records of a tuning in place; docs/parameter-file.md describes the form.
/// @param rFileName of the patch, as it appears in messages
/// @param rTuning   with records of a store (ReadBinary): records and arrays that are alike are one there, as they are
///                  in a camera, and change together
/// @throws InputError at the first fault; what stands before it has been changed then
VOID ApplyPatch(std::string_view text, const std::string& rFileName, Tuning& rTuning);

}  // namespace tuningfile
