/// @file
/// The stretches of a run between changes of its scene. They come from the scene alone, so that runs with different
/// tunings have the same.
#pragma once

#include <optional>
#include <vector>

#include "tools/kirosim/scene.h"

namespace kirosim
{

/// A change of the light from one frame to the next that counts as a step, EV.
constexpr DOUBLE StepMinEV = 0.2;

/// A frame, as the scene has it.
struct SceneInstant
{
    DOUBLE time;     ///< in the scene, s
    DOUBLE lightEV;  ///< of the light curve
    bool   isStart;  ///< a session began with it
};

enum class SpanKind
{
    Start,  ///< the first frames of all, or of a session
    Step,   ///< of the light, by a cut, or by an object that appears or goes
    Event,  ///< the user has asked for something
    Ramp,   ///< of the light
    Turn,   ///< the camera or an object moves, or a cut fades
    Rest    ///< the scene has stopped to move
};

struct SceneSpan
{
    SpanKind kind;
    DOUBLE   at;     ///< in the scene, of the change that it begins with, s
    DOUBLE   ev;     ///< change of the light from the frame before
    size_t   begin;  ///< of frames
    size_t   end;    ///< behind the last one
};

enum class SpanCauses
{
    Light,  ///< the light and what the camera looks at, no more
    All
};

/// @param rFrames of one round of the scene
/// @param rBefore the frame before them, none if they are the first of all
std::vector<SceneSpan> SpansOf(const Scene& rScene, const std::vector<SceneInstant>& rFrames,
                               const std::optional<SceneInstant>& rBefore, SpanCauses causes);

/// The frames of a span in which the scene has stood still for a second, if that goes on for a second more.
/// @param rSpan neither a ramp nor a turn
std::optional<SceneSpan> StandstillOf(const SceneSpan& rSpan, const std::vector<SceneInstant>& rFrames);

}  // namespace kirosim
