#pragma once

#include "core/ElementProc.h"
#include "core/Surface.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <Orvane/Export.h>
#include <memory>

namespace Orvane {

/// Behaviour of a `Shape`: a geometry with a surface.
class ORVANE_API ShapeProc : public ElementProc
{
public:
    explicit ShapeProc(Node& node);

    void update() override;

    osg::NodePtr tree() const override { return _tree; }

private:
    /// Shows a geometry with a surface and, when there is one, with another drawn over it.
    void show(const Surface& surface, const Surface* overlay, const osg::GeometryPtr& geometry);

    osg::RefPtr<osg::NodePtr> _tree; ///< the surface over the geometry, or a group of two such pairs
    std::shared_ptr<SurfaceCore> _surface;
    std::shared_ptr<SurfaceCore> _overlay; ///< null when there is none
    Use _appearanceUse;
    Use _geometryUse;
};

} // namespace Orvane
