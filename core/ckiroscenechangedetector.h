/// @file
/// Owns a scene change detector for each tuned record, runs them at their places in the frame and answers for them by
/// ID.
#pragma once

#include "core/base/tuningdriven.h"
#include "core/cscdetector.h"

class CSCDManager
{
public:
    /// Builds the detectors and takes their first baselines.
    explicit CSCDManager(IKIROContextManager& rContextManager);

    /// Runs the detectors of one place in the frame, in the order of the tuning.
    /// @param bStatsValid 0 stops them until the exposure has settled again
    VOID RunSCDetectors(CSCDetector::RunPriority priority, BOOL bStatsValid);

    /// Brings a detector back to rest; nothing happens for an unknown ID.
    VOID Rebase(UINT32 id);

    /// @return 1, or 0 for an unknown ID
    BOOL GetSCDOutput(UINT32 id, KIROSCDOutput& rOutput);

private:
    using Tuning = kiroscenechangedetector::KIROSceneChangeDetectorType;

    /// Rebuilds the detectors when the record is another one; a tuning without the module has none.
    VOID         UpdateSCDetectors();
    VOID         Rebuild(const Tuning* pTuning);
    VOID         InitializeDetectors();
    CSCDetector* GetSCD(UINT32 id);

    IKIROContextManager&       m_rContextManager;
    TuningDriven<const Tuning> m_tuning;
    TavoObjects<CSCDetector>   m_detectors;
};
