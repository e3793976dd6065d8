/// @file
/// The functions of the table, in its order. The number of a slot is part of the file.
#pragma once

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

constexpr const CHAR* SlotNames[] = {
#define SLOT(name) #name,
    KIRO_CORE_FUNCTIONS(SLOT)
#undef SLOT
};

}  // namespace recording
