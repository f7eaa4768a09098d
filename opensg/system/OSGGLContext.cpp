#include "OSGGLContext.h"

#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGViewport.h>

#include <dlfcn.h>
#include <epoxy/gl.h>

namespace osg {

namespace {

using ContextQuery = void* (*)();

// One window system binding: a library that asks for its current context. A library that nobody has loaded
// has no current context, and is asked for again the next time.
struct Binding
{
    const char* library;
    const char* function;
    ContextQuery query = nullptr;

    void* context()
    {
        if (!query) {
            void* handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
            if (!handle)
                return nullptr;
            query = reinterpret_cast<ContextQuery>(dlsym(handle, function));
            // The loader's count stays raised, so that the address stays good.
            if (!query)
                return nullptr;
        }
        return query();
    }
};

} // namespace

void* currentGLContext()
{
    thread_local Binding bindings[] = {{"libGL.so.1", "glXGetCurrentContext"},
                                       {"libGLX.so.0", "glXGetCurrentContext"},
                                       {"libEGL.so.1", "eglGetCurrentContext"}};
    for (Binding& binding : bindings) {
        if (void* context = binding.context())
            return context;
    }
    return nullptr;
}

void reportGLErrors()
{
    // A lost context may answer an error for ever.
    const int most = 16;
    for (int i = 0; i < most; ++i) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR)
            return;
        FWARNING(("Window: GL error 0x%x left over at the end of a frame\n", error));
    }
}

GLViewportScope::GLViewportScope(const Viewport& port)
{
    const Int32 left = port.getPixelLeft();
    const Int32 bottom = port.getPixelBottom();
    glViewport(left, bottom, port.getPixelWidth(), port.getPixelHeight());
    if (!port.isFullWindow()) {
        glScissor(left, bottom, port.getPixelWidth(), port.getPixelHeight());
        glEnable(GL_SCISSOR_TEST);
    }
}

GLViewportScope::~GLViewportScope()
{
    glDisable(GL_SCISSOR_TEST);
}

} // namespace osg
