#pragma once

#include "core/ParticleProcs.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

/// Places by chance on the faces of a mesh, or in what they enclose.
class ORVANE_API MeshSpots
{
public:
    void clear();
    /// Appends the triangles of a geometry; faces without area are left out.
    void add(const osg::GeometryPtr& geometry);
    void add(const osg::Vec3f& a, const osg::Vec3f& b, const osg::Vec3f& c);

    bool isEmpty() const { return _triangles.empty(); }
    /// A place on a face, each one as likely as any other, and the face's unit normal.
    void pickOn(osg::Vec3f& position, osg::Vec3f& normal, Chance& chance) const;
    /// A place inside a closed mesh, each one as likely as any other. False when none was found: the mesh is
    /// open, or encloses next to nothing of its box.
    bool pickIn(osg::Vec3f& position, Chance& chance) const;

private:
    struct Triangle
    {
        osg::Vec3f corner;
        osg::Vec3f sides[2]; ///< from the corner to the other two
        osg::Vec3f normal;
        double until; ///< area of the triangles up to and with this one
    };

    bool isInside(const osg::Vec3f& place) const;

    std::vector<Triangle> _triangles;
    osg::Vec3f _low;
    osg::Vec3f _high;
};

} // namespace Orvane
