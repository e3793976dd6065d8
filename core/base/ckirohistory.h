/// @file
/// Record of past frames.
#pragma once

#include <array>

#include "core/base/tavomemory.h"
#include "interface/kiroframe.h"
#include "schema/kiroarbitration.h"

/// One frame. Arrays of three are indexed by AECAlgoExposureType.
struct AECFrameHistory
{
    UINT64              frameID;
    BOOL                isStartConfig;
    KIROExposureSetType exposureSets[3];
    UINT64              exposureTargets[3];
    FLOAT               averageLuma;
    FLOAT               luxIndex;
    BOOL                bIsAECSettled;
    BOOL                bIsBrightnessSettled;
    FLOAT               evFactor;
    INT32               evUIVal;
    FLOAT               predictiveGain;
    FLOAT               shortStretchOffset;
    FLOAT               FPS;
    INT32               postRawSensitivityBoost;
    BOOL                bIsSnapshot;
    FLOAT               compensationDarkBoost;
    BOOL                bIsSeamless;
    AECAlgoModeType     modeType;
    FLOAT               mfhdrLongADRC;
    FLOAT               shortBlend;
    BOOL                bSHDR_MFHDR;  ///< taken in staggered or multi-frame HDR
};

/// Keeps preview frames, snapshot frames and flash frames apart from one another, at most ten of each list.
/// A frame returned by pointer stays valid while it stays in its list.
class CKIROHistory
{
public:
    CKIROHistory();
    ~CKIROHistory();
    CKIROHistory(const CKIROHistory&)            = delete;
    CKIROHistory& operator=(const CKIROHistory&) = delete;

    /// Stores a copy: a start configuration in its own place, any other frame in the list of the running mode.
    /// @param pFrame its bIsSnapshot is set when SetSnapshot announced the frame
    /// @return 0, 4 when the frame's ID is not above the newest one's, 8 when no memory is left
    KiroResult SaveFrameToHistory(AECFrameHistory* pFrame);
    VOID       SaveSnapshotFrame(AECFrameHistory* pFrame);

    /// @param offset frames back from the frame in progress, by frame ID and not by position; at most 10
    /// @return the newest frame that is at least so old, or the oldest one; the start configuration as long as no
    ///         frame is known; null without a start configuration or for an offset above 10
    const AECFrameHistory* GetFrameHistory(UINT8 offset)
    {
        return GetInternalFrameHistory(offset);
    }

    AECFrameHistory* GetInternalFrameHistory(UINT8 offset)
    {
        AECFrameHistory* pFound = (offset < m_found.size()) ? m_found[offset] : nullptr;
        return (pFound != nullptr) ? pFound : FindFrame(offset);
    }

    /// Looks back for a frame that is no snapshot, from the frame before the one in progress on.
    /// @param end first offset that is not looked at
    /// @return the newest one; if only snapshots were met, the preview frame that last dropped out of the list, or
    ///         null; null also if no frame was met
    const AECFrameHistory* FindPreviewFrame(UINT32 end);

    /// @return the newest of the last nine frames that is no snapshot, or the last one that dropped out of the list;
    ///         null if neither is known
    const AECFrameHistory* GetPreviousNonSnapshotFrame();

    /// @param prevMode the operation mode being left
    VOID FinishCurrentModeHistory(AECAlgoOperationModeType prevMode);

    /// @return 0, or 1 when the ID is not above the last one's
    KiroResult SaveCurrentFrameID(UINT64 frameID);

    /// Forgets the running mode: its start configuration, frame ID and frames.
    VOID   InitializeHistory();
    BOOL   IsStartConfigSaved() const;
    BOOL   IsCurrentModeHistoryEmpty() const;
    UINT64 GetCurrentFrameID() const;

    UINT8 GetMaxFrameHistorySize() const
    {
        return m_maxFrameHistorySize;
    }

    /// @return frames of the running mode that the list holds
    UINT32 GetFrameCount() const;

    /// @return the newest non-snapshot frame dropped from the list, null if there is none
    const AECFrameHistory* GetPreviewBackup() const;

    /// @return 1 with the last frame of the last finished mode, otherwise 0
    BOOL GetPrevModeLastFrame(AECFrameHistory& rLastFrame) const;

    VOID                   SaveFlashFrame(KIROExtFlashCurrentType type);
    const AECFrameHistory* GetFlashFrame(KIROExtFlashCurrentType type) const;
    const AECFrameHistory* GetSnapshotFrameHistory(const kiroarbitration::SnapshotFrameSelectionType* pSelection);

    /// Marks the frame in progress as a snapshot, now or when it is saved.
    VOID SetSnapshot();

private:
    static constexpr UINT8 FrameCountMax = 10;

    struct FrameNode;

    /// Nodes that no list holds. A frame that is saved takes the node of one that has dropped out, so that a steady
    /// camera allocates nothing; the lists' lengths, and one for the preview backup, bound how many there are.
    class SpareNodes
    {
    public:
        SpareNodes();
        ~SpareNodes();

        /// @return null when there is none and no memory is left
        TavoPtr<FrameNode> Take();
        /// @param pNode and all older ones behind it
        VOID Return(TavoPtr<FrameNode> pNode);

    private:
        TavoPtr<FrameNode> m_pFirst;
    };

    /// Newest frame at the front. A node owns the next older one.
    class MyList
    {
    public:
        /// @param rSpares must outlive the list
        explicit MyList(SpareNodes& rSpares);
        ~MyList();
        MyList(const MyList&)            = delete;
        MyList& operator=(const MyList&) = delete;

        /// Stores a copy. @return false, with a log, when no memory is left
        bool PushFront(const AECFrameHistory& rFrame);
        /// The list must not be empty.
        TavoPtr<FrameNode> TakeBack();
        VOID               Clear();

        /// @return null for an empty list
        AECFrameHistory* Newest() const;
        AECFrameHistory* Oldest() const;

        /// @return the newest frame that the predicate accepts, null if there is none
        template <typename Predicate> AECFrameHistory* Find(Predicate&& predicate) const;
        /// @return the newest frame that lies at least offset IDs before currentID, or the oldest frame; null for an
        ///         empty list
        AECFrameHistory* FindByOffset(UINT64 currentID, UINT64 offset) const;

        UINT32 m_length;

    private:
        SpareNodes&        m_rSpares;
        TavoPtr<FrameNode> m_pNewest;
        FrameNode*         m_pOldest;
    };

    class ModeInfo
    {
    public:
        explicit ModeInfo(SpareNodes& rSpares);

        VOID       Reset();
        VOID       SetAsPreviousMode(ModeInfo& rMode);
        KiroResult SaveCurrentFrameID(UINT64 frameID);

        BOOL            m_isValidPrevMode;
        BOOL            m_isStartConfigSaved;
        AECFrameHistory m_startConfig;
        BOOL            m_isCurFrameIDValid;
        UINT64          m_curFrameID;
        MyList          m_frameList;
        AECFrameHistory m_lastFrameOrig;
    };

    AECFrameHistory* FindFrame(UINT8 offset);

    /// Frames of the running mode by their offset, as far as they were asked for since its frames or its ID have
    /// changed: a frame asks for the same few many times.
    typedef std::array<AECFrameHistory*, FrameCountMax + 1> FoundFrames;

    const UINT8     m_maxFrameHistorySize;
    SpareNodes      m_spares;  // of all lists and the backup below
    ModeInfo        m_currMode;
    FoundFrames     m_found;
    ModeInfo        m_prevMode;
    AECFrameHistory m_flashOffFrame;
    AECFrameHistory m_flashLowFrame;
    BOOL            m_bIsflashLowSet;
    BOOL            m_bIsSnapshotEOF;
    UINT64          m_snapshotFID;
    MyList          m_snapshotList;

    TavoPtr<FrameNode> m_pPreviewBackup;  ///< the newest node dropped from the list whose frame is no snapshot
};
