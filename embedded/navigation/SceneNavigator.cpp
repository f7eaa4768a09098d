#include "navigation/SceneNavigator.h"

#include "core/SceneLayer.h"
#include "engine/ViewareaBehaviour.h"
#include "navigation/Collider.h"
#include "navigation/Keys.h"
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

/// Pixels of a drag that give the full speed.
constexpr double fullSpeedDrag = 80.0;
constexpr double mostSpeed = 4.0;
constexpr double keyTurnSpeed = 1.0; // radians a second
constexpr double keyZoomSpeed = 1.0; // the logarithm of the distance, a second
/// A frame that was late does not take the user further than this.
constexpr double longestFrame = 0.1;
constexpr double usualFrame = 1.0 / 60.0;
constexpr double infoInterval = 0.5;
constexpr double standByInterval = 0.1;
constexpr double emptySceneDistance = 10.0;

double speedOf(double pixels)
{
    const double beyond = std::max(std::abs(pixels) - Buttons::clickSlack, 0.0) / fullSpeedDrag;
    return std::copysign(std::min(beyond, mostSpeed), pixels);
}

} // namespace

SceneNavigator::SceneNavigator(ViewareaBehaviour& viewarea)
    : NavigatorProc(&viewarea.node())
    , _viewarea(viewarea)
    , _view(&viewOf(nullptr))
    , _display(viewarea)
{
}

SceneNavigator::~SceneNavigator() = default;

UserView& SceneNavigator::viewOf(const SceneLayer* layer)
{
    const unsigned long long id = layer ? layer->node().ID() : 0;
    return _views.try_emplace(id, _viewarea, id).first->second;
}

bool SceneNavigator::userPlace(osg::Matrix& cameraToWorld) const
{
    cameraToWorld = _view->pose().matrix();
    return true;
}

bool SceneNavigator::moveUser(const osg::Matrix& cameraToWorld, double time)
{
    const Pose pose = Pose::of(cameraToWorld);
    if (!pose.isUsable())
        return false;
    follow(time);
    _view->move(pose);
    return true;
}

void SceneNavigator::follow(double time)
{
    UserView& view = viewOf(_viewarea.activeLayer());
    const bool isOther = &view != _view;
    _view = &view;
    if (isOther) {
        for (auto entry = _views.begin(); entry != _views.end();)
            entry = &entry->second == _view || entry->second.layer() ? std::next(entry) : _views.erase(entry);
    }
    if (_view->follow(time) || isOther) {
        _drag.reset();
        _pinch.reset();
        _target.reset();
        _hasWalked = false;
        _travel.stop();
    }
    if (_view->takeNewTypes() || isOther) {
        setMode(_view->settings().mode);
        _display.forgetHeadlight();
    }
}

double SceneNavigator::advance(double time)
{
    const double seconds = _lastTime < 0.0 ? usualFrame : std::clamp(time - _lastTime, 0.0, longestFrame);
    follow(time);
    bool isTravelling = false;
    for (auto& [id, view] : _views) {
        view.advance(time);
        isTravelling |= view.isTravelling();
    }
    const bool goes = isUsed() && (!_keys.isEmpty() || (travels() && _drag && _drag->hasMoved));
    if (goes && travels())
        go(velocity(), speed(), seconds);
    else if (goes)
        turnByKeys(seconds);
    _keys.endFrame();
    const bool falls = fall(seconds);
    _display.refresh(*_view, nameOf(_mode), speed());
    const bool moves = goes || falls || isTravelling || _drag || _pinch || !_keys.isEmpty();
    _lastTime = moves ? time : -1.0;
    if (moves)
        return 0.0;
    if (_hasWalked)
        return standByInterval;
    return _display.hasInfoScreen() ? infoInterval : std::numeric_limits<double>::infinity();
}

void SceneNavigator::aim(SceneLayer& layer, SceneView& view)
{
    const double time = _viewarea.contextTimeStamp();
    follow(time);
    UserView& user = viewOf(&layer);
    const bool isActive = &user == _view;
    if (!isActive)
        user.follow(time);
    user.aim(view);
    if (isActive)
        _display.aim(view);
}

void SceneNavigator::go(const Velocity& velocity, double speed, double seconds)
{
    SceneLayer* const scene = _viewarea.activeLayer();
    if (!scene || velocity.isNull())
        return;
    const Collider collider(*scene, avatar(), contextTimeStamp());
    const bool upright = _mode == NavigationMode::Walk;
    _hasWalked = _hasWalked || upright;
    _view->move(TravelMotion::advanced(*_view, velocity, speed, seconds, upright, collider));
}

bool SceneNavigator::fall(double seconds)
{
    SceneLayer* const scene = _viewarea.activeLayer();
    if (!scene || _mode != NavigationMode::Walk || !_hasWalked || _view->isTravelling())
        return false;
    const NavigationSettings body = avatar();
    Pose pose = _view->pose();
    if (!_travel.settle(*_view, Collider(*scene, body, contextTimeStamp()), body.avatarHeight, seconds, pose))
        return false;
    _view->move(pose);
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
        _view->move(motion.turned(right, -up));
    if (closer == 0.0)
        return;
    if (_view->isParallel())
        _view->scale(std::exp(-closer));
    else
        _view->move(motion.closer(_view->pose(), std::exp(-closer)));
}

// ---- The scene

bool SceneNavigator::castRay(double x, double y, osg::Vec3d& point, osg::NodePtr* geometry) const
{
    SceneLayer* const scene = _viewarea.activeLayer();
    osg::Line ray;
    if (!scene || !_viewarea.viewRay(static_cast<int>(x), static_cast<int>(y), ray))
        return false;
    // What stands between the eye and the near plane counts, too.
    const osg::Vec3d eye = _view->pose().position;
    if (!_view->isParallel())
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
    else if (!_view->authoredPivot(pivot) && !castRay(x, y, pivot, nullptr))
        pivot = pointAhead();
    return motionRound(pivot);
}

// What is under the pointer stays there, whatever the scene turns round.
ExamineMotion SceneNavigator::motionTo(double x, double y) const
{
    osg::Vec3d point;
    return castRay(x, y, point, nullptr) ? motionRound(point) : motionAt(x, y);
}

ExamineMotion SceneNavigator::motionRound(const osg::Vec3d& pivot) const
{
    return ExamineMotion(*_view, pivot, std::max(sceneSize() * 1e-4, pivot.length() * 1e-6));
}

osg::Vec3d SceneNavigator::pointAhead() const
{
    const Pose pose = _view->pose();
    osg::Vec3d point;
    if (_view->authoredPivot(point))
        return point;
    SceneLayer* const scene = _viewarea.activeLayer();
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
    SceneLayer* const scene = _viewarea.activeLayer();
    const SceneBounds bounds = scene ? SceneBounds::of(*scene) : SceneBounds();
    return bounds.isEmpty ? 0.0 : bounds.diagonal();
}

double SceneNavigator::speed() const
{
    return _view->settings().speedFor(sceneSize()) * _speedFactor;
}

NavigationSettings SceneNavigator::avatar() const
{
    NavigationSettings result = _view->settings();
    result.fitAvatar(sceneSize());
    return result;
}

double SceneNavigator::pictureHeight() const
{
    const SceneLayer* const layer = _viewarea.activeLayer();
    const osg::ViewportPtr port = layer ? _viewarea.portOf(*layer) : _viewarea.port();
    return port->getParent() != osg::NullFC ? std::max(port->getPixelHeight(), 1) : 1;
}

double SceneNavigator::pictureSize() const
{
    const SceneLayer* const layer = _viewarea.activeLayer();
    const osg::ViewportPtr port = layer ? _viewarea.portOf(*layer) : _viewarea.port();
    const double width = port->getParent() != osg::NullFC ? std::max(port->getPixelWidth(), 1) : 1;
    return std::min(width, pictureHeight());
}

} // namespace Orvane
