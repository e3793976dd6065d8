/// @file
/// What the scene change detectors made of a scene, and whether the exposure held still meanwhile.
#pragma once

#include <optional>

#include "tools/kirosim/report.h"

namespace kirosim
{

/// A detector over a run.
struct DetectorResult
{
    UINT32                id;
    std::string           name;               ///< empty until it has been at rest once
    bool                  isTuned;            ///< known to the tuning in any frame
    UINT32                framesAtRest;       ///< before the exposure has settled, and while monitoring
    UINT32                framesChanged;      ///< the scene differs
    UINT32                framesStableAgain;  ///< it differs, and stands still
    UINT32                framesHeld;         ///< the hold time runs
    UINT32                detections;         ///< changes that ended the rest
    UINT32                rebases;            ///< back to rest after a detection
    std::optional<DOUBLE> heldFrom;           ///< s, first frame of the first hold
    std::optional<DOUBLE> heldUntil;          ///< s, last frame of the last hold
};

class DetectorReport final : public Report
{
public:
    explicit DetectorReport(const DetectorScene& rScene);

    VOID        Add(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    /// In the order in which the scene names them.
    const std::vector<DetectorResult>& Results() const
    {
        return m_results;
    }

    /// Swing of the safe exposure during the pass, EV; empty without a pass.
    std::optional<DOUBLE> PassSwingEV() const;

    /// The darkest picture of the pass against its first one, EV: what convergence would have made up for.
    DOUBLE PassDepthEV() const;

private:
    VOID AddReading(const SceneChangeReading& rReading, DOUBLE time, size_t index);
    VOID AddPassFrame(const FrameRecord& rRecord);

    const DetectorScene&          m_rScene;
    std::vector<DetectorResult>   m_results;
    std::vector<KIROSCDStateType> m_states;  ///< of the frame before, per detector
    std::vector<DOUBLE>           m_passExposuresEV;
    std::vector<DOUBLE>           m_passPicturesEV;
};

}  // namespace kirosim
