/// @file
/// The tuned settings of snapshots: which exposure a picture starts from, and how far short and long lie from safe.
#pragma once

#include "interface/ikirocorealgo.h"
#include "schema/kirodbsnapshot.h"

/// Ratios of two exposures, from 1.0.
struct DRCGains
{
    FLOAT ADRC;       ///< safe over short
    FLOAT darkBoost;  ///< long over safe
};

/// Not for use while a frame's stage runs. The queries of CKIROTriggerManager answer the same, but each leaves a small
/// object behind in the core; here the host has the object and ends it.
class SnapshotGains
{
public:
    /// @param pAlgo must outlive this object
    explicit SnapshotGains(IKIROCoreAlgo* pAlgo) : m_pAlgo(pAlgo)
    {
    }

    /// The settings that the context selects; null when none are tuned. They stay the tuning's.
    const kirodbsnapshot::SnapshotTuningType* Settings() const;

    /// @param evSteps  of the picture; its sign chooses the tuned gains
    /// @param rPreview gains of the preview, which the tuning may take over within limits
    /// @return at least 1.0 each; 1.0 for a bracket that is tuned to go without
    DRCGains ForBracket(INT32 evSteps, FLOAT luxIndex, const DRCGains& rPreview) const;

private:
    DRCGains TunedGains(const kirodbsnapshot::FixedDRCTriggerType& rTuned, FLOAT luxIndex) const;

    IKIROCoreAlgo* m_pAlgo;
};
