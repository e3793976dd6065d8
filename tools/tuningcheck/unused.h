/// @file
/// What a tuning has and never uses.
#pragma once

#include <set>
#include <vector>

#include "tools/tuningcheck/mention.h"

namespace tuningcheck
{

/// @param rMentions   of all modes
/// @param rWrongKinds of readers that name what does not exist: who is not read may be whom they mean
VOID CheckUnused(const std::vector<const Mention*>& rMentions, const std::set<Kind>& rWrongKinds, Findings& rFindings);

}  // namespace tuningcheck
