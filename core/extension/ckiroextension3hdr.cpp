// Whether a snapshot of three exposures is worth it.

#include <algorithm>

#include "core/base/kirolog.h"
#include "core/extension/ckiroextensionmonitor.h"

using namespace kiroextension;

VOID CKIROExtensionMonitor::Get3HDRSnapshotInfo(const KIROExtensionInput* pExtensionInput, const Tuning* pTuning)
{
    m_3HDROut              = {};
    const bool isRequested = m_rContext.GetContextEvent(AECCoreSnapshotHDR3) == TRUE;
    if (pTuning == nullptr)
    {
        STATS_LOG_ERROR("no tuning data 2");
    }
    else if (!m_3HDRMonitor.IsTuningSet())
    {
        m_3HDRMonitor.SetTuning(&pTuning->monitor3HDRSnapshot.generalizedMonitor);
    }

    if (pTuning != nullptr && pTuning->monitor3HDRSnapshot.enable3HDRSnapshot == TRUE &&
        pExtensionInput->statisticsStartup != StatisticsStartUpInvalid)
    {
        m_3HDROut.IHDRTriggers.isTriggerInfoValid = TRUE;
        if (!isRequested)
        {
            Run3HDRMonitor(pTuning->monitor3HDRSnapshot);
            return;
        }
    }
    m_3HDROut.bIs3HDRSnapshot = isRequested ? TRUE : FALSE;
}

VOID CKIROExtensionMonitor::Run3HDRMonitor(const ExtensionMonitor3HDRSnapshot& rTuning)
{
    m_3HDRMonitor.RebaseData();
    const BOOL isPassed = m_3HDRMonitor.RunCriteriaCheck();
    Report3HDRScenes(rTuning.generalizedMonitor.scenesCount);
    if (isPassed != TRUE)
    {
        m_3HDRFrameCount = 0;
        return;
    }
    ++m_3HDRFrameCount;
    if (m_3HDRFrameCount > rTuning.frameCounterEnter)
    {
        m_3HDRFrameCount          = rTuning.frameCounterEnter;
        m_3HDROut.bIs3HDRSnapshot = TRUE;
    }
}

VOID CKIROExtensionMonitor::Report3HDRScenes(UINT32 sceneCount)
{
    InSensorHDR3ExpTriggerInfo& rInfo  = m_3HDROut.IHDRTriggers;
    BOOL*                       pFlags = rInfo.finalTriggerResult.flags;
    for (UINT32 scene = 0; scene < std::min(sceneCount, InSensorHDR3ExpFlagCount); ++scene)
    {
        pFlags[scene] = m_3HDRMonitor.GetOneSceneDecision(scene);
    }
    if (sceneCount > InSensorHDR3ExpFlagCount)
    {
        // With more scenes than flags the last flag stands for all the others, and is set whatever they decide.
        pFlags[InSensorHDR3ExpFlagCount - 1] = TRUE;
    }

    FLOAT* const values[] = {&rInfo.calculatedCDF.resultCDF0, &rInfo.calculatedCDF.resultCDF5, &rInfo.realDRCGain,
                             &rInfo.ambientRaw, &rInfo.faceLuma};
    for (UINT32 criterion = 0; criterion < std::size(values); ++criterion)
    {
        m_3HDRMonitor.GetOneRebasedData(0, criterion, *values[criterion]);
    }
}
