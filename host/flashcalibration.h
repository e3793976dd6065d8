/// @file
/// What inline calibration has learned, between sessions: the host keeps the bytes, the core makes and reads them.
#pragma once

#include <span>
#include <vector>

#include "host/kirohost.h"

namespace flashcalibration
{

/// Turns inline calibration on. @param bytes of an earlier session, empty for none
/// @return false, with nothing taken over, if the core refuses the bytes or they are not as long as they say
bool Enable(KiroHost& rHost, std::span<const BYTE> bytes);

/// What has been learned so far, to be kept for the next session.
std::vector<BYTE> Store(KiroHost& rHost);

/// Whether bytes are as long as their own counts say. The core reads by the counts and cannot know the length.
bool IsComplete(std::span<const BYTE> bytes);

}  // namespace flashcalibration
