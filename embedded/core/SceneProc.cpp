#include "core/SceneProc.h"
#include "core/LayerSetProc.h"
#include <OpenSG/OSGGroup.h>

namespace Orvane {

namespace {

const ProcRegistration registration("Scene", makeProc<SceneProc>);

} // namespace

SceneProc::SceneProc(Node& scene)
    : SceneBaseNodeProc(&scene)
    , SceneLayer(scene, osg::Group::create())
{
}

LayerSetProc* SceneProc::layerSet() const
{
    return static_cast<LayerSetProc*>(_layerSet.element());
}

void SceneProc::contentChanged()
{
    LayerSetProc* first = nullptr;
    // Looked for only in scenes that have one at all.
    if (!state().layerSets().empty()) {
        std::vector<Node*> nodes;
        collectChildren(nodes);
        for (Node* const child : nodes) {
            auto* const set = elementOf<LayerSetProc>(child);
            if (set && first && set != first)
                set->tellUnused();
            first = first ? first : set;
        }
    }
    _layerSet.set(*this, first);
}

std::vector<SceneLayer*> SceneProc::drawnLayers()
{
    const LayerSetProc* const set = layerSet();
    return set ? set->drawnLayers(*this) : std::vector<SceneLayer*>{this};
}

SceneLayer& SceneProc::activeLayer()
{
    const LayerSetProc* const set = layerSet();
    return set ? set->activeLayer(*this) : *this;
}

} // namespace Orvane
