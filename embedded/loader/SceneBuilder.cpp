#include "loader/SceneBuilder.h"

#include "base/Graph.h"
#include "base/Prototype.h"
#include "base/TextCoding.h"
#include "loader/AngleUnit.h"
#include "loader/ExternalFiles.h"
#include "loader/FileScope.h"
#include "loader/FileText.h"
#include "loader/KeptStatements.h"
#include "loader/LoadSession.h"
#include "loader/MovedAddresses.h"
#include <Orvane/FieldType.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <charconv>

namespace Orvane {

SceneSink::~SceneSink() = default;

namespace {

/// So many fields one node may get; looking them up takes the longer the more they are.
constexpr unsigned int maxAddedFields = 4096;

/// True for a type whose nodes take fields from their author.
bool takesDeclarations(const NodeType& type)
{
    return isUnknown(type) || isOfType(type, "X3DScriptNode") ||
           isOfType(type, "X3DProgrammableShaderObject");
}

/// "3.3" in tenths; the newest version for what is none.
unsigned int versionNumber(std::string_view text)
{
    constexpr unsigned int most = 1000;
    const char* const end = text.data() + text.size();
    unsigned int major = 0;
    const std::from_chars_result read = std::from_chars(text.data(), end, major);
    if (read.ec != std::errc() || major > most)
        return newestVersion;
    const bool hasMinor = end - read.ptr > 1 && *read.ptr == '.' && read.ptr[1] >= '0' && read.ptr[1] <= '9';
    return major * 10 + (hasMinor ? static_cast<unsigned int>(read.ptr[1] - '0') : 0);
}

} // namespace

bool isOf(const Node& node, const char* typeName)
{
    return node.type()->name == typeName && node.type() == findType(typeName);
}

SceneBuilder::SceneBuilder(LoadSession& session, FileScope& scope, Field& content)
    : _session(session)
    , _scope(&scope)
    , _depth(scope.depth)
{
    // A part that the user does not see takes all; else the nodes ask for their fields as anywhere.
    _levels.push_back({scope.root, content._desc->privateAccess() ? &content : nullptr});
}

void SceneBuilder::warn(SourcePlace place, std::string text)
{
    // Of a file that is read for its prototypes all else is as if it were not there.
    if (!_scope->isLibrary || _scope->isBody())
        _scope->messages.warn(place, std::move(text));
}

void SceneBuilder::version(std::string_view version)
{
    // What is pasted looks as the scene that it comes into.
    if (!_scope->isClipping)
        setFileVersion(*_scope->names, versionNumber(version));
}

void SceneBuilder::head(const HeadStatement& statement)
{
    if (!_scope->parent && !_scope->isLibrary)
        keepHead(*_scope->root, statement);
    if (statement.kind != HeadStatement::UNIT || statement.factor == 1.0)
        return;
    if (statement.name == "angle" && statement.factor > 0.0)
        _scope->angleFactor = statement.factor;
    else
        warn(statement.place, "unit: expected the base unit of " + quoted(statement.name) + ", found " +
                                  quoted(statement.content) + ", whose values are taken as they are");
}

// ---- Nodes

NodeType* SceneBuilder::typeOf(const NodeStart& start)
{
    const std::string name = coding::toGraph(start.type);
    NodeType* const known = start.isInstance ? nullptr : findType(name);
    if (NodeType* type = findPrototype(name, known, start.place))
        return type;
    // Of abstract types, whose names begin so, no node can be.
    if (known && known->name.compare(0, 3, "X3D") != 0)
        return known;
    if (_warnedTypes.insert(name).second)
        warn(start.place, start.isInstance ? "expected a node type, found an instance of the prototype " +
                                                 quoted(name) + "; it is kept without behaviour"
                                           : "expected a node type, found " + quoted(name) +
                                                 "; it is kept without behaviour");
    return unknownType(name);
}

NodeRef SceneBuilder::makeNode(const NodeStart& start)
{
    NodeType& type = *typeOf(start);
    NodeRef node = createBareInstance(_session.context(), type, LOADER_NC);
    if (start.isInstance && !type.isProto())
        markInstance(*node);
    setSourcePlace(*node, start.place.line, start.place.column);
    if (_scope->isLibrary)
        return node;
    LoadReport& report = _session.report();
    ++report.nodes;
    if (isOf(*node, "Script"))
        ++report.scripts;
    return node;
}

void SceneBuilder::name(Node& node, const NodeStart& start)
{
    if (start.name.empty()) {
        setName(node, _scope->names, {}); // so that its addresses count from this file
        return;
    }
    const std::string name = coding::toGraph(start.name);
    if (const Node* earlier = NodeNameSpace::findNode(_scope->names, name))
        warn(start.place, "DEF: expected a name of its own, found " + quoted(name) + ", which the node at " +
                              std::to_string(sourceLine(*earlier)) + ":" +
                              std::to_string(sourceColumn(*earlier)) + " bears");
    setName(node, _scope->names, name);
    ++_session.report().namedNodes;
}

bool SceneBuilder::beginNode(const NodeStart& start)
{
    if (_skipped > 0) {
        ++_skipped;
        return true;
    }
    if (!_session.goesOn(start.place)) {
        _scope->messages.error(start.place, "expected the rest of the file, but the load was given up");
        return false;
    }
    if (_depth >= LoadSession::maxDepth) {
        _scope->messages.error(start.place, "expected nodes that nest at most " +
                                                std::to_string(LoadSession::maxDepth) +
                                                " deep, found deeper ones");
        return false;
    }
    if (start.type.empty()) {
        ++_skipped; // the reader has said so
        return true;
    }
    if (_open && !_open->type && isTopLevel()) {
        warn(start.place,
             "PROTO: expected declarations of fields in the interface, found " + quoted(start.type));
        ++_skipped;
        return true;
    }
    NodeType* rootType = start.isInstance ? nullptr : findType(start.type);
    if (rootType && rootType->name == "Scene" && isTopLevel() && !_scope->isLibrary) {
        // What the root itself bears. Of an inlined scene only the nodes count.
        if (!isScene()) {
            ++_skipped;
            return true;
        }
        if (!start.name.empty())
            name(*_scope->root, start);
        _levels.push_back({_scope->root, _levels.back().field, true});
        ++_depth;
        return true;
    }
    if (rootType && rootType->isContextRoot()) {
        const bool atHome =
            isTopLevel() && isScene() && !_scope->isLibrary && rootType != _scope->root->type();
        if (!atHome || _session.hasContextRoot(*rootType)) {
            warn(start.place, atHome ? "expected one " + rootType->name + ", found a second one"
                                     : "expected no root node here, found " + rootType->name);
            ++_skipped;
            return true;
        }
        Node& root = _session.contextRoot(*rootType);
        setSourcePlace(root, start.place.line, start.place.column);
        name(root, start);
        ++_session.report().nodes;
        _levels.push_back({NodeRef(&root), nullptr, true});
        ++_depth;
        return true;
    }
    NodeRef node = makeNode(start);
    name(*node, start);
    if (!placeRoot(*node))
        place(*node, start.containerField, start.place);
    _levels.push_back({std::move(node), nullptr, true});
    ++_depth;
    return true;
}

void SceneBuilder::endNode()
{
    if (_skipped > 0) {
        --_skipped;
        return;
    }
    Level& level = _levels.back();
    const bool isRead = !_scope->isLibrary || _scope->isBody();
    if (level.namesFiles && isRead)
        checkFiles(node(), *_scope);
    if (node().type()->isProto() && isRead)
        _session.completeInstance(node(), level.given, *_scope, _depth);
    else if (isOf(node(), "Inline") && !_scope->isLibrary && !_scope->isBody())
        _session.addInline(node(), *_scope, _depth);
    _levels.pop_back();
    --_depth;
}

void SceneBuilder::useNode(const NodeUse& use)
{
    if (_skipped > 0)
        return;
    ++_session.report().uses;
    const std::string name = coding::toGraph(use.name);
    Node* node = NodeNameSpace::findNode(_scope->names, name);
    if (!node) {
        _scope->unknownUses.push_back({name, use.place});
        return;
    }
    const NodeType* expected = use.type.empty() ? nullptr : findType(use.type);
    if (expected && expected != node->type())
        warn(use.place, "USE: expected a " + expected->name + ", found " + quoted(name) + ", which is a " +
                            node->type()->name);
    place(*node, use.containerField, use.place);
}

/// What an instance is given itself takes the place of the defaults.
void SceneBuilder::markGiven(const Field& field)
{
    if (!field.node()->type()->isProto())
        return;
    const auto level = std::find_if(_levels.rbegin(), _levels.rend(), [&field](const Level& open) {
        return open.isNode && open.node.get() == field.node();
    });
    if (level != _levels.rend())
        level->given.push_back(field._desc->id);
}

// ---- Fields

Field* SceneBuilder::findField(std::string_view name, SourcePlace at)
{
    Node& owner = node();
    const int part = partIndex(*owner.type(), name);
    Field* field = part >= 0 ? &editField(owner, static_cast<unsigned int>(part))
                             : owner.findField(std::string(name), Node::EXACT_FSO);
    if (field && field->_desc->privateAccess())
        field = nullptr;
    if (!field)
        field = metadataOf(owner, name);
    if (!field && !isUnknown(*owner.type()))
        warn(at, owner.type()->name + ": expected one of its fields, found " + quoted(name));
    return field;
}

/// An instance may bear metadata as any node does, although no prototype declares the field.
Field* SceneBuilder::metadataOf(Node& owner, std::string_view name)
{
    if (name != "metadata" || !owner.type()->isProto())
        return nullptr;
    Field* field = owner.findField("metadata", Node::EXACT_FSO);
    return field ? field : addField(owner, name, SFNODE_DT, EXPOSEDFIELDP);
}

/// Adds a field that the scene gives to one node; null, and told, when the node cannot have it.
Field* SceneBuilder::addToNode(Node& owner, std::string_view name, NodePartDataType dataType,
                               NodePartType access, SourcePlace at)
{
    if (owner.partDescCount() >= partCount(*owner.type()) + maxAddedFields) {
        warn(at, owner.type()->name + ": expected at most " + std::to_string(maxAddedFields) +
                     " fields of an author, found " + quoted(name) + " beside them");
        return nullptr;
    }
    Field* field = addField(owner, coding::toGraph(name), dataType, access);
    if (!field)
        warn(at, owner.type()->name + ": expected a new name, found " + quoted(name) +
                     ", which is one of its fields");
    return field;
}

NodePartDataType SceneBuilder::fieldType(std::string_view name)
{
    if (_skipped > 0)
        return NO_DT;
    const Node& owner = node();
    const int part = partIndex(*owner.type(), name);
    if (part >= 0)
        return partDesc(*owner.type(), static_cast<unsigned int>(part))->dataType;
    const Field* field = owner.findField(std::string(name), Node::EXACT_FSO);
    return field ? field->dataType() : NO_DT;
}

void SceneBuilder::fieldValue(std::string_view name, std::string_view text, SourcePlace place)
{
    const bool ofInlinedScene = isTopLevel() && !_open && _scope->parent;
    if (_skipped > 0 || ofInlinedScene)
        return;
    Field* field = findField(name, place);
    if (field)
        setValue(*field, text, place);
    else if (isUnknown(*node().type()))
        keepUnknownValue(name, text, place);
}

void SceneBuilder::setValue(Field& field, std::string_view text, SourcePlace at)
{
    const NodePartDesc& desc = *field._desc;
    const Node& owner = *field.node();
    markGiven(field);
    if (!(desc.partType & FIELDP)) {
        warn(at, fieldLabel(owner, desc.name) + ": expected a field that has a value, found an event");
        return;
    }
    std::string error;
    const bool ok = parseFileText(field, text, error);
    _levels.back().namesFiles = _levels.back().namesFiles || namesFiles(owner, desc);
    if (!ok)
        warn(at, fieldLabel(owner, desc.name) + ": " + error);
    else if (_scope->angleFactor != 1.0)
        convertAngles(field, _scope->angleFactor);
    const bool mayNameFile = mayNameFiles(owner, desc) || (isInterface() && desc.dataType == MFSTRING_DT);
    if (ok && _scope->origin && mayNameFile)
        moveAddresses(static_cast<MFString&>(field), *_scope->origin, _scope->url);
}

void SceneBuilder::keepUnknownValue(std::string_view name, std::string_view text, SourcePlace at)
{
    std::string error;
    if (Field* field = addToNode(node(), name, SFSTRING_DT, EXPOSEDFIELDP, at))
        parseFileText(*field, text, error);
}

void SceneBuilder::beginFieldNodes(std::string_view name, SourcePlace place)
{
    if (_skipped > 0) {
        ++_skipped;
        return;
    }
    Field* field = findField(name, place);
    if (!field && isUnknown(*node().type()))
        field = addToNode(node(), name, MFNODE_DT, EXPOSEDFIELDP, place);
    if (!field) {
        ++_skipped;
        return;
    }
    markGiven(*field);
    _levels.push_back({_levels.back().node, field});
    _levels.back().isAuthorField = field->_desc->objExt();
}

void SceneBuilder::endFieldNodes()
{
    if (_skipped > 0)
        --_skipped;
    else
        _levels.pop_back();
}

void SceneBuilder::sourceText(std::string_view source, SourcePlace place)
{
    if (_skipped > 0)
        return;
    const int part = _levels.back().isNode ? partIndex(*node().type(), "url") : -1;
    if (part < 0 || partDesc(*node().type(), static_cast<unsigned int>(part))->dataType != MFSTRING_DT) {
        warn(place, node().type()->name + ": expected elements, found the text " + quoted(source));
        return;
    }
    edit<MFString>(node(), static_cast<unsigned int>(part)).addValue(coding::toGraph(source));
}

void SceneBuilder::beginDeclaration(const FieldDeclaration& declaration)
{
    const bool incomplete =
        declaration.name.empty() || declaration.dataType == NO_DT || declaration.access == NO_PART;
    if (_skipped > 0 || incomplete) { // of which the reader has told
        ++_skipped;
        return;
    }
    Node& owner = node();
    Field* field = nullptr;
    if (!_levels.back().isNode || !takesDeclarations(*owner.type()))
        warn(declaration.place,
             owner.type()->name + ": expected no field of an author, found " + quoted(declaration.name));
    else
        field =
            addToNode(owner, declaration.name, declaration.dataType, declaration.access, declaration.place);
    if (!field) {
        ++_skipped;
        return;
    }
    _levels.push_back({_levels.back().node, field});
    _levels.back().isAuthorField = true;
    const bool holdsNodes = declaration.dataType == SFNODE_DT || declaration.dataType == MFNODE_DT;
    const bool mayHaveValue = !isInterface() || !_open->isExtern;
    if (declaration.hasValue && mayHaveValue && !(holdsNodes && declaration.value.empty()))
        setValue(*field, declaration.value, declaration.valuePlace);
}

void SceneBuilder::endDeclaration()
{
    endFieldNodes();
}

// ---- Statements

void SceneBuilder::route(const RouteStatement& statement)
{
    if (_skipped > 0)
        return;
    const auto end = [&](std::string_view nodeName, std::string_view field) {
        PendingEnd result;
        result.nodeName = coding::toGraph(nodeName);
        result.node = NodeRef(NodeNameSpace::findNode(_scope->names, result.nodeName));
        result.field = coding::toGraph(field);
        return result;
    };
    _scope->routes.push_back({end(statement.fromNode, statement.fromField),
                              end(statement.toNode, statement.toField), statement.place});
}

/// Inlines of a body are read in the instances, each of which has its own.
bool SceneBuilder::mayExchange(const ExchangeStatement& statement)
{
    if (!_open)
        return true;
    warn(statement.place, "PROTO: expected no IMPORT or EXPORT in a prototype, found that of " +
                              quoted(statement.exportedName));
    return false;
}

void SceneBuilder::importNode(const ExchangeStatement& statement)
{
    if (_skipped > 0 || !mayExchange(statement))
        return;
    const std::string_view name = statement.name.empty() ? statement.exportedName : statement.name;
    _scope->importNames.insert(coding::toGraph(name));
    _scope->imports.push_back({coding::toGraph(statement.inlineName), coding::toGraph(statement.exportedName),
                               coding::toGraph(name), statement.place});
}

void SceneBuilder::exportNode(const ExchangeStatement& statement)
{
    if (_skipped > 0 || !mayExchange(statement))
        return;
    const std::string local = coding::toGraph(statement.exportedName);
    const std::string name = statement.name.empty() ? local : coding::toGraph(statement.name);
    if (!_scope->exports.emplace(name, PendingExport{local, statement.place}).second) {
        warn(statement.place, "EXPORT: expected a name of its own, found " + quoted(name) +
                                  ", under which another node is exported");
        return;
    }
    keepExport(*_scope->root, local, name);
}

} // namespace Orvane
