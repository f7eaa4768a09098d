#include "core/MeshBuilder.h"
#include "core/MeshChannel.h"
#include "core/NormalGenerator.h"
#include "core/Triangulator.h"
#include <algorithm>
#include <array>
#include <memory>

namespace Orvane {

namespace {

/// A corner is looked for among so many vertices of its point before it becomes one of its own.
constexpr int MaxSearch = 16;

class Builder
{
public:
    Builder(const MeshSource& source, MeshFaults& faults)
        : _source(source)
        , _faces(*source.faces)
        , _faults(faults)
    {
    }

    MeshData build()
    {
        bindChannels();
        const bool sharesPoints = _normals.isPerPoint() && _colors.isPerPoint() && _colorsRGBA.isPerPoint() &&
                                  _texCoords.isPerPoint();
        const bool perFace = _flat || _normals.isPerFace() || _colors.isPerFace() || _colorsRGBA.isPerFace();
        _merge = !perFace;
        // Corners of their own, three a face, need no indices: their order says all.
        _sequential = perFace && _faces.triangleCount() * 3 == _faces.cornerCount();
        reserve(sharesPoints ? std::min(_faces.points().size(), _faces.cornerCount()) : _faces.cornerCount());
        if (_merge)
            _firstVertex.assign(_faces.points().size(), NoIndex);
        if (_sequential && _flat && !_source.wantsPoints && !_colors.isGiven() && !_colorsRGBA.isGiven() &&
            !_texCoords.isGiven())
            addPlainTriangles();
        else {
            for (std::uint32_t f = 0; f < _faces.faces().size(); ++f)
                addFace(f);
        }
        return std::move(_mesh);
    }

private:
    /// The values of a corner, by which it is told from others of its point.
    struct Key
    {
        std::uint32_t normal;
        std::uint32_t color;
        std::uint32_t texCoord;

        bool operator==(const Key& other) const
        {
            return normal == other.normal && color == other.color && texCoord == other.texCoord;
        }
    };

    void bindChannels()
    {
        _colors.bind(_source.colors, _faces.index());
        _colorsRGBA.bind(_source.colorsRGBA, _faces.index());
        bindTexCoords();
        _normals.bind(_source.normals, _faces.index());
        if (_normals.isGiven())
            return;
        // Made normals point to the side from which corners run anticlockwise.
        _makesNormals = true;
        _flipNormals = !_source.ccw;
        _flat = !(_source.creaseAngle > 0.0F);
        if (_flat)
            return;
        constexpr float Pi = 3.14159265F;
        const NormalGenerator generator(_faces);
        if (_source.creaseAngle >= Pi)
            _normals.bindPoints(generator.pointNormals());
        else {
            std::vector<std::uint32_t> normalOf;
            std::vector<osg::Vec3f> normals = generator.cornerNormals(_source.creaseAngle, normalOf);
            _normals.bindCorners(std::move(normals), std::move(normalOf));
        }
    }

    void bindTexCoords()
    {
        if (!_source.texCoordSets) {
            _texCoords.bind(_source.texCoords, _faces.index());
            return;
        }
        std::size_t count = 0;
        for (const TexCoordView& view : *_source.texCoordSets) {
            TexCoordSet set;
            set.dimension = std::max(view.dimension, 2U);
            _mesh.texCoordSets.push_back(std::move(set));
            count = std::max(count, view.count);
        }
        if (count > 0)
            _texCoords.bindIndex(_source.texCoords, _faces.index(), count);
    }

    void reserve(std::size_t vertices)
    {
        _mesh.positions.reserve(vertices);
        _mesh.normals.reserve(vertices);
        if (_colors.isGiven() || _colorsRGBA.isGiven())
            _mesh.colors.reserve(vertices);
        if (_texCoords.isGiven() && !_source.texCoordSets)
            _mesh.texCoords.reserve(2 * vertices);
        if (_merge) {
            _keys.reserve(vertices);
            _nextVertex.reserve(vertices);
        }
        if (!_sequential)
            _mesh.indices.reserve(_faces.triangleCount() * 3);
    }

    /// The short way for the meshes that are largest in practice: triangles with nothing but points.
    void addPlainTriangles()
    {
        for (const Face& face : _faces.faces()) {
            if (face.count == 0)
                continue;
            const osg::Vec3f& a = _faces.cornerAt(face.first);
            const osg::Vec3f& b = _faces.cornerAt(face.first + (_source.ccw ? 1 : 2));
            const osg::Vec3f& c = _faces.cornerAt(face.first + (_source.ccw ? 2 : 1));
            const osg::Vec3f normal = unitVector((b - a).cross(c - a));
            if (isNull(normal))
                continue;
            for (const osg::Vec3f* corner : {&a, &b, &c}) {
                _mesh.positions.emplace_back(*corner);
                _mesh.normals.push_back(normal);
            }
        }
    }

    void addFace(std::uint32_t f)
    {
        const Face& face = _faces.faces()[f];
        if (face.count == 0)
            return;
        if (_makesNormals) {
            // A face without area shows nothing, and has no normal.
            _faceNormal = areaNormal(_faces, face);
            if (isNull(_faceNormal))
                return;
            if (_flat)
                _faceNormal = unitVector(_flipNormals ? -_faceNormal : _faceNormal);
        }
        if (_sequential) {
            const std::uint32_t last = face.first + 2;
            for (std::uint32_t i = 0; i < 3; ++i)
                addVertex(_source.ccw ? face.first + i : last - i, f);
            return;
        }
        _vertices.clear();
        for (std::uint32_t i = 0; i < face.count; ++i)
            _vertices.push_back(_merge ? findVertex(face.first + i, f) : addVertex(face.first + i, f));
        if (face.count == 3 || _source.convex || !addConcave(face)) {
            for (std::size_t i = 2; i < face.count; ++i)
                addTriangle(_vertices[0], _vertices[i - 1], _vertices[i]);
        }
    }

    /// False for a face that needs no cutting.
    bool addConcave(const Face& face)
    {
        _polygon.clear();
        for (std::uint32_t i = 0; i < face.count; ++i)
            _polygon.push_back(_faces.cornerAt(face.first + i));
        if (Triangulator::isConvex(_polygon))
            return false;
        if (!_triangulator)
            _triangulator = std::make_unique<Triangulator>();
        const std::vector<std::uint32_t>& triangles = _triangulator->triangulate(_polygon);
        for (const Triangulator::Crossing& crossing : _triangulator->crossings())
            _vertices.push_back(addCrossing(crossing));
        for (std::size_t i = 0; i + 2 < triangles.size(); i += 3)
            addTriangle(_vertices[triangles[i]], _vertices[triangles[i + 1]], _vertices[triangles[i + 2]]);
        return true;
    }

    void addTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c)
    {
        if (!_source.ccw)
            std::swap(b, c);
        _mesh.indices.push_back(a);
        _mesh.indices.push_back(b);
        _mesh.indices.push_back(c);
    }

    std::uint32_t findVertex(std::uint32_t place, std::uint32_t face)
    {
        const std::uint32_t point = _faces.pointAt(place);
        const Key key = keyOf(place, point, face);
        std::uint32_t* link = &_firstVertex[point];
        for (int i = 0; *link != NoIndex && i < MaxSearch; ++i) {
            if (_keys[*link] == key)
                return *link;
            link = &_nextVertex[*link];
        }
        const std::uint32_t vertex = addVertex(point, key);
        _keys.push_back(key);
        _nextVertex.push_back(_firstVertex[point]);
        _firstVertex[point] = vertex;
        return vertex;
    }

    std::uint32_t addVertex(std::uint32_t place, std::uint32_t face)
    {
        const std::uint32_t point = _faces.pointAt(place);
        return addVertex(point, keyOf(place, point, face));
    }

    Key keyOf(std::uint32_t place, std::uint32_t point, std::uint32_t face)
    {
        return {_normals.at(place, point, face, _faults),
                _colors.isGiven() ? _colors.at(place, point, face, _faults)
                                  : _colorsRGBA.at(place, point, face, _faults),
                _texCoords.at(place, point, face, _faults)};
    }

    std::uint32_t addVertex(std::uint32_t point, const Key& key)
    {
        const auto vertex = static_cast<std::uint32_t>(_mesh.positions.size());
        _mesh.positions.emplace_back(_faces.points()[point]);
        if (_source.wantsPoints)
            _mesh.points.push_back(point);
        if (_flat)
            _mesh.normals.push_back(_faceNormal);
        else {
            const osg::Vec3f normal = _normals.value(key.normal, osg::Vec3f(0.0F, 0.0F, 1.0F));
            _mesh.normals.push_back(_flipNormals ? -normal : normal);
        }
        if (_colors.isGiven()) {
            const osg::Color3f color = _colors.value(key.color, osg::Color3f(1.0F, 1.0F, 1.0F));
            _mesh.colors.emplace_back(color.red(), color.green(), color.blue(), 1.0F);
        } else if (_colorsRGBA.isGiven())
            _mesh.colors.push_back(_colorsRGBA.value(key.color, osg::Color4f(1.0F, 1.0F, 1.0F, 1.0F)));
        if (_source.texCoordSets)
            addToSets(key.texCoord);
        else if (_texCoords.isGiven())
            addTexCoord(_texCoords.value(key.texCoord, osg::Vec2f()));
        return vertex;
    }

    /// Adds the coordinates of a vertex in each set; zeros in those that are too short.
    void addToSets(std::uint32_t index)
    {
        for (std::size_t s = 0; s < _mesh.texCoordSets.size(); ++s) {
            const TexCoordView& view = (*_source.texCoordSets)[s];
            std::vector<float>& values = _mesh.texCoordSets[s].values;
            if (view.count == 0)
                continue;
            if (index < view.count) {
                const float* const first = view.values + std::size_t(index) * view.dimension;
                values.insert(values.end(), first, first + view.dimension);
            } else
                values.insert(values.end(), view.dimension, 0.0F);
        }
    }

    /// Adds a mixture of the coordinates of corners in each set.
    void mixInSets(const Triangulator::Crossing& crossing)
    {
        for (TexCoordSet& set : _mesh.texCoordSets) {
            if (set.values.empty())
                continue;
            std::array<float, 4> sum{};
            for (std::size_t i = 0; i < 4; ++i) {
                if (crossing.shares[i] == 0.0F)
                    continue;
                const std::size_t first = std::size_t(_vertices[crossing.corners[i]]) * set.dimension;
                for (std::size_t c = 0; c < set.dimension; ++c)
                    sum[c] += set.values[first + c] * crossing.shares[i];
            }
            set.values.insert(set.values.end(), sum.begin(), sum.begin() + set.dimension);
        }
    }

    void addTexCoord(const osg::Vec2f& texCoord)
    {
        _mesh.texCoords.push_back(texCoord[0]);
        _mesh.texCoords.push_back(texCoord[1]);
    }

    std::uint32_t addCrossing(const Triangulator::Crossing& crossing)
    {
        const auto vertex = static_cast<std::uint32_t>(_mesh.positions.size());
        osg::Vec3f normal;
        std::array<float, 4> color{};
        osg::Vec2f texCoord;
        for (std::size_t i = 0; i < 4; ++i) {
            const float share = crossing.shares[i];
            if (share == 0.0F)
                continue;
            const std::uint32_t v = _vertices[crossing.corners[i]];
            normal += _mesh.normals[v] * share;
            for (osg::UInt32 c = 0; c < 4 && !_mesh.colors.empty(); ++c)
                color[c] += _mesh.colors[v][c] * share;
            if (!_mesh.texCoords.empty())
                texCoord += osg::Vec2f(_mesh.texCoords[2 * v], _mesh.texCoords[2 * v + 1]) * share;
        }
        _mesh.positions.emplace_back(crossing.position);
        if (_source.wantsPoints)
            _mesh.points.push_back(NoIndex);
        _mesh.normals.push_back(unitVector(normal));
        if (_colors.isGiven() || _colorsRGBA.isGiven())
            _mesh.colors.emplace_back(color[0], color[1], color[2], color[3]);
        if (_source.texCoordSets)
            mixInSets(crossing);
        else if (_texCoords.isGiven())
            addTexCoord(texCoord);
        // No corner is ever merged with a crossing.
        if (_merge) {
            _keys.push_back({NoIndex, NoIndex, NoIndex});
            _nextVertex.push_back(NoIndex);
        }
        return vertex;
    }

    static bool isNull(const osg::Vec3f& v) { return v[0] == 0.0F && v[1] == 0.0F && v[2] == 0.0F; }

    const MeshSource& _source;
    const FaceList& _faces;
    MeshFaults& _faults;
    std::unique_ptr<Triangulator> _triangulator;
    MeshChannel<osg::Vec3f> _normals;
    MeshChannel<osg::Color3f> _colors;
    MeshChannel<osg::Color4f> _colorsRGBA;
    MeshChannel<osg::Vec2f> _texCoords;
    MeshData _mesh;
    std::vector<std::uint32_t> _firstVertex; ///< by point
    std::vector<std::uint32_t> _nextVertex;  ///< by vertex: another one of the same point
    std::vector<Key> _keys;                  ///< by vertex
    std::vector<std::uint32_t> _vertices;    ///< of the present face
    std::vector<osg::Vec3f> _polygon;        ///< corners of the present face
    osg::Vec3f _faceNormal;                  ///< of the present face, when normals are made
    bool _merge = false;
    bool _sequential = false;
    bool _makesNormals = false;
    bool _flat = false; ///< each face gets its own normal
    bool _flipNormals = false;
};

} // namespace

MeshData buildMesh(const MeshSource& source, MeshFaults& faults)
{
    return Builder(source, faults).build();
}

std::vector<float> defaultTexCoords(const std::vector<osg::Pnt3f>& positions)
{
    std::vector<float> texCoords;
    if (positions.empty())
        return texCoords;
    osg::Pnt3f low = positions[0];
    osg::Pnt3f high = low;
    for (const osg::Pnt3f& p : positions) {
        for (osg::UInt32 i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], p[i]);
            high[i] = std::max(high[i], p[i]);
        }
    }
    // Of sides of equal length X goes first, then Y.
    const osg::Vec3f size = high - low;
    std::array<osg::UInt32, 3> axes{0, 1, 2};
    std::stable_sort(axes.begin(), axes.end(),
                     [&](osg::UInt32 a, osg::UInt32 b) { return size[a] > size[b]; });
    const float scale = size[axes[0]] > 0.0F ? 1.0F / size[axes[0]] : 0.0F;
    texCoords.reserve(2 * positions.size());
    for (const osg::Pnt3f& p : positions) {
        texCoords.push_back((p[axes[0]] - low[axes[0]]) * scale);
        texCoords.push_back((p[axes[1]] - low[axes[1]]) * scale);
    }
    return texCoords;
}

} // namespace Orvane
