#include "LayerView.h"

#include "base/Proc.h"
#include "core/InnerPicture.h"
#include "core/SceneLayer.h"
#include <OpenSG/OSGDynamicVolume.h>
#include <OpenSG/OSGWindow.h>
#include <Orvane/Node.h>
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Orvane {

namespace {

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

/// Where the camera of a view stands. Without perspective the middle of the window in space is the middle of
/// the viewport.
osg::Matrix eyeOf(const SceneView& view)
{
    osg::Matrix place = view.viewpoint;
    if (view.orthographic) {
        const float* const low = view.fieldOfViewMin;
        const float* const high = view.fieldOfViewMax;
        osg::Matrix aside;
        aside.setTranslate((low[0] + high[0]) * 0.5F, (low[1] + high[1]) * 0.5F, 0.0F);
        place.mult(aside);
    }
    return place;
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

/// What turns to the viewer stands once in its layer, which several ports may draw one after the other: each
/// has it turned its own way.
class LayerView::Port : public osg::Viewport
{
public:
    explicit Port(const LayerView& view)
        : _view(&view)
    {
    }

    void render(osg::RenderActionBase* action) override
    {
        if (_view)
            _view->followAgain();
        Viewport::render(action);
    }
    /// A host may keep the port for longer than its view.
    void forgetView() { _view = nullptr; }

private:
    const LayerView* _view;
};

LayerView::LayerView(const Proc& viewarea)
    : _viewarea(viewarea)
    , _port(osg::ViewportPtr(new Port(*this)))
    , _camera(osg::PerspectiveCamera::create())
    , _parallelCamera(osg::OrthographicCamera::create())
    , _beacon(osg::Node::create())
    , _beaconTransform(osg::Transform::create())
    , _root(osg::Node::create())
    , _headlight(osg::DirectionalLight::create())
    , _content(osg::VisitSubTree::create())
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
    reference->setCore(_content.get());
    _root->addChild(reference);
    _port->setCamera(_camera.get());
    _port->setRoot(_root.get());
}

LayerView::~LayerView()
{
    show(nullptr);
    static_cast<Port&>(*_port).forgetView();
    if (_port->getParent())
        _port->getParent()->subPort(port());
}

SceneLayer* LayerView::layer() const
{
    return procAs<SceneLayer>(Node::findNode(_layerId));
}

void LayerView::show(SceneLayer* layer)
{
    const osg::NodePtr tree = layer ? layer->root() : osg::NodePtr();
    if (_content->getSubTreeRoot() != tree)
        _content->setSubTreeRoot(tree);
    const unsigned long long id = layer ? layer->node().ID() : 0;
    if (id == _layerId)
        return;
    hide();
    if (const std::shared_ptr<SceneState> state = _state.lock())
        state->setViewer(_viewarea, nullptr);
    _layerId = id;
    _state = layer ? layer->sharedState() : std::weak_ptr<SceneState>();
}

void LayerView::hide()
{
    if (const std::shared_ptr<SceneState> state = _state.lock())
        state->setViewVolume(_viewarea, nullptr);
}

void LayerView::place(const SurfacePart& viewarea)
{
    const SceneLayer* const shown = layer();
    const SurfacePart part = shown ? shown->surface() : SurfacePart();
    const float width = viewarea.right - viewarea.left;
    const float height = viewarea.top - viewarea.bottom;
    _port->setSize(viewarea.left + part.left * width, viewarea.bottom + part.bottom * height,
                   part.right == 1.0F ? viewarea.right : viewarea.left + part.right * width,
                   part.top == 1.0F ? viewarea.top : viewarea.bottom + part.top * height);
}

bool LayerView::contains(int x, int y) const
{
    if (!_port->getParent())
        return false;
    // Pointers may be anywhere.
    const std::int64_t fromBottom = std::int64_t(_port->getParent()->getHeight()) - 1 - y;
    return x >= _port->getPixelLeft() && x <= _port->getPixelRight() &&
           fromBottom >= _port->getPixelBottom() && fromBottom <= _port->getPixelTop();
}

bool LayerView::findRay(int x, int y, osg::Line& ray) const
{
    return _port->getCamera()->calcViewRay(ray, x, y, *_port);
}

void LayerView::aim(const SceneView& view, const osg::BackgroundPtr& background)
{
    const SceneLayer* const shown = layer();
    if (!shown)
        return;
    shown->state().setViewer(_viewarea, &view.viewpoint);
    follow(view);
    _port->setBackground(background);
    _background = view.background;
    _headlight->setOn(view.headlight);
    aimCamera(view, shown->root());
    osg::Matrix toClip;
    _port->getCamera()->getWorldToScreen(toClip, *_port);
    shown->state().setViewVolume(_viewarea, &toClip);
}

void LayerView::drawInnerPictures(const osg::WindowPtr& window, osg::RenderAction& action, double time) const
{
    const SceneLayer* const shown = layer();
    if (!shown || !_background)
        return;
    for (InnerPicture* const picture : shown->state().innerPictures())
        picture->draw({window, action, _root.get(), shown->root(), _background.get(), time});
}

osg::Vec2f LayerView::pixels() const
{
    return osg::Vec2f(static_cast<float>(std::max(_port->getPixelWidth(), 1)),
                      static_cast<float>(std::max(_port->getPixelHeight(), 1)));
}

void LayerView::follow(const SceneView& view)
{
    const osg::Vec2f size = pixels();
    _drawn.cameraToWorld = eyeOf(view);
    _drawn.hasPerspective = !view.orthographic;
    _drawn.pixelSize = view.orthographic ? verticalSize(view, size) / size[1]
                                         : 2.0F * std::tan(verticalAngle(view, size) * 0.5F) / size[1];
    _drawn.pixels = size;
    if (const std::shared_ptr<SceneState> state = _state.lock())
        state->followView(_drawn, this);
}

void LayerView::followAgain() const
{
    const std::shared_ptr<SceneState> state = _state.lock();
    if (state && state->followed() != this)
        state->followView(_drawn, this);
}

void LayerView::aimCamera(const SceneView& view, const osg::NodePtr& layerRoot)
{
    const osg::Vec2f size = pixels();
    const DepthRange range = depthRange(view, layerRoot);
    if (view.orthographic) {
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
    _beaconTransform->setMatrix(eyeOf(view));
}

} // namespace Orvane
