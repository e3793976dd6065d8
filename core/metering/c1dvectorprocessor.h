/// @file
/// A tuned filter over time, from one bank entry to another.
#pragma once

#include "core/ikirocontextmanager.h"
#include "schema/kiro1dvectorprocessor.h"

class C1DVectorProcessor
{
public:
    using Tuning = kiro1dvectorprocessor::VectorProcessorType;

    /// Samples that are kept; a longer tuned filter is cut to this.
    static constexpr UINT32 SampleCountMax = 300;

    C1DVectorProcessor();

    /// Must precede all else. The record stays the tuning's.
    VOID SetVectorProcessorTuning(const Tuning* pTuning, IKIROContextManager& rContextManager);

    /// Takes samples from the input entry, filters, and stores the result in the output entry.
    /// @param sampleCount new samples at the front of a vector entry, newest first, of which at most SampleCountMax are
    ///                    taken; an entry that is a number yields one sample. 0 does nothing.
    VOID Run(UINT32 sampleCount);

    /// Forgets all samples.
    VOID ResetBuffer();

private:
    /// @return false for a bank that holds no samples
    bool GetDataFromDataBank(UINT32 sampleCount);
    VOID TakeVector(const FLOAT* pSamples, UINT32 sampleCount);
    bool SetDataToDataBank(FLOAT value);

    UINT32 FilterLength() const;
    FLOAT  Filter(UINT32 length);
    FLOAT  RunFIR(UINT32 length) const;
    FLOAT  RunMedian(UINT32 length);
    FLOAT  RunMovingAverage(UINT32 length) const;

    const CHAR* Name() const;

    IKIROContextManager* m_pContextManager;
    const Tuning*        m_pTuning;
    FLOAT                m_buffer[SampleCountMax];  ///< scratch of the median
    FLOAT                m_data[SampleCountMax];    ///< newest first
    UINT32               m_validDataCounter;        ///< samples so far; stops growing past the filter's length
};
