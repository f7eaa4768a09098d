#pragma once

#include "core/ElementProc.h"
#include "core/Surface.h"
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
    osg::RefPtr<osg::NodePtr> _tree; ///< the surface, over the geometry when there is one
    std::shared_ptr<SurfaceCore> _surface;
    Use _appearanceUse;
    Use _geometryUse;
};

} // namespace Orvane
