#pragma once

#include <string>

/// Scenes of the benchmarks, in XML and, for peers, with the same content in VRML97.
namespace bench {

/// \a count named transforms, each with a shape, a material and a box.
std::string boxesXml(int count);
std::string boxesVrml(int count);

/// One shape with \a count transforms that use it.
std::string usesVrml(int count);

/// \a count instances of a prototype with a place and a colour: a transform, shape, material and box each.
std::string tilesVrml(int count);

/// One face set of two times \a side times \a side triangles.
std::string meshXml(int side);
std::string meshVrml(int side);

} // namespace bench
