#pragma once

#include "OSGAction.h"
#include "OSGCameraFields.h"
#include "OSGMatrix.h"
#include "OSGWindowFields.h"

namespace osg {

struct Surroundings;
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
    /// How the camera is turned in the world, without its place.
    Matrix getTurnToWorld() const;

    /// Begins the picture of a viewport with its matrices; the null pointer ends it.
    void setViewport(Viewport* viewport);

    /// For chunks: whether what is drawn now brings its own colours.
    bool hasVertexColors() const { return _vertexColors; }
    /// For chunks: whether what is drawn now mixes with what is there.
    bool isTransparentPass() const { return _transparentPass; }
    /// For chunks: whether a light is so near that it changes over the faces of what is drawn now.
    bool hasNearLights() const { return _nearLights; }
    /// For chunks: what acts on what is drawn now; null outside of a picture.
    const Surroundings* getSurroundings() const { return _surroundings; }
    /// For chunks: the sense in which front faces run, 0x0900 or 0x0901 as in GL. Matrices that mirror turn
    /// it.
    void setFrontFace(UInt32 sense) { _frontFace = sense; }
    UInt32 getFrontFace() const { return _frontFace; }
    /// For chunks: how the viewport wants faces drawn.
    UInt32 getPolygonMode() const { return _polygonMode; }

protected:
    RenderActionBase() = default;

private:
    friend class Painter;

    bool _vertexColors = false;
    bool _transparentPass = false;
    bool _nearLights = false;
    const Surroundings* _surroundings = nullptr;
    UInt32 _frontFace = 0x0901;
    UInt32 _polygonMode = 0x1B02;
    Window* _window = nullptr;
    Viewport* _viewport = nullptr;
    Matrix _viewing;
    Matrix _projection;
};

} // namespace osg
