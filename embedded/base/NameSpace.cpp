#include "base/NameSpace.h"
#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/NodeData.h"
#include <algorithm>
#include <utility>

namespace Orvane {

namespace {

bool isBelow(const NodeNameSpace* nameSpace, const NodeNameSpace* parent)
{
    for (nameSpace = nameSpace->data()->parent; nameSpace; nameSpace = nameSpace->data()->parent)
        if (nameSpace == parent)
            return true;
    return false;
}

/// False for one whose root has been replaced and only waits for its end.
bool isLiving(const NodeNameSpace& nameSpace)
{
    return !nameSpace.rootNode() || isHeld(*nameSpace.rootNode());
}

/// True for names inside the model of a prototype.
bool isInModel(const NodeNameSpace* nameSpace)
{
    while (nameSpace && !nameSpace->data()->isHidden)
        nameSpace = nameSpace->data()->parent;
    return nameSpace;
}

NodeNameSpace* find(const Context& context, const NodeNameSpace* parent, const std::string& name,
                    bool recursive)
{
    for (const auto& candidate : context.data()->nameSpaces) {
        const NodeNameSpace::Data& data = *candidate->data();
        if (data.name != name || data.isClosed || !isLiving(*candidate) || isInModel(candidate.get()))
            continue;
        if (data.parent == parent || (recursive && (!parent || isBelow(candidate.get(), parent))))
            return candidate.get();
    }
    return nullptr;
}

void setParent(NodeNameSpace& nameSpace, NodeNameSpace* parent)
{
    NodeNameSpace::Data& data = *nameSpace.data();
    if (data.parent) {
        (data.previousNested ? data.previousNested->data()->nextNested : data.parent->data()->firstNested) =
            data.nextNested;
        if (data.nextNested)
            data.nextNested->data()->previousNested = data.previousNested;
    }
    data.parent = parent;
    data.previousNested = nullptr;
    data.nextNested = parent ? std::exchange(parent->data()->firstNested, &nameSpace) : nullptr;
    if (data.nextNested)
        data.nextNested->data()->previousNested = &nameSpace;
}

void removeWhenUnused(NodeNameSpace& nameSpace)
{
    const NodeNameSpace::Data& data = *nameSpace.data();
    if (!data.isClosed || data.members > 0)
        return;
    while (data.firstNested)
        setParent(*data.firstNested, data.parent);
    setParent(nameSpace, nullptr);
    data.context->data()->nameSpaces.erase(data.place);
}

/// Takes the node's name out of the table in which it is found.
void forgetName(Node& node)
{
    if (!node.nameSpace() || !node.name())
        return;
    auto& nodes = node.nameSpace()->data()->nodes;
    const auto found = nodes.find(node.name());
    if (found != nodes.end() && found->second == &node)
        nodes.erase(found);
}

/// True when the node bears the name in the name space and is found by it.
bool isNamed(const Node& node, NodeNameSpace* nameSpace, std::string_view name)
{
    if (node.nameSpace() != nameSpace)
        return false;
    if (!node.name() || name.empty())
        return !node.name() && name.empty();
    return *node.name() == name && (!nameSpace || NodeNameSpace::findNode(nameSpace, *node.name()) == &node);
}

void moveTo(Node& node, NodeNameSpace* nameSpace)
{
    NodeNameSpace* const old = node.nameSpace();
    if (old == nameSpace)
        return;
    NodeAccess::setNameSpace(node, nameSpace);
    if (nameSpace)
        ++nameSpace->data()->members;
    if (old) {
        --old->data()->members;
        removeWhenUnused(*old);
    }
}

/// Ends what the node is the root of: its names are found no more, and go with the last node that has them.
void closeNamesOf(Node& root)
{
    auto& namesOfRoots = contextData(root).namesOfRoots;
    for (auto own = namesOfRoots.find(&root); own != namesOfRoots.end(); own = namesOfRoots.find(&root)) {
        SceneNames& names = *own->second;
        namesOfRoots.erase(own);
        names.close();
        removeWhenUnused(names);
    }
}

} // namespace

NodeNameSpace::NodeNameSpace() = default;

NodeNameSpace::~NodeNameSpace()
{
    delete _data;
}

SceneNames::SceneNames(Context& context, NodeNameSpace* parent, std::string_view name, Node* rootNode,
                       const Relayne::URL& baseURL)
{
    _rootNode = rootNode;
    _baseURL = baseURL;
    _data = new Data{&context, nullptr, std::string(name), {}};
    setParent(*this, parent);
}

SceneNames::~SceneNames() = default;

void SceneNames::close()
{
    _rootNode = nullptr;
    _data->isClosed = true;
}

void SceneNames::setRoot(Node& root)
{
    _rootNode = &root;
}

Node* NodeNameSpace::findNode(NodeNameSpace* nameSpace, const std::string& name)
{
    if (!nameSpace)
        return nullptr;
    const auto found = nameSpace->_data->nodes.find(&name);
    return found != nameSpace->_data->nodes.end() ? found->second : nullptr;
}

NodeNameSpace* NodeNameSpace::findNameSpace(NodeNameSpace* parent, const std::string& name, Context* context,
                                            bool recursive)
{
    if (parent)
        return find(*parent->_data->context, parent, name, recursive);
    if (context)
        return find(*context, nullptr, name, recursive);
    for (const Context* living : livingContexts())
        if (NodeNameSpace* found = find(*living, nullptr, name, recursive))
            return found;
    return nullptr;
}

NodeNameSpace* createNameSpace(Context& context, NodeNameSpace* parent, std::string_view name, Node* rootNode,
                               const Relayne::URL& baseURL)
{
    if (rootNode && rootNode->data()->isNameSpaceRoot)
        closeNamesOf(*rootNode);
    auto& nameSpaces = context.data()->nameSpaces;
    nameSpaces.push_back(std::make_unique<SceneNames>(context, parent, name, rootNode, baseURL));
    SceneNames* const made = nameSpaces.back().get();
    made->data()->place = std::prev(nameSpaces.end());
    if (rootNode) {
        rootNode->data()->isNameSpaceRoot = true;
        context.data()->namesOfRoots.emplace(rootNode, made);
    }
    // A root stands in its own names; the root of nested ones keeps its place among the names outside.
    if (rootNode && rootNode->type()->isContextRoot()) {
        const std::string ownName = rootNode->name() ? *rootNode->name() : std::string();
        setName(*rootNode, made, ownName);
    }
    return made;
}

unsigned int fileVersion(const NodeNameSpace* names)
{
    return names ? names->data()->fileVersion : newestVersion;
}

void setFileVersion(NodeNameSpace& names, unsigned int version)
{
    names.data()->fileVersion = version;
}

void hideNameSpace(NodeNameSpace& names, Node& model)
{
    auto& namesOfRoots = contextData(model).namesOfRoots;
    const auto [first, last] = namesOfRoots.equal_range(names.rootNode());
    const auto own =
        std::find_if(first, last, [&names](const auto& entry) { return entry.second == &names; });
    if (own != last)
        namesOfRoots.erase(own);
    auto& sceneNames = static_cast<SceneNames&>(names);
    sceneNames.setRoot(model);
    sceneNames.data()->isHidden = true;
    model.data()->isNameSpaceRoot = true;
    namesOfRoots.emplace(&model, &sceneNames);
}

const std::string* makeName(std::string_view text)
{
    return new (smallBlocks::allocate(sizeof(std::string))) std::string(text);
}

void dropName(const std::string* name)
{
    std::destroy_at(name);
    smallBlocks::release(const_cast<std::string*>(name), sizeof(std::string));
}

void setName(Node& node, NodeNameSpace* nameSpace, std::string_view name)
{
    if (isNamed(node, nameSpace, name))
        return;
    forgetName(node);
    const std::unique_ptr<const std::string, decltype(&dropName)> oldName(node.name(), &dropName);
    NodeAccess::setName(node, name.empty() ? nullptr : makeName(name));
    moveTo(node, nameSpace);
    if (nameSpace && node.name()) {
        auto& nodes = nameSpace->data()->nodes;
        const auto [place, isNew] = nodes.emplace(node.name(), &node);
        if (!isNew) {
            nodes.erase(place); // its key is the string of who bore the name before
            nodes.emplace(node.name(), &node);
        }
    }
    Node::_nameSpaceChanged.fire(timeOf(node), nullptr, &node);
}

void leaveNameSpace(Node& node)
{
    forgetName(node);
    if (NodeNameSpace* const own = node.nameSpace()) {
        NodeAccess::setNameSpace(node, nullptr);
        --own->data()->members;
        removeWhenUnused(*own);
    }
    if (node.data()->isNameSpaceRoot)
        closeNamesOf(node);
}

void endNameSpaces(Context& context)
{
    context.data()->namesOfRoots.clear();
    context.data()->nameSpaces.clear();
}

} // namespace Orvane
