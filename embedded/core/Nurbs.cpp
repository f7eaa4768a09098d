#include "base/ValueFields.h"
#include "core/ComposedMeshProc.h"
#include "core/ListEdit.h"
#include "core/NurbsProcs.h"
#include "core/Part.h"
#include <Orvane/MFDouble.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part addTrimmingContourPart("addTrimmingContour");
const Part controlPointPart("controlPoint");
const Part knotPart("knot");
const Part orderPart("order");
const Part pointPart("point");
const Part removeTrimmingContourPart("removeTrimmingContour");
const Part solidPart("solid");
const Part tessellationPart("tessellation");
const Part texCoordPart("texCoord");
const Part trimmingContourPart("trimmingContour");
const Part uDimensionPart("uDimension");
const Part uKnotPart("uKnot");
const Part uOrderPart("uOrder");
const Part uTessellationPart("uTessellation");
const Part vDimensionPart("vDimension");
const Part vKnotPart("vKnot");
const Part vOrderPart("vOrder");
const Part vTessellationPart("vTessellation");
const Part weightPart("weight");

int number(const Part& part, const Node& node)
{
    return part.read<SFInt32>(node).value();
}

/// The shares of control points along one direction; none when they may not have the order.
std::optional<NurbsBasis> readBasis(const Node& node, std::size_t count, const Part& order, const char* name,
                                    const Part& knots, NurbsFault& fault)
{
    const int wanted = number(order, node);
    if (!NurbsBasis::fits(wanted, count)) {
        if (count > 0)
            fault = {name, "expected an order from 2 to the number of control points, " +
                               std::to_string(count) + ", and at most " + std::to_string(HighestNurbsOrder) +
                               ", found " + std::to_string(wanted)};
        return std::nullopt;
    }
    return NurbsBasis(count, static_cast<std::size_t>(wanted), knots.read<MFDouble>(node).values());
}

/// Pairs as points of a plane.
std::vector<osg::Vec3f> planePoints(const std::vector<osg::Vec2f>& pairs)
{
    std::vector<osg::Vec3f> points;
    points.reserve(pairs.size());
    for (const osg::Vec2f& pair : pairs)
        points.emplace_back(pair[0], pair[1], 0.0F);
    return points;
}

/// The list of texture coordinates of a node; null when it has none.
const std::vector<osg::Vec2f>* pairsOf(const Node& node, const Part& part)
{
    if (!part.isIn(node))
        return nullptr;
    const Field& field = readField(node, part.in(node));
    return field.dataType() == MFVEC2F_DT ? &static_cast<const MFVec2f&>(field).values() : nullptr;
}

class NurbsCurveProc : public NurbsProc
{
public:
    using NurbsProc::NurbsProc;

    Surface::Kind kind() const override { return Surface::LINES; }

    void update() override
    {
        Node* const points = resolved(controlPointPart.readNode(node()));
        _controlPoints.set(*this, procAs<ElementProc>(points));
        std::vector<osg::Vec3f> converted;
        show(build(pointsOf(points, converted)));
    }

private:
    MeshData build(const std::vector<osg::Vec3f>& points)
    {
        NurbsFault fault;
        const std::optional<NurbsLine> line = readNurbsLine(node(), points, fault);
        tell(fault);
        MeshData mesh;
        if (!line)
            return mesh;
        const std::size_t count =
            pieces(number(tessellationPart, node()), points.size(), MostNurbsLinePieces);
        for (const osg::Vec3f& place : line->sampled(count)) {
            if (!isDrawable(osg::Pnt3f(place)))
                return MeshData();
            const auto i = static_cast<std::uint32_t>(mesh.positions.size());
            mesh.positions.emplace_back(place);
            if (i > 0) {
                mesh.indices.push_back(i - 1);
                mesh.indices.push_back(i);
            }
        }
        return mesh;
    }

    Use _controlPoints;
};

class NurbsPatchSurfaceProc : public NurbsProc
{
public:
    using NurbsProc::NurbsProc;

    bool isSolid() const override { return solidPart.read<SFBool>(node()).value(); }

    void update() override
    {
        Node* const points = resolved(controlPointPart.readNode(node()));
        _controlPoints.set(*this, procAs<ElementProc>(points));
        Node* const texCoords = resolved(texCoordPart.readNode(node()));
        _texCoords.set(*this, procAs<ElementProc>(texCoords));
        std::vector<osg::Vec3f> converted;
        NurbsFault fault;
        const std::optional<NurbsPatch> patch = readNurbsPatch(node(), pointsOf(points, converted), fault);
        tell(fault);
        if (!patch) {
            show({});
            return;
        }
        const std::optional<NurbsPatch> pairs = texCoords ? readTexCoords(*texCoords, *patch) : std::nullopt;
        const std::size_t columns =
            pieces(number(uTessellationPart, node()), patch->u().count(), MostNurbsSidePieces);
        const std::size_t rows =
            pieces(number(vTessellationPart, node()), patch->v().count(), MostNurbsSidePieces);
        show(build(*patch, pairs ? &*pairs : nullptr, columns, rows));
    }

protected:
    /// The surface in pieces; null texture coordinates are its parameters.
    virtual MeshData build(const NurbsPatch& patch, const NurbsPatch* texCoords, std::size_t columns,
                           std::size_t rows)
    {
        std::vector<osg::Vec3f> grid;
        std::vector<osg::Vec2f> pairs;
        for (std::size_t row = 0; row <= rows; ++row) {
            const double v = static_cast<double>(row) / static_cast<double>(rows);
            for (std::size_t column = 0; column <= columns; ++column) {
                const double u = static_cast<double>(column) / static_cast<double>(columns);
                grid.push_back(patch.at(u, v));
                const osg::Vec3f pair = texCoords
                                            ? texCoords->at(u, v)
                                            : osg::Vec3f(static_cast<float>(u), static_cast<float>(v), 0.0F);
                pairs.emplace_back(pair[0], pair[1]);
            }
        }
        return smoothGrid(grid, pairs, columns + 1, true);
    }

private:
    /// Texture coordinates are a surface of their own, or stand at the control points.
    std::optional<NurbsPatch> readTexCoords(const Node& texCoords, const NurbsPatch& patch)
    {
        if (const std::vector<osg::Vec2f>* const pairs = pairsOf(texCoords, controlPointPart)) {
            NurbsFault fault;
            return readNurbsPatch(texCoords, planePoints(*pairs), fault);
        }
        const std::vector<osg::Vec2f>* const pairs = pairsOf(texCoords, pointPart);
        if (!pairs || pairs->size() < patch.u().count() * patch.v().count())
            return std::nullopt;
        std::vector<osg::Vec3f> points = planePoints(*pairs);
        points.resize(patch.u().count() * patch.v().count());
        return patch.over(std::move(points));
    }

    Use _controlPoints;
    Use _texCoords;
};

/// A surface of which outlines leave a part.
class NurbsTrimmedSurfaceProc : public NurbsPatchSurfaceProc
{
public:
    using NurbsPatchSurfaceProc::NurbsPatchSurfaceProc;

    void fieldChanged(Field& field, double time) override
    {
        if (!takeListEvent(node(), field, addTrimmingContourPart, removeTrimmingContourPart,
                           trimmingContourPart, time))
            NurbsPatchSurfaceProc::fieldChanged(field, time);
    }

protected:
    MeshData build(const NurbsPatch& patch, const NurbsPatch* texCoords, std::size_t columns,
                   std::size_t rows) override
    {
        const auto& nodes = trimmingContourPart.read<MFNode>(node());
        _contours.resize(nodes.size());
        std::vector<std::vector<osg::Vec2f>> outlines;
        std::size_t i = 0;
        for (NodeLink& link : nodes) {
            auto* const contour = elementOf<PlaneCurveProc>(link.node());
            _contours[i++].set(*this, contour);
            std::vector<osg::Vec2f> outline;
            if (contour)
                contour->trace(outline);
            for (osg::Vec2f& place : outline) {
                place[0] = static_cast<float>(patch.u().shareOf(static_cast<double>(place[0])));
                place[1] = static_cast<float>(patch.v().shareOf(static_cast<double>(place[1])));
            }
            if (outline.size() >= 3)
                outlines.push_back(std::move(outline));
        }
        return outlines.empty() ? NurbsPatchSurfaceProc::build(patch, texCoords, columns, rows)
                                : trimmedMesh(patch, texCoords, outlines, columns, rows);
    }

private:
    std::vector<Use> _contours;
};

/// Behaviour of a `NurbsSet`: has its geometries cut as finely as it says.
class NurbsSetProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    ~NurbsSetProc() override
    {
        for (const Use& use : _geometries) {
            if (auto* const geometry = dynamic_cast<NurbsProc*>(use.element()))
                geometry->scaleTessellation(1.0F);
        }
    }

    void fieldChanged(Field& field, double time) override
    {
        static const Part addGeometryPart("addGeometry");
        static const Part removeGeometryPart("removeGeometry");
        if (!takeListEvent(node(), field, addGeometryPart, removeGeometryPart, geometryPart(), time))
            ElementProc::fieldChanged(field, time);
    }

    void update() override
    {
        static const Part tessellationScalePart("tessellationScale");
        const auto& nodes = geometryPart().read<MFNode>(node());
        std::vector<Use> before = std::move(_geometries);
        _geometries = std::vector<Use>(nodes.size());
        const float scale = tessellationScalePart.read<SFFloat>(node()).value();
        std::vector<NurbsProc*> present;
        std::size_t i = 0;
        for (NodeLink& link : nodes) {
            auto* const geometry = elementOf<NurbsProc>(link.node());
            _geometries[i++].set(*this, geometry);
            present.push_back(geometry);
            if (geometry)
                geometry->scaleTessellation(scale);
        }
        for (const Use& use : before) {
            auto* const gone = dynamic_cast<NurbsProc*>(use.element());
            if (gone && std::find(present.begin(), present.end(), gone) == present.end())
                gone->scaleTessellation(1.0F);
        }
    }

protected:
    void elementChanged(ElementProc&) override {}

private:
    static const Part& geometryPart()
    {
        static const Part part("geometry");
        return part;
    }

    std::vector<Use> _geometries;
};

const ProcRegistration curve("NurbsCurve", makeProc<NurbsCurveProc>);
const ProcRegistration patch("NurbsPatchSurface", makeProc<NurbsPatchSurfaceProc>);
const ProcRegistration set("NurbsSet", makeProc<NurbsSetProc>);
const ProcRegistration textureCoordinate("NurbsTextureCoordinate", makeProc<DescriptionProc>);
const ProcRegistration trimmed("NurbsTrimmedSurface", makeProc<NurbsTrimmedSurfaceProc>);

} // namespace

std::optional<NurbsLine> readNurbsLine(const Node& node, const std::vector<osg::Vec3f>& points,
                                       NurbsFault& fault)
{
    const std::optional<NurbsBasis> basis =
        readBasis(node, points.size(), orderPart, "order", knotPart, fault);
    if (!basis)
        return std::nullopt;
    return NurbsLine(points, weightPart.read<MFDouble>(node).values(), *basis);
}

std::optional<NurbsPatch> readNurbsPatch(const Node& node, const std::vector<osg::Vec3f>& points,
                                         NurbsFault& fault)
{
    const auto uCount = static_cast<std::size_t>(std::max(0, number(uDimensionPart, node)));
    const auto vCount = static_cast<std::size_t>(std::max(0, number(vDimensionPart, node)));
    if (uCount == 0 || vCount == 0)
        return std::nullopt;
    if (points.size() / uCount < vCount) {
        fault = {"controlPoint", "expected " + std::to_string(uCount) + " x " + std::to_string(vCount) +
                                     " points, found " + std::to_string(points.size())};
        return std::nullopt;
    }
    const std::optional<NurbsBasis> u = readBasis(node, uCount, uOrderPart, "uOrder", uKnotPart, fault);
    const std::optional<NurbsBasis> v = readBasis(node, vCount, vOrderPart, "vOrder", vKnotPart, fault);
    if (!u || !v)
        return std::nullopt;
    return NurbsPatch(points, weightPart.read<MFDouble>(node).values(), *u, *v);
}

void NurbsProc::scaleTessellation(float scale)
{
    const float usable = scale > 0.0F && scale < 1e6F ? scale : 1.0F;
    if (_scale == usable)
        return;
    _scale = usable;
    requestUpdate();
}

std::size_t NurbsProc::pieces(int tessellation, std::size_t controlPoints, std::size_t most) const
{
    const std::size_t plain = nurbsPieces(tessellation, controlPoints, most);
    const double scaled = std::ceil(static_cast<double>(plain) * static_cast<double>(_scale));
    return static_cast<std::size_t>(std::clamp(scaled, 1.0, static_cast<double>(most)));
}

void NurbsProc::tell(const NurbsFault& fault)
{
    if (fault.part)
        complain(fault.part, fault.text);
}

MeshData smoothGrid(const std::vector<osg::Vec3f>& grid, const std::vector<osg::Vec2f>& texCoords,
                    std::size_t columns, bool ccw)
{
    const std::size_t rows = grid.size() / columns;
    const auto isSame = [&grid](std::size_t a, std::size_t b) {
        return (grid[a] - grid[b]).length() < 1e-5F;
    };
    bool joinsColumns = columns > 2;
    for (std::size_t row = 0; joinsColumns && row < rows; ++row)
        joinsColumns = isSame(row * columns, row * columns + columns - 1);
    bool joinsRows = rows > 2;
    for (std::size_t column = 0; joinsRows && column < columns; ++column)
        joinsRows = isSame(column, (rows - 1) * columns + column);
    std::vector<int> points;
    std::vector<int> pairs;
    for (std::size_t row = 1; row < rows; ++row) {
        for (std::size_t column = 1; column < columns; ++column) {
            const std::size_t last = row * columns + column;
            for (const std::size_t corner : {last - columns - 1, last - columns, last, last - 1}) {
                const std::size_t atRow = corner / columns;
                const std::size_t atColumn = corner % columns;
                pairs.push_back(static_cast<int>(corner));
                points.push_back(static_cast<int>((joinsRows && atRow == rows - 1 ? 0 : atRow * columns) +
                                                  (joinsColumns && atColumn == columns - 1 ? 0 : atColumn)));
            }
        }
    }
    MeshFaults faults("corner");
    FaceList faces(grid, points);
    faces.readQuads(faults);
    MeshSource source;
    source.faces = &faces;
    source.ccw = ccw;
    source.creaseAngle = 3.1415927F; // smooth all over
    source.texCoords.values = &texCoords;
    source.texCoords.index = &pairs;
    return buildMesh(source, faults);
}

} // namespace Orvane
