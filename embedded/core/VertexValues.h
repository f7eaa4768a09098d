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

/// The values for shaders that a mesh has, from the nodes of its field `attrib`.
class ORVANE_API VertexValues
{
public:
    /// True when \a geometry lists such nodes.
    static bool areGiven(const Node& geometry);

    /// Takes the values for the vertices of a mesh of \a user. \a points has the point of each vertex, or is
    /// empty where the mesh does not tell.
    void read(ElementProc& user, const std::vector<std::uint32_t>& points);
    /// Hands out what was read.
    std::vector<osg::VertexAttribute> take();
    /// True when there was something to hand out.
    bool areUsed() const { return _areUsed; }

private:
    std::vector<Use> _uses;
    std::vector<osg::VertexAttribute> _attributes;
    bool _areUsed = false;
};

} // namespace Orvane
