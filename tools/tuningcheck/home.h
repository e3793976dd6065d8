/// @file
/// Where a tuning says what exists.
#pragma once

#include <string>

#include "schema/modules.h"
#include "tools/tuningcheck/named.h"

namespace tuningcheck
{

/// @return the bank that a module with a priority map fills
INT32 BankOf(const tuning::ModuleDescription& rModule);

/// @return "data of kirodbroi"
std::string HomeOf(const Kind& rKind);

}  // namespace tuningcheck
