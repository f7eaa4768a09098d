#include "core/TexCoordProcs.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGGeometry.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/MFVec4f.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part mappingPart("mapping");
const Part modePart("mode");
const Part parameterPart("parameter");
const Part pointPart("point");
const Part texCoordPart("texCoord");

/// Behaviour of a `MultiTextureCoordinate`: a set for each texture.
class MultiTexCoordProc : public TexCoordProc
{
public:
    using TexCoordProc::TexCoordProc;

    void collectSets(std::vector<TexCoordProc*>& sets) override
    {
        const auto& list = texCoordPart.read<MFNode>(node());
        const auto listed = static_cast<std::size_t>(list.size());
        if (listed > osg::Geometry::MaxTexCoords)
            complain("texCoord", "expected " + std::to_string(osg::Geometry::MaxTexCoords) +
                                     " sets or fewer, found " + std::to_string(listed) +
                                     "; the first ones count");
        _uses.resize(std::min<std::size_t>(listed, osg::Geometry::MaxTexCoords));
        for (std::size_t i = 0; i < _uses.size(); ++i) {
            auto* child = elementOf<TexCoordProc>(list.elem(static_cast<int>(i)).directNode());
            // A list in a list is no set.
            if (dynamic_cast<MultiTexCoordProc*>(child))
                child = nullptr;
            _uses[i].set(*this, child);
            sets.push_back(child);
        }
    }

private:
    std::vector<Use> _uses;
};

struct Generator
{
    const char* mode;
    SurfaceTexture::Coordinates coordinates;
};

const Generator generators[] = {{"CAMERASPACENORMAL", SurfaceTexture::CAMERA_NORMAL},
                                {"CAMERASPACEPOSITION", SurfaceTexture::CAMERA_POSITION},
                                {"CAMERASPACEREFLECTIONVECTOR", SurfaceTexture::CAMERA_REFLECTION},
                                {"COORD", SurfaceTexture::LOCAL_POSITION},
                                {"COORD-EYE", SurfaceTexture::CAMERA_POSITION},
                                {"SPHERE", SurfaceTexture::CAMERA_SPHERE},
                                {"SPHERE-REFLECT", SurfaceTexture::REFLECTION_SPHERE}};

/// Behaviour of a `TextureCoordinateGenerator`.
class TexCoordGeneratorProc : public TexCoordProc
{
public:
    using TexCoordProc::TexCoordProc;

    TexChannel channel() const override
    {
        TexChannel result = TexCoordProc::channel();
        if (const Generator* const found = find())
            result.coordinates = found->coordinates;
        return result;
    }

    TexCoordView view() const override { return {}; }

    bool makeLocal(const MeshData& mesh, TexCoordSet& set) override
    {
        const bool isSphere = mode() == "SPHERE-LOCAL";
        const bool isReflection = mode() == "SPHERE-REFLECT-LOCAL";
        if (!isSphere && !isReflection) {
            if (!find())
                complain("mode", "expected a way to make coordinates of those that are drawn, found \"" +
                                     mode() + "\"; it counts as SPHERE-LOCAL");
            else
                return false;
        }
        const osg::Vec3f eye = isReflection ? eyeOf() : osg::Vec3f();
        set.dimension = 2;
        set.values.reserve(2 * mesh.positions.size());
        for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
            osg::Vec3f direction = i < mesh.normals.size() ? mesh.normals[i] : osg::Vec3f(0.0F, 0.0F, 1.0F);
            direction.normalize();
            if (isReflection) {
                osg::Vec3f look = osg::Vec3f(mesh.positions[i]) - eye;
                look.normalize();
                direction = look - direction * (2.0F * look.dot(direction));
            }
            set.values.push_back(0.5F + 0.5F * direction[0]);
            set.values.push_back(0.5F + 0.5F * direction[1]);
        }
        return true;
    }

private:
    const std::string& mode() const { return modePart.read<SFString>(node()).value(); }

    const Generator* find() const
    {
        const auto* const found =
            std::find_if(std::begin(generators), std::end(generators),
                         [this](const Generator& generator) { return generator.mode == mode(); });
        return found == std::end(generators) ? nullptr : found;
    }

    /// Where one looks from, after the index of refraction.
    osg::Vec3f eyeOf() const
    {
        const std::vector<float>& values = parameterPart.read<MFFloat>(node()).values();
        return values.size() < 4 ? osg::Vec3f() : usableVector(osg::Vec3f(values[1], values[2], values[3]));
    }
};

const ProcRegistration textureCoordinate("TextureCoordinate", makeProc<TexCoordProc>);
const ProcRegistration textureCoordinate3D("TextureCoordinate3D", makeProc<TexCoordProc>);
const ProcRegistration textureCoordinate4D("TextureCoordinate4D", makeProc<TexCoordProc>);
const ProcRegistration multiTextureCoordinate("MultiTextureCoordinate", makeProc<MultiTexCoordProc>);
const ProcRegistration generator("TextureCoordinateGenerator", makeProc<TexCoordGeneratorProc>);

} // namespace

TexChannel TexCoordProc::channel() const
{
    TexChannel result;
    if (mappingPart.isIn(node()))
        result.mapping = mappingPart.read<SFString>(node()).value();
    return result;
}

TexCoordView TexCoordProc::view() const
{
    if (!pointPart.isIn(node()))
        return {};
    const auto viewOf = [](const auto& values, unsigned int dimension) {
        return TexCoordView{values.empty() ? nullptr : values.front().getValues(), values.size(), dimension};
    };
    const Field& field = readField(node(), pointPart.in(node()));
    switch (field.dataType()) {
    case MFVEC2F_DT:
        return viewOf(static_cast<const MFVec2f&>(field).values(), 2);
    case MFVEC3F_DT:
        return viewOf(static_cast<const MFVec3f&>(field).values(), 3);
    case MFVEC4F_DT:
        return viewOf(static_cast<const MFVec4f&>(field).values(), 4);
    default:
        return {};
    }
}

bool TexCoordSets::areNeeded(TexCoordProc& proc)
{
    std::vector<TexCoordProc*> sets;
    proc.collectSets(sets);
    return sets.size() != 1 || sets[0] != &proc || proc.view().dimension != 2 ||
           !proc.channel().mapping.empty();
}

void TexCoordSets::read(TexCoordProc& proc)
{
    _procs.clear();
    _channels.clear();
    _views.clear();
    proc.collectSets(_procs);
    for (const TexCoordProc* const set : _procs) {
        _channels.push_back(set ? set->channel() : TexChannel());
        _views.push_back(set ? set->view() : TexCoordView());
    }
}

void TexCoordSets::complete(MeshData& mesh) const
{
    mesh.texCoordSets.resize(_procs.size());
    for (std::size_t i = 0; i < _procs.size(); ++i) {
        TexCoordSet made;
        if (_procs[i] && _procs[i]->makeLocal(mesh, made))
            mesh.texCoordSets[i] = std::move(made);
    }
}

} // namespace Orvane
