/// @file
/// What an operation is refused with.
#pragma once

#include <stdexcept>
#include <string>

/// @return the text of the error that ends the action, empty if none does
template <typename Action> std::string RefusalOf(const Action& rAction)
{
    try
    {
        rAction();
    }
    catch (const std::runtime_error& rError)
    {
        return rError.what();
    }
    return {};
}
