#pragma once

#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGWindow.h>
#include <Orvane/Export.h>

namespace osg {
class RenderAction;
}

namespace Orvane {

/// What the pictures within a picture are drawn with: that of the window that is drawn next.
struct InnerPictureTools
{
    osg::WindowPtr window;
    osg::RenderAction& action;
    osg::NodePtr root;             ///< the scene, under the light of the viewer
    osg::NodePtr scene;            ///< alone
    osg::BackgroundPtr background; ///< of the scene
    double time = 0.0;
};

/// What draws the scene for itself before each picture of it, such as a mirror. The window's context is
/// current.
class ORVANE_API InnerPicture
{
public:
    virtual ~InnerPicture();

    virtual void draw(const InnerPictureTools& tools) = 0;
};

} // namespace Orvane
