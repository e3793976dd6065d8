// Frames of captures: the mark of a snapshot, and the frames that a flash is measured with.

#include "core/base/ckirohistory.h"
#include "core/base/kirolog.h"

VOID CKIROHistory::SetSnapshot()
{
    AECFrameHistory* pFrame    = GetInternalFrameHistory(0);
    const UINT64     currentID = (m_currMode.m_isCurFrameIDValid == TRUE) ? m_currMode.m_curFrameID : 0;
    if (pFrame != nullptr && pFrame->frameID == currentID)
    {
        // The frame has been saved already.
        pFrame->bIsSnapshot = TRUE;
        return;
    }
    if (pFrame == nullptr)
    {
        STATS_LOG_ERROR("previous frame is null");
    }
    m_bIsSnapshotEOF = TRUE;
    m_snapshotFID    = currentID;
}

VOID CKIROHistory::SaveFlashFrame(KIROExtFlashCurrentType type)
{
    const AECFrameHistory* pNewest = m_currMode.m_frameList.Newest();
    if (pNewest == nullptr)
    {
        STATS_LOG_ERROR("AECFlash error empty history");
        return;
    }
    if (type == KIROExtFlashCurrentType::Low)
    {
        m_bIsflashLowSet = TRUE;
        m_flashLowFrame  = *pNewest;
        STATS_LOG_RARE("AECFlash LOW saved safe exposure %llu",
                       m_flashLowFrame.exposureSets[AECAlgoExposureSafe].exposure);
    }
    else
    {
        m_bIsflashLowSet = FALSE;
        m_flashOffFrame  = *pNewest;
        STATS_LOG_RARE("AECFlash OFF saved safe exposure %llu targets %llu %llu %llu",
                       m_flashOffFrame.exposureSets[AECAlgoExposureSafe].exposure,
                       m_flashOffFrame.exposureTargets[AECAlgoExposureShort],
                       m_flashOffFrame.exposureTargets[AECAlgoExposureLong],
                       m_flashOffFrame.exposureTargets[AECAlgoExposureSafe]);
    }
}

const AECFrameHistory* CKIROHistory::GetFlashFrame(KIROExtFlashCurrentType type) const
{
    if (type == KIROExtFlashCurrentType::Off)
    {
        return &m_flashOffFrame;
    }
    return (m_bIsflashLowSet == TRUE) ? &m_flashLowFrame : nullptr;
}
