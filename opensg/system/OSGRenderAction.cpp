#include <OpenSG/OSGRenderAction.h>

#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGWindow.h>

#include "OSGDrawList.h"
#include "OSGGLContext.h"
#include "OSGPainter.h"
#include "OSGSceneStamp.h"
#include "OSGTraversal.h"

#include <algorithm>

namespace osg {

namespace {

// Marks of nodes on the way down: what lies in view as a whole needs no more tests.
const int outOfView = -1;
const int partlyInView = 0;
const int whollyInView = 1;

// Trees whose lists are kept at the same time.
const std::size_t mostKept = 8;

} // namespace

// A tree that was drawn, and its list once a picture has followed in which nothing had changed.
struct RenderAction::Kept
{
    const Node* root;
    UInt32 mask;
    UInt64 stamp;
    bool keepable;
    std::unique_ptr<DrawList> list;
};

RenderAction* RenderAction::create()
{
    return new RenderAction;
}

RenderAction::RenderAction()
    : _frustum(std::make_unique<FrustumVolume>())
    , _traversal(std::make_unique<Traversal>())
    , _fresh(std::make_unique<DrawList>())
    , _painter(std::make_unique<Painter>())
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

    Kept& kept = findKept(*node);
    if (kept.stamp == SceneStamp::get() && kept.keepable) {
        drawKept(node, kept);
        return Continue;
    }
    kept.list.reset();
    collect(node, *_fresh, _frustumCulling);
    _fresh->arrange(false);
    _painter->draw(*_fresh, nullptr, *this, _statistics);
    kept.stamp = SceneStamp::get();
    kept.keepable = !_varying;
    return Continue;
}

// The entry of a tree, which comes to the front; the one that was not asked for longest makes place.
RenderAction::Kept& RenderAction::findKept(const Node& root)
{
    const auto found = std::find_if(_kept.begin(), _kept.end(), [&](const Kept& kept) {
        return kept.root == &root && kept.mask == getTravMask();
    });
    if (found != _kept.end()) {
        std::rotate(_kept.begin(), found, found + 1);
        return _kept.front();
    }
    if (_kept.size() == mostKept)
        _kept.pop_back();
    _kept.insert(_kept.begin(), Kept{&root, getTravMask(), 0, false, nullptr});
    return _kept.front();
}

void RenderAction::drawKept(const NodePtr& node, Kept& kept)
{
    if (!kept.list) {
        kept.list = std::make_unique<DrawList>();
        collect(node, *kept.list, false);
        kept.list->arrange(true);
    }
    const FrustumVolume* frustum = _frustumCulling ? _frustum.get() : nullptr;
    if (frustum && frustum->classify(kept.list->getBox()) == FrustumVolume::INSIDE)
        frustum = nullptr;
    _painter->draw(*kept.list, frustum, *this, _statistics);
}

void RenderAction::collect(const NodePtr& node, DrawList& list, bool culling)
{
    list.clear();
    _target = &list;
    _culling = culling;
    _varying = false;
    _traversal->run(node, getTravMask(), *this);
    _target = nullptr;
}

const Matrix& RenderAction::getToWorld() const
{
    return _traversal->getToWorld();
}

int RenderAction::enter(Node& node, const Matrix& parentToWorld, int parentMark)
{
    if (!_culling)
        node.updateVolume(); // below a static volume, too: only what is up to date tells of its changes
    if (!_culling || parentMark == whollyInView)
        return whollyInView;
    BoxVolume box;
    box.extendBy(node.getVolume(true));
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
    _target->add(geometry, getToWorld());
}

void RenderAction::pushLight(Light& light)
{
    _target->pushLight(light, getToWorld());
}

void RenderAction::popLight()
{
    _target->popScope();
}

void RenderAction::pushFog(const Fog& fog)
{
    _target->pushFog(fog, getToWorld());
}

void RenderAction::popFog()
{
    _target->popScope();
}

void RenderAction::pushClipPlane(const ClipPlane& plane)
{
    _target->pushClipPlane(plane, getToWorld());
}

void RenderAction::popClipPlane()
{
    _target->popScope();
}

void RenderAction::pushMaterial(const Material* material)
{
    _target->pushMaterial(material);
}

void RenderAction::popMaterial()
{
    _target->popMaterial();
}

} // namespace osg
