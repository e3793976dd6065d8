/// @file
/// Tunings from text.
#pragma once

#include <string>
#include <string_view>

#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

/// Reads a tuning written as YAML; docs/parameter-file.md describes the form.
/// @param fileName as it appears in messages
/// @throws InputError at the first fault
Tuning ParseText(std::string_view text, const std::string& rFileName);

}  // namespace tuningfile
