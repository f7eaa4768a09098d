// What the input of a viewarea makes its user do: drags, wheel, fingers, and keys.

#include "core/SceneLayer.h"
#include "engine/ViewareaBehaviour.h"
#include "navigation/Keys.h"
#include "navigation/NavigatorCommands.h"
#include "navigation/SceneNavigator.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

constexpr double pi = 3.14159265358979;
/// A step of the wheel brings the camera to this part of its distance.
constexpr double wheelStep = 0.85;
/// Coordinates of widgets are no larger.
constexpr double farthestPixel = 1e6;

bool isUsablePixel(double x, double y)
{
    return std::abs(x) <= farthestPixel && std::abs(y) <= farthestPixel;
}

} // namespace

void SceneNavigator::handle(const InputEvent& event, double time)
{
    follow(time);
    switch (event.kind) {
    case InputEvent::BUTTON_PRESS:
        if (event.code == Buttons::wheelUp || event.code == Buttons::wheelDown)
            turnWheel(event.code == Buttons::wheelUp, event.x, event.y);
        else
            press(event.code, event.x, event.y);
        break;
    case InputEvent::BUTTON_RELEASE:
        release(event.code, time);
        break;
    case InputEvent::MOUSE_MOVE:
        dragTo(event.x, event.y);
        break;
    case InputEvent::TOUCH:
        touch(event.touches, time);
        break;
    case InputEvent::KEY_PRESS:
        pressKey(event.code, time);
        break;
    case InputEvent::KEY_RELEASE:
        _keys.release(event.code);
        break;
    case InputEvent::MESSAGE:
        run(event.message, time);
        break;
    case InputEvent::BROWSE:
        break;
    }
}

void SceneNavigator::letGo(double)
{
    _drag.reset();
    _pinch.reset();
    _fingers.clear();
    _keys.releaseAll();
}

void SceneNavigator::press(int button, double x, double y)
{
    if (!isUsed() || _drag || !isUsablePixel(x, y))
        return;
    if (SceneLayer* const scene = _viewarea.activeLayer())
        scene->state().preferViewer(_viewarea);
    _drag.emplace(Drag{button, x, y, x, y, false, button == Buttons::left ? motionAt(x, y) : motionTo(x, y)});
}

void SceneNavigator::dragTo(double x, double y)
{
    if (!_drag || !isUsablePixel(x, y))
        return;
    _drag->x = x;
    _drag->y = y;
    const double right = x - _drag->startX;
    const double down = y - _drag->startY;
    if (!_drag->hasMoved && std::hypot(right, down) < Buttons::clickSlack)
        return;
    _drag->hasMoved = true;
    if (travels())
        return;
    const ExamineMotion& motion = _drag->motion;
    switch (_drag->button) {
    case Buttons::left:
        _view->move(motion.turned(-right * pi / pictureSize(), -down * pi / pictureSize()));
        break;
    case Buttons::middle:
        _view->move(motion.panned(motion.start(), right / pictureHeight(), down / pictureHeight()));
        break;
    default:
        if (_view->isParallel()) {
            _view->scale(std::exp((y - _drag->startY) * 4.0 / pictureHeight()));
            _drag->startY = y;
        } else
            _view->move(motion.closer(motion.start(), std::exp(down * 4.0 / pictureHeight())));
        break;
    }
}

void SceneNavigator::release(int button, double time)
{
    if (!_drag || _drag->button != button)
        return;
    const bool isClick = !_drag->hasMoved && button == Buttons::left;
    if (isClick)
        click(time);
    _drag.reset();
}

void SceneNavigator::click(double time)
{
    osg::Vec3d point;
    osg::NodePtr geometry;
    if (_mode != NavigationMode::LookAt || !castRay(_drag->startX, _drag->startY, point, &geometry))
        return;
    osg::DynamicVolume volume;
    geometry->getWorldVolume(volume);
    const SceneBounds bounds = SceneBounds::of(volume);
    if (bounds.isEmpty)
        return;
    _target = bounds.center();
    const Pose now = _view->pose();
    const Pose turned = Pose::looking(now.position, bounds.center() - now.position, now.up());
    _view->move(now);
    _view->travelToSee(bounds, turned, time);
}

void SceneNavigator::turnWheel(bool closer, int x, int y)
{
    if (!isUsed() || !isUsablePixel(x, y))
        return;
    if (travels()) {
        const double step = speed() * 0.25 * (closer ? 1.0 : -1.0);
        go(Velocity{1.0, 0.0, 0.0, 0.0, 0.0}, step, 1.0);
        return;
    }
    const double factor = closer ? wheelStep : 1.0 / wheelStep;
    const ExamineMotion motion = motionTo(x, y);
    if (!_view->isParallel()) {
        _view->move(motion.closer(motion.start(), factor));
        return;
    }
    // What is under the pointer stays there.
    Pose pose = motion.start();
    const osg::Vec3d arm = motion.pivot() - pose.position;
    pose.position = pose.position +
                    (pose.right() * arm.dot(pose.right()) + pose.up() * arm.dot(pose.up())) * (1.0 - factor);
    _view->move(pose);
    _view->scale(factor);
}

void SceneNavigator::touch(const std::vector<TouchPointRecord>& points, double time)
{
    constexpr int ended = 1;
    std::vector<const TouchPointRecord*> down;
    std::vector<int> fingers;
    for (const TouchPointRecord& point : points) {
        if (point.state != ended && isUsablePixel(static_cast<double>(point.x), static_cast<double>(point.y)))
        {
            down.push_back(&point);
            fingers.push_back(point.id);
        }
    }
    std::sort(fingers.begin(), fingers.end());
    if (down.empty()) {
        release(Buttons::left, time);
        letGo(time);
        return;
    }
    const double x = static_cast<double>(down[0]->x);
    const double y = static_cast<double>(down[0]->y);
    const bool isNew = fingers != _fingers;
    _fingers = fingers;
    if (down.size() == 1) {
        if (isNew) {
            _pinch.reset();
            _drag.reset();
            press(Buttons::left, x, y);
        } else
            dragTo(x, y);
        return;
    }
    const double otherX = static_cast<double>(down[1]->x);
    const double otherY = static_cast<double>(down[1]->y);
    const double middleX = (x + otherX) * 0.5;
    const double middleY = (y + otherY) * 0.5;
    const double distance = std::max(std::hypot(otherX - x, otherY - y), 1.0);
    if (isNew) {
        _drag.reset();
        _pinch.reset();
        if (isUsed())
            _pinch.emplace(Pinch{middleX, middleY, distance, 1.0, motionTo(middleX, middleY)});
    } else
        pinchTo(middleX, middleY, distance);
}

void SceneNavigator::pinchTo(double x, double y, double distance)
{
    if (!_pinch)
        return;
    const ExamineMotion& motion = _pinch->motion;
    const double ratio = _pinch->startDistance / distance;
    const double right = (x - _pinch->startX) / pictureHeight();
    const double down = (y - _pinch->startY) / pictureHeight();
    if (_view->isParallel()) {
        _view->scale(ratio / _pinch->startScale);
        _pinch->startScale = ratio;
        _view->move(motion.panned(motion.start(), right, down));
        return;
    }
    _view->move(motion.panned(motion.closer(motion.start(), ratio), right, down));
}

void SceneNavigator::pressKey(int key, double time)
{
    if (key == '+' || key == '-') {
        if (travels())
            _speedFactor = std::clamp(_speedFactor * (key == '+' ? 2.0 : 0.5), 1.0 / 64.0, 64.0);
    }
    const NavigatorCommand* const command =
        std::find_if(NavigatorCommands::begin(), NavigatorCommands::end(),
                     [key](const NavigatorCommand& entry) { return entry.key == key; });
    if (!isUsed())
        return;
    if (command != NavigatorCommands::end())
        (this->*command->run)(time);
    else
        _keys.press(key);
}

void SceneNavigator::run(const std::string& message, double time)
{
    const NavigatorCommand* const command =
        std::find_if(NavigatorCommands::begin(), NavigatorCommands::end(),
                     [&message](const NavigatorCommand& entry) { return message == entry.name; });
    if (command != NavigatorCommands::end())
        (this->*command->run)(time);
}

} // namespace Orvane
