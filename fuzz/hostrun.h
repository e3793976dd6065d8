/// @file
/// What a hostile host does, from the bytes of an input.
#pragma once

#include <span>

#include "host/kirocorelibrary.h"
#include "tools/kirosim/loadedtuning.h"

namespace fuzz
{

/// The first byte says what there is, and the last bit of it which tuning; then come steps, a byte that says what is
/// done and by which camera, and what the step takes.
constexpr BYTE SecondTuning = 0x01;
constexpr BYTE TwoCameras   = 0x02;
constexpr BYTE BareInstance = 0x04;
constexpr BYTE DebugData    = 0x08;

/// @param rLibrary   opened, with a decorator if the run is recorded
VOID RunHost(std::span<const BYTE> input, const KiroCoreLibrary& rLibrary, kirosim::LoadedTuning& rTuning,
             bool isRecorded);

}  // namespace fuzz
