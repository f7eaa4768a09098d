#pragma once

#include "core/ElementProc.h"
#include <OpenSG/OSGGeometry.h>
#include <Orvane/Export.h>
#include <cstdint>
#include <vector>

namespace Orvane {

/// Behaviour of a node that gives a shader values for the points of a mesh.
class ORVANE_API VertexValuesProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Name and form, with the values of all points.
    virtual osg::VertexAttribute describe() = 0;
};

/// What a mesh has for its points beside places, normals, colours and coordinates: values for shaders, from
/// the nodes of its field `attrib`, and depths in fog, from that of `fogCoord`.
class ORVANE_API VertexValues
{
public:
    /// True when \a geometry has such nodes.
    static bool areGiven(const Node& geometry);

    /// Takes the values for the vertices of a mesh of \a user. \a points has the point of each vertex, or is
    /// empty where the mesh does not tell. False when there are depths for some of the points only; the
    /// others have 0.
    bool read(ElementProc& user, const std::vector<std::uint32_t>& points);
    /// Hands out what was read.
    std::vector<osg::VertexAttribute> take();
    /// Hands out how deep in fog each vertex lies, from 0 to 1; nothing when the distance counts.
    std::vector<float> takeFogDepths() { return std::move(_fogDepths); }
    /// True when there was something to hand out to shaders.
    bool areUsed() const { return _areUsed; }

private:
    void readAttributes(ElementProc& user, const std::vector<std::uint32_t>& points);
    bool readFogDepths(ElementProc& user, const std::vector<std::uint32_t>& points);

    Use _fogUse;
    std::vector<float> _fogDepths;
    std::vector<Use> _uses;
    std::vector<osg::VertexAttribute> _attributes;
    bool _areUsed = false;
};

} // namespace Orvane
