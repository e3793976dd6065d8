/// @file
/// What a file may cost in memory.
#pragma once

#include "tools/heapwatch/heapwatch.h"
#include "tools/kirodamage/campaign.h"

namespace kirodamage
{

/// In one request and in all.
constexpr UINT64 MaxAllocation = UINT64{64} << 20;

/// Notes what was taken since heapwatch::Start, and a fault if it was too much.
heapwatch::Report JudgeHeap(TrialResult& rResult);

}  // namespace kirodamage
