#include "host/scenechangewatch.h"

SceneChangeWatch::SceneChangeWatch(IKIROCoreAlgo* pAlgo, const std::vector<SceneChangeDetector>& rDetectors)
    : m_pAlgo(pAlgo), m_detectors(rDetectors)
{
}

std::vector<SceneChangeReading> SceneChangeWatch::Read()
{
    std::vector<SceneChangeReading> readings;
    for (const SceneChangeDetector& rDetector : m_detectors)
    {
        SceneChangeReading reading{rDetector.id, false, {}};
        reading.isTuned = m_pAlgo->GetSCDOutput(m_pAlgo, rDetector.id, reading.output) == TRUE;
        if (reading.isTuned && rDetector.isHosts && reading.output.scState == KIROSCDStateSCPostStable)
        {
            m_pAlgo->RebaseSCD(m_pAlgo, rDetector.id);
        }
        readings.push_back(reading);
    }
    return readings;
}
