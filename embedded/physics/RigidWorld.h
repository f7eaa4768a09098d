#pragma once

#include "physics/ContactSurface.h"
#include "physics/Dynamics.h"
#include <cstddef>

namespace Orvane {

/// The share of an error that is to be corrected in one step, of that which a scene wants to see corrected by
/// some steps in a row. What corrects all at once would make things bounce that are not to bounce.
double correctionOfStep(double share);

/// What holds for all bodies of a world.
struct WorldSettings
{
    osg::Vec3d gravity;
    double errorCorrection = 0.8;
    double constantForceMix = 0.0001;
    double surfaceThickness = 0.0;
    double maxCorrectionSpeed = -1.0; ///< negative for no limit
    int iterations = 10;
    bool preferAccuracy = false;
};

/// Bodies that move together, in steps of one length. Bodies and joints share the world they stand in. All
/// operations may throw `DynamicsFault`.
class RigidWorld
{
public:
    /// Seconds of a step.
    static constexpr double Step = 1.0 / 120.0;

    RigidWorld();
    RigidWorld(const RigidWorld&) = delete;
    RigidWorld& operator=(const RigidWorld&) = delete;
    ~RigidWorld();

    void set(const WorldSettings& settings);

    /// A contact of the next step between two bodies, one of which may be null for what never moves. False
    /// when there are too many already.
    bool addContact(const ContactSurface& surface, const ContactPoint& point, dxBody* first, dxBody* second);
    /// Moves the bodies.
    void step();

    dxWorld* handle() const { return _world.get(); }
    /// A body that never moves, for joints to what stands still.
    dxBody* ground() const { return _ground.get(); }
    /// Joints tell how many they are, contacts not counted.
    void countJoint(int change) { _joints += change; }

private:
    Dynamics::World _world;
    Dynamics::Body _ground;
    Dynamics::JointGroup _contacts;
    std::size_t _contactCount = 0;
    int _joints = 0;
    unsigned long _chance = 0; ///< where the engine's random numbers go on
    int _iterations = 10;
    bool _preferAccuracy = false;
};

} // namespace Orvane
