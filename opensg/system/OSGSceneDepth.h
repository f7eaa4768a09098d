#pragma once

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGGLSlot.h>

namespace osg {

class RenderActionBase;

/// How far from the viewer everything opaque in a viewport is, as a texture: a copy of the depth buffer that
/// is taken when the first program of a picture asks for it. Each window has a texture of its own.
class SceneDepth
{
public:
    /// What is opaque has been drawn: the next `bind` takes a new copy.
    void begin() { _isTaken = false; }

    /// Puts the texture into a unit, without having fixed drawing use it. False when GL cannot copy depth.
    bool bind(RenderActionBase& action, UInt32 unit);

    /// Left and lower edge of the viewport in pixels, and 1 by its width and height.
    const Real32* getPart() const { return _part; }

private:
    GLSlot _glSlot;
    bool _isTaken = false;
    bool _isUsable = false;
    Real32 _part[4] = {};
};

} // namespace osg
