#include "script/FieldHandle.h"

#include "base/FieldFactory.h"
#include "script/FieldTuples.h"
#include "script/ScriptHeap.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <algorithm>

namespace Orvane {

namespace {

constexpr const char* viewKey = DUK_HIDDEN_SYMBOL("view");

/// Lists of scripts are no longer; they are in memory that the engine does not count.
constexpr unsigned int longestList = 4U * 1024 * 1024;

/// Describes the own lists of a type.
NodePartDesc& ownDesc(NodePartDataType type)
{
    static NodePartDesc descs[MFVEC4F_DT + 1];
    descs[type].dataType = type;
    descs[type].partType = FIELDP;
    return descs[type];
}

std::size_t bytesOf(NodePartDataType type)
{
    const unsigned int numbers = tupleShape(type).size;
    return numbers > 0 ? numbers * sizeof(double) : 64;
}

duk_ret_t endView(duk_context* engine)
{
    duk_get_prop_string(engine, 0, viewKey);
    delete static_cast<View*>(duk_get_pointer(engine, -1));
    duk_push_pointer(engine, nullptr);
    duk_put_prop_string(engine, 0, viewKey);
    return 0;
}

} // namespace

FieldHandle::FieldHandle(ScriptHeap& heap, Field& field)
    : _heap(heap)
    , _type(field.dataType())
    , _node(field.node())
    , _field(&field)
{
}

FieldHandle::FieldHandle(ScriptHeap& heap, NodePartDataType type)
    : _heap(heap)
    , _type(type)
{
    if (type != MFNODE_DT)
        _own = makeDefaultField(ownDesc(type));
}

FieldHandle::~FieldHandle()
{
    _heap.discharge(_charged);
}

unsigned int FieldHandle::size() const
{
    const Field* const value = field();
    return value ? value->size() : static_cast<unsigned int>(_nodes.size());
}

Node* FieldHandle::nodeAt(unsigned int index) const
{
    if (index >= size())
        return nullptr;
    return _field ? static_cast<const MFNode*>(_field)->elem(static_cast<int>(index)).directNode()
                  : _nodes[index].get();
}

std::vector<NodeRef> FieldHandle::nodes() const
{
    std::vector<NodeRef> result;
    for (unsigned int i = 0; i < size(); ++i)
        result.emplace_back(nodeAt(i));
    return result;
}

bool FieldHandle::resize(unsigned int size)
{
    if (size > longestList)
        return false;
    if (_field && _type == MFNODE_DT) {
        // The graph has no links to nothing.
        auto& list = static_cast<MFNode&>(*_field);
        while (list.size() > size)
            list.removeNode(0.0, static_cast<int>(list.size()) - 1, Field::LOADER_CT);
        return true;
    }
    if (!_field) {
        const std::size_t bytes = size * bytesOf(_type);
        if (bytes > _charged && !_heap.charge(bytes - _charged))
            return false;
        if (bytes < _charged)
            _heap.discharge(_charged - bytes);
        _charged = bytes;
    }
    if (field())
        resizeList(*field(), size);
    else
        _nodes.resize(size);
    return true;
}

bool FieldHandle::setNode(unsigned int index, Node* node)
{
    if (!_field) {
        _nodes[index] = NodeRef(node);
        return true;
    }
    auto& list = static_cast<MFNode&>(*_field);
    if (index < list.size() && list.elem(static_cast<int>(index)).directNode() == node)
        return true;
    const NodeRef kept(node);
    if (index < list.size())
        list.removeNode(0.0, static_cast<int>(index), Field::LOADER_CT);
    return !node || list.insertNode(0.0, static_cast<int>(index), node, Field::LOADER_CT);
}

bool FieldHandle::setNodes(const std::vector<NodeRef>& nodes)
{
    if (!_field) {
        _nodes = nodes;
        return true;
    }
    auto& list = static_cast<MFNode&>(*_field);
    bool isSame = list.size() == nodes.size();
    for (unsigned int i = 0; isSame && i < list.size(); ++i)
        isSame = nodeAt(i) == nodes[i].get();
    if (isSame)
        return true;
    list.clear();
    bool fits = true;
    for (const NodeRef& node : nodes)
        if (node && _node)
            fits = list.addNode(0.0, node.get(), Field::LOADER_CT) && fits;
    return fits;
}

void FieldHandle::changed() const
{
    if (_field && _node)
        _field->processValueChange(_heap.time(), Field::EVENT_CT);
}

View& pushView(duk_context* engine)
{
    duk_push_object(engine);
    duk_insert(engine, -2);
    duk_set_prototype(engine, -2);
    duk_push_c_function(engine, endView, 1);
    duk_set_finalizer(engine, -2);
    duk_push_pointer(engine, nullptr);
    duk_put_prop_string(engine, -2, viewKey);
    auto* const view = new View; // the object owns it from here on
    duk_push_pointer(engine, view);
    duk_put_prop_string(engine, -2, viewKey);
    return *view;
}

View* viewAt(duk_context* engine, duk_idx_t index)
{
    if (!duk_is_object(engine, index))
        return nullptr;
    duk_get_prop_string(engine, index, viewKey);
    auto* const view = static_cast<View*>(duk_get_pointer(engine, -1));
    duk_pop(engine);
    return view;
}

void checkLiving(duk_context* engine, const FieldHandle& value)
{
    if (!value.exists())
        duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the node of this value has gone");
}

void checkWritable(duk_context* engine, const FieldHandle& value)
{
    checkLiving(engine, value);
    if (value.isLive())
        checkWritable(engine, *value.field());
}

void checkWritable(duk_context* engine, const Field& field)
{
    if (field.node()->state() != RUNNING_NS || field.node() == ScriptHeap::of(engine).script() ||
        (field.partType() & EVENTINP))
        return;
    duk_type_error(engine, "%s: expected a field that takes events, found an %s one", field.name(),
                   field.partType() == EVENTOUTP ? "outputOnly" : "initializeOnly");
}

} // namespace Orvane
