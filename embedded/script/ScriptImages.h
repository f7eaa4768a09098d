#pragma once

#include <duktape.h>

namespace Orvane {

class Image;
class NodePartDesc;

/// Pushes an image as an `SFImage` of the script's own; \a desc is of a field that holds images.
void pushImage(duk_context* engine, const Image& image, NodePartDesc& desc);

/// The image that stands at \a index, in the heap's place for one. Raises an error when there is none.
const Image& takeImage(duk_context* engine, duk_idx_t index, NodePartDesc& desc);

} // namespace Orvane
