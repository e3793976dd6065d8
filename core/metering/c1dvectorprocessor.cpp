#include "core/metering/c1dvectorprocessor.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numeric>

#include "core/base/floatorder.h"
#include "core/base/kirolog.h"
#include "core/base/tuningvalues.h"

using namespace kiro1dvectorprocessor;

namespace
{

/// Coefficients that cancel one another would blow the samples up.
constexpr FLOAT CoefficientSumMin = 0.01f;

CHAR g_description[] = "ProcessedData";

VOID LogUnsupportedBank(const DataBankType& rBank)
{
    STATS_LOG_ERROR("Not supported databank %d dataID %d in 1D Vector Processor ", rBank.bankID, rBank.dataID);
}

}  // namespace

C1DVectorProcessor::C1DVectorProcessor()
    : m_pContextManager(nullptr), m_pTuning(nullptr), m_buffer{}, m_data{}, m_validDataCounter(0)
{
}

VOID C1DVectorProcessor::SetVectorProcessorTuning(const Tuning* pTuning, IKIROContextManager& rContextManager)
{
    m_pTuning          = pTuning;
    m_pContextManager  = &rContextManager;
    m_validDataCounter = 0;
    if (pTuning->filtering.filterLength > SampleCountMax)
    {
        STATS_LOG_WARNING("vector processor %s: filter length %d is cut to %d samples", Name(),
                          pTuning->filtering.filterLength, SampleCountMax);
    }
}

const CHAR* C1DVectorProcessor::Name() const
{
    return tuningvalues::TextOf(m_pTuning->description);
}

VOID C1DVectorProcessor::ResetBuffer()
{
    m_validDataCounter = 0;
    std::fill(std::begin(m_data), std::end(m_data), 0.0f);
}

VOID C1DVectorProcessor::Run(UINT32 sampleCount)
{
    if (m_pTuning->enable == FALSE || sampleCount == 0)
    {
        return;
    }
    if (m_validDataCounter <= m_pTuning->filtering.filterLength)
    {
        const UINT32 room = std::numeric_limits<UINT32>::max() - m_validDataCounter;
        m_validDataCounter += std::min(sampleCount, room);
    }
    if (!GetDataFromDataBank(sampleCount))
    {
        return;
    }
    const FLOAT out = Filter(FilterLength());
    if (SetDataToDataBank(out))
    {
        STATS_LOG_TRACE("1D Vector Processor Save %.3f to databank %d with dataID %d", out, m_pTuning->output.bankID,
                        m_pTuning->output.dataID);
    }
}

/// @return how many of the newest samples are filtered, 1 to SampleCountMax
UINT32 C1DVectorProcessor::FilterLength() const
{
    const UINT32 length = std::min(m_validDataCounter, m_pTuning->filtering.filterLength);
    return std::clamp(length, 1u, SampleCountMax);
}

bool C1DVectorProcessor::GetDataFromDataBank(UINT32 sampleCount)
{
    const DataBankType& rInput = m_pTuning->input;
    CKIROBankManager&   rBanks = *m_pContextManager->m_pBankManager;
    switch (rInput.bankID)
    {
    case BankIDMetering1D:
        if (const auto* pVector = rBanks.GetDataMetering1D(rInput.dataID))
        {
            TakeVector(pVector->weights, sampleCount);
        }
        return true;
    case BankIDStatsCalculator:
        if (const auto* pSlot = rBanks.GetDataStatsCalculator(rInput.dataID))
        {
            TakeVector(&pSlot->value, 1);
        }
        return true;
    default:
        LogUnsupportedBank(rInput);
        return false;
    }
}

VOID C1DVectorProcessor::TakeVector(const FLOAT* pSamples, UINT32 sampleCount)
{
    const UINT32 count = std::min(sampleCount, SampleCountMax);
    std::copy_backward(std::begin(m_data), std::end(m_data) - count, std::end(m_data));
    std::copy_n(pSamples, count, m_data);
}

FLOAT C1DVectorProcessor::Filter(UINT32 length)
{
    switch (m_pTuning->filtering.method)
    {
    case FIR:
        return RunFIR(length);
    case MedianFilter:
        return RunMedian(length);
    case MovingAverage:
        return RunMovingAverage(length);
    default:
        STATS_LOG_ERROR("No Matched Filtering Method Defined, %d", m_pTuning->filtering.method);
        return 0.0f;
    }
}

FLOAT C1DVectorProcessor::RunFIR(UINT32 length) const
{
    const FilterType& rFilter = m_pTuning->filtering;
    const UINT32 count = std::min(length, tuningvalues::CountOf(rFilter.FIRCoefficients, rFilter.FIRCoefficientsCount));
    FLOAT        value = 0.0f;
    FLOAT        weight = 0.0f;
    for (UINT32 index = 0; index < count; ++index)
    {
        value = std::fma(rFilter.FIRCoefficients[index], m_data[index], value);
        weight += rFilter.FIRCoefficients[index];
    }
    const FLOAT out = value / std::max(weight, CoefficientSumMin);
    STATS_LOG_TRACE("run %s FIR, out %.4f, val %.4f, wt %.4f, data len %d", Name(), out, value, weight, count);
    return out;
}

/// Of an even number of samples the lower of the two in the middle.
FLOAT C1DVectorProcessor::RunMedian(UINT32 length)
{
    FLOAT* pMiddle = m_buffer + length / 2;
    std::copy(m_data, m_data + length, m_buffer);
    std::nth_element(m_buffer, pMiddle, m_buffer + length, floatorder::IsAbove);
    return *pMiddle;
}

FLOAT C1DVectorProcessor::RunMovingAverage(UINT32 length) const
{
    const FLOAT value  = std::accumulate(m_data, m_data + length, 0.0f);
    const FLOAT weight = static_cast<FLOAT>(length);
    const FLOAT out    = value / weight;
    STATS_LOG_TRACE("run %s Moving Average, out %.4f, val %.4f, wt %.4f data len %d", Name(), out, value, weight,
                    length);
    return out;
}

bool C1DVectorProcessor::SetDataToDataBank(FLOAT value)
{
    const DataBankType& rOutput = m_pTuning->output;
    CKIROBankManager&   rBanks  = *m_pContextManager->m_pBankManager;
    switch (rOutput.bankID)
    {
    case BankIDStatsCalculator:
        return rBanks.PublishCalculated(rOutput.dataID, value, g_description, SourceModuleMetering) == 0;
    case BankIDTriggers:
        return rBanks.PublishTrigger(rOutput.dataID, value, g_description, SourceModuleMetering) == 0;
    default:
        LogUnsupportedBank(rOutput);
        return false;
    }
}
