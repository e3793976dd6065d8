/// @file
/// Watches how many frames lie between a decision and the statistics that show it.
///
/// A pipeline delay that is told wrong by a frame makes an exposure swing: the core takes statistics for those of
/// another exposure. The true delay can be seen. When the exposure changes by so many stops, the picture changes by as
/// many, some frames later; light that changes by itself does not keep to that. So each possible delay predicts by how
/// much the picture changes from one frame to the next. It also predicts how this change bends, from one frame to the
/// next but one: light that moves steadily is in every change, but in no bend.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "host/delayevidence.h"
#include "interface/kirostats.h"

class DelayWatch
{
public:
    static constexpr UINT8 DelayMax = DelayEvidence::DelayMax;  ///< frames

    DelayWatch();

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
    using ByDelay = DelayEvidence::ByDelay<DOUBLE>;

    /// The luma of a frame.
    struct Picture
    {
        UINT64             frameID = 0;  ///< 0 for none
        std::vector<FLOAT> luma;         ///< by region
        FLOAT              fullScale = 0.0f;

        bool                  isCompared = false;
        std::optional<DOUBLE> change;  ///< since the picture before, EV; none if it does not show that
    };

    bool                         IsBehind(size_t picture, UINT64 gapMax) const;
    ByDelay                      PredictedChange(size_t picture) const;
    DOUBLE                       WrittenEV(UINT64 frameID) const;
    const std::optional<DOUBLE>& SeenChange(size_t picture);
    bool                         CompareChange();
    bool                         CompareBend();
    VOID                         FindDelay();

    std::array<DOUBLE, 16> m_exposures{};  ///< log2, by frame; those of before the session are what it began with
    std::array<Picture, 3> m_pictures;     ///< the last ones, newest first
    std::vector<FLOAT>     m_ratios;
    DelayEvidence          m_changes;
    DelayEvidence          m_bends;
    std::optional<UINT8>   m_delay;
};
