/// @file
/// Texts with places to fill and parts to leave out.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/tavotypes.h"

namespace newtuning
{

/// What a text is filled with.
struct Filling
{
    std::map<std::string, std::string, std::less<>> texts;     ///< for the places, by name
    std::map<std::string, bool, std::less<>>        switches;  ///< whether parts stay, by name
};

/// Fills a text: "@name@" stands for a text of the filling. The lines between "@if name@" and "@end@" stay where the
/// switch of that name is on; such parts can stand within each other.
/// @throws std::logic_error if the text asks for what the filling does not have
std::string Fill(std::string_view text, const Filling& rFilling);

}  // namespace newtuning
