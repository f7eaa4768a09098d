#include "core/Surface.h"
#include "core/SharedTable.h"
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGTextureTransformChunk.h>
#include <array>
#include <tuple>

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
    osg::RefPtr<osg::ImagePtr> image;
    bool repeatS;
    bool repeatT;

    bool operator==(const TextureKey& other) const
    {
        return image == other.image && repeatS == other.repeatS && repeatT == other.repeatT;
    }
};

struct TextureKeyHash
{
    std::size_t operator()(const TextureKey& key) const
    {
        return std::hash<const void*>()(key.image.get().getCPtr()) + (key.repeatS ? 1 : 0) +
               (key.repeatT ? 2 : 0);
    }
};

std::shared_ptr<SurfaceChunk> textureChunk(const Surface& surface)
{
    static SharedTable<TextureKey, SurfaceChunk, TextureKeyHash> textures;
    return textures.get({surface.image, surface.repeatS, surface.repeatT}, [&surface] {
        const osg::TextureChunkPtr chunk = osg::TextureChunk::create();
        chunk->setImage(surface.image);
        chunk->setWrapS(surface.repeatS ? osg::TextureChunk::REPEAT : osg::TextureChunk::CLAMP_TO_EDGE);
        chunk->setWrapT(surface.repeatT ? osg::TextureChunk::REPEAT : osg::TextureChunk::CLAMP_TO_EDGE);
        return std::make_unique<SurfaceChunk>(osg::StateChunkPtr(chunk));
    });
}

/// The chunk of all faces whose inside is, or is not, seen.
std::shared_ptr<SurfaceChunk> polygonChunk(bool solid)
{
    static SharedTable<bool, SurfaceChunk> chunks;
    return chunks.get(solid, [solid] {
        const osg::PolygonChunkPtr chunk = osg::PolygonChunk::create();
        chunk->setCullFace(solid ? osg::PolygonChunk::CULL_BACK : osg::PolygonChunk::CULL_NONE);
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
    return chunk;
}

} // namespace

bool Surface::operator==(const Surface& other) const
{
    const auto rgb = [](const osg::Color3f& c) { return std::make_tuple(c.red(), c.green(), c.blue()); };
    const auto values = [](const osg::Matrix& m) {
        std::array<float, 16> result;
        std::copy_n(m.getValues(), 16, result.begin());
        return result;
    };
    if (textureTransform.has_value() != other.textureTransform.has_value() ||
        (textureTransform && values(*textureTransform) != values(*other.textureTransform)))
        return false;
    // Exactly: colours have a tolerant comparison of their own.
    return kind == other.kind && vertexColors == other.vertexColors && lit == other.lit &&
           solid == other.solid && rgb(ambient) == rgb(other.ambient) && rgb(diffuse) == rgb(other.diffuse) &&
           rgb(specular) == rgb(other.specular) && rgb(emission) == rgb(other.emission) &&
           shininess == other.shininess && alpha == other.alpha && image == other.image &&
           repeatS == other.repeatS && repeatT == other.repeatT;
}

std::size_t Surface::hash() const
{
    std::size_t result = 0;
    const auto mix = [&result](std::size_t value) {
        result ^= value + 0x9e3779b97f4a7c15ULL + (result << 6) + (result >> 2);
    };
    for (const osg::Color3f* color : {&ambient, &diffuse, &specular, &emission}) {
        for (osg::UInt32 i = 0; i < 3; ++i)
            mix(std::hash<float>()((*color)[i]));
    }
    mix(std::hash<float>()(shininess));
    mix(std::hash<float>()(alpha));
    mix(std::hash<const void*>()(image.get().getCPtr()));
    mix(static_cast<std::size_t>(kind) * 64 + vertexColors * 16U + (lit ? 8 : 0) + (solid ? 4 : 0) +
        (repeatS ? 2 : 0) + (repeatT ? 1 : 0));
    return result;
}

std::shared_ptr<SurfaceCore> surfaceCore(const Surface& surface)
{
    return table().get(surface, [&surface] {
        auto result = std::make_unique<SurfaceCore>();
        const osg::ChunkMaterialPtr material = osg::ChunkMaterial::create();
        material->addChunk(materialChunk(surface));
        if (surface.image) {
            result->texture = textureChunk(surface);
            material->addChunk(result->texture->get());
        }
        if (surface.textureTransform) {
            const osg::TextureTransformChunkPtr chunk = osg::TextureTransformChunk::create();
            chunk->setMatrix(*surface.textureTransform);
            material->addChunk(chunk);
        }
        if (surface.kind == Surface::FACES && surface.solid) {
            result->polygon = polygonChunk(surface.solid);
            material->addChunk(result->polygon->get());
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
