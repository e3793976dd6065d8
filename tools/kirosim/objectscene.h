/// @file
/// An object before the pattern: a window that opens, a subject that walks through the frame.
#pragma once

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "platform/tavotypes.h"

namespace kirosim
{

/// Where the object's centre is at a time; between points it moves straight. Fractions of the frame.
struct PathPoint
{
    DOUBLE time = 0.0;  ///< s
    DOUBLE x    = 0.5;
    DOUBLE y    = 0.5;
};

struct SceneObject
{
    DOUBLE                 contrastEV = 0.0;   ///< against what it hides
    DOUBLE                 size       = 0.25;  ///< of its sides, share of the frame's
    std::vector<PathPoint> path;               ///< in ascending time; the centre of the frame if empty
    DOUBLE                 appears = 0.0;      ///< s
    DOUBLE                 goes    = std::numeric_limits<DOUBLE>::infinity();  ///< s

    bool IsThere(DOUBLE time) const
    {
        return time >= appears && time < goes;
    }

    /// @return whether the object is there and hides a point. @param x, y fractions of the frame
    bool Covers(DOUBLE time, DOUBLE x, DOUBLE y) const;

    /// @return whether the object hides a point where it is there with its centre at another
    bool CoversFrom(const PathPoint& rCentre, DOUBLE x, DOUBLE y) const
    {
        const DOUBLE half = size / 2.0;
        return std::abs(x - rCentre.x) < half && std::abs(y - rCentre.y) < half;
    }

    /// Where the centre is, whether the object is there or not.
    PathPoint CentreAt(DOUBLE time) const;
};

}  // namespace kirosim
