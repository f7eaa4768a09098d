#include "OSGSceneDepth.h"

#include "OSGGLObjects.h"

#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGWindow.h>

#include <algorithm>
#include <epoxy/gl.h>

namespace osg {

namespace {

/// The copy in a GL context.
class GLDepth : public GLObject
{
public:
    void free() override
    {
        glDeleteTextures(1, &_name);
        _name = 0;
        _width = _height = 0;
    }

    /// Puts the texture into the active unit.
    void bind()
    {
        if (_name == 0)
            glGenTextures(1, &_name);
        glBindTexture(GL_TEXTURE_2D, _name);
    }

    /// Fills the texture, which is bound.
    void take(const GLint* viewport)
    {
        if (viewport[2] == _width && viewport[3] == _height) {
            glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, viewport[0], viewport[1], _width, _height);
            return;
        }
        _width = viewport[2];
        _height = viewport[3];
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, viewport[0], viewport[1], _width, _height, 0);
    }

private:
    GLuint _name = 0;
    GLint _width = 0;
    GLint _height = 0;
};

/// GL copies no depth of several samples out of a picture that is not a window.
bool canCopy()
{
    GLint frame = 0;
    GLint samples = 0;
    GLint bits = 0;
    if (epoxy_gl_version() >= 30 || epoxy_has_gl_extension("GL_ARB_framebuffer_object"))
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &frame);
    glGetIntegerv(GL_SAMPLE_BUFFERS, &samples);
    glGetIntegerv(GL_DEPTH_BITS, &bits);
    return bits > 0 && (frame == 0 || samples == 0);
}

} // namespace

bool SceneDepth::bind(RenderActionBase& action, UInt32 unit)
{
    GLint viewport[4] = {};
    if (!_isTaken) {
        glGetIntegerv(GL_VIEWPORT, viewport);
        _isUsable = canCopy() && viewport[2] > 0 && viewport[3] > 0;
    }
    if (_isUsable) {
        GLDepth& depth = action.getWindow()->getGLObjects().get<GLDepth>(
            _glSlot, [](auto old) { return old ? std::move(old) : std::make_unique<GLDepth>(); });
        glActiveTexture(GL_TEXTURE0 + unit);
        depth.bind();
        if (!_isTaken) {
            depth.take(viewport);
            std::copy_n(viewport, 2, _part);
            _part[2] = 1.f / static_cast<Real32>(viewport[2]);
            _part[3] = 1.f / static_cast<Real32>(viewport[3]);
        }
        glActiveTexture(GL_TEXTURE0);
    }
    _isTaken = true;
    return _isUsable;
}

} // namespace osg
