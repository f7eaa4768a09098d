#include "core/ViewpointProc.h"
#include "base/ValueFields.h"
#include "core/GroupProc.h"
#include "core/NormalGenerator.h"
#include "core/Part.h"
#include "core/SceneProc.h"
#include "core/UsableValues.h"
#include <Orvane/MFFloat.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part centerPart("center");
const Part centerOfRotationPart("centerOfRotation");
const Part displayedPart("displayed");
const Part farDistancePart("farDistance");
const Part fieldOfViewPart("fieldOfView");
const Part navigationInfoPart("navigationInfo");
const Part nearDistancePart("nearDistance");
const Part orientationPart("orientation");
const Part positionPart("position");
const Part retainUserOffsetsPart("retainUserOffsets");
const Part sizePart("size");

/// Looks through a window in space, without perspective.
class OrthoViewpointProc : public ViewpointProc
{
public:
    using ViewpointProc::ViewpointProc;

protected:
    void describeLens(SceneView& view) const override
    {
        const std::vector<float>& sides = fieldOfViewPart.read<MFFloat>(node()).values();
        view.orthographic = true;
        if (sides.size() < 4 || !(sides[2] > sides[0]) || !(sides[3] > sides[1]))
            return;
        for (std::size_t i = 0; i < 2; ++i) {
            view.fieldOfViewMin[i] = usableNumber(sides[i], -1.0F);
            view.fieldOfViewMax[i] = usableNumber(sides[i + 2], 1.0F);
        }
    }
};

/// Viewpoints that are offered together, everywhere or to viewers in a box.
class ViewpointGroupProc : public GroupProc
{
public:
    using GroupProc::GroupProc;

    bool offersTo(const osg::Pnt3f& viewer) const
    {
        if (!displayedPart.read<SFBool>(node()).value())
            return false;
        const osg::Vec3f size = usableVector(sizePart.read<SFVec3f>(node()).value());
        if (isNull(size))
            return true;
        osg::Matrix toLocal;
        if (!toWorld().inverse(toLocal))
            return false;
        osg::Pnt3f place;
        toLocal.multMatrixPnt(viewer, place);
        const osg::Vec3f& center = centerPart.read<SFVec3f>(node()).value();
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            if (!(std::abs(place[axis] - center[axis]) <= size[axis] * 0.5F))
                return false;
        }
        return true;
    }
    bool retainsUserOffsets() const { return retainUserOffsetsPart.read<SFBool>(node()).value(); }
};

/// True when one of the groups of viewpoints above a viewpoint meets a condition.
template <class Condition>
bool anyGroup(const ViewpointProc& viewpoint, const Condition& condition)
{
    // A group may stand in itself.
    constexpr int deepest = 64;
    const auto* group = dynamic_cast<const ViewpointGroupProc*>(groupOf(viewpoint));
    for (int depth = 0; group && depth < deepest; ++depth) {
        if (condition(*group))
            return true;
        group = dynamic_cast<const ViewpointGroupProc*>(groupOf(*group));
    }
    return false;
}

/// A distance that its author has set; 0 else.
float readDistance(const Part& part, const Node& node)
{
    const float distance = part.isIn(node) ? part.read<SFFloat>(node).value() : 0.0F;
    return isDrawable(distance) && distance > 0.0F ? distance : 0.0F;
}

const ProcRegistration viewpointGroup("ViewpointGroup", makeProc<ViewpointGroupProc>);
const ProcRegistration viewpoint("Viewpoint", makeProc<ViewpointProc>);
const ProcRegistration orthoViewpoint("OrthoViewpoint", makeProc<OrthoViewpointProc>);

} // namespace

ViewpointProc::ViewpointProc(Node& node)
    : BindableProc(node, BindableKind::Viewpoint)
{
}

osg::Matrix ViewpointProc::cameraToWorld() const
{
    osg::Matrix result;
    if (const GroupProc* group = groupOf(*this))
        result = group->toWorld();
    result.mult(place());
    // Axes of unit length at right angles: looking direction first, then up as near as may be.
    const osg::Vec3f back = unitVector(osg::Vec3f(result[2][0], result[2][1], result[2][2]));
    const osg::Vec3f up = osg::Vec3f(result[1][0], result[1][1], result[1][2]);
    const osg::Vec3f right = unitVector(up.cross(back));
    if (isNull(back) || isNull(right)) {
        const osg::Vec4f place = result[3];
        result.setIdentity();
        result[3] = place;
        return result;
    }
    const osg::Vec3f newUp = back.cross(right);
    const osg::Vec3f* const axes[] = {&right, &newUp, &back};
    for (osg::UInt32 column = 0; column < 3; ++column) {
        for (osg::UInt32 row = 0; row < 3; ++row)
            result[column][row] = (*axes[column])[row];
    }
    return result;
}

osg::Matrix ViewpointProc::place() const
{
    osg::Matrix result;
    result.setTransform(usableVector(positionPart.read<SFVec3f>(node()).value()),
                        toQuaternion(orientationPart.read<SFRotation>(node()).value()));
    return result;
}

bool ViewpointProc::pivot(osg::Vec3f& center) const
{
    if (!centerOfRotationPart.isIn(node()))
        return false;
    center = usableVector(centerOfRotationPart.read<SFVec3f>(node()).value());
    return !isNull(center);
}

void ViewpointProc::describe(SceneView& view) const
{
    view.viewpoint = cameraToWorld();
    view.nearDistance = readDistance(nearDistancePart, node());
    view.farDistance = readDistance(farDistancePart, node());
    describeLens(view);
}

bool ViewpointProc::isOfferedTo(const osg::Pnt3f& viewer) const
{
    return !anyGroup(*this, [&](const ViewpointGroupProc& group) { return !group.offersTo(viewer); });
}

bool ViewpointProc::retainsUserOffsets() const
{
    if (retainUserOffsetsPart.isIn(node()) && retainUserOffsetsPart.read<SFBool>(node()).value())
        return true;
    return anyGroup(*this, [](const ViewpointGroupProc& group) { return group.retainsUserOffsets(); });
}

void ViewpointProc::describeLens(SceneView& view) const
{
    const float angle = fieldOfViewPart.read<SFFloat>(node()).value();
    // The field is open at both ends: at 0 nothing is seen, at half a turn all of it in one point.
    if (isDrawable(angle) && angle > 0.0F)
        view.fieldOfView = std::clamp(angle, 0.001F, 3.13F);
}

void ViewpointProc::setBound(bool bound, double time)
{
    BindableProc::setBound(bound, time);
    if (auto* const info = elementOf<BindableProc>(navigationInfoPart.readNode(node())))
        info->bind(bound, time);
}

} // namespace Orvane
