/// @file
/// The functions of the table, in its order. The number of a slot is part of the file.
#pragma once

#include <cstddef>

#include "interface/ikirocorealgo.h"

namespace recording
{

enum class Slot : UINT16
{
#define SLOT(name) name,
    KIRO_CORE_FUNCTIONS(SLOT)
#undef SLOT
        Count
};

#define SLOT(name)                                                                                                     \
    static_assert(offsetof(IKIROCoreAlgo, name) == (1 + static_cast<size_t>(Slot::name)) * sizeof(VOID*));
KIRO_CORE_FUNCTIONS(SLOT)
#undef SLOT

constexpr const CHAR* SlotNames[] = {
#define SLOT(name) #name,
    KIRO_CORE_FUNCTIONS(SLOT)
#undef SLOT
};

}  // namespace recording
