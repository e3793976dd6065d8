/// @file
/// Whether a number makes sense for its tunable.
#pragma once

#include <optional>
#include <string>

#include "schema/memberwords.h"

namespace meaning
{

/// Why a number does not make sense.
struct NumberFault
{
    bool        isOdd;     ///< it works, but is hardly meant
    std::string expected;  ///< "0 to 1 (share)"
    std::string advice;    ///< may be empty
};

/// @return none for a number that makes sense
std::optional<NumberFault> FaultOf(const tuning::Words& rWords, DOUBLE value);

/// @return the like for how many entries a list has
std::optional<NumberFault> CountFaultOf(const tuning::Words& rWords, size_t count);

}  // namespace meaning
