#include "tools/kirosim/sensorinput.h"

#include "tools/kirosim/scenevalues.h"

namespace kirosim
{

namespace
{

constexpr DOUBLE NsPerUs   = 1000.0;
constexpr UINT64 DelayMax  = 9;
constexpr DOUBLE GainMin   = 1e-3;
constexpr DOUBLE GainMax   = 1e4;
constexpr DOUBLE TimeUsMin = 1.0;
constexpr DOUBLE TimeUsMax = 1e7;

const SceneTable<Sensor>& SensorTable()
{
    static const SceneTable<Sensor> table(
        "a sensor", "member of a sensor",
        {{"latency", Whole(&Sensor::latency, 1, DelayMax), "frames", "from a decision to the statistics that show it"},
         {"gainDelay", Whole(&Sensor::gainDelay, 1, DelayMax), "frames",
          "from a gain to the statistics that show it, if another than the latency; the host writes what is quicker "
          "later, so that gain and time take effect in one frame"},
         {"timeDelay", Whole(&Sensor::timeDelay, 1, DelayMax), "frames", "the same of an exposure time"},
         {"delayError", Whole(&Sensor::delayError, -8, 8), "frames",
          "pipeline delay that the host is told, less the true one: the slower of gain and time; the sum is 1 to 9"},
         {"correctDelay", Flag(&Sensor::isDelayCorrected), "",
          "whether the host corrects that delay once its watch has seen another one"},
         {"dropped", Number(&Sensor::dropped, 0.0, 100.0), "percent",
          "share of frames, by the seed, whose statistics are missing: the last decision stands for one more frame"},
         {"late", Number(&Sensor::late, 0.0, 100.0), "percent",
          "share of decisions, by the seed, that come a frame late: the sensor stays at the one before meanwhile"},
         {"minGain", Number(&Sensor::minGain, GainMin, GainMax), "linear", "smallest gain"},
         {"maxGain", Number(&Sensor::maxGain, GainMin, GainMax), "linear", "largest gain"},
         {"gainStep", Number(&Sensor::gainStep, 1e-6, 1.0), "linear", "gains are multiples of it"},
         {"lineTimeUs", Number(&Sensor::lineTime, 0.1, 1000.0, 1e-6), "us", "exposure times are multiples of it"},
         {"minTimeUs", Number(&Sensor::minTime, TimeUsMin, TimeUsMax, NsPerUs), "us", "shortest exposure time"},
         {"maxTimeUs", Number(&Sensor::maxTime, TimeUsMin, TimeUsMax, NsPerUs), "us", "longest exposure time"},
         {"readoutMs", Number(&Sensor::readout, 0.0, 1000.0, 1e-3), "ms",
          "from the first row to the last: rows begin one after another"},
         {"bitDepth", Whole(&Sensor::bitDepth, 0, 16), "bits", "depth of the statistics, whose full scale it gives"},
         {"regionNoise", Number(&Sensor::regionNoise, 0.0, 1.0), "share of the value", "sigma of a region's noise"},
         {"shotNoise", Number(&Sensor::shotNoise, 0.0, 1.0), "share of full scale",
          "sigma of a full-scale region's shot noise at unity gain"},
         {"readNoise", Number(&Sensor::readNoise, 0.0, 1.0), "share of full scale", "sigma of the read noise"},
         {"sensitivity", Number(&Sensor::sensitivity, 1e-3, 1e3), "linear", "signal against a sensor of unity"}});
    return table;
}

}  // namespace

SceneValue<Scene> SensorValue()
{
    return Then(Map(&Scene::sensor, SensorTable),
                [](const SceneText& rText, const tuningfile::YamlEntry& rEntry, Scene& rScene)
                {
                    const Sensor& rSensor = rScene.sensor;
                    if (rSensor.minGain > rSensor.maxGain || rSensor.minTime > rSensor.maxTime)
                    {
                        rText.Input().Fail(rEntry.value, "a sensor's minimum lies above its maximum");
                    }
                    if (rSensor.ToldDelay() < 1 || rSensor.ToldDelay() > static_cast<INT32>(DelayMax))
                    {
                        rText.Input().Fail(rEntry.value, "the delay that the host is told must be 1 to " +
                                                             std::to_string(DelayMax) + " frames, not " +
                                                             std::to_string(rSensor.ToldDelay()));
                    }
                });
}

}  // namespace kirosim
