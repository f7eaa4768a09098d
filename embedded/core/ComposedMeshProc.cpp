#include "core/ComposedMeshProc.h"
#include "core/Part.h"
#include "core/TexCoordProcs.h"
#include "core/VectorListProc.h"
#include "core/VertexValues.h"
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3d.h>
#include <Orvane/MFVec3f.h>
#include <cstring>
#include <string>

namespace Orvane {

namespace {

const Part colorPart("color");
const Part coordPart("coord");
const Part normalPart("normal");
const Part pointPart("point");
const Part texCoordPart("texCoord");
const Part vectorPart("vector");

const ProcRegistration color("Color", makeProc<DescriptionProc>);
const ProcRegistration colorRGBA("ColorRGBA", makeProc<DescriptionProc>);
const ProcRegistration coordinate("Coordinate", makeProc<VectorListProc>);
const ProcRegistration coordinateDouble("CoordinateDouble", makeProc<VectorListProc>);
const ProcRegistration normal("Normal", makeProc<VectorListProc>);

/// The field that the event "set_x" of a geometry writes: "x", which sends no event of its own.
Field* targetOf(const Field& event)
{
    static constexpr char Prefix[] = "set_";
    constexpr std::size_t Length = sizeof(Prefix) - 1;
    if (event.partType() != EVENTINP || std::strncmp(event.name(), Prefix, Length) != 0)
        return nullptr;
    return event.node()->findField(std::string(event.name() + Length), Node::EXACT_FSO);
}

} // namespace

const std::vector<osg::Vec3f>& pointsOf(Node* coord, std::vector<osg::Vec3f>& converted)
{
    const auto* const list = procAs<VectorListProc>(coord);
    return list && list->bent() ? *list->bent() : fieldPointsOf(coord, converted);
}

const std::vector<osg::Vec3f>& fieldPointsOf(Node* coord, std::vector<osg::Vec3f>& converted)
{
    converted.clear();
    if (!coord || !pointPart.isIn(*coord))
        return converted;
    const Field& field = readField(*coord, pointPart.in(*coord));
    if (field.dataType() == MFVEC3F_DT)
        return static_cast<const MFVec3f&>(field).values();
    if (field.dataType() == MFVEC3D_DT) {
        const std::vector<osg::Vec3d>& points = static_cast<const MFVec3d&>(field).values();
        converted.reserve(points.size());
        for (const osg::Vec3d& p : points)
            converted.emplace_back(static_cast<float>(p[0]), static_cast<float>(p[1]),
                                   static_cast<float>(p[2]));
    }
    return converted;
}

ComposedMeshProc::ComposedMeshProc(Node& node)
    : MeshProc(node)
{
}

ComposedMeshProc::~ComposedMeshProc() = default;

const std::vector<TexChannel>& ComposedMeshProc::texChannels() const
{
    return _texCoordSets ? _texCoordSets->channels() : MeshProc::texChannels();
}

void ComposedMeshProc::fieldChanged(Field& field, double time)
{
    if (Field* const target = targetOf(field)) {
        if (target->dataType() == field.dataType())
            target->assignValue(field);
    }
    MeshProc::fieldChanged(field, time);
}

void ComposedMeshProc::update()
{
    const auto useOf = [this](Use& use, const Part& part) {
        Node* const node = resolved(part.readNode(this->node()));
        use.set(*this, procAs<ElementProc>(node));
        return node;
    };
    Node* const coordNode = useOf(_coord, coordPart);
    _colorNode = useOf(_color, colorPart);
    _normalNode = useOf(_normal, normalPart);
    _texCoordNode = useOf(_texCoord, texCoordPart);

    std::vector<osg::Vec3f> converted;
    MeshFaults faults(listName());
    auto* const texCoords = procAs<TexCoordProc>(_texCoordNode);
    if (!texCoords || !TexCoordSets::areNeeded(*texCoords))
        _texCoordSets.reset();
    else if (!_texCoordSets)
        _texCoordSets = std::make_unique<TexCoordSets>();
    if (_texCoordSets)
        _texCoordSets->read(*texCoords);
    if (!VertexValues::areGiven(node()))
        _values.reset();
    else if (!_values)
        _values = std::make_unique<VertexValues>();
    MeshData mesh = build(pointsOf(coordNode, converted), faults);
    if (_values && !_values->read(*this, mesh.points))
        complain("fogCoord", "expected a depth for each point, found fewer; the others lie in no fog");
    if (_texCoordSets)
        _texCoordSets->complete(mesh);
    MeshAttribute<osg::Color3f> rgb;
    MeshAttribute<osg::Color4f> rgba;
    bindColors(rgb, rgba);
    geometry()->setAttributes(_values ? _values->take() : std::vector<osg::VertexAttribute>());
    geometry()->setFogDepths(_values ? _values->takeFogDepths() : std::vector<float>());
    show(std::move(mesh), rgba.isGiven());
    if (!faults.isEmpty())
        complain(nullptr, faults.text());
}

void ComposedMeshProc::bindColors(MeshAttribute<osg::Color3f>& rgb, MeshAttribute<osg::Color4f>& rgba) const
{
    if (!_colorNode || !colorPart.isIn(*_colorNode))
        return;
    const Field& field = readField(*_colorNode, colorPart.in(*_colorNode));
    if (field.dataType() == MFCOLOR_DT)
        rgb.values = &static_cast<const MFColor&>(field).values();
    else if (field.dataType() == MFCOLORRGBA_DT)
        rgba.values = &static_cast<const MFColorRGBA&>(field).values();
}

bool ComposedMeshProc::hasShaderValues() const
{
    return _values && _values->areUsed();
}

void ComposedMeshProc::bindValues(MeshSource& source) const
{
    source.wantsPoints = wantsPoints();
    bindColors(source.colors, source.colorsRGBA);
    const auto* const normals = procAs<VectorListProc>(_normalNode);
    if (normals && normals->bent())
        source.normals.values = normals->bent();
    else if (_normalNode && vectorPart.isIn(*_normalNode))
        source.normals.values = &vectorPart.read<MFVec3f>(*_normalNode).values();
    if (_texCoordSets)
        source.texCoordSets = &_texCoordSets->views();
    else if (_texCoordNode && pointPart.isIn(*_texCoordNode)) {
        const Field& field = readField(*_texCoordNode, pointPart.in(*_texCoordNode));
        if (field.dataType() == MFVEC2F_DT)
            source.texCoords.values = &static_cast<const MFVec2f&>(field).values();
    }
}

} // namespace Orvane
