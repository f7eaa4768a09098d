#include "base/ValueFields.h"
#include "base/ValueText.h"
#include "core/GeometryProc.h"
#include "core/Part.h"
#include <Orvane/MFVec2f.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <cmath>
#include <string>

namespace Orvane {

namespace {

constexpr double FullTurn = 6.28318530717958647692;
constexpr double SegmentsOfATurn = 64.0;

const Part solidPart("solid");

/// A figure in the XY plane.
class FlatProc : public MeshProc
{
public:
    using MeshProc::MeshProc;

    bool isSolid() const override { return solidPart.isIn(node()) && solidPart.read<SFBool>(node()).value(); }
    void update() override { show(build()); }

protected:
    virtual MeshData build() = 0;

    float number(const Part& part) const { return part.read<SFFloat>(node()).value(); }

    /// A size of 0 or more; what is none counts as 0, with a message.
    float size(const Part& part, const char* name)
    {
        const float value = number(part);
        if (isDrawable(value) && value >= 0.0F)
            return value;
        complain(name, "expected a finite size of 0 or more, found " + text::written(value));
        return 0.0F;
    }

    const std::vector<osg::Vec2f>& places(const Part& part) const
    {
        return part.read<MFVec2f>(node()).values();
    }
};

bool isDrawable(const osg::Vec2f& p)
{
    return Orvane::isDrawable(p[0]) && Orvane::isDrawable(p[1]);
}

/// Adds a point of a face that looks along Z.
void addFacePoint(MeshData& mesh, float x, float y, float s, float t)
{
    mesh.positions.emplace_back(x, y, 0.0F);
    mesh.normals.emplace_back(0.0F, 0.0F, 1.0F);
    mesh.texCoords.insert(mesh.texCoords.end(), {s, t});
}

/// An arc that runs anticlockwise; equal angles make a full circle.
struct Arc
{
    double start = 0.0;
    double sweep = FullTurn;

    bool isFull() const { return sweep == FullTurn; }
    std::uint32_t segments() const
    {
        return static_cast<std::uint32_t>(std::max(1.0, std::ceil(SegmentsOfATurn * sweep / FullTurn)));
    }
    osg::Vec2f point(std::uint32_t i, float radius) const
    {
        // The end of a full circle is its start, exactly.
        const bool closes = isFull() && i == segments();
        const double angle = start + (closes ? 0.0 : sweep * i / segments());
        return osg::Vec2f(static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle))) * radius;
    }
};

/// The arc that the angles of a node describe.
class ArcProc : public FlatProc
{
public:
    using FlatProc::FlatProc;

protected:
    Arc arc()
    {
        static const Part startAngle("startAngle");
        static const Part endAngle("endAngle");
        const double start = number(startAngle);
        const double end = number(endAngle);
        if (!std::isfinite(start) || !std::isfinite(end)) {
            complain(nullptr,
                     "expected finite angles, found " + text::written(start) + " and " + text::written(end));
            return {};
        }
        double sweep = std::fmod(end - start, FullTurn);
        if (sweep < 0.0)
            sweep += FullTurn;
        if (sweep == 0.0 || std::abs(end - start) >= FullTurn)
            sweep = FullTurn;
        return {start, sweep};
    }

    float radius()
    {
        static const Part part("radius");
        return size(part, "radius");
    }
};

MeshData arcLine(const Arc& arc, float radius)
{
    MeshData mesh;
    for (std::uint32_t i = 0; i < arc.segments(); ++i) {
        for (const std::uint32_t end : {i, i + 1}) {
            const osg::Vec2f p = arc.point(end, radius);
            mesh.positions.emplace_back(p[0], p[1], 0.0F);
        }
    }
    return mesh;
}

class Arc2DProc : public ArcProc
{
public:
    using ArcProc::ArcProc;

    Surface::Kind kind() const override { return Surface::LINES; }

protected:
    MeshData build() override { return arcLine(arc(), radius()); }
};

class Circle2DProc : public ArcProc
{
public:
    using ArcProc::ArcProc;

    Surface::Kind kind() const override { return Surface::LINES; }

protected:
    MeshData build() override { return arcLine(Arc(), radius()); }
};

/// An arc that two radii, or the line between its ends, close to a face.
class ArcClose2DProc : public ArcProc
{
public:
    using ArcProc::ArcProc;

protected:
    MeshData build() override
    {
        static const Part closureType("closureType");
        const Arc curve = arc();
        const float r = radius();
        const std::string& closure = closureType.read<SFString>(node()).value();
        if (closure != "PIE" && closure != "CHORD")
            complain("closureType", "expected PIE or CHORD, found " + closure + "; it counts as PIE");
        MeshData mesh;
        const auto add = [&mesh, r](const osg::Vec2f& p) {
            const float scale = r > 0.0F ? 0.5F / r : 0.0F;
            addFacePoint(mesh, p[0], p[1], 0.5F + p[0] * scale, 0.5F + p[1] * scale);
        };
        // Both are fans: round the centre, or round the first point of the arc.
        const bool pie = closure != "CHORD" && !curve.isFull();
        if (pie)
            add(osg::Vec2f());
        for (std::uint32_t i = 0; i <= curve.segments(); ++i)
            add(curve.point(i, r));
        for (std::uint32_t i = 1; i + 1 < mesh.positions.size(); ++i)
            mesh.indices.insert(mesh.indices.end(), {0, i, i + 1});
        return mesh;
    }
};

/// A disk, or a ring when it has an inner radius.
class Disk2DProc : public FlatProc
{
public:
    using FlatProc::FlatProc;

    /// A disk without width is a circle.
    Surface::Kind kind() const override { return _isLine ? Surface::LINES : Surface::FACES; }

protected:
    MeshData build() override
    {
        static const Part innerRadius("innerRadius");
        static const Part outerRadius("outerRadius");
        const float inner = size(innerRadius, "innerRadius");
        const float outer = size(outerRadius, "outerRadius");
        _isLine = inner == outer;
        return _isLine ? arcLine(Arc(), outer) : ring(inner, outer);
    }

private:
    static MeshData ring(float inner, float outer)
    {
        const float scale = 0.5F / std::max(inner, outer);
        const Arc circle;
        MeshData mesh;
        for (std::uint32_t i = 0; i <= circle.segments(); ++i) {
            for (const float radius : {inner, outer}) {
                const osg::Vec2f p = circle.point(i, radius);
                addFacePoint(mesh, p[0], p[1], 0.5F + p[0] * scale, 0.5F + p[1] * scale);
            }
        }
        const bool inOrder = inner < outer;
        for (std::uint32_t i = 0; i + 3 < mesh.positions.size(); i += 2) {
            const std::uint32_t in = inOrder ? i : i + 1;
            const std::uint32_t out = inOrder ? i + 1 : i;
            mesh.indices.insert(mesh.indices.end(), {in, out, out + 2, in, out + 2, in + 2});
        }
        return mesh;
    }

    bool _isLine = false;
};

class Polyline2DProc : public FlatProc
{
public:
    using FlatProc::FlatProc;

    Surface::Kind kind() const override { return Surface::LINES; }

protected:
    MeshData build() override
    {
        static const Part lineSegments("lineSegments");
        const std::vector<osg::Vec2f>& line = places(lineSegments);
        MeshData mesh;
        for (std::size_t i = 1; i < line.size(); ++i) {
            if (!isDrawable(line[i - 1]) || !isDrawable(line[i])) {
                complain("lineSegments", "expected finite points, found another one at " + std::to_string(i));
                continue;
            }
            mesh.positions.emplace_back(line[i - 1][0], line[i - 1][1], 0.0F);
            mesh.positions.emplace_back(line[i][0], line[i][1], 0.0F);
        }
        return mesh;
    }
};

class Polypoint2DProc : public FlatProc
{
public:
    using FlatProc::FlatProc;

    Surface::Kind kind() const override { return Surface::POINTS; }

protected:
    MeshData build() override
    {
        static const Part point("point");
        MeshData mesh;
        for (const osg::Vec2f& p : places(point)) {
            if (isDrawable(p))
                mesh.positions.emplace_back(p[0], p[1], 0.0F);
            else
                complain("point", "expected finite points, found another one");
        }
        return mesh;
    }
};

class Rectangle2DProc : public FlatProc
{
public:
    using FlatProc::FlatProc;

protected:
    MeshData build() override
    {
        static const Part sizePart("size");
        osg::Vec2f half = sizePart.read<SFVec2f>(node()).value() * 0.5F;
        for (osg::UInt32 i = 0; i < 2; ++i) {
            if (!Orvane::isDrawable(half[i]) || half[i] < 0.0F) {
                complain("size",
                         "expected a finite size of 0 or more, found " + text::written(2.0F * half[i]));
                half[i] = 0.0F;
            }
        }
        MeshData mesh;
        addFacePoint(mesh, -half[0], -half[1], 0.0F, 0.0F);
        addFacePoint(mesh, half[0], -half[1], 1.0F, 0.0F);
        addFacePoint(mesh, half[0], half[1], 1.0F, 1.0F);
        addFacePoint(mesh, -half[0], half[1], 0.0F, 1.0F);
        mesh.indices = {0, 1, 2, 0, 2, 3};
        return mesh;
    }
};

class TriangleSet2DProc : public FlatProc
{
public:
    using FlatProc::FlatProc;

protected:
    MeshData build() override
    {
        static const Part vertices("vertices");
        const std::vector<osg::Vec2f>& points = places(vertices);
        MeshData mesh;
        for (std::size_t i = 0; i + 2 < points.size(); i += 3) {
            osg::Vec2f a = points[i];
            osg::Vec2f b = points[i + 1];
            osg::Vec2f c = points[i + 2];
            if (!isDrawable(a) || !isDrawable(b) || !isDrawable(c)) {
                complain("vertices", "expected finite points, found another one after " + std::to_string(i));
                continue;
            }
            // All look along Z, whichever way they run.
            if ((b[0] - a[0]) * (c[1] - a[1]) < (c[0] - a[0]) * (b[1] - a[1]))
                std::swap(b, c);
            for (const osg::Vec2f& p : {a, b, c}) {
                mesh.positions.emplace_back(p[0], p[1], 0.0F);
                mesh.normals.emplace_back(0.0F, 0.0F, 1.0F);
            }
        }
        return mesh;
    }
};

const ProcRegistration arc("Arc2D", makeProc<Arc2DProc>);
const ProcRegistration arcClose("ArcClose2D", makeProc<ArcClose2DProc>);
const ProcRegistration circle("Circle2D", makeProc<Circle2DProc>);
const ProcRegistration disk("Disk2D", makeProc<Disk2DProc>);
const ProcRegistration polyline("Polyline2D", makeProc<Polyline2DProc>);
const ProcRegistration polypoint("Polypoint2D", makeProc<Polypoint2DProc>);
const ProcRegistration rectangle("Rectangle2D", makeProc<Rectangle2DProc>);
const ProcRegistration triangles("TriangleSet2D", makeProc<TriangleSet2DProc>);

} // namespace

} // namespace Orvane
