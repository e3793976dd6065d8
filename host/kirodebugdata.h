/// @file
/// The host's side of debug data: one record that the core fills frame by frame.
#pragma once

#include <memory>

#include "interface/aecdebugdata.h"
#include "interface/ikirodebugdata.h"

class KiroDebugData final : public IKIRODebugData
{
public:
    AECDebugData& GetDebugData() override
    {
        return *m_pRecord;
    }

    BOOL IsDebugDataEnabled() override
    {
        return m_isEnabled ? TRUE : FALSE;
    }

    VOID SetEnabled(bool isEnabled)
    {
        m_isEnabled = isEnabled;
    }

private:
    std::unique_ptr<AECDebugData> m_pRecord   = std::make_unique<AECDebugData>();  ///< too large for a stack
    bool                          m_isEnabled = false;
};
