/// @file
/// Owns the vector processors: the general ones, which run in each metered frame, and the one for gyro samples.
#pragma once

#include "core/base/tuningdriven.h"
#include "core/metering/c1dvectorprocessor.h"

class CKIRO1DVectorManager
{
public:
    explicit CKIRO1DVectorManager(IKIROContextManager& rContextManager);

    /// Runs the processors of a usage, in the order of the tuning, after rebuilding all if the record is another one.
    /// @param sampleCount new samples in a vector input
    VOID Run1DVectorProcessors(VectorProcessorUsageType usage, UINT32 sampleCount);

    /// Makes the processors of a usage forget their samples. Nothing is built by that.
    VOID Reset1DVectorProcessors(VectorProcessorUsageType usage);

private:
    using Tuning = kiro1dvectorprocessor::KIRO1DVectorProcessorType;

    VOID Update1DVectorProcessors();
    VOID Rebuild(const Tuning* pTuning);

    IKIROContextManager&            m_rContextManager;
    TuningDriven<const Tuning>      m_tuning;
    TavoPtr<C1DVectorProcessor>     m_pGyroVectorProcessor;
    TavoObjects<C1DVectorProcessor> m_1DVectorProcessors;
    bool m_hasProcessors;  ///< all general ones of the tuning, be it none; false before the first run
};
