/// @file
/// The stages of convergence, in the order of a frame: speed law, stretch, DRC, join, grid and cap; beside them the
/// dark boost. Each takes values and gives values; what it keeps or changes (slots of stretches, nodes, the exposures
/// to cap) is an argument, too.
///
/// Exposures and distances are in log steps: a difference of 1 is 3 percent of exposure.
#pragma once

#include <array>

#include "core/base/statsdeque.h"
#include "core/convergence/smoothnode.h"
#include "interface/kiroframe.h"
#include "schema/kiroconvergence.h"
#include "schema/kirodbconvbase.h"
#include "schema/kirodbconvstretch.h"

/// Short, Long and Safe, indexed by AECAlgoExposureType.
typedef std::array<DOUBLE, AECAlgoExposureCount> KIROLogExposures;

/// Exposures in the log domain and what goes with them, before they are capped.
struct KIROConvCoreOutput
{
    KIROLogExposures sensiLog103;
    FLOAT            predGain;
    FLOAT            shortStretchOffset;
};

/// One stretch, or the aggregate of several.
struct KIROTargetStretchOutType
{
    FLOAT weight;
    FLOAT stretchOffset;  ///< log steps
    FLOAT comp;           ///< share of a negative stretch that the predictive gain makes up for
    FLOAT tempWeight;     ///< weight of this frame in the temporal filter
    BOOL  bBrightToDark;
};

constexpr UINT32 ConvStretchCountMax = 10;

/// Written by index; slots keep what they held, and what an aggregation sorts stays sorted.
typedef Tavo::StatsDeque<KIROTargetStretchOutType, ConvStretchCountMax> KIROStretchOutputDeque;

namespace convergencestages
{

/// What is tuned for the moves of a frame.
struct MoveTuning
{
    const kiroconvergence::KIROConvergenceType& module;
    const kirodbconvbase::DBConvBaseCoreData&   base;
    const kirodbconvbase::ConvBaseCoreDataType& speeds;  ///< those that the triggers select
};

/// Where one exposure comes from and where it is to go. With a predictive gain above 1 in the previous frame, Short
/// stands there by that gain above its exposure.
struct ExposureMove
{
    DOUBLE target;
    DOUBLE previous;          ///< the exposure in the previous frame
    DOUBLE tgtMatchDelta;     ///< target minus exposure of the frame whose statistics are being looked at
    DOUBLE tgtPreviousDelta;  ///< target minus previous
    DOUBLE drcCurrDelta;      ///< Safe target minus target
    DOUBLE drcPrevDelta;      ///< Safe minus the exposure in the previous frame
    bool   isSettled;         ///< after the previous frame; of Safe: for the tuned number of frames
};

/// What an aggregated stretch does to a frame.
struct StretchOffsets
{
    FLOAT shortStretchOffset;
    FLOAT safeStretchOffset;  ///< the part of it that Safe takes
    FLOAT predGain;           ///< the part that Safe does not take
};

/// The speed law. Once settled, Safe rests while the target is within the tolerance and no stretch holds Short.
/// @param rMove of Safe
/// @return Safe, and Short and Long before their distances are known
DOUBLE ComputeBasicSafeConvergence(const MoveTuning& rTuning, const ExposureMove& rMove, UINT8 systemLatency,
                                   FLOAT previousShortStretch);

/// @return tuned stretches; more than there are slots is invalid tuning and counts as none, with a log
UINT32 StretchCount(const kirodbconvstretch::DBConvStretchCoreData& rTuning);

/// Writes one stretch of the frame to its slot; an offset leaves the direction that the slot held.
VOID SetStretch(kirodbconvstretch::AECConvStretchType type, const kirodbconvstretch::ConvStretchCoreDataType& rData,
                KIROTargetStretchOutType& rSlot);

/// Makes one stretch of those of the frame.
/// @param bBrightToDark whether the scene asks for a darker exposure
/// @param rStretches    written for the frame up to the tuned count; may be sorted
KIROTargetStretchOutType AggregateStretchOutput(const kirodbconvstretch::DBConvStretchCoreData& rTuning,
                                                BOOL bBrightToDark, KIROStretchOutputDeque& rStretches);

/// Filters the stretch over time and divides it between Safe and the predictive gain.
StretchOffsets ComputeStretchOffset(const KIROTargetStretchOutType& rAggOut, FLOAT previousShortStretch,
                                    FLOAT gridStep);

/// Holds the gain between Safe and one exposure on nodes.
/// @param exposureType Short, by its ADRC gain, or Long, by its dark boost
/// @param gainTarget   the metered gain
/// @param pTargets     of all three
/// @return the target of that exposure; without nodes as it was
DOUBLE ConvergeSmoothNode(AECAlgoExposureType exposureType, const kiroconvergence::DRCSmoothType& rTuning,
                          FLOAT gainTarget, const DOUBLE* pTargets, SmoothNodeConvergenceContext& rContext);

/// Moves the distance of Short or Long from Safe.
/// @param safe as speed law and stretch left it
/// @return the exposure
DOUBLE DRCDeltaConvergence(const MoveTuning& rTuning, const ExposureMove& rMove, DOUBLE safe);

/// Joins what the stretch and what DRC make of the frame.
/// @param rOutput as the stretch left it; joined afterwards
VOID DRCStretchAggregator(kiroconvergence::AECConvDRCStretchAggType aggType, const KIROLogExposures& rDRC,
                          KIROConvCoreOutput& rOutput);

/// @return step of the output grid
FLOAT GridStep(FLOAT unitStepSize);

/// Puts the exposures on the grid; at the edges of its range one stays as it was, so that a limit stays exact.
VOID AdjustExpWithUnitStepSize(const KIROArbitratedLimits& rLimits, FLOAT gridStep, KIROLogExposures& rLogExposures);

/// Keeps three linear exposures within their limits and in order.
/// @return the predictive gain, at most the room between Short and Safe
FLOAT CapExposure(const KIROArbitratedLimits& rLimits, FLOAT mfhdrLongADRC, FLOAT predGain, UINT64* pExposures);

/// Moves the part of the dark boost that the exposures do not give. All are linear factors, from 1.
/// @param desired   what metering asks for
/// @param converged what the previous frame had
/// @return the part in this frame, on the grid
FLOAT ConvergeDarkCompensation(const MoveTuning& rTuning, FLOAT desired, FLOAT converged);

}  // namespace convergencestages
