/// @file
/// A host without debug data.
#pragma once

#include <stdexcept>

#include "interface/ikirodebugdata.h"

class DebugDataOff final : public IKIRODebugData
{
public:
    AECDebugData& GetDebugData() override
    {
        throw std::logic_error("debug data are off");
    }

    BOOL IsDebugDataEnabled() override
    {
        return FALSE;
    }
};
