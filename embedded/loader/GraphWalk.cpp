#include "loader/GraphWalk.h"

#include "base/Graph.h"
#include "base/ProtoDeclaration.h"
#include "loader/ChildPlacement.h"
#include "loader/ImportedNodes.h"
#include "loader/KeptStatements.h"
#include "loader/NodeFields.h"
#include "loader/SaveNotes.h"
#include "loader/SceneEmitter.h"
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <algorithm>
#include <unordered_map>
#include <utility>

namespace Orvane {

namespace {

bool isScene(const Node& node)
{
    return node.type()->name == "Scene";
}

/// The model from which an instance of a prototype is copied; null for other nodes and without one.
const Node* modelOf(const Node& node)
{
    const ProtoDeclaration* declaration = protoDeclaration(*node.type());
    return declaration ? declaration->model.get() : nullptr;
}

} // namespace

GraphWalk::GraphWalk(const Node& root, const SaveOptions& options, SceneEmitter& emitter, SaveNotes& notes)
    : _root(root)
    , _options(options)
    , _emitter(emitter)
    , _notes(notes)
{
    if (!isScene(root) || options.skipRoot)
        return;
    // The roots beside the scene belong to its file when they came from it; others are the host's.
    for (const char* type : {"ContextSetup", "Engine"}) {
        const Node* other = contextOf(root).findRoot(*findType(type));
        if (other && sourceLine(*other) > 0)
            _otherRoots.push_back(other);
    }
}

void GraphWalk::run()
{
    Scope scope(*this, _root.nameSpace(), nullptr);
    _scope = &scope;
    for (const Node* root : _otherRoots)
        collect(root);
    collect(&_root);
    collectUnseen();
    collectPrototypes(_options.resolveProtos ? std::vector<std::shared_ptr<NodeType>>()
                                             : declaredPrototypes(_root));
    collectRoutes();
    giveNames();
    writeScene();
}

// ---- What is written

bool GraphWalk::isWritten(const Node& node, const Field& field) const
{
    const NodePartDesc& desc = *field._desc;
    if (desc.privateAccess() || !(desc.partType & FIELDP) || hasValueByIs(field))
        return false;
    if (holdsNodes(field)) {
        if (!hasNodes(field))
            return (_options.writeDefaultValues && _emitter.saysEmpty()) || !holdsDefaultNodes(node, field);
        return !modelOf(node) || !holdsDefaultNodes(node, field);
    }
    return _options.writeDefaultValues || desc.objExt() || !_emitter.isDefault(node, field);
}

/// True for a field of an instance whose nodes are those of the prototype's default, and for an empty field
/// that is so by default.
bool GraphWalk::holdsDefaultNodes(const Node& instance, const Field& field) const
{
    const Node* model = modelOf(instance);
    if (!model || model == &instance || field._desc->objExt())
        return !hasNodes(field);
    return holdsAlike(field, readField(*model, field._desc->id));
}

std::vector<const Field*> GraphWalk::contentOf(const Node& node) const
{
    std::vector<const Field*> declared;
    std::vector<const Field*> fields;
    const unsigned int count = node.partDescCount();
    for (unsigned int part = 0; part < count; ++part) {
        const Field& field = readField(node, part);
        if (isDeclaredField(*node.type(), field) && !field._desc->privateAccess())
            declared.push_back(&field);
        else if (holdsNodes(field) && isWritten(node, field))
            fields.push_back(&field);
    }
    declared.insert(declared.end(), fields.begin(), fields.end());
    return declared;
}

/// Goes the way that the writing will go, so that the first place of each node is the same.
void GraphWalk::collect(const Node* top)
{
    std::vector<Level> levels;
    const auto meet = [&](const Node* placed) {
        const Node* node = _scope->protos.resolve(placed);
        if (!node)
            return;
        if (!_scope->met.insert(node).second) {
            _scope->needed.insert(node);
            return;
        }
        _scope->order.push_back(node);
        levels.push_back({node, contentOf(*node)});
    };
    meet(top);
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.field == level.fields.size()) {
            levels.pop_back();
            continue;
        }
        const Field& field = *level.fields[level.field];
        if (!holdsNodes(field) || hasValueByIs(field) || level.link >= linkCount(field)) {
            ++level.field;
            level.link = 0;
        } else if (const Node* node = linkedNode(field, level.link++)) {
            meet(node);
        }
    }
}

void GraphWalk::collectField(const Field& field)
{
    for (int link = 0; link < linkCount(field); ++link)
        if (const Node* node = linkedNode(field, link))
            collect(node);
}

void GraphWalk::collectUnseen()
{
    // The list grows while bodies hold instances.
    for (std::size_t i = 0; i < _scope->protos.unseen().size(); ++i) {
        const Node* node = _scope->protos.resolve(_scope->protos.unseen()[i]);
        if (!node || _scope->met.count(node))
            continue;
        if (isUnknown(*node->type()) || node->type()->isProto() || isOfType(*node->type(), "X3DChildNode"))
            collect(node);
        else
            _notes.add(node->type()->name +
                       ": stands in the body of a prototype where nothing shows it; left out");
    }
}

/// Besides what the scope declares, nodes may have come from elsewhere whose prototypes nobody declares here.
void GraphWalk::collectPrototypes(const std::vector<std::shared_ptr<NodeType>>& declared)
{
    std::unordered_map<std::string_view, const NodeType*> names;
    const auto add = [&](const NodeType& type) {
        const auto [known, isNew] = names.emplace(type.name, &type);
        if (!isNew && known->second != &type)
            _notes.add("PROTO " + type.name + ": several prototypes bear this name; the last one counts");
        if (_declared.insert(&type).second)
            _scope->prototypes.push_back(&type);
    };
    for (const std::shared_ptr<NodeType>& type : declared)
        add(*type);
    for (const Node* node : _scope->order)
        if (protoDeclaration(*node->type()) && !_declared.count(node->type()))
            add(*node->type());
}

void GraphWalk::collectRoutes()
{
    for (const Node* node : _scope->order)
        if (!keptImports(*node).empty())
            _scope->needed.insert(node);
    _scope->routes = _scope->protos.routes(_scope->order);
}

/// The fields of the prototype around for which a field of its body stands.
std::vector<const Field*> GraphWalk::connectionsOf(const Field& field) const
{
    std::vector<const Field*> result;
    const auto add = [&](const Route& route, const Field& other) {
        const bool isNew = std::find(result.begin(), result.end(), &other) == result.end();
        if (route.type() == Route::IS_RT && other.node() == _scope->model && isNew)
            result.push_back(&other);
    };
    if (!_scope->model || !field.node())
        return result;
    if (field._inSlot)
        for (const Route* route : *field._inSlot)
            add(*route, *route->outSlot()->field());
    if (field._outSlot)
        for (const Route* route : *field._outSlot)
            add(*route, *route->inSlot()->field());
    return result;
}

/// True for a field that has its value from the prototype around.
bool GraphWalk::hasValueByIs(const Field& field) const
{
    for (const Field* other : connectionsOf(field))
        if (other->_desc->partType & FIELDP)
            return true;
    return false;
}

// ---- Names

void GraphWalk::giveNames()
{
    Scope& scope = *_scope;
    scope.names.giveFound(scope.order, scope.nameSpace);
    for (const Node* node : scope.order)
        if (!keptImports(*node).empty())
            giveImportedNames(*node);
    const auto isHere = [&](const Node* node) { return scope.met.count(node) || scope.names.has(*node); };
    const std::vector<WrittenRoute> fromImported = scope.protos.routes(scope.imported);
    scope.routes.insert(scope.routes.end(), fromImported.begin(), fromImported.end());
    const auto leadsAway = [&](const WrittenRoute& route) { return !isHere(route.to->field()->node()); };
    scope.routes.erase(std::remove_if(scope.routes.begin(), scope.routes.end(), leadsAway),
                       scope.routes.end());
    for (const WrittenRoute& route : scope.routes) {
        scope.needed.insert(route.from->field()->node());
        scope.needed.insert(route.to->field()->node());
    }
    scope.names.giveRest(scope.order, scope.nameSpace, scope.needed);
}

void GraphWalk::giveImportedNames(const Node& inlineNode)
{
    _scope->names.giveTo(inlineNode, inlineNode.name() ? *inlineNode.name() : "Inline_1");
    for (const auto& [name, node] : importedNodes(inlineNode)) {
        _scope->names.take(*node, name);
        _scope->imported.push_back(node);
    }
}

// ---- Writing

void GraphWalk::writeScene()
{
    const bool writesRoot = isScene(_root) && !_options.skipRoot;
    std::vector<KeptHead> head = keptHead(_root);
    // Angles have been made radians when they were read; other values were taken as they are.
    const auto isDone = [](const KeptHead& statement) {
        return statement.kind == HeadStatement::UNIT && statement.name == "angle";
    };
    head.erase(std::remove_if(head.begin(), head.end(), isDone), head.end());
    _emitter.beginScene(head, writesRoot ? &_root : nullptr,
                        writesRoot ? _scope->names.of(_root) : std::string_view());
    writePrototypes();
    for (const Node* root : _otherRoots)
        writeTree(root, nullptr);
    if (isScene(_root) || _options.skipRoot) {
        for (const Field* field : contentOf(_root))
            if (hasNodes(*field) && (writesRoot || std::string_view(field->name()) != "metadata"))
                writeLinks(*field);
    } else {
        writeTree(&_root, nullptr);
    }
    writeUnseen();
    writeStatements();
    _emitter.endScene();
}

void GraphWalk::writeLinks(const Field& field)
{
    for (int link = 0; link < linkCount(field); ++link)
        if (const Node* node = linkedNode(field, link))
            writeTree(node, &field);
}

void GraphWalk::writeTree(const Node* top, const Field* holder)
{
    std::vector<Level> levels;
    const auto meet = [&](const Node* placed, const Field* place) {
        const Node* found = _scope->protos.resolve(placed);
        if (!found)
            return;
        const Node& node = *found;
        if (!_scope->written.insert(&node).second) {
            _emitter.use(node, _scope->names.of(node), place);
            return;
        }
        writeComments(node);
        levels.push_back({&node, contentOf(node)});
        _emitter.beginNode(node, _scope->names.of(node), place);
        writeValues(node);
        writeConnections(node);
        _emitter.endValues(!levels.back().fields.empty());
    };
    meet(top, holder);
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.field == level.fields.size()) {
            _emitter.endNode();
            levels.pop_back();
            continue;
        }
        const Field& field = *level.fields[level.field];
        const bool isDeclared = isDeclaredField(*level.node->type(), field);
        const bool hasContent = hasNodes(field) && !hasValueByIs(field);
        if (!level.isInField) {
            level.isInField = true;
            level.link = 0;
            if (isDeclared)
                _emitter.beginDeclaration(field, hasContent);
            else
                _emitter.beginNodes(field, hasContent);
        } else if (hasContent && level.link < linkCount(field)) {
            if (const Node* node = linkedNode(field, level.link++))
                meet(node, &field);
        } else {
            if (isDeclared)
                _emitter.endDeclaration(field, hasContent);
            else
                _emitter.endNodes(field, hasContent);
            level.isInField = false;
            ++level.field;
        }
    }
}

void GraphWalk::writeUnseen()
{
    bool hasBegun = false;
    for (const Node* placed : _scope->protos.unseen()) {
        const Node* node = _scope->protos.resolve(placed);
        if (!node || !_scope->met.count(node) || _scope->written.count(node))
            continue;
        if (!hasBegun)
            _emitter.beginUnseen();
        hasBegun = true;
        writeTree(node, nullptr);
    }
    if (hasBegun)
        _emitter.endUnseen();
}

void GraphWalk::writeValues(const Node& node)
{
    const unsigned int count = node.partDescCount();
    for (unsigned int part = 0; part < count; ++part) {
        const Field& field = readField(node, part);
        if (!holdsNodes(field) && !isDeclaredField(*node.type(), field) && isWritten(node, field))
            _emitter.value(field);
    }
}

void GraphWalk::writeConnections(const Node& node)
{
    if (!_scope->model)
        return;
    const unsigned int count = node.partDescCount();
    for (unsigned int part = 0; part < count; ++part) {
        const Field& field = readField(node, part);
        if (field.node() == &node)
            for (const Field* other : connectionsOf(field))
                _emitter.isConnection(field, *other);
    }
}

void GraphWalk::writeComments(const Node& node)
{
    if (_options.writeAbstractNodes) {
        std::vector<NodeType*> types;
        NodeType::getTypeVec(types, 0);
        std::string text;
        for (const NodeType* type : types)
            if (type->name.compare(0, 3, "X3D") == 0 && isOfType(*node.type(), type->name))
                text += (text.empty() ? "" : ", ") + type->name;
        if (!text.empty())
            _emitter.comment(node.type()->name + ": " + text);
    }
    if (_options.writeProcInfo) {
        const unsigned int count = node.partDescCount();
        for (unsigned int part = 0; part < count; ++part) {
            const Field& field = readField(node, part);
            if (field._desc->partType == EVENTOUTP && !holdsNodes(field))
                _emitter.comment(node.type()->name + "." + field.name() + " = " + field.valueToString());
        }
    }
}

void GraphWalk::writeStatements()
{
    const NodeNames& names = _scope->names;
    if (!_scope->model) {
        for (const Node* node : _scope->order)
            for (const auto& [exported, as] : keptImports(*node))
                _emitter.importStatement(names.of(*node), _emitter.sayableName(exported),
                                         _emitter.sayableName(as));
        for (const auto& [local, exported] : keptExports(_root)) {
            const Node* found = NodeNameSpace::findNode(_scope->nameSpace, local);
            const Node* node = _scope->protos.resolve(found);
            const std::string_view name = node ? names.of(*node) : std::string_view();
            _emitter.exportStatement(name.empty() ? _emitter.sayableName(local) : std::string(name),
                                     _emitter.sayableName(exported));
        }
    }
    const std::unordered_set<const Node*> imported(_scope->imported.begin(), _scope->imported.end());
    for (const WrittenRoute& route : _scope->routes) {
        const Node& from = *route.from->field()->node();
        const Node& to = *route.to->field()->node();
        const std::size_t outside = imported.count(&from) + imported.count(&to);
        if (outside == 0)
            _emitter.route(names.of(from), *route.from, names.of(to), *route.to);
        else if (outside == 1)
            _emitter.importedRoute(names.of(from), *route.from, names.of(to), *route.to);
    }
}

// ---- Prototypes

void GraphWalk::writePrototypes()
{
    for (const NodeType* type : _scope->prototypes)
        writePrototype(*type);
}

void GraphWalk::writePrototype(const NodeType& type)
{
    const ProtoDeclaration& declaration = *protoDeclaration(type);
    if (declaration.isExtern || !declaration.model) {
        if (!declaration.isExtern)
            _notes.add("PROTO " + type.name + ": has no body; written as one of another file");
        _emitter.externProto(type, declaration.urls);
        return;
    }
    const Node& model = *declaration.model;
    Scope scope(*this, protoNames(model), &model);
    Scope* const outer = std::exchange(_scope, &scope);
    const std::unordered_set<const NodeType*> known = _declared;
    const bool hasInterface = partCount(type) > 1;
    const MFNode& body = protoBody(model);
    for (unsigned int part = 0; part + 1 < partCount(type); ++part)
        if (const Field& field = readField(model, part); holdsNodes(field))
            collectField(field);
    collectField(body);
    collectPrototypes(declaration.inner);
    collectRoutes();
    giveNames();
    _emitter.beginProto(type, hasInterface);
    writeInterface(model);
    _emitter.beginProtoBody(hasInterface);
    writePrototypes();
    for (int link = 0; link < linkCount(body); ++link)
        if (const Node* node = linkedNode(body, link))
            writeTree(node, nullptr);
    writeStatements();
    _emitter.endProto();
    _declared = known;
    _scope = outer;
}

void GraphWalk::writeInterface(const Node& model)
{
    for (unsigned int part = 0; part + 1 < partCount(*model.type()); ++part) {
        const Field& field = readField(model, part);
        const bool hasContent = hasNodes(field);
        _emitter.beginDeclaration(field, hasContent);
        if (hasContent)
            writeLinks(field);
        _emitter.endDeclaration(field, hasContent);
    }
}

} // namespace Orvane
