#include "core/ComposedMeshProc.h"
#include "core/Part.h"
#include <Orvane/MFInt32.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3f.h>
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
const Part pointPart("point");
const Part solidPart("solid");
const Part texCoordIndexPart("texCoordIndex");
const Part vectorPart("vector");

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
        bindColors(source.colors, source.colorsRGBA);
        source.colors.index = source.colorsRGBA.index = list(colorIndexPart);
        source.colors.perVertex = source.colorsRGBA.perVertex = flag(colorPerVertexPart);
        if (Node* const normals = normalNode(); normals && vectorPart.isIn(*normals)) {
            source.normals.values = &vectorPart.read<MFVec3f>(*normals).values();
            source.normals.index = list(normalIndexPart);
            source.normals.perVertex = flag(normalPerVertexPart);
        }
        if (Node* const texCoords = texCoordNode(); texCoords && isPairs(*texCoords)) {
            source.texCoords.values = &pointPart.read<MFVec2f>(*texCoords).values();
            source.texCoords.index = list(texCoordIndexPart);
        }
        return buildMesh(source, faults);
    }

private:
    bool flag(const Part& part) const { return part.read<SFBool>(node()).value(); }
    const std::vector<int>* list(const Part& part) const { return &part.read<MFInt32>(node()).values(); }

    static bool isPairs(const Node& texCoords)
    {
        return pointPart.isIn(texCoords) &&
               readField(texCoords, pointPart.in(texCoords)).dataType() == MFVEC2F_DT;
    }
};

const ProcRegistration registration("IndexedFaceSet", makeProc<IndexedFaceSetProc>);

} // namespace

} // namespace Orvane
