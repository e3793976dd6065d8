/// @file
/// The host's sink for debug data.
#pragma once

#include "platform/tavotypes.h"

struct AECDebugData;

/// Implemented by the host, called by the core, which keeps a reference for the instance's life.
class IKIRODebugData
{
public:
    /// @return a record at all times: one flag is written also while debug data are off
    virtual AECDebugData& GetDebugData()       = 0;
    virtual BOOL          IsDebugDataEnabled() = 0;

protected:
    ~IKIRODebugData() = default;
};
