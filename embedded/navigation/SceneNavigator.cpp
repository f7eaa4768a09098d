#include "navigation/SceneNavigator.h"

#include "core/SceneProc.h"
#include "core/ViewpointProc.h"
#include "engine/ViewareaBehaviour.h"
#include "navigation/Collider.h"
#include "navigation/Keys.h"
#include "navigation/NavigatorCommands.h"
#include <OpenSG/OSGIntersectAction.h>
#include <algorithm>
#include <cmath>
#include <limits>

namespace Orvane {

namespace {

std::unique_ptr<InputHandler> makeNavigator(ViewareaProc& viewarea)
{
    return std::make_unique<SceneNavigator>(static_cast<ViewareaBehaviour&>(viewarea));
}

const InputHandlerRegistration registration(makeNavigator);

constexpr double pi = 3.14159265358979;
/// The pointer may tremble this far, in pixels, and it still is a click.
constexpr double clickSlack = 3.0;
/// Pixels of a drag that give the full speed.
constexpr double fullSpeedDrag = 80.0;
constexpr double mostSpeed = 4.0;
/// A step of the wheel brings the camera to this part of its distance.
constexpr double wheelStep = 0.85;
constexpr double keyTurnSpeed = 1.0; // radians a second
constexpr double keyZoomSpeed = 1.0; // the logarithm of the distance, a second
/// A frame that was late does not take the user further than this.
constexpr double longestFrame = 0.1;
constexpr double usualFrame = 1.0 / 60.0;
constexpr double infoInterval = 0.5;
constexpr double standByInterval = 0.1;
constexpr double emptySceneDistance = 10.0;
/// Coordinates of widgets are no larger.
constexpr double farthestPixel = 1e6;

double speedOf(double pixels)
{
    const double beyond = std::max(std::abs(pixels) - clickSlack, 0.0) / fullSpeedDrag;
    return std::copysign(std::min(beyond, mostSpeed), pixels);
}

bool isUsablePixel(double x, double y)
{
    return std::abs(x) <= farthestPixel && std::abs(y) <= farthestPixel;
}

} // namespace

SceneNavigator::SceneNavigator(ViewareaBehaviour& viewarea)
    : NavigatorProc(&viewarea.node())
    , _viewarea(viewarea)
    , _view(viewarea)
    , _display(viewarea)
{
}

SceneNavigator::~SceneNavigator() = default;

// ---- Input

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
    if (SceneProc* const scene = _viewarea.scene())
        scene->state().preferViewer(_viewarea);
    _drag.emplace(Drag{button, x, y, x, y, false, motionAt(x, y)});
}

void SceneNavigator::dragTo(double x, double y)
{
    if (!_drag || !isUsablePixel(x, y))
        return;
    _drag->x = x;
    _drag->y = y;
    const double right = x - _drag->startX;
    const double down = y - _drag->startY;
    if (!_drag->hasMoved && std::hypot(right, down) < clickSlack)
        return;
    _drag->hasMoved = true;
    if (travels())
        return;
    const ExamineMotion& motion = _drag->motion;
    switch (_drag->button) {
    case Buttons::left:
        _view.move(motion.turned(-right * pi / pictureSize(), -down * pi / pictureSize()));
        break;
    case Buttons::middle:
        _view.move(motion.panned(motion.start(), right / pictureHeight(), down / pictureHeight()));
        break;
    default:
        if (_view.isParallel()) {
            _view.scale(std::exp((y - _drag->startY) * 4.0 / pictureHeight()));
            _drag->startY = y;
        } else
            _view.move(motion.closer(motion.start(), std::exp(down * 4.0 / pictureHeight())));
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
    const Pose now = _view.pose();
    const Pose turned = Pose::looking(now.position, bounds.center() - now.position, now.up());
    _view.move(now);
    _view.travelToSee(bounds, turned, time);
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
    const ExamineMotion motion = motionAt(x, y);
    if (!_view.isParallel()) {
        _view.move(motion.closer(motion.start(), factor));
        return;
    }
    // What is under the pointer stays there.
    Pose pose = motion.start();
    const osg::Vec3d arm = motion.pivot() - pose.position;
    pose.position = pose.position +
                    (pose.right() * arm.dot(pose.right()) + pose.up() * arm.dot(pose.up())) * (1.0 - factor);
    _view.move(pose);
    _view.scale(factor);
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
            _pinch.emplace(Pinch{middleX, middleY, distance, 1.0, motionAt(middleX, middleY)});
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
    if (_view.isParallel()) {
        _view.scale(ratio / _pinch->startScale);
        _pinch->startScale = ratio;
        _view.move(motion.panned(motion.start(), right, down));
        return;
    }
    _view.move(motion.panned(motion.closer(motion.start(), ratio), right, down));
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

// ---- Frames

void SceneNavigator::follow(double time)
{
    if (_view.follow(time)) {
        _drag.reset();
        _pinch.reset();
        _target.reset();
        _hasWalked = false;
        _travel.stop();
    }
    if (_view.takeNewTypes()) {
        setMode(_view.settings().mode);
        _display.forgetHeadlight();
    }
}

double SceneNavigator::advance(double time)
{
    const double seconds = _lastTime < 0.0 ? usualFrame : std::clamp(time - _lastTime, 0.0, longestFrame);
    follow(time);
    _view.advance(time);
    const bool goes = isUsed() && (!_keys.isEmpty() || (travels() && _drag && _drag->hasMoved));
    if (goes && travels())
        go(velocity(), speed(), seconds);
    else if (goes)
        turnByKeys(seconds);
    _keys.endFrame();
    const bool falls = fall(seconds);
    _display.refresh(_view, nameOf(_mode), speed());
    const bool moves = goes || falls || _view.isTravelling() || _drag || _pinch || !_keys.isEmpty();
    _lastTime = moves ? time : -1.0;
    if (moves)
        return 0.0;
    if (_hasWalked)
        return standByInterval;
    return _display.hasInfoScreen() ? infoInterval : std::numeric_limits<double>::infinity();
}

void SceneNavigator::aim(SceneView& view)
{
    follow(_viewarea.contextTimeStamp());
    _view.aim(view);
    _display.aim(view);
}

void SceneNavigator::go(const Velocity& velocity, double speed, double seconds)
{
    SceneProc* const scene = _viewarea.scene();
    if (!scene || velocity.isNull())
        return;
    const Collider collider(*scene, avatar(), contextTimeStamp());
    const bool upright = _mode == NavigationMode::Walk;
    _hasWalked = _hasWalked || upright;
    _view.move(TravelMotion::advanced(_view, velocity, speed, seconds, upright, collider));
}

bool SceneNavigator::fall(double seconds)
{
    SceneProc* const scene = _viewarea.scene();
    if (!scene || _mode != NavigationMode::Walk || !_hasWalked || _view.isTravelling())
        return false;
    const NavigationSettings body = avatar();
    Pose pose = _view.pose();
    if (!_travel.settle(_view, Collider(*scene, body, contextTimeStamp()), body.avatarHeight, seconds, pose))
        return false;
    _view.move(pose);
    return true;
}

Velocity SceneNavigator::velocity() const
{
    Velocity result;
    result.forward = _keys.axis(Keys::up, Keys::down) + _keys.axis('w', 's');
    result.turn = _keys.axis(Keys::left, Keys::right);
    result.right = _keys.axis('d', 'a');
    result.up = _keys.axis('e', 'q');
    if (!_drag || !_drag->hasMoved)
        return result;
    const double right = speedOf(_drag->x - _drag->startX);
    const double down = speedOf(_drag->y - _drag->startY);
    switch (_drag->button) {
    case Buttons::left:
        result.forward -= down;
        result.turn -= right;
        break;
    case Buttons::middle:
        result.tilt -= down;
        result.turn -= right;
        break;
    default:
        result.right += right;
        result.up -= down;
        break;
    }
    return result;
}

void SceneNavigator::turnByKeys(double seconds)
{
    const double right = _keys.axis(Keys::right, Keys::left) * keyTurnSpeed * seconds;
    const double up = _keys.axis(Keys::up, Keys::down) * keyTurnSpeed * seconds;
    const double closer = _keys.axis('+', '-') * keyZoomSpeed * seconds;
    const ExamineMotion motion = motionRound(pointAhead());
    if (right != 0.0 || up != 0.0)
        _view.move(motion.turned(right, -up));
    if (closer == 0.0)
        return;
    if (_view.isParallel())
        _view.scale(std::exp(-closer));
    else
        _view.move(motion.closer(_view.pose(), std::exp(-closer)));
}

// ---- The scene

bool SceneNavigator::castRay(double x, double y, osg::Vec3d& point, osg::NodePtr* geometry) const
{
    SceneProc* const scene = _viewarea.scene();
    osg::Line ray;
    if (!scene || !_viewarea.viewRay(static_cast<int>(x), static_cast<int>(y), ray))
        return false;
    // What stands between the eye and the near plane counts, too.
    const osg::Vec3d eye = _view.pose().position;
    if (!_view.isParallel())
        ray.setValue(osg::Pnt3f(osg::Pnt3d(eye)), ray.getDirection());
    std::vector<Node*> chain;
    osg::Pnt3f hit;
    if (!scene->castRay(ray, chain, &hit, nullptr, geometry, nullptr, nullptr))
        return false;
    point = osg::Vec3d(hit[0], hit[1], hit[2]);
    return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

// What its author says, else what is under the pointer, else the middle of the scene: never a point that has
// nothing to do with what is seen, as the origin would be for a model far away from it.
ExamineMotion SceneNavigator::motionAt(double x, double y) const
{
    osg::Vec3d pivot;
    if (_mode == NavigationMode::LookAt && _target)
        pivot = *_target;
    else if (!_view.authoredPivot(pivot) && !castRay(x, y, pivot, nullptr))
        pivot = pointAhead();
    return motionRound(pivot);
}

ExamineMotion SceneNavigator::motionRound(const osg::Vec3d& pivot) const
{
    return ExamineMotion(_view, pivot, std::max(sceneSize() * 1e-4, pivot.length() * 1e-6));
}

osg::Vec3d SceneNavigator::pointAhead() const
{
    const Pose pose = _view.pose();
    osg::Vec3d point;
    if (_view.authoredPivot(point))
        return point;
    SceneProc* const scene = _viewarea.scene();
    const SceneBounds bounds = scene ? SceneBounds::of(*scene) : SceneBounds();
    if (bounds.isEmpty)
        return pose.position + pose.forward() * emptySceneDistance;
    // What lies behind cannot be kept an eye on.
    if ((bounds.center() - pose.position).dot(pose.forward()) > 0.0)
        return bounds.center();
    return pose.position + pose.forward() * std::max(bounds.diagonal() * 0.5, 1e-3);
}

double SceneNavigator::sceneSize() const
{
    SceneProc* const scene = _viewarea.scene();
    const SceneBounds bounds = scene ? SceneBounds::of(*scene) : SceneBounds();
    return bounds.isEmpty ? 0.0 : bounds.diagonal();
}

double SceneNavigator::speed() const
{
    return _view.settings().speedFor(sceneSize()) * _speedFactor;
}

NavigationSettings SceneNavigator::avatar() const
{
    NavigationSettings result = _view.settings();
    result.fitAvatar(sceneSize());
    return result;
}

double SceneNavigator::pictureHeight() const
{
    const osg::ViewportPtr port = _viewarea.port();
    return port->getParent() != osg::NullFC ? std::max(port->getPixelHeight(), 1) : 1;
}

double SceneNavigator::pictureSize() const
{
    const osg::ViewportPtr port = _viewarea.port();
    const double width = port->getParent() != osg::NullFC ? std::max(port->getPixelWidth(), 1) : 1;
    return std::min(width, pictureHeight());
}

// ---- Commands

void SceneNavigator::setMode(NavigationMode mode)
{
    if (mode == _mode)
        return;
    _mode = mode;
    _drag.reset();
    _pinch.reset();
    _keys.releaseAll();
    _travel.stop();
    _hasWalked = false;
}

void SceneNavigator::choose(NavigationMode mode)
{
    if (_view.settings().allows(mode))
        setMode(mode);
}

void SceneNavigator::examine(double)
{
    choose(NavigationMode::Examine);
}

void SceneNavigator::walk(double)
{
    choose(NavigationMode::Walk);
}

void SceneNavigator::fly(double)
{
    choose(NavigationMode::Fly);
}

void SceneNavigator::lookAt(double)
{
    choose(NavigationMode::LookAt);
}

void SceneNavigator::firstViewpoint(double time)
{
    goToViewpoint([](std::size_t, std::size_t) { return std::size_t(0); }, time);
}

void SceneNavigator::previousViewpoint(double time)
{
    goToViewpoint([](std::size_t now, std::size_t count) { return (now + count - 1) % count; }, time);
}

void SceneNavigator::nextViewpoint(double time)
{
    goToViewpoint([](std::size_t now, std::size_t count) { return (now + 1) % count; }, time);
}

void SceneNavigator::lastViewpoint(double time)
{
    goToViewpoint([](std::size_t, std::size_t count) { return count - 1; }, time);
}

void SceneNavigator::goToViewpoint(std::size_t (*choice)(std::size_t now, std::size_t count), double time)
{
    SceneProc* const scene = _viewarea.scene();
    if (!scene)
        return;
    const std::vector<BindableProc*>& all = scene->stack(BindableKind::Viewpoint).all();
    if (all.empty())
        return;
    const auto found = std::find(all.begin(), all.end(), _viewarea.viewpoint());
    const std::size_t now = found == all.end() ? 0 : static_cast<std::size_t>(found - all.begin());
    auto& chosen = static_cast<ViewpointProc&>(*all[choice(now, all.size())]);
    if (&chosen == _viewarea.viewpoint())
        _view.travelBack(time);
    else
        _viewarea.look(chosen, time);
}

void SceneNavigator::showAll(double time)
{
    if (SceneProc* const scene = _viewarea.scene())
        _view.travelToSee(SceneBounds::of(*scene), time);
}

void SceneNavigator::resetPosition(double time)
{
    _view.travelBack(time);
}

void SceneNavigator::toggleHeadlight(double)
{
    _display.toggleHeadlight();
}

void SceneNavigator::toggleVolumes(double)
{
    _display.toggleVolumes();
}

void SceneNavigator::nextDrawMode(double)
{
    _display.nextDrawMode();
}

void SceneNavigator::nextInfoScreen(double)
{
    _display.nextInfoScreen();
}

} // namespace Orvane
