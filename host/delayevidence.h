/// @file
/// What frames say about the delay of a pipeline, when each possible delay predicts something else for them.
#pragma once

#include <array>

#include "platform/tavotypes.h"

/// Compares each two delays over the frames for which they predict different things. A delay is believed once it has
/// come close in these, and each other one has missed.
class DelayEvidence
{
public:
    static constexpr UINT8 DelayMax = 10;  ///< frames

    /// By delay; entry 0 is not used.
    template <typename T> using ByDelay = std::array<T, DelayMax + 1>;

    struct Scale
    {
        DOUBLE differenceMin;  ///< two delays are told apart by frames for which they differ by as much, EV
        DOUBLE weightMax;      ///< a difference weighs up to this, EV: larger ones are no surer
        DOUBLE missesMin;      ///< a delay is given up once it has missed as many frames altogether
        DOUBLE shareMax;       ///< one that is believed may have missed by this share of what the others have
    };

    explicit DelayEvidence(const Scale& rScale) : m_scale(rScale), m_misses{}
    {
    }

    /// Whether any two delays are told apart by what they predict, EV.
    bool AreApart(const ByDelay<DOUBLE>& rPredicted) const;

    /// A frame. @param seen what the picture has done, EV @param rPredicted what it had to do, EV
    VOID Add(DOUBLE seen, const ByDelay<DOUBLE>& rPredicted);

    bool IsBelieved(UINT8 delay) const;

private:
    DOUBLE MissOf(DOUBLE off, DOUBLE difference) const;

    Scale m_scale;

    /// How far the first delay missed in frames for which the second one predicts something else: squares of stops.
    ByDelay<ByDelay<DOUBLE>> m_misses;
};
