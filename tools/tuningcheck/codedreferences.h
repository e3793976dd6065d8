/// @file
/// References that the words of a tunable do not tell: lists whose numbers mean something by their place, second
/// outputs, and what the core itself publishes.
#pragma once

#include <functional>
#include <span>

#include "tools/tuningcheck/named.h"
#include "tools/tuningcheck/spot.h"

namespace tuningcheck
{

using ReferenceSink = std::function<VOID(const Spot&, tuning::Verb, const Named&)>;

/// Hands on the references in the numbers of a record.
VOID FindCodedReferences(const RecordSpot& rRecord, const ReferenceSink& rSink);

/// @return the numbers of the coded algorithms of analyzers
std::span<const INT64> Algorithms();

/// @return whether a stage of the core publishes the trigger in each frame or when its feature runs
bool IsPublishedByCore(INT64 trigger);

/// @return whether a tuning may rely on the trigger: those with a fixed meaning come from the core or the host
bool IsKnownTrigger(INT64 trigger);

}  // namespace tuningcheck
