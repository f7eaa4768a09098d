#pragma once

#include "OSGAction.h"
#include "OSGCameraFields.h"
#include "OSGMatrix.h"
#include "OSGWindowFields.h"

namespace osg {

class Viewport;
class Window;

/// What all that is drawn with needs to know: where to, and through which matrices. The viewport that is
/// being drawn sets it.
class OSG_SYSTEMLIB_DLLMAPPING RenderActionBase : public Action
{
public:
    /// The window and the viewport that are being drawn; null outside of a frame.
    Window* getWindow() const { return _window; }
    Viewport* getViewport() const { return _viewport; }
    /// From world to the camera's system, and from there to clip space.
    const Matrix& getViewing() const { return _viewing; }
    const Matrix& getProjection() const { return _projection; }

    /// Begins the picture of a viewport with its matrices; the null pointer ends it.
    void setViewport(Viewport* viewport);

protected:
    RenderActionBase() = default;

private:
    Window* _window = nullptr;
    Viewport* _viewport = nullptr;
    Matrix _viewing;
    Matrix _projection;
};

} // namespace osg
