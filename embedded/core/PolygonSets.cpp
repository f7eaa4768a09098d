#include "core/ComposedMeshProc.h"
#include "core/Part.h"
#include <Orvane/MFInt32.h>
#include <Orvane/SFBool.h>
#include <algorithm>
#include <limits>
#include <numeric>

namespace Orvane {

namespace {

const Part ccwPart("ccw");
const Part colorPerVertexPart("colorPerVertex");
const Part indexPart("index");
const Part normalPerVertexPart("normalPerVertex");
const Part solidPart("solid");

/// The numbers of \a count points in their order, as far as an index can name them.
std::vector<int> inOrder(std::size_t count)
{
    std::vector<int> index(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
    std::iota(index.begin(), index.end(), 0);
    return index;
}

/// Runs of indices, cut at negative ones.
template <class Handle>
void forEachRun(const std::vector<int>& index, Handle handle)
{
    auto first = index.begin();
    while (first != index.end()) {
        const auto last = std::find_if(first, index.end(), [](int i) { return i < 0; });
        if (first != last)
            handle(first, last);
        first = last == index.end() ? last : last + 1;
    }
}

using Run = std::vector<int>::const_iterator;

/// Every second triangle of a strip runs the other way.
void addStrip(Run first, Run last, std::vector<int>& triangles)
{
    for (Run i = first; last - i >= 3; ++i) {
        const bool even = (i - first) % 2 == 0;
        triangles.insert(triangles.end(), {even ? i[0] : i[1], even ? i[1] : i[0], i[2]});
    }
}

void addFan(Run first, Run last, std::vector<int>& triangles)
{
    for (Run i = first + 1; last - i >= 2; ++i)
        triangles.insert(triangles.end(), {*first, i[0], i[1]});
}

/// What the sets of triangles and quads have in common: values of corners go by the number of the point, and
/// faces meet smoothly where normals are asked per vertex and none are given.
class PolygonSetProc : public ComposedMeshProc
{
public:
    using ComposedMeshProc::ComposedMeshProc;

    bool isSolid() const override { return flag(solidPart); }

protected:
    static constexpr bool Quads = true;

    MeshData mesh(const std::vector<osg::Vec3f>& points, const std::vector<int>& index, bool quads,
                  MeshFaults& faults) const
    {
        FaceList faces(points, index);
        if (quads)
            faces.readQuads(faults);
        else
            faces.readTriangles(faults);
        MeshSource source;
        source.faces = &faces;
        source.ccw = flag(ccwPart);
        bindValues(source);
        source.colors.perVertex = source.colorsRGBA.perVertex = flag(colorPerVertexPart);
        source.normals.perVertex = flag(normalPerVertexPart);
        source.creaseAngle = source.normals.perVertex ? 4.0F : 0.0F; // past half a turn: all is smooth
        return buildMesh(source, faults);
    }

    const std::vector<int>& list(const Part& part) const { return part.read<MFInt32>(node()).values(); }
    bool flag(const Part& part) const { return part.read<SFBool>(node()).value(); }
};

/// `TriangleSet` and `QuadSet`.
template <bool quads>
class PlainSetProc : public PolygonSetProc
{
public:
    using PolygonSetProc::PolygonSetProc;

protected:
    MeshData build(const std::vector<osg::Vec3f>& points, MeshFaults& faults) override
    {
        return mesh(points, inOrder(points.size()), quads, faults);
    }
    const char* listName() const override { return "point"; }
};

/// `IndexedTriangleSet` and `IndexedQuadSet`.
template <bool quads>
class IndexedSetProc : public PolygonSetProc
{
public:
    using PolygonSetProc::PolygonSetProc;

protected:
    MeshData build(const std::vector<osg::Vec3f>& points, MeshFaults& faults) override
    {
        return mesh(points, list(indexPart), quads, faults);
    }
    const char* listName() const override { return "index"; }
};

enum class Rows { Strips, Fans };

/// Strips and fans; a message counts the corners of their triangles.
template <Rows rows, bool indexed>
class RowSetProc : public PolygonSetProc
{
public:
    using PolygonSetProc::PolygonSetProc;

protected:
    MeshData build(const std::vector<osg::Vec3f>& points, MeshFaults& faults) override
    {
        const std::vector<int> runs = runIndex(points.size(), faults);
        std::vector<int> triangles;
        triangles.reserve(3 * runs.size());
        forEachRun(runs, [&](Run first, Run last) {
            if (last - first < 3)
                faults.add(MeshFaults::TOO_FEW_CORNERS, triangles.size());
            else if constexpr (rows == Rows::Strips)
                addStrip(first, last, triangles);
            else
                addFan(first, last, triangles);
        });
        return mesh(points, triangles, !Quads, faults);
    }
    const char* listName() const override { return "corner"; }

private:
    std::vector<int> runIndex(std::size_t pointCount, MeshFaults& faults) const
    {
        if constexpr (indexed)
            return list(indexPart);
        else {
            static const Part counts(rows == Rows::Strips ? "stripCount" : "fanCount");
            std::size_t wanted = 0;
            for (const int count : list(counts)) {
                if (count <= 0)
                    faults.add(MeshFaults::TOO_FEW_CORNERS, wanted);
                wanted += static_cast<std::size_t>(std::max(0, count));
            }
            if (wanted > pointCount)
                faults.add(MeshFaults::INDEX_OUT_OF_RANGE, pointCount);
            return pointRuns(list(counts), pointCount);
        }
    }
};

const ProcRegistration triangles("TriangleSet", makeProc<PlainSetProc<false>>);
const ProcRegistration quads("QuadSet", makeProc<PlainSetProc<true>>);
const ProcRegistration indexedTriangles("IndexedTriangleSet", makeProc<IndexedSetProc<false>>);
const ProcRegistration indexedQuads("IndexedQuadSet", makeProc<IndexedSetProc<true>>);
const ProcRegistration strips("TriangleStripSet", makeProc<RowSetProc<Rows::Strips, false>>);
const ProcRegistration fans("TriangleFanSet", makeProc<RowSetProc<Rows::Fans, false>>);
const ProcRegistration indexedStrips("IndexedTriangleStripSet", makeProc<RowSetProc<Rows::Strips, true>>);
const ProcRegistration indexedFans("IndexedTriangleFanSet", makeProc<RowSetProc<Rows::Fans, true>>);

} // namespace

} // namespace Orvane
