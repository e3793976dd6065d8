/// @file
/// What a person is told about a faulty input.
#pragma once

#include <stdexcept>

namespace tuningfile
{

/// A fault of an input file. The text is one line: "file:line:column: what is wrong, what was expected", without line
/// and column where the file is not text.
class InputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

}  // namespace tuningfile
