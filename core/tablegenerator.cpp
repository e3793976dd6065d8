#include "core/tablegenerator.h"

#include <algorithm>

#include "core/base/kirolog.h"
#include "core/statsprocessor/ckiromodstatsprocessor.h"
#include "interface/kiroresults.h"

namespace
{

constexpr UINT32 TableWidth   = 16;
constexpr UINT32 TableSize    = TableWidth * TableWidth;
constexpr INT32  ValueBits    = 8;  ///< of the values that the tuned trees are over
constexpr INT32  WeightLevels = 2;
constexpr FLOAT  EqualWeight  = 1.0f;
constexpr FLOAT  NoAverage    = -1.0f;

}  // namespace

TableGenerator::TableGenerator()
    : m_pContextManager(nullptr), m_meteringTableOut{}, m_pTuning(nullptr),
      m_dataDrivenTriggerSystem(KIROMLBaseDataType)
{
}

VOID TableGenerator::LoadWeights(const kiromtrtablegen::DataDrivenTriggerSystemType& rTree, CKIRODataXML& rInterpolator)
{
    AECTriggerXMLData tree{
        rTree.trigger1Data, {WeightLevels, sizeof(FLOAT)}, static_cast<INT32>(rTree.trigger1DataCount)};
    rInterpolator.SetData(&tree, KIROMLBaseDataType);
}

VOID TableGenerator::SetGeneratorTuning(const Tuning* pTuning, IKIROContextManager& rContextManager)
{
    m_pTuning         = pTuning;
    m_pContextManager = &rContextManager;
    LoadWeights(pTuning->triggerSystem, m_dataDrivenTriggerSystem);
}

KiroResult TableGenerator::Run()
{
    if (m_pTuning->enable != TRUE)
    {
        return 0;
    }
    KiroResult result = 0;
    switch (m_pTuning->method)
    {
    case kiromtrtablegen::StatsDrivenMethod:
        result = RunStatsDrivenMethod();
        break;
    case kiromtrtablegen::ExternalDataDrivenMethod:
        result = RunExternalDataDrivenMethod();
        break;
    default:
        STATS_LOG_ERROR("No Matched method selected");
        return ResultFailed;
    }

    const auto& rOutput       = m_pTuning->output;
    m_meteringTableOut.dataID = rOutput.output2DWeightID;
    (VOID) Banks().SetDataMetering2D({rOutput.output2DWeightID, &m_meteringTableOut, SourceModuleMtrTableGen});
    STATS_LOG_TRACE("Table generator saves output to Metering2DDataBank %d", rOutput.output2DWeightID);
    if (rOutput.outputWeightAverageTriggerID >= 1 && rOutput.enableGetWeightAverage == TRUE)
    {
        PublishWeightAverage();
    }
    return result;
}

KiroResult TableGenerator::RunStatsDrivenMethod()
{
    STATS_LOG_TRACE("Running StatsDriven Method");
    KIROItrConfig  config{};
    KIROItrInfo    info{KIROStatsType::KIROStatsGrid, {TableWidth, TableWidth, 0, ValueBits}};
    IKIROIterator* pIterator =
        m_pContextManager->m_pStatsProcessor->GetStatsIterator(m_pTuning->input.statsChannel, config, info);
    if (pIterator == nullptr)
    {
        STATS_LOG_ERROR("could not get iterator");
        return ResultFailed;
    }
    const INT32                   bitDepth   = info.resolution.bitDepth;
    const BOOL                    bLumaValid = pIterator->GetTotalNumOfRegions() == TableSize && bitDepth != 0;
    const DBMeter2DWeightPayload* pBase      = Banks().GetDataMetering2D(m_pTuning->input.base2DWeightID);
    if (bLumaValid != TRUE || pBase == nullptr)
    {
        StoreEqualWeights();
        STATS_LOG_ERROR("Invalid input, store equal weight table bLumaValid:%d pBaseMtrWt:%p", bLumaValid,
                        static_cast<const VOID*>(pBase));
        return 0;
    }
    const FLOAT lumaScaler = static_cast<FLOAT>(1 << (bitDepth - ValueBits));
    WeighCells(*pBase, [&] { return pIterator->NextGridData() / lumaScaler; });
    return 0;
}

KiroResult TableGenerator::RunExternalDataDrivenMethod()
{
    STATS_LOG_TRACE("Running External Data Driven Method");
    const DBMeter2DWeightPayload* pExternal = Banks().GetDataMetering2D(m_pTuning->input.externData2DWeightID);
    const DBMeter2DWeightPayload* pBase     = Banks().GetDataMetering2D(m_pTuning->input.base2DWeightID);
    if (pExternal == nullptr || pBase == nullptr)
    {
        StoreEqualWeights();
        STATS_LOG_ERROR("Invalid input, store equal weight table pExternalData:%p pBaseMtrWt:%p",
                        static_cast<const VOID*>(pExternal), static_cast<const VOID*>(pBase));
        return 0;
    }
    WeighCells(*pBase, [pWeight = pExternal->weights]() mutable { return *pWeight++; });
    return 0;
}

template <typename Next> VOID TableGenerator::WeighCells(const DBMeter2DWeightPayload& rBase, Next nextValue)
{
    // An evaluation remembers its zone of lux, so that the first one in a frame may yield another weight than those
    // behind it. From the second on a value has one weight, and most cells of a map have the value of the cell before.
    constexpr UINT32 settled   = 2;
    const FLOAT      lux       = Banks().GetDataTriggers(TriggerCtrlLux)->value;
    FLOAT            lastValue = 0.0f;
    FLOAT            weight    = 0.0f;
    for (UINT32 index = 0; index < TableSize; ++index)
    {
        const FLOAT value = nextValue();
        if (index < settled || value != lastValue)
        {
            weight = *static_cast<const FLOAT*>(m_dataDrivenTriggerSystem.GetData(lux, value, 0.0f));
        }
        lastValue = value;
        // Base or external table may be the one that is written: each cell is read before it is replaced.
        m_meteringTableOut.weights[index] = rBase.weights[index] * weight;
    }
}

VOID TableGenerator::StoreEqualWeights()
{
    std::fill(std::begin(m_meteringTableOut.weights), std::end(m_meteringTableOut.weights), EqualWeight);
}

VOID TableGenerator::PublishWeightAverage()
{
    FLOAT  sum   = 0.0f;
    UINT32 count = 0;
    for (FLOAT weight : m_meteringTableOut.weights)
    {
        if (weight > 0.0f)
        {
            sum += weight;
            ++count;
        }
    }
    const FLOAT average   = (count > 0) ? sum / static_cast<FLOAT>(count) : NoAverage;
    const INT32 triggerID = m_pTuning->output.outputWeightAverageTriggerID;
    (VOID) Banks().PublishTrigger(triggerID, average, "WeightAverage", SourceModuleMtrTableGen);
    STATS_LOG_TRACE("Table generator saves weight sum output %.4f to TriggerDataBank %d", average, triggerID);
}
