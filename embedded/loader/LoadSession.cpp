#include "loader/LoadSession.h"

#include "base/Graph.h"
#include "base/LocalFile.h"
#include "base/Prototype.h"
#include "base/ValueOrigin.h"
#include "loader/AdoptedNodes.h"
#include "loader/Exchange.h"
#include "loader/ExternalFiles.h"
#include "loader/KeptStatements.h"
#include "loader/Routes.h"
#include "loader/SceneBuilder.h"
#include "loader/SceneFormat.h"
#include "loader/SourceText.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <Orvane/SFBool.h>
#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Orvane {

namespace {

std::string canonical(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

Field& contentOf(Node& root)
{
    return editField(root, static_cast<unsigned int>(partIndex(*root.type(), "children")));
}

/// True for a field of a body that the instance around it fills.
bool isHanded(const Field& field)
{
    return field._inSlot && std::any_of(field._inSlot->begin(), field._inSlot->end(),
                                        [](const Route* route) { return route->type() == Route::IS_RT; });
}

/// True when the file is read already on the way from the scene to \a scope.
bool isOnTheWay(const FileScope* scope, const std::string& canonicalPath)
{
    for (; scope; scope = scope->parent)
        if (scope->canonicalPath == canonicalPath)
            return true;
    return false;
}

} // namespace

LoadSession::LoadSession(Context& context, LoadReport& report)
    : _context(context)
    , _report(report)
    , _progress(context)
    , _externs(*this)
{
}

LoadSession::~LoadSession() = default;

FileScope& LoadSession::openScope(std::string name, const Relayne::URL& url)
{
    _scopes.push_back(std::make_unique<FileScope>(LoadMessages(_report, _leftOut, std::move(name)), url));
    ++_files;
    return *_scopes.back();
}

FileScope& LoadSession::openBody(FileScope& outer, const std::string& name, Node& root)
{
    _scopes.push_back(std::make_unique<FileScope>(outer.messages, outer.url));
    FileScope& body = *_scopes.back();
    body.canonicalPath = outer.canonicalPath;
    body.parent = outer.parent;
    body.origin = outer.origin;
    body.outer = &outer;
    body.isLibrary = outer.isLibrary;
    body.angleFactor = outer.angleFactor;
    body.root = NodeRef(&root);
    body.names = createNameSpace(_context, outer.names, name, &root, outer.url);
    setFileVersion(*body.names, fileVersion(outer.names));
    return body;
}

void LoadSession::closeBody(FileScope& body)
{
    tellUnknownUses(body);
    makeRoutes(body, _report);
    body.routes.clear();
    body.unknownUses.clear();
}

FileScope* LoadSession::fileOfPrototypes(const LocalFile& file, unsigned int depth)
{
    const std::string path = canonical(file.path);
    for (const auto& scope : _scopes)
        if (!scope->isBody() && scope->canonicalPath == path)
            return scope->isRefused ? nullptr : scope.get();
    if (_files > maxFiles)
        return nullptr;
    FileScope& scope = openScope(file.path, file.url);
    scope.canonicalPath = path;
    scope.isLibrary = true;
    scope.depth = depth;
    SourceText source;
    SourceFault fault;
    if (!source.readFile(file.path, fault)) {
        scope.messages.error(fault.place, fault.text);
        scope.isRefused = true;
        return nullptr;
    }
    _report.bytes += source.bytesOnDisk();
    scope.root = createNode(_context, *findType("Scene"), LOADER_NC);
    scope.names = createNameSpace(_context, nullptr, "library", scope.root.get(), file.url);
    if (parse(source, scope))
        return &scope;
    scope.isRefused = true;
    return nullptr;
}

void LoadSession::completeInstance(Node& instance, const std::vector<unsigned int>& given, FileScope& scope,
                                   unsigned int depth)
{
    if (scope.isBody()) {
        scope.instances.push_back({NodeRef(&instance), given, scope.names});
        return;
    }
    const NodeType& type = *instance.type();
    const ProtoSize size = protoSize(type);
    const std::size_t models = waitingNodes(type);
    const SourcePlace place{sourceLine(instance), sourceColumn(instance)};
    if (size.nodes > maxInstanceNodes - _instanceNodes || models > maxModelNodes - _modelNodes) {
        const bool isModel = size.nodes <= maxInstanceNodes - _instanceNodes;
        scope.messages.warn(place, "expected instances of prototypes that bring at most " +
                                       std::to_string(isModel ? maxModelNodes : maxInstanceNodes) +
                                       " nodes, found more with this " + type.name);
        return;
    }
    if (size.depth > maxDepth - std::min(depth, maxDepth)) {
        scope.messages.warn(place, "expected nodes that nest at most " + std::to_string(maxDepth) +
                                       " deep, found deeper ones in this " + type.name);
        return;
    }
    _instanceNodes += size.nodes;
    _modelNodes += models;
    std::vector<Node*> made;
    Orvane::completeInstance(instance, given, scope.names, made);
    const NodeType* const inlineType = findType("Inline");
    std::vector<const Field*> fields;
    for (Node* node : made) {
        if (node->type() == inlineType)
            addInline(*node, scope, depth + size.depth);
        fields.clear();
        madeFields(*node, fields);
        for (const Field* field : fields)
            if (isHanded(*field) && namesFiles(*node, *field->_desc))
                checkHandedFile(*field, scope);
    }
}

/// Looks for the file whose address came into a body through its interface; each place is told once.
void LoadSession::checkHandedFile(const Field& field, const FileScope& scope)
{
    const Node& origin = valueOrigin(field);
    const std::vector<std::string> addresses = readStrings(*field.node(), field._desc->id);
    if (leadsToFile(addresses, origin.nameSpace() ? origin.nameSpace()->baseURL() : scope.url))
        return;
    LoadMessages messages = messagesOf(origin, scope);
    const SourcePlace place{sourceLine(origin), sourceColumn(origin)};
    const std::string text = missingFileText(*field.node(), *field._desc, addresses);
    const std::string told =
        messages.file() + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + text;
    if (_toldFiles.insert(told).second)
        messages.warn(place, text);
}

bool LoadSession::takeModel(const NodeType& type)
{
    const std::size_t models = waitingNodes(type);
    const std::size_t room = maxModelNodes - _modelNodes;
    const std::size_t copied = protoSize(type).nodes;
    if (models > room || copied > room - models)
        return false;
    _modelNodes += models + copied;
    return true;
}

bool LoadSession::readScene(const Relayne::URL& url, const std::string* text, LoadedScene& scene)
{
    const std::string path = url.localFile();
    FileScope& scope = openScope(path.empty() ? url.toString() : path, url);
    SourceText source;
    SourceFault fault;
    bool ok = false;
    if (!text && !url.isLocalFile()) {
        fault.text = "expected a local file, found an address of a network";
    } else {
        ok = text ? source.takeText(*text, fault) : source.readFile(path, fault);
        _report.bytes += source.bytesOnDisk();
    }
    if (!ok) {
        scope.messages.error(fault.place, fault.text);
    } else {
        scope.canonicalPath = path.empty() ? std::string() : canonical(path);
        scope.root = createNode(_context, *findType("Scene"), LOADER_NC);
        scope.names = createNameSpace(_context, nullptr, "scene", scope.root.get(), url);
        _roots.push_back(scope.root);
        ok = parse(source, scope);
    }
    if (ok) {
        readInlines();
        ok = _progress.goesOn();
    }
    if (ok) {
        finish();
        scene.roots = std::move(_roots);
    }
    tellLeftOut();
    return ok;
}

bool LoadSession::readNodes(Node& scene, const std::string& text, const std::string& origin,
                            std::vector<NodeRef>& nodes)
{
    NodeNameSpace& names = *scene.nameSpace();
    FileScope& scope = openScope("text", names.baseURL());
    if (!origin.empty() && origin != names.baseURL().toString())
        scope.origin = std::make_shared<const Relayne::URL>(origin);
    SourceText source;
    SourceFault fault;
    bool ok = source.takeText(text, fault);
    if (!ok) {
        scope.messages.error(fault.place, fault.text);
    } else {
        scope.root = createNode(_context, *findType("Scene"), LOADER_NC);
        scope.names = createNameSpace(_context, nullptr, "text", scope.root.get(), scope.url);
        setFileVersion(*scope.names, fileVersion(&names));
        scope.isClipping = true;
        _roots.push_back(scope.root);
        for (const std::shared_ptr<NodeType>& type : usablePrototypes(scene)) {
            scope.prototypes[type->name] = type;
            _sceneTypes.insert(type.get());
        }
        ok = parse(source, scope);
    }
    if (ok) {
        readInlines();
        finish();
        adoptContent(*scope.root, *scope.names, scene, nodes);
    }
    tellLeftOut();
    return ok;
}

bool LoadSession::parse(SourceText& source, FileScope& scope)
{
    const SceneFormat* format = findFormat(source.view());
    if (!format)
        format = findFormatWithoutHeader(source.view(), scope.messages.file());
    if (!format) {
        scope.messages.error({}, "expected " + readableFormats() + ", found " + foundFormat(source.view()));
        return false;
    }
    const bool isScene = !scope.parent && scope.root->type()->isContextRoot() && !scope.isClipping;
    Field& content = isScene ? contentOf(*scope.root) : inlineContent(*scope.root);
    SceneBuilder builder(*this, scope, content);
    const SourceText* const outer = std::exchange(_source, &source);
    LoadWatch::File outerFile = _progress.beginFile({scope.messages.file(), source.size()}, _report.nodes);
    scope.isBeingRead = true;
    const bool ok = format->read(source, builder, scope.messages);
    scope.isBeingRead = false;
    _source = outer;
    _progress.endFile(std::move(outerFile));
    return ok && _progress.goesOn();
}

void LoadSession::addInline(Node& node, const FileScope& scope, unsigned int depth)
{
    _inlines.push_back({NodeRef(&node), &scope, depth});
}

bool LoadSession::reloadInline(Node& node)
{
    // The scope of the node's own file is gone; only its address and names are asked for.
    const NodeNameSpace* names = node.nameSpace();
    const Relayne::URL url = names ? names->baseURL() : Relayne::URL();
    FileScope& outer = openScope(url.isLocalFile() ? url.localFile() : url.toString(), url);
    outer.names = node.nameSpace();
    if (outer.names && outer.names->rootNode()) {
        outer.root = NodeRef(outer.names->rootNode());
        awaitImports(node, outer);
    }
    inlineContent(node).clear();
    dropExports(node);
    const bool ok = readInline({NodeRef(&node), &outer, 0});
    readInlines();
    finish();
    tellLeftOut();
    return ok;
}

void LoadSession::readInlines()
{
    while (!_inlines.empty() && _progress.goesOn()) {
        const PendingInline pending = std::move(_inlines.front());
        _inlines.pop_front();
        readInline(pending);
    }
}

bool LoadSession::readInline(const PendingInline& pending)
{
    if (!pending.node)
        return true;
    Node& node = *pending.node;
    clearDeclaredPrototypes(node);
    const auto part = [&](std::string_view name) {
        return static_cast<unsigned int>(partIndex(*node.type(), name));
    };
    const std::vector<std::string> addresses = readStrings(node, part("url"));
    if (addresses.empty() || !read<SFBool>(node, part("load")).value())
        return true;
    LoadMessages messages = messagesOf(node, *pending.scope);
    const NodeNameSpace* const origin = valueOrigin(editField(node, part("url"))).nameSpace();
    const Relayne::URL base = origin ? origin->baseURL() : pending.scope->url;
    const SourcePlace place{sourceLine(node), sourceColumn(node)};
    if (_files > maxFiles) {
        messages.warn(place, "Inline.url: expected at most " + std::to_string(maxFiles) +
                                 " files in one scene, found more");
        return false;
    }
    bool anyFile = false;
    for (const std::string& address : addresses) {
        const LocalFile file = findLocalFile(base, address);
        if (file.path.empty())
            continue;
        anyFile = true;
        if (isOnTheWay(pending.scope, canonical(file.path))) {
            messages.warn(place, "Inline.url: expected a file that does not inline itself, found " +
                                     quoted(address));
            return false;
        }
        if (readInlineFile(pending, file.url, file.path))
            return true;
    }
    messages.warn(place, std::string("Inline.url: expected a ") +
                             (anyFile ? "scene that can be read" : "readable local file") + ", found " +
                             quotedList(addresses));
    return false;
}

bool LoadSession::readInlineFile(const PendingInline& pending, const Relayne::URL& url,
                                 const std::string& path)
{
    FileScope& scope = openScope(path, url);
    scope.parent = pending.scope;
    scope.canonicalPath = canonical(path);
    scope.root = pending.node;
    scope.depth = pending.depth;
    SourceText source;
    SourceFault fault;
    if (!source.readFile(path, fault)) {
        scope.messages.error(fault.place, fault.text);
        return false;
    }
    _report.bytes += source.bytesOnDisk();
    Node& node = *pending.node;
    scope.names = createNameSpace(_context, node.nameSpace() ? node.nameSpace() : pending.scope->names,
                                  node.name() ? std::string_view(*node.name()) : "inline", &node, url);
    if (parse(source, scope))
        return true;
    // What stood in front of the fault goes again, and with it what it would have inlined.
    inlineContent(node).clear();
    dropExports(node);
    const auto ofThisFile = [&](const PendingInline& inner) { return inner.scope == &scope; };
    _inlines.erase(std::remove_if(_inlines.begin(), _inlines.end(), ofThisFile), _inlines.end());
    scope.routes.clear();
    scope.imports.clear();
    scope.importNames.clear();
    scope.exports.clear();
    scope.unknownUses.clear();
    scope.prototypes.clear();
    scope.firstPrototype.reset();
    clearDeclaredPrototypes(node);
    scope.isRefused = true;
    scope.names = nullptr;
    scope.root = NodeRef();
    return false;
}

Node& LoadSession::contextRoot(NodeType& type)
{
    for (const NodeRef& root : _roots)
        if (root->type() == &type)
            return *root;
    _roots.push_back(createNode(_context, type, LOADER_NC));
    return *_roots.back();
}

bool LoadSession::hasContextRoot(const NodeType& type) const
{
    return std::any_of(_roots.begin(), _roots.end(),
                       [&](const NodeRef& root) { return root->type() == &type; });
}

/// Messages about a node, which may stand in the body of an instance and so in another file.
LoadMessages LoadSession::messagesOf(const Node& node, const FileScope& scope)
{
    const NodeNameSpace* names = node.nameSpace();
    if (!names || names->baseURL().toString() == scope.url.toString())
        return scope.messages;
    const Relayne::URL& url = names->baseURL();
    return {_report, _leftOut, url.isLocalFile() ? url.localFile() : url.toString()};
}

void LoadSession::tellUnknownUses(const FileScope& scope)
{
    for (const UnknownUse& use : scope.unknownUses) {
        LoadMessages messages = scope.messages;
        messages.warn(use.place, scope.findNode(use.name)
                                     ? "USE: expected a node that stands before, found " + quoted(use.name) +
                                           ", which comes after"
                                     : "USE: expected the name of a node, found " + quoted(use.name));
    }
}

void LoadSession::finish()
{
    const auto takesPart = [](const FileScope& scope) { return !scope.isLibrary && !scope.isBody(); };
    for (const auto& scope : _scopes)
        if (takesPart(*scope))
            tellUnknownUses(*scope);
    // An inlined file may hand on what it imports itself, so the innermost come first.
    for (auto scope = _scopes.rbegin(); scope != _scopes.rend(); ++scope) {
        if (takesPart(**scope)) {
            resolveImports(**scope, _scopes);
            checkExports(**scope);
        }
    }
    for (const auto& scope : _scopes)
        if (takesPart(*scope))
            makeRoutes(*scope, _report);
}

void LoadSession::tellLeftOut()
{
    if (_leftOut > 0)
        _report.messages.push_back({LoadMessage::WARNING_LM, _scopes.front()->messages.file(), 0, 0,
                                    std::to_string(_leftOut) + " further messages are left out"});
}

} // namespace Orvane
