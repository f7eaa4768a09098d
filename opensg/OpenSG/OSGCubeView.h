#pragma once

#include "OSGBackgroundFields.h"
#include "OSGImageFields.h"
#include "OSGNodePtr.h"
#include "OSGVector.h"
#include "OSGWindowFields.h"

namespace osg {

class RenderAction;

/// What is seen from a place towards the six sides of the world, as a cube map has it.
struct OSG_SYSTEMLIB_DLLMAPPING CubeView
{
    NodePtr root;             ///< what is drawn
    BackgroundPtr background; ///< behind it
    Pnt3f place;
    Real32 nearDistance = 0.1f;
    Real32 farDistance = 100;

    /// Draws into an image of six square sides of RGB bytes. The context of `window` is current, and no
    /// frame of it has begun. What the action has as its mask is drawn. False, with the image left as it is,
    /// where GL cannot draw beside the window or the image has another form.
    bool draw(const WindowPtr& window, RenderAction& action, const ImagePtr& cube) const;
};

} // namespace osg
