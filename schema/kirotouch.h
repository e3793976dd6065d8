/// @file
/// Tuning module kirotouch.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirotouch
{

/// The module's record.
struct KIROTouchType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
};
TUNING_RECORD(KIROTouchType)
    MODULE_HEADER("Metering of a touched region. The module has a version but no values yet.")
TUNING_RECORD_END

} // namespace kirotouch
