#pragma once

#include "navigation/Pose.h"

namespace Orvane {

class Collider;
class UserView;

/// How fast a user goes, in parts of the full speed of each direction.
struct Velocity
{
    double forward = 0.0;
    double right = 0.0;
    double up = 0.0;
    double turn = 0.0; ///< to the left
    double tilt = 0.0; ///< upwards

    bool isNull() const;
};

/// Walks and flies: goes on by velocities, keeps off walls, and falls to the floor.
class TravelMotion
{
public:
    /// Goes on for \a seconds. \a speed is in metres a second; \a upright goes on the ground, with the whole
    /// body.
    static Pose advanced(const UserView& view, const Velocity& velocity, double speed, double seconds,
                         bool upright, const Collider& collider);

    /// Brings the eye nearer to \a height above the floor: by falling, or by stepping up. True while there is
    /// a way left.
    bool settle(const UserView& view, const Collider& collider, double height, double seconds, Pose& pose);
    /// Stands still.
    void stop() { _fall = 0.0; }

private:
    double _fall = 0.0; ///< metres a second, downwards
};

} // namespace Orvane
