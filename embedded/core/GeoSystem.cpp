#include "core/GeoSystem.h"
#include "base/ValueFields.h"
#include "core/ElementProc.h"
#include "core/Part.h"
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <cmath>
#include <cstdlib>
#include <string>

namespace Orvane {

namespace {

const Part geoCoordsPart("geoCoords");
const Part geoOriginPart("geoOrigin");
const Part geoSystemPart("geoSystem");
const Part rotateYUpPart("rotateYUp");

constexpr double RadiansPerDegree = 0.017453292519943295;

struct Ellipsoid
{
    const char* name;
    double radius;
    double inverseFlattening;
};

constexpr Ellipsoid Ellipsoids[] = {
    {"AA", 6377563.396, 299.3249646}, {"AM", 6377340.189, 299.3249646}, {"AN", 6378160.0, 298.25},
    {"BN", 6377483.865, 299.1528128}, {"BR", 6377397.155, 299.1528128}, {"CC", 6378206.4, 294.9786982},
    {"CD", 6378249.145, 293.465},     {"EA", 6377276.345, 300.8017},    {"EB", 6377298.556, 300.8017},
    {"EC", 6377301.243, 300.8017},    {"ED", 6377295.664, 300.8017},    {"EE", 6377304.063, 300.8017},
    {"EF", 6377309.613, 300.8017},    {"FA", 6378155.0, 298.3},         {"HE", 6378200.0, 298.3},
    {"HO", 6378270.0, 297.0},         {"ID", 6378160.0, 298.247},       {"IN", 6378388.0, 297.0},
    {"KA", 6378245.0, 298.3},         {"RF", 6378137.0, 298.257222101}, {"SA", 6378160.0, 298.25},
    {"WD", 6378135.0, 298.26},        {"WE", 6378137.0, 298.257223563},
};

/// Coordinates that are no numbers, or farther away than any star, count as 0.
osg::Vec3d usable(const osg::Vec3d& v)
{
    const auto number = [](double value) { return std::abs(value) < 1e20 ? value : 0.0; };
    return osg::Vec3d(number(v[0]), number(v[1]), number(v[2]));
}

} // namespace

GeoSystem::GeoSystem(const Node& node)
    : _originAxes{osg::Vec3d(1.0, 0.0, 0.0), osg::Vec3d(0.0, 1.0, 0.0), osg::Vec3d(0.0, 0.0, 1.0)}
{
    const auto& words = geoSystemPart.read<MFString>(node);
    for (int i = 0; i < static_cast<int>(words.size()); ++i) {
        const std::string& word = words[i];
        if (word == "GC" || word == "GCC")
            _kind = GEOCENTRIC;
        else if (word == "UTM")
            _kind = UTM;
        else if (word == "longitude_first" || word == "easting_first")
            _swapped = true;
        else if (word == "S")
            _south = true;
        else if (word.size() > 1 && word[0] == 'Z')
            _zone = std::atoi(word.c_str() + 1);
        for (const Ellipsoid& ellipsoid : Ellipsoids) {
            if (word != ellipsoid.name)
                continue;
            _radius = ellipsoid.radius;
            _flattening = 1.0 / ellipsoid.inverseFlattening;
        }
    }
}

GeoSystem::GeoSystem(const Node& node, const Node* origin)
    : GeoSystem(node)
{
    if (!origin || !geoCoordsPart.isIn(*origin))
        return;
    const GeoSystem system(*origin);
    _origin = system.toGeocentric(geoCoordsPart.read<SFVec3d>(*origin).value());
    if (rotateYUpPart.isIn(*origin) && rotateYUpPart.read<SFBool>(*origin).value())
        system.axesAt(_origin, _originAxes);
}

GeoSystem GeoSystem::of(const Node& node)
{
    return GeoSystem(node, resolved(geoOriginPart.readNode(node)));
}

GeoSystem::Geodetic GeoSystem::fromUtm(const osg::Vec3d& coordinates) const
{
    constexpr double Scale = 0.9996;
    const double northing = (_swapped ? coordinates[1] : coordinates[0]) - (_south ? 1e7 : 0.0);
    const double easting = (_swapped ? coordinates[0] : coordinates[1]) - 500000.0;
    const double e2 = _flattening * (2.0 - _flattening);
    const double e4 = e2 * e2;
    const double e6 = e4 * e2;
    // The latitude on the meridian in the middle with the same way from the equator, by a series.
    const double mu = northing / Scale / (_radius * (1.0 - e2 / 4.0 - 3.0 * e4 / 64.0 - 5.0 * e6 / 256.0));
    const double root = std::sqrt(1.0 - e2);
    const double e1 = (1.0 - root) / (1.0 + root);
    const double foot = mu + (1.5 * e1 - 27.0 / 32.0 * e1 * e1 * e1) * std::sin(2.0 * mu) +
                        (21.0 / 16.0 * e1 * e1 - 55.0 / 32.0 * std::pow(e1, 4)) * std::sin(4.0 * mu) +
                        151.0 / 96.0 * e1 * e1 * e1 * std::sin(6.0 * mu) +
                        1097.0 / 512.0 * std::pow(e1, 4) * std::sin(8.0 * mu);
    const double ep2 = e2 / (1.0 - e2);
    const double c = ep2 * std::cos(foot) * std::cos(foot);
    const double t = std::tan(foot) * std::tan(foot);
    const double w = 1.0 - e2 * std::sin(foot) * std::sin(foot);
    const double n = _radius / std::sqrt(w);
    const double r = _radius * (1.0 - e2) / std::pow(w, 1.5);
    const double d = easting / (n * Scale);
    const double latitude =
        foot -
        n * std::tan(foot) / r *
            (d * d / 2.0 - (5.0 + 3.0 * t + 10.0 * c - 4.0 * c * c - 9.0 * ep2) * std::pow(d, 4) / 24.0 +
             (61.0 + 90.0 * t + 298.0 * c + 45.0 * t * t - 252.0 * ep2 - 3.0 * c * c) * std::pow(d, 6) /
                 720.0);
    const double fromMiddle =
        (d - (1.0 + 2.0 * t + c) * std::pow(d, 3) / 6.0 +
         (5.0 - 2.0 * c + 28.0 * t - 3.0 * c * c + 8.0 * ep2 + 24.0 * t * t) * std::pow(d, 5) / 120.0) /
        std::cos(foot);
    return {latitude, (_zone * 6.0 - 183.0) * RadiansPerDegree + fromMiddle, coordinates[2]};
}

osg::Vec3d GeoSystem::toUtm(const Geodetic& place) const
{
    constexpr double Scale = 0.9996;
    const double e2 = _flattening * (2.0 - _flattening);
    const double e4 = e2 * e2;
    const double e6 = e4 * e2;
    const double ep2 = e2 / (1.0 - e2);
    const double sine = std::sin(place.latitude);
    const double cosine = std::cos(place.latitude);
    const double n = _radius / std::sqrt(1.0 - e2 * sine * sine);
    const double t = std::pow(std::tan(place.latitude), 2);
    const double c = ep2 * cosine * cosine;
    const double fromMiddle =
        std::remainder(place.longitude - (_zone * 6.0 - 183.0) * RadiansPerDegree, 360.0 * RadiansPerDegree);
    const double a = fromMiddle * cosine;
    const double meridian =
        _radius * ((1.0 - e2 / 4.0 - 3.0 * e4 / 64.0 - 5.0 * e6 / 256.0) * place.latitude -
                   (3.0 * e2 / 8.0 + 3.0 * e4 / 32.0 + 45.0 * e6 / 1024.0) * std::sin(2.0 * place.latitude) +
                   (15.0 * e4 / 256.0 + 45.0 * e6 / 1024.0) * std::sin(4.0 * place.latitude) -
                   35.0 * e6 / 3072.0 * std::sin(6.0 * place.latitude));
    const double easting = Scale * n *
                               (a + (1.0 - t + c) * std::pow(a, 3) / 6.0 +
                                (5.0 - 18.0 * t + t * t + 72.0 * c - 58.0 * ep2) * std::pow(a, 5) / 120.0) +
                           500000.0;
    const double northing =
        Scale *
            (meridian + n * std::tan(place.latitude) *
                            (a * a / 2.0 + (5.0 - t + 9.0 * c + 4.0 * c * c) * std::pow(a, 4) / 24.0 +
                             (61.0 - 58.0 * t + t * t + 600.0 * c - 330.0 * ep2) * std::pow(a, 6) / 720.0)) +
        (_south ? 1e7 : 0.0);
    return _swapped ? osg::Vec3d(easting, northing, place.height)
                    : osg::Vec3d(northing, easting, place.height);
}

osg::Vec3d GeoSystem::geocentricOf(const Geodetic& place) const
{
    const double e2 = _flattening * (2.0 - _flattening);
    const double sine = std::sin(place.latitude);
    const double cosine = std::cos(place.latitude);
    const double n = _radius / std::sqrt(1.0 - e2 * sine * sine);
    return osg::Vec3d((n + place.height) * cosine * std::cos(place.longitude),
                      (n + place.height) * cosine * std::sin(place.longitude),
                      (n * (1.0 - e2) + place.height) * sine);
}

osg::Vec3d GeoSystem::toGeocentric(const osg::Vec3d& coordinates) const
{
    const osg::Vec3d v = usable(coordinates);
    if (_kind == GEOCENTRIC)
        return v;
    if (_kind == UTM)
        return usable(geocentricOf(fromUtm(v)));
    return geocentricOf(
        {(_swapped ? v[1] : v[0]) * RadiansPerDegree, (_swapped ? v[0] : v[1]) * RadiansPerDegree, v[2]});
}

osg::Vec3d GeoSystem::toScene(const osg::Vec3d& coordinates) const
{
    const osg::Vec3d fromOrigin = toGeocentric(coordinates) - _origin;
    return osg::Vec3d(fromOrigin.dot(_originAxes[0]), fromOrigin.dot(_originAxes[1]),
                      fromOrigin.dot(_originAxes[2]));
}

osg::Vec3d GeoSystem::fromScene(const osg::Vec3d& place) const
{
    const osg::Vec3d v = usable(place);
    const osg::Vec3d geocentric =
        _origin + _originAxes[0] * v[0] + _originAxes[1] * v[1] + _originAxes[2] * v[2];
    if (_kind == GEOCENTRIC)
        return geocentric;
    const Geodetic geodetic = geodeticOf(geocentric);
    if (_kind == UTM)
        return usable(toUtm(geodetic));
    const double latitude = geodetic.latitude / RadiansPerDegree;
    const double longitude = geodetic.longitude / RadiansPerDegree;
    return _swapped ? osg::Vec3d(longitude, latitude, geodetic.height)
                    : osg::Vec3d(latitude, longitude, geodetic.height);
}

GeoSystem::Geodetic GeoSystem::geodeticOf(const osg::Vec3d& geocentric) const
{
    const double e2 = _flattening * (2.0 - _flattening);
    const double longitude = std::atan2(geocentric[1], geocentric[0]);
    const double fromAxis = std::hypot(geocentric[0], geocentric[1]);
    // Each step takes the error down to less than a hundredth.
    double latitude = std::atan2(geocentric[2], fromAxis * (1.0 - e2));
    for (int step = 0; step < 6; ++step) {
        const double sine = std::sin(latitude);
        const double n = _radius / std::sqrt(1.0 - e2 * sine * sine);
        latitude = std::atan2(geocentric[2] + e2 * n * sine, fromAxis);
    }
    const double sine = std::sin(latitude);
    const double n = _radius / std::sqrt(1.0 - e2 * sine * sine);
    const double height = fromAxis * std::cos(latitude) + geocentric[2] * sine - n * (1.0 - e2 * sine * sine);
    return {latitude, longitude, height};
}

void GeoSystem::axesAt(const osg::Vec3d& geocentric, osg::Vec3d (&axes)[3]) const
{
    const Geodetic place = geodeticOf(geocentric);
    const double latitude = place.latitude;
    const double longitude = place.longitude;
    const double sine = std::sin(latitude);
    const double cosine = std::cos(latitude);
    axes[0] = osg::Vec3d(-std::sin(longitude), std::cos(longitude), 0.0);
    axes[1] = osg::Vec3d(cosine * std::cos(longitude), cosine * std::sin(longitude), sine);
    axes[2] = osg::Vec3d(sine * std::cos(longitude), sine * std::sin(longitude), -cosine);
}

osg::Matrix GeoSystem::frameAt(const osg::Vec3d& coordinates) const
{
    osg::Vec3d axes[3];
    axesAt(toGeocentric(coordinates), axes);
    const osg::Vec3d place = toScene(coordinates);
    osg::Matrix frame;
    for (osg::UInt32 row = 0; row < 3; ++row) {
        for (osg::UInt32 column = 0; column < 3; ++column)
            frame[column][row] = static_cast<float>(axes[column].dot(_originAxes[row]));
        frame[3][row] = static_cast<float>(place[row]);
    }
    return frame;
}

osg::Vec3d GeoSystem::moved(const osg::Vec3d& coordinates, double east, double north, double up) const
{
    if (_kind == GEOCENTRIC)
        return coordinates + osg::Vec3d(east, north, up);
    return coordinates + (_swapped ? osg::Vec3d(east, north, up) : osg::Vec3d(north, east, up));
}

} // namespace Orvane
