#pragma once

#include "physics/CollisionMesh.h"
#include "physics/Dynamics.h"
#include "physics/RigidPose.h"
#include <cstddef>
#include <memory>

namespace Orvane {

class ContactFinder;
class SimulatedBody;

/// Solids are not thinner than this, in metres.
constexpr double SmallestSolid = 1e-3;

/// A solid that collides, as X3D has it: centred at its origin, with its axis along y.
struct CollisionSolid
{
    enum Kind { Nothing, Box, Sphere, Cylinder, Cone, Mesh };

    Kind kind = Nothing;
    osg::Vec3d size; ///< of a box; radius and height of the round ones
    osg::Vec3d center;
    std::shared_ptr<const CollisionMesh> mesh; ///< of a mesh, and of a cone

    /// The box round a mesh; any other solid as it is.
    CollisionSolid bounds() const;
    bool operator==(const CollisionSolid& other) const;
};

/// A solid in a finder of contacts, at its own place or on a body. Operations may throw `DynamicsFault`.
class CollisionGeom
{
public:
    /// \a index is told with each contact.
    CollisionGeom(ContactFinder& finder, const CollisionSolid& solid, std::size_t index);
    CollisionGeom(const CollisionGeom&) = delete;
    CollisionGeom& operator=(const CollisionGeom&) = delete;
    ~CollisionGeom();

    const CollisionSolid& solid() const { return _solid; }
    std::size_t index() const { return _index; }
    void setIndex(std::size_t index) { _index = index; }
    dxGeom* handle() const { return _geom.get(); }

    /// Puts the solid to a body, at \a pose in the body's system, or without one to its place in the world.
    /// False when it is there already.
    bool place(SimulatedBody* body, const RigidPose& pose);
    /// False when it was so already.
    bool setEnabled(bool enabled);

private:
    CollisionSolid _solid;
    std::size_t _index;
    Dynamics::Geom _geom;
    RigidPose _pose;
    osg::Vec3d _centerOfMass;
    bool _placed = false;
};

} // namespace Orvane
