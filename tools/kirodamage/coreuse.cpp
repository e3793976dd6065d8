#include "tools/kirodamage/coreuse.h"

#include <malloc.h>

#include "host/discardlog.h"
#include "host/kirohost.h"
#include "tools/kirosim/loadedtuning.h"
#include "tools/kirosim/sensormodel.h"

namespace kirodamage
{

namespace
{

constexpr UINT32 FramesPerMode = 5;  ///< the first ones are no stream yet
constexpr UINT64 Exposure      = 10000000;

/// What the frames show, and the library: the same for all files, and made once.
class Stage
{
public:
    Stage() : m_sensor(m_scene)
    {
    }

    KiroHostConfig ConfigFor(const StatsTuningData& rTuning) const
    {
        const kirosim::Sensor& rSensor = m_scene.sensor;
        const FLOAT            fps     = static_cast<FLOAT>(m_scene.fps);
        KiroHostConfig         config{};
        config.tuning      = rTuning;
        config.sensorRange = {static_cast<FLOAT>(rSensor.minGain), static_cast<FLOAT>(rSensor.maxGain), rSensor.minTime,
                              rSensor.maxTime};
        config.indexZeroExposure = rSensor.minTime;
        config.startExposure     = Exposure;
        config.systemLatency     = rSensor.latency;
        config.FPSRange          = {fps, fps};
        return config;
    }

    KIROStatsList& Capture(UINT64 frame)
    {
        const kirosim::AppliedExposure shown[AECAlgoExposureCount] = {
            {1.0, Exposure}, {1.0, Exposure}, {1.0, Exposure}};
        kirosim::FrameTruth unused{};
        return m_sensor.Capture(frame, 0.0, shown, unused);
    }

    const KiroCoreLibrary& Library() const
    {
        return m_library;
    }

private:
    const kirosim::Scene m_scene{};
    kirosim::SensorModel m_sensor;
    KiroCoreLibrary      m_library;
};

}  // namespace

CoreUse RunCore(TuningSetManager& rStore, std::mt19937_64& rRandom)
{
    static Stage stage;

    std::vector<TuningMode> modes = kirosim::DefaultSelectors();
    std::vector<TuningMode> other = modes;
    for (size_t level = 1; level < other.size(); ++level)
    {
        other[level].subMode.value = static_cast<UINT16>(rRandom() % 3);
    }
    const auto dataOf = [&rStore](std::vector<TuningMode>& rModes) {
        return StatsTuningData{&rStore, rModes.data(), static_cast<UINT>(rModes.size())};
    };

    KiroHost   host(stage.Library(), stage.ConfigFor(dataOf(modes)), DiscardLog);
    UINT64     frame     = 0;
    const auto runFrames = [&]
    {
        for (UINT32 count = 0; count < FramesPerMode; ++count)
        {
            ++frame;
            (VOID) host.RunFrame(frame, stage.Capture(frame));
        }
    };
    runFrames();
    host.SetTuning(dataOf(other));
    runFrames();
    if (rStore.ReloadBinaryParameters(false))
    {
        host.SetTuning(dataOf(modes));
        runFrames();
    }
    return {frame, static_cast<INT64>(malloc_usable_size(host.Algo()))};
}

}  // namespace kirodamage
