#pragma once

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>

namespace Orvane {

class Node;

/// What the coordinates of a geographic node mean, by its `geoSystem`, and where they lie in the scene, by
/// its `geoOrigin`. Computes in double precision.
class ORVANE_API GeoSystem
{
public:
    /// The system of a node with these fields, as they are now; \a origin is its `GeoOrigin`, or null.
    GeoSystem(const Node& node, const Node* origin);

    /// The system of a geographic node with its own origin.
    static GeoSystem of(const Node& node);

    /// Metres from the centre of the earth: x to the meridian of 0, y to that of 90 east, z north.
    osg::Vec3d toGeocentric(const osg::Vec3d& coordinates) const;
    /// A place in the scene: from the origin, and turned when that says so.
    osg::Vec3d toScene(const osg::Vec3d& coordinates) const;
    /// The coordinates of a place in the scene; undoes `toScene`.
    osg::Vec3d fromScene(const osg::Vec3d& place) const;
    /// The system of things that stand at a place: x east, y up, z south.
    osg::Matrix frameAt(const osg::Vec3d& coordinates) const;
    /// Adds metres to the east, the north and up, or degrees where the system has these, to a place.
    osg::Vec3d moved(const osg::Vec3d& coordinates, double east, double north, double up) const;

private:
    enum Kind { GEODETIC, GEOCENTRIC, UTM };

    explicit GeoSystem(const Node& node);

    struct Geodetic
    {
        double latitude; ///< radians
        double longitude;
        double height;
    };

    Geodetic fromUtm(const osg::Vec3d& coordinates) const;
    osg::Vec3d toUtm(const Geodetic& place) const;
    Geodetic geodeticOf(const osg::Vec3d& geocentric) const;
    osg::Vec3d geocentricOf(const Geodetic& place) const;
    /// Unit vectors to the east, up and south at a place.
    void axesAt(const osg::Vec3d& geocentric, osg::Vec3d (&axes)[3]) const;

    Kind _kind = GEODETIC;
    bool _swapped = false; ///< longitude or easting comes first
    bool _south = false;
    int _zone = 1;
    double _radius = 6378137.0;
    double _flattening = 1.0 / 298.257223563;
    osg::Vec3d _origin;        ///< geocentric
    osg::Vec3d _originAxes[3]; ///< of the scene, in geocentric directions
};

} // namespace Orvane
