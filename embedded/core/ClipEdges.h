#pragma once

#include "core/SurfacePart.h"
#include <OpenSG/OSGClipPlane.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGRefPtr.h>
#include <Orvane/Export.h>
#include <array>
#include <vector>

namespace Orvane {

struct DrawnView;

/// Cuts a group off at the edges of a part of the surface, by four planes that go with the view.
class ORVANE_API ClipEdges
{
public:
    ClipEdges();

    /// Adds the planes to the cores that act on a group; none for the whole surface.
    void collect(const SurfacePart& part, std::vector<osg::NodeCorePtr>& cores) const;
    /// Lays the planes through the edges as \a view sees them, for a group whose content stands in the world
    /// by \a toWorld.
    void follow(const SurfacePart& part, const DrawnView& view, const osg::Matrix& toWorld);

private:
    std::array<osg::RefPtr<osg::ClipPlanePtr>, 4> _planes; ///< left, right, bottom, top
};

} // namespace Orvane
