/// @file
/// Units, ranges and references as people read them.
#pragma once

#include <string>

#include "schema/memberwords.h"

namespace meaning
{

/// @return "ns", "share", ...; empty for a bare number
std::string UnitText(tuning::Unit unit);

/// @return "0 to 1", "above 0", "1 or more", "any number"; empty if not given
std::string RangeText(const tuning::Range& rRange);

/// The range with the unit behind it: "0 to 1 (share)".
std::string ExpectedText(const tuning::Range& rRange, tuning::Unit unit);

/// @return when a live edit acts, as the end of a sentence: "in the next frame"
std::string ActsText(tuning::Acts acts);

/// @return "reads an entry of the banks Triggers, SceneAnalyzer"; empty for a reference to nothing
std::string ReferenceText(const tuning::Reference& rReference);

/// @return "Triggers" for BankIDTriggers
std::string BankName(INT32 bank);

/// @return "analyzer", "scene change detector", ...; empty for what stands for a bank or for nothing
std::string ThingName(tuning::Thing thing);

/// @return what a reference names: "an analyzer", "an entry of bank ROITable"
std::string ThingText(const tuning::Reference& rReference);

/// Under which switches a value is read: "Read with enable, and with method A or B."; empty if always.
std::string ConditionText(const CHAR* pWhen);

/// All that is to say beside unit, range and start: the meaning, when it is read, what it refers to, when an edit acts.
std::string FullText(const tuning::Words& rWords);

/// A number in as few digits as tell it from all others of its type.
std::string NumberText(DOUBLE value);

}  // namespace meaning
