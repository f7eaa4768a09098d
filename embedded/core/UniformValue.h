#pragma once

#include <OpenSG/OSGSHLChunk.h>
#include <Orvane/Export.h>

namespace Orvane {

class Field;

/// The value of a field as a shader's uniform: numbers and truth values as they are, colours, vectors and
/// rotations as vectors, lists as arrays. False for texts, and for images and nodes, which `ShaderTextures`
/// takes.
ORVANE_API bool uniformValue(const Field& field, osg::SHLChunk::Value& value);

} // namespace Orvane
