#include "ViewareaBehaviour.h"

#include "ViewareaInput.h"
#include "base/Graph.h"
#include "base/ValueFields.h"
#include "core/SceneProc.h"
#include "core/ViewpointProc.h"
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

} // namespace

ViewareaBehaviour::ViewareaBehaviour(Node& viewarea)
    : ViewareaProc(&viewarea)
    , Proc(viewarea)
    , _views(*this)
{
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
    redraw();
}

bool ViewareaBehaviour::userPlace(osg::Matrix& cameraToWorld) const
{
    return _input && _input->userPlace(cameraToWorld);
}

bool ViewareaBehaviour::moveUser(const osg::Matrix& cameraToWorld)
{
    return _input && _input->moveUser(cameraToWorld, context().timeStamp());
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

SceneLayer* ViewareaBehaviour::activeLayer() const
{
    SceneProc* const shown = scene();
    return shown ? &shown->activeLayer() : nullptr;
}

ViewpointProc* ViewareaBehaviour::viewpoint() const
{
    const SceneLayer* const layer = activeLayer();
    return layer ? viewpoint(*layer) : nullptr;
}

ViewpointProc* ViewareaBehaviour::ownViewpoint(const SceneLayer& layer) const
{
    auto* const own = elementOf<ViewpointProc>(readNode(node(), parts(node()).viewpoint));
    if (!own || !layer.isNavigable())
        return nullptr;
    // One that stands in no layer, as right in the viewarea, is for the scene's own.
    const SceneLayer* const meant = own->layer();
    return (meant ? meant : scene()) == &layer ? own : nullptr;
}

ViewpointProc* ViewareaBehaviour::viewpoint(const SceneLayer& layer) const
{
    if (ViewpointProc* const own = ownViewpoint(layer))
        return own;
    return static_cast<ViewpointProc*>(layer.stack(BindableKind::Viewpoint).bound());
}

void ViewareaBehaviour::look(ViewpointProc& viewpoint, double time)
{
    if (readNode(node(), parts(node()).viewpoint))
        edit<SFNode>(node(), parts(node()).viewpoint).setNode(time, &viewpoint.node(), Field::EXTERNAL_CT);
    else
        viewpoint.bind(true, time);
}

SceneView ViewareaBehaviour::plainView(const SceneLayer& layer) const
{
    SceneView view = layer.view();
    if (const ViewpointProc* const own = ownViewpoint(layer)) {
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
    return _views.base().contains(x, y);
}

osg::ViewportPtr ViewareaBehaviour::portOf(const SceneLayer& layer) const
{
    const LayerView* const view = _views.of(layer);
    return view ? view->port() : port();
}

void ViewareaBehaviour::addForegrounds(const osg::ForegroundPtr& ofLayers, const osg::ForegroundPtr& ofAll)
{
    _views.addForegrounds(ofLayers, ofAll);
}

bool ViewareaBehaviour::viewRay(int x, int y, osg::Line& ray) const
{
    const SceneLayer* const layer = activeLayer();
    const LayerView* const view = layer ? _views.of(*layer) : nullptr;
    return view && view->contains(x, y) && view->findRay(x, y, ray);
}

std::vector<LayerRay> ViewareaBehaviour::rays(int x, int y) const
{
    std::vector<LayerRay> result;
    const std::vector<LayerView*>& views = _views.drawn();
    result.reserve(views.size());
    for (auto view = views.rbegin(); view != views.rend(); ++view) {
        LayerRay ray{(*view)->layer(), {}, (*view)->contains(x, y)};
        if (ray.layer && (*view)->findRay(x, y, ray.line))
            result.push_back(ray);
    }
    return result;
}

std::vector<Node*> ViewareaBehaviour::pick(int x, int y) const
{
    std::vector<Node*> chain;
    for (const LayerRay& ray : rays(x, y)) {
        if (ray.isInside && ray.layer->isPickable() &&
            ray.layer->castRay(ray.line, chain, nullptr, nullptr, nullptr, nullptr, nullptr))
            break;
    }
    return chain;
}

void ViewareaBehaviour::setWindow(const osg::WindowPtr& window)
{
    if (_views.window() == window)
        return;
    _views.setWindow(window);
    if (window == osg::NullFC) {
        _viewport = osg::ViewportPtr();
        _views.hide();
        if (_input)
            _input->letGo(context().timeStamp());
        return;
    }
    _viewport = port();
    _views.base().place(part());
}

SurfacePart ViewareaBehaviour::part() const
{
    const osg::Vec2f& position = read<SFVec2f>(node(), parts(node()).position).value();
    const osg::Vec2f& size = read<SFVec2f>(node(), parts(node()).size).value();
    const auto fraction = [](float value) {
        return std::isfinite(value) ? std::clamp(value, 0.0F, 1.0F) : 0.0F;
    };
    return {fraction(position[0]), fraction(position[0] + size[0]), fraction(position[1]),
            fraction(position[1] + size[1])};
}

void ViewareaBehaviour::prepare()
{
    _redraw = false;
    _views.show(scene(), part());
    for (LayerView* const view : _views.drawn()) {
        SceneLayer* const layer = view->layer();
        if (!layer)
            continue;
        SceneView look = plainView(*layer);
        if (_input && layer->isNavigable())
            _input->aim(*layer, look);
        view->aim(look, _views.backgroundOf(*view, look.background));
    }
}

void ViewareaBehaviour::drawInnerPictures(osg::RenderAction& action) const
{
    if (_viewport == osg::NullFC)
        return;
    for (const LayerView* const view : _views.drawn()) {
        const SceneLayer* const layer = view->layer();
        if (layer && _views.of(*layer) == view)
            view->drawInnerPictures(_views.window(), action, context().timeStamp());
    }
}

} // namespace Orvane
