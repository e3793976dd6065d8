/// @file
/// Damage to texts of tunings and scenes, as a slip of the pen or a broken generator does it.
#pragma once

#include <random>
#include <string>

#include "platform/tavotypes.h"

namespace kirodamage
{

/// Changes numbers, forms and sizes, or takes lines away. @return the same for the same state of rRandom
std::string DamageText(std::string text, std::mt19937_64& rRandom);

}  // namespace kirodamage
