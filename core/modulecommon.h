/// @file
/// What every module of the core holds.
#pragma once

#include "core/ikirocontextmanager.h"

class ModuleCommon
{
public:
    ModuleCommon(StatsTuningData& rTuningData, IKIROContextManager& rContextManager)
        : m_rContextManager(rContextManager), m_pTuningData(&rTuningData), m_moduleID(0)
    {
    }

protected:
    ~ModuleCommon() = default;

    IKIROContextManager& m_rContextManager;
    StatsTuningData*     m_pTuningData;  ///< the context's, follows tuning changes
    UINT32               m_moduleID;
};
