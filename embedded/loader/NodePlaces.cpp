// Where the scene builder puts nodes.
#include "base/Graph.h"
#include "loader/ChildPlacement.h"
#include "loader/FileScope.h"
#include "loader/LoadSession.h"
#include "loader/SceneBuilder.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>

namespace Orvane {

/// Window and Viewarea at the top of a scene stand for the engine that they need.
bool SceneBuilder::placeRoot(Node& node)
{
    const bool isWindow = isOf(node, "Window");
    if (!isTopLevel() || !isScene() || _scope->isLibrary || !(isWindow || isOf(node, "Viewarea")))
        return false;
    Node& engine = _session.contextRoot(*findType("Engine"));
    auto& windows = edit<MFNode>(engine, static_cast<unsigned int>(partIndex(*engine.type(), "windows")));
    if (isWindow)
        return windows.addNode(0.0, &node, Field::LOADER_CT);
    // The scene may have put other nodes among its windows.
    NodeRef window;
    for (NodeLink& link : windows)
        if (link.directNode() && isOf(*link.directNode(), "Window"))
            window = NodeRef(link.directNode());
    if (!window) {
        window = createNode(_session.context(), *findType("Window"), LOADER_NC);
        windows.addNode(0.0, window.get(), Field::LOADER_CT);
    }
    return edit<MFNode>(*window, static_cast<unsigned int>(partIndex(*window->type(), "viewareas")))
        .addNode(0.0, &node, Field::LOADER_CT);
}

bool SceneBuilder::place(Node& child, std::string_view container, SourcePlace at)
{
    Field* field = fieldForChild(child, container, at);
    if (!field)
        return false;
    if (wouldContainItself(child, *field)) {
        warn(at, fieldLabel(*field->node(), field->name()) +
                     ": expected a node that does not contain this place, found " + quoted(child.getIDStr()));
        return false;
    }
    return link(*field, child, at);
}

Field* SceneBuilder::fieldForChild(const Node& child, std::string_view container, SourcePlace at)
{
    Level& level = _levels.back();
    if (level.field)
        return level.field;
    Node& parent = node();
    const NodeType& type = *child.type();
    if (!container.empty()) {
        Field* field = parent.findField(std::string(container), Node::EXACT_FSO);
        if (!field && isUnknown(*parent.type()))
            return addToNode(parent, container, MFNODE_DT, EXPOSEDFIELDP, at);
        if (!field)
            field = metadataOf(parent, container);
        const int part = field ? static_cast<int>(field->_desc->id) : partIndex(*parent.type(), container);
        if (part >= 0 && ChildPlacement::holdsNodes(parent, static_cast<unsigned int>(part)))
            return &editField(parent, static_cast<unsigned int>(part));
        warn(at, parent.type()->name + ": expected a field that holds nodes, found containerField " +
                     quoted(container));
    }
    int part = _session.placement().find(parent, type);
    if (part >= 0)
        return &editField(parent, static_cast<unsigned int>(part));
    if (isUnknown(*parent.type())) {
        const std::string_view byDefault = containerField(type);
        const std::string name(byDefault.empty() ? "children" : byDefault);
        Field* field = parent.findField(name, Node::EXACT_FSO);
        return field ? field : addToNode(parent, name, MFNODE_DT, EXPOSEDFIELDP, at);
    }
    if (Field* field = metadataOf(parent, containerField(type)))
        return field;
    warn(at, parent.type()->name + ": expected nodes that one of its fields takes, found " + type.name);
    return nullptr;
}

bool SceneBuilder::link(Field& field, Node& child, SourcePlace at)
{
    Node& parent = *field.node();
    markGiven(field);
    if (!_session.placement().accepts(*field._desc, *child.type()))
        warn(at, fieldLabel(parent, field.name()) + ": expected " + field._desc->valueType + ", found " +
                     child.type()->name);
    if (field.dataType() == MFNODE_DT)
        return static_cast<MFNode&>(field).addNode(0.0, &child, Field::LOADER_CT);
    if (field.dataType() != SFNODE_DT) {
        warn(at, fieldLabel(parent, field.name()) + ": expected a value of type " + field.dataTypeName() +
                     ", found the node " + child.type()->name);
        return false;
    }
    auto& single = static_cast<SFNode&>(field);
    if (single.link().directNode()) {
        warn(at, fieldLabel(parent, field.name()) + ": expected one node, found a second one, " +
                     child.type()->name);
        return false;
    }
    return single.setNode(0.0, &child, Field::LOADER_CT);
}

/// True when the child is open above the place and every field between them belongs to the graph that is
/// drawn. A script may well hold the group that it stands in.
bool SceneBuilder::wouldContainItself(const Node& child, const Field& field) const
{
    if (field._desc->objExt())
        return false;
    for (auto level = _levels.rbegin(); level != _levels.rend(); ++level) {
        if (level->isAuthorField)
            return false;
        if (level->node.get() == &child)
            return true;
    }
    return false;
}

} // namespace Orvane
