#pragma once

#include <Orvane/Export.h>

namespace Orvane {

/// The parts of the programs for volumes that are the same for all of them, in GLSL 1.20. They draw the
/// inside of a box, so that the camera may stand in it.
namespace VolumeRay {

ORVANE_API extern const char* const vertexText;
/// What is known at a place on a ray, and the uniforms of the box.
ORVANE_API extern const char* const variables;
/// `shaded`: the light of all sources on a surface, wrapped round that of `phongSum`.
ORVANE_API extern const char* const shadedHead;
ORVANE_API extern const char* const shadedTail;
/// `findRay` and `goTo`.
ORVANE_API extern const char* const walk;
/// The parts of `main` before, at and after each step.
ORVANE_API extern const char* const mainHead;
ORVANE_API extern const char* const mainLoop;
ORVANE_API extern const char* const mainTail;

} // namespace VolumeRay

} // namespace Orvane
