#include "core/HatchPattern.h"
#include "core/SharedTable.h"
#include "core/Surface.h"
#include "core/SurfaceProgram.h"
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPointChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGTexGenChunk.h>
#include <OpenSG/OSGTextureTransformChunk.h>
#include <algorithm>

namespace Orvane {

namespace {

struct SurfaceHash
{
    std::size_t operator()(const Surface& surface) const { return surface.hash(); }
};

using SurfaceTable = SharedTable<Surface, SurfaceCore, SurfaceHash>;

SurfaceTable& table()
{
    static SurfaceTable surfaces;
    return surfaces;
}

/// A texture as a surface puts it on; the same for all surfaces that differ in other things only.
struct TextureKey
{
    SurfaceTexture texture;

    bool operator==(const TextureKey& other) const { return texture.hasStateOf(other.texture); }
};

struct TextureKeyHash
{
    std::size_t operator()(const TextureKey& key) const { return key.texture.hash(); }
};

/// How faces are drawn; the same for most of all shapes.
struct PolygonKey
{
    bool solid;
    bool filled;
    std::uint8_t hatchStyle;

    bool operator==(const PolygonKey& other) const
    {
        return solid == other.solid && filled == other.filled && hatchStyle == other.hatchStyle;
    }
};

struct PolygonKeyHash
{
    std::size_t operator()(const PolygonKey& key) const
    {
        return key.hatchStyle * 4U + (key.solid ? 2U : 0U) + (key.filled ? 1U : 0U);
    }
};

std::shared_ptr<SurfaceChunk> polygonChunk(const PolygonKey& key)
{
    static SharedTable<PolygonKey, SurfaceChunk, PolygonKeyHash> chunks;
    return chunks.get(key, [&key] {
        const osg::PolygonChunkPtr chunk = osg::PolygonChunk::create();
        chunk->setCullFace(!key.filled ? osg::PolygonChunk::CULL_BOTH
                           : key.solid ? osg::PolygonChunk::CULL_BACK
                                       : osg::PolygonChunk::CULL_NONE);
        if (key.hatchStyle > 0) {
            chunk->setStipple(hatchPattern(key.hatchStyle));
            // Over the faces themselves.
            chunk->setOffsetFactor(-1.0F);
            chunk->setOffsetBias(-1.0F);
        }
        return std::make_unique<SurfaceChunk>(osg::StateChunkPtr(chunk));
    });
}

osg::Color4f withAlpha(const osg::Color3f& color, float alpha)
{
    return osg::Color4f(color.red(), color.green(), color.blue(), alpha);
}

osg::MaterialChunkPtr materialChunk(const Surface& surface)
{
    const osg::MaterialChunkPtr chunk = osg::MaterialChunk::create();
    chunk->setLit(surface.lit);
    chunk->setAmbient(withAlpha(surface.ambient, surface.alpha));
    chunk->setDiffuse(withAlpha(surface.diffuse, surface.alpha));
    chunk->setSpecular(withAlpha(surface.specular, surface.alpha));
    chunk->setEmission(withAlpha(surface.emission, surface.alpha));
    chunk->setShininess(surface.shininess);
    chunk->setColorMaterial(surface.vertexColors == Surface::DIFFUSE_COLORS
                                ? osg::MaterialChunk::DIFFUSE_COLOR
                                : osg::MaterialChunk::NO_COLOR_MATERIAL);
    if (surface.back) {
        const SurfaceColors& colors = *surface.back;
        osg::MaterialChunk::Side back;
        back.ambient = withAlpha(colors.ambient, colors.alpha);
        back.diffuse = withAlpha(colors.diffuse, colors.alpha);
        back.specular = withAlpha(colors.specular, colors.alpha);
        back.emission = withAlpha(colors.emission, colors.alpha);
        back.shininess = colors.shininess;
        chunk->setBack(back);
    }
    return chunk;
}

/// Where generated coordinates come from: null for those of the geometry.
osg::TexGenChunkPtr genChunk(SurfaceTexture::Coordinates coordinates)
{
    static constexpr osg::UInt32 Functions[] = {
        osg::TexGenChunk::NO_GEN,        osg::TexGenChunk::NORMAL_MAP,     osg::TexGenChunk::NORMAL_MAP,
        osg::TexGenChunk::EYE_LINEAR,    osg::TexGenChunk::REFLECTION_MAP, osg::TexGenChunk::SPHERE_MAP,
        osg::TexGenChunk::OBJECT_LINEAR,
    };
    if (coordinates == SurfaceTexture::GIVEN)
        return osg::NullFC;
    const osg::UInt32 function = Functions[coordinates];
    const osg::TexGenChunkPtr chunk = osg::TexGenChunk::create();
    chunk->setGenFuncS(function);
    chunk->setGenFuncT(function);
    if (function != osg::TexGenChunk::SPHERE_MAP)
        chunk->setGenFuncR(function);
    return chunk;
}

void addTexture(osg::ChunkMaterial& material, SurfaceCore& core, const SurfaceTexture& texture)
{
    const auto unit = static_cast<osg::Int32>(core.textures.size());
    core.textures.push_back(surfaceTexture(texture));
    material.addChunk(core.textures.back()->get(), unit);
    const std::optional<osg::Matrix> matrix = texture.matrix();
    if (matrix || texture.turnsWithCamera()) {
        const osg::TextureTransformChunkPtr chunk = osg::TextureTransformChunk::create();
        chunk->setMatrix(matrix.value_or(osg::Matrix()));
        chunk->setFromCamera(texture.turnsWithCamera());
        material.addChunk(chunk, unit);
    }
    if (const osg::TexGenChunkPtr chunk = genChunk(texture.coordinates))
        material.addChunk(chunk, unit);
}

void addAlphaMode(osg::ChunkMaterial& material, const Surface& surface)
{
    constexpr osg::UInt32 GreaterOrEqual = 0x0206;
    constexpr osg::UInt32 Always = 0x0207;
    if (surface.alphaMode == Surface::AUTO_ALPHA)
        return;
    if (surface.alphaMode == Surface::BLENDED_ALPHA) {
        material.setTransparencyMode(osg::ChunkMaterial::TransparencyForceTransparent);
        return;
    }
    material.setTransparencyMode(osg::ChunkMaterial::TransparencyForceOpaque);
    const osg::BlendChunkPtr chunk = osg::BlendChunk::create();
    chunk->setSrcFactor(osg::BlendChunk::ONE);
    chunk->setDestFactor(osg::BlendChunk::ZERO);
    chunk->setAlphaFunc(surface.alphaMode == Surface::MASKED_ALPHA ? GreaterOrEqual : Always);
    chunk->setAlphaValue(surface.alphaCutoff);
    material.addChunk(chunk);
}

void addLineLook(osg::ChunkMaterial& material, const Surface& surface)
{
    constexpr osg::Int32 PatternScale = 2;
    if (surface.lineWidth == 1.0F && surface.linePattern == 0xFFFF)
        return;
    const osg::LineChunkPtr chunk = osg::LineChunk::create();
    chunk->setWidth(surface.lineWidth);
    chunk->setStipplePattern(surface.linePattern);
    chunk->setStippleRepeat(PatternScale);
    material.addChunk(chunk);
}

void addPointLook(osg::ChunkMaterial& material, const PointLook& look)
{
    const osg::PointChunkPtr chunk = osg::PointChunk::create();
    chunk->setSize(look.size);
    chunk->setMinSize(look.minSize);
    chunk->setMaxSize(look.maxSize);
    chunk->setAttenuation(look.attenuation);
    material.addChunk(chunk);
}

} // namespace

std::shared_ptr<SurfaceChunk> surfaceTexture(const SurfaceTexture& texture)
{
    static SharedTable<TextureKey, SurfaceChunk, TextureKeyHash> textures;
    return textures.get({texture}, [&texture] {
        const osg::TextureChunkPtr chunk = osg::TextureChunk::create();
        chunk->setImage(texture.image);
        chunk->setWrapS(texture.wrap[0]);
        chunk->setWrapT(texture.wrap[1]);
        chunk->setWrapR(texture.wrap[2]);
        chunk->setMinFilter(texture.minFilter);
        chunk->setMagFilter(texture.magFilter);
        chunk->setAnisotropy(texture.anisotropy);
        chunk->setBorderColor(texture.borderColor);
        chunk->setEnvMode(texture.envMode);
        chunk->setEnvColor(texture.factor);
        chunk->setEnvCombine(texture.combine);
        chunk->setCoordSet(texture.coordSet);
        return std::make_unique<SurfaceChunk>(osg::StateChunkPtr(chunk));
    });
}

std::shared_ptr<SurfaceCore> surfaceCore(const Surface& surface)
{
    return table().get(surface, [&surface] {
        auto result = std::make_unique<SurfaceCore>();
        const osg::ChunkMaterialPtr material = osg::ChunkMaterial::create();
        material->addChunk(materialChunk(surface));
        const std::size_t count = std::min<std::size_t>(surface.textures.size(), osg::StateChunk::MaxSlots);
        for (std::size_t i = 0; i < count; ++i)
            addTexture(*material, *result, surface.textures[i]);
        addAlphaMode(*material, surface);
        if (surface.kind == Surface::FACES && (surface.solid || !surface.filled || surface.hatchStyle > 0)) {
            result->polygon = polygonChunk({surface.solid, surface.filled, surface.hatchStyle});
            material->addChunk(result->polygon->get());
        }
        if (surface.kind == Surface::LINES)
            addLineLook(*material, surface);
        if (surface.kind == Surface::POINTS && surface.pointLook)
            addPointLook(*material, *surface.pointLook);
        if (surface.program) {
            material->addChunk(surface.program.get());
        } else {
            const SurfaceChunk program = surfaceProgram(surface, result->programParts);
            if (program)
                material->addChunk(program.get());
        }
        const osg::MaterialGroupPtr group = osg::MaterialGroup::create();
        group->setMaterial(material);
        result->core = osg::NodeCorePtr(group);
        return result;
    });
}

std::size_t surfaceCount()
{
    return table().size();
}

} // namespace Orvane
