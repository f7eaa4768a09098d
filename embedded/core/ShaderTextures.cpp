#include "core/ShaderTextures.h"
#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGTextureChunk.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeLink.h>
#include <Orvane/SFImage.h>
#include <Orvane/SFNode.h>

namespace Orvane {

void ShaderTextures::begin()
{
    _lastUses.swap(_uses);
    _lastTextures.swap(_textures);
}

void ShaderTextures::end()
{
    _lastUses.clear();
    _lastTextures.clear();
}

bool ShaderTextures::take(const Field& field, osg::SHLChunk::Value& value)
{
    switch (field.dataType()) {
    case SFNODE_DT:
        takeNode(const_cast<NodeLink&>(static_cast<const SFNode&>(field).link()).directNode(), value);
        break;
    case MFNODE_DT:
        for (NodeLink& link : static_cast<const MFNode&>(field))
            takeNode(link.directNode(), value);
        break;
    case SFIMAGE_DT:
        takeImage(static_cast<const SFImage&>(field).image().rco(), value);
        break;
    case MFIMAGE_DT:
        for (const Image& image : static_cast<const MFImage&>(field).values())
            takeImage(image.rco(), value);
        break;
    default:
        break;
    }
    return !value.textures.empty();
}

void ShaderTextures::takeNode(Node* node, osg::SHLChunk::Value& value)
{
    auto* const texture = elementOf<TextureProc>(node);
    if (!texture)
        return;
    _uses.emplace_back();
    _uses.back().set(_shader, texture);
    Surface surface;
    texture->describe(surface);
    for (const SurfaceTexture& each : surface.textures)
        takeTexture(each, value);
}

void ShaderTextures::takeImage(const osg::ImagePtr& image, osg::SHLChunk::Value& value)
{
    if (!image || image->getWidth() < 1 || !image->getData())
        return;
    SurfaceTexture texture;
    texture.image = image;
    takeTexture(texture, value);
}

void ShaderTextures::takeTexture(const SurfaceTexture& texture, osg::SHLChunk::Value& value)
{
    _textures.push_back(surfaceTexture(texture));
    value.textures.emplace_back(osg::TextureChunkPtr::dcast(_textures.back()->get()));
}

} // namespace Orvane
