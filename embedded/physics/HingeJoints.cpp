// Joints that let bodies turn about a point: balls and hinges.
#include "base/ValueFields.h"
#include "physics/JointProc.h"
#include <cmath>
#include <ode/ode.h>

namespace Orvane {

namespace {

const Part anchorPointPart("anchorPoint");
const Part axis1Part("axis1");
const Part axis2Part("axis2");
const Part axisPart("axis");
const Part desiredAngularVelocity1Part("desiredAngularVelocity1");
const Part desiredAngularVelocity2Part("desiredAngularVelocity2");
const Part maxAngle1Part("maxAngle1");
const Part maxAnglePart("maxAngle");
const Part maxTorque1Part("maxTorque1");
const Part maxTorque2Part("maxTorque2");
const Part minAngle1Part("minAngle1");
const Part minAnglePart("minAngle");
const Part stop1BouncePart("stop1Bounce");
const Part stop1ConstantForceMixPart("stop1ConstantForceMix");
const Part stop1ErrorCorrectionPart("stop1ErrorCorrection");
const Part stop2BouncePart("stop2Bounce");
const Part stop2ErrorCorrectionPart("stop2ErrorCorrection");
const Part stopBouncePart("stopBounce");
const Part stopErrorCorrectionPart("stopErrorCorrection");
const Part suspensionErrorCorrectionPart("suspensionErrorCorrection");
const Part suspensionForcePart("suspensionForce");

constexpr double Most = 1e9;

/// What all of them tell.
class AnchoredJointProc : public JointProc
{
public:
    using JointProc::JointProc;

protected:
    using ReadVector = void (*)(dxJoint*, dReal*);

    void sendAnchors(dxJoint* joint, ReadVector first, ReadVector second, double time)
    {
        static const Output body1AnchorPoint("body1AnchorPoint");
        static const Output body2AnchorPoint("body2AnchorPoint");
        dVector3 place;
        first(joint, place);
        sendVector(body1AnchorPoint, toBody(joint, 0, place), time);
        second(joint, place);
        sendVector(body2AnchorPoint, toBody(joint, 1, place), time);
    }

    void sendAxes(dxJoint* joint, ReadVector first, ReadVector second, double time)
    {
        static const Output body1Axis("body1Axis");
        static const Output body2Axis("body2Axis");
        dVector3 axis;
        first(joint, axis);
        sendVector(body1Axis, directionToBody(joint, 0, axis), time);
        second(joint, axis);
        sendVector(body2Axis, directionToBody(joint, 1, axis), time);
    }

    /// The angles between which a hinge turns; a whole turn is no limit.
    template <class SetParam>
    void setAngles(const Part& least, const Part& most, SetParam setParam) const
    {
        const double low = number(least, -Unreached, Unreached, -M_PI);
        const double high = number(most, -Unreached, Unreached, M_PI);
        const bool isSound = low <= high;
        setParam(dParamLoStop, isSound && low > -HalfTurn ? low : -Unreached);
        // The engine remembers having met a stop that it has no more, and then writes beyond its memory. The
        // end of the turn is a stop in its eyes, and none in those of others.
        setParam(dParamHiStop, isSound && high < HalfTurn ? high : M_PI);
    }

private:
    /// An ulp below the half turn is meant to be one.
    static constexpr double HalfTurn = M_PI - 1e-6;
    static constexpr double Unreached = 10.0;
};

class BallJointProc : public AnchoredJointProc
{
public:
    using AnchoredJointProc::AnchoredJointProc;

protected:
    dxJoint* create(dxWorld* world) override { return dJointCreateBall(world, nullptr); }

    void place(dxJoint* joint) override
    {
        const osg::Vec3d anchor = point(anchorPointPart);
        dJointSetBallAnchor(joint, anchor[0], anchor[1], anchor[2]);
    }

    void sendValues(dxJoint* joint, double time) override
    {
        sendAnchors(joint, dJointGetBallAnchor, dJointGetBallAnchor2, time);
    }
};

class SingleAxisHingeJointProc : public AnchoredJointProc
{
public:
    using AnchoredJointProc::AnchoredJointProc;

protected:
    dxJoint* create(dxWorld* world) override { return dJointCreateHinge(world, nullptr); }

    void place(dxJoint* joint) override
    {
        const osg::Vec3d anchor = point(anchorPointPart);
        const osg::Vec3d axis = direction(axisPart, osg::Vec3d(0.0, 1.0, 0.0));
        dJointSetHingeAnchor(joint, anchor[0], anchor[1], anchor[2]);
        dJointSetHingeAxis(joint, axis[0], axis[1], axis[2]);
    }

    void setLimits(dxJoint* joint) override
    {
        const auto set = [joint](int param, double value) { dJointSetHingeParam(joint, param, value); };
        setAngles(minAnglePart, maxAnglePart, set);
        set(dParamBounce, number(stopBouncePart, 0.0, 1.0));
        set(dParamStopERP, correction(stopErrorCorrectionPart));
    }

    void sendValues(dxJoint* joint, double time) override
    {
        static const Output angle("angle");
        static const Output angleRate("angleRate");
        sendNumber(angle, dJointGetHingeAngle(joint), time);
        sendNumber(angleRate, dJointGetHingeAngleRate(joint), time);
        sendAnchors(joint, dJointGetHingeAnchor, dJointGetHingeAnchor2, time);
    }
};

class DoubleAxisHingeJointProc : public AnchoredJointProc
{
public:
    using AnchoredJointProc::AnchoredJointProc;

protected:
    dxJoint* create(dxWorld* world) override { return dJointCreateHinge2(world, nullptr); }

    void place(dxJoint* joint) override
    {
        const osg::Vec3d anchor = point(anchorPointPart);
        const osg::Vec3d first = direction(axis1Part, osg::Vec3d(1.0, 0.0, 0.0));
        osg::Vec3d second = direction(axis2Part, osg::Vec3d(0.0, 1.0, 0.0));
        if (!(first.cross(second).length() > 0.01)) {
            complain("axis2", "expected an axis other than axis1; it counts as one across");
            second = across(first, second);
        }
        dJointSetHinge2Anchor(joint, anchor[0], anchor[1], anchor[2]);
        const dVector3 axis1 = {first[0], first[1], first[2]};
        const dVector3 axis2 = {second[0], second[1], second[2]};
        dJointSetHinge2Axes(joint, axis1, axis2);
    }

    void setLimits(dxJoint* joint) override
    {
        const auto set = [joint](int param, double value) { dJointSetHinge2Param(joint, param, value); };
        setAngles(minAngle1Part, maxAngle1Part, set);
        set(dParamVel, number(desiredAngularVelocity1Part, -Most, Most));
        set(dParamFMax, number(maxTorque1Part, 0.0, Most));
        set(dParamVel2, number(desiredAngularVelocity2Part, -Most, Most));
        set(dParamFMax2, number(maxTorque2Part, 0.0, Most));
        set(dParamBounce, number(stop1BouncePart, 0.0, 1.0));
        set(dParamStopERP, correction(stop1ErrorCorrectionPart));
        set(dParamStopCFM, number(stop1ConstantForceMixPart, 0.0, Most));
        set(dParamSuspensionERP, correction(suspensionErrorCorrectionPart));
        set(dParamSuspensionCFM, number(suspensionForcePart, 0.0, Most));
    }

    void sendValues(dxJoint* joint, double time) override
    {
        static const Output hinge1Angle("hinge1Angle");
        static const Output hinge1AngleRate("hinge1AngleRate");
        static const Output hinge2Angle("hinge2Angle");
        static const Output hinge2AngleRate("hinge2AngleRate");
        sendNumber(hinge1Angle, dJointGetHinge2Angle1(joint), time);
        sendNumber(hinge1AngleRate, dJointGetHinge2Angle1Rate(joint), time);
        sendNumber(hinge2Angle, dJointGetHinge2Angle2(joint), time);
        sendNumber(hinge2AngleRate, dJointGetHinge2Angle2Rate(joint), time);
        sendAnchors(joint, dJointGetHinge2Anchor, dJointGetHinge2Anchor2, time);
        sendAxes(joint, dJointGetHinge2Axis1, dJointGetHinge2Axis2, time);
    }
};

class UniversalJointProc : public AnchoredJointProc
{
public:
    using AnchoredJointProc::AnchoredJointProc;

protected:
    dxJoint* create(dxWorld* world) override { return dJointCreateUniversal(world, nullptr); }

    void place(dxJoint* joint) override
    {
        const osg::Vec3d anchor = point(anchorPointPart);
        const osg::Vec3d first = direction(axis1Part, osg::Vec3d(1.0, 0.0, 0.0));
        // The joint knows right angles only.
        const osg::Vec3d second = across(first, direction(axis2Part, osg::Vec3d(0.0, 1.0, 0.0)));
        dJointSetUniversalAnchor(joint, anchor[0], anchor[1], anchor[2]);
        dJointSetUniversalAxis1(joint, first[0], first[1], first[2]);
        dJointSetUniversalAxis2(joint, second[0], second[1], second[2]);
    }

    void setLimits(dxJoint* joint) override
    {
        const auto set = [joint](int param, double value) { dJointSetUniversalParam(joint, param, value); };
        set(dParamBounce, number(stop1BouncePart, 0.0, 1.0));
        set(dParamStopERP, correction(stop1ErrorCorrectionPart));
        set(dParamBounce2, number(stop2BouncePart, 0.0, 1.0));
        set(dParamStopERP2, correction(stop2ErrorCorrectionPart));
    }

    void sendValues(dxJoint* joint, double time) override
    {
        sendAnchors(joint, dJointGetUniversalAnchor, dJointGetUniversalAnchor2, time);
        sendAxes(joint, dJointGetUniversalAxis1, dJointGetUniversalAxis2, time);
    }
};

const ProcRegistration ballJoint("BallJoint", makeProc<BallJointProc>);
const ProcRegistration doubleAxisHingeJoint("DoubleAxisHingeJoint", makeProc<DoubleAxisHingeJointProc>);
const ProcRegistration singleAxisHingeJoint("SingleAxisHingeJoint", makeProc<SingleAxisHingeJointProc>);
const ProcRegistration universalJoint("UniversalJoint", makeProc<UniversalJointProc>);

} // namespace

} // namespace Orvane
