/// @file
/// The figures of one stretch of a run.
#pragma once

#include "tools/kirosim/figures/figure.h"
#include "tools/kirosim/figures/runsample.h"
#include "tools/kirosim/figures/spans.h"

namespace kirosim
{

/// Works out the figures of stretches from the samples of a whole round.
class SpanFigures
{
public:
    /// @param rSamples all with a known exposure; both must outlive this object
    SpanFigures(const Scene& rScene, const std::vector<RunSample>& rSamples);

    /// Of a start, a step or what the user has asked for. Nothing of one that is too short to come to rest.
    VOID AddJump(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const;

    VOID AddMove(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const;
    VOID AddStandstill(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const;

    /// What every stretch has, and the whole run.
    VOID AddShares(const std::string& rOf, const SceneSpan& rSpan, std::vector<Figure>& rFigures) const;

private:
    VOID   AddFinalError(const std::string& rOf, const SceneSpan& rSpan, std::vector<Figure>& rFigures) const;
    VOID   AddLag(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const;
    VOID   AddKick(const std::string& rOf, const SceneSpan& rSpan, std::vector<Figure>& rFigures) const;
    VOID   AddRipple(const SceneSpan& rSpan, std::vector<Figure>& rFigures) const;
    bool   IsHeldAtEnd(const SceneSpan& rSpan) const;
    DOUBLE LineAtEnd(const SceneSpan& rSpan) const;

    const Scene&                  m_rScene;
    const std::vector<RunSample>& m_rSamples;
    std::vector<DOUBLE>           m_exposuresEV;
    std::vector<DOUBLE>           m_lightsEV;
};

/// What scripts call a stretch.
const CHAR* NameOf(SpanKind kind);

/// The same for one in which the scene stands still.
constexpr CHAR StandstillName[] = "still";

}  // namespace kirosim
