#include "physics/RigidBodyProc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include "physics/CollidableProcs.h"
#include "physics/RigidBodyCollectionProc.h"
#include "physics/RigidWorld.h"
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part angularDampingFactorPart("angularDampingFactor");
const Part angularVelocityPart("angularVelocity");
const Part autoDampPart("autoDamp");
const Part autoDisablePart("autoDisable");
const Part centerOfMassPart("centerOfMass");
const Part disableAngularSpeedPart("disableAngularSpeed");
const Part disableLinearSpeedPart("disableLinearSpeed");
const Part disableTimePart("disableTime");
const Part enabledPart("enabled");
const Part finiteRotationAxisPart("finiteRotationAxis");
const Part fixedPart("fixed");
const Part forcesPart("forces");
const Part geometryPart("geometry");
const Part inertiaPart("inertia");
const Part linearDampingFactorPart("linearDampingFactor");
const Part linearVelocityPart("linearVelocity");
const Part massDensityModelPart("massDensityModel");
const Part massPart("mass");
const Part orientationPart("orientation");
const Part positionPart("position");
const Part torquesPart("torques");
const Part useFiniteRotationPart("useFiniteRotation");
const Part useGlobalGravityPart("useGlobalGravity");

constexpr double LeastMass = 1e-6;
constexpr double MostMass = 1e12;
constexpr double MostForce = 1e12;
constexpr double MostSpeed = 1e6;
/// Dampings are told for a frame; scenes reckon with so many a second.
constexpr double FrameRate = 60.0;

double dampingOfStep(float ofFrame)
{
    return 1.0 - std::pow(1.0 - bounded(ofFrame, 0.0, 1.0, 0.0), FrameRate * RigidWorld::Step);
}

const ProcRegistration rigidBody("RigidBody", makeProc<RigidBodyProc>);

} // namespace

RestLimits readRestLimits(const Node& node)
{
    RestLimits limits;
    limits.enabled = autoDisablePart.read<SFBool>(node).value();
    limits.linearSpeed = bounded(disableLinearSpeedPart.read<SFFloat>(node).value(), 0.0, MostSpeed, 0.0);
    limits.angularSpeed = bounded(disableAngularSpeedPart.read<SFFloat>(node).value(), 0.0, MostSpeed, 0.0);
    limits.time = bounded(disableTimePart.read<SFTime>(node).value(), 0.0, 1e9, 0.0);
    return limits;
}

RigidBodyProc::RigidBodyProc(Node& node)
    : ElementProc(node)
    , _known(readKnown())
{
}

RigidBodyProc::~RigidBodyProc()
{
    for (Use& use : _collidables) {
        auto* const collidable = dynamic_cast<CollidableProc*>(use.element());
        use.clear();
        if (collidable)
            collidable->driverChanged();
    }
}

void RigidBodyProc::fieldChanged(Field& field, double)
{
    if (isKnown(field))
        return;
    if (geometryPart.is(field))
        _collidablesChanged = true;
    else if (!isState(field))
        _settingsChanged = true;
    requestUpdate();
}

void RigidBodyProc::elementChanged(ElementProc& element)
{
    if (&element != _massModel.element())
        return; // what collides is the matter of the collider
    _settingsChanged = true;
    changed();
}

void RigidBodyProc::elementGone()
{
    _collidablesChanged = true;
    _settingsChanged = true;
    requestUpdate();
}

void RigidBodyProc::update()
{
    // A node may have come to the place of another one.
    syncCollidables();
    _massModel.set(*this, elementOf(massDensityModelPart.readNode(node())));
    if (!_simulated)
        drive(pose(), context().timeStamp());
    changed();
}

void RigidBodyProc::syncCollidables()
{
    const auto& nodes = geometryPart.read<MFNode>(node());
    std::vector<CollidableProc*> wanted;
    for (NodeLink& link : nodes) {
        if (auto* const collidable = elementOf<CollidableProc>(link.node()))
            wanted.push_back(collidable);
    }
    const bool same =
        std::equal(_collidables.begin(), _collidables.end(), wanted.begin(), wanted.end(),
                   [](const Use& use, CollidableProc* wanted) { return use.element() == wanted; });
    if (same && !_collidablesChanged)
        return;
    _collidablesChanged = false;
    std::vector<Use> former;
    former.swap(_collidables);
    _collidables.resize(wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i)
        _collidables[i].set(*this, wanted[i]);
    for (Use& use : former) {
        auto* const collidable = dynamic_cast<CollidableProc*>(use.element());
        use.clear();
        if (collidable)
            collidable->driverChanged();
    }
    tellCollidables();
    drive(_simulated ? _simulated->state().pose : pose(), context().timeStamp());
}

void RigidBodyProc::tellCollidables()
{
    for (const Use& use : _collidables) {
        if (auto* const collidable = dynamic_cast<CollidableProc*>(use.element()))
            collidable->driverChanged();
    }
}

void RigidBodyProc::drive(const RigidPose& pose, double time)
{
    for (const Use& use : _collidables) {
        auto* const collidable = dynamic_cast<CollidableProc*>(use.element());
        // Of two bodies that have it the first one moves it.
        if (collidable && collidable->driver().body == this)
            collidable->drive(pose, time);
    }
}

RigidBodyCollectionProc* RigidBodyProc::collection() const
{
    RigidBodyCollectionProc* first = nullptr;
    for (const Use* use = uses(); use; use = use->next()) {
        if (auto* const collection = dynamic_cast<RigidBodyCollectionProc*>(use->user()))
            first = collection;
    }
    return first;
}

RigidPose RigidBodyProc::pose() const
{
    return toPose(positionPart.read<SFVec3f>(node()).value(),
                  orientationPart.read<SFRotation>(node()).value());
}

RigidBodyProc::Known RigidBodyProc::readKnown() const
{
    return {positionPart.read<SFVec3f>(node()).value(), orientationPart.read<SFRotation>(node()).value(),
            linearVelocityPart.read<SFVec3f>(node()).value(),
            angularVelocityPart.read<SFVec3f>(node()).value()};
}

bool RigidBodyProc::isState(const Field& field)
{
    return positionPart.is(field) || orientationPart.is(field) || linearVelocityPart.is(field) ||
           angularVelocityPart.is(field);
}

bool RigidBodyProc::isKnown(const Field& field) const
{
    const auto hasValue = [&field](const osg::Vec3f& v) {
        return static_cast<const SFVec3f&>(field).value() == v;
    };
    if (positionPart.is(field))
        return hasValue(_known.position);
    if (orientationPart.is(field))
        return static_cast<const SFRotation&>(field).value() == _known.orientation;
    if (linearVelocityPart.is(field))
        return hasValue(_known.linearVelocity);
    return angularVelocityPart.is(field) && hasValue(_known.angularVelocity);
}

BodyMass RigidBodyProc::readMass()
{
    BodyMass mass;
    const double given = massPart.read<SFFloat>(node()).value();
    if (given >= LeastMass && given <= MostMass)
        mass.mass = given;
    else
        complain("mass", "expected a mass above 0, found another one; it counts as 1");
    if (const Node* const model = resolved(massDensityModelPart.readNode(node()))) {
        if (readInertia(*model, mass))
            return mass;
        complain("massDensityModel", "expected a Box, Sphere or Cone with a size; it is left out");
    }
    if (!readInertia(inertiaPart.read<SFMatrix3f>(node()).value(), mass))
        complain("inertia", "expected a symmetric matrix that is positive definite; it is left out");
    return mass;
}

osg::Vec3d RigidBodyProc::sumOf(const Part& part)
{
    osg::Vec3d sum;
    for (const osg::Vec3f& v : part.read<MFVec3f>(node()).values())
        sum = sum + toDouble(v);
    for (osg::UInt32 i = 0; i < 3; ++i)
        sum[i] = bounded(sum[i], -MostForce, MostForce, 0.0);
    return sum;
}

BodySettings RigidBodyProc::readSettings(const RestLimits& limits)
{
    const auto flag = [this](const Part& part) { return part.read<SFBool>(node()).value(); };
    BodySettings settings;
    settings.mass = readMass();
    settings.centerOfMass = toDouble(centerOfMassPart.read<SFVec3f>(node()).value());
    settings.isHeld = flag(fixedPart) || !flag(enabledPart);
    settings.feelsGravity = flag(useGlobalGravityPart);
    if (flag(autoDampPart)) {
        settings.linearDamping = dampingOfStep(linearDampingFactorPart.read<SFFloat>(node()).value());
        settings.angularDamping = dampingOfStep(angularDampingFactorPart.read<SFFloat>(node()).value());
    }
    settings.finiteRotation = flag(useFiniteRotationPart);
    settings.finiteRotationAxis = toDirection(finiteRotationAxisPart.read<SFVec3f>(node()).value(), {});
    const RestLimits own = readRestLimits(node());
    const RestLimits& rest = own.enabled ? own : limits;
    settings.autoDisable = rest.enabled;
    settings.disableLinearSpeed = rest.linearSpeed;
    settings.disableAngularSpeed = rest.angularSpeed;
    settings.disableTime = rest.time;
    settings.force = sumOf(forcesPart);
    settings.torque = sumOf(torquesPart);
    return settings;
}

void RigidBodyProc::join(const std::shared_ptr<RigidWorld>& world, const RestLimits& limits)
{
    const bool isNew = !_simulated || _simulated->world() != world;
    if (isNew) {
        _simulated = std::make_unique<SimulatedBody>(world);
        _settingsChanged = true;
    }
    if (_settingsChanged) {
        _settingsChanged = false;
        _simulated->set(readSettings(limits));
        tellCollidables();
    }
    if (!isNew)
        return;
    _known = readKnown();
    _simulated->setPose(pose());
    _simulated->setVelocities(toDouble(_known.linearVelocity), toDouble(_known.angularVelocity));
    _last = _simulated->state();
    drive(pose(), context().timeStamp());
}

void RigidBodyProc::leave()
{
    if (!_simulated)
        return;
    _simulated.reset();
    tellCollidables();
    changed();
}

void RigidBodyProc::takeEdits(double time)
{
    if (!_simulated)
        return;
    const Known now = readKnown();
    if (!(now.position == _known.position) || now.orientation != _known.orientation) {
        _simulated->setPose(pose());
        _simulated->wake();
        drive(pose(), time);
    }
    if (!(now.linearVelocity == _known.linearVelocity) || !(now.angularVelocity == _known.angularVelocity)) {
        _simulated->setVelocities(toDouble(now.linearVelocity), toDouble(now.angularVelocity));
        _simulated->wake();
    }
    _known = now;
}

bool RigidBodyProc::send(double time)
{
    const BodyState state = _simulated->state();
    if (state == _last)
        return false;
    const bool moved = state.pose != _last.pose;
    _last = state;
    if (moved)
        drive(state.pose, time);
    const auto sendVector = [&](const Part& part, const osg::Vec3d& value, osg::Vec3f& known) {
        const osg::Vec3f now = toFloat(value);
        if (now == known)
            return;
        known = now;
        part.edit<SFVec3f>(node()).setValue(time, now, Field::EVENT_CT);
    };
    sendVector(positionPart, state.pose.position, _known.position);
    const Rotation orientation = toRotation(state.pose.turn);
    if (orientation != _known.orientation) {
        _known.orientation = orientation;
        orientationPart.edit<SFRotation>(node()).setValue(time, orientation, Field::EVENT_CT);
    }
    sendVector(linearVelocityPart, state.linearVelocity, _known.linearVelocity);
    sendVector(angularVelocityPart, state.angularVelocity, _known.angularVelocity);
    return true;
}

void RigidBodyProc::keepSound()
{
    if (_simulated->isAwake() && !_simulated->keepSound())
        complain(nullptr, "expected to move within what can be simulated; it was stopped");
}

} // namespace Orvane
