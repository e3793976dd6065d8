#include "core/ckiroscenechangedetector.h"

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/base/tuningvalues.h"

CSCDManager::CSCDManager(IKIROContextManager& rContextManager) : m_rContextManager(rContextManager)
{
    UpdateSCDetectors();
    InitializeDetectors();
}

VOID CSCDManager::UpdateSCDetectors()
{
    m_tuning.Refresh(tuningaccess::Get_kiroscenechangedetector(*m_rContextManager.GetTuningData()),
                     [this](const Tuning* pTuning) { Rebuild(pTuning); });
}

VOID CSCDManager::Rebuild(const Tuning* pTuning)
{
    const Tuning& rTuning = tuningaccess::OrZeros(pTuning);
    m_detectors.reset(tuningvalues::CountOf(rTuning.scdBank, rTuning.scdBankCount));
    for (UINT32 index = 0; index < m_detectors.size(); ++index)
    {
        m_detectors[index].SetDetectorTuning(&rTuning.scdBank[index], m_rContextManager);
    }
    STATS_LOG_RARE("KIROSCND Update Scene change detector SCDCount %d", m_detectors.size());
}

VOID CSCDManager::InitializeDetectors()
{
    for (CSCDetector& rDetector : m_detectors)
    {
        rDetector.Rebase();
    }
}

VOID CSCDManager::RunSCDetectors(CSCDetector::RunPriority priority, BOOL bStatsValid)
{
    UpdateSCDetectors();
    for (CSCDetector& rDetector : m_detectors)
    {
        if (rDetector.GetPriority() == priority)
        {
            rDetector.Run(bStatsValid);
        }
    }
}

/// Tunings may hold an ID twice; the last detector answers. Called between stages, when the record of the detectors may
/// have been replaced, hence the refresh.
CSCDetector* CSCDManager::GetSCD(UINT32 id)
{
    UpdateSCDetectors();
    CSCDetector* pFound = nullptr;
    for (CSCDetector& rDetector : m_detectors)
    {
        if (rDetector.GetID() == id)
        {
            pFound = &rDetector;
        }
    }
    return pFound;
}

VOID CSCDManager::Rebase(UINT32 id)
{
    if (CSCDetector* pDetector = GetSCD(id))
    {
        pDetector->Rebase();
    }
}

BOOL CSCDManager::GetSCDOutput(UINT32 id, KIROSCDOutput& rOutput)
{
    const CSCDetector* pDetector = GetSCD(id);
    if (pDetector == nullptr)
    {
        return FALSE;
    }
    pDetector->GetSCDOutput(rOutput);
    return TRUE;
}
