/// @file
/// A host without debug data.
#pragma once

#include "host/kirodebugdata.h"

typedef KiroDebugData DebugDataOff;  // off until a test switches it on
