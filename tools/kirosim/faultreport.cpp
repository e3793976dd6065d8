#include "tools/kirosim/faultreport.h"

#include <fmt/format.h>

namespace kirosim
{

bool FaultReport::IsAskedBy(const Scene& rScene)
{
    const Sensor& rSensor = rScene.sensor;
    return rSensor.GainDelay() != rSensor.TimeDelay() || rSensor.delayError != 0 || rSensor.dropped > 0.0 ||
           rSensor.late > 0.0;
}

FaultReport::FaultReport(const Scene& rScene) : m_toldDelay(rScene.sensor.ToldDelay())
{
}

VOID FaultReport::Add(const FrameRecord& rRecord)
{
    m_dropped += rRecord.fault.isDropped ? 1 : 0;
    m_late += rRecord.fault.isLate ? 1 : 0;
    m_goesBy    = rRecord.delay.told;
    m_seenDelay = rRecord.delay.seen;
    if (m_seenDelay.has_value() && !m_seenAt.has_value())
    {
        m_seenAt = rRecord.sceneTime;
    }
}

std::string FaultReport::Format() const
{
    return fmt::format("statistics missing of {} frames, decisions late in {}\n", m_dropped, m_late) + FormatDelay();
}

std::string FaultReport::FormatDelay() const
{
    if (!m_seenDelay.has_value())
    {
        return fmt::format("the pipeline delay says {}; the exposure changed too little to see the true one\n",
                           m_toldDelay);
    }
    return fmt::format("statistics follow a decision after {} frames, the pipeline delay says {}: seen at {:.2f} s{}\n",
                       *m_seenDelay, m_toldDelay, *m_seenAt, (m_goesBy != m_toldDelay) ? ", and corrected" : "");
}

TextItem FaultReport::Facts() const
{
    return {"sensorFaults", JsonObject({{"missingStatistics", Json(m_dropped)},
                                        {"lateDecisions", Json(m_late)},
                                        {"pipelineDelay", Json(m_toldDelay)},
                                        {"seenDelay", Json(m_seenDelay)},
                                        {"seenAtS", Json(m_seenAt)},
                                        {"delayInUse", Json(m_goesBy)}})};
}

}  // namespace kirosim
