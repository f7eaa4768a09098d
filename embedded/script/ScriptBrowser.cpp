#include "script/ScriptBrowser.h"

#include "base/Graph.h"
#include "base/LocalFile.h"
#include "base/Log.h"
#include "base/NameSpace.h"
#include "base/NodeData.h"
#include "base/SceneLoader.h"
#include "base/TextCoding.h"
#include "core/OpenAddress.h"
#include "script/FieldHandle.h"
#include "script/LoopGuard.h"
#include "script/ScriptEnvironment.h"
#include "script/ScriptHeap.h"
#include "script/ScriptLists.h"
#include "script/ScriptNodes.h"
#include "script/ScriptValues.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Route.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/Scene.h>

namespace Orvane {

namespace {

// What holds a destructor stays inside functions that call nothing of the engine.

Node& runningScript(duk_context* engine)
{
    Node* const script = ScriptHeap::of(engine).script();
    if (!script)
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the script has gone");
    return *script;
}

void pushKeptText(duk_context* engine)
{
    const std::string& text = ScriptHeap::of(engine).text;
    duk_push_lstring(engine, text.data(), text.size());
}

/// The text at \a index in the form of the graph, in the heap's place for it.
std::string& keepText(duk_context* engine, duk_idx_t index)
{
    duk_size_t length = 0;
    const char* const text = duk_to_lstring(engine, index, &length);
    return ScriptHeap::of(engine).text = coding::toGraph(std::string_view(text, length));
}

Relayne::URL baseOf(const Node& node)
{
    return node.nameSpace() ? node.nameSpace()->baseURL() : Relayne::URL();
}

// ---- Log

void writeLine(int level, const std::string& text)
{
    ORVANE_LOG(level, "%s\n", text.c_str());
}

duk_ret_t print(duk_context* engine)
{
    constexpr int levels[] = {osg::LOG_LOG, osg::LOG_WARNING, osg::LOG_FATAL, osg::LOG_DEBUG};
    writeLine(levels[duk_get_int(engine, 0) & 3], keepText(engine, 1));
    return 0;
}

// ---- Browser

enum Question { Name, Version, WorldURL, Description };

void answerInto(std::string& text, Context& context, int question)
{
    const SAIBrowserRef browser(&context);
    const Node* const scene = context.findRoot(Scene::_type);
    if (question == Name)
        text = browser.getName();
    else if (question == Version)
        text = browser.getVersion();
    else if (question == WorldURL)
        text = scene ? baseOf(*scene).toString() : std::string();
}

duk_ret_t answerText(duk_context* engine)
{
    ScriptHeap& heap = ScriptHeap::of(engine);
    answerInto(heap.text, heap.context(), duk_get_current_magic(engine));
    pushKeptText(engine);
    return 1;
}

double askNumber(Context& context, bool speed)
{
    const SAIBrowserRef browser(&context);
    return speed ? browser.getCurrentSpeed() : browser.getCurrentFrameRate();
}

duk_ret_t answerNumber(duk_context* engine)
{
    duk_push_number(engine, askNumber(ScriptHeap::of(engine).context(), duk_get_current_magic(engine) != 0));
    return 1;
}

void setTitle(Context& context, const std::string& text)
{
    SAIBrowserRef(&context).setDescription(text);
}

duk_ret_t setDescription(duk_context* engine)
{
    ScriptHeap& heap = ScriptHeap::of(engine);
    duk_push_heap_stash(engine);
    duk_dup(engine, 0);
    duk_put_prop_string(engine, -2, "description");
    setTitle(heap.context(), keepText(engine, 0));
    return 0;
}

duk_ret_t description(duk_context* engine)
{
    duk_push_heap_stash(engine);
    if (!duk_get_prop_string(engine, -1, "description"))
        duk_push_string(engine, "");
    return 1;
}

/// Takes one text, or a list of them, as a list of texts at \a index.
const View& addressesAt(duk_context* engine, duk_idx_t index)
{
    duk_get_global_string(engine, "MFString");
    duk_dup(engine, index);
    duk_new(engine, 1);
    duk_replace(engine, index);
    return *viewAt(engine, index);
}

bool open(Context& context, const Node& script, const MFString& addresses)
{
    return openAddress(context, addresses, baseOf(script), script.nameSpace(), context.timeStamp());
}

duk_ret_t loadURL(duk_context* engine)
{
    const View& addresses = addressesAt(engine, 0);
    Node& script = runningScript(engine);
    duk_push_boolean(engine, open(ScriptHeap::of(engine).context(), script,
                                  static_cast<const MFString&>(*addresses.value->field())));
    return 1;
}

// ---- Scenes

Node* sceneOf(const LoadedScene& loaded)
{
    for (const NodeRef& root : loaded.roots)
        if (root && root->type() == &Scene::_type)
            return root.get();
    for (const NodeRef& root : loaded.roots)
        if (root && root->type()->name == Scene::_type.name)
            return root.get();
    return nullptr;
}

/// Reads the text into the heap's place for a node.
bool readText(ScriptHeap& heap, const Node& script, std::string_view given, const char* header)
{
    const std::size_t begin = given.find_first_not_of(" \t\r\n");
    const std::string_view start = begin == std::string_view::npos ? std::string_view() : given.substr(begin);
    const bool hasHeader =
        start.substr(0, 1) == "<" || start.substr(0, 5) == "#VRML" || start.substr(0, 4) == "#X3D";
    std::string text = hasHeader ? std::string() : std::string(header) + "\n";
    text += hasHeader ? start : given;
    LoadedScene loaded;
    const bool ok = readScene(heap.context(), baseOf(script), &text, loaded);
    heap.node = NodeRef(ok ? sceneOf(loaded) : nullptr);
    return static_cast<bool>(heap.node);
}

void readStringAt(duk_context* engine, duk_idx_t index, const char* header)
{
    duk_size_t length = 0;
    const char* const text = duk_require_lstring(engine, index, &length);
    if (!readText(ScriptHeap::of(engine), runningScript(engine), std::string_view(text, length), header))
        (void)duk_error(engine, DUK_ERR_SYNTAX_ERROR, "expected the text of a scene");
}

duk_ret_t sceneFromString(duk_context* engine)
{
    readStringAt(engine, 0, "#X3D V3.3 utf8");
    ScriptHeap& heap = ScriptHeap::of(engine);
    pushScene(engine, *heap.node);
    heap.node = NodeRef();
    return 1;
}

bool readFile(ScriptHeap& heap, const Node& script, const MFString& addresses)
{
    for (unsigned int i = 0; i < addresses.size(); ++i) {
        const LocalFile file = findLocalFile(baseOf(script), addresses[static_cast<int>(i)]);
        LoadedScene loaded;
        if (!file.path.empty() && readScene(heap.context(), file.url, nullptr, loaded)) {
            heap.node = NodeRef(sceneOf(loaded));
            if (heap.node)
                return true;
        }
    }
    return false;
}

duk_ret_t sceneFromURL(duk_context* engine)
{
    const View& addresses = addressesAt(engine, 0);
    ScriptHeap& heap = ScriptHeap::of(engine);
    if (!readFile(heap, runningScript(engine), static_cast<const MFString&>(*addresses.value->field())))
        (void)duk_error(engine, DUK_ERR_URI_ERROR, "expected the address of a scene file that can be read");
    pushScene(engine, *heap.node);
    heap.node = NodeRef();
    return 1;
}

NodeNameSpace& namesAt(duk_context* engine, duk_idx_t index)
{
    Node* const member = takeScene(engine, index);
    if (!member)
        (void)duk_type_error(engine, "expected a scene");
    if (!member->nameSpace() || !member->nameSpace()->rootNode())
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the scene has gone");
    return *member->nameSpace();
}

/// The field of the nodes that stand at the top of a scene: below another root than a `Scene` it is the one
/// that no user sees.
Field* rootField(Node& root)
{
    if (root.type()->isContextRoot())
        return root.findField("children", Node::EXACT_FSO);
    for (unsigned int part = 0; part < root.partDescCount(); ++part) {
        Field* const field = root.findField(part);
        if (field->dataType() == MFNODE_DT && field->_desc->privateAccess())
            return field;
    }
    return nullptr;
}

Field& rootFieldAt(duk_context* engine, duk_idx_t index)
{
    Field* const field = rootField(*namesAt(engine, index).rootNode());
    if (!field)
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the scene has no nodes of its own");
    return *field;
}

duk_ret_t rootNodes(duk_context* engine)
{
    pushList(engine, rootFieldAt(engine, 0));
    return 1;
}

duk_ret_t setRootNodes(duk_context* engine)
{
    assignField(engine, 1, rootFieldAt(engine, 0));
    return 0;
}

/// Moves the nodes of the scene into the list.
void moveNodes(ScriptHeap& heap, MFNode& from, FieldHandle& to)
{
    const FieldHandle source(heap, from);
    to.setNodes(source.nodes());
    from.clear();
}

duk_ret_t takeNodes(duk_context* engine)
{
    const View& list = pushNewList(engine, MFNODE_DT);
    moveNodes(ScriptHeap::of(engine), static_cast<MFNode&>(rootFieldAt(engine, 0)), *list.value);
    return 1;
}

duk_ret_t nodesFromString(duk_context* engine)
{
    pushNodesFromString(engine, 0);
    return 1;
}

duk_ret_t currentScene(duk_context* engine)
{
    Node& script = runningScript(engine);
    if (!script.nameSpace())
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the script stands in no scene");
    pushScene(engine, script);
    return 1;
}

duk_ret_t sceneURL(duk_context* engine)
{
    ScriptHeap::of(engine).text = namesAt(engine, 0).baseURL().toString();
    pushKeptText(engine);
    return 1;
}

duk_ret_t namedNode(duk_context* engine)
{
    NodeNameSpace& names = namesAt(engine, 0);
    Node* const node = NodeNameSpace::findNode(&names, keepText(engine, 1));
    if (!node)
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "expected the name of a node, found \"%s\"",
                        duk_get_string(engine, 1));
    pushNode(engine, node);
    return 1;
}

duk_ret_t setNamedNode(duk_context* engine)
{
    NodeNameSpace& names = namesAt(engine, 0);
    Node* node = nullptr;
    if (!takeNode(engine, 2, node))
        (void)duk_type_error(engine, "expected a node");
    const std::string& name = keepText(engine, 1);
    if (node)
        setName(*node, &names, name);
    else if (Node* const bearer = NodeNameSpace::findNode(&names, name))
        setName(*bearer, &names, {});
    return 0;
}

NodeType* findPrototype(const NodeNameSpace* names, std::string_view name)
{
    for (; names; names = names->data()->parent) {
        const NodeExtras* const extras =
            names->rootNode() ? names->rootNode()->data()->extras.get() : nullptr;
        if (!extras)
            continue;
        for (const auto& type : extras->prototypes)
            if (type->name == name)
                return type.get();
    }
    return nullptr;
}

void makeNode(ScriptHeap& heap, NodeNameSpace& names, NodeType& type)
{
    heap.node = createNode(heap.context(), type, RUNTIME_NC);
    setName(*heap.node, &names, {});
}

duk_ret_t createNode(duk_context* engine)
{
    NodeNameSpace& names = namesAt(engine, 0);
    const bool isPrototype = duk_get_boolean(engine, 2);
    const std::string& name = keepText(engine, 1);
    NodeType* const type = isPrototype ? findPrototype(&names, name) : findType(name);
    if (!type || (!isPrototype && (name.compare(0, 3, "X3D") == 0 || type->isContextRoot())))
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "expected the name of a %s, found \"%s\"",
                        isPrototype ? "prototype of the scene" : "node type", duk_get_string(engine, 1));
    ScriptHeap& heap = ScriptHeap::of(engine);
    makeNode(heap, names, *type);
    pushNode(engine, heap.node.get());
    heap.node = NodeRef();
    return 1;
}

void install(Context& context, Node& scene)
{
    installScene(context, LoadedScene{{NodeRef(&scene)}});
}

duk_ret_t replaceWorld(duk_context* engine)
{
    Context& context = ScriptHeap::of(engine).context();
    if (takeScene(engine, 0)) {
        Node& root = *namesAt(engine, 0).rootNode();
        if (!root.type()->isContextRoot())
            (void)duk_type_error(engine, "expected a scene of its own");
        install(context, root);
        return 0;
    }
    Node* const scene = context.findRoot(Scene::_type);
    if (scene)
        assignField(engine, 0, *scene->findField("children", Node::EXACT_FSO));
    return 0;
}

// ---- Routes: from node and field to node and field

struct Ends
{
    Field* from;
    Field* to;
};

Field* endAt(duk_context* engine, duk_idx_t index, bool isSource)
{
    Node* node = nullptr;
    if (!takeNode(engine, index, node) || !node)
        (void)duk_type_error(engine, "expected a node as the %s of a route", isSource ? "start" : "end");
    const std::string& name = keepText(engine, index + 1);
    const int part = isSource ? node->findEventOutSlotID(name) : node->findEventInSlotID(name);
    if (part < 0)
        (void)duk_type_error(engine, "%s: expected a field that %s events, found \"%s\"",
                             node->getIDStr().c_str(), isSource ? "sends" : "takes",
                             duk_get_string(engine, index + 1));
    return node->findField(static_cast<unsigned int>(part));
}

Ends endsAt(duk_context* engine)
{
    Ends ends = {endAt(engine, 0, true), endAt(engine, 2, false)};
    if (ends.from->dataType() != ends.to->dataType())
        (void)duk_type_error(engine, "expected fields of one type, found a route from %s to %s",
                             ends.from->dataTypeName().c_str(), ends.to->dataTypeName().c_str());
    return ends;
}

duk_ret_t addRoute(duk_context* engine)
{
    const Ends ends = endsAt(engine);
    ends.to->createInSlot(false);
    Route::create(*ends.from->getOutSlot(true, false), *ends.to->_inSlot, Route::SCRIPT_RT);
    return 0;
}

duk_ret_t deleteRoute(duk_context* engine)
{
    const Ends ends = endsAt(engine);
    Route* const route = ends.from->_outSlot ? ends.from->_outSlot->findRoute(ends.to->_inSlot) : nullptr;
    if (route && route->type() != Route::IS_RT)
        delete route;
    return 0;
}

// ---- Code made by code

void guardInto(std::string& text, std::string_view code)
{
    text = guardLoops(code);
}

duk_ret_t guarded(duk_context* engine)
{
    duk_size_t length = 0;
    const char* const code = duk_require_lstring(engine, 0, &length);
    guardInto(ScriptHeap::of(engine).text, std::string_view(code, length));
    pushKeptText(engine);
    return 1;
}

duk_ret_t evaluate(duk_context* engine)
{
    duk_push_string(engine, "eval");
    duk_compile(engine, DUK_COMPILE_EVAL);
    duk_call(engine, 0);
    return 1;
}

} // namespace

void pushNodesFromString(duk_context* engine, duk_idx_t index)
{
    readStringAt(engine, index, "#VRML V2.0 utf8");
    ScriptHeap& heap = ScriptHeap::of(engine);
    const View& list = pushNewList(engine, MFNODE_DT);
    moveNodes(heap, static_cast<MFNode&>(*rootField(*heap.node)), *list.value);
    heap.node = NodeRef();
}

void addBrowserFunctions(duk_context* engine)
{
    addFunction(engine, "print", print, 2);
    addFunction(engine, "name", answerText, 0, Name);
    addFunction(engine, "version", answerText, 0, Version);
    addFunction(engine, "worldURL", answerText, 0, WorldURL);
    addFunction(engine, "speed", answerNumber, 0, 1);
    addFunction(engine, "frameRate", answerNumber, 0, 0);
    addFunction(engine, "setDescription", setDescription, 1);
    addFunction(engine, "description", description, 0);
    addFunction(engine, "loadURL", loadURL, 2);
    addFunction(engine, "replaceWorld", replaceWorld, 1);
    addFunction(engine, "nodesFromString", nodesFromString, 1);
    addFunction(engine, "sceneFromString", sceneFromString, 1);
    addFunction(engine, "sceneFromURL", sceneFromURL, 1);
    addFunction(engine, "takeNodes", takeNodes, 1);
    addFunction(engine, "currentScene", currentScene, 0);
    addFunction(engine, "sceneURL", sceneURL, 1);
    addFunction(engine, "rootNodes", rootNodes, 1);
    addFunction(engine, "setRootNodes", setRootNodes, 2);
    addFunction(engine, "namedNode", namedNode, 2);
    addFunction(engine, "setNamedNode", setNamedNode, 3);
    addFunction(engine, "createNode", createNode, 3);
    addFunction(engine, "addRoute", addRoute, 4);
    addFunction(engine, "deleteRoute", deleteRoute, 4);
    addFunction(engine, "guarded", guarded, 1);
    addFunction(engine, "evaluate", evaluate, 1);
}

} // namespace Orvane
