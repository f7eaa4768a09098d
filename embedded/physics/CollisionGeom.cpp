#include "physics/CollisionGeom.h"
#include "physics/ContactFinder.h"
#include "physics/SimulatedBody.h"
#include <cmath>
#include <ode/ode.h>

namespace Orvane {

namespace {

/// From the system of X3D's solids to the engine's, whose cylinders lie along z.
const Turn CylinderTurn{std::sqrt(0.5), -std::sqrt(0.5), 0.0, 0.0};

bool isEqual(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
}

} // namespace

CollisionSolid CollisionSolid::bounds() const
{
    if (kind != Mesh)
        return *this;
    CollisionSolid box;
    box.kind = Box;
    for (osg::UInt32 i = 0; i < 3; ++i) {
        const double least = mesh->least()[i];
        const double most = mesh->most()[i];
        box.size[i] = std::max(most - least, SmallestSolid);
        box.center[i] = 0.5 * (least + most);
    }
    return box;
}

bool CollisionSolid::operator==(const CollisionSolid& other) const
{
    return kind == other.kind && isEqual(size, other.size) && isEqual(center, other.center) &&
           (kind != Mesh || mesh == other.mesh);
}

CollisionGeom::CollisionGeom(ContactFinder& finder, const CollisionSolid& solid, std::size_t index)
    : _solid(solid)
    , _index(index)
{
    dxSpace* const space = finder.handle();
    const osg::Vec3d& size = solid.size;
    switch (solid.kind) {
    case CollisionSolid::Nothing:
        break;
    case CollisionSolid::Box:
        _geom.reset(dCreateBox(space, size[0], size[1], size[2]));
        break;
    case CollisionSolid::Sphere:
        _geom.reset(dCreateSphere(space, size[0]));
        break;
    case CollisionSolid::Cylinder:
        _geom.reset(dCreateCylinder(space, size[0], size[1]));
        break;
    case CollisionSolid::Cone:
    case CollisionSolid::Mesh:
        _geom.reset(dCreateTriMesh(space, solid.mesh->data(), nullptr, nullptr, nullptr));
        break;
    }
    if (_geom)
        dGeomSetData(_geom.get(), this);
}

CollisionGeom::~CollisionGeom() = default;

bool CollisionGeom::place(SimulatedBody* body, const RigidPose& pose)
{
    dxGeom* const geom = _geom.get();
    dxBody* const handle = body ? body->handle() : nullptr;
    const osg::Vec3d center = body ? body->settings().centerOfMass : osg::Vec3d();
    if (!geom || (_placed && dGeomGetBody(geom) == handle && pose == _pose && isEqual(center, _centerOfMass)))
        return false;
    _placed = true;
    _pose = pose;
    _centerOfMass = center;
    dGeomSetBody(geom, handle);
    RigidPose solid = pose * RigidPose{_solid.center, {}};
    if (_solid.kind == CollisionSolid::Cylinder)
        solid.turn = solid.turn * CylinderTurn;
    const dQuaternion q = {solid.turn.w, solid.turn.x, solid.turn.y, solid.turn.z};
    if (handle) {
        osg::Vec3d offset = solid.position - center;
        for (osg::UInt32 i = 0; i < 3; ++i)
            offset[i] = bounded(offset[i], -FarthestPlace, FarthestPlace, 0.0);
        dGeomSetOffsetPosition(geom, offset[0], offset[1], offset[2]);
        dGeomSetOffsetQuaternion(geom, q);
    } else {
        // Offsets inside each other may lead farther than the engine can count.
        for (osg::UInt32 i = 0; i < 3; ++i)
            solid.position[i] = bounded(solid.position[i], -FarthestPlace, FarthestPlace, 0.0);
        dGeomSetPosition(geom, solid.position[0], solid.position[1], solid.position[2]);
        dGeomSetQuaternion(geom, q);
    }
    return true;
}

bool CollisionGeom::setEnabled(bool enabled)
{
    if (!_geom || (dGeomIsEnabled(_geom.get()) != 0) == enabled)
        return false;
    enabled ? dGeomEnable(_geom.get()) : dGeomDisable(_geom.get());
    return true;
}

} // namespace Orvane
