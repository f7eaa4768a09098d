#include "ViewareaInput.h"
#include "ViewareaBehaviour.h"
#include "core/SceneProc.h"
#include <algorithm>
#include <limits>

namespace Orvane {

namespace {

std::vector<InputHandlerFactory>& factories()
{
    static std::vector<InputHandlerFactory> list;
    return list;
}

/// Wheel steps are presses without a release.
constexpr int heldButtons = 1 | 2 | 4;

/// The one that sensors know.
constexpr int sensorButton = 1;

} // namespace

InputHandler::~InputHandler() = default;

void InputHandler::aim(SceneLayer&, SceneView&)
{
}

InputHandlerRegistration::InputHandlerRegistration(InputHandlerFactory factory)
{
    factories().push_back(factory);
}

ViewareaInput::ViewareaInput(ViewareaBehaviour& viewarea)
    : _viewarea(viewarea)
{
    for (const InputHandlerFactory factory : factories())
        _handlers.push_back(factory(_viewarea));
}

ViewareaInput::~ViewareaInput() = default;

void ViewareaInput::handle(const InputEvent& event, double time)
{
    const int heldBefore = _buttons;
    if (event.kind == InputEvent::BUTTON_PRESS)
        _buttons |= event.code & heldButtons;
    else if (event.kind == InputEvent::BUTTON_RELEASE)
        _buttons &= ~event.code;
    else if (event.kind == InputEvent::TOUCH)
        _touches = static_cast<int>(std::count_if(event.touches.begin(), event.touches.end(),
                                                  [](const TouchPointRecord& p) { return p.state != 1; }));
    if (toSensors(event, heldBefore, time))
        return;
    for (const std::unique_ptr<InputHandler>& handler : _handlers)
        handler->handle(event, time);
}

bool ViewareaInput::toSensors(const InputEvent& event, int heldBefore, double time)
{
    SceneProc* const scene = _viewarea.scene();
    switch (event.kind) {
    case InputEvent::KEY_PRESS:
        return scene && scene->state().pressKey(event.code, time);
    case InputEvent::KEY_RELEASE:
        // The press may have gone to either.
        if (scene)
            scene->state().releaseKey(event.code, time);
        return false;
    case InputEvent::MOUSE_MOVE:
        if (!isNavigating())
            pointTo(event.x, event.y, time);
        return _kept != 0;
    case InputEvent::BUTTON_PRESS:
        return press(event, heldBefore, time);
    case InputEvent::BUTTON_RELEASE:
        return release(event, time);
    case InputEvent::TOUCH:
        return touch(event, time);
    default:
        return false;
    }
}

bool ViewareaInput::press(const InputEvent& event, int heldBefore, double time)
{
    if (_kept == 0 && (event.code != sensorButton || heldBefore != 0))
        return false;
    if (_kept == 0) {
        pointTo(event.x, event.y, time);
        if (!_pointer.press(time))
            return false;
    }
    _kept |= event.code & heldButtons;
    return true;
}

bool ViewareaInput::release(const InputEvent& event, double time)
{
    if ((_kept & event.code) == 0)
        return false;
    _kept &= ~event.code;
    if (event.code == sensorButton) {
        pointTo(event.x, event.y, time);
        _pointer.release(time);
    }
    return true;
}

bool ViewareaInput::touch(const InputEvent& event, double time)
{
    const auto primary = std::find_if(event.touches.begin(), event.touches.end(),
                                      [](const TouchPointRecord& point) { return point.primary; });
    if (primary != event.touches.end() && (_touchKept || primary->state == 0)) {
        pointTo(pixel(primary->x), pixel(primary->y), time);
        if (primary->state == 0)
            _touchKept = _pointer.press(time);
    }
    const bool kept = _touchKept;
    if (_touches == 0 && !event.touches.empty()) {
        if (_touchKept)
            _pointer.release(time);
        _touchKept = false;
    }
    // A finger that is not down, or moves the viewer, is over nothing.
    if (!_touchKept)
        leave(time);
    return kept;
}

void ViewareaInput::pointTo(int x, int y, double time)
{
    _isPointing = true;
    _x = x;
    _y = y;
    _pointer.move(_viewarea.scene(), _viewarea.rays(x, y), _viewarea.pictureVersion(), time);
}

void ViewareaInput::leave(double time)
{
    if (_kept != 0 || _touchKept)
        return;
    _isPointing = false;
    _pointer.leave(time);
}

double ViewareaInput::advance(double time)
{
    if (_isPointing && !isNavigating())
        pointTo(_x, _y, time);
    double wanted = std::numeric_limits<double>::infinity();
    for (const std::unique_ptr<InputHandler>& handler : _handlers)
        wanted = std::min(wanted, handler->advance(time));
    return wanted;
}

bool ViewareaInput::userPlace(osg::Matrix& cameraToWorld) const
{
    return std::any_of(_handlers.begin(), _handlers.end(),
                       [&](const auto& handler) { return handler->userPlace(cameraToWorld); });
}

bool ViewareaInput::moveUser(const osg::Matrix& cameraToWorld, double time)
{
    return std::any_of(_handlers.begin(), _handlers.end(),
                       [&](const auto& handler) { return handler->moveUser(cameraToWorld, time); });
}

void ViewareaInput::aim(SceneLayer& layer, SceneView& view)
{
    for (const std::unique_ptr<InputHandler>& handler : _handlers)
        handler->aim(layer, view);
}

void ViewareaInput::letGo(double time)
{
    const bool held = holdsPointer();
    _buttons = 0;
    _kept = 0;
    _touches = 0;
    _touchKept = false;
    leave(time);
    if (!held)
        return;
    for (const std::unique_ptr<InputHandler>& handler : _handlers)
        handler->letGo(time);
}

} // namespace Orvane
