/// @file
/// The tuning store: fetching a module's record, loading files.
#pragma once

#include "platform/tavotypes.h"

VOID RegisterStoreBenchmarks();
