#include "core/ViewpointProc.h"
#include "base/ValueFields.h"
#include "core/GroupProc.h"
#include "core/NormalGenerator.h"
#include "core/Part.h"
#include "core/SceneProc.h"
#include "core/UsableValues.h"
#include <Orvane/MFFloat.h>
#include <Orvane/SFFloat.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part fieldOfViewPart("fieldOfView");
const Part navigationInfoPart("navigationInfo");
const Part orientationPart("orientation");
const Part positionPart("position");

/// Looks through a window in space, without perspective.
class OrthoViewpointProc : public ViewpointProc
{
public:
    using ViewpointProc::ViewpointProc;

    void describe(SceneView& view) const override
    {
        view.viewpoint = cameraToWorld();
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
    osg::Matrix local;
    local.setTransform(usableVector(positionPart.read<SFVec3f>(node()).value()),
                       toQuaternion(orientationPart.read<SFRotation>(node()).value()));
    result.mult(local);
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

void ViewpointProc::describe(SceneView& view) const
{
    view.viewpoint = cameraToWorld();
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
