#pragma once

#include "OSGBaseTypes.h"

namespace osg {

/// What drawing took, added up over viewports and frames until it is reset.
struct RenderStatistics
{
    UInt64 shapes = 0; ///< drawn
    UInt64 culled = 0; ///< nodes that were left out with all below them, as they are out of view
    UInt64 drawCalls = 0;
    UInt64 triangles = 0;
    UInt64 lines = 0;
    UInt64 points = 0;
    UInt64 materialChanges = 0;
    UInt64 geometryChanges = 0;
    UInt64 geometriesBuilt = 0; ///< geometries whose data was sent to GL
};

} // namespace osg
