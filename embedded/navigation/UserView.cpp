#include "navigation/UserView.h"

#include "base/ValueFields.h"
#include "core/EnvironmentProcs.h"
#include "core/GroupProc.h"
#include "core/Part.h"
#include "core/SceneLayer.h"
#include "core/UsableValues.h"
#include "core/ViewpointProc.h"
#include "engine/ViewareaBehaviour.h"
#include <Orvane/SFBool.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part jumpPart("jump");
const Part transitionCompletePart("transitionComplete");
const Part viewAllPart("viewAll");

constexpr double smallestScale = 1e-6;
constexpr double largestScale = 1e6;
/// A view of everything leaves this much room round it.
constexpr double margin = 1.05;

bool readFlag(const Part& part, const Node& node)
{
    return part.isIn(node) && part.read<SFBool>(node).value();
}

osg::Vec3d column(const osg::Matrix& matrix, osg::UInt32 index)
{
    return osg::Vec3d(matrix[index][0], matrix[index][1], matrix[index][2]);
}

/// The direction of a vector; \a otherwise for one that has none.
osg::Vec3d directionOf(const osg::Vec3d& vector, const osg::Vec3d& otherwise)
{
    const double length = vector.length();
    return length > 1e-12 && std::isfinite(length) ? vector * (1.0 / length) : otherwise;
}

double mixed(double a, double b, double t)
{
    return a + (b - a) * t;
}

} // namespace

UserView::UserView(ViewareaBehaviour& viewarea, unsigned long long layerId)
    : _viewarea(viewarea)
    , _layerId(layerId)
{
}

SceneLayer* UserView::layer() const
{
    return procAs<SceneLayer>(Node::findNode(_layerId));
}

ViewpointProc* UserView::viewpoint() const
{
    const SceneLayer* const shown = layer();
    return shown ? _viewarea.viewpoint(*shown) : nullptr;
}

Node* UserView::boundInfo() const
{
    const SceneLayer* const shown = layer();
    const BindableProc* const info = shown ? shown->stack(BindableKind::NavigationInfo).bound() : nullptr;
    return info ? &info->node() : nullptr;
}

bool UserView::follow(double time)
{
    const Node* const info = boundInfo();
    const unsigned long long infoId = info ? info->ID() : 0;
    const NavigationSettings previous = std::move(_settings);
    _settings = NavigationSettings::of(info);
    if (infoId != _infoId || _settings.types != previous.types)
        _typesAreNew = true;
    _infoId = infoId;

    SceneLayer* const shown = layer();
    if (shown && !shown->isNavigable())
        _settings.mode = NavigationMode::None;
    ViewpointProc* const viewpoint = this->viewpoint();
    const unsigned long long viewpointId = viewpoint ? viewpoint->node().ID() : 0;
    const bool isNew = !_isFollowing || viewpointId != _viewpointId;
    if (shown)
        readLens(_viewarea.plainView(*shown));
    if (!_isFollowing) {
        _isFollowing = true;
        _viewpointId = viewpointId;
        _wantsAll = viewpoint && readFlag(viewAllPart, viewpoint->node());
    } else if (isNew)
        arrive(viewpoint, time);
    tryToSeeAll();
    _shown = pose();
    return isNew;
}

bool UserView::takeNewTypes()
{
    return std::exchange(_typesAreNew, false);
}

void UserView::arrive(ViewpointProc* viewpoint, double time)
{
    const auto* const left = elementOf<ViewpointProc>(Node::findNode(_viewpointId));
    if (left && left->retainsUserOffsets())
        _kept[_viewpointId] = _offset;
    for (auto entry = _kept.begin(); entry != _kept.end();)
        entry = Node::findNode(entry->first) ? std::next(entry) : _kept.erase(entry);
    _viewpointId = viewpoint ? viewpoint->node().ID() : 0;

    if (viewpoint && jumpPart.isIn(viewpoint->node()) && !readFlag(jumpPart, viewpoint->node())) {
        // What is seen stays as it is. From now on it moves with the new viewpoint.
        _way = Way();
        _offset.pose = base().inverse() * _shown;
        _viewarea.redraw();
        return;
    }
    Offset target;
    const auto kept = _kept.find(_viewpointId);
    if (viewpoint && kept != _kept.end() && viewpoint->retainsUserOffsets())
        target = kept->second;
    _wantsAll = viewpoint && readFlag(viewAllPart, viewpoint->node());
    setOff(target, time);
}

// What a scene shows may come later than its viewpoint.
void UserView::tryToSeeAll()
{
    SceneLayer* const shown = layer();
    const SceneBounds bounds = _wantsAll && shown ? SceneBounds::of(*shown) : SceneBounds();
    if (bounds.isEmpty)
        return;
    _wantsAll = false;
    _offset = seeing(bounds, base() * _offset.pose, _offset);
    _viewarea.redraw();
}

void UserView::setOff(const Offset& target, double time)
{
    const Way before = _way;
    const double fromScale =
        before.isOn ? mixed(before.fromScale, _offset.scale, before.part) : _offset.scale;
    _offset = target;
    _way = Way();
    _viewarea.redraw();
    if (_settings.transition == TransitionType::Teleport || !_shown.isUsable()) {
        complete(time);
        return;
    }
    _way.isOn = true;
    _way.from = _shown;
    _way.fromScale = fromScale;
    _way.fromField = _shownField;
    _way.start = time;
    _way.duration = _settings.transitionTime;
    _way.eased = _settings.transition == TransitionType::Animate;
}

void UserView::advance(double time)
{
    if (!_way.isOn)
        return;
    const double part = std::clamp((time - _way.start) / _way.duration, 0.0, 1.0);
    // Slowly at both ends.
    _way.part = _way.eased ? part * part * (3.0 - 2.0 * part) : part;
    _viewarea.redraw();
    if (part < 1.0)
        return;
    _way = Way();
    complete(time);
}

void UserView::complete(double time)
{
    if (Node* const info = boundInfo())
        transitionCompletePart.edit<SFBool>(*info).setValue(time, true, Field::EVENT_CT);
}

Pose UserView::base() const
{
    if (const ViewpointProc* const viewpoint = this->viewpoint()) {
        const Pose pose = Pose::of(viewpoint->cameraToWorld());
        if (pose.isUsable())
            return pose;
    }
    Pose front;
    front.position = osg::Vec3d(0, 0, 10);
    return front;
}

Pose UserView::pose() const
{
    const Pose end = base() * _offset.pose;
    return _way.isOn ? blend(_way.from, end, _way.part) : end;
}

void UserView::move(const Pose& pose)
{
    if (!pose.isUsable())
        return;
    if (!_way.isOn && pose == _shown)
        return;
    if (_way.isOn)
        _offset.scale = mixed(_way.fromScale, _offset.scale, _way.part);
    _way = Way();
    _wantsAll = false;
    Pose offset = base().inverse() * pose;
    offset.rotation.normalize();
    if (!offset.isUsable())
        return;
    _offset.pose = offset;
    _shown = this->pose();
    _viewarea.redraw();
}

void UserView::scale(double factor)
{
    const double scale = std::clamp(_offset.scale * factor, smallestScale, largestScale);
    if (!std::isfinite(factor) || scale == _offset.scale)
        return;
    _offset.scale = scale;
    _viewarea.redraw();
}

void UserView::travelBack(double time)
{
    setOff(Offset(), time);
}

void UserView::travelToSee(const SceneBounds& bounds, double time)
{
    travelToSee(bounds, base() * _offset.pose, time);
}

void UserView::travelToSee(const SceneBounds& bounds, const Pose& direction, double time)
{
    if (!bounds.isEmpty)
        setOff(seeing(bounds, direction, _offset), time);
}

UserView::Offset UserView::seeing(const SceneBounds& bounds, const Pose& direction,
                                  const Offset& otherwise) const
{
    Pose target = direction;
    const double size = std::max(bounds.diagonal(), 1e-3);
    const double upwards = _lens.halfHeight;
    const double sideways = upwards * _lens.aspect;
    Offset result = otherwise;
    double distance = size;
    if (_lens.parallel) {
        const osg::Vec2d half = bounds.halfSize(target);
        const double scale = std::max(half[0] / sideways, half[1] / upwards) * margin;
        if (scale > 0.0)
            result.scale = std::clamp(scale, smallestScale, largestScale);
    } else
        distance = std::max(bounds.viewingDistance(target, sideways, upwards), size * 0.01) * margin;
    target.position = bounds.center() - target.forward() * distance;
    result.pose = base().inverse() * target;
    return result.pose.isUsable() ? result : otherwise;
}

void UserView::readLens(const SceneView& view)
{
    const SceneLayer* const shown = layer();
    const osg::ViewportPtr port = shown ? _viewarea.portOf(*shown) : _viewarea.port();
    const bool hasWindow = port->getParent() != osg::NullFC;
    const double width = std::max(hasWindow ? port->getPixelWidth() : 1, 1);
    const double height = std::max(hasWindow ? port->getPixelHeight() : 1, 1);
    _lens.parallel = view.orthographic;
    if (view.orthographic) {
        const double wide = static_cast<double>(view.fieldOfViewMax[0] - view.fieldOfViewMin[0]);
        const double high = static_cast<double>(view.fieldOfViewMax[1] - view.fieldOfViewMin[1]);
        _lens.halfHeight = std::max(high, wide * height / width) * 0.5;
    } else {
        const double tangent = std::tan(static_cast<double>(view.fieldOfView) * 0.5);
        _lens.halfHeight = width < height ? tangent * height / width : tangent;
    }
    _lens.aspect = width / height;
}

void UserView::aim(SceneView& view)
{
    readLens(view);
    const double field = static_cast<double>(view.fieldOfView);
    if (_way.isOn && _way.fromField > 0.0)
        view.fieldOfView = static_cast<float>(mixed(_way.fromField, field, _way.part));
    const double scale = _way.isOn ? mixed(_way.fromScale, _offset.scale, _way.part) : _offset.scale;
    for (int i = 0; i < 2; ++i) {
        const float middle = (view.fieldOfViewMin[i] + view.fieldOfViewMax[i]) * 0.5F;
        const float half =
            (view.fieldOfViewMax[i] - view.fieldOfViewMin[i]) * 0.5F * static_cast<float>(scale);
        view.fieldOfViewMin[i] = middle - half;
        view.fieldOfViewMax[i] = middle + half;
    }
    _shown = pose();
    _shownField = static_cast<double>(view.fieldOfView);
    // A viewpoint that the user has not left is shown to the bit.
    if (_way.isOn || _offset.pose != Pose())
        view.viewpoint = _shown.matrix();
}

osg::Matrix UserView::viewpointSystem() const
{
    const ViewpointProc* const viewpoint = this->viewpoint();
    const GroupProc* const group = viewpoint ? groupOf(*viewpoint) : nullptr;
    return group ? group->toWorld() : osg::Matrix();
}

osg::Vec3d UserView::up() const
{
    return directionOf(column(viewpointSystem(), 1), osg::Vec3d(0, 1, 0));
}

osg::Vec3d UserView::turntableAxis() const
{
    const osg::Matrix system = viewpointSystem();
    const osg::Vec3d upwards = base().up();
    osg::Vec3d best = up();
    // Upright in doubt.
    double bestCosine = std::abs(upwards.dot(best)) + 1e-3;
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        const osg::Vec3d direction = directionOf(column(system, axis), best);
        const double cosine = std::abs(upwards.dot(direction));
        if (cosine > bestCosine) {
            best = direction;
            bestCosine = cosine;
        }
    }
    return upwards.dot(best) < 0.0 ? -best : best;
}

bool UserView::authoredPivot(osg::Vec3d& pivot) const
{
    const ViewpointProc* const viewpoint = this->viewpoint();
    osg::Vec3f center;
    if (!viewpoint || !viewpoint->pivot(center))
        return false;
    osg::Pnt3f point(center[0], center[1], center[2]);
    viewpointSystem().multMatrixPnt(point);
    pivot = osg::Vec3d(point[0], point[1], point[2]);
    return true;
}

} // namespace Orvane
