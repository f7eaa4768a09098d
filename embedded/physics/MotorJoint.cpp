#include "base/ValueFields.h"
#include "physics/JointProc.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <array>
#include <ode/ode.h>

namespace Orvane {

namespace {

const Part autoCalcPart("autoCalc");
const Part enabledAxesPart("enabledAxes");
const std::array<Part, 3> anglePart{Part("axis1Angle"), Part("axis2Angle"), Part("axis3Angle")};
const std::array<Part, 3> axisPart{Part("motor1Axis"), Part("motor2Axis"), Part("motor3Axis")};
const std::array<Part, 3> bouncePart{Part("stop1Bounce"), Part("stop2Bounce"), Part("stop3Bounce")};
const std::array<Part, 3> errorCorrectionPart{Part("stop1ErrorCorrection"), Part("stop2ErrorCorrection"),
                                              Part("stop3ErrorCorrection")};
const std::array<Part, 3> torquePart{Part("axis1Torque"), Part("axis2Torque"), Part("axis3Torque")};

constexpr double Most = 1e9;

/// Behaviour of a `MotorJoint`. With `autoCalc` the engine calculates the angles of three axes, as Euler
/// angles; else the scene gives angles and torques, of as many axes as are enabled.
class MotorJointProc : public JointProc
{
public:
    using JointProc::JointProc;

protected:
    dxJoint* create(dxWorld* world) override { return dJointCreateAMotor(world, nullptr); }

    void place(dxJoint* joint) override
    {
        const bool calculates = isCalculating();
        dJointSetAMotorMode(joint, calculates ? dAMotorEuler : dAMotorUser);
        dJointSetAMotorNumAxes(joint, axisCount());
        const osg::Vec3d first = direction(axisPart[0], osg::Vec3d(1.0, 0.0, 0.0));
        if (calculates) {
            // The second axis is what is across the two others.
            const osg::Vec3d third = across(first, direction(axisPart[2], osg::Vec3d(0.0, 0.0, 1.0)));
            dJointSetAMotorAxis(joint, 0, 1, first[0], first[1], first[2]);
            dJointSetAMotorAxis(joint, 2, 2, third[0], third[1], third[2]);
            return;
        }
        for (int i = 0; i < axisCount(); ++i) {
            const osg::Vec3d axis = direction(axisPart[static_cast<std::size_t>(i)], first);
            dJointSetAMotorAxis(joint, i, 1, axis[0], axis[1], axis[2]);
        }
    }

    void setLimits(dxJoint* joint) override
    {
        // Which axes there are is a matter of fields that are no places.
        place(joint);
        static constexpr int Bounce[] = {dParamBounce, dParamBounce2, dParamBounce3};
        static constexpr int ErrorCorrection[] = {dParamStopERP, dParamStopERP2, dParamStopERP3};
        for (std::size_t i = 0; i < 3; ++i) {
            dJointSetAMotorParam(joint, Bounce[i], number(bouncePart[i], 0.0, 1.0));
            dJointSetAMotorParam(joint, ErrorCorrection[i], correction(errorCorrectionPart[i]));
            if (!isCalculating() && static_cast<int>(i) < axisCount())
                dJointSetAMotorAngle(joint, static_cast<int>(i), number(anglePart[i], -Most, Most));
        }
    }

    void addForces(dxJoint* joint) override
    {
        if (isCalculating())
            return;
        double torques[3] = {0.0, 0.0, 0.0};
        for (int i = 0; i < axisCount(); ++i)
            torques[i] = number(torquePart[static_cast<std::size_t>(i)], -Most, Most);
        if (axisCount() > 0)
            dJointAddAMotorTorques(joint, torques[0], torques[1], torques[2]);
    }

    void sendValues(dxJoint* joint, double time) override
    {
        static const std::array<Output, 3> angle{Output("motor1Angle"), Output("motor2Angle"),
                                                 Output("motor3Angle")};
        static const std::array<Output, 3> rate{Output("motor1AngleRate"), Output("motor2AngleRate"),
                                                Output("motor3AngleRate")};
        const dReal* const first = dBodyGetAngularVel(bodyOf(joint, 0));
        const dReal* const second = dBodyGetAngularVel(bodyOf(joint, 1));
        for (int i = 0; i < axisCount(); ++i) {
            const auto which = static_cast<std::size_t>(i);
            dVector3 axis;
            dJointGetAMotorAxis(joint, i, axis);
            double speed = 0.0;
            for (int k = 0; k < 3; ++k)
                speed += axis[k] * (first[k] - second[k]);
            sendNumber(angle[which], dJointGetAMotorAngle(joint, i), time);
            sendNumber(rate[which], speed, time);
        }
    }

private:
    bool isCalculating() const { return autoCalcPart.read<SFBool>(node()).value(); }
    int axisCount() const
    {
        return isCalculating() ? 3 : std::clamp(enabledAxesPart.read<SFInt32>(node()).value(), 0, 3);
    }
};

const ProcRegistration motorJoint("MotorJoint", makeProc<MotorJointProc>);

} // namespace

} // namespace Orvane
