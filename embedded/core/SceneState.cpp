#include "core/SceneState.h"
#include "base/Graph.h"
#include "base/NodeClimb.h"
#include "core/GroupProc.h"
#include "core/KeyDeviceProc.h"
#include "core/SceneLayer.h"
#include "core/ViewFollower.h"
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace Orvane {

namespace {

/// The states of all layers, by the id of their node.
std::unordered_map<unsigned long long, std::weak_ptr<SceneState>>& states()
{
    static std::unordered_map<unsigned long long, std::weak_ptr<SceneState>> table;
    return table;
}

/// Groups that light a whole scene, of all scenes.
std::size_t lightingGroups = 0;

/// The topmost node above a tree; null when one on the way hides it.
osg::NodePtr shownIn(const osg::NodePtr& tree)
{
    osg::NodePtr node = tree;
    while (const osg::NodePtr parent = node->getParent()) {
        const osg::NodeCore::ChildRange range = parent->getCore()->getActiveChildren(parent->getNChildren());
        if (range.first > 0 || range.last < parent->getNChildren()) {
            const auto place = static_cast<osg::UInt32>(parent->findChild(node));
            if (place < range.first || place >= range.last)
                return osg::NullFC;
        }
        node = parent;
    }
    return node;
}

bool isLayer(const Node& node)
{
    const std::string& type = node.type()->name;
    return type == "Layer" || type == "LayoutLayer";
}

bool isTop(const Node& node)
{
    return isLayer(node) || node.type()->isContextRoot();
}

/// True for a node that only knows those in its fields.
bool onlyKnows(const Node& node)
{
    return isOfType(*node.type(), "X3DScriptNode") || isOfType(*node.type(), "X3DSensorNode");
}

/// The layer in which a node stands: itself, the lowest one above it, or the scene. Null when no way leads
/// there but those by nodes that only know it.
Node* seatedIn(Node& node)
{
    if (isTop(node))
        return &node;
    // Nearly always the oldest links lead there.
    for (Node* const above : nodesAbove(node)) {
        if (onlyKnows(*above))
            break;
        if (isTop(*above))
            return above;
    }
    std::unordered_set<const Node*> seen{&node};
    std::vector<Node*> open{&node};
    while (!open.empty()) {
        Node& next = *open.back();
        open.pop_back();
        if (isTop(next))
            return &next;
        const std::vector<Node*> parents = parentsOf(next);
        for (auto parent = parents.rbegin(); parent != parents.rend(); ++parent) {
            if (!onlyKnows(**parent) && seen.insert(*parent).second)
                open.push_back(*parent);
        }
    }
    return nullptr;
}

/// The layer in which a node stands, be it only known there.
Node* layerOf(Node& node)
{
    Node* const root = node.contextRoot();
    if (!root)
        return nullptr;
    if (Node* const seat = seatedIn(node))
        return seat;
    for (Node* const above : nodesAbove(node)) {
        if (isLayer(*above))
            return above;
    }
    return root;
}

/// False when the box lies on the outer side of one of the planes that bound a view. The far one, which only
/// follows from how far the scene reaches, does not count.
bool mayShowBox(const osg::Matrix& toClip, const osg::Vec3f& center, const osg::Vec3f& size)
{
    unsigned int outside = ~0U;
    for (unsigned int corner = 0; corner < 8; ++corner) {
        osg::Vec4f place(center[0], center[1], center[2], 1.0F);
        for (osg::UInt32 axis = 0; axis < 3; ++axis)
            place[axis] += (corner >> axis & 1U ? 0.5F : -0.5F) * size[axis];
        toClip.multMatrixVec(place);
        const float w = place[3];
        outside &= (place[0] < -w ? 1U : 0U) | (place[0] > w ? 2U : 0U) | (place[1] < -w ? 4U : 0U) |
                   (place[1] > w ? 8U : 0U) | (place[2] < -w ? 16U : 0U);
    }
    return outside == 0;
}

} // namespace

std::shared_ptr<SceneState> SceneState::of(Node& node)
{
    Node* const layer = layerOf(node);
    return layer ? ofLayer(*layer) : nullptr;
}

std::shared_ptr<SceneState> SceneState::seatOf(Node& node)
{
    Node* const layer = node.contextRoot() ? seatedIn(node) : nullptr;
    return layer ? ofLayer(*layer) : nullptr;
}

std::shared_ptr<SceneState> SceneState::ofScene(Node& node)
{
    Node* const root = node.contextRoot();
    return root ? ofLayer(*root) : nullptr;
}

std::vector<std::shared_ptr<SceneState>> SceneState::allOf(Node& node)
{
    std::vector<std::shared_ptr<SceneState>> result;
    std::unordered_set<const Node*> seen{&node};
    std::vector<Node*> open{&node};
    while (!open.empty()) {
        Node& next = *open.back();
        open.pop_back();
        if (isLayer(next) || next.type()->isContextRoot()) {
            result.push_back(ofLayer(next));
            continue;
        }
        for (Node* const parent : parentsOf(next)) {
            if (seen.insert(parent).second)
                open.push_back(parent);
        }
    }
    return result;
}

std::shared_ptr<SceneState> SceneState::ofLayer(const Node& layer)
{
    std::weak_ptr<SceneState>& entry = states()[layer.ID()];
    std::shared_ptr<SceneState> state = entry.lock();
    if (!state) {
        const unsigned long long id = layer.ID();
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
    if (!_layer)
        return osg::Pnt3f();
    const osg::Matrix place = viewerToWorld();
    return osg::Pnt3f(place[3][0], place[3][1], place[3][2]);
}

osg::Matrix SceneState::viewerToWorld() const
{
    if (_viewerPlaced)
        return _viewerToWorld;
    return _layer ? _layer->view().viewpoint : osg::Matrix();
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

void SceneState::setViewVolume(const Proc& view, const osg::Matrix* worldToClip)
{
    const auto found = std::find_if(_viewVolumes.begin(), _viewVolumes.end(),
                                    [&](const auto& volume) { return volume.first == &view; });
    const bool isKnown = found != _viewVolumes.end();
    if (isKnown ? worldToClip && found->second == *worldToClip : !worldToClip)
        return;
    ++_viewVersion;
    if (!worldToClip)
        _viewVolumes.erase(found);
    else if (isKnown)
        found->second = *worldToClip;
    else
        _viewVolumes.emplace_back(&view, *worldToClip);
}

bool SceneState::isBoxSeen(const osg::Matrix& toWorld, const osg::Vec3f& center, const osg::Vec3f& size) const
{
    return std::any_of(_viewVolumes.begin(), _viewVolumes.end(), [&](const auto& volume) {
        osg::Matrix toClip = volume.second;
        toClip.mult(toWorld);
        return mayShowBox(toClip, center, size);
    });
}

void SceneState::removeViewFollower(ViewFollower& follower)
{
    _viewFollowers.erase(std::remove(_viewFollowers.begin(), _viewFollowers.end(), &follower),
                         _viewFollowers.end());
}

void SceneState::followView(const DrawnView& view, const void* follower)
{
    _followed = follower;
    // What stands below one that turned has to look again. More levels than this keep the rest for the next
    // picture.
    constexpr int MostLevels = 8;
    bool changed = true;
    for (int level = 0; changed && level < MostLevels; ++level) {
        changed = false;
        for (ViewFollower* const follower : _viewFollowers)
            changed |= follower->follow(view);
    }
}

void SceneState::removeInnerPicture(InnerPicture& picture)
{
    _innerPictures.erase(std::remove(_innerPictures.begin(), _innerPictures.end(), &picture),
                         _innerPictures.end());
}

void SceneState::removeLayerSet(LayerSetProc& set)
{
    _layerSets.erase(std::remove(_layerSets.begin(), _layerSets.end(), &set), _layerSets.end());
}

void SceneState::removeKeyDevice(KeyDeviceProc& device)
{
    _keyDevices.erase(std::remove(_keyDevices.begin(), _keyDevices.end(), &device), _keyDevices.end());
}

bool SceneState::pressKey(int code, double time)
{
    bool kept = false;
    for (KeyDeviceProc* const device : _keyDevices) {
        if (device->isEnabled() && device->press(code, time))
            kept = true;
    }
    return kept;
}

void SceneState::releaseKey(int code, double time)
{
    for (KeyDeviceProc* const device : _keyDevices) {
        if (device->isEnabled())
            device->release(code, time);
    }
}

void SceneState::setGlobalLights(const GroupProc& group, const std::vector<osg::NodeCorePtr>& lights)
{
    const auto found = std::find_if(_lights.begin(), _lights.end(),
                                    [&](const GroupLights& entry) { return entry.group == &group; });
    // What has not changed must not be asked for again: the scene itself is such a group.
    if (found == _lights.end()
            ? lights.empty()
            : std::equal(found->lights.begin(), found->lights.end(), lights.begin(), lights.end()))
        return;
    if (lights.empty()) {
        _lights.erase(found);
        --lightingGroups;
    } else if (found == _lights.end()) {
        _lights.push_back({&group, {lights.begin(), lights.end()}});
        ++lightingGroups;
    } else
        found->lights.assign(lights.begin(), lights.end());
    askForLights();
}

void SceneState::askForGlobalLights(Node& node)
{
    if (lightingGroups == 0)
        return;
    if (const std::shared_ptr<SceneState> state = of(node))
        state->askForLights();
}

bool SceneState::isRootOfLayer(const osg::NodePtr& root)
{
    return std::any_of(states().begin(), states().end(), [&](const auto& entry) {
        const std::shared_ptr<SceneState> state = entry.second.lock();
        return state && state->_layer && state->_layer->root() == root;
    });
}

void SceneState::askForLights()
{
    if (_layer)
        _layer->lightsChanged();
}

void SceneState::collectLights(std::vector<osg::NodeCorePtr>& lights) const
{
    if (!_layer)
        return;
    for (const GroupLights& entry : _lights) {
        const osg::NodePtr top = shownIn(entry.group->GroupProc::tree());
        if (top && (top == _layer->root() || isRootOfLayer(top)))
            lights.insert(lights.end(), entry.lights.begin(), entry.lights.end());
    }
}

} // namespace Orvane
