/// @file
/// Names of settings, for logs.
#pragma once

#include "interface/kirosetinput.h"

/// @return the enumerator's name, that of AECAlgoSetParamMax for a type beyond it
const CHAR* SetParamName(AECAlgoSetParamType type);
