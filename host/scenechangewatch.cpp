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
        KIROSCDOutput output{};
        const bool    isTuned = m_pAlgo->GetSCDOutput(m_pAlgo, rDetector.id, output) == TRUE;
        readings.push_back(
            {rDetector.id, (output.pName != nullptr) ? output.pName : "", isTuned, output.scState, output.htState});
        if (isTuned && rDetector.isHosts && output.scState == KIROSCDStateSCPostStable)
        {
            m_pAlgo->RebaseSCD(m_pAlgo, rDetector.id);
        }
    }
    return readings;
}
