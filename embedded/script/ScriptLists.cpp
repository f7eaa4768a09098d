#include "script/ScriptLists.h"

#include "script/FieldHandle.h"
#include "script/FieldTuples.h"
#include "script/ScriptHeap.h"
#include "script/ScriptValues.h"
#include <Orvane/Field.h>
#include <Orvane/FieldType.h>
#include <Orvane/Node.h>
#include <cmath>
#include <cstring>

namespace Orvane {

namespace {

constexpr double noIndex = -1.0;

/// The index that a property name is; `noIndex` for all others.
double indexOf(duk_context* engine, duk_idx_t key)
{
    if (duk_is_number(engine, key))
        return duk_get_number(engine, key);
    duk_size_t length = 0;
    const char* const text = duk_get_lstring(engine, key, &length);
    if (!text || length == 0 || length > 10 || (text[0] == '0' && length > 1))
        return noIndex;
    double index = 0.0;
    for (duk_size_t i = 0; i < length; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return noIndex;
        index = index * 10.0 + (text[i] - '0');
    }
    return index;
}

bool isLength(duk_context* engine, duk_idx_t key)
{
    const char* const text = duk_get_string(engine, key);
    return text && std::strcmp(text, "length") == 0;
}

const View& listOf(duk_context* engine, duk_idx_t target)
{
    const View* const view = viewAt(engine, target);
    if (!view)
        (void)duk_type_error(engine, "expected a list");
    checkLiving(engine, *view->value);
    return *view;
}

void setLength(duk_context* engine, const View& list, double length)
{
    if (!(length >= 0.0) || length != std::floor(length) || length > 4294967295.0 ||
        !list.value->resize(static_cast<unsigned int>(length)))
        (void)duk_range_error(engine, "%s: expected a length that there is room for, found %g",
                              FieldType::dataTypeName(list.value->type()).c_str(), length);
}

// ---- What is done to a list: the arguments are the object behind it, the property, and the value

duk_ret_t getProperty(duk_context* engine)
{
    if (const double index = indexOf(engine, 1); index != noIndex) {
        const View& list = listOf(engine, 0);
        pushElement(engine, list, index < 4294967295.0 ? static_cast<unsigned int>(index) : 4294967294U);
        return 1;
    }
    if (isLength(engine, 1)) {
        duk_push_uint(engine, listOf(engine, 0).value->size());
        return 1;
    }
    duk_dup(engine, 1);
    duk_get_prop(engine, 0);
    return 1;
}

duk_ret_t setProperty(duk_context* engine)
{
    const double index = indexOf(engine, 1);
    const bool isElement = index != noIndex;
    if (!isElement && !isLength(engine, 1)) {
        duk_dup(engine, 1);
        duk_dup(engine, 2);
        duk_put_prop(engine, 0);
        duk_push_true(engine);
        return 1;
    }
    const View& list = listOf(engine, 0);
    checkWritable(engine, *list.value);
    if (isElement) {
        growList(engine, *list.value, index + 1.0);
        takeElement(engine, 2, list, static_cast<unsigned int>(index));
    } else {
        setLength(engine, list, duk_to_number(engine, 2));
    }
    list.value->changed();
    duk_push_true(engine);
    return 1;
}

duk_ret_t hasProperty(duk_context* engine)
{
    const double index = indexOf(engine, 1);
    if (index != noIndex)
        duk_push_boolean(engine, index < listOf(engine, 0).value->size());
    else if (isLength(engine, 1))
        duk_push_true(engine);
    else
        duk_push_boolean(engine, (duk_dup(engine, 1), duk_has_prop(engine, 0)));
    return 1;
}

/// Lists have no holes: an element that is deleted is there until the length says otherwise.
duk_ret_t deleteProperty(duk_context* engine)
{
    if (indexOf(engine, 1) == noIndex && !isLength(engine, 1)) {
        duk_dup(engine, 1);
        duk_del_prop(engine, 0);
    }
    duk_push_true(engine);
    return 1;
}

duk_ret_t listProperties(duk_context* engine)
{
    const unsigned int size = listOf(engine, 0).value->size();
    duk_push_array(engine);
    for (unsigned int i = 0; i < size; ++i) {
        // The engine goes over what the object behind the list has, too.
        duk_push_undefined(engine);
        duk_put_prop_index(engine, 0, i);
        duk_push_sprintf(engine, "%u", i);
        duk_put_prop_index(engine, -2, i);
    }
    return 1;
}

void pushProxy(duk_context* engine)
{
    ScriptHeap::of(engine).pushListHandler(engine);
    duk_push_proxy(engine, 0);
}

// ---- Classes

/// `new MFVec3f(a, b)`, `new MFVec3f([a, b])`, or with another list.
duk_ret_t construct(duk_context* engine)
{
    const auto type = static_cast<NodePartDataType>(duk_get_current_magic(engine));
    const duk_idx_t given = duk_get_top(engine);
    const View* const only = given == 1 ? viewAt(engine, 0) : nullptr;
    const bool isListed = given == 1 && (duk_is_array(engine, 0) || (only && only->isWholeList()));
    const View& made = pushNewList(engine, type);
    double length = given;
    if (isListed) {
        duk_get_prop_string(engine, 0, "length");
        length = duk_get_number_default(engine, -1, 0.0);
        duk_pop(engine);
    }
    growList(engine, *made.value, length);
    for (unsigned int i = 0; i < made.value->size(); ++i) {
        if (isListed)
            duk_get_prop_index(engine, 0, i);
        else
            duk_dup(engine, static_cast<duk_idx_t>(i));
        takeElement(engine, duk_get_top_index(engine), made, i);
        duk_pop(engine);
    }
    return 1;
}

duk_ret_t toText(duk_context* engine)
{
    duk_push_this(engine);
    const View& list = listOf(engine, -1);
    if (list.value->type() == MFNODE_DT) {
        duk_push_string(engine, ", ");
        for (unsigned int i = 0; i < list.value->size(); ++i)
            pushElement(engine, list, i);
        duk_join(engine, static_cast<duk_idx_t>(list.value->size()));
    } else {
        std::string& text = ScriptHeap::of(engine).text;
        text = list.value->field()->valueToString();
        duk_push_lstring(engine, text.data(), text.size());
    }
    duk_push_string(engine, "[");
    duk_insert(engine, -2);
    duk_push_string(engine, "]");
    duk_concat(engine, 3);
    return 1;
}

} // namespace

void growList(duk_context* engine, FieldHandle& list, double length)
{
    if (length <= list.size())
        return;
    const bool isCountable = length <= 4294967295.0;
    // The graph has no links to nothing: its lists of nodes grow by the nodes themselves.
    if (isCountable && list.isLive() && list.type() == MFNODE_DT) {
        if (length > list.size() + 1.0)
            (void)duk_range_error(engine, "MFNode: expected an index up to %u, found %g", list.size(),
                                  length - 1.0);
        return;
    }
    if (!isCountable || !list.resize(static_cast<unsigned int>(length)))
        (void)duk_range_error(engine, "%s: expected a length that there is room for, found %g",
                              FieldType::dataTypeName(list.type()).c_str(), length);
}

void pushList(duk_context* engine, Field& field)
{
    ScriptHeap& heap = ScriptHeap::of(engine);
    heap.pushPrototype(engine, field.dataType());
    pushView(engine).value = std::make_shared<FieldHandle>(heap, field);
    pushProxy(engine);
}

const View& pushNewList(duk_context* engine, NodePartDataType type)
{
    ScriptHeap& heap = ScriptHeap::of(engine);
    heap.pushPrototype(engine, type);
    View& view = pushView(engine);
    view.value = std::make_shared<FieldHandle>(heap, type);
    pushProxy(engine);
    return view;
}

void makeListHandler(duk_context* engine)
{
    pushProxyHandler(engine, {getProperty, setProperty, hasProperty, deleteProperty, listProperties});
}

void addListClasses(duk_context* engine)
{
    duk_get_prop_string(engine, -1, "Array");
    duk_get_prop_string(engine, -1, "prototype");
    duk_remove(engine, -2);
    for (int type = MFBOOL_DT; type <= MFVEC4F_DT; type += 2) {
        duk_push_c_function(engine, construct, DUK_VARARGS);
        duk_set_magic(engine, -1, type);
        duk_push_object(engine);
        duk_dup(engine, -3);
        duk_set_prototype(engine, -2);
        duk_dup(engine, -2);
        duk_put_prop_string(engine, -2, "constructor");
        addFunction(engine, "toString", toText, 0);
        duk_put_prop_string(engine, -2, "prototype");
        duk_put_prop_string(engine, -3, FieldType::dataTypeName(static_cast<NodePartDataType>(type)).c_str());
    }
    duk_pop(engine);
}

} // namespace Orvane
