#pragma once

#include "core/GeometryProc.h"
#include "core/NurbsShapes.h"
#include <Orvane/Export.h>
#include <optional>
#include <string>
#include <vector>

namespace Orvane {

/// A fault of one field.
struct NurbsFault
{
    const char* part = nullptr; ///< null when there is none
    std::string text;
};

/// The curve of a node with the fields of a NURBS curve; none when they do not fit.
ORVANE_API std::optional<NurbsLine> readNurbsLine(const Node& node, const std::vector<osg::Vec3f>& points,
                                                  NurbsFault& fault);
/// The surface of a node with the fields of a NURBS surface; none when they do not fit.
ORVANE_API std::optional<NurbsPatch> readNurbsPatch(const Node& node, const std::vector<osg::Vec3f>& points,
                                                    NurbsFault& fault);

/// Behaviour of a geometry that is made of curves, and cut into pieces to be drawn.
class ORVANE_API NurbsProc : public MeshProc
{
public:
    using MeshProc::MeshProc;

    /// Has all tessellations multiplied.
    void scaleTessellation(float scale);

protected:
    /// Pieces of a line or of a side, by a field.
    std::size_t pieces(int tessellation, std::size_t controlPoints, std::size_t most) const;
    void tell(const NurbsFault& fault);

private:
    float _scale = 1.0F;
};

/// Behaviour of a curve in the plane, or of several that make one outline.
class ORVANE_API PlaneCurveProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Appends the points of the curve.
    virtual void trace(std::vector<osg::Vec2f>& outline) = 0;
};

/// A mesh that is smooth all over, from points that stand row by row. A last row or column in the place of
/// the first one joins it.
ORVANE_API MeshData smoothGrid(const std::vector<osg::Vec3f>& grid, const std::vector<osg::Vec2f>& texCoords,
                               std::size_t columns, bool ccw);

/// A mesh of the part of a surface that outlines leave, in pieces of \a columns by \a rows. The outlines are
/// in the parameters of the surface; what they run round a number of times other than 0 is left. Null texture
/// coordinates are the parameters.
ORVANE_API MeshData trimmedMesh(const NurbsPatch& patch, const NurbsPatch* texCoords,
                                const std::vector<std::vector<osg::Vec2f>>& outlines, std::size_t columns,
                                std::size_t rows);

} // namespace Orvane
