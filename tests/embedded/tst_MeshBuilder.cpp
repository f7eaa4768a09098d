#include "core/FaceList.h"
#include "core/MeshBuilder.h"
#include "core/MeshFaults.h"
#include <QtTest>
#include <cmath>
#include <limits>

using namespace Orvane;

namespace {

using Points = std::vector<osg::Vec3f>;

const Points Square{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};

/// A builder's input whose faces stay alive.
struct Input
{
    Input(Points points, std::vector<int> index)
        : points(std::move(points))
        , index(std::move(index))
        , faces(this->points, this->index)
    {
        faces.readPolygons(faults);
        source.faces = &faces;
    }
    Input(const Input&) = delete;

    MeshData build() { return buildMesh(source, faults); }

    Points points;
    std::vector<int> index;
    MeshFaults faults;
    FaceList faces;
    MeshSource source;
};

std::size_t triangleCount(const MeshData& mesh)
{
    return (mesh.indices.empty() ? mesh.positions.size() : mesh.indices.size()) / 3;
}

osg::Pnt3f corner(const MeshData& mesh, std::size_t i)
{
    return mesh.positions[mesh.indices.empty() ? i : mesh.indices[i]];
}

/// Sum of the areas of all triangles, counted along \a direction.
float areaAlong(const MeshData& mesh, const osg::Vec3f& direction)
{
    float area = 0.0F;
    for (std::size_t i = 0; i < triangleCount(mesh); ++i) {
        const osg::Vec3f a = corner(mesh, 3 * i + 1) - corner(mesh, 3 * i);
        const osg::Vec3f b = corner(mesh, 3 * i + 2) - corner(mesh, 3 * i);
        area += a.cross(b).dot(direction) * 0.5F;
    }
    return area;
}

} // namespace

class tst_MeshBuilder : public QObject
{
    Q_OBJECT

private slots:
    void quadBecomesTwoTriangles();
    void lastFaceMayLackItsEndMark();
    void flatFacesHaveNormalsOfTheirOwn();
    void smoothFacesShareNormals();
    void creaseAngleParts_data();
    void creaseAngleParts();
    void manyFacesRoundOnePointStaySmooth();
    void clockwiseFacesAreTurned();
    void concaveFaceIsFilled();
    void concaveFaceCrossedByAFanOnlyWhenConvexIsSaid();
    void holeByBridgeStaysOpen();
    void crossingEdgesGetBlendedVertices();
    void badFacesAreLeftOut_data();
    void badFacesAreLeftOut();
    void faceWithoutAreaShowsNothing();
    void normalsPerFaceByIndex();
    void colorsPerFaceInOrder();
    void colorsPerVertexFollowTheirIndex();
    void alphaOfColorsIsKept();
    void texCoordsWithSeamSplitTheVertex();
    void missingAttributesAreNoted();
    void cornersWithEqualValuesAreMerged();
    void unusedPointsAreNotInTheMesh();
    void farAndTinyFacesHaveNormals();
    void defaultTexCoordsFollowTheLongestSides();
    void defaultTexCoordsOfASinglePoint();
};

void tst_MeshBuilder::quadBecomesTwoTriangles()
{
    Input input(Square, {0, 1, 2, 3, -1});
    const MeshData mesh = input.build();
    QCOMPARE(triangleCount(mesh), std::size_t(2));
    QCOMPARE(areaAlong(mesh, {0, 0, 1}), 1.0F);
    QVERIFY(input.faults.isEmpty());
}

void tst_MeshBuilder::lastFaceMayLackItsEndMark()
{
    Input input(Square, {0, 1, 2, -1, 0, 2, 3});
    QCOMPARE(triangleCount(input.build()), std::size_t(2));
    QVERIFY(input.faults.isEmpty());
}

void tst_MeshBuilder::flatFacesHaveNormalsOfTheirOwn()
{
    Points points = Square;
    points.push_back({1, 0, -1});
    Input input(points, {0, 1, 2, -1, 1, 4, 2, -1});
    const MeshData mesh = input.build();
    QCOMPARE(mesh.positions.size(), std::size_t(6));
    QCOMPARE(mesh.normals[0], osg::Vec3f(0, 0, 1));
    QCOMPARE(mesh.normals[5], osg::Vec3f(1, 0, 0));
}

void tst_MeshBuilder::smoothFacesShareNormals()
{
    Points points = Square;
    points.push_back({1, 0, -1});
    Input input(points, {0, 1, 2, -1, 1, 4, 2, -1});
    input.source.creaseAngle = 3.2F;
    const MeshData mesh = input.build();
    QCOMPARE(mesh.positions.size(), std::size_t(4));
    const float half = std::sqrt(0.5F);
    QCOMPARE(mesh.normals[1], osg::Vec3f(half, 0, half));
}

void tst_MeshBuilder::creaseAngleParts_data()
{
    QTest::addColumn<float>("creaseAngle");
    QTest::addColumn<int>("vertices");
    QTest::newRow("wider than the edge") << 1.6F << 4;
    QTest::newRow("narrower than the edge") << 1.5F << 6;
}

void tst_MeshBuilder::creaseAngleParts()
{
    QFETCH(float, creaseAngle);
    QFETCH(int, vertices);
    Points points = Square;
    points.push_back({1, 0, -1});
    Input input(points, {0, 1, 2, -1, 1, 4, 2, -1}); // two triangles at a right angle
    input.source.creaseAngle = creaseAngle;
    const MeshData mesh = input.build();
    QCOMPARE(static_cast<int>(mesh.positions.size()), vertices);
}

void tst_MeshBuilder::manyFacesRoundOnePointStaySmooth()
{
    constexpr int Count = 500;
    Points points{{0, 1, 0}};
    std::vector<int> index;
    for (int i = 0; i < Count; ++i) {
        const float a = 6.2831853F * static_cast<float>(i) / Count;
        points.emplace_back(std::sin(a) * 10.0F, 0.0F, std::cos(a) * 10.0F);
        index.insert(index.end(), {0, 1 + i, 1 + (i + 1) % Count, -1});
    }
    Input input(points, index);
    input.source.creaseAngle = 0.5F;
    const MeshData mesh = input.build();
    QCOMPARE(triangleCount(mesh), std::size_t(Count));
    for (const osg::Vec3f& normal : mesh.normals)
        QVERIFY(normal[1] > 0.9F);
}

void tst_MeshBuilder::clockwiseFacesAreTurned()
{
    Input input(Square, {0, 3, 2, 1, -1});
    input.source.ccw = false;
    const MeshData mesh = input.build();
    QCOMPARE(areaAlong(mesh, {0, 0, 1}), 1.0F);
    QCOMPARE(mesh.normals[0], osg::Vec3f(0, 0, 1));
}

void tst_MeshBuilder::concaveFaceIsFilled()
{
    // An arrow head whose notch a fan would fill.
    Input input({{0, 0, 0}, {2, -1, 0}, {1, 0, 0}, {2, 1, 0}}, {1, 2, 3, 0, -1});
    input.source.convex = false;
    const MeshData mesh = input.build();
    QCOMPARE(triangleCount(mesh), std::size_t(2));
    QCOMPARE(areaAlong(mesh, {0, 0, 1}), 1.0F);
    for (std::size_t i = 0; i < 2; ++i) {
        const osg::Vec3f a = corner(mesh, 3 * i + 1) - corner(mesh, 3 * i);
        const osg::Vec3f b = corner(mesh, 3 * i + 2) - corner(mesh, 3 * i);
        QVERIFY(a.cross(b)[2] > 0.0F);
    }
}

void tst_MeshBuilder::concaveFaceCrossedByAFanOnlyWhenConvexIsSaid()
{
    Input input({{0, 0, 0}, {2, -1, 0}, {1, 0, 0}, {2, 1, 0}}, {1, 2, 3, 0, -1});
    const MeshData mesh = input.build();
    const osg::Vec3f a = corner(mesh, 1) - corner(mesh, 0);
    const osg::Vec3f b = corner(mesh, 2) - corner(mesh, 0);
    QVERIFY(a.cross(b)[2] < 0.0F);
}

void tst_MeshBuilder::holeByBridgeStaysOpen()
{
    // A square of side 4 with a square hole of side 2; the outline runs into the hole and back.
    Input input({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {1, 1, 0}, {1, 3, 0}, {3, 3, 0}, {3, 1, 0}},
                {0, 1, 2, 3, 0, 4, 5, 6, 7, 4, -1});
    input.source.convex = false;
    const MeshData mesh = input.build();
    QCOMPARE(areaAlong(mesh, {0, 0, 1}), 12.0F);
    for (std::size_t i = 0; i < triangleCount(mesh); ++i) {
        osg::Vec3f middle;
        for (std::size_t c = 0; c < 3; ++c)
            middle += corner(mesh, 3 * i + c).subZero() / 3.0F;
        QVERIFY(!(middle[0] > 1.0F && middle[0] < 3.0F && middle[1] > 1.0F && middle[1] < 3.0F));
    }
}

void tst_MeshBuilder::crossingEdgesGetBlendedVertices()
{
    Input input({{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 1, 0}}, {0, 1, 2, 3, -1});
    const std::vector<osg::Color3f> colors{{1, 0, 0}, {1, 0, 0}, {1, 0, 0}, {1, 0, 0}};
    input.source.convex = false;
    input.source.creaseAngle = 3.2F;
    input.source.colors.values = &colors;
    const MeshData mesh = input.build();
    QCOMPARE(mesh.positions.size(), std::size_t(5));
    QCOMPARE(mesh.colors.size(), mesh.positions.size());
    QCOMPARE(mesh.colors[4], osg::Color4f(1, 0, 0, 1));
    QVERIFY(std::abs(mesh.positions[4][0] - 2.0F / 3.0F) < 1e-4F);
}

void tst_MeshBuilder::badFacesAreLeftOut_data()
{
    QTest::addColumn<QVector<int>>("index");
    QTest::addColumn<int>("triangles");
    QTest::addColumn<QString>("text");
    QTest::newRow("index without a point") << QVector<int>{0, 1, 4, -1, 0, 1, 2, -1} << 1
                                           << "expected sound faces and lines, found a face or line with an "
                                              "index that has no point (1 time, first at coordIndex[0])";
    QTest::newRow("huge index") << QVector<int>{0, 1, 2, -1, 0, 2, 2147483647, -1} << 1
                                << "expected sound faces and lines, found a face or line with an index that "
                                   "has no point (1 time, first at coordIndex[4])";
    QTest::newRow("two corners") << QVector<int>{0, 1, -1, 0, 1, 2, -1} << 1
                                 << "expected sound faces and lines, found a face or line of too few points "
                                    "(1 time, first at coordIndex[0])";
    QTest::newRow("end marks alone") << QVector<int>{-1, -1, 0, 1, 2, -1, -1} << 1 << QString();
    QTest::newRow("no index") << QVector<int>() << 0 << QString();
    QTest::newRow("repeated corner") << QVector<int>{0, 0, 1, -1, 0, 1, 2, -1} << 1 << QString();
}

void tst_MeshBuilder::badFacesAreLeftOut()
{
    QFETCH(QVector<int>, index);
    QFETCH(int, triangles);
    QFETCH(QString, text);
    Input input(Square, std::vector<int>(index.begin(), index.end()));
    QCOMPARE(static_cast<int>(triangleCount(input.build())), triangles);
    QCOMPARE(input.faults.isEmpty() ? QString() : QString::fromStdString(input.faults.text()), text);
}

void tst_MeshBuilder::faceWithoutAreaShowsNothing()
{
    Input input({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}}, {0, 1, 2, -1, 0, 1, 3, -1});
    input.source.creaseAngle = 1.0F;
    const MeshData mesh = input.build();
    QCOMPARE(triangleCount(mesh), std::size_t(1));
    for (const osg::Vec3f& normal : mesh.normals)
        QCOMPARE(normal, osg::Vec3f(0, 0, 1));
}

void tst_MeshBuilder::normalsPerFaceByIndex()
{
    Input input(Square, {0, 1, 2, -1, 0, 2, 3, -1});
    const Points normals{{1, 0, 0}, {0, 1, 0}};
    const std::vector<int> index{1, 0};
    input.source.normals = {&normals, &index, false};
    const MeshData mesh = input.build();
    QCOMPARE(mesh.positions.size(), std::size_t(6));
    QCOMPARE(mesh.normals[0], osg::Vec3f(0, 1, 0));
    QCOMPARE(mesh.normals[5], osg::Vec3f(1, 0, 0));
}

void tst_MeshBuilder::colorsPerFaceInOrder()
{
    // The second face is left out, but keeps its colour to itself.
    Input input(Square, {0, 1, 2, -1, 0, 9, 3, -1, 0, 2, 3, -1});
    const std::vector<osg::Color3f> colors{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    input.source.colors = {&colors, nullptr, false};
    const MeshData mesh = input.build();
    QCOMPARE(mesh.colors.size(), std::size_t(6));
    QCOMPARE(mesh.colors[0], osg::Color4f(1, 0, 0, 1));
    QCOMPARE(mesh.colors[3], osg::Color4f(0, 0, 1, 1));
}

void tst_MeshBuilder::colorsPerVertexFollowTheirIndex()
{
    Input input(Square, {0, 1, 2, 3, -1});
    const std::vector<osg::Color3f> colors{{1, 0, 0}, {0, 1, 0}};
    const std::vector<int> index{1, 1, 0, 0, -1};
    input.source.colors = {&colors, &index, true};
    const MeshData mesh = input.build();
    for (std::size_t i = 0; i < mesh.positions.size(); ++i)
        QCOMPARE(mesh.colors[i],
                 mesh.positions[i][1] > 0.5F ? osg::Color4f(1, 0, 0, 1) : osg::Color4f(0, 1, 0, 1));
}

void tst_MeshBuilder::alphaOfColorsIsKept()
{
    Input input(Square, {0, 1, 2, 3, -1});
    const std::vector<osg::Color4f> colors(4, osg::Color4f(1, 0, 0, 0.25F));
    input.source.colorsRGBA.values = &colors;
    const MeshData mesh = input.build();
    QCOMPARE(mesh.colors[0].alpha(), 0.25F);
}

void tst_MeshBuilder::texCoordsWithSeamSplitTheVertex()
{
    Input input(Square, {0, 1, 2, -1, 0, 2, 3, -1});
    const std::vector<osg::Vec2f> texCoords{{0, 0}, {1, 0}, {1, 1}, {0, 1}, {5, 5}};
    const std::vector<int> index{0, 1, 2, -1, 4, 2, 3, -1};
    input.source.creaseAngle = 3.2F;
    input.source.texCoords = {&texCoords, &index, true};
    const MeshData mesh = input.build();
    QCOMPARE(mesh.positions.size(), std::size_t(5)); // the first corner twice
    QCOMPARE(mesh.texCoords.size(), 2 * mesh.positions.size());
}

void tst_MeshBuilder::missingAttributesAreNoted()
{
    Input input(Square, {0, 1, 2, 3, -1});
    const std::vector<osg::Color3f> colors{{1, 0, 0}};
    input.source.colors.values = &colors;
    const MeshData mesh = input.build();
    QCOMPARE(triangleCount(mesh), std::size_t(2));
    QVERIFY(input.faults.text().find("not in the list (3 times") != std::string::npos);
}

void tst_MeshBuilder::cornersWithEqualValuesAreMerged()
{
    Input input(Square, {0, 1, 2, -1, 0, 2, 3, -1});
    const Points normals{{0, 0, 1}};
    const std::vector<int> index{0, 0, 0, -1, 0, 0, 0, -1};
    input.source.normals = {&normals, &index, true};
    QCOMPARE(input.build().positions.size(), std::size_t(4));
}

void tst_MeshBuilder::unusedPointsAreNotInTheMesh()
{
    Points points = Square;
    points.push_back({1000, 0, 0});
    Input input(points, {0, 1, 2, 3, -1});
    input.source.creaseAngle = 3.2F;
    QCOMPARE(input.build().positions.size(), std::size_t(4));
}

void tst_MeshBuilder::farAndTinyFacesHaveNormals()
{
    for (const float size : {1e-12F, 1e-3F, 1e6F, 1e14F}) {
        Points points;
        for (const osg::Vec3f& p : Square)
            points.push_back(p * size);
        Input input(points, {0, 1, 2, 3, -1});
        const MeshData mesh = input.build();
        QCOMPARE(triangleCount(mesh), std::size_t(2));
        QCOMPARE(mesh.normals[0], osg::Vec3f(0, 0, 1));
    }
    const float infinite = std::numeric_limits<float>::infinity();
    const float none = std::numeric_limits<float>::quiet_NaN();
    for (const float bad : {infinite, -infinite, none, 1e30F}) {
        Points points = Square;
        points[3][1] = bad;
        Input input(points, {0, 1, 2, 3, -1, 0, 1, 2, -1});
        const MeshData mesh = input.build();
        QCOMPARE(triangleCount(mesh), std::size_t(1));
        QVERIFY(input.faults.text().find("not finite (1 time, first at point[3])") != std::string::npos);
    }
}

void tst_MeshBuilder::defaultTexCoordsFollowTheLongestSides()
{
    const std::vector<float> texCoords = defaultTexCoords({{1, 0, 0}, {2, 4, 0}, {1, 2, 2}});
    QCOMPARE(texCoords, (std::vector<float>{0.0F, 0.0F, 1.0F, 0.0F, 0.5F, 0.5F}));
}

void tst_MeshBuilder::defaultTexCoordsOfASinglePoint()
{
    QCOMPARE(defaultTexCoords({{3, 3, 3}}), (std::vector<float>{0.0F, 0.0F}));
    QVERIFY(defaultTexCoords({}).empty());
}

QTEST_GUILESS_MAIN(tst_MeshBuilder)
#include "tst_MeshBuilder.moc"
