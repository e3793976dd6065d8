#include "tools/kirosim/outsidesources.h"

#include <array>
#include <cmath>
#include <vector>

namespace kirosim
{

namespace
{

constexpr DOUBLE GyroHertz = 200.0;
constexpr UINT64 ShakeSeed = 11;

/// Samples of one frame at most, so that a slow frame rate does not fill the memory.
constexpr size_t GyroSamplesMax = 1024;

DOUBLE ShakeAt(const std::vector<GyroPoint>& rPoints, DOUBLE time)
{
    DOUBLE rms = 0.0;
    for (const GyroPoint& rPoint : rPoints)
    {
        rms = (rPoint.time <= time) ? rPoint.rms : rms;
    }
    return rms;
}

}  // namespace

OutsideSources::OutsideSources(const Scene& rScene) : m_rScene(rScene), m_shake(ShakeSeed), m_samplesDelivered(0)
{
}

VOID OutsideSources::StartRound()
{
    m_shake            = RandomStream(ShakeSeed);
    m_samplesDelivered = 0;
}

VOID OutsideSources::Deliver(DOUBLE time, KiroExternalData& rHost)
{
    if (m_rScene.map.has_value())
    {
        DeliverMap(time, rHost);
    }
    if (!m_rScene.gyro.empty())
    {
        DeliverGyro(time, rHost);
    }
}

VOID OutsideSources::DeliverMap(DOUBLE time, KiroExternalData& rHost) const
{
    const OutsideMap&                            rMap   = *m_rScene.map;
    const bool                                   isHere = time >= rMap.appears && time < rMap.goes;
    std::array<FLOAT, KiroExternalData::MapSize> cells{};
    for (UINT32 cell = 0; isHere && cell < KiroExternalData::MapSize; ++cell)
    {
        const UINT32 row       = cell / KiroExternalData::MapWidth;
        const DOUBLE x         = (cell % KiroExternalData::MapWidth + 0.5) / KiroExternalData::MapWidth;
        const DOUBLE y         = (row + 0.5) / KiroExternalData::MapWidth;
        const bool   isObject  = m_rScene.object.has_value() && m_rScene.object->Covers(time, x, y);
        const DOUBLE distance  = isObject ? rMap.near : rMap.far;
        const DOUBLE selection = isObject ? 1.0 : 0.0;
        cells[cell]            = static_cast<FLOAT>((rMap.kind == MapKind::Depth) ? distance : selection);
    }
    if (rMap.kind == MapKind::Depth)
    {
        rHost.SetDepthMap(cells);
    }
    else
    {
        rHost.SetSegmentationMap(cells);
    }
}

/// The gyro delivers magnitudes at its own rate, whatever the frame rate.
VOID OutsideSources::DeliverGyro(DOUBLE time, KiroExternalData& rHost)
{
    std::vector<FLOAT> samples;
    const UINT64       due = static_cast<UINT64>(std::floor(time * GyroHertz)) + 1;
    for (; m_samplesDelivered < due; ++m_samplesDelivered)
    {
        const DOUBLE rms = ShakeAt(m_rScene.gyro, static_cast<DOUBLE>(m_samplesDelivered) / GyroHertz);
        samples.insert(samples.begin(), static_cast<FLOAT>(std::abs(rms * m_shake.NextGaussian())));
    }
    samples.resize(std::min(samples.size(), GyroSamplesMax));
    rHost.AddGyroSamples(samples);
}

OutsideState OutsideSources::StateOf(const KiroExternalData& rHost) const
{
    OutsideState state{};
    if (m_rScene.map.has_value())
    {
        state.trackedCells =
            rHost.TrackedCells((m_rScene.map->kind == MapKind::Depth) ? KiroExternalData::TrackedDepthMapDataID
                                                                      : KiroExternalData::TrackedSegmentationDataID);
    }
    if (!m_rScene.gyro.empty())
    {
        state.gyro = rHost.FilteredGyro();
    }
    return state;
}

}  // namespace kirosim
