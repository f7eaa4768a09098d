// What the scene builder makes of prototypes.
#include "base/Graph.h"
#include "base/Prototype.h"
#include "base/TextCoding.h"
#include "loader/AdoptedNodes.h"
#include "loader/ChildPlacement.h"
#include "loader/FileScope.h"
#include "loader/LoadSession.h"
#include "loader/Routes.h"
#include "loader/SceneBuilder.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>

namespace Orvane {

std::string fieldLabel(const Node& node, std::string_view field)
{
    return node.type()->name + "." + std::string(field);
}

/// The prototype that is declared under a name where the text stands; null when there is none. In its own
/// body the name is that of the type \a known, if there is such a one.
NodeType* SceneBuilder::findPrototype(const std::string& name, const NodeType* known, SourcePlace at)
{
    const FileScope* scope = _scope;
    for (const OpenPrototype* open = _open.get(); open; open = open->outer.get()) {
        const auto found = scope->prototypes.find(name);
        if (found != scope->prototypes.end())
            break;
        scope = scope->outer;
        if (open->name != name)
            continue;
        if (known)
            return nullptr;
        warn(at, "PROTO " + name +
                     ": expected a body without an instance of itself, found one; it is kept "
                     "without behaviour");
        return unknownType(name);
    }
    const std::shared_ptr<NodeType> type = scope->findPrototype(name);
    if (type && (!_scope->isLibrary || _scope->isBody()))
        _session.externs().resolve(*type, _depth);
    return type.get();
}

// ---- Statements

void SceneBuilder::beginProto(std::string_view name, SourcePlace place)
{
    openPrototype(name, {}, false, place);
}

void SceneBuilder::beginExternProto(std::string_view name, std::string_view urls, SourcePlace place)
{
    openPrototype(name, urls, true, place);
}

void SceneBuilder::openPrototype(std::string_view name, std::string_view urls, bool isExtern, SourcePlace at)
{
    if (_skipped > 0 || name.empty()) { // of which the reader has told
        ++_skipped;
        return;
    }
    if (isInterface() || _depth >= LoadSession::maxDepth) {
        warn(at, isInterface()
                     ? "PROTO: expected declarations of fields in the interface, found the prototype " +
                           quoted(name)
                     : "PROTO: expected prototypes that nest at most " +
                           std::to_string(LoadSession::maxDepth) + " deep, found deeper ones");
        ++_skipped;
        return;
    }
    if (!_scope->isLibrary)
        ++_session.report().protos;
    auto open = std::make_unique<OpenPrototype>();
    open->name = coding::toGraph(name);
    open->place = at;
    open->isExtern = isExtern;
    open->urls = urls;
    open->interface = createNode(_session.context(), *unknownType(open->name), LOADER_NC);
    open->outerScope = _scope;
    open->outerLevels.swap(_levels);
    open->outerDepth = _depth++;
    open->outer = std::move(_open);
    _open = std::move(open);

    _scope = &_session.openBody(*_scope, _open->name, *_open->interface);
    _levels.push_back({_open->interface, nullptr, true});
}

/// The parts that the interface declares, with their defaults.
std::vector<PartDeclaration> SceneBuilder::declaredParts() const
{
    const Node& interface = *_open->interface;
    std::vector<PartDeclaration> parts;
    const unsigned int count = interface.partDescCount();
    for (unsigned int part = partCount(*interface.type()); part < count; ++part) {
        const Field& field = readField(interface, part);
        const NodePartDesc& desc = *field._desc;
        parts.push_back({desc.name, desc.dataType, desc.partType,
                         field.dataType() == SFNODE_DT || field.dataType() == MFNODE_DT
                             ? std::string()
                             : field.valueToString()});
    }
    return parts;
}

/// Links the default nodes of the declarations in the model.
void SceneBuilder::moveDefaults(Node& model)
{
    Node& interface = *_open->interface;
    const unsigned int first = partCount(*interface.type());
    const unsigned int count = interface.partDescCount();
    for (unsigned int part = first; part < count; ++part) {
        const Field& from = readField(interface, part);
        if ((from.dataType() == SFNODE_DT || from.dataType() == MFNODE_DT) && (from.partType() & FIELDP))
            editField(model, part - first).assignValue(from);
    }
    _open->interface = NodeRef();
}

void SceneBuilder::beginProtoBody()
{
    if (_skipped > 0 || !_open || _open->isExtern)
        return;
    if (_open->type) {
        warn(_open->place, "PROTO " + _open->name + ": expected one body, found a second one");
        return;
    }
    _open->type = createPrototype(_open->name, declaredParts());
    Node& model = createModel(_session.context(), *_open->type, *_scope->names);
    setSourcePlace(model, _open->place.line, _open->place.column);
    _scope->root = NodeRef(&model);
    moveDefaults(model);
    _levels.clear();
    _levels.push_back({_scope->root, &protoBody(model)});
}

void SceneBuilder::endProto()
{
    if (_skipped > 0) {
        --_skipped;
        return;
    }
    const bool hasBody = static_cast<bool>(_open->type);
    if (!hasBody)
        beginProtoBody();
    if (protoBody(*_scope->root).size() == 0)
        warn(_open->place, "PROTO " + _open->name + ": expected a node in its body, found none");
    _session.closeBody(*_scope);
    holdInstances(*_open->type, std::move(_scope->instances));
    closePrototype();
}

void SceneBuilder::endExternProto()
{
    if (_skipped > 0) {
        --_skipped;
        return;
    }
    _open->type = createPrototype(_open->name, declaredParts());
    _session.externs().add(*_open->type, _open->urls, *_open->outerScope, _open->place);
    _session.closeBody(*_scope);
    closePrototype();
}

void SceneBuilder::closePrototype()
{
    const std::unique_ptr<OpenPrototype> closed = std::move(_open);
    _open = std::move(closed->outer);
    _scope->root = NodeRef();
    _scope = closed->outerScope;
    _levels.swap(closed->outerLevels);
    _depth = closed->outerDepth;
    ProtoDeclaration& declaration = *protoDeclaration(*closed->type);
    declaration.line = closed->place.line;
    declaration.column = closed->place.column;
    declare(closed->type, *closed);
}

/// From here on the prototype can be used.
void SceneBuilder::declare(std::shared_ptr<NodeType> type, const OpenPrototype& closed)
{
    const auto [place, isNew] = _scope->prototypes.emplace(closed.name, type);
    if (!isNew && _session.isOfScene(*place->second)) {
        // Nodes come with their prototypes; that of the scene serves when it is the same.
        if (isSameDeclaration(*place->second, *type))
            return;
        for (int number = 2; !_scope->prototypes.emplace(type->name, type).second; ++number)
            type->name = closed.name + "_" + std::to_string(number);
        _scope->prototypes[closed.name] = type;
    } else if (!isNew) {
        const ProtoDeclaration& earlier = *protoDeclaration(*place->second);
        warn(closed.place, "PROTO: expected a name of its own, found " + quoted(closed.name) +
                               ", which the prototype at " + std::to_string(earlier.line) + ":" +
                               std::to_string(earlier.column) + " bears");
        place->second = type;
    }
    if (!_scope->firstPrototype)
        _scope->firstPrototype = type;
    if (_open)
        protoDeclaration(*_open->type)->inner.push_back(std::move(type));
    else
        addDeclaredPrototype(*_scope->root, std::move(type));
}

// ---- IS

void SceneBuilder::isConnection(std::string_view nodeField, std::string_view protoField, SourcePlace place)
{
    if (_skipped > 0)
        return;
    if (!_open || !_open->type || !_levels.back().isNode) {
        warn(place, "IS: expected to stand inside a prototype, found a connection of " + quoted(nodeField) +
                        " outside");
        return;
    }
    Node& model = *_scope->root;
    const int part = partIndex(*model.type(), coding::toGraph(protoField));
    if (part < 0 || partDesc(*model.type(), static_cast<unsigned int>(part))->privateAccess()) {
        warn(place, "IS: expected a field of the prototype " + _open->name + ", found " + quoted(protoField));
        return;
    }
    Field& outer = editField(model, static_cast<unsigned int>(part));
    Field* const inner = findIsEnd(nodeField, outer, place);
    if (!inner)
        return;
    markGiven(*inner);
    if (!mayConnectIs(outer, *inner)) {
        const auto kind = [](const Field& field) {
            return field._desc->partTypeName() + " of type " + field.dataTypeName();
        };
        warn(place, "IS: expected " + fieldLabel(node(), inner->name()) + " to take the place of " +
                        quoted(protoField) + ", an " + kind(outer) + ", found an " + kind(*inner));
        return;
    }
    connectIs(outer, *inner);
}

/// The field of the present node that is connected, which may be named by its events.
Field* SceneBuilder::findIsEnd(std::string_view name, const Field& outer, SourcePlace at)
{
    Node& owner = node();
    const std::string text = coding::toGraph(name);
    int part = partIndex(*owner.type(), text);
    if (part < 0) {
        if (Field* field = owner.findField(text, Node::EXACT_FSO))
            return field->_desc->privateAccess() ? nullptr : field;
        if (Field* field = metadataOf(owner, text))
            return field;
        part = outer.partType() & EVENTINP ? owner.findEventInSlotID(text) : owner.findEventOutSlotID(text);
    }
    if (part < 0 && isUnknown(*owner.type()))
        return addToNode(owner, name, outer.dataType(), outer.partType(), at);
    Field* const field = part < 0 ? nullptr : owner.findField(static_cast<unsigned int>(part));
    if (field && !field->_desc->privateAccess())
        return field;
    warn(at, owner.type()->name + ": expected one of its fields, found " + quoted(name));
    return nullptr;
}

} // namespace Orvane
