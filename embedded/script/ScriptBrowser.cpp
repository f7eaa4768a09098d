#include "script/ScriptBrowser.h"

#include "base/Graph.h"
#include "base/LocalFile.h"
#include "base/Log.h"
#include "base/SceneLoader.h"
#include "core/OpenAddress.h"
#include "script/FieldHandle.h"
#include "script/LoopGuard.h"
#include "script/ScriptEnvironment.h"
#include "script/ScriptHeap.h"
#include "script/ScriptLists.h"
#include "script/ScriptNodes.h"
#include "script/ScriptScenes.h"
#include "script/ScriptValues.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/Scene.h>

namespace Orvane {

namespace {

// What holds a destructor stays inside functions that call nothing of the engine.

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

// ---- Reading

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
    moveNodes(ScriptHeap::of(engine), static_cast<MFNode&>(nodesOfSceneAt(engine, 0)), *list.value);
    return 1;
}

duk_ret_t nodesFromString(duk_context* engine)
{
    pushNodesFromString(engine, 0);
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
        Node& root = *namesOfSceneAt(engine, 0).rootNode();
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
    moveNodes(heap, static_cast<MFNode&>(*nodesOfRoot(*heap.node)), *list.value);
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
    addFunction(engine, "guarded", guarded, 1);
    addFunction(engine, "evaluate", evaluate, 1);
}

} // namespace Orvane
