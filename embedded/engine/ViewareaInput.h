#pragma once

#include "InputHandler.h"
#include "core/Pointer.h"
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

struct SceneView;
class SceneLayer;
class ViewareaBehaviour;

/// The input of one viewarea: the scene's sensors come first, what they do not take goes to the handlers.
class ViewareaInput
{
public:
    explicit ViewareaInput(ViewareaBehaviour& viewarea);
    ~ViewareaInput();

    void handle(const InputEvent& event, double time);

    /// Follows what has moved under the pointer, and lets the handlers go on. The answer is in how many
    /// seconds one of them wants the next frame.
    double advance(double time);

    /// The pointer has gone elsewhere.
    void leave(double time);
    /// True while the pointer is over a sensor, or drags one.
    bool isOverSensor() const { return _pointer.isOverSensor(); }
    /// What that sensor says of itself.
    std::string sensorDescription() const { return _pointer.description(); }

    /// True while a button or a touch that went down here is held: the pointer belongs to this viewarea.
    bool holdsPointer() const { return _buttons != 0 || _touches > 0; }

    /// The place of the user, as the first handler knows it that has one. False when none has.
    bool userPlace(osg::Matrix& cameraToWorld) const;
    bool moveUser(const osg::Matrix& cameraToWorld, double time);

    /// Lets the handlers say what the user sees of a layer.
    void aim(SceneLayer& layer, SceneView& view);

    /// What is held is let go.
    void letGo(double time);

private:
    bool toSensors(const InputEvent& event, int heldBefore, double time);
    bool press(const InputEvent& event, int heldBefore, double time);
    bool release(const InputEvent& event, double time);
    bool touch(const InputEvent& event, double time);
    void pointTo(int x, int y, double time);
    /// True while a button is held that the handlers have got.
    bool isNavigating() const { return (_buttons & ~_kept) != 0; }

    ViewareaBehaviour& _viewarea;
    Pointer _pointer;
    std::vector<std::unique_ptr<InputHandler>> _handlers;
    int _buttons = 0; ///< those that are down, as a mask
    int _kept = 0;    ///< those of them of which the handlers hear nothing
    int _touches = 0; ///< fingers that are down
    bool _touchKept = false;
    bool _isPointing = false; ///< the pointer is here, at the place below
    int _x = 0;
    int _y = 0;
};

} // namespace Orvane
