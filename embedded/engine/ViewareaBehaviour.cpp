#include "ViewareaBehaviour.h"

#include "ViewareaInput.h"
#include "base/Graph.h"
#include "base/ValueFields.h"
#include "core/InnerPicture.h"
#include "core/SceneProc.h"
#include "core/ViewFollower.h"
#include "core/ViewpointProc.h"
#include <OpenSG/OSGDynamicVolume.h>
#include <Orvane/Context.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFNode.h>
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
    unsigned int viewpoint;
};

const Parts& parts(const Node& node)
{
    static const Parts table = {static_cast<unsigned int>(partIndex(*node.type(), "enabled")),
                                static_cast<unsigned int>(partIndex(*node.type(), "position")),
                                static_cast<unsigned int>(partIndex(*node.type(), "size")),
                                static_cast<unsigned int>(partIndex(*node.type(), "viewpoint"))};
    return table;
}

/// The angle of view over the height of a viewport: that of the view is of the smaller direction.
float verticalAngle(const SceneView& view, const osg::Vec2f& size)
{
    if (size[0] >= size[1])
        return view.fieldOfView;
    return 2.0F * std::atan(std::tan(view.fieldOfView * 0.5F) * size[1] / size[0]);
}

/// The height of what a view without perspective shows: all of its window in space.
float verticalSize(const SceneView& view, const osg::Vec2f& size)
{
    const float* const low = view.fieldOfViewMin;
    const float* const high = view.fieldOfViewMax;
    return std::max(high[1] - low[1], (high[0] - low[0]) * size[1] / size[0]);
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
    if (view.farDistance > 0.0F)
        farthest = view.farDistance;
    else if (view.visibilityLimit > 0.0F)
        farthest = std::min(farthest, view.visibilityLimit);
    const float closeEnough = view.avatarRadius > 0.0F ? view.avatarRadius * 0.5F : 0.125F;
    float nearPlane = std::max(std::min(closeEnough, nearest > 0.0F ? nearest * 0.5F : closeEnough),
                               farthest / maxDepthRatio);
    nearPlane = view.nearDistance > 0.0F ? view.nearDistance : std::min(nearPlane, farthest * 0.5F);
    return {nearPlane, farthest > nearPlane ? farthest : nearPlane * 2.0F};
}

} // namespace

ViewareaBehaviour::ViewareaBehaviour(Node& viewarea)
    : ViewareaProc(&viewarea)
    , Proc(viewarea)
    , _port(osg::Viewport::create())
    , _camera(osg::PerspectiveCamera::create())
    , _parallelCamera(osg::OrthographicCamera::create())
    , _beacon(osg::Node::create())
    , _beaconTransform(osg::Transform::create())
    , _root(osg::Node::create())
    , _headlight(osg::DirectionalLight::create())
    , _scene(osg::VisitSubTree::create())
{
    _beacon->setCore(_beaconTransform.get());
    _camera->setBeacon(_beacon.get());
    _parallelCamera->setBeacon(_beacon.get());
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
    if (SceneProc* const shown = scene())
        shown->state().setViewer(*this, nullptr);
    setWindow(osg::WindowPtr());
}

void ViewareaBehaviour::start(double)
{
    _input = std::make_unique<ViewareaInput>(*this);
}

void ViewareaBehaviour::fieldChanged(Field&, double)
{
    redraw();
}

std::string ViewareaBehaviour::sensorDescription() const
{
    return _input ? _input->sensorDescription() : std::string();
}

void ViewareaBehaviour::redraw()
{
    _redraw = true;
    requestFrame();
}

SceneProc* ViewareaBehaviour::scene() const
{
    return procAs<SceneProc>(context().findRoot(Scene::_type));
}

ViewpointProc* ViewareaBehaviour::viewpoint() const
{
    if (auto* const own = elementOf<ViewpointProc>(readNode(node(), parts(node()).viewpoint)))
        return own;
    const SceneProc* const shown = scene();
    return shown ? static_cast<ViewpointProc*>(shown->stack(BindableKind::Viewpoint).bound()) : nullptr;
}

void ViewareaBehaviour::look(ViewpointProc& viewpoint, double time)
{
    if (readNode(node(), parts(node()).viewpoint))
        edit<SFNode>(node(), parts(node()).viewpoint).setNode(time, &viewpoint.node(), Field::EXTERNAL_CT);
    else
        viewpoint.bind(true, time);
}

SceneView ViewareaBehaviour::plainView(const SceneProc& scene) const
{
    SceneView view = scene.view();
    if (const auto* const own = elementOf<ViewpointProc>(readNode(node(), parts(node()).viewpoint))) {
        view.orthographic = false;
        own->describe(view);
    }
    return view;
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

bool ViewareaBehaviour::viewRay(int x, int y, osg::Line& ray) const
{
    return contains(x, y) && _port->getCamera()->calcViewRay(ray, x, y, *_port);
}

std::vector<Node*> ViewareaBehaviour::pick(int x, int y) const
{
    std::vector<Node*> chain;
    SceneProc* const shown = scene();
    osg::Line ray;
    if (!shown || !viewRay(x, y, ray) ||
        !shown->castRay(ray, chain, nullptr, nullptr, nullptr, nullptr, nullptr))
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
        if (SceneProc* const shown = scene())
            shown->state().setViewVolume(*this, nullptr);
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
    _redraw = false;
    placeViewport();
    SceneProc* const shown = scene();
    const osg::NodePtr sceneRoot = shown ? shown->root() : osg::NodePtr();
    if (_scene->getSubTreeRoot() != sceneRoot)
        _scene->setSubTreeRoot(sceneRoot);
    if (!shown)
        return;
    SceneView view = plainView(*shown);
    if (_input)
        _input->aim(view);
    shown->state().setViewer(*this, &view.viewpoint);
    followView(view);
    _port->setBackground(view.background);
    _headlight->setOn(view.headlight);
    aimCamera(view, sceneRoot);
    osg::Matrix toClip;
    _port->getCamera()->getWorldToScreen(toClip, *_port);
    shown->state().setViewVolume(*this, &toClip);
}

void ViewareaBehaviour::drawInnerPictures(osg::RenderAction& action) const
{
    SceneProc* const shown = scene();
    if (!shown || !shown->root() || _viewport == osg::NullFC)
        return;
    for (InnerPicture* const picture : shown->state().innerPictures())
        picture->draw(
            {_window, action, _root.get(), shown->root(), _port->getBackground(), context().timeStamp()});
}

osg::Vec2f ViewareaBehaviour::pixels() const
{
    return osg::Vec2f(static_cast<float>(std::max(_port->getPixelWidth(), 1)),
                      static_cast<float>(std::max(_port->getPixelHeight(), 1)));
}

void ViewareaBehaviour::followView(const SceneView& view)
{
    const osg::Vec2f size = pixels();
    DrawnView drawn;
    drawn.cameraToWorld = view.viewpoint;
    drawn.hasPerspective = !view.orthographic;
    drawn.pixelSize = view.orthographic ? verticalSize(view, size) / size[1]
                                        : 2.0F * std::tan(verticalAngle(view, size) * 0.5F) / size[1];
    scene()->state().followView(drawn);
}

void ViewareaBehaviour::aimCamera(const SceneView& view, const osg::NodePtr& sceneRoot)
{
    const osg::Vec2f size = pixels();
    osg::Matrix place = view.viewpoint;
    const DepthRange range = depthRange(view, sceneRoot);
    if (view.orthographic) {
        // The middle of the window in space is the middle of the viewport.
        const float* const low = view.fieldOfViewMin;
        const float* const high = view.fieldOfViewMax;
        osg::Matrix aside;
        aside.setTranslate((low[0] + high[0]) * 0.5F, (low[1] + high[1]) * 0.5F, 0.0F);
        place.mult(aside);
        _parallelCamera->setVerticalSize(verticalSize(view, size));
        _parallelCamera->setNear(range.nearPlane);
        _parallelCamera->setFar(range.farPlane);
        _port->setCamera(osg::CameraPtr(_parallelCamera.get()));
    } else {
        _camera->setFov(verticalAngle(view, size));
        _camera->setNear(range.nearPlane);
        _camera->setFar(range.farPlane);
        _port->setCamera(osg::CameraPtr(_camera.get()));
    }
    _beaconTransform->setMatrix(place);
}

} // namespace Orvane
