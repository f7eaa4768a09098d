#pragma once

#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <array>

namespace Orvane {

/// A convex body in double precision: a point, a triangle, or one of X3D's solids, moved and bent by a
/// matrix.
class ORVANE_API Convex
{
public:
    static Convex point(const osg::Vec3d& place);
    static Convex triangle(const osg::Vec3d& a, const osg::Vec3d& b, const osg::Vec3d& c);
    static Convex box(const osg::Vec3d& center, const osg::Vec3d& size);
    static Convex sphere(double radius);
    /// Solids about y, as X3D has them.
    static Convex cone(double radius, double height);
    static Convex cylinder(double radius, double height);

    /// The body in another system.
    Convex in(const osg::Matrix4d& matrix) const;

    /// The place of the body that lies farthest in a direction, which need not have length 1.
    osg::Vec3d farthest(const osg::Vec3d& direction) const;
    /// A place inside.
    osg::Vec3d middle() const;
    /// The box round the body; never empty.
    osg::BoxVolume bounds() const;

    /// The distance between both; 0 when they touch.
    static double distance(const Convex& a, const Convex& b);
    static bool meet(const Convex& a, const Convex& b) { return distance(a, b) == 0.0; }

private:
    enum Kind { POINT, TRIANGLE, BOX, SPHERE, CONE, CYLINDER };

    Kind _kind = POINT;
    std::array<osg::Vec3d, 3> _corners; ///< of a point and a triangle
    osg::Vec3d _center;                 ///< of a box
    osg::Vec3d _size;                   ///< of a box: half its edges; of others radius and half the height
    osg::Matrix4d _matrix;
};

} // namespace Orvane
