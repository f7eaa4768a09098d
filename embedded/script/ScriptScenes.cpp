#include "script/ScriptScenes.h"

#include "base/Graph.h"
#include "base/NameSpace.h"
#include "base/NodeData.h"
#include "base/SceneLoader.h"
#include "script/ScriptEnvironment.h"
#include "script/ScriptHeap.h"
#include "script/ScriptLists.h"
#include "script/ScriptNodes.h"
#include "script/ScriptValues.h"
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Route.h>

namespace Orvane {

NodeNameSpace& namesOfSceneAt(duk_context* engine, duk_idx_t index)
{
    Node* const member = takeScene(engine, index);
    if (!member)
        (void)duk_type_error(engine, "expected a scene");
    if (!member->nameSpace() || !member->nameSpace()->rootNode())
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the scene has gone");
    return *member->nameSpace();
}

Field* nodesOfRoot(Node& root)
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

Field& nodesOfSceneAt(duk_context* engine, duk_idx_t index)
{
    Field* const field = nodesOfRoot(*namesOfSceneAt(engine, index).rootNode());
    if (!field)
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the scene has no nodes of its own");
    return *field;
}

namespace {

// What holds a destructor stays inside functions that call nothing of the engine.

duk_ret_t rootNodes(duk_context* engine)
{
    pushList(engine, nodesOfSceneAt(engine, 0));
    return 1;
}

duk_ret_t setRootNodes(duk_context* engine)
{
    assignField(engine, 1, nodesOfSceneAt(engine, 0));
    return 0;
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
    ScriptHeap::of(engine).text = namesOfSceneAt(engine, 0).baseURL().toString();
    pushKeptText(engine);
    return 1;
}

duk_ret_t namedNode(duk_context* engine)
{
    NodeNameSpace& names = namesOfSceneAt(engine, 0);
    Node* const node = NodeNameSpace::findNode(&names, keepText(engine, 1));
    if (!node)
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "expected the name of a node, found \"%s\"",
                        duk_get_string(engine, 1));
    pushNode(engine, node);
    return 1;
}

duk_ret_t importedNode(duk_context* engine)
{
    NodeNameSpace& names = namesOfSceneAt(engine, 0);
    Node* const node = findImportedNode(names, keepText(engine, 1));
    if (!node)
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR,
                        "expected the name of an imported node, found \"%s\"", duk_get_string(engine, 1));
    pushNode(engine, node);
    return 1;
}

duk_ret_t setNamedNode(duk_context* engine)
{
    NodeNameSpace& names = namesOfSceneAt(engine, 0);
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
    NodeNameSpace& names = namesOfSceneAt(engine, 0);
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

} // namespace

void addSceneFunctions(duk_context* engine)
{
    addFunction(engine, "currentScene", currentScene, 0);
    addFunction(engine, "sceneURL", sceneURL, 1);
    addFunction(engine, "rootNodes", rootNodes, 1);
    addFunction(engine, "setRootNodes", setRootNodes, 2);
    addFunction(engine, "namedNode", namedNode, 2);
    addFunction(engine, "setNamedNode", setNamedNode, 3);
    addFunction(engine, "importedNode", importedNode, 2);
    addFunction(engine, "createNode", createNode, 3);
    addFunction(engine, "addRoute", addRoute, 4);
    addFunction(engine, "deleteRoute", deleteRoute, 4);
}

} // namespace Orvane
