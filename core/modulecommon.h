/// @file
/// What every module of the core holds.
#pragma once

#include "core/ikirocontextmanager.h"

class ModuleCommon
{
public:
    ModuleCommon(InstanceTuning& rTuningData, IKIROContextManager& rContextManager)
        : m_rContextManager(rContextManager), m_pTuningData(&rTuningData), m_moduleID(0), m_tuningSerial(0)
    {
    }

protected:
    ~ModuleCommon() = default;

    /// For a module that keeps pointers into the tuning from call to call: what they point at may be gone once the host
    /// has set a tuning.
    /// @return whether it has set one since the last TakeTuning
    bool IsTuningNew() const
    {
        return m_tuningSerial != m_rContextManager.m_tuningSerial;
    }

    VOID TakeTuning()
    {
        m_tuningSerial = m_rContextManager.m_tuningSerial;
    }

    IKIROContextManager& m_rContextManager;
    InstanceTuning*      m_pTuningData;  ///< the context's, follows tuning changes
    UINT32               m_moduleID;

private:
    UINT64 m_tuningSerial;  ///< of the context, at the last TakeTuning
};
