/// @file
/// Results of the core's functions. Each function says which of them it answers, and for what.
#pragma once

#include "platform/tavotypes.h"

constexpr KiroResult ResultFailed           = 1;   ///< could not be done; the log says why
constexpr KiroResult ResultUnsupportedQuery = 2;   ///< no such query
constexpr KiroResult ResultNotFollowing     = 3;   ///< the camera follows no other one
constexpr KiroResult ResultInvalidArgument  = 4;   ///< null, or out of range
constexpr KiroResult ResultNotFound         = 6;   ///< no peer, or no data of that number
constexpr KiroResult ResultOutOfMemory      = 8;   ///< no memory is left
constexpr KiroResult ResultNotApplicable    = 10;  ///< a condition of the tuning does not hold in this frame
constexpr KiroResult ResultInvalidInput     = 11;  ///< no such channel or list, or one that does not fit the others
