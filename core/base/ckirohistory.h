/// @file
/// Record of past frames.
#pragma once

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

    /// Stores a copy. @return 0, or 4 when the frame's ID is not above the newest one's
    KiroResult SaveFrameToHistory(AECFrameHistory* pFrame);
    VOID       SaveSnapshotFrame(AECFrameHistory* pFrame);

    /// @param offset frames back, by frame ID; 0 is the frame in progress, at most 10
    /// @return null without a start configuration or for an offset above 10
    const AECFrameHistory* GetFrameHistory(UINT8 offset);
    AECFrameHistory*       GetInternalFrameHistory(UINT8 offset);

    /// @return null if only snapshot frames are known
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

    /// @return 1 with the last frame of the last finished mode, otherwise 0
    BOOL GetPrevModeLastFrame(AECFrameHistory& rLastFrame) const;

    VOID                   SaveFlashFrame(KIROExtFlashCurrentType type);
    const AECFrameHistory* GetFlashFrame(KIROExtFlashCurrentType type) const;
    const AECFrameHistory* GetSnapshotFrameHistory(const kiroarbitration::SnapshotFrameSelectionType* pSelection);

    /// Marks the frame in progress as a snapshot, now or when it is saved.
    VOID SetSnapshot();

private:
    struct FrameNode;

    /// Newest frame at the front.
    class MyList
    {
    public:
        MyList();
        ~MyList();
        MyList(const MyList&)            = delete;
        MyList& operator=(const MyList&) = delete;

        VOID PushFront(const AECFrameHistory& rFrame);
        VOID PopBack();
        VOID Clear();

        FrameNode* m_pNewest;
        FrameNode* m_pOldest;
        UINT32     m_length;
    };

    class ModeInfo
    {
    public:
        ModeInfo();

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

    const UINT8     m_maxFrameHistorySize;
    ModeInfo        m_currMode;
    ModeInfo        m_prevMode;
    AECFrameHistory m_flashOffFrame;
    AECFrameHistory m_flashLowFrame;
    AECFrameHistory m_previewBackup;
    BOOL            m_bIsflashLowSet;
    BOOL            m_bIsSnapshotEOF;
    UINT64          m_snapshotFID;
    MyList          m_snapshotList;
};
