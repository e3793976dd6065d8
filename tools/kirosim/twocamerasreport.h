/// @file
/// How well two cameras expose alike: one account for each stretch between changes of roles,
/// tuning, light or its colour.
#pragma once

#include <array>

#include "tools/kirosim/report.h"

namespace kirosim
{

/// One camera in one stretch. Means are over its last frames.
struct CameraPhase
{
    StatsAlgoRole role;
    DOUBLE        pictureEV;   ///< log2 of the mean of the safe picture, full scale is 0
    DOUBLE        mixEV;       ///< the mixed target of the safe exposure against the metered one
    UINT64        time;        ///< of the safe exposure, ns
    UINT32        framesHeld;  ///< frames in which convergence held the exposure, whatever was metered
};

struct PairPhase
{
    DOUBLE                     start;  ///< s
    DOUBLE                     end;    ///< s
    std::array<CameraPhase, 2> cameras;
    DOUBLE                     pictureDifferenceEV;     ///< second against first
    DOUBLE                     targetDifferenceEV;      ///< of the metered safe targets, second against first
    DOUBLE                     exposureTimeDifference;  ///< second less first, ns
    DOUBLE                     largestPictureStepEV;    ///< of either picture, from one frame to the next
};

class TwoCamerasReport final : public Report
{
public:
    /// @param rScene has a second camera; must outlive the report
    explicit TwoCamerasReport(const Scene& rScene);

    VOID        Add(const FrameRecord& rRecord) override;
    VOID        AddSecond(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    std::vector<Figure> Figures() const override;

    std::vector<PairPhase> Phases() const;

private:
    /// What is kept of a frame of one camera.
    struct Sample
    {
        DOUBLE        time;
        DOUBLE        end;  ///< s, as time
        DOUBLE        pictureEV;
        DOUBLE        meteredLog2;
        DOUBLE        mixedLog2;
        UINT64        exposureTime;
        bool          isHeld;  ///< convergence took its target as fixed, though it was metered
        StatsAlgoRole role;
    };

    Sample      Keep(const FrameRecord& rRecord, bool isSecond) const;
    PairPhase   Measure(size_t begin, size_t end) const;
    CameraPhase MeasureCamera(const std::vector<Sample>& rSamples, size_t begin, size_t end) const;

    const Scene&                       m_rScene;
    std::array<std::vector<Sample>, 2> m_samples;
};

}  // namespace kirosim
