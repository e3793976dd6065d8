/// @file
/// What a run has learned of a flash, in a file: the bytes as the core makes them, and a CRC-32 of them behind.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/tavotypes.h"

namespace kirosim
{

/// @return what the core has learned @throws std::runtime_error if the file cannot be read, is another, or was damaged
std::vector<BYTE> ReadLearned(const std::string& rPath);

/// @return the bytes of a file that ReadLearned takes
std::vector<BYTE> LearnedFileOf(std::span<const BYTE> learned);

}  // namespace kirosim
