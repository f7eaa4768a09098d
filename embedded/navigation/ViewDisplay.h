#pragma once

#include <OpenSG/OSGImageForeground.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGVolumeForeground.h>
#include <string>
#include <vector>

namespace Orvane {

class UserView;
class ViewareaBehaviour;
struct SceneView;

/// How a viewarea shows its scene, apart from where from: head light, solid or wire or points, bounding
/// volumes, and a screen with figures on top.
class ViewDisplay
{
public:
    explicit ViewDisplay(ViewareaBehaviour& viewarea);

    /// Turns the head light over: on where the scene has it off, and off where it is on.
    void toggleHeadlight();
    void toggleVolumes();
    void nextDrawMode();
    /// None, figures of the pictures, figures of the view, none again.
    void nextInfoScreen();
    /// Another `NavigationInfo` says how the head light is.
    void forgetHeadlight() { _headlightTurnedOver = false; }

    bool hasInfoScreen() const { return _screen != NO_SCREEN; }
    /// Writes the present figures. Asks for a picture when they differ from those that are shown.
    void refresh(const UserView& view, const char* mode, double speed);

    void aim(SceneView& view) const;

private:
    enum Screen : int { NO_SCREEN, PICTURE_SCREEN, VIEW_SCREEN, SCREEN_COUNT };

    std::vector<std::string> pictureFigures() const;
    std::vector<std::string> viewFigures(const UserView& view, const char* mode, double speed) const;

    ViewareaBehaviour& _viewarea;
    osg::RefPtr<osg::VolumeForegroundPtr> _volumes;
    osg::RefPtr<osg::ImageForegroundPtr> _info;
    std::vector<std::string> _lines; ///< as shown
    int _screen = NO_SCREEN;
    bool _headlightTurnedOver = false;
};

} // namespace Orvane
