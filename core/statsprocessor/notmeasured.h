/// @file
/// What stands for a measure that the statistics did not allow.
#pragma once

#include "platform/tavotypes.h"

constexpr FLOAT NotMeasured = -1.0f;
