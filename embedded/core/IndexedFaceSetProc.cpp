#include "core/ComposedMeshProc.h"
#include "core/Part.h"
#include <Orvane/MFInt32.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>

namespace Orvane {

namespace {

const Part ccwPart("ccw");
const Part colorIndexPart("colorIndex");
const Part colorPerVertexPart("colorPerVertex");
const Part convexPart("convex");
const Part coordIndexPart("coordIndex");
const Part creaseAnglePart("creaseAngle");
const Part normalIndexPart("normalIndex");
const Part normalPerVertexPart("normalPerVertex");
const Part solidPart("solid");
const Part texCoordIndexPart("texCoordIndex");

class IndexedFaceSetProc : public ComposedMeshProc
{
public:
    using ComposedMeshProc::ComposedMeshProc;

    bool isSolid() const override { return flag(solidPart); }

protected:
    MeshData build(const std::vector<osg::Vec3f>& points, MeshFaults& faults) override
    {
        FaceList faces(points, coordIndexPart.read<MFInt32>(node()).values());
        faces.readPolygons(faults);
        MeshSource source;
        source.faces = &faces;
        source.ccw = flag(ccwPart);
        source.convex = flag(convexPart);
        source.creaseAngle = creaseAnglePart.read<SFFloat>(node()).value();
        bindValues(source);
        source.colors.index = source.colorsRGBA.index = list(colorIndexPart);
        source.colors.perVertex = source.colorsRGBA.perVertex = flag(colorPerVertexPart);
        source.normals.index = list(normalIndexPart);
        source.normals.perVertex = flag(normalPerVertexPart);
        source.texCoords.index = list(texCoordIndexPart);
        return buildMesh(source, faults);
    }

private:
    bool flag(const Part& part) const { return part.read<SFBool>(node()).value(); }
    const std::vector<int>* list(const Part& part) const { return &part.read<MFInt32>(node()).values(); }
};

const ProcRegistration registration("IndexedFaceSet", makeProc<IndexedFaceSetProc>);

} // namespace

} // namespace Orvane
