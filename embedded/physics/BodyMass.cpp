#include "physics/BodyMass.h"
#include "core/Part.h"
#include "physics/RigidPose.h"
#include <Orvane/NodeType.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part bottomRadiusPart("bottomRadius");
const Part heightPart("height");
const Part radiusPart("radius");
const Part sizePart("size");

/// Sizes that give numbers which can be worked with.
constexpr double Smallest = 1e-4;
constexpr double Largest = 1e6;

bool isSize(double size)
{
    return size >= Smallest && size <= Largest;
}

bool isPositiveDefinite(const std::array<double, 6>& i)
{
    const double minor = i[0] * i[1] - i[3] * i[3];
    const double determinant = i[0] * (i[1] * i[2] - i[5] * i[5]) - i[3] * (i[3] * i[2] - i[5] * i[4]) +
                               i[4] * (i[3] * i[5] - i[1] * i[4]);
    // Far from the border, as the inverse is worked with.
    const double size = std::max({i[0], i[1], i[2]});
    return i[0] > 0.0 && i[1] > 0.0 && i[2] > 0.0 && size < 1e12 && size > 1e-12 &&
           minor > 1e-9 * size * size && determinant > 1e-9 * size * size * size;
}

} // namespace

bool readInertia(const Matrix3f& matrix, BodyMass& mass)
{
    const auto& v = matrix.v;
    std::array<double, 6> inertia{v[0], v[4], v[8], v[1], v[2], v[5]};
    const double size = std::max({inertia[0], inertia[1], inertia[2]});
    const auto isMirrored = [size](double a, double b) { return std::abs(a - b) <= 1e-3 * size; };
    if (!isMirrored(v[1], v[3]) || !isMirrored(v[2], v[6]) || !isMirrored(v[5], v[7]) ||
        !isPositiveDefinite(inertia))
        return false;
    mass.inertia = inertia;
    return true;
}

bool readInertia(const Node& model, BodyMass& mass)
{
    const std::string& type = model.type()->name;
    std::array<double, 6> inertia{};
    if (type == "Box") {
        const osg::Vec3f& size = sizePart.read<SFVec3f>(model).value();
        const double x = size[0];
        const double y = size[1];
        const double z = size[2];
        if (!isSize(x) || !isSize(y) || !isSize(z))
            return false;
        inertia = {(y * y + z * z) / 12.0, (x * x + z * z) / 12.0, (x * x + y * y) / 12.0, 0.0, 0.0, 0.0};
    } else if (type == "Sphere") {
        const double radius = radiusPart.read<SFFloat>(model).value();
        if (!isSize(radius))
            return false;
        inertia.fill(0.0);
        std::fill_n(inertia.begin(), 3, 0.4 * radius * radius);
    } else if (type == "Cone") {
        const double radius = bottomRadiusPart.read<SFFloat>(model).value();
        const double height = heightPart.read<SFFloat>(model).value();
        if (!isSize(radius) || !isSize(height))
            return false;
        const double across = 3.0 / 80.0 * (4.0 * radius * radius + height * height);
        inertia = {across, 0.3 * radius * radius, across, 0.0, 0.0, 0.0};
    } else {
        return false;
    }
    for (double& value : inertia)
        value *= mass.mass;
    if (!isPositiveDefinite(inertia))
        return false;
    mass.inertia = inertia;
    return true;
}

} // namespace Orvane
