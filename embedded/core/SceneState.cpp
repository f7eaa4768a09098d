#include "core/SceneState.h"
#include "core/GroupProc.h"
#include "core/SceneProc.h"
#include <Orvane/Node.h>
#include <algorithm>
#include <unordered_map>

namespace Orvane {

namespace {

/// The states of all scenes, by the id of their root node.
std::unordered_map<unsigned long long, std::weak_ptr<SceneState>>& states()
{
    static std::unordered_map<unsigned long long, std::weak_ptr<SceneState>> table;
    return table;
}

/// Groups that light a whole scene, of all scenes.
std::size_t lightingGroups = 0;

/// True when a group is shown: each node above it shows it, up to the root of the scene.
bool isShown(const osg::NodePtr& tree, const osg::NodePtr& sceneRoot)
{
    osg::NodePtr node = tree;
    while (node != sceneRoot) {
        const osg::NodePtr parent = node->getParent();
        if (!parent)
            return false;
        const osg::NodeCore::ChildRange range = parent->getCore()->getActiveChildren(parent->getNChildren());
        if (range.first > 0 || range.last < parent->getNChildren()) {
            const auto place = static_cast<osg::UInt32>(parent->findChild(node));
            if (place < range.first || place >= range.last)
                return false;
        }
        node = parent;
    }
    return true;
}

} // namespace

std::shared_ptr<SceneState> SceneState::of(Node& node)
{
    Node* const root = node.contextRoot();
    if (!root)
        return nullptr;
    std::weak_ptr<SceneState>& entry = states()[root->ID()];
    std::shared_ptr<SceneState> state = entry.lock();
    if (!state) {
        const unsigned long long id = root->ID();
        state = std::shared_ptr<SceneState>(new SceneState, [id](SceneState* dying) {
            states().erase(id);
            delete dying;
        });
        entry = state;
    }
    return state;
}

osg::Pnt3f SceneState::viewer() const
{
    if (!_scene)
        return osg::Pnt3f();
    const osg::Matrix place = viewerToWorld();
    return osg::Pnt3f(place[3][0], place[3][1], place[3][2]);
}

osg::Matrix SceneState::viewerToWorld() const
{
    if (_viewerPlaced)
        return _viewerToWorld;
    return _scene ? _scene->view().viewpoint : osg::Matrix();
}

void SceneState::setViewer(const Proc& view, const osg::Matrix* cameraToWorld)
{
    if (!cameraToWorld && _viewer == &view) {
        _viewer = nullptr;
        _viewerPlaced = false;
    }
    if (!cameraToWorld || (_viewer && _viewer != &view))
        return;
    _viewer = &view;
    _viewerToWorld = *cameraToWorld;
    _viewerPlaced = true;
}

void SceneState::preferViewer(const Proc& view)
{
    _viewer = &view;
}

void SceneState::setGlobalLights(const GroupProc& group, std::vector<osg::NodeCorePtr> lights)
{
    const auto found = std::find_if(_lights.begin(), _lights.end(),
                                    [&](const GroupLights& entry) { return entry.group == &group; });
    // What has not changed must not be asked for again: the scene itself is such a group.
    if (found == _lights.end() ? lights.empty() : found->lights == lights)
        return;
    if (lights.empty()) {
        _lights.erase(found);
        --lightingGroups;
    } else if (found == _lights.end()) {
        _lights.push_back({&group, std::move(lights)});
        ++lightingGroups;
    } else
        found->lights = std::move(lights);
    askForLights();
}

void SceneState::askForGlobalLights(Node& node)
{
    if (lightingGroups == 0)
        return;
    if (const std::shared_ptr<SceneState> state = of(node))
        state->askForLights();
}

void SceneState::askForLights()
{
    if (_scene)
        _scene->lightsChanged();
}

void SceneState::collectLights(std::vector<osg::NodeCorePtr>& lights) const
{
    if (!_scene)
        return;
    for (const GroupLights& entry : _lights) {
        if (isShown(entry.group->tree(), _scene->root()))
            lights.insert(lights.end(), entry.lights.begin(), entry.lights.end());
    }
}

} // namespace Orvane
