/// @file
/// How well the exposure was controlled: frames to settle, overshoot, ripple, lag.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/kirosim/exposurelimit.h"
#include "tools/kirosim/figures/spans.h"
#include "tools/kirosim/jsonfacts.h"
#include "tools/kirosim/simulation.h"

namespace kirosim
{

/// A change of the light, or the cold start, and how the exposure followed it.
struct StepResult
{
    DOUBLE                time;            ///< s
    DOUBLE                ev;              ///< change of the light; 0 for the cold start
    std::optional<UINT32> framesToSettle;  ///< until the safe exposure stays within 5 percent of its final value
    DOUBLE                overshootEV;     ///< farthest beyond the final value, seen from the start
    std::string           failure;         ///< why an exposure that rests has not settled: it misses its target
};

struct RunSummary
{
    std::vector<StepResult> steps;
    DOUBLE                  rippleEV;        ///< swing of the safe exposure over the last 100 frames
    DOUBLE                  pictureSwingEV;  ///< swing of the picture over the last 100 frames
    std::optional<DOUBLE>   rampLagEV;       ///< mean distance of the decision from the light during ramps
    DOUBLE                  finalErrorEV;    ///< mean of metered target over exposure, last 100 frames
    DOUBLE                  bandingLast;     ///< share of the mean, last 100 frames, worst
    std::optional<DOUBLE>   changedUntil;    ///< s, when light or view last changed within the last 100 frames
    std::string             failure;         ///< what is wrong with exposure or picture at the end; empty if nothing is
    bool                    isLampFlickering;
    bool                    isAntibandingAsked;  ///< by any event of the scene
    bool                    isLegal;             ///< no exposure was NaN, zero or outside the sensor's limits
};

class SummaryBuilder
{
public:
    explicit SummaryBuilder(const Scene& rScene);

    VOID Add(const FrameRecord& rRecord);

    /// The scene starts again: frames so far are forgotten but for the last one, which the next may differ from by a
    /// step. An exposure beyond the limits stays on record.
    VOID BeginRound();

    RunSummary Finish() const;

private:
    /// What the summary keeps of a frame.
    struct Sample
    {
        DOUBLE time;
        DOUBLE exposureLog2;
        DOUBLE targetLog2;
        DOUBLE lightEV;
        DOUBLE pictureEV;
        DOUBLE banding;

        ExposureLimit limit;
    };

    bool                  IsLegal(const FrameRecord& rRecord) const;
    StepResult            MeasureStep(const SceneSpan& rSpan) const;
    std::string           FailureAt(size_t begin, size_t end) const;
    std::optional<DOUBLE> MeasureRampLag() const;
    std::optional<DOUBLE> ChangedUntil(const SceneSpan& rLastSpan) const;
    const Sample*         Before(size_t index) const;

    std::vector<SceneInstant> Instants() const;

    const Scene&          m_rScene;
    std::vector<Sample>   m_samples;
    std::optional<Sample> m_lastOfRoundBefore;  ///< none in the first round
    bool                  m_isLegal;
};

/// Lines for a person, each ended by a newline.
std::string FormatSummary(const RunSummary& rSummary);

/// The same without the numbers that figures of merit tell of each stretch: what came to rest, and what is wrong.
std::string FormatVerdict(const RunSummary& rSummary);

/// The same for scripts, as one object.
TextNode SummaryFacts(const RunSummary& rSummary);

}  // namespace kirosim
