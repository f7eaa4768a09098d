#include "base/ValueFields.h"
#include "core/ComposedMeshProc.h"
#include "core/GeoSystem.h"
#include "core/Part.h"
#include <Orvane/MFDouble.h>
#include <Orvane/MFFloat.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <string>

namespace Orvane {

namespace {

const Part ccwPart("ccw");
const Part colorPerVertexPart("colorPerVertex");
const Part creaseAnglePart("creaseAngle");
const Part geoGridOriginPart("geoGridOrigin");
const Part geoOriginPart("geoOrigin");
const Part heightPart("height");
const Part normalPerVertexPart("normalPerVertex");
const Part solidPart("solid");
const Part xDimensionPart("xDimension");
const Part xSpacingPart("xSpacing");
const Part yScalePart("yScale");
const Part zDimensionPart("zDimension");
const Part zSpacingPart("zSpacing");

/// A grid of heights. Rows that the heights do not fill are left out.
class GridProc : public ComposedMeshProc
{
public:
    using ComposedMeshProc::ComposedMeshProc;

    bool isSolid() const override { return flag(solidPart); }

protected:
    MeshData build(const std::vector<osg::Vec3f>&, MeshFaults& faults) override
    {
        const std::size_t heights = readField(node(), heightPart.in(node())).size();
        const std::size_t columns = dimension(xDimensionPart);
        const std::size_t wanted = dimension(zDimensionPart);
        const std::size_t rows = columns > 0 ? std::min(wanted, heights / columns) : 0;
        if (rows < wanted)
            complain("height", "expected " + std::to_string(columns) + " x " + std::to_string(wanted) +
                                   " heights, found " + std::to_string(heights));
        if (columns < 2 || rows < 2)
            return {};

        const std::vector<osg::Vec3f> points = gridPoints(columns, rows);
        const std::vector<osg::Vec2f> texCoords = gridTexCoords(columns, rows);
        const std::vector<int> index = gridFaces(columns, rows);
        FaceList faces(points, index);
        faces.readQuads(faults);
        MeshSource source;
        source.faces = &faces;
        source.ccw = flag(ccwPart) != goesNorth();
        source.creaseAngle = creaseAngle();
        bindValues(source);
        source.colors.perVertex = source.colorsRGBA.perVertex = flag(colorPerVertexPart);
        source.normals.perVertex = flag(normalPerVertexPart);
        if (!source.texCoords.isGiven() && !source.texCoordSets)
            source.texCoords.values = &texCoords;
        return buildMesh(source, faults);
    }
    const char* listName() const override { return "corner"; }

    virtual std::vector<osg::Vec3f> gridPoints(std::size_t columns, std::size_t rows) const = 0;
    virtual float creaseAngle() const = 0;
    /// True when rows follow each other to the north, false when to the south.
    virtual bool goesNorth() const { return false; }

private:
    /// From 0 to 1 along both sides.
    static std::vector<osg::Vec2f> gridTexCoords(std::size_t columns, std::size_t rows)
    {
        std::vector<osg::Vec2f> texCoords;
        texCoords.reserve(columns * rows);
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = 0; column < columns; ++column)
                texCoords.emplace_back(static_cast<float>(column) / static_cast<float>(columns - 1),
                                       static_cast<float>(row) / static_cast<float>(rows - 1));
        }
        return texCoords;
    }

    /// The fields of the grid, anticlockwise seen from above.
    static std::vector<int> gridFaces(std::size_t columns, std::size_t rows)
    {
        std::vector<int> index;
        index.reserve(4 * (columns - 1) * (rows - 1));
        for (std::size_t row = 0; row + 1 < rows; ++row) {
            for (std::size_t column = 0; column + 1 < columns; ++column) {
                const std::size_t at = row * columns + column;
                for (const std::size_t corner : {at, at + columns, at + columns + 1, at + 1})
                    index.push_back(static_cast<int>(corner));
            }
        }
        return index;
    }

    std::size_t dimension(const Part& part) const
    {
        return static_cast<std::size_t>(std::max(0, part.read<SFInt32>(node()).value()));
    }
    bool flag(const Part& part) const { return part.read<SFBool>(node()).value(); }
};

/// A grid over the XZ plane.
class ElevationGridProc : public GridProc
{
public:
    using GridProc::GridProc;

protected:
    std::vector<osg::Vec3f> gridPoints(std::size_t columns, std::size_t rows) const override
    {
        const std::vector<float>& heights = heightPart.read<MFFloat>(node()).values();
        const float xSpacing = xSpacingPart.read<SFFloat>(node()).value();
        const float zSpacing = zSpacingPart.read<SFFloat>(node()).value();
        std::vector<osg::Vec3f> points;
        points.reserve(columns * rows);
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = 0; column < columns; ++column)
                points.emplace_back(xSpacing * static_cast<float>(column), heights[row * columns + column],
                                    zSpacing * static_cast<float>(row));
        }
        return points;
    }
    float creaseAngle() const override { return creaseAnglePart.read<SFFloat>(node()).value(); }
};

/// A grid over the earth, by degrees or metres to the east and the north.
class GeoElevationGridProc : public GridProc
{
public:
    using GridProc::GridProc;

    void update() override
    {
        _origin.set(*this, elementOf(geoOriginPart.readNode(node())));
        GridProc::update();
    }

protected:
    std::vector<osg::Vec3f> gridPoints(std::size_t columns, std::size_t rows) const override
    {
        const std::vector<double>& heights = heightPart.read<MFDouble>(node()).values();
        const double xSpacing = xSpacingPart.read<SFDouble>(node()).value();
        const double zSpacing = zSpacingPart.read<SFDouble>(node()).value();
        const double yScale = static_cast<double>(yScalePart.read<SFFloat>(node()).value());
        const osg::Vec3d& corner = geoGridOriginPart.read<SFVec3d>(node()).value();
        const GeoSystem system(node(), resolved(geoOriginPart.readNode(node())));
        std::vector<osg::Vec3f> points;
        points.reserve(columns * rows);
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = 0; column < columns; ++column)
                points.emplace_back(system.toScene(system.moved(
                    corner, xSpacing * static_cast<double>(column), zSpacing * static_cast<double>(row),
                    yScale * heights[row * columns + column])));
        }
        return points;
    }
    float creaseAngle() const override
    {
        return static_cast<float>(creaseAnglePart.read<SFDouble>(node()).value());
    }
    bool goesNorth() const override { return true; }

private:
    Use _origin;
};

const ProcRegistration elevationGrid("ElevationGrid", makeProc<ElevationGridProc>);
const ProcRegistration geoElevationGrid("GeoElevationGrid", makeProc<GeoElevationGridProc>);

} // namespace

} // namespace Orvane
