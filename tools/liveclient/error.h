/// @file
/// What a person is told when live tuning does not work.
#pragma once

#include <stdexcept>

namespace liveclient
{

/// One line: what went wrong, where, and what was expected.
class Error : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

}  // namespace liveclient
