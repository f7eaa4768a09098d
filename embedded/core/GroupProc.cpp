#include "core/GroupProc.h"
#include "core/ListEdit.h"
#include "core/PointingSensorProc.h"
#include "core/RayTarget.h"
#include "core/SceneLayer.h"
#include "core/ScopedProc.h"
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part addChildrenPart("addChildren");
const Part childrenPart("children");
const Part removeChildrenPart("removeChildren");
const Part visiblePart("visible");

} // namespace

GroupProc::GroupProc(Node& node)
    : GroupProc(node, osg::Group::create())
{
}

GroupProc::GroupProc(Node& node, const osg::NodeCorePtr& core)
    : ElementProc(node)
    , _tree(osg::makeNodeFor(core))
{
}

GroupProc::~GroupProc()
{
    if (!_lighting)
        return;
    for (const std::shared_ptr<SceneState>& layer : _lighting->layers)
        layer->setGlobalLights(*this, {});
}

void GroupProc::fieldChanged(Field& field, double time)
{
    if (takeListEvent(node(), field, addChildrenPart, removeChildrenPart, childrenPart, time))
        return;
    if (field.dataType() == MFNODE_DT || field.dataType() == SFNODE_DT)
        childrenChanged(field);
    requestUpdate();
}

void GroupProc::childrenChanged(Field&)
{
    SceneLayer::nodesMayMove(node());
    _childrenChanged = true;
    requestUpdate();
}

void GroupProc::elementChanged(ElementProc&)
{
    askForLights();
}

void GroupProc::elementGone()
{
    // Removed at once: what has died must not be drawn once more.
    for (std::size_t i = _entries.size(); i-- > 0;) {
        Entry& entry = _entries[i];
        if (entry.use.element() || (!entry.shown && !entry.unseen))
            continue;
        removeEntries(i, i + 1);
    }
    _childrenChanged = true;
    requestUpdate();
}

void GroupProc::askForLights()
{
    _lightsChanged = true;
    requestUpdate();
}

void GroupProc::update()
{
    if (visiblePart.isIn(node()))
        _tree->setActive(visiblePart.read<SFBool>(node()).value());
    if (_childrenChanged) {
        _childrenChanged = false;
        syncChildren();
    }
    if (_lightsChanged) {
        _lightsChanged = false;
        syncLights();
    }
    pictureChanged();
}

void GroupProc::collectChildren(std::vector<Node*>& nodes) const
{
    for (NodeLink& link : childrenPart.read<MFNode>(node()))
        nodes.push_back(link.node());
}

void GroupProc::collectLights(std::vector<osg::NodeCorePtr>&) const
{
}

Node* GroupProc::childOf(const osg::NodePtr& shown) const
{
    for (const Entry& entry : _entries) {
        if (entry.shown == shown)
            return entry.node;
    }
    return nullptr;
}

void GroupProc::collectSensors(std::vector<PointingSensorProc*>& sensors) const
{
    std::size_t left = _sensorCount;
    for (auto entry = _entries.begin(); left > 0 && entry != _entries.end(); ++entry) {
        if (!entry->unseen || entry->unseen->scoped)
            continue;
        --left;
        if (auto* const sensor = dynamic_cast<PointingSensorProc*>(entry->use.element()))
            sensors.push_back(sensor);
    }
}

void GroupProc::collectShown(std::vector<ElementProc*>& shown) const
{
    const auto isSeen = [](const osg::NodePtr& root) { return (root->getTravMask() & PictureTarget) != 0; };
    if (!isSeen(_tree))
        return;
    const osg::NodePtr& parent = content();
    const osg::NodeCore::ChildRange range = parent->getCore()->getActiveChildren(parent->getNChildren());
    osg::UInt32 place = 0;
    for (const Entry& entry : _entries) {
        if (!entry.shown)
            continue;
        ElementProc* const element = entry.use.element();
        if (place >= range.first && place < range.last && element && element->tree() &&
            isSeen(element->tree()))
            shown.push_back(element);
        ++place;
    }
}

int GroupProc::shownPlace(std::size_t index) const
{
    return index < _entries.size() && _entries[index].shown ? static_cast<int>(shownBefore(index)) : -1;
}

std::size_t GroupProc::shownBefore(std::size_t index) const
{
    const auto end = _entries.begin() + static_cast<std::ptrdiff_t>(index);
    return static_cast<std::size_t>(
        std::count_if(_entries.begin(), end, [](const Entry& entry) { return bool(entry.shown); }));
}

bool GroupProc::isUpToDate(const Entry& entry, Node* node) const
{
    const ElementProc* const element = entry.use.element();
    // A node without a behaviour of use may have got one, or be another node at the place of a dead one.
    if (entry.node != node || (!element && elementOf(node)))
        return false;
    // What only refers to a tree takes it in when the tree has lost its first place.
    return !element || !entry.shown || entry.shown == element->tree() || element->tree()->getParent();
}

void GroupProc::syncChildren()
{
    std::vector<Node*> nodes;
    nodes.reserve(_entries.size() + 1);
    collectChildren(nodes);
    const std::size_t shorter = std::min(nodes.size(), _entries.size());
    std::size_t front = 0;
    while (front < shorter && isUpToDate(_entries[front], nodes[front]))
        ++front;
    std::size_t back = 0;
    while (back < shorter - front &&
           isUpToDate(_entries[_entries.size() - 1 - back], nodes[nodes.size() - 1 - back]))
        ++back;
    removeEntries(front, _entries.size() - back);

    std::size_t place = shownBefore(front);
    std::vector<Entry> added;
    added.reserve(nodes.size() - front - back);
    for (std::size_t i = front; i < nodes.size() - back; ++i) {
        added.push_back(makeEntry(nodes[i], place));
        place += added.back().shown ? 1 : 0;
    }
    _entries.insert(_entries.begin() + static_cast<std::ptrdiff_t>(front),
                    std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
    contentChanged();
    SceneState::askForGlobalLights(node());
}

GroupProc::Entry GroupProc::makeEntry(Node* child, std::size_t place)
{
    Entry entry;
    entry.node = child;
    ElementProc* const element = elementOf(child);
    entry.use.set(*this, element);
    if (!element)
        return entry;
    if (auto* const scoped = dynamic_cast<ScopedProc*>(element)) {
        entry.unseen = std::make_unique<Unseen>(Unseen{scoped, {}});
        _lightsChanged = true;
    } else if (dynamic_cast<PointingSensorProc*>(element)) {
        entry.unseen = std::make_unique<Unseen>();
        ++_sensorCount;
    } else if (const osg::NodePtr tree = element->tree()) {
        entry.shown = show(tree, place);
    }
    return entry;
}

osg::NodePtr GroupProc::show(const osg::NodePtr& tree, std::size_t place)
{
    const auto index = static_cast<osg::UInt32>(place);
    if (!tree->getParent() && tree != _tree.get()) {
        content()->insertChild(index, tree);
        if (tree->getParent() == content())
            return tree;
    }
    // In use elsewhere already.
    const osg::VisitSubTreePtr reference = osg::VisitSubTree::create();
    reference->setSubTreeRoot(tree);
    const osg::NodePtr stand = osg::makeNodeFor(reference);
    content()->insertChild(index, stand);
    return stand;
}

void GroupProc::syncLights()
{
    std::vector<osg::NodeCorePtr> own;
    std::vector<osg::NodeCorePtr> global;
    collectLights(own);
    for (Entry& entry : _entries) {
        if (!entry.unseen || !entry.unseen->scoped)
            continue;
        Unseen& unseen = *entry.unseen;
        if (!unseen.core)
            unseen.core = unseen.scoped->makeCore();
        unseen.scoped->apply(unseen.core, _tree);
        (unseen.scoped->isGlobal() ? global : own).push_back(unseen.core);
    }
    hangBelow(own);
    if (global.empty() && !(_lighting && !_lighting->layers.empty()))
        return;
    std::vector<std::shared_ptr<SceneState>>& layers = lighting().layers;
    if (layers.empty())
        layers = SceneState::allOf(node());
    for (const std::shared_ptr<SceneState>& layer : layers)
        layer->setGlobalLights(*this, global);
}

const osg::NodePtr& GroupProc::content() const
{
    return _lighting && _lighting->content ? _lighting->content.get() : _tree.get();
}

GroupProc::Lighting& GroupProc::lighting()
{
    if (!_lighting)
        _lighting = std::make_unique<Lighting>(*this);
    return *_lighting;
}

void GroupProc::Lighting::nodesMoved()
{
    if (layers.empty())
        return;
    const std::vector<std::shared_ptr<SceneState>> present = SceneState::allOf(group.node());
    if (present == layers)
        return;
    for (const std::shared_ptr<SceneState>& layer : layers)
        layer->setGlobalLights(group, {});
    // Those that it lights now are found when the lights are looked at.
    layers.clear();
    group.askForLights();
}

void GroupProc::hangBelow(const std::vector<osg::NodeCorePtr>& lights)
{
    std::vector<osg::NodeCorePtr> present;
    for (osg::NodePtr node = content(); node != _tree.get(); node = node->getParent()) {
        if (node != content())
            present.insert(present.begin(), node->getCore());
    }
    if (present == lights)
        return;
    osg::RefPtr<osg::NodePtr>& content = lighting().content;
    if (!content) {
        // What chooses among the children goes down with them.
        const osg::NodeCorePtr chooser(osg::SwitchPtr::dcast(_tree->getCore()));
        content = osg::makeNodeFor(chooser ? chooser : osg::NodeCorePtr(osg::Group::create()));
        if (chooser)
            _tree->setCore(osg::NodeCorePtr(osg::Group::create()));
        while (_tree->getNChildren() > 0)
            content->addChild(_tree->getChild(0));
    } else {
        content->getParent()->subChild(content);
        while (_tree->getNChildren() > 0)
            _tree->subChild(0);
    }
    osg::NodePtr lowest = _tree;
    for (const osg::NodeCorePtr& light : lights) {
        const osg::NodePtr node = osg::makeNodeFor(light);
        lowest->addChild(node);
        lowest = node;
    }
    lowest->addChild(content);
}

void GroupProc::removeEntries(std::size_t first, std::size_t last)
{
    std::vector<ElementProc*> homeless;
    std::size_t place = shownBefore(last);
    for (std::size_t i = last; i-- > first;) {
        const Entry& entry = _entries[i];
        if (entry.unseen && entry.unseen->scoped)
            _lightsChanged = true;
        else if (entry.unseen)
            --_sensorCount;
        if (!entry.shown)
            continue;
        content()->subChild(static_cast<osg::UInt32>(--place));
        ElementProc* const element = entry.use.element();
        if (element && entry.shown == element->tree())
            homeless.push_back(element);
    }
    _entries.erase(_entries.begin() + static_cast<std::ptrdiff_t>(first),
                   _entries.begin() + static_cast<std::ptrdiff_t>(last));
    for (const ElementProc* const element : homeless) {
        for (const Use* use = element->uses(); use; use = use->next()) {
            if (auto* const group = dynamic_cast<GroupProc*>(use->user())) {
                group->_childrenChanged = true;
                group->requestUpdate();
            }
        }
    }
}

GroupProc* groupOf(const ElementProc& element)
{
    GroupProc* first = nullptr;
    for (const Use* use = element.uses(); use; use = use->next()) {
        if (auto* group = dynamic_cast<GroupProc*>(use->user()))
            first = group;
    }
    return first;
}

} // namespace Orvane
