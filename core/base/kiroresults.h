/// @file
/// Results of the core's functions, other than 0 for success.
#pragma once

#include "platform/tavotypes.h"

constexpr KiroResult ResultFailed           = 1;
constexpr KiroResult ResultUnsupportedQuery = 2;
constexpr KiroResult ResultNotFollowing     = 3;
constexpr KiroResult ResultInvalidArgument  = 4;
constexpr KiroResult ResultNotFound         = 6;
constexpr KiroResult ResultOutOfMemory      = 8;
constexpr KiroResult ResultNotApplicable    = 10;
constexpr KiroResult ResultInvalidInput     = 11;
