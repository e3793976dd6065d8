#include "core/base/ckirohistory.h"

#include "core/base/kirolog.h"
#include "interface/kiroresults.h"

using kiroarbitration::EVMinus;
using kiroarbitration::EVOffsetType;
using kiroarbitration::EVPlus;
using kiroarbitration::EVZero;
using kiroarbitration::SnapshotSearchMethod;

namespace
{

EVOffsetType OffsetTypeOf(INT32 evUIVal)
{
    if (evUIVal == 0)
    {
        return EVZero;
    }
    return (evUIVal > 0) ? EVPlus : EVMinus;
}

}  // namespace

/// The links stand beside the frame's ID: a walk over the list reads no more than them.
struct CKIROHistory::FrameNode
{
    TavoPtr<FrameNode> pOlder;
    FrameNode*         pNewer;
    AECFrameHistory    frame;
};

CKIROHistory::SpareNodes::SpareNodes() = default;

CKIROHistory::SpareNodes::~SpareNodes() = default;

TavoPtr<CKIROHistory::FrameNode> CKIROHistory::SpareNodes::Take()
{
    if (m_pFirst == nullptr)
    {
        return TavoNew<FrameNode>();
    }
    TavoPtr<FrameNode> pNode = std::move(m_pFirst);
    m_pFirst                 = std::move(pNode->pOlder);
    return pNode;
}

VOID CKIROHistory::SpareNodes::Return(TavoPtr<FrameNode> pNode)
{
    while (pNode != nullptr)
    {
        TavoPtr<FrameNode> pOlder = std::move(pNode->pOlder);
        pNode->pOlder             = std::move(m_pFirst);
        m_pFirst                  = std::move(pNode);
        pNode                     = std::move(pOlder);
    }
}

CKIROHistory::MyList::MyList(SpareNodes& rSpares) : m_length(0), m_rSpares(rSpares), m_pOldest(nullptr)
{
}

CKIROHistory::MyList::~MyList() = default;

bool CKIROHistory::MyList::PushFront(const AECFrameHistory& rFrame)
{
    TavoPtr<FrameNode> pNode = m_rSpares.Take();
    if (pNode == nullptr)
    {
        STATS_LOG_ERROR("no memory for frame %llu", rFrame.frameID);
        return false;
    }
    pNode->frame  = rFrame;
    pNode->pNewer = nullptr;
    pNode->pOlder = std::move(m_pNewest);
    if (pNode->pOlder != nullptr)
    {
        pNode->pOlder->pNewer = pNode.get();
    }
    else
    {
        m_pOldest = pNode.get();
    }
    m_pNewest = std::move(pNode);
    ++m_length;
    return true;
}

TavoPtr<CKIROHistory::FrameNode> CKIROHistory::MyList::TakeBack()
{
    m_pOldest                   = m_pOldest->pNewer;
    TavoPtr<FrameNode>& rpOwner = (m_pOldest != nullptr) ? m_pOldest->pOlder : m_pNewest;
    --m_length;
    return std::move(rpOwner);
}

VOID CKIROHistory::MyList::Clear()
{
    m_rSpares.Return(std::move(m_pNewest));
    m_pOldest = nullptr;
    m_length  = 0;
}

AECFrameHistory* CKIROHistory::MyList::Newest() const
{
    return (m_pNewest != nullptr) ? &m_pNewest->frame : nullptr;
}

AECFrameHistory* CKIROHistory::MyList::Oldest() const
{
    return (m_pOldest != nullptr) ? &m_pOldest->frame : nullptr;
}

template <typename Predicate> AECFrameHistory* CKIROHistory::MyList::Find(Predicate&& predicate) const
{
    for (FrameNode* pNode = m_pNewest.get(); pNode != nullptr; pNode = pNode->pOlder.get())
    {
        if (predicate(pNode->frame))
        {
            return &pNode->frame;
        }
    }
    return nullptr;
}

AECFrameHistory* CKIROHistory::MyList::FindByOffset(UINT64 currentID, UINT64 offset) const
{
    AECFrameHistory* pFrame = Find([=](const AECFrameHistory& rFrame) { return rFrame.frameID + offset <= currentID; });
    return (pFrame != nullptr) ? pFrame : Oldest();
}

CKIROHistory::ModeInfo::ModeInfo(SpareNodes& rSpares) : m_frameList(rSpares), m_lastFrameOrig{}
{
    Reset();
}

VOID CKIROHistory::ModeInfo::Reset()
{
    m_isValidPrevMode           = FALSE;
    m_isStartConfigSaved        = FALSE;
    m_startConfig               = {};
    m_startConfig.isStartConfig = TRUE;
    m_isCurFrameIDValid         = FALSE;
    m_curFrameID                = 0;
    m_frameList.Clear();
}

VOID CKIROHistory::ModeInfo::SetAsPreviousMode(ModeInfo& rMode)
{
    m_isValidPrevMode    = TRUE;
    m_isStartConfigSaved = rMode.m_isStartConfigSaved;
    m_startConfig        = rMode.m_startConfig;
    m_isCurFrameIDValid  = rMode.m_isCurFrameIDValid;
    m_curFrameID         = rMode.m_curFrameID;
    m_frameList.Clear();
    m_lastFrameOrig = *rMode.m_frameList.Newest();
    m_frameList.PushFront(m_lastFrameOrig);
}

KiroResult CKIROHistory::ModeInfo::SaveCurrentFrameID(UINT64 frameID)
{
    if (m_isCurFrameIDValid == TRUE && m_curFrameID >= frameID)
    {
        STATS_LOG_ERROR("Current stats frame ID (%llu) is invalid, not larger than previous (%llu)!", frameID,
                        m_curFrameID);
        return ResultFailed;
    }
    m_isCurFrameIDValid = TRUE;
    m_curFrameID        = frameID;
    return 0;
}

CKIROHistory::CKIROHistory()
    : m_maxFrameHistorySize(FrameCountMax), m_currMode(m_spares), m_found{},
      m_prevMode(m_spares), m_flashOffFrame{}, m_flashLowFrame{}, m_bIsflashLowSet(FALSE), m_bIsSnapshotEOF(FALSE),
      m_snapshotFID(0), m_snapshotList(m_spares)
{
}

CKIROHistory::~CKIROHistory() = default;

KiroResult CKIROHistory::SaveFrameToHistory(AECFrameHistory* pFrame)
{
    if (m_bIsSnapshotEOF == TRUE && m_snapshotFID == pFrame->frameID)
    {
        pFrame->bIsSnapshot = TRUE;
    }
    m_bIsSnapshotEOF = FALSE;
    m_snapshotFID    = 0;

    if (pFrame->isStartConfig == TRUE)
    {
        m_currMode.m_startConfig        = *pFrame;
        m_currMode.m_isStartConfigSaved = TRUE;
        return 0;
    }

    m_found.fill(nullptr);

    MyList&                rFrames = m_currMode.m_frameList;
    const AECFrameHistory* pNewest = rFrames.Newest();
    if (pNewest != nullptr && pNewest->frameID >= pFrame->frameID)
    {
        STATS_LOG_ERROR("Saved frame ID is too small! Skipping...");
        return ResultInvalidArgument;
    }
    if (!rFrames.PushFront(*pFrame))
    {
        return ResultOutOfMemory;
    }
    if (rFrames.m_length > m_maxFrameHistorySize)
    {
        TavoPtr<FrameNode> pOldest = rFrames.TakeBack();
        if (pOldest->frame.bIsSnapshot != TRUE)
        {
            pOldest.swap(m_pPreviewBackup);
        }
        m_spares.Return(std::move(pOldest));
    }
    return 0;
}

VOID CKIROHistory::SaveSnapshotFrame(AECFrameHistory* pFrame)
{
    m_snapshotList.PushFront(*pFrame);
    if (m_snapshotList.m_length > m_maxFrameHistorySize)
    {
        m_spares.Return(m_snapshotList.TakeBack());
    }
}

AECFrameHistory* CKIROHistory::FindFrame(UINT8 offset)
{
    if (m_currMode.m_isStartConfigSaved == FALSE)
    {
        STATS_LOG_ERROR("Frame History: No start configuration! returning NULL");
        return nullptr;
    }
    if (m_currMode.m_isCurFrameIDValid == FALSE)
    {
        STATS_LOG_TRACE("Frame history: returning start config");
        return &m_currMode.m_startConfig;
    }
    if (offset > m_maxFrameHistorySize)
    {
        STATS_LOG_ERROR("Input offset (%d) is bigger than the frame history buffer size (%d)!", offset,
                        m_maxFrameHistorySize);
        return nullptr;
    }
    AECFrameHistory* pFrame = m_currMode.m_frameList.FindByOffset(m_currMode.m_curFrameID, offset);
    m_found[offset]         = (pFrame != nullptr) ? pFrame : &m_currMode.m_startConfig;
    return m_found[offset];
}

const AECFrameHistory* CKIROHistory::FindPreviewFrame(UINT32 end)
{
    const AECFrameHistory* pBackup = nullptr;
    for (UINT32 offset = 1; offset < end; ++offset)
    {
        const AECFrameHistory* pFrame = GetFrameHistory(static_cast<UINT8>(offset));
        if (pFrame == nullptr)
        {
            break;
        }
        if (pFrame->bIsSnapshot == FALSE)
        {
            return pFrame;
        }
        pBackup = GetPreviewBackup();
    }
    return pBackup;
}

const AECFrameHistory* CKIROHistory::GetPreviousNonSnapshotFrame()
{
    const AECFrameHistory* pFrame = FindPreviewFrame(m_maxFrameHistorySize);
    return (pFrame != nullptr) ? pFrame : GetPreviewBackup();
}

VOID CKIROHistory::FinishCurrentModeHistory(AECAlgoOperationModeType prevMode)
{
    const bool bFastMode = prevMode == AECAlgoOperationModeFastAEC || prevMode == AECAlgoOperationModeAggressiveAEC;
    if (IsCurrentModeHistoryEmpty() == TRUE)
    {
        if (prevMode != AECAlgoOperationModeInit)
        {
            STATS_LOG_TRACE("No frames in history!");
        }
    }
    else if (bFastMode || prevMode == AECAlgoOperationModeStreaming)
    {
        m_prevMode.SetAsPreviousMode(m_currMode);
    }
    // Streaming continues from the history of a fast mode.
    if (!bFastMode)
    {
        InitializeHistory();
    }
}

KiroResult CKIROHistory::SaveCurrentFrameID(UINT64 frameID)
{
    m_found.fill(nullptr);
    return m_currMode.SaveCurrentFrameID(frameID);
}

VOID CKIROHistory::InitializeHistory()
{
    m_found.fill(nullptr);
    m_currMode.Reset();
}

BOOL CKIROHistory::IsStartConfigSaved() const
{
    return m_currMode.m_isStartConfigSaved;
}

BOOL CKIROHistory::IsCurrentModeHistoryEmpty() const
{
    return (m_currMode.m_frameList.m_length == 0) ? TRUE : FALSE;
}

UINT64 CKIROHistory::GetCurrentFrameID() const
{
    return m_currMode.m_curFrameID;
}

UINT32 CKIROHistory::GetFrameCount() const
{
    return m_currMode.m_frameList.m_length;
}

const AECFrameHistory* CKIROHistory::GetPreviewBackup() const
{
    return (m_pPreviewBackup != nullptr && m_pPreviewBackup->frame.frameID != 0) ? &m_pPreviewBackup->frame : nullptr;
}

BOOL CKIROHistory::GetPrevModeLastFrame(AECFrameHistory& rLastFrame) const
{
    const AECFrameHistory* pLast = m_prevMode.m_frameList.Newest();
    if (m_prevMode.m_isValidPrevMode == FALSE || pLast == nullptr)
    {
        return FALSE;
    }
    rLastFrame = *pLast;
    return TRUE;
}

const AECFrameHistory*
CKIROHistory::GetSnapshotFrameHistory(const kiroarbitration::SnapshotFrameSelectionType* pSelection)
{
    const INT32 value = pSelection->value;
    switch (pSelection->searchMethod)
    {
    case SnapshotSearchMethod::SearchEVType:
        return m_snapshotList.Find([=](const AECFrameHistory& rFrame)
                                   { return OffsetTypeOf(rFrame.evUIVal) == pSelection->eVType; });
    case SnapshotSearchMethod::SearchEVUIVal:
        return m_snapshotList.Find([=](const AECFrameHistory& rFrame) { return rFrame.evUIVal == value; });
    case SnapshotSearchMethod::SearchOffset:
        if (value > m_maxFrameHistorySize)
        {
            STATS_LOG_ERROR("Input offset %d is bigger than the snapshot history size %d", value,
                            m_maxFrameHistorySize);
            return nullptr;
        }
        if (value >= static_cast<INT32>(m_snapshotList.m_length))
        {
            STATS_LOG_ERROR("Input offset %d is >= history buffer size %d", value,
                            static_cast<INT32>(m_snapshotList.m_length));
            return nullptr;
        }
        // A negative offset looks ahead of the current frame; the sum wraps as it should.
        return m_snapshotList.FindByOffset(m_currMode.m_curFrameID, static_cast<UINT64>(value));
    default:
        STATS_LOG_ERROR("Unknown search type %d", static_cast<INT32>(pSelection->searchMethod));
        return nullptr;
    }
}
