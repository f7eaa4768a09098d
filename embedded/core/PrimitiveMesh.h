#pragma once

#include "core/MeshData.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>

namespace Orvane {

// The solids of X3D as meshes round the origin, with normals and X3D's texture coordinates.

ORVANE_API MeshData boxMesh(const osg::Vec3f& size);
ORVANE_API MeshData sphereMesh(float radius);
/// A cone whose axis is Y.
ORVANE_API MeshData coneMesh(float bottomRadius, float height, bool side, bool bottom);
/// A cylinder whose axis is Y.
ORVANE_API MeshData cylinderMesh(float radius, float height, bool side, bool bottom, bool top);

} // namespace Orvane
