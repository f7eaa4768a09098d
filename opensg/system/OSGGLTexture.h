#pragma once

#include "OSGGLObjects.h"

#include <OpenSG/OSGTextureChunk.h>

namespace osg {

class Image;

/// A texture in a GL context.
class GLTexture : public GLObject
{
public:
    /// Sends the image, unless only parameters have changed, and the parameters.
    void build(TextureChunk& chunk, const GLLimits& limits);
    void free() override;

    /// The kind of the texture, such as GL_TEXTURE_2D; 0 when there is nothing to show.
    UInt32 getTarget() const { return _target; }
    void bind() const;

private:
    void sendImage(TextureChunk& chunk, const GLLimits& limits);
    void sendLevel(Image& image, UInt32 target, UInt32 level, UInt32 frame, UInt32 side, bool again);
    void sendParameters(const TextureChunk& chunk, const GLLimits& limits);

    UInt32 _name = 0;
    UInt32 _target = 0;
    UInt64 _imageStamp = 0;
    UInt32 _levels = 0;
    // The form that was sent last: an image of the same form is sent into the same place.
    UInt64 _form[4] = {};
};

} // namespace osg
