#include "core/PrimitiveMesh.h"
#include <array>
#include <cmath>

namespace Orvane {

namespace {

constexpr std::uint32_t Segments = 48; ///< round the axis
constexpr std::uint32_t Rings = 24;    ///< of a sphere, from pole to pole
constexpr double Pi = 3.14159265358979323846;

/// A place on the circle round Y where texture coordinate s is \a s: from the back anticlockwise, seen from
/// above.
struct CirclePoint
{
    explicit CirclePoint(double s)
        : x(static_cast<float>(-std::sin(2.0 * Pi * s)))
        , z(static_cast<float>(-std::cos(2.0 * Pi * s)))
    {
    }

    float x;
    float z;
};

double fraction(std::uint32_t i)
{
    // The seam closes exactly.
    return static_cast<double>(i % Segments) / Segments;
}

class MeshWriter
{
public:
    std::uint32_t add(float x, float y, float z, const osg::Vec3f& normal, float s, float t)
    {
        _mesh.positions.emplace_back(x, y, z);
        _mesh.normals.push_back(normal);
        _mesh.texCoords.push_back(s);
        _mesh.texCoords.push_back(t);
        return static_cast<std::uint32_t>(_mesh.positions.size() - 1);
    }

    void triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c)
    {
        for (const std::uint32_t corner : {a, b, c})
            _mesh.indices.push_back(corner);
    }

    void quad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d)
    {
        triangle(a, b, c);
        triangle(a, c, d);
    }

    /// A disk that looks up or down.
    void cap(float radius, float y, bool up)
    {
        const float sign = up ? 1.0F : -1.0F;
        const osg::Vec3f normal(0.0F, sign, 0.0F);
        const std::uint32_t center = add(0.0F, y, 0.0F, normal, 0.5F, 0.5F);
        for (std::uint32_t i = 0; i < Segments; ++i) {
            const CirclePoint p(fraction(i));
            add(p.x * radius, y, p.z * radius, normal, 0.5F + 0.5F * p.x, 0.5F - 0.5F * sign * p.z);
        }
        for (std::uint32_t i = 0; i < Segments; ++i) {
            const std::uint32_t here = center + 1 + i;
            const std::uint32_t next = center + 1 + (i + 1) % Segments;
            if (up)
                triangle(center, here, next);
            else
                triangle(center, next, here);
        }
    }

    MeshData take() { return std::move(_mesh); }

private:
    MeshData _mesh;
};

} // namespace

MeshData boxMesh(const osg::Vec3f& size)
{
    // Of each face the normal and the directions of s and t.
    static const osg::Vec3f Faces[6][3] = {
        {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}},  {{0, 0, -1}, {-1, 0, 0}, {0, 1, 0}},
        {{1, 0, 0}, {0, 0, -1}, {0, 1, 0}}, {{-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
        {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}, {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}},
    };
    MeshWriter writer;
    for (const auto& [normal, right, up] : Faces) {
        std::array<std::uint32_t, 4> corners;
        for (std::size_t i = 0; i < 4; ++i) {
            const float s = i == 1 || i == 2 ? 1.0F : 0.0F;
            const float t = i >= 2 ? 1.0F : 0.0F;
            const osg::Vec3f p = (normal + right * (2.0F * s - 1.0F) + up * (2.0F * t - 1.0F)) * 0.5F;
            corners[i] = writer.add(p[0] * size[0], p[1] * size[1], p[2] * size[2], normal, s, t);
        }
        writer.quad(corners[0], corners[1], corners[2], corners[3]);
    }
    return writer.take();
}

MeshData sphereMesh(float radius)
{
    MeshWriter writer;
    for (std::uint32_t ring = 0; ring <= Rings; ++ring) {
        const double t = static_cast<double>(ring) / Rings;
        const auto y = static_cast<float>(ring == 0 ? -1.0 : ring == Rings ? 1.0 : -std::cos(Pi * t));
        const auto width = static_cast<float>(ring % Rings == 0 ? 0.0 : std::sin(Pi * t));
        for (std::uint32_t i = 0; i <= Segments; ++i) {
            const CirclePoint p(fraction(i));
            // At the poles s is that of the middle of the segment.
            const double s = (ring % Rings == 0 ? i + 0.5 : i) / double(Segments);
            const osg::Vec3f normal(p.x * width, y, p.z * width);
            writer.add(normal[0] * radius, normal[1] * radius, normal[2] * radius, normal,
                       static_cast<float>(s), static_cast<float>(t));
        }
    }
    constexpr std::uint32_t Row = Segments + 1;
    for (std::uint32_t ring = 0; ring < Rings; ++ring) {
        for (std::uint32_t i = 0; i < Segments; ++i) {
            const std::uint32_t low = ring * Row + i;
            const std::uint32_t high = low + Row;
            if (ring == 0)
                writer.triangle(low, high + 1, high);
            else if (ring == Rings - 1)
                writer.triangle(low, low + 1, high);
            else
                writer.quad(low, low + 1, high + 1, high);
        }
    }
    return writer.take();
}

MeshData coneMesh(float bottomRadius, float height, bool side, bool bottom)
{
    MeshWriter writer;
    const float top = height * 0.5F;
    if (side) {
        const double slant = std::hypot(double(bottomRadius), double(height));
        const auto out = static_cast<float>(slant > 0.0 ? height / slant : 1.0);
        const auto up = static_cast<float>(slant > 0.0 ? bottomRadius / slant : 0.0);
        for (std::uint32_t i = 0; i <= Segments; ++i) {
            const CirclePoint p(fraction(i));
            writer.add(p.x * bottomRadius, -top, p.z * bottomRadius, osg::Vec3f(p.x * out, up, p.z * out),
                       static_cast<float>(i) / Segments, 0.0F);
        }
        // Each segment has a tip of its own, which looks its way.
        for (std::uint32_t i = 0; i < Segments; ++i) {
            const double s = (i + 0.5) / Segments;
            const CirclePoint p(s);
            const std::uint32_t tip = writer.add(0.0F, top, 0.0F, osg::Vec3f(p.x * out, up, p.z * out),
                                                 static_cast<float>(s), 1.0F);
            writer.triangle(i, i + 1, tip);
        }
    }
    if (bottom)
        writer.cap(bottomRadius, -top, false);
    return writer.take();
}

MeshData cylinderMesh(float radius, float height, bool side, bool bottom, bool top)
{
    MeshWriter writer;
    const float half = height * 0.5F;
    if (side) {
        for (std::uint32_t i = 0; i <= Segments; ++i) {
            const CirclePoint p(fraction(i));
            const osg::Vec3f normal(p.x, 0.0F, p.z);
            const float s = static_cast<float>(i) / Segments;
            writer.add(p.x * radius, -half, p.z * radius, normal, s, 0.0F);
            writer.add(p.x * radius, half, p.z * radius, normal, s, 1.0F);
        }
        for (std::uint32_t i = 0; i < Segments; ++i)
            writer.quad(2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1);
    }
    if (bottom)
        writer.cap(radius, -half, false);
    if (top)
        writer.cap(radius, half, true);
    return writer.take();
}

} // namespace Orvane
