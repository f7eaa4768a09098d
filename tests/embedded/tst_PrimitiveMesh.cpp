#include "core/PrimitiveMesh.h"
#include <QtTest>
#include <cmath>

using namespace Orvane;

class tst_PrimitiveMesh : public QObject
{
    Q_OBJECT

private slots:
    void trianglesLookOutwards_data();
    void trianglesLookOutwards();
    void normalsAreUnitAndFitTheirTriangles_data() { trianglesLookOutwards_data(); }
    void normalsAreUnitAndFitTheirTriangles();
    void sizesAreKept_data() { trianglesLookOutwards_data(); }
    void sizesAreKept();
    void flagsLeavePartsOut();
    void boxFaceShowsTheWholeTextureUpright();
    void sphereTextureBeginsAtTheBack();
    void cylinderTextureRunsRoundFromTheBack();
    void capTextureIsUpright();
    void solidsWithoutSizeAreFinite();

private:
    static MeshData meshOf(const QString& name);
};

MeshData tst_PrimitiveMesh::meshOf(const QString& name)
{
    if (name == QLatin1String("box"))
        return boxMesh({2, 4, 6});
    if (name == QLatin1String("sphere"))
        return sphereMesh(3);
    return name == QLatin1String("cone") ? coneMesh(3, 4, true, true) : cylinderMesh(3, 4, true, true, true);
}

void tst_PrimitiveMesh::trianglesLookOutwards_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<float>("width");
    QTest::addColumn<float>("height");
    QTest::newRow("box") << "box" << 2.0F << 4.0F;
    QTest::newRow("sphere") << "sphere" << 6.0F << 6.0F;
    QTest::newRow("cone") << "cone" << 6.0F << 4.0F;
    QTest::newRow("cylinder") << "cylinder" << 6.0F << 4.0F;
}

void tst_PrimitiveMesh::trianglesLookOutwards()
{
    QFETCH(QString, name);
    const MeshData mesh = meshOf(name);
    QVERIFY(!mesh.indices.empty());
    double volume = 0.0;
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3) {
        const osg::Vec3f a = mesh.positions[mesh.indices[i]].subZero();
        const osg::Vec3f b = mesh.positions[mesh.indices[i + 1]].subZero();
        const osg::Vec3f c = mesh.positions[mesh.indices[i + 2]].subZero();
        const float part = a.dot(b.cross(c));
        QVERIFY(part >= -1e-4F); // the origin lies inside of all of them
        volume += double(part) / 6.0;
    }
    const double pi = 3.14159265;
    const double expected = name == QLatin1String("box")      ? 48.0
                            : name == QLatin1String("sphere") ? 4.0 / 3.0 * pi * 27.0
                            : name == QLatin1String("cone")   ? pi * 9.0 * 4.0 / 3.0
                                                              : pi * 9.0 * 4.0;
    QVERIFY(std::abs(volume - expected) < 0.015 * expected); // closed, and nearly round
}

void tst_PrimitiveMesh::normalsAreUnitAndFitTheirTriangles()
{
    QFETCH(QString, name);
    const MeshData mesh = meshOf(name);
    QCOMPARE(mesh.normals.size(), mesh.positions.size());
    QCOMPARE(mesh.texCoords.size(), 2 * mesh.positions.size());
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3) {
        const osg::Pnt3f& a = mesh.positions[mesh.indices[i]];
        osg::Vec3f face =
            (mesh.positions[mesh.indices[i + 1]] - a).cross(mesh.positions[mesh.indices[i + 2]] - a);
        face.normalize();
        for (std::size_t c = 0; c < 3; ++c) {
            const osg::Vec3f& normal = mesh.normals[mesh.indices[i + c]];
            QVERIFY(std::abs(normal.length() - 1.0F) < 1e-4F);
            QVERIFY(normal.dot(face) > 0.97F);
        }
    }
}

void tst_PrimitiveMesh::sizesAreKept()
{
    QFETCH(QString, name);
    QFETCH(float, width);
    QFETCH(float, height);
    float low[2] = {0, 0}, high[2] = {0, 0};
    for (const osg::Pnt3f& p : meshOf(name).positions) {
        for (osg::UInt32 i = 0; i < 2; ++i) {
            low[i] = std::min(low[i], p[i]);
            high[i] = std::max(high[i], p[i]);
        }
    }
    QCOMPARE(high[0] - low[0], width);
    QCOMPARE(high[1] - low[1], height);
    QCOMPARE(high[1], height / 2);
}

void tst_PrimitiveMesh::flagsLeavePartsOut()
{
    QVERIFY(coneMesh(1, 2, false, false).positions.empty());
    QVERIFY(cylinderMesh(1, 2, false, false, false).positions.empty());
    for (const osg::Pnt3f& p : cylinderMesh(1, 2, false, true, false).positions)
        QCOMPARE(p[1], -1.0F);
    for (const osg::Pnt3f& p : cylinderMesh(1, 2, false, false, true).positions)
        QCOMPARE(p[1], 1.0F);
    for (const osg::Pnt3f& p : coneMesh(1, 2, false, true).positions)
        QCOMPARE(p[1], -1.0F);
}

void tst_PrimitiveMesh::boxFaceShowsTheWholeTextureUpright()
{
    const MeshData mesh = boxMesh({2, 2, 2});
    int corners = 0;
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        const float s = mesh.texCoords[2 * i];
        const float t = mesh.texCoords[2 * i + 1];
        if (mesh.normals[i] == osg::Vec3f(0, 0, 1)) {
            QCOMPARE(mesh.positions[i], osg::Pnt3f(2 * s - 1, 2 * t - 1, 1));
            ++corners;
        } else if (mesh.normals[i] == osg::Vec3f(0, 1, 0)) {
            QCOMPARE(mesh.positions[i], osg::Pnt3f(2 * s - 1, 1, 1 - 2 * t));
            ++corners;
        }
    }
    QCOMPARE(corners, 8);
}

void tst_PrimitiveMesh::sphereTextureBeginsAtTheBack()
{
    const MeshData mesh = sphereMesh(1);
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        const float s = mesh.texCoords[2 * i];
        const float t = mesh.texCoords[2 * i + 1];
        if (std::abs(t - 0.5F) > 1e-4F)
            continue;
        if (s == 0.0F || s == 1.0F)
            QVERIFY(mesh.positions[i].dist(osg::Pnt3f(0, 0, -1)) < 1e-5F);
        if (s == 0.25F)
            QVERIFY(mesh.positions[i].dist(osg::Pnt3f(-1, 0, 0)) < 1e-5F);
        if (s == 0.5F)
            QVERIFY(mesh.positions[i].dist(osg::Pnt3f(0, 0, 1)) < 1e-5F);
    }
}

void tst_PrimitiveMesh::cylinderTextureRunsRoundFromTheBack()
{
    const MeshData mesh = cylinderMesh(1, 2, true, false, false);
    bool seen = false;
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        QCOMPARE(mesh.texCoords[2 * i + 1], mesh.positions[i][1] > 0 ? 1.0F : 0.0F);
        if (mesh.texCoords[2 * i] == 0.75F) {
            QVERIFY(std::abs(mesh.positions[i][0] - 1.0F) < 1e-5F);
            seen = true;
        }
    }
    QVERIFY(seen);
}

void tst_PrimitiveMesh::capTextureIsUpright()
{
    const MeshData top = cylinderMesh(1, 2, false, false, true);
    for (std::size_t i = 0; i < top.positions.size(); ++i) {
        QCOMPARE(top.texCoords[2 * i], 0.5F + 0.5F * top.positions[i][0]);
        QCOMPARE(top.texCoords[2 * i + 1], 0.5F - 0.5F * top.positions[i][2]);
    }
    const MeshData bottom = coneMesh(1, 2, false, true);
    for (std::size_t i = 0; i < bottom.positions.size(); ++i)
        QCOMPARE(bottom.texCoords[2 * i + 1], 0.5F + 0.5F * bottom.positions[i][2]);
}

void tst_PrimitiveMesh::solidsWithoutSizeAreFinite()
{
    for (const MeshData& mesh : {boxMesh({0, 0, 0}), sphereMesh(0), coneMesh(0, 0, true, true),
                                 cylinderMesh(0, 0, true, true, true)})
    {
        for (const osg::Vec3f& normal : mesh.normals)
            QVERIFY(std::isfinite(normal[0]) && std::isfinite(normal[1]) && std::isfinite(normal[2]));
        for (const osg::Pnt3f& p : mesh.positions)
            QCOMPARE(p, osg::Pnt3f(0, 0, 0));
    }
}

QTEST_GUILESS_MAIN(tst_PrimitiveMesh)
#include "tst_PrimitiveMesh.moc"
