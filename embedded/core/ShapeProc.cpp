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
        _tree->subChild(0);
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

    if (_tree->getNChildren() == 0)
        _tree->addChild(osg::Node::create());
    _tree->getChild(0)->setCore(osg::NodeCorePtr(core));
}

} // namespace Orvane
