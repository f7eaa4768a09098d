#include "script/ScriptImages.h"

#include "script/ScriptHeap.h"
#include "script/ScriptValues.h"
#include <Orvane/SFImage.h>
#include <cmath>
#include <cstdlib>
#include <string>

namespace Orvane {

// Images go in and out by the text form of their fields: three numbers, and one for each pixel.

namespace {

/// Images of scripts have no more pixels.
constexpr double mostPixels = 16.0 * 1024 * 1024;

void writeInto(std::string& text, const Image& image, NodePartDesc& desc)
{
    SFImage field(nullptr, &desc);
    field.setValue(0.0, image, Field::LOADER_CT);
    text = field.valueToString();
}

/// Reads the heap's text; false, with the reason in its place, when it does not parse.
bool parse(ScriptHeap& heap, NodePartDesc& desc)
{
    SFImage field(nullptr, &desc);
    std::string error;
    const bool isParsed = field.parseValue(heap.text, error);
    heap.image = field.image();
    heap.text = error;
    return isParsed;
}

/// Width, height or number of components.
double sizeAt(duk_context* engine, duk_idx_t index, const char* key)
{
    duk_get_prop_string(engine, index, key);
    if (!duk_is_number(engine, -1))
        refuseValue(engine, index, SFIMAGE_DT);
    const double value = duk_get_number(engine, -1);
    duk_pop(engine);
    if (!(value >= 0.0 && value <= 65535.0))
        (void)duk_range_error(engine, "SFImage: expected a %s from 0 to 65535, found %g", key, value);
    return std::floor(value);
}

} // namespace

void pushImage(duk_context* engine, const Image& image, NodePartDesc& desc)
{
    ScriptHeap& heap = ScriptHeap::of(engine);
    writeInto(heap.text, image, desc);
    const char* at = heap.text.c_str();
    const auto next = [&at] {
        char* end = nullptr;
        const unsigned long value = std::strtoul(at, &end, 0);
        at = end;
        return static_cast<double>(value);
    };
    duk_push_object(engine);
    heap.pushPrototype(engine, SFIMAGE_DT);
    duk_set_prototype(engine, -2);
    for (const char* key : {"width", "height", "comp"}) {
        duk_push_number(engine, next());
        duk_put_prop_string(engine, -2, key);
    }
    duk_push_array(engine);
    for (duk_uarridx_t i = 0; *at; ++i) {
        duk_push_number(engine, next());
        duk_put_prop_index(engine, -2, i);
    }
    duk_put_prop_string(engine, -2, "array");
}

const Image& takeImage(duk_context* engine, duk_idx_t index, NodePartDesc& desc)
{
    if (!duk_is_object(engine, index))
        refuseValue(engine, index, SFIMAGE_DT);
    ScriptHeap& heap = ScriptHeap::of(engine);
    const double width = sizeAt(engine, index, "width");
    const double height = sizeAt(engine, index, "height");
    const double components = sizeAt(engine, index, "comp");
    duk_get_prop_string(engine, index, "array");
    if (!duk_is_object(engine, -1))
        refuseValue(engine, index, SFIMAGE_DT);
    duk_get_prop_string(engine, -1, "length");
    const double given = duk_get_number_default(engine, -1, 0.0);
    duk_pop(engine);
    if (width * height > given || given > mostPixels)
        (void)duk_range_error(engine, "SFImage: expected %.0f pixels, found %.0f", width * height, given);
    heap.text.clear();
    for (const double size : {width, height, components})
        heap.text.append(std::to_string(static_cast<int>(size))).append(" ");
    for (duk_uarridx_t i = 0; i < width * height; ++i) {
        duk_get_prop_index(engine, -1, i);
        const duk_uint_t pixel = duk_to_uint32(engine, -1);
        duk_pop(engine);
        heap.text.append(std::to_string(pixel)).append(" ");
    }
    duk_pop(engine);
    if (!parse(heap, desc))
        (void)duk_type_error(engine, "SFImage: %s", heap.text.c_str());
    return heap.image;
}

} // namespace Orvane
