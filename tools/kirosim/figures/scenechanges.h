/// @file
/// When a scene changes: its light, what the camera sees of it, and what its user asks for.
#pragma once

#include <vector>

#include "tools/kirosim/scene.h"

namespace kirosim
{

/// Whether the light is in a ramp.
bool IsInRamp(const Scene& rScene, DOUBLE time);

/// Whether the camera turns while the frame of that time is read, or a cut fades.
bool IsCameraMoving(const Scene& rScene, DOUBLE time);

/// Whether the light is in a ramp, or the camera moves.
bool IsLightMoving(const Scene& rScene, DOUBLE time);

/// Whether an object moves through the frame.
bool IsObjectMoving(const Scene& rScene, DOUBLE time);

/// Times at which any change begins or ends: in ascending time, 0 first.
std::vector<DOUBLE> ChangeTimes(const Scene& rScene);

/// Whether the user holds the exposure of the first camera, by a lock or by setting both gain and time.
bool IsHeldByUser(const Scene& rScene, DOUBLE time);

}  // namespace kirosim
