// The sensors that pick with points, lines, solids and volumes.
#include "base/ValueFields.h"
#include "core/DoubleMatrix.h"
#include "core/PickSensorProc.h"
#include "core/SurfacePoint.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGTriangleTree.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part bottomRadiusPart("bottomRadius");
const Part heightPart("height");
const Part pickedNormalPart("pickedNormal");
const Part pickedPointPart("pickedPoint");
const Part pickedTextureCoordinatePart("pickedTextureCoordinate");
const Part pickingGeometryPart("pickingGeometry");
const Part radiusPart("radius");
const Part sizePart("size");

osg::BoxVolume boundsOf(const std::vector<osg::Vec3d>& places)
{
    osg::BoxVolume box;
    box.setEmpty();
    for (const osg::Vec3d& place : places)
        box.extendBy(osg::Pnt3f(osg::Vec3f(place)));
    return box;
}

/// Asks which shapes points lie in. All distances are 0, so that the first shape is the closest.
class PointPickSensorProc : public PickSensorProc
{
public:
    using PickSensorProc::PickSensorProc;

protected:
    bool readGeometry() override
    {
        _points = verticesOf(geometryOf(Surface::POINTS, "a PointSet"));
        return !_points.empty();
    }

    osg::BoxVolume region() const override { return boundsOf(_points); }

    bool meets(const PickTarget& target, Pick& pick) const override
    {
        for (const osg::Vec3d& point : _points) {
            if (isInside(target, transformed(target.toOwn, point)))
                pick.spots.push_back({osg::Vec3f(point), {}, {}, 0.0});
        }
        return !pick.spots.empty();
    }

    void sendSpots(const std::vector<Spot>& spots, double time) override
    {
        // A point in several shapes is one point.
        std::vector<osg::Vec3f> points;
        for (const Spot& spot : spots) {
            if (std::find(points.begin(), points.end(), spot.point) == points.end())
                points.push_back(spot.point);
        }
        tell<MFVec3f>(pickedPointPart, std::move(points), time);
    }

private:
    std::vector<osg::Vec3d> _points;
};

/// Asks which shapes lines meet, and where each line first does. Distances count from the beginning of each
/// line.
class LinePickSensorProc : public PickSensorProc
{
public:
    using PickSensorProc::PickSensorProc;

protected:
    bool readGeometry() override
    {
        _ends = verticesOf(geometryOf(Surface::LINES, "a LineSet or an IndexedLineSet"));
        return _ends.size() > 1;
    }

    osg::BoxVolume region() const override { return boundsOf(_ends); }

    bool meets(const PickTarget& target, Pick& pick) const override
    {
        for (std::size_t i = 1; i < _ends.size(); i += 2) {
            const osg::Vec3d along = _ends[i] - _ends[i - 1];
            Spot spot;
            if (!(along.length() > 0.0) || !meetLine(target, _ends[i - 1], along, spot))
                continue;
            pick.spots.push_back(spot);
        }
        std::stable_sort(pick.spots.begin(), pick.spots.end(),
                         [](const Spot& a, const Spot& b) { return a.distance < b.distance; });
        if (pick.spots.empty())
            return false;
        pick.distance = pick.spots.front().distance;
        return true;
    }

    void sendSpots(const std::vector<Spot>& spots, double time) override
    {
        const auto list = [&](osg::Vec3f Spot::*value) {
            std::vector<osg::Vec3f> values;
            for (const Spot& spot : spots)
                values.push_back(spot.*value);
            return values;
        };
        tell<MFVec3f>(pickedPointPart, list(&Spot::point), time);
        tell<MFVec3f>(pickedNormalPart, list(&Spot::normal), time);
        tell<MFVec3f>(pickedTextureCoordinatePart, list(&Spot::texCoord), time);
    }

private:
    bool meetLine(const PickTarget& target, const osg::Vec3d& begin, const osg::Vec3d& along,
                  Spot& spot) const
    {
        const osg::Vec3d origin = transformed(target.toOwn, begin);
        osg::Vec3d direction;
        target.toOwn.multMatrixVec(along, direction);
        osg::TriangleTree::Hit hit{0.0, -1, {}};
        // The end of the line counts as well.
        const double end = std::nextafter(1.0, 2.0);
        if (isExact() ? !target.geometry->getTriangleTree().intersect(osg::Pnt3d(origin), direction, end, hit)
                      : !meetBox(target.box(), origin, direction, hit))
            return false;
        const osg::Vec3d place = begin + along * hit.t;
        osg::Matrix toSensor;
        for (osg::UInt32 column = 0; column < 4; ++column)
            toSensor[column] = osg::Vec4f(target.toSensor[column]);
        spot.point = osg::Vec3f(place);
        spot.distance = hit.t * along.length();
        const osg::Vec3f flat = worldNormal(hit.normal, toSensor);
        const SurfacePoint surface = surfaceAt(isExact() ? target.geometry : osg::GeometryPtr(), hit.triangle,
                                               toSensor, osg::Pnt3f(spot.point), flat);
        spot.normal = surface.normal;
        if (surface.hasTexCoord)
            spot.texCoord = osg::Vec3f(surface.texCoord[0], surface.texCoord[1], 0.0F);
        return true;
    }

    /// Where a line enters a box; its beginning when that lies inside, with the normal of the side that was
    /// left then.
    static bool meetBox(const osg::BoxVolume& box, const osg::Vec3d& origin, const osg::Vec3d& direction,
                        osg::TriangleTree::Hit& hit)
    {
        double enter = -std::numeric_limits<double>::infinity();
        double exit = std::numeric_limits<double>::infinity();
        for (osg::UInt32 i = 0; i < 3; ++i) {
            if (direction[i] == 0.0) {
                if (origin[i] < box.getMin()[i] || origin[i] > box.getMax()[i])
                    return false;
                continue;
            }
            const double a = (box.getMin()[i] - origin[i]) / direction[i];
            const double b = (box.getMax()[i] - origin[i]) / direction[i];
            if (std::min(a, b) > enter) {
                enter = std::min(a, b);
                hit.normal = osg::Vec3f();
                hit.normal[i] = direction[i] > 0.0 ? -1.0F : 1.0F;
            }
            exit = std::min(exit, std::max(a, b));
        }
        hit.t = std::max(enter, 0.0);
        return enter <= exit && exit >= 0.0 && enter <= 1.0;
    }

    std::vector<osg::Vec3d> _ends; ///< of the lines, two by two
};

/// Asks which shapes one of the four solids meets. Distances count from its middle, of a cone from the tip.
class PrimitivePickSensorProc : public PickSensorProc
{
public:
    using PickSensorProc::PickSensorProc;

protected:
    bool readGeometry() override
    {
        const Node& solid = *resolved(pickingGeometryPart.readNode(node()));
        const auto number = [&](const Part& part) {
            return double(std::max(0.0F, usableNumber(part.read<SFFloat>(solid).value(), 0.0F)));
        };
        const std::string& type = solid.type()->name;
        _origin = osg::Vec3d();
        if (type == "Box") {
            osg::Vec3d size(usableVector(sizePart.read<SFVec3f>(solid).value()));
            for (osg::UInt32 i = 0; i < 3; ++i)
                size[i] = std::max(0.0, size[i]);
            _solid = Convex::box({}, size);
        } else if (type == "Sphere") {
            _solid = Convex::sphere(number(radiusPart));
        } else if (type == "Cone") {
            _solid = Convex::cone(number(bottomRadiusPart), number(heightPart));
            _origin[1] = 0.5 * number(heightPart);
        } else if (type == "Cylinder") {
            _solid = Convex::cylinder(number(radiusPart), number(heightPart));
        } else {
            complain("pickingGeometry", "expected a Box, Cone, Cylinder or Sphere, found a node " + type);
            return false;
        }
        return true;
    }

    osg::BoxVolume region() const override { return _solid.bounds(); }

    bool meets(const PickTarget& target, Pick& pick) const override
    {
        if (!isMet(target))
            return false;
        if (isSorted())
            pick.distance = distanceFrom(_origin, target);
        return true;
    }

private:
    bool isMet(const PickTarget& target) const
    {
        const Convex solid = _solid.in(target.toOwn);
        if (!isExact())
            return Convex::meet(solid, boxOf(target));
        const auto meetsTriangle = [&](const osg::Pnt3f& a, const osg::Pnt3f& b, const osg::Pnt3f& c) {
            return Convex::meet(solid, triangleOf(a, b, c));
        };
        return target.geometry->getTriangleTree().anyIn(solid.bounds(), meetsTriangle) ||
               isEnclosed(*target.geometry, solid.middle());
    }

    Convex _solid = Convex::point({});
    osg::Vec3d _origin;
};

/// Asks which shapes a closed surface meets or holds. Distances count from the middle of its box.
class VolumePickSensorProc : public PickSensorProc
{
public:
    using PickSensorProc::PickSensorProc;

protected:
    bool readGeometry() override
    {
        _volume = geometryOf(Surface::FACES, "a geometry with faces");
        return _volume && !_volume->getBox().isEmpty();
    }

    osg::BoxVolume region() const override { return _volume->getBox(); }

    bool meets(const PickTarget& target, Pick& pick) const override
    {
        if (!doSurfacesMeet(target) && !holds(target) && !isHeld(target))
            return false;
        if (isSorted()) {
            osg::Pnt3f middle;
            _volume->getBox().getCenter(middle);
            pick.distance = distanceFrom(osg::Vec3d(osg::Vec3f(middle)), target);
        }
        return true;
    }

private:
    bool doSurfacesMeet(const PickTarget& target) const
    {
        const osg::TriangleTree& own = _volume->getTriangleTree();
        const Convex box = boxOf(target);
        return own.anyIn(boxIn(target.toSensor, target.box()), [&](const osg::Pnt3f& a, const osg::Pnt3f& b,
                                                                   const osg::Pnt3f& c) {
            const Convex triangle = triangleOf(a, b, c).in(target.toOwn);
            if (!Convex::meet(triangle, box))
                return false;
            return !isExact() || target.geometry->getTriangleTree().anyIn(
                                     triangle.bounds(), [&](const auto& p, const auto& q, const auto& r) {
                                         return Convex::meet(triangle, triangleOf(p, q, r));
                                     });
        });
    }

    /// True when the volume holds a shape whose surface it does not meet: then any place of it will do.
    bool holds(const PickTarget& target) const
    {
        const osg::Pnt3f place = isExact() && target.geometry->getPositions()->getSize() > 0
                                     ? firstOf(*target.geometry)
                                     : target.box().getMin();
        return isEnclosed(*_volume, transformed(target.toSensor, osg::Vec3d(osg::Vec3f(place))));
    }

    bool isHeld(const PickTarget& target) const
    {
        return isInside(target, transformed(target.toOwn, osg::Vec3d(osg::Vec3f(firstOf(*_volume)))));
    }

    /// A place on the surface of a geometry.
    static osg::Pnt3f firstOf(const osg::Geometry& geometry)
    {
        osg::Pnt3f first = geometry.getBox().getMin();
        geometry.getTriangleTree().anyIn(geometry.getBox(),
                                         [&](const osg::Pnt3f& a, const auto&, const auto&) {
                                             first = a;
                                             return true;
                                         });
        return first;
    }

    osg::GeometryPtr _volume;
};

const ProcRegistration linePickSensor("LinePickSensor", makeProc<LinePickSensorProc>);
const ProcRegistration pointPickSensor("PointPickSensor", makeProc<PointPickSensorProc>);
const ProcRegistration primitivePickSensor("PrimitivePickSensor", makeProc<PrimitivePickSensorProc>);
const ProcRegistration volumePickSensor("VolumePickSensor", makeProc<VolumePickSensorProc>);

} // namespace

} // namespace Orvane
