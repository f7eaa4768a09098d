#pragma once

namespace osg {

class Viewport;

/// The GL context that is current in the calling thread, of whatever window system; null without one. Makes
/// no GL call, so that it may be asked where GL is not even loaded.
void* currentGLContext();

inline bool hasCurrentGLContext()
{
    return currentGLContext() != nullptr;
}

/// Logs and clears the errors that GL calls have left.
void reportGLErrors();

/// Directs drawing to the rectangle of a viewport, for its own lifetime.
class GLViewportScope
{
public:
    explicit GLViewportScope(const Viewport& port);
    ~GLViewportScope();
    GLViewportScope(const GLViewportScope&) = delete;
    GLViewportScope& operator=(const GLViewportScope&) = delete;
};

} // namespace osg
