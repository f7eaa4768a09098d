#pragma once

#include <OpenSG/OSGVector.h>

namespace Orvane {

class Node;

/// How two bodies meet at a contact, as a `CollisionCollection` or a `Contact` says.
struct ContactSurface
{
    enum Applied : unsigned int {
        Bounce = 1,
        UserFriction = 2,
        SecondFriction = 4,
        ErrorReduction = 8,
        ConstantForce = 16,
        FirstSpeed = 32,
        SecondSpeed = 64,
        FirstSlip = 128,
        SecondSlip = 256
    };

    unsigned int applied = Bounce; ///< which of the values below count; friction always does
    double bounce = 0.0;
    double minBounceSpeed = 0.0;
    double friction[2] = {0.0, 0.0};
    double slip[2] = {0.0, 0.0};
    double speed[2] = {0.0, 0.0};
    double errorCorrection = 0.8;
    double constantForceMix = 0.0001;
};

/// Where two bodies meet.
struct ContactPoint
{
    osg::Vec3d position;
    osg::Vec3d normal; ///< of length 1; moved along it by `depth`, the first body meets the second no more
    double depth = 0.0;
    osg::Vec3d frictionDirection; ///< of the first coefficient of friction, when the user gives it
};

/// The surface of a node that has the fields for it, within what can be simulated.
ContactSurface readContactSurface(const Node& node);

} // namespace Orvane
