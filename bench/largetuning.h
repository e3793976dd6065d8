/// @file
/// A tuning file of the size that a product with many cameras and use cases ships with.
#pragma once

#include <vector>

#include "platform/tavotypes.h"

namespace largetuning
{

constexpr UINT32 ModeCount   = 40;
constexpr size_t ModuleCount = 33;

/// The modules of largetuning.yaml's Default mode again in each mode, with numbers of their own: modules of equal data
/// would be stored and loaded but once.
/// @return the parameter file
/// @throws tuningfile::InputError if that file cannot be read, std::runtime_error if it has other modules
std::vector<BYTE> Compile();

}  // namespace largetuning
