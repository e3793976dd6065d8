/// @file
/// Lists of the calculators and analyzers that run.
#pragma once

#include <map>
#include <vector>

#include "tools/tuningcheck/mention.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

/// What one list names.
using RunList = std::vector<const Mention*>;

/// @param thing calculators or analyzers
/// @return the lists of a mode by their records
std::map<const BYTE*, RunList> RunListsOf(const std::vector<const Mention*>& rMentions, tuning::Thing thing);

/// @param pList a list of calculators
/// @return whether it is selected in flash pictures alone
bool IsForFlashAlone(const ModeView& rView, const BYTE* pList);

/// Without an analyzer of the safe exposure in a list that exposure is 0.
VOID CheckSafeExposure(const ModeView& rView, const std::vector<const Mention*>& rMentions, Findings& rFindings);

}  // namespace tuningcheck
