#include "base/ValueFields.h"
#include "physics/JointProc.h"
#include <ode/ode.h>

namespace Orvane {

namespace {

const Part axisPart("axis");
const Part maxSeparationPart("maxSeparation");
const Part minSeparationPart("minSeparation");
const Part sliderForcePart("sliderForce");
const Part stopBouncePart("stopBounce");
const Part stopErrorCorrectionPart("stopErrorCorrection");

constexpr double Most = 1e9;

/// Behaviour of a `SliderJoint`. The separation is 0 where the bodies stand when they are joined.
class SliderJointProc : public JointProc
{
public:
    using JointProc::JointProc;

protected:
    dxJoint* create(dxWorld* world) override { return dJointCreateSlider(world, nullptr); }

    void place(dxJoint* joint) override
    {
        const osg::Vec3d axis = direction(axisPart, osg::Vec3d(0.0, 1.0, 0.0));
        dJointSetSliderAxis(joint, axis[0], axis[1], axis[2]);
    }

    void setLimits(dxJoint* joint) override
    {
        const double low = number(minSeparationPart, -Most, Most);
        const double high = number(maxSeparationPart, -Most, Most);
        const bool isSound = low <= high;
        dJointSetSliderParam(joint, dParamLoStop, isSound ? low : -dInfinity);
        dJointSetSliderParam(joint, dParamHiStop, isSound ? high : dInfinity);
        dJointSetSliderParam(joint, dParamBounce, number(stopBouncePart, 0.0, 1.0));
        dJointSetSliderParam(joint, dParamStopERP, correction(stopErrorCorrectionPart));
    }

    void addForces(dxJoint* joint) override
    {
        if (const double force = number(sliderForcePart, -Most, Most))
            dJointAddSliderForce(joint, force);
    }

    void sendValues(dxJoint* joint, double time) override
    {
        static const Output separation("separation");
        static const Output separationRate("separationRate");
        sendNumber(separation, dJointGetSliderPosition(joint), time);
        sendNumber(separationRate, dJointGetSliderPositionRate(joint), time);
    }
};

const ProcRegistration sliderJoint("SliderJoint", makeProc<SliderJointProc>);

} // namespace

} // namespace Orvane
