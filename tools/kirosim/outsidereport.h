/// @file
/// What outside data did: how well a tracked subject is exposed, and what a shaking hand costs in gain.
#pragma once

#include <string>
#include <vector>

#include "tools/kirosim/report.h"

namespace kirosim
{

/// The subject under a map of the scene.
class TrackingReport final : public Report
{
public:
    struct State
    {
        UINT64 frame;
        DOUBLE time;  ///< s
        bool   isTracking;
    };

    explicit TrackingReport(const Scene& rScene);

    VOID        Add(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    /// Changes between standing by and tracking, as the tracked table shows them.
    const std::vector<State>& Changes() const
    {
        return m_changes;
    }

    /// Mean of the subject's distance from its luma, EV, over frames in which the exposure has had time to follow.
    /// Nothing without such frames. @param isTracking with or without tracking
    std::optional<DOUBLE> SubjectErrorEV(bool isTracking) const;

    /// Frames from the end of tracking until the safe exposure stays within 5 percent of its last one.
    std::optional<UINT32> FramesToRecover() const;

private:
    struct Sample
    {
        DOUBLE                time;
        bool                  isTracking;
        std::optional<DOUBLE> subjectEV;
        DOUBLE                exposureLog2;
    };

    const Scene&        m_rScene;
    std::vector<Sample> m_samples;
    std::vector<State>  m_changes;
};

/// The exposure while the camera shakes and while it is still.
class ShakeReport final : public Report
{
public:
    /// The last frame before the shake changes.
    struct Moment
    {
        DOUBLE time;  ///< s
        DOUBLE gyro;  ///< filtered, rad/s
        DOUBLE timeMs;
        DOUBLE gain;
        DOUBLE exposureLog2;
    };

    explicit ShakeReport(const Scene& rScene);

    VOID        Add(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    std::vector<Moment> Moments() const;

private:
    bool IsChangeBetween(DOUBLE before, DOUBLE after) const;

    const Scene&          m_rScene;
    std::optional<Moment> m_last;
    std::vector<Moment>   m_moments;
};

}  // namespace kirosim
