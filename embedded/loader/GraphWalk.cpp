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

/// True for a node to which or from which routes lead.
bool hasRoutes(const std::vector<const Field*>& fields)
{
    const auto isEnd = [](const Field* field) {
        return (field->_inSlot && field->_inSlot->begin() != field->_inSlot->end()) ||
               (field->_outSlot && field->_outSlot->begin() != field->_outSlot->end());
    };
    return std::any_of(fields.begin(), fields.end(), isEnd);
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
    giveNames();
    writeScene();
}

// ---- What is written

/// The node that is written for \a placed when a walk comes to it for the first time; null otherwise.
const Node* GraphWalk::collectNode(const Node* placed, bool isTop)
{
    Scope& scope = *_scope;
    const Node* const found = scope.protos.resolve(placed);
    if (!found)
        return nullptr;
    const Node& node = *found;
    _made.clear();
    madeFields(node, _made);
    // What stands in one place and has no routes nobody asks for again.
    if (isTop || found != placed || const_cast<Node&>(node).isShared() || hasRoutes(_made)) {
        const auto [known, isNew] = scope.met.try_emplace(found);
        if (!isNew) {
            known->second.isNeeded = true;
            return nullptr;
        }
        scope.callable.push_back(found);
    } else if (scope.protos.bearer(node).name()) {
        scope.callable.push_back(found);
    }
    if (protoDeclaration(*node.type()))
        scope.instances.push_back(found);
    if (!keptImports(node).empty()) {
        scope.met[found].isNeeded = true;
        scope.importers.push_back(found);
    }
    return found;
}

/// Goes the way that the writing will go, so that the first place of each node is the same.
void GraphWalk::collect(const Node* top)
{
    const std::size_t first = _levels.size();
    const auto meet = [&](const Node* placed) {
        if (const Node* node = collectNode(placed, _levels.size() == first))
            enter(*node);
    };
    meet(top);
    while (_levels.size() > first) {
        Level& level = _levels.back();
        if (level.field == level.fieldsEnd) {
            leave();
            continue;
        }
        const Field& field = *_content[level.field];
        if (!holdsNodes(field) || _scope->fields.hasValueByIs(field) || level.link >= linkCount(field)) {
            ++level.field;
            level.link = 0;
        } else if (const Node* node = linkedNode(field, level.link++)) {
            meet(node);
        }
    }
}

/// Begins a level for a node; what was found out about its fields stays in `_fields`.
void GraphWalk::enter(const Node& node)
{
    _fields.clear();
    _scope->fields.fieldsOf(node, _fields);
    Level level;
    level.node = &node;
    level.fieldsBegin = level.field = _content.size();
    _scope->fields.contentOf(node, _fields, _content);
    level.fieldsEnd = _content.size();
    _levels.push_back(level);
}

void GraphWalk::leave()
{
    _content.resize(_levels.back().fieldsBegin);
    _levels.pop_back();
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
    for (const Node* node : _scope->instances)
        if (!_declared.count(node->type()))
            add(*node->type());
}

// ---- Names

void GraphWalk::giveNames()
{
    Scope& scope = *_scope;
    scope.names.giveFound(scope.callable, scope.nameSpace);
    for (const Node* node : scope.importers)
        giveImportedNames(*node);
    const auto isHere = [&](const Node* node) { return scope.met.count(node) || scope.names.has(*node); };
    scope.routes = scope.protos.routes(scope.callable);
    const std::vector<WrittenRoute> fromImported = scope.protos.routes(scope.imported);
    scope.routes.insert(scope.routes.end(), fromImported.begin(), fromImported.end());
    const auto leadsAway = [&](const WrittenRoute& route) { return !isHere(route.to->field()->node()); };
    scope.routes.erase(std::remove_if(scope.routes.begin(), scope.routes.end(), leadsAway),
                       scope.routes.end());
    for (const WrittenRoute& route : scope.routes) {
        scope.met[route.from->field()->node()].isNeeded = true;
        scope.met[route.to->field()->node()].isNeeded = true;
    }
    const auto isNeeded = [&scope](const Node& node) {
        const auto known = scope.met.find(&node);
        return known != scope.met.end() && known->second.isNeeded;
    };
    scope.names.giveRest(scope.callable, scope.nameSpace, isNeeded);
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
        enter(_root);
        const std::vector<const Field*> content(_content);
        leave();
        for (const Field* field : content)
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
    const std::size_t first = _levels.size();
    writeNode(top, holder);
    while (_levels.size() > first) {
        Level& level = _levels.back();
        if (level.field == level.fieldsEnd) {
            _emitter.endNode();
            leave();
            continue;
        }
        const Field& field = *_content[level.field];
        const bool isDeclared = isDeclaredField(*level.node->type(), field);
        const bool hasContent = hasNodes(field) && !_scope->fields.hasValueByIs(field);
        if (!level.isInField) {
            level.isInField = true;
            level.link = 0;
            if (isDeclared)
                _emitter.beginDeclaration(field, hasContent);
            else
                _emitter.beginNodes(field, hasContent);
        } else if (hasContent && level.link < linkCount(field)) {
            if (const Node* node = linkedNode(field, level.link++))
                writeNode(node, &field);
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

/// Writes a node up to its content, which follows, or a further place of it.
void GraphWalk::writeNode(const Node* placed, const Field* holder)
{
    const Node* const found = _scope->protos.resolve(placed);
    if (!found)
        return;
    const Node& node = *found;
    const auto known = _scope->met.find(found);
    const bool isCallable = known != _scope->met.end();
    const std::string_view name =
        isCallable || _scope->protos.bearer(node).name() ? _scope->names.of(node) : std::string_view();
    if (isCallable && std::exchange(known->second.isWritten, true))
        return _emitter.use(node, name, holder);
    writeComments(node);
    enter(node);
    _emitter.beginNode(node, name, holder);
    for (const Field* field : _fields)
        if (!holdsNodes(*field) && !isDeclaredField(*node.type(), *field) &&
            _scope->fields.isWritten(node, *field))
            _emitter.value(*field);
    if (_scope->fields.model())
        for (const Field* field : _fields)
            if (field->node() == &node)
                for (const Field* other : _scope->fields.connectionsOf(*field))
                    _emitter.isConnection(*field, *other);
    _emitter.endValues(_levels.back().fieldsBegin != _levels.back().fieldsEnd);
}

void GraphWalk::writeUnseen()
{
    bool hasBegun = false;
    for (const Node* placed : _scope->protos.unseen()) {
        const Node* node = _scope->protos.resolve(placed);
        const auto known = node ? _scope->met.find(node) : _scope->met.end();
        if (known == _scope->met.end() || known->second.isWritten)
            continue;
        if (!hasBegun)
            _emitter.beginUnseen();
        hasBegun = true;
        writeTree(node, nullptr);
    }
    if (hasBegun)
        _emitter.endUnseen();
}

const std::string& GraphWalk::abstractTypes(const NodeType& type)
{
    const auto [known, isNew] = _abstractTypes.try_emplace(&type);
    std::string& text = known->second;
    if (!isNew)
        return text;
    std::vector<NodeType*> types;
    NodeType::getTypeVec(types, 0);
    for (const NodeType* each : types)
        if (each->name.compare(0, 3, "X3D") == 0 && isOfType(type, each->name))
            text += (text.empty() ? "" : ", ") + each->name;
    return text;
}

void GraphWalk::writeComments(const Node& node)
{
    if (_options.writeAbstractNodes) {
        const std::string& text = abstractTypes(*node.type());
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

/// What the written file calls the node that the scene calls so, which may be missing.
std::string GraphWalk::writtenName(const std::string& name) const
{
    const Node* const node = _scope->protos.resolve(NodeNameSpace::findNode(_scope->nameSpace, name));
    const std::string_view written = node ? _scope->names.of(*node) : std::string_view();
    return written.empty() ? _emitter.sayableName(name) : std::string(written);
}

void GraphWalk::writeStatements()
{
    const NodeNames& names = _scope->names;
    if (!_scope->fields.model()) {
        for (const Node* node : _scope->importers)
            for (const auto& [exported, as] : keptImports(*node))
                _emitter.importStatement(names.of(*node), _emitter.sayableName(exported),
                                         _emitter.sayableName(as));
        for (const StrayImport& stray : keptStrayImports(_root))
            _emitter.importStatement(writtenName(stray.inlineName), _emitter.sayableName(stray.exportedName),
                                     _emitter.sayableName(stray.name));
        for (const auto& [local, exported] : keptExports(_root))
            _emitter.exportStatement(writtenName(local), _emitter.sayableName(exported));
    }
    const std::unordered_set<const Node*> imported(_scope->imported.begin(), _scope->imported.end());
    for (const WrittenRoute& route : _scope->routes) {
        const Node& from = *route.from->field()->node();
        const Node& to = *route.to->field()->node();
        const std::size_t outside = imported.count(&from) + imported.count(&to);
        if (outside == 0)
            _emitter.route(names.of(from), *route.from, names.of(to), *route.to);
        else if (outside == 1 || from.nameSpace() != to.nameSpace()) // else the file of the inline has it
            _emitter.importedRoute(names.of(from), *route.from, names.of(to), *route.to);
    }
    if (!_scope->fields.model())
        writeWaitingRoutes();
}

/// Routes whose imported ends are not there lead on to what is imported once the inlines hold it.
void GraphWalk::writeWaitingRoutes()
{
    const NodeNames& names = _scope->names;
    std::unordered_set<std::string> imports;
    for (const Node* node : _scope->importers)
        for (const auto& import : keptImports(*node))
            imports.insert(import.second);
    for (const StrayImport& stray : keptStrayImports(_root))
        imports.insert(stray.name);
    const auto nameOf = [&](const std::string& name) {
        const Node* node = NodeNameSpace::findNode(_scope->nameSpace, name);
        if (!node && imports.count(name))
            return _emitter.sayableName(name);
        return node && _scope->protos.resolve(node) == node ? std::string(names.of(*node)) : std::string();
    };
    for (const KeptRoute& route : keptRoutes(_root)) {
        const KeptRoute written{nameOf(route.fromNode), route.fromField, nameOf(route.toNode), route.toField};
        if (!written.fromNode.empty() && !written.toNode.empty())
            _emitter.waitingRoute(written);
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
    Scope scope(*this, rootNames(model), &model);
    Scope* const outer = std::exchange(_scope, &scope);
    const std::unordered_set<const NodeType*> known = _declared;
    const bool hasInterface = partCount(type) > 1;
    const MFNode& body = protoBody(model);
    for (unsigned int part = 0; part + 1 < partCount(type); ++part)
        if (const Field& field = readField(model, part); holdsNodes(field))
            collectField(field);
    collectField(body);
    collectPrototypes(declaration.inner);
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
