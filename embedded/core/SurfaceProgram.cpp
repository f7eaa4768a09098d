#include "core/SurfaceProgram.h"
#include "core/ShadingText.h"
#include "core/SharedTable.h"
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGSHLChunk.h>
#include <algorithm>
#include <string>

namespace Orvane {

namespace {

using ProgramRef = osg::RefPtr<osg::SHLProgramPtr>;
using Value = osg::SHLChunk::Value;

/// Logs why a program is not used, for the first one.
void tellFault(const osg::SHLProgramPtr& program)
{
    static bool isTold = false;
    if (isTold || program->getStatus() != osg::SHLProgram::FAULTY)
        return;
    isTold = true;
    SWARNING << "expected an OpenGL that computes the light of each pixel by a program, found one that does "
                "not; surfaces are drawn by fixed steps"
             << std::endl;
    for (const osg::SHLProgram::Message& message : program->getMessages())
        SWARNING << message.text << std::endl;
}

/// The program of a text, the same as long as somebody holds it.
ProgramRef programOf(std::vector<osg::SHLProgram::Source> sources)
{
    // Plans are few, and compiling takes long: they stay.
    static auto* const programs = new std::vector<ProgramRef>;
    for (const ProgramRef& program : *programs) {
        if (program->getSources() == sources)
            return program;
    }
    const osg::SHLProgramPtr made = osg::SHLProgram::create();
    made->setSources(std::move(sources));
    // The program is never destroyed before its listener.
    made->setListener([program = made.getCPtr()] { tellFault(osg::SHLProgramPtr(program)); });
    programs->emplace_back(made);
    return programs->back();
}

Value reals(osg::UInt32 components, std::vector<float> numbers)
{
    Value value;
    value.components = components;
    value.reals = std::move(numbers);
    return value;
}

ShadingPlan::Sampler samplerOf(const SurfaceTexture& texture)
{
    return texture.image->getSideCount() == 6 ? ShadingPlan::CUBE
           : texture.image->getDepth() > 1    ? ShadingPlan::SPACE
                                              : ShadingPlan::FLAT;
}

/// Gives the textures of a shading their units of coordinates: those where fixed steps have the same ones
/// already, or free ones.
class CoordUnits
{
public:
    explicit CoordUnits(const Surface& surface)
    {
        for (const SurfaceTexture& texture : surface.textures)
            _sets.push_back(texture.coordSet);
    }

    unsigned int unitOf(unsigned int set)
    {
        auto found = std::find(_sets.begin(), _sets.end(), set);
        if (found == _sets.end() && _sets.size() < osg::StateChunk::MaxSlots)
            found = _sets.insert(_sets.end(), set);
        return found == _sets.end() ? 0 : static_cast<unsigned int>(found - _sets.begin());
    }

    const std::vector<osg::UInt32>& sets() const { return _sets; }

private:
    std::vector<osg::UInt32> _sets;
};

void addSides(osg::SHLChunk::Values& values, const Surface& surface)
{
    std::vector<float> base;
    std::vector<float> emission;
    std::vector<float> metal;
    std::vector<float> normals;
    std::vector<float> occlusion;
    for (std::size_t i = 0; i < 2; ++i) {
        const SurfaceShading::Side& side = surface.shading->sides[i];
        const float alpha = i > 0 && surface.back ? surface.back->alpha : surface.alpha;
        base.insert(base.end(), {side.base.red(), side.base.green(), side.base.blue(), alpha});
        emission.insert(emission.end(), {side.emission.red(), side.emission.green(), side.emission.blue()});
        metal.insert(metal.end(), {side.metallic, side.roughness});
        normals.push_back(side.normalScale);
        occlusion.push_back(side.occlusionStrength);
    }
    values[ShadingNames::baseColors] = reals(4, std::move(base));
    values[ShadingNames::emissions] = reals(3, std::move(emission));
    values[ShadingNames::metalRoughness] = reals(2, std::move(metal));
    values[ShadingNames::normalScale] = reals(1, std::move(normals));
    values[ShadingNames::occlusionStrength] = reals(1, std::move(occlusion));
}

SurfaceChunk shadingProgram(const Surface& surface, std::vector<std::shared_ptr<SurfaceChunk>>& parts)
{
    const SurfaceShading& shading = *surface.shading;
    const osg::SHLChunkPtr chunk = osg::SHLChunk::create();
    ShadingPlan plan;
    plan.model = shading.model;
    plan.tintsAll = shading.tintsAll;
    plan.hasVertexColors = surface.vertexColors == Surface::DIFFUSE_COLORS;
    osg::SHLChunk::Values values;
    CoordUnits units(surface);
    for (const SurfaceShading::Texture& texture : shading.textures) {
        const std::size_t index = plan.textures.size();
        const std::optional<osg::Matrix> matrix = texture.texture.matrix();
        plan.textures.push_back({texture.role, texture.texture.coordinates,
                                 units.unitOf(texture.texture.coordSet), samplerOf(texture.texture),
                                 matrix.has_value(), texture.sides});
        parts.push_back(surfaceTexture(texture.texture));
        values[ShadingNames::map(index)].textures = {osg::TextureChunkPtr::dcast(parts.back()->get())};
        if (matrix)
            values[ShadingNames::transform(index)] =
                reals(16, std::vector<float>(matrix->getValues(), matrix->getValues() + 16));
    }
    addSides(values, surface);
    chunk->setProgram(programOf(shadingText(plan)).get());
    chunk->setValues(std::move(values));
    chunk->setCoordSets(units.sets());
    return osg::StateChunkPtr(chunk);
}

/// Whether fixed steps, put into a program, show the textures of a surface alike.
bool isPlain(const Surface& surface)
{
    if (surface.textures.size() > 1)
        return false;
    return surface.textures.empty() || (surface.textures[0].envMode == osg::TextureChunk::ENV_MODULATE &&
                                        samplerOf(surface.textures[0]) == ShadingPlan::FLAT);
}

/// What plain surfaces differ in, as programs have it: their colours are found in OpenGL's materials.
struct PlainKey
{
    bool hasVertexColors;
    bool hasTexture;
    SurfaceTexture::Coordinates coordinates;
    std::optional<osg::Matrix> matrix;

    bool operator==(const PlainKey& other) const
    {
        return hasVertexColors == other.hasVertexColors && hasTexture == other.hasTexture &&
               coordinates == other.coordinates && matrix.has_value() == other.matrix.has_value() &&
               (!matrix ||
                std::equal(matrix->getValues(), matrix->getValues() + 16, other.matrix->getValues()));
    }
};

struct PlainKeyHash
{
    std::size_t operator()(const PlainKey& key) const
    {
        return key.coordinates * 8U + (key.hasVertexColors ? 4U : 0U) + (key.hasTexture ? 2U : 0U) +
               (key.matrix ? 1U : 0U);
    }
};

std::shared_ptr<SurfaceChunk> plainProgram(const PlainKey& key)
{
    static SharedTable<PlainKey, SurfaceChunk, PlainKeyHash> chunks;
    return chunks.get(key, [&key] {
        const osg::SHLChunkPtr chunk = osg::SHLChunk::create();
        ShadingPlan plan;
        plan.hasVertexColors = key.hasVertexColors;
        plan.tintsAll = true;
        // The sampler has no texture of its own: it reads the one that fixed steps put on.
        if (key.hasTexture)
            plan.textures.push_back({SurfaceShading::COLOR, key.coordinates, 0, ShadingPlan::FLAT,
                                     key.matrix.has_value(), SurfaceShading::BOTH_SIDES});
        if (key.matrix)
            chunk->setValue(
                ShadingNames::transform(0),
                reals(16, std::vector<float>(key.matrix->getValues(), key.matrix->getValues() + 16)));
        chunk->setProgram(programOf(shadingText(plan)).get());
        chunk->setNearLightsOnly(true);
        return std::make_unique<SurfaceChunk>(osg::StateChunkPtr(chunk));
    });
}

} // namespace

SurfaceChunk surfaceProgram(const Surface& surface, std::vector<std::shared_ptr<SurfaceChunk>>& parts)
{
    if (surface.shading)
        return shadingProgram(surface, parts);
    if (surface.kind != Surface::FACES || !surface.lit || !isPlain(surface))
        return SurfaceChunk();
    PlainKey key{surface.vertexColors == Surface::DIFFUSE_COLORS, !surface.textures.empty(),
                 SurfaceTexture::GIVEN, std::nullopt};
    if (key.hasTexture) {
        key.coordinates = surface.textures[0].coordinates;
        key.matrix = surface.textures[0].matrix();
    }
    parts.push_back(plainProgram(key));
    return *parts.back();
}

} // namespace Orvane
