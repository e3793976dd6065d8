/// @file
/// The tuned settings of snapshots: which exposure a picture starts from, and how far short and long lie from safe.
#pragma once

#include <optional>

#include "interface/ckirotriggermanager.h"
#include "interface/ikirocorealgo.h"

/// Ratios of two exposures, from 1.0.
struct DRCGains
{
    FLOAT ADRC;       ///< safe over short
    FLOAT darkBoost;  ///< long over safe
};

/// Not for use while a frame's stage runs. Each picture of a bracket whose gains are tuned costs the core a small
/// object that it never frees: ask once per picture.
class SnapshotGains
{
public:
    /// @param pAlgo must outlive this object
    explicit SnapshotGains(IKIROCoreAlgo* pAlgo);

    /// The settings that the context selects; null when none are tuned. They stay the tuning's.
    const kirodbsnapshot::SnapshotTuningType* Settings() const;

    /// @param evSteps  of the picture; its sign chooses the tuned gains
    /// @param rPreview gains of the preview, which the tuning may take over within limits
    /// @return at least 1.0 each; 1.0 for a bracket that is tuned to go without
    DRCGains ForBracket(INT32 evSteps, FLOAT luxIndex, const DRCGains& rPreview);

private:
    DRCGains TunedGains(INT32 evSteps, FLOAT luxIndex);

    IKIROCoreAlgo*                     m_pAlgo;
    std::optional<CKIROTriggerManager> m_triggers;
};
