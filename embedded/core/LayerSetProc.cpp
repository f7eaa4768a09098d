#include "core/LayerSetProc.h"
#include "core/Part.h"
#include "core/SceneProc.h"
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFInt32.h>

namespace Orvane {

namespace {

const Part activeLayerPart("activeLayer");
const Part layersPart("layers");
const Part orderPart("order");

/// A picture has no more layers, however often its set lists them.
constexpr std::size_t mostDrawn = 256;

const ProcRegistration registration("LayerSet", makeProc<LayerSetProc>);

} // namespace

LayerSetProc::~LayerSetProc()
{
    if (_scene)
        _scene->removeLayerSet(*this);
}

void LayerSetProc::start(double)
{
    _scene = SceneState::ofScene(node());
    if (_scene)
        _scene->addLayerSet(*this);
    requestUpdate();
}

void LayerSetProc::update()
{
    const MFNode& layers = layersPart.read<MFNode>(node());
    _layers.resize(layers.size());
    auto use = _layers.begin();
    for (NodeLink& link : layers)
        (use++)->set(*this, elementOf<SceneLayer>(link.node()));
    pictureChanged();

    const auto isNumber = [this](int number) {
        return number >= 0 && static_cast<std::size_t>(number) <= _layers.size();
    };
    const auto range = [this] { return "expected numbers from 0 to " + std::to_string(_layers.size()); };
    const std::vector<int>& order = orderPart.read<MFInt32>(node()).values();
    for (const int number : order) {
        if (!isNumber(number))
            complain("order", range() + ", found " + std::to_string(number) + "; it is left out");
    }
    if (order.size() > mostDrawn)
        complain("order", "expected at most " + std::to_string(mostDrawn) + " numbers; the rest is left out");
    if (const int active = activeLayerPart.read<SFInt32>(node()).value(); !isNumber(active))
        complain("activeLayer", range() + ", found " + std::to_string(active) + "; it counts as 0");

    if (!_isPlaced)
        requestUpdate(); // once more when the groups above have taken it in
    else if (const GroupProc* const group = groupOf(*this); group && !dynamic_cast<const SceneProc*>(group))
        tellUnused();
    _isPlaced = true;
}

void LayerSetProc::tellUnused()
{
    complain(nullptr,
             "only the first LayerSet among the outermost nodes of a scene counts; the layers of this "
             "one are not drawn");
}

SceneLayer* LayerSetProc::layerAt(int number, SceneLayer& scene) const
{
    if (number == 0)
        return &scene;
    const auto index = static_cast<std::size_t>(number) - 1;
    return number > 0 && index < _layers.size() ? static_cast<SceneLayer*>(_layers[index].element())
                                                : nullptr;
}

std::vector<SceneLayer*> LayerSetProc::drawnLayers(SceneLayer& scene) const
{
    std::vector<SceneLayer*> result;
    const std::vector<int>& order = orderPart.read<MFInt32>(node()).values();
    for (std::size_t i = 0; i < order.size() && i < mostDrawn; ++i) {
        SceneLayer* const layer = layerAt(order[i], scene);
        if (layer && layer->isVisible())
            result.push_back(layer);
    }
    return result;
}

SceneLayer& LayerSetProc::activeLayer(SceneLayer& scene) const
{
    SceneLayer* const layer = layerAt(activeLayerPart.read<SFInt32>(node()).value(), scene);
    return layer ? *layer : scene;
}

} // namespace Orvane
