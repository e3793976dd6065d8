/// @file
/// The words of the tuning modules.
#pragma once

#include <string_view>

#include "schema/modules.h"

namespace meaning
{

/// @return null if the module is known by name and version only
const tuning::RecordWords* WordsOf(const tuning::ModuleDescription& rModule);

/// What a module is for.
const CHAR* SentenceOf(const tuning::RecordWords& rModule);

/// The words by which a number of a member is judged: of a pair, those of the member that nests it, if they have a
/// range.
/// @param rNesting of the member that holds the record which has rOwn
const tuning::Words& EffectiveWords(const tuning::Words& rNesting, const tuning::Words& rOwn);

}  // namespace meaning
