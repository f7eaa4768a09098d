#pragma once

#include "core/Surface.h"
#include <Orvane/Export.h>
#include <memory>
#include <vector>

namespace Orvane {

/// The program that \a surface is drawn by, with the values of its uniforms: that of its shading; else, for
/// faces under lights, one that computes the light of each pixel where a light is near. Null where fixed
/// steps do. What it shares with other surfaces is appended to \a parts, which live as long as it is used.
/// When a window cannot make a program, this is logged once, and fixed steps draw.
ORVANE_API SurfaceChunk surfaceProgram(const Surface& surface,
                                       std::vector<std::shared_ptr<SurfaceChunk>>& parts);

} // namespace Orvane
