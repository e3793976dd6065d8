/// @file
/// The host's sink for debug data.
#pragma once

#include "platform/tavotypes.h"

struct AECDebugData;

/// Implemented by the host and called by the core, on the thread of the call in progress. The core keeps a reference
/// until the instance is gone, and deletes nothing.
class IKIRODebugData
{
public:
    /// Where the core writes; interface/aecdebugdata.h says what and when.
    /// @return a record at all times, the host's, needed for the call in progress: setStats writes a flag into it
    ///         (extensionInfo.statsListVerboseDebugDataEnable) also while debug data are off
    virtual AECDebugData& GetDebugData() = 0;

    /// Asked by each stage that has something to write; a host may switch at any time.
    /// @return 1 to have debug data written; any other value leaves the record as it is
    virtual BOOL IsDebugDataEnabled() = 0;

protected:
    ~IKIRODebugData() = default;  ///< the object stays the host's
};
