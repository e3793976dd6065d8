/// @file
/// Walking the tuned order of controls: how an exposure becomes gain and time, and how a frame's limits come about.
#pragma once

#include <map>
#include <optional>

#include "interface/ikirocorealgo.h"
#include "schema/kirodbarbitrationrange.h"

/// User settings that decide which controls are in force.
struct ArbitrationSettings
{
    StatisticsAntibanding flickerComp;
    AECAlgoFPSRange       FPSRange;
    AECAlgoManualSetting  manualSetting;
    AECAlgoHDRType        HDRType;
    StatsAlgoRole         algoRole;

    std::optional<KIROPrecisionFlashInfo> precisionFlash;  ///< while an exposure is split between LED on and off
};

class ArbitrationWalk
{
public:
    /// @param pAlgo             the instance, must outlive this object
    /// @param indexZeroExposure exposure of index 0
    ArbitrationWalk(IKIROCoreAlgo* pAlgo, const KIROSensorRange& rSensorRange, UINT64 indexZeroExposure);

    /// The frame's limits for convergence: no exposure has to fit.
    /// @param pExposures three targets, indexed by AECAlgoExposureType
    KIROArbitratedLimits ComputeLimits(const ArbitrationSettings& rSettings, const UINT64* pExposures);

    /// Splits three converged exposures into gain and time.
    /// @param pOutputs receives three records, indexed by AECAlgoExposureType
    VOID SplitExposures(const ArbitrationSettings& rSettings, const UINT64* pExposures,
                        KIROArbitrationOutput* pOutputs);

private:
    using RangePayload = kirodbarbitrationrange::DBArbitrationRangePayload;
    using OrderType    = kirodbarbitrationorder::OrderType;

    template <typename Visit>
    VOID WalkOrder(const ArbitrationSettings& rSettings, const UINT64* pExposures, BOOL bIsConvRange, Visit&& visit);

    /// Lets each control split the exposure of m_input and narrow its range.
    VOID WalkControls(const ArbitrationSettings&                                    rSettings,
                      const kirodbarbitrationorder::ArbitrationControlExposureType& rOrder);
    VOID PrepareControl(const ArbitrationSettings& rSettings, const OrderType& rControl);
    VOID OverrideRange(INT32 dataID, FLOAT start, FLOAT end, bool isStartKept);

    IKIROCoreAlgo*                m_pAlgo;
    KIROArbitrationInput          m_input;         ///< handed from control to control
    KIROExposureRange             m_sensorLimits;  ///< where every list begins
    std::map<INT32, RangePayload> m_overrides;     ///< ranges that follow user settings; the bank points at them
};
