#include "physics/CollisionGeom.h"
#include "physics/ContactFinder.h"
#include "physics/SimulatedBody.h"
#include <cmath>
#include <ode/ode.h>

namespace Orvane {

namespace {

constexpr unsigned int ConeSides = 24;

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
           mesh == other.mesh;
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
        makeCone(space);
        break;
    case CollisionSolid::Mesh:
        _geom.reset(dCreateTriMesh(space, solid.mesh->data(), nullptr, nullptr, nullptr));
        break;
    }
    if (_geom)
        dGeomSetData(_geom.get(), this);
}

CollisionGeom::~CollisionGeom() = default;

void CollisionGeom::makeCone(dxSpace* space)
{
    const double radius = _solid.size[0];
    const double half = 0.5 * _solid.size[1];
    const auto addPlane = [this](double x, double y, double z, double distance) {
        _planes.insert(_planes.end(), {x, y, z, distance});
    };
    // The tip, then the corners of the base.
    _points = {0.0, half, 0.0};
    for (unsigned int i = 0; i < ConeSides; ++i) {
        const double angle = 2.0 * M_PI * i / ConeSides;
        _points.insert(_points.end(), {radius * std::sin(angle), -half, radius * std::cos(angle)});
    }
    for (unsigned int i = 0; i < ConeSides; ++i) {
        const double angle = 2.0 * M_PI * (i + 0.5) / ConeSides;
        // The plane through the tip and a side of the base.
        const double inner = radius * std::cos(M_PI / ConeSides);
        const double length = std::hypot(2.0 * half, inner);
        const double up = inner / length;
        const double out = 2.0 * half / length;
        addPlane(out * std::sin(angle), up, out * std::cos(angle), up * half);
        _polygons.insert(_polygons.end(), {3U, 0U, i + 1, (i + 1) % ConeSides + 1});
    }
    addPlane(0.0, -1.0, 0.0, half);
    _polygons.push_back(ConeSides);
    for (unsigned int i = ConeSides; i > 0; --i)
        _polygons.push_back(i);
    _geom.reset(
        dCreateConvex(space, _planes.data(), ConeSides + 1, _points.data(), ConeSides + 1, _polygons.data()));
}

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
        const osg::Vec3d offset = solid.position - center;
        dGeomSetOffsetPosition(geom, offset[0], offset[1], offset[2]);
        dGeomSetOffsetQuaternion(geom, q);
    } else {
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
