/// @file
/// What is there twice: numbers within a list, and entries that two write in one frame, the core being one of them.
#pragma once

#include <set>
#include <vector>

#include "tools/tuningcheck/mention.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

/// @param rMentions of one module
/// @return the kinds of which a number is there twice: a reader that finds nothing may mean one of the two
std::set<Kind> CheckDoubleNumbers(const std::vector<Mention>& rMentions, Findings& rFindings);

/// @param rMentions of one mode
VOID CheckDoubleOutputs(const ModeView& rView, const std::vector<const Mention*>& rMentions, Findings& rFindings);

}  // namespace tuningcheck
