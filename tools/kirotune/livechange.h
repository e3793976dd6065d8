/// @file
/// A number of a running camera that is another one than before, or than in a file.
#pragma once

#include <string>

namespace kirotune
{

struct Change
{
    std::string path;    ///< of the mode
    std::string module;  ///< or a record within it
    std::string member;
    std::string oldText;
    std::string newText;
};

}  // namespace kirotune
