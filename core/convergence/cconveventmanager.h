/// @file
/// Events that fix the target of convergence: camera sync lock, AEC lock, EV compensation, post-raw gain.
#pragma once

#include "core/ikirocontextmanager.h"

/// Targets of a frame, indexed by AECAlgoExposureType.
struct KIROConvTempInput
{
    DOUBLE sensiLog103[3];  ///< log domain; events and smooth nodes rewrite these
    UINT64 exposures[3];    ///< as metered, never rewritten
    BOOL   bIsMeteringSkipped;
};

/// Snapshot of the inputs that events compare from frame to frame.
struct ConvEventContext
{
    INT32           evAppVal;
    INT32           postRawSIBoost;
    UINT8           postRawCounter;
    AECAlgoLockType lock;
    DOUBLE          lockedConvergedExposureLog103[3];
    UINT64          lockedConvergedExposure[3];  ///< captured at the lock, without the EV factor
    FLOAT           previewEVMult;
    BOOL            bIsSlave;
};

class CConvEventManager
{
public:
    explicit CConvEventManager(IKIROContextManager& rContextManager);

    /// Called once per frame. Rewrites the log targets where an event demands an exact exposure.
    /// @return 1 when the targets are to be adopted at once
    BOOL IsTargetFixed(KIROConvTempInput& rConvTempIn);

    /// @param pLockedExposure three exposures: the locked ones while the lock is on, otherwise zeros
    VOID GetLockedEV0(UINT64* pLockedExposure) const;

    const ConvEventContext* GetConvContext() const
    {
        return &m_context;
    }

private:
    struct CamSyncLockConfig
    {
        BOOL  applyLock;
        INT32 lockFrameCounter;
    };

    VOID HandleCamSync(const ConvEventContext& rOld, BOOL& rIsFixed, DOUBLE* pTargetExposuresLog103);
    VOID ApplyLock(const ConvEventContext& rOld, BOOL& rIsFixed, DOUBLE* pTargetExposuresLog103);
    VOID CaptureLockedExposures(const DOUBLE* pTargetExposuresLog103);
    VOID ApplyEV(const ConvEventContext& rOld, BOOL& rIsFixed, DOUBLE* pTargetExposuresLog103);
    VOID ApplyPostRawSensitivityBoost(BOOL& rIsFixed, DOUBLE* pTargetExposuresLog103);

    IKIROContextManager& m_rContextManager;
    ConvEventContext     m_context;  ///< of the frame, and until the next one that of the frame before
    CamSyncLockConfig    m_camSyncLock;
};
