#include "core/ComposedMeshProc.h"
#include "core/Part.h"
#include "core/SpineFrames.h"
#include "core/UsableValues.h"
#include <Orvane/MFRotation.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <numeric>
#include <string>

namespace Orvane {

namespace {

const Part beginCapPart("beginCap");
const Part ccwPart("ccw");
const Part convexPart("convex");
const Part creaseAnglePart("creaseAngle");
const Part crossSectionPart("crossSection");
const Part endCapPart("endCap");
const Part orientationPart("orientation");
const Part scalePart("scale");
const Part solidPart("solid");
const Part spinePart("spine");

/// More would take several gigabytes.
constexpr std::size_t MaxPoints = 32u << 20;

/// The value for a joint: lists that are too short repeat their last one.
template <class Value>
Value valueAt(const std::vector<Value>& values, std::size_t joint, const Value& none)
{
    return values.empty() ? none : values[std::min(joint, values.size() - 1)];
}

/// Adds a mesh with the same properties to another one.
void append(MeshData& mesh, MeshData&& other)
{
    const auto first = static_cast<std::uint32_t>(mesh.positions.size());
    const bool ordered = other.indices.empty();
    const std::size_t count = ordered ? other.positions.size() : other.indices.size();
    mesh.positions.insert(mesh.positions.end(), other.positions.begin(), other.positions.end());
    mesh.normals.insert(mesh.normals.end(), other.normals.begin(), other.normals.end());
    mesh.texCoords.insert(mesh.texCoords.end(), other.texCoords.begin(), other.texCoords.end());
    for (std::size_t i = 0; i < count; ++i)
        mesh.indices.push_back(first + (ordered ? static_cast<std::uint32_t>(i) : other.indices[i]));
}

/// How far along a line of points each of them stands, from 0 to 1.
template <class Point>
std::vector<float> distances(const std::vector<Point>& line)
{
    std::vector<float> result(line.size(), 0.0F);
    for (std::size_t i = 1; i < line.size(); ++i)
        result[i] = result[i - 1] + (line[i] - line[i - 1]).length();
    const float whole = result.empty() ? 0.0F : result.back();
    for (float& distance : result)
        distance = whole > 0.0F ? distance / whole : 0.0F;
    return result;
}

/// A cross-section that is swept along a spine, turned and scaled at each joint.
class ExtrusionProc : public ComposedMeshProc
{
public:
    using ComposedMeshProc::ComposedMeshProc;

    bool isSolid() const override { return flag(solidPart); }

protected:
    MeshData build(const std::vector<osg::Vec3f>&, MeshFaults& faults) override
    {
        const std::vector<osg::Vec3f>& spine = spinePart.read<MFVec3f>(node()).values();
        const std::vector<osg::Vec2f>& section = crossSectionPart.read<MFVec2f>(node()).values();
        if (spine.size() < 2 || section.size() < 2)
            return {};
        if (spine.size() > MaxPoints / section.size()) {
            complain(nullptr, "expected at most " + std::to_string(MaxPoints) + " points, found " +
                                  std::to_string(spine.size()) + " joints of " +
                                  std::to_string(section.size()));
            return {};
        }
        const std::vector<osg::Vec3f> points = sweep(spine, section);
        MeshData mesh = side(points, distances(spine), distances(section), faults);
        if (flag(beginCapPart))
            append(mesh, cap(points, 0, section, faults));
        if (flag(endCapPart))
            append(mesh, cap(points, points.size() - section.size(), section, faults));
        return mesh;
    }
    const char* listName() const override { return "corner"; }

private:
    /// The cross-section at each joint, one after the other.
    std::vector<osg::Vec3f> sweep(const std::vector<osg::Vec3f>& spine,
                                  const std::vector<osg::Vec2f>& section) const
    {
        const std::vector<Rotation>& turns = orientationPart.read<MFRotation>(node()).values();
        const std::vector<osg::Vec2f>& scales = scalePart.read<MFVec2f>(node()).values();
        const std::vector<SpineFrame> frames = spineFrames(spine);
        std::vector<osg::Vec3f> points;
        points.reserve(spine.size() * section.size());
        for (std::size_t joint = 0; joint < spine.size(); ++joint) {
            const osg::Vec2f scale = valueAt(scales, joint, osg::Vec2f(1.0F, 1.0F));
            const osg::Quaternion turn = toQuaternion(valueAt(turns, joint, Rotation()));
            const SpineFrame& frame = frames[joint];
            for (const osg::Vec2f& place : section) {
                osg::Vec3f p;
                turn.multVec(osg::Vec3f(place[0] * scale[0], 0.0F, place[1] * scale[1]), p);
                points.push_back(spine[joint] + frame.x * p[0] + frame.y * p[1] + frame.z * p[2]);
            }
        }
        return points;
    }

    /// The faces between the joints. Where the section or the spine is closed, both ends are the same
    /// points, so that they join smoothly.
    MeshData side(const std::vector<osg::Vec3f>& points, const std::vector<float>& along,
                  const std::vector<float>& round, MeshFaults& faults) const
    {
        const std::size_t columns = round.size();
        const std::size_t rows = along.size();
        const auto lastRow = points.end() - static_cast<std::ptrdiff_t>(columns);
        const bool isRing = rows > 2 && std::equal(lastRow, points.end(), points.begin());
        bool isTube = columns > 2;
        for (std::size_t row = 0; row < rows; ++row)
            isTube = isTube && points[row * columns] == points[(row + 1) * columns - 1];
        std::vector<int> index;
        std::vector<int> texCoordIndex;
        index.reserve(4 * (rows - 1) * (columns - 1));
        texCoordIndex.reserve(index.capacity());
        const auto addCorner = [&](std::size_t row, std::size_t column) {
            texCoordIndex.push_back(static_cast<int>(row * columns + column));
            const std::size_t r = isRing && row + 1 == rows ? 0 : row;
            const std::size_t c = isTube && column + 1 == columns ? 0 : column;
            index.push_back(static_cast<int>(r * columns + c));
        };
        for (std::size_t row = 0; row + 1 < rows; ++row) {
            for (std::size_t column = 0; column + 1 < columns; ++column) {
                addCorner(row, column);
                addCorner(row, column + 1);
                addCorner(row + 1, column + 1);
                addCorner(row + 1, column);
            }
        }
        std::vector<osg::Vec2f> texCoords;
        texCoords.reserve(points.size());
        for (const float t : along) {
            for (const float s : round)
                texCoords.emplace_back(s, t);
        }
        FaceList faces(points, index);
        faces.readQuads(faults);
        MeshSource source;
        source.faces = &faces;
        source.ccw = flag(ccwPart);
        source.creaseAngle = creaseAnglePart.read<SFFloat>(node()).value();
        source.texCoords.values = &texCoords;
        source.texCoords.index = &texCoordIndex;
        return buildMesh(source, faults);
    }

    /// The face over one end, whose points begin at \a first.
    MeshData cap(const std::vector<osg::Vec3f>& points, std::size_t first,
                 const std::vector<osg::Vec2f>& section, MeshFaults& faults) const
    {
        std::size_t corners = section.size();
        if (section.front() == section.back())
            --corners;
        if (corners < 3)
            return {};
        const auto begin = points.begin() + static_cast<std::ptrdiff_t>(first);
        const std::vector<osg::Vec3f> outline(begin, begin + static_cast<std::ptrdiff_t>(corners));
        const std::vector<osg::Vec2f> texCoords = capTexCoords(section);
        std::vector<int> index(corners);
        std::iota(index.begin(), index.end(), 0);
        // The section runs anticlockwise seen from the end; the other side looks at the beginning.
        if (first == 0)
            std::reverse(index.begin(), index.end());
        FaceList faces(outline, index);
        faces.readPolygons(faults);
        MeshSource source;
        source.faces = &faces;
        source.ccw = flag(ccwPart);
        source.convex = flag(convexPart);
        source.texCoords.values = &texCoords;
        return buildMesh(source, faults);
    }

    /// The places of the section, scaled so that its longer side runs from 0 to 1.
    static std::vector<osg::Vec2f> capTexCoords(const std::vector<osg::Vec2f>& section)
    {
        osg::Vec2f low = section[0];
        osg::Vec2f high = low;
        for (const osg::Vec2f& place : section) {
            for (osg::UInt32 i = 0; i < 2; ++i) {
                low[i] = std::min(low[i], place[i]);
                high[i] = std::max(high[i], place[i]);
            }
        }
        const float size = std::max(high[0] - low[0], high[1] - low[1]);
        std::vector<osg::Vec2f> texCoords;
        texCoords.reserve(section.size());
        for (const osg::Vec2f& place : section)
            texCoords.push_back(size > 0.0F ? (place - low) * (1.0F / size) : osg::Vec2f());
        return texCoords;
    }

    bool flag(const Part& part) const { return part.read<SFBool>(node()).value(); }
};

const ProcRegistration registration("Extrusion", makeProc<ExtrusionProc>);

} // namespace

} // namespace Orvane
