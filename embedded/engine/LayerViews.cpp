#include "LayerViews.h"

#include "core/SceneProc.h"
#include <OpenSG/OSGDepthClearBackground.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGPassiveBackground.h>
#include <OpenSG/OSGSolidBackground.h>
#include <algorithm>

namespace Orvane {

/// A port that shows nothing but its background and foregrounds.
struct LayerViews::Ground
{
    osg::RefPtr<osg::ViewportPtr> port;
    osg::RefPtr<osg::NodePtr> root;
    osg::RefPtr<osg::BackgroundPtr> background;
};

LayerViews::LayerViews(const Proc& viewarea)
    : _viewarea(viewarea)
    , _base(viewarea)
    , _drawn{&_base}
    , _lower(osg::BackgroundPtr(osg::DepthClearBackground::create()))
    , _ports{_base.port()}
{
}

LayerViews::~LayerViews()
{
    setWindow(osg::WindowPtr());
}

void LayerViews::setWindow(const osg::WindowPtr& window)
{
    if (_window) {
        for (const osg::ViewportPtr& port : _ports)
            _window->subPort(port);
    }
    _window = window;
    if (!window)
        return;
    for (const osg::ViewportPtr& port : _ports)
        window->addPort(port);
}

void LayerViews::addForegrounds(const osg::ForegroundPtr& ofLayers, const osg::ForegroundPtr& ofAll)
{
    _ofLayers = ofLayers;
    _ofAll = ofAll;
    _base.port()->addForeground(ofLayers);
    _base.port()->addForeground(ofAll);
}

const LayerView* LayerViews::of(const SceneLayer& layer) const
{
    const auto found = std::find_if(_drawn.begin(), _drawn.end(),
                                    [&](const LayerView* view) { return view->layer() == &layer; });
    return found == _drawn.end() ? nullptr : *found;
}

osg::BackgroundPtr LayerViews::backgroundOf(const LayerView& view, const osg::BackgroundPtr& own) const
{
    return !_drawn.empty() && _drawn.front() == &view ? own : osg::BackgroundPtr(_lower.get());
}

void LayerViews::hide()
{
    for (LayerView* const view : _drawn)
        view->hide();
}

void LayerViews::show(SceneProc* scene, const SurfacePart& viewarea)
{
    _part = viewarea;
    const std::vector<SceneLayer*> layers = scene ? scene->drawnLayers() : std::vector<SceneLayer*>();
    // The scene's own layer has the base for the first time that it is drawn.
    std::vector<LayerView*> drawn;
    std::vector<std::pair<LayerView*, SceneLayer*>> shown;
    std::size_t used = 0;
    bool isBaseDrawn = false;
    for (SceneLayer* const layer : layers) {
        if (layer == scene && !isBaseDrawn) {
            isBaseDrawn = true;
            drawn.push_back(&_base);
            continue;
        }
        if (used == _others.size())
            _others.push_back(std::make_unique<LayerView>(_viewarea));
        shown.emplace_back(_others[used++].get(), layer);
        drawn.push_back(shown.back().first);
    }
    _base.show(scene);
    if (!isBaseDrawn)
        _base.hide();
    for (const auto& [view, layer] : shown)
        view->show(layer);
    for (LayerView* const view : drawn)
        view->place(viewarea);
    _base.place(viewarea);
    const bool changed = drawn != _drawn;
    _drawn = std::move(drawn);
    while (_others.size() > used) {
        const osg::ViewportPtr port = _others.back()->port();
        _ports.erase(std::remove(_ports.begin(), _ports.end(), port), _ports.end());
        _others.pop_back();
    }
    // Almost all scenes are one layer.
    if (!changed && _drawn.size() == 1 && isBaseDrawn)
        return;
    const SceneLayer* const lowest = _drawn.empty() ? nullptr : _drawn.front()->layer();
    arrange(scene && (!lowest || !lowest->surface().isWhole()));
}

osg::ViewportPtr LayerViews::ground(std::unique_ptr<Ground>& ground, bool fills)
{
    if (!ground) {
        ground = std::make_unique<Ground>();
        ground->port = osg::Viewport::create();
        ground->root = osg::makeNodeFor(osg::Group::create());
        ground->background = fills ? osg::BackgroundPtr(osg::SolidBackground::create())
                                   : osg::BackgroundPtr(osg::PassiveBackground::create());
        ground->port->setRoot(ground->root.get());
        ground->port->setBackground(ground->background.get());
    }
    ground->port->setCamera(_base.port()->getCamera());
    ground->port->setSize(_part.left, _part.bottom, _part.right, _part.top);
    return osg::ViewportPtr(ground->port.get());
}

void LayerViews::arrange(bool fillsBehind)
{
    std::vector<osg::ViewportPtr> ports;
    const bool isBaseDrawn = std::find(_drawn.begin(), _drawn.end(), &_base) != _drawn.end();
    // It stands in the window all the same: hosts ask it for its size.
    if (!isBaseDrawn) {
        ports.push_back(_base.port());
        _base.port()->setBackground(osg::BackgroundPtr(_lower.get()));
    }
    _base.port()->setTravMask(isBaseDrawn ? ~osg::UInt32(0) : 0);
    if (fillsBehind)
        ports.push_back(ground(_behind, true));
    for (LayerView* const view : _drawn)
        ports.push_back(view->port());
    const bool hasFront = ports.size() > 1;
    if (hasFront)
        ports.push_back(ground(_front, false));

    const osg::UInt32 mode = _base.port()->getPolygonMode();
    for (const auto& other : _others)
        other->port()->setPolygonMode(mode);
    if (ports == _ports)
        return;
    osg::UInt32 place = 0;
    if (_window) {
        const auto& present = _window->getPort();
        place = static_cast<osg::UInt32>(std::find(present.begin(), present.end(), _ports.front()) -
                                         present.begin());
        for (const osg::ViewportPtr& port : _ports)
            _window->subPort(port);
    }
    _ports = std::move(ports);
    for (const osg::ViewportPtr& port : _ports) {
        if (_window)
            _window->insertPort(place++, port);
        port->clearForegrounds();
    }
    if (!_ofAll)
        return;
    for (LayerView* const view : _drawn)
        view->port()->addForeground(osg::ForegroundPtr(_ofLayers.get()));
    _ports.back()->addForeground(osg::ForegroundPtr(_ofAll.get()));
}

} // namespace Orvane
