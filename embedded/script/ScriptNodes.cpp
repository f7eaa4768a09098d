#include "script/ScriptNodes.h"

#include "base/NodeRef.h"
#include "base/TextCoding.h"
#include "script/FieldHandle.h"
#include "script/ScriptBrowser.h"
#include "script/ScriptEnvironment.h"
#include "script/ScriptHeap.h"
#include "script/ScriptValues.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>

namespace Orvane {

namespace {

constexpr const char* nodeKey = DUK_HIDDEN_SYMBOL("node");

struct NodeHandle
{
    NodeRef node;
    UInt64 id = 0;
    ScriptHeap* heap = nullptr; ///< when it knows the object by the node
    bool isScene = false;
};

NodeHandle* handleAt(duk_context* engine, duk_idx_t index)
{
    if (!duk_is_object(engine, index))
        return nullptr;
    duk_get_prop_string(engine, index, nodeKey);
    auto* const handle = static_cast<NodeHandle*>(duk_get_pointer(engine, -1));
    duk_pop(engine);
    return handle;
}

duk_ret_t endHandle(duk_context* engine)
{
    NodeHandle* const handle = handleAt(engine, 0);
    if (!handle)
        return 0;
    duk_push_pointer(engine, nullptr);
    duk_put_prop_string(engine, 0, nodeKey);
    if (handle->heap)
        handle->heap->wrappers.erase(handle->id);
    delete handle;
    return 0;
}

/// Gives the object on top of the stack the node.
NodeHandle& giveHandle(duk_context* engine, Node& node)
{
    duk_push_c_function(engine, endHandle, 1);
    duk_set_finalizer(engine, -2);
    duk_push_pointer(engine, nullptr);
    duk_put_prop_string(engine, -2, nodeKey);
    auto* const handle = new NodeHandle{NodeRef(&node), node.ID()}; // the object owns it from here on
    duk_push_pointer(engine, handle);
    duk_put_prop_string(engine, -2, nodeKey);
    return *handle;
}

[[noreturn]] void raiseGone(duk_context* engine)
{
    (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the node has gone");
    __builtin_unreachable();
}

Node& nodeOf(duk_context* engine, duk_idx_t index)
{
    const NodeHandle* const handle = handleAt(engine, index);
    if (!handle || handle->isScene)
        (void)duk_type_error(engine, "expected a node");
    if (!handle->node)
        raiseGone(engine);
    return *handle->node;
}

/// The field that a property means; null when it is none.
Field* fieldOf(duk_context* engine, Node& node, duk_idx_t key)
{
    duk_size_t length = 0;
    const char* const name = duk_is_symbol(engine, key) ? nullptr : duk_get_lstring(engine, key, &length);
    if (!name || length == 0)
        return nullptr;
    Field* const field = node.findField(std::string(name, length), Node::DECLARED_FSO);
    return field && !field->_desc->privateAccess() ? field : nullptr;
}

// ---- What is done to a node

duk_ret_t getProperty(duk_context* engine)
{
    duk_dup(engine, 1);
    Node* const node = handleAt(engine, 0) ? handleAt(engine, 0)->node.get() : nullptr;
    Field* const field = node ? fieldOf(engine, *node, 1) : nullptr;
    if (!field) {
        duk_get_prop(engine, 0);
        if (!node && duk_is_undefined(engine, -1) && !duk_is_symbol(engine, 1))
            raiseGone(engine);
        return 1;
    }
    if (field->partType() == EVENTINP && node->state() == RUNNING_NS)
        (void)duk_type_error(engine, "%s: expected a field that can be read, found an inputOnly one",
                             field->name());
    pushLive(engine, *field);
    return 1;
}

duk_ret_t setProperty(duk_context* engine)
{
    Node& node = nodeOf(engine, 0);
    Field* const field = fieldOf(engine, node, 1);
    if (!field)
        (void)duk_type_error(engine, "%s: expected a field of %s, found \"%s\"", node.getIDStr().c_str(),
                             node.type()->name.c_str(), duk_safe_to_string(engine, 1));
    checkWritable(engine, *field);
    assignField(engine, 2, *field);
    duk_push_true(engine);
    return 1;
}

duk_ret_t hasProperty(duk_context* engine)
{
    Node& node = nodeOf(engine, 0);
    duk_dup(engine, 1);
    duk_push_boolean(engine, fieldOf(engine, node, 1) || duk_has_prop(engine, 0));
    return 1;
}

duk_ret_t deleteProperty(duk_context* engine)
{
    duk_push_true(engine);
    return 1;
}

duk_ret_t listProperties(duk_context* engine)
{
    const Node& node = nodeOf(engine, 0);
    duk_push_array(engine);
    duk_uarridx_t count = 0;
    for (unsigned int part = 0; part < node.partDescCount(); ++part) {
        const Field* const field = node.findField(part);
        if (field->_desc->privateAccess() || field->partType() == EVENTINP)
            continue;
        // The engine goes over what the object behind the node has, too.
        duk_push_undefined(engine);
        duk_put_prop_string(engine, 0, field->name());
        duk_push_string(engine, field->name());
        duk_put_prop_index(engine, -2, count++);
    }
    return 1;
}

// ---- The class

/// `new SFNode("Transform {}")`
duk_ret_t construct(duk_context* engine)
{
    if (!duk_is_string(engine, 0))
        (void)duk_type_error(engine, "SFNode: expected the text of a node");
    pushNodesFromString(engine, 0);
    duk_get_prop_string(engine, -1, "length");
    if (duk_get_int(engine, -1) < 1)
        (void)duk_error(engine, DUK_ERR_SYNTAX_ERROR, "SFNode: expected the text of a node, found none");
    duk_pop(engine);
    duk_get_prop_index(engine, -1, 0);
    return 1;
}

enum Question { TypeName, NodeName, Text };

duk_ret_t answer(duk_context* engine)
{
    duk_push_this(engine);
    const int question = duk_get_current_magic(engine);
    const NodeHandle* const handle = handleAt(engine, -1);
    if (question == Text && !(handle && handle->node)) {
        duk_push_string(engine, handle ? "[a node that has gone]" : "[the class of nodes]");
        return 1;
    }
    const Node& node = nodeOf(engine, -1);
    std::string& text = ScriptHeap::of(engine).text;
    if (question == TypeName)
        text = node.type()->name;
    else if (question == NodeName)
        text = node.name() ? coding::toFile(*node.name()) : std::string();
    else
        text = node.type()->name + (node.name() ? " " + coding::toFile(*node.name()) : std::string());
    duk_push_lstring(engine, text.data(), text.size());
    return 1;
}

const char* accessWord(NodePartType access)
{
    return access == EVENTINP        ? "inputOnly"
           : access == EVENTOUTP     ? "outputOnly"
           : access == EXPOSEDFIELDP ? "inputOutput"
                                     : "initializeOnly";
}

duk_ret_t fieldDefinitions(duk_context* engine)
{
    duk_push_this(engine);
    const Node& node = nodeOf(engine, -1);
    duk_push_array(engine);
    duk_uarridx_t count = 0;
    for (unsigned int part = 0; part < node.partDescCount(); ++part) {
        const NodePartDesc& desc = *node.findField(part)->_desc;
        if (desc.privateAccess())
            continue;
        duk_push_object(engine);
        duk_push_string(engine, desc.name.c_str());
        duk_put_prop_string(engine, -2, "name");
        duk_push_string(engine, accessWord(desc.partType));
        duk_put_prop_string(engine, -2, "accessType");
        duk_push_string(engine, desc.dataTypeName().c_str());
        duk_put_prop_string(engine, -2, "dataType");
        duk_put_prop_index(engine, -2, count++);
    }
    return 1;
}

} // namespace

void pushNode(duk_context* engine, Node* node)
{
    if (!node) {
        duk_push_null(engine);
        return;
    }
    ScriptHeap& heap = ScriptHeap::of(engine);
    const auto known = heap.wrappers.find(node->ID());
    if (known != heap.wrappers.end()) {
        duk_push_heapptr(engine, known->second);
        return;
    }
    duk_push_object(engine);
    heap.pushNodePrototype(engine);
    duk_set_prototype(engine, -2);
    NodeHandle& handle = giveHandle(engine, *node);
    heap.pushNodeHandler(engine);
    duk_push_proxy(engine, 0);
    heap.wrappers.emplace(node->ID(), duk_get_heapptr(engine, -1));
    handle.heap = &heap;
}

bool takeNode(duk_context* engine, duk_idx_t index, Node*& node)
{
    node = nullptr;
    if (duk_is_null(engine, index))
        return true;
    const NodeHandle* const handle = handleAt(engine, index);
    if (!handle || handle->isScene)
        return false;
    node = &nodeOf(engine, index);
    return true;
}

void pushScene(duk_context* engine, Node& member)
{
    duk_push_object(engine);
    ScriptHeap::of(engine).pushScenePrototype(engine);
    duk_set_prototype(engine, -2);
    giveHandle(engine, member).isScene = true;
}

Node* takeScene(duk_context* engine, duk_idx_t index)
{
    const NodeHandle* const handle = handleAt(engine, index);
    if (!handle || !handle->isScene)
        return nullptr;
    if (!handle->node)
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the scene has gone");
    return handle->node.get();
}

void makeNodeHandler(duk_context* engine)
{
    pushProxyHandler(engine, {getProperty, setProperty, hasProperty, deleteProperty, listProperties});
}

void addNodeClass(duk_context* engine)
{
    duk_push_c_function(engine, construct, 1);
    duk_push_object(engine);
    duk_dup(engine, -2);
    duk_put_prop_string(engine, -2, "constructor");
    addFunction(engine, "toString", answer, 0, Text);
    addFunction(engine, "getNodeTypeName", answer, 0, TypeName);
    addFunction(engine, "getNodeType", answer, 0, TypeName);
    addFunction(engine, "getNodeName", answer, 0, NodeName);
    addFunction(engine, "getFieldDefinitions", fieldDefinitions, 0);
    duk_put_prop_string(engine, -2, "prototype");
    duk_put_prop_string(engine, -2, "SFNode");
}

} // namespace Orvane
