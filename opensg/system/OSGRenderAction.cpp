#include <OpenSG/OSGRenderAction.h>

#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGViewport.h>

#include "OSGDrawList.h"
#include "OSGGLContext.h"
#include "OSGTraversal.h"

namespace osg {

namespace {

// Marks of nodes on the way down: what lies in view as a whole needs no more tests.
const int outOfView = -1;
const int partlyInView = 0;
const int whollyInView = 1;

} // namespace

RenderAction* RenderAction::create()
{
    return new RenderAction;
}

RenderAction::RenderAction()
    : _frustum(std::make_unique<FrustumVolume>())
    , _drawList(std::make_unique<DrawList>())
    , _traversal(std::make_unique<Traversal>())
{
}

RenderAction::~RenderAction() = default;

Action::ResultE RenderAction::apply(const NodePtr& node)
{
    if (!node || !getWindow()) {
        SWARNING << "RenderAction: no node or no viewport to draw into" << std::endl;
        return Quit;
    }
    if (!hasCurrentGLContext())
        return Quit;
    Matrix clip = getProjection();
    clip.mult(getViewing());
    _frustum->setPlanes(clip);
    _drawList->clear();
    _traversal->run(node, getTravMask(), *this);
    _drawList->draw(*this, _statistics);
    return Continue;
}

const Matrix& RenderAction::getToWorld() const
{
    return _traversal->getToWorld();
}

int RenderAction::enter(Node& node, const Matrix& parentToWorld, int parentMark)
{
    const DynamicVolume& volume = node.getVolume(true);
    if (!_frustumCulling || parentMark == whollyInView)
        return whollyInView;
    BoxVolume box;
    box.extendBy(volume);
    // What has no extent may still be a core that takes part in drawing.
    if (box.isEmpty())
        return partlyInView;
    box.transform(parentToWorld);
    switch (_frustum->classify(box)) {
    case FrustumVolume::INSIDE:
        return whollyInView;
    case FrustumVolume::CROSSING:
        return partlyInView;
    default:
        ++_statistics.culled;
        return outOfView;
    }
}

void RenderAction::visit(NodeCore& core)
{
    core.renderEnter(*this);
}

void RenderAction::leave(NodeCore& core)
{
    core.renderLeave(*this);
}

void RenderAction::addGeometry(Geometry& geometry)
{
    const Matrix& toWorld = getToWorld();
    BoxVolume box = geometry.getBox();
    box.transform(toWorld);
    Pnt3f center;
    Vec3f size;
    box.getCenter(center);
    box.getSize(size);
    _drawList->add(geometry, toWorld, center, size.length() / 2);
}

void RenderAction::pushLight(Light& light)
{
    _drawList->pushLight(light, light.getBeacon() ? light.getBeacon()->getToWorld() : getToWorld());
}

void RenderAction::popLight()
{
    _drawList->popLight();
}

void RenderAction::pushMaterial(const Material* material)
{
    _drawList->pushMaterial(material);
}

void RenderAction::popMaterial()
{
    _drawList->popMaterial();
}

} // namespace osg
