#pragma once

#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

/// A rectangle of a surface, in fractions of it, from its lower left corner.
struct SurfacePart
{
    float left = 0.0F;
    float right = 1.0F;
    float bottom = 0.0F;
    float top = 1.0F;

    /// The part of a `clipBoundary`: left, right, bottom, top. What is missing or no number is the surface's
    /// own edge.
    ORVANE_API static SurfacePart of(const std::vector<float>& boundary);

    bool isWhole() const { return left == 0.0F && right == 1.0F && bottom == 0.0F && top == 1.0F; }
};

} // namespace Orvane
