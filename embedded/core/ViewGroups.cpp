#include "base/ValueFields.h"
#include "core/FollowedLayer.h"
#include "core/GroupProc.h"
#include "core/NormalGenerator.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGTransform.h>
#include <cmath>

namespace Orvane {

namespace {

const Part axisOfRotationPart("axisOfRotation");

/// A group whose system depends on where it is seen from. In several places it is as the first one wants it.
class ViewGroupProc : public GroupProc, public ViewFollower
{
public:
    explicit ViewGroupProc(Node& node)
        : GroupProc(node, osg::Transform::create())
    {
    }

    void start(double time) override
    {
        GroupProc::start(time);
        _followed.join(node(), *this);
    }

    bool follow(const DrawnView& view) override
    {
        osg::Matrix above;
        if (const osg::NodePtr parent = tree()->getParent())
            above = parent->getToWorld();
        osg::Matrix toAbove;
        if (!above.inverse(toAbove))
            return false;
        auto& transform = static_cast<osg::Transform&>(*tree()->getCore());
        osg::Matrix matrix;
        if (!suit(view, above, toAbove, matrix) ||
            matrix == static_cast<const osg::Transform&>(transform).getMatrix())
            return false;
        transform.setMatrix(matrix);
        return true;
    }

protected:
    /// Fills the matrix for a view. \a above leads from the system of the group itself to the world, \a
    /// toAbove back. False to leave it as it is.
    virtual bool suit(const DrawnView& view, const osg::Matrix& above, const osg::Matrix& toAbove,
                      osg::Matrix& matrix) const = 0;

private:
    FollowedLayer _followed;
};

osg::Vec3f columnOf(const osg::Matrix& matrix, osg::UInt32 column)
{
    return osg::Vec3f(matrix[column][0], matrix[column][1], matrix[column][2]);
}

/// Turns its z axis to the viewer: round its axis, or freely when that has no direction.
class BillboardProc : public ViewGroupProc
{
public:
    using ViewGroupProc::ViewGroupProc;

protected:
    bool suit(const DrawnView& view, const osg::Matrix&, const osg::Matrix& toAbove,
              osg::Matrix& matrix) const override
    {
        osg::Pnt3f eye;
        toAbove.multMatrixPnt(osg::Pnt3f(columnOf(view.cameraToWorld, 3)), eye);
        osg::Vec3f back;
        toAbove.multMatrixVec(columnOf(view.cameraToWorld, 2), back);
        // Without perspective the viewer is far away.
        const osg::Vec3f toViewer =
            unitVector(view.hasPerspective ? osg::Vec3f(eye[0], eye[1], eye[2]) : back);
        if (isNull(toViewer))
            return false;
        const osg::Vec3f axis = unitVector(usableVector(axisOfRotationPart.read<SFVec3f>(node()).value()));
        if (isNull(axis)) {
            osg::Vec3f up;
            toAbove.multMatrixVec(columnOf(view.cameraToWorld, 1), up);
            const osg::Vec3f right = unitVector(up.cross(toViewer));
            if (isNull(right))
                return false;
            const osg::Vec3f newUp = toViewer.cross(right);
            const osg::Vec3f* const axes[] = {&right, &newUp, &toViewer};
            for (osg::UInt32 column = 0; column < 3; ++column) {
                for (osg::UInt32 row = 0; row < 3; ++row)
                    matrix[column][row] = (*axes[column])[row];
            }
            return true;
        }
        const osg::Vec3f front(0.0F, 0.0F, 1.0F);
        const osg::Vec3f from = front - axis * front.dot(axis);
        const osg::Vec3f to = toViewer - axis * toViewer.dot(axis);
        // Seen along its axis, or with the axis in front, it need not turn.
        constexpr float Slack = 1e-6F;
        if (from.length() < Slack || to.length() < Slack)
            return false;
        const float angle = std::atan2(from.cross(to).dot(axis), from.dot(to));
        matrix.setRotate(toQuaternion(Rotation(axis[0], axis[1], axis[2], angle)));
        return true;
    }
};

/// Stretches itself so that its unit is one pixel.
class ScreenGroupProc : public ViewGroupProc
{
public:
    using ViewGroupProc::ViewGroupProc;

protected:
    bool suit(const DrawnView& view, const osg::Matrix& above, const osg::Matrix&,
              osg::Matrix& matrix) const override
    {
        float size = view.pixelSize;
        if (view.hasPerspective) {
            const osg::Vec3f away = columnOf(view.cameraToWorld, 3) - columnOf(above, 3);
            size *= away.dot(columnOf(view.cameraToWorld, 2));
        }
        if (!isDrawable(size) || !(size > 0.0F))
            return false;
        osg::Vec3f factors;
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            const float length = columnOf(above, axis).length();
            factors[axis] = length > 0.0F ? size / length : size;
        }
        matrix.setScale(factors[0], factors[1], factors[2]);
        return true;
    }
};

const ProcRegistration billboard("Billboard", makeProc<BillboardProc>);
const ProcRegistration screenGroup("ScreenGroup", makeProc<ScreenGroupProc>);

} // namespace

} // namespace Orvane
