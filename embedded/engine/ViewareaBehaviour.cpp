#include "ViewareaBehaviour.h"

#include "ViewareaInput.h"
#include "base/Graph.h"
#include "base/ValueFields.h"
#include "core/SceneProc.h"
#include <OpenSG/OSGDynamicVolume.h>
#include <Orvane/Context.h>
#include <Orvane/SFBool.h>
#include <Orvane/Scene.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const ProcRegistration registration("Viewarea", makeProc<ViewareaBehaviour>);

struct Parts
{
    unsigned int enabled;
    unsigned int position;
    unsigned int size;
};

const Parts& parts(const Node& node)
{
    static const Parts table = {static_cast<unsigned int>(partIndex(*node.type(), "enabled")),
                                static_cast<unsigned int>(partIndex(*node.type(), "position")),
                                static_cast<unsigned int>(partIndex(*node.type(), "size"))};
    return table;
}

/// Depth buffers have 24 bits; beyond this ratio of far to near plane surfaces begin to flicker.
constexpr float maxDepthRatio = 20000.0F;

struct DepthRange
{
    float nearPlane;
    float farPlane;
};

/// Planes that hold the whole scene where that is possible, and do not cut what stands close to the camera.
DepthRange depthRange(const SceneView& view, const osg::NodePtr& sceneRoot)
{
    const osg::Pnt3f eye(view.viewpoint[3][0], view.viewpoint[3][1], view.viewpoint[3][2]);
    osg::Pnt3f low;
    osg::Pnt3f high;
    float nearest = 0.0F;
    float farthest = 100.0F;
    osg::DynamicVolume& volume = sceneRoot->getVolume(true);
    if (volume.isValid() && !volume.isEmpty()) {
        volume.getBounds(low, high);
        float nearSquare = 0.0F;
        float farSquare = 0.0F;
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            const float below = low[axis] - eye[axis];
            const float above = eye[axis] - high[axis];
            const float outside = std::max({below, above, 0.0F});
            const float beyond = std::max(std::abs(below), std::abs(above));
            nearSquare += outside * outside;
            farSquare += beyond * beyond;
        }
        if (std::isfinite(farSquare) && farSquare > 0.0F) {
            nearest = std::sqrt(nearSquare);
            farthest = std::sqrt(farSquare) * 1.01F;
        }
    }
    if (view.visibilityLimit > 0.0F)
        farthest = std::min(farthest, view.visibilityLimit);
    const float closeEnough = view.avatarRadius > 0.0F ? view.avatarRadius * 0.5F : 0.125F;
    const float nearPlane = std::max(std::min(closeEnough, nearest > 0.0F ? nearest * 0.5F : closeEnough),
                                     farthest / maxDepthRatio);
    return {nearPlane, std::max(farthest, nearPlane * 2.0F)};
}

} // namespace

ViewareaBehaviour::ViewareaBehaviour(Node& viewarea)
    : ViewareaProc(&viewarea)
    , Proc(viewarea)
    , _port(osg::Viewport::create())
    , _camera(osg::PerspectiveCamera::create())
    , _beacon(osg::Node::create())
    , _beaconTransform(osg::Transform::create())
    , _root(osg::Node::create())
    , _headlight(osg::DirectionalLight::create())
    , _scene(osg::VisitSubTree::create())
{
    _beacon->setCore(_beaconTransform.get());
    _camera->setBeacon(_beacon.get());
    _headlight->setBeacon(_beacon.get());
    _headlight->setDirection(osg::Vec3f(0.0F, 0.0F, 1.0F));
    _headlight->setDiffuse(osg::Color4f(1.0F, 1.0F, 1.0F, 1.0F));
    _headlight->setSpecular(osg::Color4f(1.0F, 1.0F, 1.0F, 1.0F));
    _headlight->setAmbient(osg::Color4f(0.0F, 0.0F, 0.0F, 1.0F));
    _root->setCore(_headlight.get());
    const osg::NodePtr reference = osg::Node::create();
    reference->setCore(_scene.get());
    _root->addChild(reference);
    _port->setCamera(_camera.get());
    _port->setRoot(_root.get());
}

ViewareaBehaviour::~ViewareaBehaviour()
{
    setWindow(osg::WindowPtr());
}

void ViewareaBehaviour::start(double)
{
    _input = std::make_unique<ViewareaInput>(*this);
}

void ViewareaBehaviour::fieldChanged(Field&, double)
{
    pictureChanged();
}

bool ViewareaBehaviour::isEnabled() const
{
    return read<SFBool>(node(), parts(node()).enabled).value();
}

bool ViewareaBehaviour::contains(int x, int y) const
{
    if (_viewport == osg::NullFC)
        return false;
    const int fromBottom = _window->getHeight() - 1 - y;
    return x >= _port->getPixelLeft() && x <= _port->getPixelRight() &&
           fromBottom >= _port->getPixelBottom() && fromBottom <= _port->getPixelTop();
}

std::vector<Node*> ViewareaBehaviour::pick(int x, int y) const
{
    std::vector<Node*> chain;
    auto* scene = procAs<SceneProc>(context().findRoot(Scene::_type));
    if (!scene || !contains(x, y))
        return chain;
    osg::Line ray;
    if (!_camera->calcViewRay(ray, x, y, *_port) ||
        !scene->castRay(ray, chain, nullptr, nullptr, nullptr, nullptr, nullptr))
        chain.clear();
    return chain;
}

void ViewareaBehaviour::setWindow(const osg::WindowPtr& window)
{
    if (_window == window)
        return;
    if (_window != osg::NullFC)
        _window->subPort(_port.get());
    _window = window;
    _viewport = osg::ViewportPtr();
    if (window == osg::NullFC) {
        if (_input)
            _input->letGo(context().timeStamp());
        return;
    }
    window->addPort(_port.get());
    _viewport = _port.get();
    placeViewport();
}

void ViewareaBehaviour::placeViewport()
{
    const osg::Vec2f& position = read<SFVec2f>(node(), parts(node()).position).value();
    const osg::Vec2f& size = read<SFVec2f>(node(), parts(node()).size).value();
    const auto fraction = [](float value) {
        return std::isfinite(value) ? std::clamp(value, 0.0F, 1.0F) : 0.0F;
    };
    _port->setSize(fraction(position[0]), fraction(position[1]), fraction(position[0] + size[0]),
                   fraction(position[1] + size[1]));
}

void ViewareaBehaviour::prepare()
{
    placeViewport();
    auto* scene = procAs<SceneProc>(context().findRoot(Scene::_type));
    const osg::NodePtr sceneRoot = scene ? scene->root() : osg::NodePtr();
    if (_scene->getSubTreeRoot() != sceneRoot)
        _scene->setSubTreeRoot(sceneRoot);
    if (!scene)
        return;
    const SceneView view = scene->view();
    _port->setBackground(view.background);
    _headlight->setOn(view.headlight);
    aimCamera(view, sceneRoot);
}

void ViewareaBehaviour::aimCamera(const SceneView& view, const osg::NodePtr& sceneRoot)
{
    _beaconTransform->setMatrix(view.viewpoint);
    const int width = std::max(_port->getPixelWidth(), 1);
    const int height = std::max(_port->getPixelHeight(), 1);
    // The field of view is that of the smaller direction, the camera's that of the height.
    float vertical = view.fieldOfView;
    if (width < height)
        vertical = 2.0F * std::atan(std::tan(vertical * 0.5F) * static_cast<float>(height) /
                                    static_cast<float>(width));
    _camera->setFov(vertical);
    const DepthRange range = depthRange(view, sceneRoot);
    _camera->setNear(range.nearPlane);
    _camera->setFar(range.farPlane);
}

} // namespace Orvane
