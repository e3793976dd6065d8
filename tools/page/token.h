/// @file
/// What only a person has who was told.
#pragma once

#include <string>

namespace page
{

/// @return 128 random bits in 32 hexadecimal digits @throws std::system_error if the system has none
std::string MakeToken();

}  // namespace page
