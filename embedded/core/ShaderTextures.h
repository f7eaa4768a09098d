#pragma once

#include "core/Surface.h"
#include "core/Use.h"
#include <OpenSG/OSGSHLChunk.h>
#include <memory>
#include <vector>

namespace Orvane {

class Field;
class Node;
class TextureProc;

/// The textures that fields of a shader hold: nodes, of whose changes the shader is told, and images.
class ShaderTextures
{
public:
    explicit ShaderTextures(ElementProc& shader)
        : _shader(shader)
    {
    }

    /// The fields are gone through anew. What was taken before is kept until `end`, as much of it comes
    /// again.
    void begin();
    void end();

    /// Adds the textures of a field to \a value; false when the field holds none.
    bool take(const Field& field, osg::SHLChunk::Value& value);

private:
    void takeNode(Node* node, osg::SHLChunk::Value& value);
    void takeTexture(const SurfaceTexture& texture, osg::SHLChunk::Value& value);
    void takeImage(const osg::ImagePtr& image, osg::SHLChunk::Value& value);

    ElementProc& _shader;
    std::vector<Use> _uses;
    std::vector<std::shared_ptr<SurfaceChunk>> _textures;
    std::vector<Use> _lastUses;
    std::vector<std::shared_ptr<SurfaceChunk>> _lastTextures;
};

} // namespace Orvane
