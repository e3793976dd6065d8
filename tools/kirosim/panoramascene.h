/// @file
/// A panorama that a scene looks into: where the camera points at which time, and cuts from one panorama to another.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "tools/panorama/radiancemap.h"

namespace kirosim
{

using SharedRadianceMap = std::shared_ptr<const panorama::RadianceMap>;

/// How the camera has turned at a time; between points it turns evenly. Two points at one time are a jump.
struct TurnPoint
{
    DOUBLE time  = 0.0;  ///< s
    DOUBLE yaw   = 0.0;  ///< degrees to the right
    DOUBLE pitch = 0.0;  ///< degrees up
};

/// From a time on the camera is somewhere else. What is not set stays as it was before.
struct PanoramaCut
{
    DOUBLE                time = 0.0;  ///< s
    SharedRadianceMap     pMap;
    std::optional<DOUBLE> yaw;         ///< degrees
    std::optional<DOUBLE> pitch;       ///< degrees
    std::optional<DOUBLE> lux;         ///< mean of the log over the sphere
    DOUBLE                fade = 0.0;  ///< s, from the one to the other
};

/// One panorama as a camera looks into it.
struct PanoramaView
{
    const panorama::RadianceMap* pMap  = nullptr;
    DOUBLE                       yaw   = 0.0;  ///< turns to the right, 0 to 1
    DOUBLE                       pitch = 0.0;  ///< turns up
    DOUBLE                       lux   = 0.0;  ///< of the map's mean, times its share of the light while fading
    bool                         operator==(const PanoramaView&) const = default;
};

/// What a camera sees at a time: a panorama and, while it fades, the one before.
struct PanoramaViews
{
    PanoramaView now;
    PanoramaView before;  ///< without a map unless it fades
    bool         operator==(const PanoramaViews&) const = default;
};

struct PanoramaScene
{
    SharedRadianceMap        pMap;
    DOUBLE                   yaw         = 0.0;   ///< degrees
    DOUBLE                   pitch       = 0.0;   ///< degrees
    DOUBLE                   fieldOfView = 70.0;  ///< degrees across the frame's width
    std::optional<DOUBLE>    lux;                 ///< mean of the log over the sphere; else the scene's
    std::vector<TurnPoint>   path;                ///< in ascending time; added to yaw and pitch
    std::vector<PanoramaCut> cuts;                ///< in ascending time

    /// @param frameTime of the frame's start, s: a cut takes place between two frames
    /// @param time      at which the camera is seen to have turned, s
    /// @param sceneLux  for maps of which nothing is said
    PanoramaViews ViewsAt(DOUBLE frameTime, DOUBLE time, DOUBLE sceneLux) const;

    /// Light of the sphere's mean, lux.
    DOUBLE LuxAt(DOUBLE time, DOUBLE sceneLux) const;

    /// Whether the camera turns while a frame is read, or a cut fades as it begins.
    /// @param frameTime of the frame's start, s
    /// @param readout   from its first to its last row, s
    bool IsMoving(DOUBLE frameTime, DOUBLE readout) const;

    /// Whether there is a cut after one time and not after the other.
    bool HasCut(DOUBLE after, DOUBLE upTo) const;

private:
    /// How the camera stands in a panorama, and how bright that is.
    struct Place
    {
        const panorama::RadianceMap* pMap;
        DOUBLE                       yaw;
        DOUBLE                       pitch;
        DOUBLE                       lux;
    };

    /// A cut is under way, or the last one is over.
    struct Stage
    {
        Place  now;
        Place  before;
        DOUBLE share;  ///< of the light that comes from the place of now
    };

    Stage     StageAt(DOUBLE time, DOUBLE sceneLux) const;
    TurnPoint TurnAt(DOUBLE time) const;
};

}  // namespace kirosim
