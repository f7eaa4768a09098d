#include "core/ComposedMeshProc.h"
#include "core/LineBuilder.h"
#include "core/Part.h"
#include <Orvane/MFInt32.h>
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part colorIndexPart("colorIndex");
const Part colorPerVertexPart("colorPerVertex");
const Part coordIndexPart("coordIndex");
const Part vertexCountPart("vertexCount");

class IndexedLineSetProc : public ComposedMeshProc
{
public:
    using ComposedMeshProc::ComposedMeshProc;

    Surface::Kind kind() const override { return Surface::LINES; }

protected:
    MeshData build(const std::vector<osg::Vec3f>& points, MeshFaults& faults) override
    {
        LineSource source;
        source.points = &points;
        source.wantsPoints = wantsPoints();
        source.index = &coordIndexPart.read<MFInt32>(node()).values();
        bindColors(source.colors, source.colorsRGBA);
        source.colors.index = source.colorsRGBA.index = &colorIndexPart.read<MFInt32>(node()).values();
        source.colors.perVertex = source.colorsRGBA.perVertex =
            colorPerVertexPart.read<SFBool>(node()).value();
        return buildLines(source, faults);
    }
};

class LineSetProc : public ComposedMeshProc
{
public:
    using ComposedMeshProc::ComposedMeshProc;

    Surface::Kind kind() const override { return Surface::LINES; }

protected:
    MeshData build(const std::vector<osg::Vec3f>& points, MeshFaults& faults) override
    {
        const std::vector<int> index =
            pointRuns(vertexCountPart.read<MFInt32>(node()).values(), points.size());
        LineSource source;
        source.points = &points;
        source.wantsPoints = wantsPoints();
        source.index = &index;
        bindColors(source.colors, source.colorsRGBA);
        return buildLines(source, faults);
    }
    const char* listName() const override { return "corner"; }
};

class PointSetProc : public ComposedMeshProc
{
public:
    using ComposedMeshProc::ComposedMeshProc;

    Surface::Kind kind() const override { return Surface::POINTS; }

protected:
    MeshData build(const std::vector<osg::Vec3f>& points, MeshFaults& faults) override
    {
        PointSource source;
        source.points = &points;
        source.wantsPoints = wantsPoints();
        bindColors(source.colors, source.colorsRGBA);
        return buildPoints(source, faults);
    }
};

const ProcRegistration indexedLineSet("IndexedLineSet", makeProc<IndexedLineSetProc>);
const ProcRegistration lineSet("LineSet", makeProc<LineSetProc>);
const ProcRegistration pointSet("PointSet", makeProc<PointSetProc>);

} // namespace

} // namespace Orvane
