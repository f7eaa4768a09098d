#include "physics/SimulatedBody.h"
#include "physics/RigidWorld.h"
#include <cmath>
#include <ode/ode.h>
#include <utility>

namespace Orvane {

namespace {

constexpr double FastestMove = 1e5; ///< metres a second
constexpr double FastestTurn = 1e4; ///< radians a second

osg::Vec3d toVector(const dReal* v)
{
    return osg::Vec3d(v[0], v[1], v[2]);
}

bool isEqual(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
}

bool isWithin(const osg::Vec3d& v, double limit)
{
    return std::abs(v[0]) <= limit && std::abs(v[1]) <= limit && std::abs(v[2]) <= limit;
}

osg::Vec3d limited(const osg::Vec3d& v, double limit)
{
    return osg::Vec3d(bounded(v[0], -limit, limit, 0.0), bounded(v[1], -limit, limit, 0.0),
                      bounded(v[2], -limit, limit, 0.0));
}

} // namespace

bool BodyState::operator==(const BodyState& other) const
{
    return pose == other.pose && isEqual(linearVelocity, other.linearVelocity) &&
           isEqual(angularVelocity, other.angularVelocity);
}

SimulatedBody::SimulatedBody(std::shared_ptr<RigidWorld> world)
    : _world(std::move(world))
    , _body(dBodyCreate(_world->handle()))
{
    dBodySetData(_body.get(), this);
    dBodySetLinearDampingThreshold(_body.get(), 0.0);
    dBodySetAngularDampingThreshold(_body.get(), 0.0);
}

void SimulatedBody::set(const BodySettings& settings)
{
    const RigidPose pose = state().pose;
    _settings = settings;
    dxBody* const body = _body.get();
    dMass mass;
    const std::array<double, 6>& i = settings.mass.inertia;
    dMassSetParameters(&mass, settings.mass.mass, 0, 0, 0, i[0], i[1], i[2], i[3], i[4], i[5]);
    dBodySetMass(body, &mass);
    if (settings.isHeld) {
        dBodySetKinematic(body);
        setVelocities({}, {});
    }
    dBodySetGravityMode(body, settings.feelsGravity);
    dBodySetLinearDamping(body, settings.linearDamping);
    dBodySetAngularDamping(body, settings.angularDamping);
    dBodySetFiniteRotationMode(body, settings.finiteRotation);
    const osg::Vec3d& axis = settings.finiteRotationAxis;
    dBodySetFiniteRotationAxis(body, axis[0], axis[1], axis[2]);
    dBodySetAutoDisableFlag(body, settings.autoDisable);
    dBodySetAutoDisableLinearThreshold(body, settings.disableLinearSpeed);
    dBodySetAutoDisableAngularThreshold(body, settings.disableAngularSpeed);
    dBodySetAutoDisableTime(body, settings.disableTime);
    setPose(pose);
    wake();
}

BodyState SimulatedBody::state() const
{
    const dReal* const q = dBodyGetQuaternion(_body.get());
    BodyState state;
    state.pose.turn = {q[0], q[1], q[2], q[3]};
    state.pose.position =
        toVector(dBodyGetPosition(_body.get())) - turned(state.pose.turn, _settings.centerOfMass);
    state.linearVelocity = toVector(dBodyGetLinearVel(_body.get()));
    state.angularVelocity = toVector(dBodyGetAngularVel(_body.get()));
    return state;
}

void SimulatedBody::setPose(const RigidPose& pose)
{
    const osg::Vec3d center = pose.position + turned(pose.turn, _settings.centerOfMass);
    const dQuaternion q = {pose.turn.w, pose.turn.x, pose.turn.y, pose.turn.z};
    dBodySetPosition(_body.get(), center[0], center[1], center[2]);
    dBodySetQuaternion(_body.get(), q);
    _sound = state();
}

void SimulatedBody::setVelocities(const osg::Vec3d& linear, const osg::Vec3d& angular)
{
    const osg::Vec3d move = _settings.isHeld ? osg::Vec3d() : limited(linear, FastestMove);
    const osg::Vec3d turn = _settings.isHeld ? osg::Vec3d() : limited(angular, FastestTurn);
    dBodySetLinearVel(_body.get(), move[0], move[1], move[2]);
    dBodySetAngularVel(_body.get(), turn[0], turn[1], turn[2]);
}

void SimulatedBody::applyForces()
{
    if (!isAwake())
        return;
    const osg::Vec3d& force = _settings.force;
    const osg::Vec3d& torque = _settings.torque;
    dBodyAddForce(_body.get(), force[0], force[1], force[2]);
    dBodyAddTorque(_body.get(), torque[0], torque[1], torque[2]);
}

bool SimulatedBody::isAwake() const
{
    return !_settings.isHeld && dBodyIsEnabled(_body.get());
}

void SimulatedBody::wake()
{
    dBodyEnable(_body.get());
}

bool SimulatedBody::keepSound()
{
    const BodyState now = state();
    const Turn& turn = now.pose.turn;
    const double size = turn.w * turn.w + turn.x * turn.x + turn.y * turn.y + turn.z * turn.z;
    if (isWithin(now.pose.position, FarthestPlace) && size > 0.5 && size < 2.0 &&
        std::isfinite(now.linearVelocity.length()) && std::isfinite(now.angularVelocity.length()))
    {
        if (!isWithin(now.linearVelocity, FastestMove) || !isWithin(now.angularVelocity, FastestTurn))
            setVelocities(now.linearVelocity, now.angularVelocity);
        _sound = now;
        return true;
    }
    setPose(RigidPose(_sound.pose));
    setVelocities({}, {});
    dBodySetForce(_body.get(), 0, 0, 0);
    dBodySetTorque(_body.get(), 0, 0, 0);
    return false;
}

} // namespace Orvane
