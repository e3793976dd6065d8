/// @file
/// What an instance answers to the typed queries, as text.
#pragma once

#include <string>

#include "interface/ikirocorealgo.h"

namespace kirosim
{

/// Asks the three answered queries and one that is not. Lines for a person, each ended by a newline.
std::string QueryAnswers(IKIROCoreAlgo* pAlgo);

}  // namespace kirosim
