#include "core/ShapeProc.h"
#include "core/AppearanceProcs.h"
#include "core/GeometryProc.h"
#include "core/Part.h"
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part appearancePart("appearance");
const Part geometryPart("geometry");
const Part visiblePart("visible");

const ProcRegistration shape("Shape", makeProc<ShapeProc>);

} // namespace

ShapeProc::ShapeProc(Node& node)
    : ElementProc(node)
    , _tree(osg::Node::create())
{
}

void ShapeProc::update()
{
    pictureChanged();
    _tree->setActive(visiblePart.read<SFBool>(node()).value());
    auto* const geometry = elementOf<GeometryProc>(geometryPart.readNode(node()));
    auto* const appearance = elementOf<AppearanceProc>(appearancePart.readNode(node()));
    _geometryUse.set(*this, geometry);
    _appearanceUse.set(*this, appearance);
    const osg::GeometryPtr core = geometry ? geometry->geometry() : osg::GeometryPtr();
    if (!core) {
        if (_geometry)
            _tree->subChild(_geometry);
        _geometry = osg::NullFC;
        return;
    }

    Surface surface;
    surface.kind = geometry->kind();
    surface.solid = geometry->isSolid();
    surface.vertexColors = geometry->hasColors() ? Surface::DIFFUSE_COLORS : Surface::NO_COLORS;
    if (appearance)
        appearance->describe(surface);
    if (surface.image)
        geometry->needTexCoords();
    _surface = surfaceCore(surface);
    _tree->setCore(_surface->core);

    if (!_geometry) {
        _geometry = osg::Node::create();
        _tree->addChild(_geometry);
    }
    _geometry->setCore(osg::NodeCorePtr(core));
}

} // namespace Orvane
