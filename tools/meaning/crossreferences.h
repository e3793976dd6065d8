/// @file
/// Which modules write what others read.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "schema/modules.h"

namespace meaning
{

/// A bank, or another kind of thing, that references name.
struct Target
{
    tuning::Thing thing;
    INT32         bank;  ///< of Thing::Bank, 0 otherwise

    auto operator<=>(const Target&) const = default;
};

/// "bank Triggers", "analyzers".
std::string NameOf(const Target& rTarget);

/// What a reference names; nothing for a bank that only the value beside it tells.
std::vector<Target> TargetsOf(const tuning::Reference& rReference);

/// Modules by what they do with a target.
struct Users
{
    std::set<std::string> definers;
    std::set<std::string> writers;
    std::set<std::string> readers;
};

/// Of all modules.
const std::map<Target, Users>& CrossReferences();

}  // namespace meaning
