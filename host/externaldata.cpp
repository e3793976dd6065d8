#include "host/externaldata.h"

#include <algorithm>

#include "schema/kirodbstatscalculator.h"

namespace
{

CHAR g_depthMap[]        = "DepthMap";
CHAR g_segmentationMap[] = "SegmentationMap";
CHAR g_gyro[]            = "Gyro";

}  // namespace

KiroExternalData::KiroExternalData(IKIROCoreAlgo* pAlgo)
    : m_pAlgo(pAlgo), m_depthMap{DepthMapDataID, g_depthMap, {}},
      m_segmentationMap{SegmentationMapDataID, g_segmentationMap, {}}, m_gyro{GyroDataID, g_gyro, {}}
{
}

VOID KiroExternalData::SetDepthMap(std::span<const FLOAT, MapSize> cells)
{
    SetMap(m_depthMap, cells);
}

VOID KiroExternalData::SetSegmentationMap(std::span<const FLOAT, MapSize> cells)
{
    SetMap(m_segmentationMap, cells);
}

/// Handed over in each frame: a change of the tuning drops what the host has put into the banks.
VOID KiroExternalData::SetMap(DBMeter2DWeightPayload& rMap, std::span<const FLOAT, MapSize> cells)
{
    static_assert(std::size(DBMeter2DWeightPayload{}.weights) == MapSize);
    std::copy(cells.begin(), cells.end(), rMap.weights);
    const KIROSetBankData map = {BankIDMetering2D, &rMap, sizeof(rMap)};
    (VOID) m_pAlgo->setBankData(m_pAlgo, &map);
}

VOID KiroExternalData::AddGyroSamples(std::span<const FLOAT> samples)
{
    const size_t count = std::min(samples.size(), std::size(m_gyro.weights));
    std::copy_n(samples.begin(), count, m_gyro.weights);
    const KIROSetBankData gyro = {BankIDMetering1D, &m_gyro, sizeof(m_gyro)};
    (VOID) m_pAlgo->setBankData(m_pAlgo, &gyro);
    m_pAlgo->run1DVectorProcess(m_pAlgo, kiroglobalelements::VectorProcessorUsageType::Gyro,
                                static_cast<UINT32>(count));
}

UINT32 KiroExternalData::TrackedCells(INT32 trackedDataID) const
{
    KIROGetBankData query = {BankIDMetering2D, trackedDataID, nullptr, sizeof(DBMeter2DWeightPayload)};
    if (m_pAlgo->getBankData(m_pAlgo, &query) != 0 || query.pData == nullptr)
    {
        return 0;
    }
    const auto& rWeights = static_cast<const DBMeter2DWeightPayload*>(query.pData)->weights;
    return static_cast<UINT32>(std::count(std::begin(rWeights), std::end(rWeights), 1.0f));
}

FLOAT KiroExternalData::FilteredGyro() const
{
    KIROGetBankData query = {BankIDTriggers, TriggerCtrlGyro, nullptr, sizeof(kirodbstatscalculator::DBFloatPayload)};
    return (m_pAlgo->getBankData(m_pAlgo, &query) == 0)
               ? static_cast<const kirodbstatscalculator::DBFloatPayload*>(query.pData)->value
               : 0.0f;
}
