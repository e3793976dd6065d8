/// @file
/// Owns an external map processor for each tuned record and runs them once per frame.
#pragma once

#include "core/base/tuningdriven.h"
#include "core/metering/cexternalmapprocessor.h"

class CKIROExtMapManager
{
public:
    explicit CKIROExtMapManager(IKIROContextManager& rContextManager);

    /// Runs the enabled processors in the order of the tuning, after rebuilding them if the record is another one.
    /// Before the table generation, which reads their output.
    VOID RunExtMapProcessors();

private:
    using Tuning = kiroexternalmapprocessor::KIROExternalMapProcessorType;

    VOID UpdateExtMapProcessors();
    VOID Rebuild(const Tuning* pTuning);
    VOID DeleteProcessors();

    IKIROContextManager&               m_rContextManager;
    TuningDriven<const Tuning>         m_tuning;
    TavoObjects<CExternalMapProcessor> m_processors;
    bool                               m_hasProcessors;  ///< all of the tuning, be it none
};
