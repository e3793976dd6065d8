/// @file
/// Analyzers: exposures that are decided from nothing, methods that luma and confidence do not have.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckSceneAnalyzers(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
