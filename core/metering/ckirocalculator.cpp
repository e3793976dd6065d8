#include "core/metering/ckirocalculator.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/contextdebugdata.h"
#include "core/statsprocessor/notmeasured.h"
#include "interface/kiroresults.h"

using namespace kirometeringstatscalculator;
using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToINT32;
using exposurearithmetic::SaturateToUINT32;

namespace
{

/// Every region of the ROI counts.
constexpr KIROSubsamplingInfo NoSubsampling = {nullptr, 0, 0};

/// What the parameters of the two-exposure percentile mean.
enum MultiExposureParameter : UINT32
{
    Exposure1Index      = 0,
    Exposure2Index      = 1,
    MaxTriggerExposure1 = 2,
    MinTriggerExposure2 = 3,
    TriggerBank         = 4,
    TriggerID           = 5,
    MultiExposureCount  = 6
};

/// How much the first of two exposures counts.
/// @param onlyFirst  below this the first counts alone
/// @param onlySecond above this the second counts alone
FLOAT WeightOfFirst(FLOAT trigger, FLOAT onlyFirst, FLOAT onlySecond)
{
    if (trigger < onlyFirst)
    {
        return 1.0f;
    }
    return (trigger > onlySecond) ? 0.0f : (onlySecond - trigger) / std::max(onlySecond - onlyFirst, Epsilon);
}

}  // namespace

CCalculator::CCalculator() : m_group{}, m_pTuning(nullptr), m_pContextManager(nullptr), m_results{}
{
}

VOID CCalculator::SetCalculatorTuning(const StatsCalculatorType* pTuning, IKIROContextManager& rContextManager)
{
    constexpr INT32 levels = 1;
    m_pTuning              = pTuning;
    m_pContextManager      = &rContextManager;
    AECTriggerXMLData ranges{pTuning->generalParameters.rangeTrigger,
                             {levels, sizeof(StartEndType)},
                             static_cast<INT32>(pTuning->generalParameters.rangeTriggerCount)};
    m_triggerRange.SetData(&ranges, KIROMLTwoFloatsDataType);
}

UINT32 CCalculator::GetID() const
{
    return m_pTuning->calculatorID;
}

const CHAR* CCalculator::GetDescription() const
{
    return (m_pTuning->description != nullptr) ? m_pTuning->description : "NoDescription";
}

GroupedGridParameters* CCalculator::GetValidGroup()
{
    return (m_group.bIsValid == TRUE) ? &m_group : nullptr;
}

VOID CCalculator::RunCalculator()
{
    m_group.bIsValid    = FALSE;
    UINT32     outCount = 1;
    KiroResult result   = 0;
    switch (m_pTuning->APISelection)
    {
    case API01GridWeightedAverage:
        result = HandleAPIGridWeightedAverage();
        break;
    case API04HistWeightedAverage:
        result = HandleAPIHistWeightedAverage();
        break;
    case API05HistLumaRangeAverage:
        outCount = 2;
        result   = HandleAPIHistRangeAverage(HistRangeLuma, FALSE);
        break;
    case API06HistPercentileRangeAverage:
        result = HandleAPIHistRangeAverage(HistRangePercentile, FALSE);
        break;
    case API07RgbgDomainStatsCounter:
        result = HandleAPIGridRgbgStatsCounter();
        break;
    case API08ExtremeColorRgBgStatsRatio:
        result = HandleAPIExtremeColorRgbgStatsRatio();
        break;
    case API09GridStatsRoughness:
        outCount = 2;
        result   = HandleAPIGridStatsRoughness();
        break;
    case API10HistPercentileRangeAverageHDR:
        result = HandleAPIHistRangeAverage(HistRangePercentile, TRUE);
        break;
    default:
        STATS_LOG_WARNING("API not ready yet!");
        outCount = 0;
        break;
    }
    if (m_group.bIsValid == TRUE)
    {
        return;
    }
    if (result != 0)
    {
        std::fill(std::begin(m_results), std::end(m_results), NotMeasured);
        STATS_LOG_WARNING("Error with calculation; Setting -1 to bank");
    }
    StoreResults(outCount);
    debugdata::AppendCalculator(*m_pContextManager, m_pTuning->description, static_cast<INT32>(m_pTuning->calculatorID),
                                m_pTuning->APISelection, m_pTuning->outputStorage, m_results, outCount);
}

VOID CCalculator::StoreResults(UINT32 outCount)
{
    for (UINT32 output = 0; output < outCount; ++output)
    {
        const INT32 index = SaturateToINT32(static_cast<DOUBLE>(m_pTuning->outputStorage.start) + output);
        if (m_pTuning->outputStorage.end < index)
        {
            STATS_LOG_WARNING("calculator %s outputstart %d end %d not sufficient; using storage index %d",
                              GetDescription(), m_pTuning->outputStorage.start, m_pTuning->outputStorage.end, index);
        }
        (VOID) m_pContextManager->m_pBankManager->PublishCalculated(index, m_results[output], m_pTuning->description,
                                                                    SourceModuleMetering);
        if (m_results[output] != NotMeasured)
        {
            STATS_LOG_TRACE("Stats Calculator %s runs API%02d and saves %.5f to [StatsCalculatorDataBank %d]",
                            GetDescription(), m_pTuning->APISelection, m_results[output], index);
        }
    }
}

VOID CCalculator::RunXtremeColor(GroupedGridParameters** ppGroups, UINT32 count)
{
    Stats().ProcGetExtColorRgBgStatsRatio(ppGroups, count);
}

StartEndType CCalculator::RangeAtLux()
{
    const FLOAT lux = m_pContextManager->m_pBankManager->GetDataTriggers(TriggerCtrlLux)->value;
    return *static_cast<const StartEndType*>(m_triggerRange.GetData(lux, 0.0f, 0.0f));
}

KiroResult CCalculator::HandleAPIGridWeightedAverage()
{
    const auto& rParameters = m_pTuning->generalParameters;
    const BOOL  bEnableGridInterp =
        (m_pTuning->extensionArrayCount != 0 && m_pTuning->extensionArray[0] > Epsilon) ? TRUE : FALSE;
    return Stats().GetGridWeightedLuma(m_pTuning->statsSelection.channel1, static_cast<INT32>(rParameters.ROIID),
                                       NoSubsampling, static_cast<INT32>(rParameters.weightTable2D), m_results[0],
                                       m_pTuning->expRatioHandle, bEnableGridInterp);
}

KiroResult CCalculator::HandleAPIHistWeightedAverage()
{
    const StartEndType range = RangeAtLux();
    return Stats().GetHistWeightedLuma(m_pTuning->statsSelection.channel1,
                                       static_cast<INT32>(m_pTuning->generalParameters.weightTable1D), &range,
                                       m_results[0], m_pTuning->expRatioHandle);
}

KiroResult CCalculator::HandleAPIHistRangeAverage(KIROHistRangeType type, BOOL bMultiExposure)
{
    const StartEndType range  = RangeAtLux();
    KiroResult         result = Stats().GetHistRangeLuma(m_pTuning->statsSelection.channel1, &range, type, m_results,
                                                         m_pTuning->expRatioHandle);
    if (result != 0 || bMultiExposure != TRUE)
    {
        return result;
    }
    FLOAT weight = 1.0f;
    result       = ScaleMultiExposurePercentileStats(m_results, &weight);
    if (result != 0 || std::abs(weight - 1.0f) < Epsilon)
    {
        return result;
    }
    FLOAT others[OutputCountMax] = {};
    result =
        Stats().GetHistRangeLuma(m_pTuning->statsSelection.channel2, &range, type, others, m_pTuning->expRatioHandle);
    STATS_LOG_TRACE("stats1 %.1f stats2 %.1f w1 %.1f", m_results[0], others[0], weight);
    if (result != 0)
    {
        return result;
    }
    for (UINT32 output = 0; output < OutputCountMax; ++output)
    {
        m_results[output] = std::fma(m_results[output], weight, others[output] * (1.0f - weight));
    }
    return 0;
}

KiroResult CCalculator::ScaleMultiExposurePercentileStats(FLOAT* pOut, FLOAT* pOutExposure1Weight) const
{
    const UINT8            latency = m_pContextManager->GetInput()->systemLatency;
    const AECFrameHistory* pFrame  = m_pContextManager->m_pHistory->GetFrameHistory(latency);
    if (pFrame == nullptr)
    {
        STATS_LOG_ERROR("error reflected frame null %d", latency);
        return ResultFailed;
    }
    if (m_pTuning->extensionArrayCount != MultiExposureCount)
    {
        STATS_LOG_ERROR("error expected %d extension parameters and got %d", MultiExposureCount,
                        m_pTuning->extensionArrayCount);
        return ResultFailed;
    }
    const FLOAT* pParameters = m_pTuning->extensionArray;
    const UINT32 exp1        = SaturateToUINT32(pParameters[Exposure1Index]);
    const UINT32 exp2        = SaturateToUINT32(pParameters[Exposure2Index]);
    if (exp1 >= AECAlgoExposureCount || exp2 >= AECAlgoExposureCount)
    {
        STATS_LOG_ERROR("exposure types are wrong: %d %d", exp1, exp2);
        return ResultFailed;
    }
    const FLOAT scaler = static_cast<FLOAT>(pFrame->exposureSets[exp2].exposure) /
                         static_cast<FLOAT>(pFrame->exposureSets[exp1].exposure);
    pOut[0] *= scaler;
    pOut[1] *= scaler;

    const DataBankType bank    = {static_cast<KIROBankIDType>(SaturateToINT32(pParameters[TriggerBank])),
                                  SaturateToINT32(pParameters[TriggerID])};
    FLOAT              trigger = 0.0f;
    const KiroResult   result  = m_pContextManager->m_pBankManager->UtilGetFloatFromBank(&bank, trigger, TRUE, nullptr);
    if (result != 0)
    {
        STATS_LOG_ERROR("no trigger found for bankID %d dataID %d", bank.bankID, bank.dataID);
        return result;
    }
    const FLOAT onlyFirst  = pParameters[MaxTriggerExposure1];
    const FLOAT onlySecond = pParameters[MinTriggerExposure2];
    const FLOAT weight     = WeightOfFirst(trigger, onlyFirst, onlySecond);
    *pOutExposure1Weight   = weight;
    STATS_LOG_TRACE("scaler %.3f trigger %.3f th1 %.3f th2 %.3f exp1 %d exp2 %d bID %d dID %d weight %.3f", scaler,
                    trigger, onlyFirst, onlySecond, exp1, exp2, bank.bankID, bank.dataID, weight);
    return 0;
}

KiroResult CCalculator::HandleAPIGridRgbgStatsCounter()
{
    const auto&       rParameters = m_pTuning->generalParameters;
    const auto&       rStats      = m_pTuning->statsSelection;
    const CHAR* const channels[]  = {rStats.channel1, rStats.channel2, rStats.channel3};
    return Stats().GetGridRgBgStatsCount(
        channels, static_cast<UINT32>(std::size(channels)), static_cast<INT32>(rParameters.ROIID), NoSubsampling,
        rParameters.rangeTriggerCount, rParameters.rangeTrigger, m_results[0], m_pTuning->expRatioHandle);
}

KiroResult CCalculator::HandleAPIExtremeColorRgbgStatsRatio()
{
    const auto&       rParameters = m_pTuning->generalParameters;
    const auto&       rStats      = m_pTuning->statsSelection;
    const CHAR* const channels[]  = {rStats.channel1, rStats.channel2, rStats.channel3};
    const FLOAT       buffer      = (m_pTuning->extensionArrayCount != 0) ? m_pTuning->extensionArray[0] : 0.0f;
    const auto*       pGroup      = Stats().ProcInitializeXTremeColorRegion(
                   channels, static_cast<UINT32>(std::size(channels)), static_cast<INT32>(rParameters.ROIID), NoSubsampling,
                   rParameters.rangeTriggerCount, rParameters.rangeTrigger, m_results[0], m_pTuning->expRatioHandle, buffer);
    if (pGroup == nullptr)
    {
        return ResultFailed;
    }
    m_group               = *pGroup;
    m_group.bIsValid      = TRUE;
    m_group.pDescription  = m_pTuning->description;
    m_group.outputStorage = m_pTuning->outputStorage;
    m_group.calculatorID  = static_cast<INT32>(m_pTuning->calculatorID);
    return 0;
}

KiroResult CCalculator::HandleAPIGridStatsRoughness()
{
    const StartEndType range    = RangeAtLux();
    const CHAR* const  pChannel = m_pTuning->statsSelection.channel1;
    return Stats().GetStatsRoughness(&pChannel, 1, &range, m_results);
}
