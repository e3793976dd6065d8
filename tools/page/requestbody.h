/// @file
/// What browsers send, as JSON.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/page/edits.h"

namespace page
{

/// What is to go back to where it started.
struct WantedReset
{
    std::string              mode;
    std::string              module;
    std::vector<std::string> paths = {};  ///< none for all
};

/// @throws std::invalid_argument that says what was expected in the body of the request
WantedEdit ParseSet(std::string_view body);

/// @throws std::invalid_argument that says what was expected in the body of the request
WantedReset ParseReset(std::string_view body);

}  // namespace page
