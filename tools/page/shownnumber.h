/// @file
/// Numbers of a camera as people read them.
#pragma once

#include <string>

namespace page
{

/// @param rModule a module, or a record within it @param rPath of a member in it @param rTold as the camera tells it
/// @return a fraction without the digits that only its storage adds: 0.4 for 0.400000006; all else as it is
std::string ShownNumber(const std::string& rModule, const std::string& rPath, const std::string& rTold);

}  // namespace page
