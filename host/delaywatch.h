/// @file
/// Watches how many frames lie between a decision and the statistics that show it.
///
/// A pipeline delay that is told wrong by a frame makes an exposure swing: the core takes statistics for those of
/// another exposure. The true delay can be seen. When the exposure changes by so many stops, the picture changes by as
/// many, some frames later; light that changes by itself does not keep to that. So each possible delay predicts by how
/// much the picture changes from one frame to the next, and two delays are compared over the frames for which they
/// predict different things. A delay is believed once it has come close in these, and each other one has missed.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "interface/kirostats.h"

class DelayWatch
{
public:
    static constexpr UINT8 DelayMax = 10;  ///< frames

    /// A session begins: nothing is on its way to the sensor any more. What was seen so far counts on.
    /// @param exposure that the sensor stands at, as in AddExposure
    VOID Restart(DOUBLE exposure);

    /// What is written to the sensor before a frame, once before each.
    /// @param frameID  of that frame
    /// @param exposure gain times time, ns; below 1 counts as 1
    VOID AddExposure(UINT64 frameID, DOUBLE exposure);

    /// What a frame shows; frames may be left out.
    /// @param rLuma a grid, linear in the light, of that exposure. Copied
    VOID AddStatistics(UINT64 frameID, const KIROCntStatsOut& rLuma);

    /// The next frames are lit by the host itself: they do not count, until there are statistics again.
    VOID PassOver();

    /// Frames from a decision, which is written a frame later, to the statistics that show it. None until there was
    /// enough change to tell.
    const std::optional<UINT8>& Delay() const
    {
        return m_delay;
    }

private:
    /// By delay; entry 0 is not used.
    template <typename T> using ByDelay = std::array<T, DelayMax + 1>;

    bool                  Predict(UINT64 frameID, ByDelay<DOUBLE>& rPredicted) const;
    DOUBLE                WrittenEV(UINT64 frameID) const;
    std::optional<DOUBLE> ChangeOf(const KIROCntStatsOut& rLuma);
    VOID                  Compare(DOUBLE change, const ByDelay<DOUBLE>& rPredicted);
    bool                  IsBelieved(UINT8 delay) const;

    std::array<DOUBLE, 16> m_exposures{};      ///< log2, by frame; those of before the session are what it began with
    UINT64                 m_frameBefore = 0;  ///< whose picture is kept; 0 for none
    std::vector<FLOAT>     m_lumaBefore;
    std::vector<FLOAT>     m_ratios;

    /// How far the first delay missed in frames for which the second one predicts something else: squares of stops.
    ByDelay<ByDelay<DOUBLE>> m_misses{};
    std::optional<UINT8>     m_delay;
};
