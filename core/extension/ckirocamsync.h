/// @file
/// Exposure sync of the cameras of a group.
///
/// Each camera has a core instance of its own. An instance publishes a record about its frame and reads the one of its
/// peer (interface/kiromulticam.h). According to its role it mixes its metered targets with the peer's, or follows the
/// peer's exposures outright.
#pragma once

#include "core/base/ckirotrigger.h"
#include "interface/kiroframe.h"
#include "interface/kiromulticam.h"
#include "schema/kirosync.h"

class IKIROContextManager;

/// A missing peer or tuning module turns every step into nothing.
class CKIROCamsync
{
public:
    /// @param rContManager may still be under construction; it outlives the sync
    explicit CKIROCamsync(IKIROContextManager& rContManager);
    CKIROCamsync(const CKIROCamsync&)            = delete;
    CKIROCamsync& operator=(const CKIROCamsync&) = delete;

    /// Takes ID and role of this camera; a new role selects anew how it meters and exposes.
    /// @return 0; 1 if there is no tuning for a new role, which then keeps the former way; 4 for a null argument
    KiroResult SetStatsCameraInfo(StatsCameraInfo* pCamInfo);

    /// Takes the factory calibration between the two modules, once in the life of an instance. Data with a value of 0
    /// are refused and leave it open. @return 0
    KiroResult UpdateDCCalibrationInfo(const AECAlgoDCCalibrationInfo* pInfo);

    /// Blends the targets with the peer's: by a fixed weight on a master, by their difference on a slave.
    VOID CalculateMixedTargetExposure(KIROMeteringOutput& rMtrOut);

    /// Replaces converged exposures, compensations and settle flags by the peer's.
    VOID ComputeTargetExposureInFollowMode(KIROConvergenceOutput& rConvOut);

    /// Rewrites this camera's record. @param pArbOuts one per exposure type; null is logged and leaves the record
    VOID PopulateMultiCamInfo(const KIROMeteringOutput& rMtrOut, const KIROConvergenceOutput& rConvOut,
                              const KIROArbitrationOutput* pArbOuts);

    /// @param pPeerInfo AECMultiCamInfo of the peer, not owned, read until it is replaced; null for no peer
    VOID setPeerInfo(VOID* pPeerInfo)
    {
        m_pPeerInfo = static_cast<AECMultiCamInfo*>(pPeerInfo);
    }

    const AECMultiCamInfo* getPeerInfo() const
    {
        return m_pPeerInfo;
    }

    const AECMultiCamInfo& getMyOwnInfo() const
    {
        return m_myOwnInfo;
    }

    /// @return where the address of this camera's record stands; the host hands that address to the peer
    const VOID* const* getMyOwnInfoPtrAddr() const
    {
        return &m_pMyOwnInfo;
    }

    kirosync::AECMtrConfigType getMeteringType() const
    {
        return m_meteringType;
    }

    kirosync::AECExpConfigType getExposureType() const
    {
        return m_exposureType;
    }

    const AECDualcamCalibrationInfo& getDCCalibrationInfo() const
    {
        return m_otpInfo;
    }

private:
    using Tuning = kirosync::KIROSyncType;
    using Zone   = kirosync::aecTriggerDataFloatType;

    const Tuning* GetTuning() const;

    KiroResult MapTuningToMtrExpConfig(StatsAlgoRole role);
    bool       SetAbsoluteCalibration(const AECAlgoDCCalibrationInfo& rInfo);
    bool       SetRelativeCalibration(const AECAlgoDCCalibrationInfo& rInfo);

    FLOAT GetGlobalCompensationFactor(FLOAT lux, const Tuning& rTuning);
    FLOAT GetCCTCompensationFactor(INT32 CCT, const Tuning& rTuning);
    FLOAT UtilGetLuxIndex(const Tuning& rTuning) const;
    FLOAT GetOwnLuxIndex() const;
    FLOAT Interpolate(Zone* pZones, UINT32 zoneCount, FLOAT trigger);

    VOID CalculateStaticMixedTargetExposure(KIROMeteringOutput& rMtrOut) const;
    VOID CalculateDynamicMixedTargetExposure(KIROMeteringOutput& rMtrOut);

    IKIROContextManager&       m_rContManager;
    kirosync::AECMtrConfigType m_meteringType;
    kirosync::AECExpConfigType m_exposureType;
    AECMultiCamInfo            m_myOwnInfo;
    const VOID*                m_pMyOwnInfo;
    AECDualcamCalibrationInfo  m_otpInfo;
    AECMultiCamInfo*           m_pPeerInfo;  ///< the other instance's
    StatsCameraInfo            m_cameraInfo;
    CKIRODataXML               m_interpolator;  ///< takes each tree afresh, so it remembers nothing between uses
};
