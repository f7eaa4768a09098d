#pragma once

#include "engine/InputHandler.h"
#include "navigation/ExamineMotion.h"
#include "navigation/HeldKeys.h"
#include "navigation/TravelMotion.h"
#include "navigation/UserView.h"
#include "navigation/ViewDisplay.h"
#include <OpenSG/OSGNode.h>
#include <Orvane/NavigatorProc.h>
#include <optional>
#include <unordered_map>

namespace Orvane {

class ViewareaBehaviour;

/// The navigator of a viewarea: turns buttons, wheel, keys, touches and messages into motions of its user, as
/// the bound `NavigationInfo` allows. The viewarea's input owns it.
class SceneNavigator final : public NavigatorProc, public InputHandler
{
public:
    explicit SceneNavigator(ViewareaBehaviour& viewarea);
    ~SceneNavigator() override;

    // InputHandler
    void handle(const InputEvent& event, double time) override;
    double advance(double time) override;
    void letGo(double time) override;
    void aim(SceneLayer& layer, SceneView& view) override;
    bool userPlace(osg::Matrix& cameraToWorld) const override;
    bool moveUser(const osg::Matrix& cameraToWorld, double time) override;

    NavigationMode mode() const { return _mode; }

    // What messages and keys ask for. A mode that the bound `NavigationInfo` does not allow is not taken.
    void examine(double time);
    void walk(double time);
    void fly(double time);
    void lookAt(double time);
    void firstViewpoint(double time);
    void previousViewpoint(double time);
    void nextViewpoint(double time);
    void lastViewpoint(double time);
    void showAll(double time);
    void resetPosition(double time);
    void toggleHeadlight(double time);
    void toggleVolumes(double time);
    void nextDrawMode(double time);
    void nextInfoScreen(double time);

private:
    /// A button or a finger that is down.
    struct Drag
    {
        int button = 0; ///< the one that began it
        double startX = 0.0;
        double startY = 0.0;
        double x = 0.0;
        double y = 0.0;
        bool hasMoved = false;
        ExamineMotion motion;
    };
    /// Two fingers.
    struct Pinch
    {
        double startX = 0.0; ///< of their middle
        double startY = 0.0;
        double startDistance = 0.0;
        double startScale = 1.0;
        ExamineMotion motion;
    };

    /// The user in a layer; null for that of no scene.
    UserView& viewOf(const SceneLayer* layer);
    void follow(double time);
    void setMode(NavigationMode mode);
    void choose(NavigationMode mode);
    bool travels() const { return _mode == NavigationMode::Walk || _mode == NavigationMode::Fly; }
    bool isUsed() const { return _mode != NavigationMode::None; }

    void press(int button, double x, double y);
    void dragTo(double x, double y);
    void release(int button, double time);
    void turnWheel(bool closer, int x, int y);
    void touch(const std::vector<TouchPointRecord>& points, double time);
    void pinchTo(double x, double y, double distance);
    void pressKey(int key, double time);
    void run(const std::string& message, double time);
    void click(double time);

    bool castRay(double x, double y, osg::Vec3d& point, osg::NodePtr* geometry) const;
    /// What turns the scene when the pointer goes down here.
    ExamineMotion motionAt(double x, double y) const;
    /// What shifts it, or brings it nearer.
    ExamineMotion motionTo(double x, double y) const;
    ExamineMotion motionRound(const osg::Vec3d& pivot) const;
    osg::Vec3d pointAhead() const;
    double sceneSize() const;
    double speed() const;
    double pictureSize() const;
    double pictureHeight() const;

    void go(const Velocity& velocity, double speed, double seconds);
    bool fall(double seconds);
    void turnByKeys(double seconds);
    Velocity velocity() const;
    NavigationSettings avatar() const;
    void goToViewpoint(std::size_t (*choice)(std::size_t now, std::size_t count), double time);

    ViewareaBehaviour& _viewarea;
    std::unordered_map<unsigned long long, UserView> _views; ///< by the ids of their layers
    UserView* _view;                                         ///< of the layer in which the user navigates
    ViewDisplay _display;
    TravelMotion _travel;
    HeldKeys _keys;
    std::optional<Drag> _drag;
    std::optional<Pinch> _pinch;
    std::vector<int> _fingers; ///< ids of the fingers of the present gesture
    NavigationMode _mode = NavigationMode::Examine;
    double _speedFactor = 1.0;
    double _lastTime = -1.0; ///< of the last frame that moved; negative at rest
    bool _hasWalked = false; ///< gravity counts from the first step on, so that no scene begins with a fall
    std::optional<osg::Vec3d> _target; ///< what was looked at last
};

} // namespace Orvane
