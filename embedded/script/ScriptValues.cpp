#include "script/ScriptValues.h"

#include "base/Graph.h"
#include "base/TextCoding.h"
#include "base/ValueFields.h"
#include "script/FieldHandle.h"
#include "script/FieldTuples.h"
#include "script/ScriptHeap.h"
#include "script/ScriptImages.h"
#include "script/ScriptLists.h"
#include "script/ScriptNodes.h"
#include <Orvane/FieldType.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/SFImage.h>
#include <Orvane/SFNode.h>
#include <Orvane/SFString.h>
#include <cmath>

namespace Orvane {

namespace {

/// "a number", for messages.
const char* kindOf(duk_context* engine, duk_idx_t index)
{
    if (const View* view = viewAt(engine, index))
        return FieldType::dataTypeName(view->isElement ? elementType(view->value->type())
                                                       : view->value->type())
            .c_str();
    switch (duk_get_type(engine, index)) {
    case DUK_TYPE_NONE:
    case DUK_TYPE_UNDEFINED:
        return "undefined";
    case DUK_TYPE_NULL:
        return "null";
    case DUK_TYPE_BOOLEAN:
        return "a truth value";
    case DUK_TYPE_NUMBER:
        return "a number";
    case DUK_TYPE_STRING:
        return "a text";
    default:
        return duk_is_array(engine, index)      ? "an array"
               : duk_is_function(engine, index) ? "a function"
                                                : "an object";
    }
}

// ---- Numbers

void pushNumber(duk_context* engine, NodePartDataType type, double value)
{
    if (elementType(type) == SFBOOL_DT)
        duk_push_boolean(engine, value != 0.0);
    else
        duk_push_number(engine, value);
}

/// A tuple as an object of its class.
void pushTuple(duk_context* engine, NodePartDataType type, const double* numbers)
{
    const TupleShape shape = tupleShape(type);
    if (shape.size == 1) {
        pushNumber(engine, type, *numbers);
        return;
    }
    duk_push_object(engine);
    ScriptHeap::of(engine).pushPrototype(engine, elementType(type));
    duk_set_prototype(engine, -2);
    if (shape.keys) {
        for (unsigned int i = 0; i < shape.size; ++i) {
            duk_push_number(engine, numbers[i]);
            duk_put_prop_string(engine, -2, shape.keys[i]);
        }
        return;
    }
    const unsigned int side = shape.size == 9 ? 3 : 4;
    for (unsigned int row = 0; row < side; ++row) {
        duk_push_array(engine);
        for (unsigned int column = 0; column < side; ++column) {
            duk_push_number(engine, numbers[row * side + column]);
            duk_put_prop_index(engine, -2, column);
        }
        duk_put_prop_index(engine, -2, row);
    }
}

/// The number at \a index; raises an error when there is none.
double takeNumber(duk_context* engine, duk_idx_t index, NodePartDataType type)
{
    if (duk_is_number(engine, index))
        return duk_get_number(engine, index);
    duk_dup(engine, index);
    duk_to_primitive(engine, -1, DUK_HINT_NUMBER);
    double number = 0.0;
    if (duk_is_boolean(engine, -1)) {
        number = duk_get_boolean(engine, -1) ? 1.0 : 0.0;
    } else if (duk_is_number(engine, -1)) {
        number = duk_get_number(engine, -1);
    } else if (duk_is_string(engine, -1) && duk_get_length(engine, -1) > 0) {
        number = duk_to_number(engine, -1);
        if (std::isnan(number))
            refuseValue(engine, index, type);
    } else {
        refuseValue(engine, index, type);
    }
    duk_pop(engine);
    return number;
}

/// Reads so many properties as numbers; false when the object has not got them.
bool takeProperties(duk_context* engine, duk_idx_t index, unsigned int count, const char* const* keys,
                    double* numbers)
{
    for (unsigned int i = 0; i < count; ++i) {
        if (keys)
            duk_get_prop_string(engine, index, keys[i]);
        else
            duk_get_prop_index(engine, index, i);
        const bool isNumber = duk_is_number(engine, -1);
        numbers[i] = duk_get_number(engine, -1);
        duk_pop(engine);
        if (!isNumber)
            return false;
    }
    return true;
}

bool takeRows(duk_context* engine, duk_idx_t index, unsigned int side, double* numbers)
{
    for (unsigned int row = 0; row < side; ++row) {
        duk_get_prop_index(engine, index, row);
        const bool isRow = duk_is_object(engine, -1) && takeProperties(engine, duk_get_top_index(engine),
                                                                       side, nullptr, numbers + row * side);
        duk_pop(engine);
        if (!isRow)
            return false;
    }
    return true;
}

void takeTuple(duk_context* engine, duk_idx_t index, NodePartDataType type, double* numbers)
{
    const TupleShape shape = tupleShape(type);
    if (shape.size == 1) {
        *numbers = takeNumber(engine, index, elementType(type));
        return;
    }
    if (!duk_is_object(engine, index))
        refuseValue(engine, index, elementType(type));
    const bool isTaken =
        shape.keys ? takeProperties(engine, index, shape.size, shape.keys, numbers) ||
                         (duk_is_array(engine, index) && duk_get_length(engine, index) == shape.size &&
                          takeProperties(engine, index, shape.size, nullptr, numbers))
                   : takeRows(engine, index, shape.size == 9 ? 3 : 4, numbers);
    if (!isTaken)
        refuseValue(engine, index, elementType(type));
}

// ---- Texts

void pushText(duk_context* engine, const std::string& text)
{
    std::string& kept = ScriptHeap::of(engine).text;
    kept = coding::toFile(text);
    duk_push_lstring(engine, kept.data(), kept.size());
}

/// Leaves the text in the form of the graph in the heap's place for it.
const std::string& takeText(duk_context* engine, duk_idx_t index, NodePartDataType type)
{
    if (duk_is_null_or_undefined(engine, index) || duk_is_symbol(engine, index))
        refuseValue(engine, index, type);
    duk_dup(engine, index);
    duk_size_t length = 0;
    const char* const text = duk_to_lstring(engine, -1, &length);
    std::string& kept = ScriptHeap::of(engine).text;
    kept = coding::toGraph(std::string_view(text, length));
    duk_pop(engine);
    return kept;
}

// ---- Lists

/// Makes a list of its own of the type from what stands at \a index, and pushes it: from a list, an array, or
/// one value.
const View& pushListOf(duk_context* engine, duk_idx_t index, NodePartDataType type)
{
    index = duk_normalize_index(engine, index);
    const View& made = pushNewList(engine, type);
    const View* const source = viewAt(engine, index);
    const bool isListed = duk_is_array(engine, index) || (source && source->isWholeList());
    if (!isListed) {
        if (type == MFNODE_DT && duk_is_null(engine, index))
            return made;
        growList(engine, *made.value, 1);
        takeElement(engine, index, made, 0);
        return made;
    }
    duk_get_prop_string(engine, index, "length");
    const double length = duk_get_number_default(engine, -1, 0.0);
    duk_pop(engine);
    growList(engine, *made.value, length);
    for (unsigned int i = 0; i < made.value->size(); ++i) {
        duk_get_prop_index(engine, index, i);
        takeElement(engine, duk_get_top_index(engine), made, i);
        duk_pop(engine);
    }
    return made;
}

void takeNodes(duk_context* engine, duk_idx_t index, Field& field)
{
    const View& list = pushListOf(engine, index, MFNODE_DT);
    bool fits = true;
    {
        FieldHandle target(ScriptHeap::of(engine), field);
        fits = target.setNodes(list.value->nodes());
    }
    duk_pop(engine);
    if (!fits)
        (void)duk_type_error(engine, "expected nodes of this world");
}

void takeList(duk_context* engine, duk_idx_t index, Field& field)
{
    const View* const source = viewAt(engine, index);
    if (source && source->isWholeList() && source->value->type() == field.dataType()) {
        checkLiving(engine, *source->value);
        field.assignValue(*source->value->field());
        return;
    }
    const View& list = pushListOf(engine, index, field.dataType());
    field.assignValue(*list.value->field());
    duk_pop(engine);
}

// ---- Fields as objects

duk_ret_t getPart(duk_context* engine)
{
    duk_push_this(engine);
    const View* const view = viewAt(engine, -1);
    if (!view)
        return 0;
    checkLiving(engine, *view->value);
    double numbers[longestTuple] = {};
    if (!isList(view->value->type()) || view->index < view->value->size())
        readTuple(*view->value->field(), view->index, numbers);
    duk_push_number(engine, numbers[duk_get_current_magic(engine)]);
    return 1;
}

duk_ret_t setPart(duk_context* engine)
{
    const double number = takeNumber(engine, 0, SFFLOAT_DT);
    duk_push_this(engine);
    const View* const view = viewAt(engine, -1);
    if (!view)
        return 0;
    FieldHandle& value = *view->value;
    checkWritable(engine, value);
    if (isList(value.type()) && view->index >= value.size())
        growList(engine, value, view->index + 1.0);
    double numbers[longestTuple] = {};
    readTuple(*value.field(), view->index, numbers);
    numbers[duk_get_current_magic(engine)] = number;
    writeTuple(*value.field(), view->index, numbers);
    value.changed();
    return 0;
}

} // namespace

void refuseValue(duk_context* engine, duk_idx_t index, NodePartDataType type)
{
    (void)duk_type_error(engine, "expected %s, found %s", FieldType::dataTypeName(type).c_str(),
                         kindOf(engine, index));
    __builtin_unreachable();
}

void pushViewPrototypeOf(duk_context* engine, NodePartDataType type)
{
    const TupleShape shape = tupleShape(type);
    duk_push_object(engine);
    ScriptHeap::of(engine).pushPrototype(engine, type);
    duk_set_prototype(engine, -2);
    for (unsigned int i = 0; shape.keys && i < shape.size; ++i) {
        duk_push_string(engine, shape.keys[i]);
        duk_push_c_function(engine, getPart, 0);
        duk_set_magic(engine, -1, static_cast<duk_int_t>(i));
        duk_push_c_function(engine, setPart, 1);
        duk_set_magic(engine, -1, static_cast<duk_int_t>(i));
        duk_def_prop(engine, -4,
                     DUK_DEFPROP_HAVE_GETTER | DUK_DEFPROP_HAVE_SETTER | DUK_DEFPROP_SET_ENUMERABLE);
    }
}

void pushLive(duk_context* engine, Field& field)
{
    ScriptHeap& heap = ScriptHeap::of(engine);
    if (tupleShape(field.dataType()).keys && !isList(field.dataType())) {
        heap.pushViewPrototype(engine, field.dataType());
        pushView(engine).value = std::make_shared<FieldHandle>(heap, field);
    } else if (isList(field.dataType())) {
        pushList(engine, field);
    } else {
        pushCopy(engine, field);
    }
}

void pushCopy(duk_context* engine, const Field& field)
{
    const NodePartDataType type = field.dataType();
    if (isList(type)) {
        const View& list = pushNewList(engine, type);
        if (type == MFNODE_DT) {
            const auto& nodes = static_cast<const MFNode&>(field);
            growList(engine, *list.value, nodes.size());
            for (unsigned int i = 0; i < nodes.size(); ++i)
                list.value->setNode(i, nodes.elem(static_cast<int>(i)).directNode());
        } else {
            growList(engine, *list.value, field.size());
            list.value->field()->assignValue(field);
        }
    } else if (type == SFSTRING_DT) {
        pushText(engine, static_cast<const SFString&>(field).value());
    } else if (type == SFNODE_DT) {
        pushNode(engine, readNode(*field.node(), field._desc->id));
    } else if (type == SFIMAGE_DT) {
        const auto& image = static_cast<const SFImage&>(field);
        pushImage(engine, ScriptHeap::of(engine).image = image.image(), *field._desc);
    } else {
        double numbers[longestTuple];
        readTuple(field, 0, numbers);
        pushTuple(engine, type, numbers);
    }
}

void pushElement(duk_context* engine, const View& list, unsigned int index)
{
    const NodePartDataType type = list.value->type();
    if (type == MFNODE_DT) {
        pushNode(engine, list.value->nodeAt(index));
        return;
    }
    const bool isInside = index < list.value->size();
    if (tupleShape(type).keys) {
        // One past the end comes to be when it is written.
        ScriptHeap::of(engine).pushViewPrototype(engine, elementType(type));
        View& element = pushView(engine);
        element.value = list.value;
        element.index = index;
        element.isElement = true;
    } else if (!isInside) {
        duk_push_undefined(engine);
    } else if (type == MFSTRING_DT) {
        pushText(engine, static_cast<const MFString&>(*list.value->field())[static_cast<int>(index)]);
    } else if (type == MFIMAGE_DT) {
        const auto& images = static_cast<const MFImage&>(*list.value->field());
        pushImage(engine, images.values()[index], *images._desc);
    } else {
        double numbers[longestTuple];
        readTuple(*list.value->field(), index, numbers);
        pushTuple(engine, type, numbers);
    }
}

void takeValue(duk_context* engine, duk_idx_t index, Field& field)
{
    const NodePartDataType type = field.dataType();
    if (type == MFNODE_DT) {
        takeNodes(engine, index, field);
    } else if (isList(type)) {
        takeList(engine, index, field);
    } else if (type == SFSTRING_DT) {
        static_cast<SFString&>(field).setValue(0.0, takeText(engine, index, type), Field::LOADER_CT);
    } else if (type == SFNODE_DT) {
        Node* node = nullptr;
        if (!takeNode(engine, index, node))
            refuseValue(engine, index, type);
        if (!static_cast<SFNode&>(field).setNode(0.0, node, Field::LOADER_CT))
            (void)duk_type_error(engine, "expected a node of this world");
    } else if (type == SFIMAGE_DT) {
        const Image& image = takeImage(engine, index, *field._desc);
        static_cast<SFImage&>(field).setValue(0.0, image, Field::LOADER_CT);
    } else {
        double numbers[longestTuple];
        takeTuple(engine, index, type, numbers);
        writeTuple(field, 0, numbers);
    }
}

/// What a script's own conversion of the value does may have made the list shorter meanwhile.
void takeElement(duk_context* engine, duk_idx_t index, const View& list, unsigned int element)
{
    FieldHandle& value = *list.value;
    const NodePartDataType type = value.type();
    if (type == MFNODE_DT) {
        Node* node = nullptr;
        if (!takeNode(engine, index, node))
            refuseValue(engine, index, SFNODE_DT);
        if (!value.setNode(element, node))
            (void)duk_type_error(engine, "expected a node of this world");
    } else if (type == MFSTRING_DT) {
        const std::string& text = takeText(engine, index, SFSTRING_DT);
        growList(engine, value, element + 1.0);
        static_cast<MFString&>(*value.field()).elem(static_cast<int>(element)) = text;
    } else if (type == MFIMAGE_DT) {
        auto& images = static_cast<MFImage&>(*value.field());
        const Image& image = takeImage(engine, index, *images._desc);
        growList(engine, value, element + 1.0);
        images.editValues()[element] = image;
    } else {
        double numbers[longestTuple];
        takeTuple(engine, index, type, numbers);
        growList(engine, value, element + 1.0);
        writeTuple(*value.field(), element, numbers);
    }
}

} // namespace Orvane
