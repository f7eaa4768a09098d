#pragma once

#include "physics/BodyMass.h"
#include "physics/Dynamics.h"
#include "physics/RigidPose.h"
#include <memory>

namespace Orvane {

class RigidWorld;

/// How a body moves.
struct BodySettings
{
    BodyMass mass;
    osg::Vec3d centerOfMass;
    bool isHeld = false; ///< stands where it is put, whatever hits it
    bool feelsGravity = true;
    double linearDamping = 0.0; ///< share of the speed lost in a step
    double angularDamping = 0.0;
    bool finiteRotation = false;
    osg::Vec3d finiteRotationAxis;
    bool autoDisable = false;
    double disableLinearSpeed = 0.0;
    double disableAngularSpeed = 0.0;
    double disableTime = 0.0;
    osg::Vec3d force; ///< acts all the time
    osg::Vec3d torque;
};

/// What changes while a body moves.
struct BodyState
{
    RigidPose pose; ///< of the body's own system, wherever its mass is centred
    osg::Vec3d linearVelocity;
    osg::Vec3d angularVelocity;

    bool operator==(const BodyState& other) const;
};

/// One body of a world. The engine has it at its centre of mass. All operations may throw `DynamicsFault`.
class SimulatedBody
{
public:
    explicit SimulatedBody(std::shared_ptr<RigidWorld> world);

    const std::shared_ptr<RigidWorld>& world() const { return _world; }
    dxBody* handle() const { return _body.get(); }

    void set(const BodySettings& settings);
    const BodySettings& settings() const { return _settings; }

    BodyState state() const;
    void setPose(const RigidPose& pose);
    void setVelocities(const osg::Vec3d& linear, const osg::Vec3d& angular);

    /// The constant forces act in the next step.
    void applyForces();
    /// True when the next step may move the body.
    bool isAwake() const;
    void wake();
    /// Takes back a step that led to what is no number or too far away, and stands still. False when it had
    /// to.
    bool keepSound();

private:
    std::shared_ptr<RigidWorld> _world;
    Dynamics::Body _body;
    BodySettings _settings;
    BodyState _sound; ///< the last state that was one
};

} // namespace Orvane
