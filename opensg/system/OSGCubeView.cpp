#include <OpenSG/OSGCubeView.h>

#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGMatrixCamera.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWindow.h>

#include "OSGGLContext.h"
#include "OSGGLObjects.h"

#include <epoxy/gl.h>

namespace osg {

namespace {

struct Side
{
    Vec3f forward;
    Vec3f up;
};

// As OpenGL wants the sides of cube maps: seen from within, the pictures stand on their heads.
const Side sides[6] = {{Vec3f(1, 0, 0), Vec3f(0, -1, 0)}, {Vec3f(-1, 0, 0), Vec3f(0, -1, 0)},
                       {Vec3f(0, 1, 0), Vec3f(0, 0, 1)},  {Vec3f(0, -1, 0), Vec3f(0, 0, -1)},
                       {Vec3f(0, 0, 1), Vec3f(0, -1, 0)}, {Vec3f(0, 0, -1), Vec3f(0, -1, 0)}};

// A picture of its own that GL draws into for as long as it lives.
class GLTarget
{
public:
    explicit GLTarget(GLsizei edge)
    {
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &_last);
        glGenFramebuffers(1, &_frame);
        glBindFramebuffer(GL_FRAMEBUFFER, _frame);
        glGenRenderbuffers(2, _buffers);
        attach(_buffers[0], GL_RGBA8, GL_COLOR_ATTACHMENT0, edge);
        attach(_buffers[1], GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL_ATTACHMENT, edge);
    }
    ~GLTarget()
    {
        glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(_last));
        glDeleteFramebuffers(1, &_frame);
        glDeleteRenderbuffers(2, _buffers);
    }
    GLTarget(const GLTarget&) = delete;
    GLTarget& operator=(const GLTarget&) = delete;

    static bool isComplete() { return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE; }

private:
    static void attach(GLuint buffer, GLenum format, GLenum place, GLsizei edge)
    {
        glBindRenderbuffer(GL_RENDERBUFFER, buffer);
        glRenderbufferStorage(GL_RENDERBUFFER, format, edge, edge);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
    }

    GLint _last = 0;
    GLuint _frame = 0;
    GLuint _buffers[2] = {};
};

Matrix viewingOf(const Side& side, const Pnt3f& place)
{
    const Vec3f right = side.forward.cross(side.up);
    Matrix result;
    for (UInt32 i = 0; i < 3; ++i) {
        result[i][0] = right[i];
        result[i][1] = side.up[i];
        result[i][2] = -side.forward[i];
    }
    Matrix step;
    step.setTranslate(-place[0], -place[1], -place[2]);
    result.mult(step);
    return result;
}

Matrix squareProjection(Real32 nearDistance, Real32 farDistance)
{
    const Real32 depth = farDistance - nearDistance;
    Matrix result;
    result[2][2] = -(farDistance + nearDistance) / depth;
    result[2][3] = -1;
    result[3][2] = -2 * farDistance * nearDistance / depth;
    result[3][3] = 0;
    return result;
}

bool hasForm(const ImagePtr& cube)
{
    return cube && cube->isValid() && cube->getSideCount() == 6 && cube->getWidth() == cube->getHeight() &&
           cube->getWidth() > 1 && cube->getPixelFormat() == Image::OSG_RGB_PF &&
           cube->getDataType() == Image::OSG_UINT8_IMAGEDATA && cube->getMipMapCount() == 1;
}

} // namespace

bool CubeView::draw(const WindowPtr& window, RenderAction& action, const ImagePtr& cube) const
{
    if (!window || !root || !background || !hasForm(cube) || !hasCurrentGLContext() || !(nearDistance > 0) ||
        !(farDistance > nearDistance))
        return false;
    window->frameInit();
    if (!window->getGLObjects().getLimits().framebuffers)
        return false;
    const GLTarget target(cube->getWidth());
    if (!GLTarget::isComplete())
        return false;
    const RefPtr<MatrixCameraPtr> camera(MatrixCamera::create());
    camera->setProjectionMatrix(squareProjection(nearDistance, farDistance));
    const RefPtr<ViewportPtr> port(Viewport::create());
    const Real32 last = static_cast<Real32>(cube->getWidth() - 1);
    port->setSize(0, 0, last, last);
    port->setCamera(camera.get());
    port->setRoot(root);
    port->setBackground(background);
    window->addPort(port.get());
    beginEditCP(cube, Image::PixelFieldMask);
    for (UInt32 i = 0; i < 6; ++i) {
        camera->setModelviewMatrix(viewingOf(sides[i], place));
        port->render(&action);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(0, 0, cube->getWidth(), cube->getHeight(), GL_RGB, GL_UNSIGNED_BYTE,
                     cube->getData(0, 0, i));
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
    }
    endEditCP(cube, Image::PixelFieldMask);
    window->subPort(port.get());
    return true;
}

} // namespace osg
