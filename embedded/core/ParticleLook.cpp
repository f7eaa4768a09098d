#include "core/ParticleLook.h"
#include "base/ValueFields.h"
#include "core/NormalGenerator.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part colorKeyPart("colorKey");
const Part colorPart("color");
const Part geometryTypePart("geometryType");
const Part particleSizePart("particleSize");
const Part pointPart("point");
const Part texCoordKeyPart("texCoordKey");

/// The key at or before a share, as a place in the list; -1 before the first one.
std::ptrdiff_t keyBefore(const std::vector<float>& keys, float share)
{
    return std::upper_bound(keys.begin(), keys.end(), share) - keys.begin() - 1;
}

} // namespace

void ParticleLook::read(const Node& system, const Node* colors, const Node* texCoords, GeometryProc* geometry)
{
    const std::string& type = geometryTypePart.read<SFString>(system).value();
    _geometry = geometry && geometry->geometry() ? geometry : nullptr;
    _shape = type == "LINE"       ? LINES
             : type == "POINT"    ? POINTS
             : type == "TRIANGLE" ? TRIANGLES
             : type == "GEOMETRY" ? GEOMETRY
                                  : QUADS;
    const osg::Vec2f& size = particleSizePart.read<SFVec2f>(system).value();
    _half = osg::Vec2f(usableNumber(size[0], 0.0F) * 0.5F, usableNumber(size[1], 0.0F) * 0.5F);
    _colorKeys = colorKeyPart.read<MFFloat>(system).values();
    _texCoordKeys = texCoordKeyPart.read<MFFloat>(system).values();
    readColors(colors);
    readTexCoords(texCoords);
}

void ParticleLook::readColors(const Node* ramp)
{
    _colors.clear();
    _rampHasAlpha = false;
    if (ramp && colorPart.isIn(*ramp)) {
        const Field& field = readField(*ramp, colorPart.in(*ramp));
        if (field.dataType() == MFCOLOR_DT) {
            for (const osg::Color3f& c : static_cast<const MFColor&>(field).values())
                _colors.emplace_back(c.red(), c.green(), c.blue(), 1.0F);
        } else if (field.dataType() == MFCOLORRGBA_DT) {
            _colors = static_cast<const MFColorRGBA&>(field).values();
            _rampHasAlpha = true;
        }
    }
    const std::size_t count = std::min(_colors.size(), _colorKeys.size());
    _colors.resize(count);
    _colorKeys.resize(count);
}

void ParticleLook::readTexCoords(const Node* ramp)
{
    _texCoords.clear();
    if (ramp && pointPart.isIn(*ramp) && cornerCount() > 0) {
        const Field& field = readField(*ramp, pointPart.in(*ramp));
        if (field.dataType() == MFVEC2F_DT)
            _texCoords = static_cast<const MFVec2f&>(field).values();
    }
    const std::size_t corners = std::max<std::size_t>(cornerCount(), 1);
    const std::size_t count = std::min(_texCoords.size() / corners, _texCoordKeys.size());
    _texCoords.resize(count * corners);
    _texCoordKeys.resize(count);
}

std::size_t ParticleLook::cornerCount() const
{
    static constexpr std::size_t Counts[] = {0, 2, 3, 4, 0};
    return Counts[_shape];
}

Surface::Kind ParticleLook::kind() const
{
    if (_shape == GEOMETRY)
        return _geometry ? _geometry->kind() : Surface::FACES;
    return _shape == POINTS ? Surface::POINTS : _shape == LINES ? Surface::LINES : Surface::FACES;
}

bool ParticleLook::isSolid() const
{
    return _shape == GEOMETRY && _geometry && _geometry->isSolid();
}

bool ParticleLook::hasColors() const
{
    return !_colors.empty() || (_shape == GEOMETRY && _geometry && _geometry->hasColors());
}

void ParticleLook::needTexCoords()
{
    if (_shape == GEOMETRY && _geometry)
        _geometry->needTexCoords();
}

std::size_t ParticleLook::limit() const
{
    if (_shape != GEOMETRY)
        return MostVertices;
    const std::size_t vertices = _geometry ? _geometry->geometry()->getPositions()->getField().size() : 0;
    return vertices > 0 ? MostVertices / vertices : MostVertices;
}

osg::Color4f ParticleLook::colorAt(float share) const
{
    const std::ptrdiff_t before = keyBefore(_colorKeys, share);
    if (before < 0)
        return _colors.front();
    const auto i = static_cast<std::size_t>(before);
    if (i + 1 == _colors.size())
        return _colors.back();
    const float width = _colorKeys[i + 1] - _colorKeys[i];
    const float t = width > 0.0F ? std::clamp((share - _colorKeys[i]) / width, 0.0F, 1.0F) : 1.0F;
    const auto mix = [t](float a, float b) { return a + (b - a) * t; };
    const osg::Color4f& a = _colors[i];
    const osg::Color4f& b = _colors[i + 1];
    return osg::Color4f(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()),
                        mix(a.alpha(), b.alpha()));
}

const osg::Vec2f* ParticleLook::texCoordsAt(float share) const
{
    if (_texCoords.empty())
        return nullptr;
    const std::ptrdiff_t key = std::max<std::ptrdiff_t>(0, keyBefore(_texCoordKeys, share));
    return _texCoords.data() + static_cast<std::size_t>(key) * cornerCount();
}

MeshData ParticleLook::mesh(const std::vector<Particle>& particles, const osg::Vec3f& right,
                            const osg::Vec3f& up) const
{
    MeshData mesh;
    const std::size_t count = std::min(particles.size(), limit());
    for (std::size_t i = 0; i < count; ++i) {
        const Particle& particle = particles[i];
        const osg::Color4f color =
            _colors.empty() ? osg::Color4f() : colorAt(particle.age / particle.lifetime);
        if (_shape == GEOMETRY)
            addCopy(mesh, particle, color);
        else
            addFlat(mesh, particle, color, right, up);
    }
    return mesh;
}

void ParticleLook::addFlat(MeshData& mesh, const Particle& particle, const osg::Color4f& color,
                           const osg::Vec3f& right, const osg::Vec3f& up) const
{
    static constexpr Corner Quad[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    static constexpr Corner Triangle[] = {{0, 0}, {1, 0}, {0.5F, 1}};
    const auto first = static_cast<std::uint32_t>(mesh.positions.size());
    const std::size_t corners = cornerCount();
    if (_shape == POINTS) {
        mesh.positions.emplace_back(particle.position);
    } else if (_shape == LINES) {
        const osg::Vec3f half = unitVector(particle.velocity) * _half[1];
        mesh.positions.emplace_back(particle.position - half);
        mesh.positions.emplace_back(particle.position + half);
    } else {
        const Corner* const corner = _shape == QUADS ? Quad : Triangle;
        for (std::size_t i = 0; i < corners; ++i) {
            mesh.positions.emplace_back(particle.position + right * (_half[0] * (2.0F * corner[i].s - 1.0F)) +
                                        up * (_half[1] * (2.0F * corner[i].t - 1.0F)));
            mesh.normals.push_back(right.cross(up));
            if (i >= 2) {
                for (const std::size_t place : {std::size_t(0), i - 1, i})
                    mesh.indices.push_back(first + static_cast<std::uint32_t>(place));
            }
            if (_texCoords.empty()) {
                mesh.texCoords.push_back(corner[i].s);
                mesh.texCoords.push_back(corner[i].t);
            }
        }
    }
    if (const osg::Vec2f* const texCoords = texCoordsAt(particle.age / particle.lifetime)) {
        for (std::size_t i = 0; i < corners; ++i) {
            mesh.texCoords.push_back(texCoords[i][0]);
            mesh.texCoords.push_back(texCoords[i][1]);
        }
    }
    if (!_colors.empty())
        mesh.colors.resize(mesh.positions.size(), color);
}

void ParticleLook::addCopy(MeshData& mesh, const Particle& particle, const osg::Color4f& color) const
{
    if (!_geometry)
        return;
    const osg::GeometryPtr core = _geometry->geometry();
    const auto first = static_cast<std::uint32_t>(mesh.positions.size());
    const std::vector<osg::Pnt3f>& positions = core->getPositions()->getField();
    for (const osg::Pnt3f& position : positions)
        mesh.positions.push_back(position + particle.position);
    // Values that are not given for each vertex do not occur: cores come from `setMesh`.
    if (const osg::GeoNormalsPtr normals = core->getNormals())
        mesh.normals.insert(mesh.normals.end(), normals->getField().begin(), normals->getField().end());
    const osg::GeoTexCoordsPtr texCoords = core->getTexCoords();
    if (texCoords && texCoords->getField().size() == 2 * positions.size())
        mesh.texCoords.insert(mesh.texCoords.end(), texCoords->getField().begin(),
                              texCoords->getField().end());
    if (!_colors.empty())
        mesh.colors.resize(mesh.positions.size(), color);
    else if (const osg::GeoColorsPtr colors = core->getColors())
        mesh.colors.insert(mesh.colors.end(), colors->getField().begin(), colors->getField().end());
    if (const osg::GeoIndicesPtr indices = core->getIndices()) {
        for (const osg::UInt32 index : indices->getField())
            mesh.indices.push_back(first + index);
    }
}

} // namespace Orvane
