#include "physics/JointProc.h"
#include "base/ValueFields.h"
#include "core/UsableValues.h"
#include "physics/RigidBodyCollectionProc.h"
#include "physics/RigidBodyProc.h"
#include "physics/RigidWorld.h"
#include <Orvane/MFString.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>
#include <ode/ode.h>

namespace Orvane {

namespace {

const Part body1Part("body1");
const Part body2Part("body2");
const Part forceOutputPart("forceOutput");

} // namespace

JointProc::~JointProc()
{
    leave();
}

void JointProc::fieldChanged(Field& field, double)
{
    if (field.partType() == EVENTOUTP)
        return; // what the joint tells itself
    if (forceOutputPart.is(field))
        readOutputs();
    else if (field.dataType() == SFVEC3F_DT)
        _placeChanged = true;
    else
        _limitsChanged = true;
    requestUpdate();
}

void JointProc::elementChanged(ElementProc&)
{
    // The collection looks after bodies that come and go.
}

void JointProc::elementGone()
{
    requestUpdate();
}

void JointProc::update()
{
    readOutputs();
    _first.set(*this, elementOf<RigidBodyProc>(body1Part.readNode(node())));
    _second.set(*this, elementOf<RigidBodyProc>(body2Part.readNode(node())));
    changed();
}

RigidBodyCollectionProc* JointProc::collection() const
{
    RigidBodyCollectionProc* first = nullptr;
    for (const Use* use = uses(); use; use = use->next()) {
        if (auto* const collection = dynamic_cast<RigidBodyCollectionProc*>(use->user()))
            first = collection;
    }
    return first;
}

bool JointProc::isAttached() const
{
    return _joint && dJointGetBody(_joint.get(), 0) && dJointGetBody(_joint.get(), 1);
}

dxBody* JointProc::findBody(const Part& part, const RigidWorld& world, bool& isThere)
{
    const auto* const body = elementOf<RigidBodyProc>(part.readNode(node()));
    if (!body)
        return world.ground();
    isThere = true;
    const SimulatedBody* const simulated = body->simulated();
    return simulated && simulated->world().get() == &world ? simulated->handle() : nullptr;
}

bool JointProc::join(const std::shared_ptr<RigidWorld>& world)
{
    bool isThere = false;
    dxBody* const first = findBody(body1Part, *world, isThere);
    dxBody* const second = findBody(body2Part, *world, isThere);
    if (!isThere || !first || !second || first == second) {
        if (!isThere || (first && second))
            complain(nullptr, "expected two bodies, or one, found the same twice or none; it holds nothing");
        else
            complain(nullptr, "expected bodies of its own collection, found another one; it holds nothing");
        leave();
        return false;
    }
    const bool isNew = !isAttached() || _world != world || dJointGetBody(_joint.get(), 0) != first ||
                       dJointGetBody(_joint.get(), 1) != second;
    const bool isChanged = isNew || _placeChanged || _limitsChanged;
    if (isNew) {
        leave();
        _world = world;
        _joint.reset(create(world->handle()));
        dJointAttach(_joint.get(), first, second);
        world->countJoint(1);
    }
    if (isNew || _placeChanged)
        place(_joint.get());
    if (isNew || _limitsChanged)
        setLimits(_joint.get());
    _placeChanged = false;
    _limitsChanged = false;
    return isChanged;
}

void JointProc::leave()
{
    if (_joint)
        _world->countJoint(-1);
    _joint.reset();
    _world.reset();
}

void JointProc::applyForces()
{
    // Bodies at rest would gather forces until they wake.
    if (dBodyIsEnabled(bodyOf(_joint.get(), 0)) || dBodyIsEnabled(bodyOf(_joint.get(), 1)))
        addForces(_joint.get());
}

void JointProc::send(double time)
{
    if (_sendsAll || !_outputs.empty())
        sendValues(_joint.get(), time);
}

void JointProc::readOutputs()
{
    const auto& names = forceOutputPart.read<MFString>(node());
    _outputs.clear();
    _sendsAll = false;
    for (int i = 0; i < static_cast<int>(names.size()); ++i) {
        if (names[i] == "ALL")
            _sendsAll = true;
        else if (names[i] != "NONE")
            _outputs.push_back(names[i]);
    }
}

bool JointProc::isWanted(const char* name) const
{
    return _sendsAll || std::find(_outputs.begin(), _outputs.end(), name) != _outputs.end();
}

double JointProc::number(const Part& part, double least, double most, double fallback) const
{
    return bounded(part.read<SFFloat>(node()).value(), least, most, fallback);
}

double JointProc::correction(const Part& part) const
{
    return correctionOfStep(number(part, 0.0, 1.0));
}

osg::Vec3d JointProc::point(const Part& part) const
{
    return toDouble(part.read<SFVec3f>(node()).value());
}

osg::Vec3d JointProc::direction(const Part& part, const osg::Vec3d& fallback) const
{
    return toDirection(part.read<SFVec3f>(node()).value(), fallback);
}

osg::Vec3d JointProc::across(const osg::Vec3d& axis, const osg::Vec3d& wanted)
{
    const auto flattened = [&axis](const osg::Vec3d& v) { return v - axis * axis.dot(v); };
    osg::Vec3d result = flattened(wanted);
    if (!(result.length() > 1e-3))
        result = flattened(std::abs(axis[0]) < 0.7 ? osg::Vec3d(1.0, 0.0, 0.0) : osg::Vec3d(0.0, 1.0, 0.0));
    return result * (1.0 / result.length());
}

dxBody* JointProc::bodyOf(dxJoint* joint, int side)
{
    return dJointGetBody(joint, side);
}

osg::Vec3d JointProc::toBody(dxJoint* joint, int side, const double* place) const
{
    const dxBody* const body = bodyOf(joint, side);
    const auto* const simulated = static_cast<const SimulatedBody*>(dBodyGetData(const_cast<dxBody*>(body)));
    const osg::Vec3d v(place[0], place[1], place[2]);
    if (!simulated)
        return v;
    const RigidPose pose = simulated->state().pose;
    return turned(pose.turn.inverse(), v - pose.position);
}

osg::Vec3d JointProc::directionToBody(dxJoint* joint, int side, const double* direction) const
{
    const dReal* const q = dBodyGetQuaternion(bodyOf(joint, side));
    return turned(Turn{q[0], q[1], q[2], q[3]}.inverse(),
                  osg::Vec3d(direction[0], direction[1], direction[2]));
}

void JointProc::sendNumber(const Output& output, double value, double time)
{
    const auto now = static_cast<float>(value);
    if (isWanted(output.name()) && output.read<SFFloat>(node()).value() != now)
        output.edit<SFFloat>(node()).setValue(time, now, Field::EVENT_CT);
}

void JointProc::sendVector(const Output& output, const osg::Vec3d& value, double time)
{
    const osg::Vec3f now = toFloat(value);
    if (isWanted(output.name()) && !(output.read<SFVec3f>(node()).value() == now))
        output.edit<SFVec3f>(node()).setValue(time, now, Field::EVENT_CT);
}

} // namespace Orvane
