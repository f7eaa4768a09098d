#include "ShapeGeometry.h"
#include <Orvane/LoadReport.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

namespace {

const char Square[] =
    "coord DEF C Coordinate { point [ 0 0 0, 1 0 0, 1 1 0, 0 1 0 ] } coordIndex [ 0 1 2 3 -1 ]";

QByteArray shape(const QByteArray& fields)
{
    return "DEF S Shape { geometry DEF F IndexedFaceSet { " + fields + " } }";
}

int triangleCount(const CoreScene& scene)
{
    return static_cast<int>(trianglesOf(scene).size());
}

} // namespace

class tst_IndexedFaceSet : public QObject
{
    Q_OBJECT

private slots:
    void facesBecomeTriangles();
    void coordinateEditMovesThePoints();
    void sharedCoordinateMovesBoth();
    void doubleCoordinatesAreTaken();
    void setCoordIndexReplacesTheFaces();
    void setColorIndexReplacesTheColors();
    void normalsAreTakenAsGiven();
    void creaseAngleSmoothes();
    void colorsWithAlphaCount();
    void texCoordsAreTaken();
    void defaultTexCoordsComeWithATexture();
    void faultsAreReportedOnce_data();
    void faultsAreReportedOnce();
    void faultsNameNodeAndPlace();
    void withoutCoordThereIsNothing_data();
    void withoutCoordThereIsNothing();
    void coordTakenAway();
    void manyTriangles();
    void wrongChildNodesAreHarmless();
};

void tst_IndexedFaceSet::facesBecomeTriangles()
{
    CoreScene scene(shape(Square).constData());
    QCOMPARE(triangleCount(scene), 2);
    QCOMPARE(geometryOf(scene)->getBox().getMax(), osg::Pnt3f(1, 1, 0));
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_IndexedFaceSet::coordinateEditMovesThePoints()
{
    CoreScene scene(shape(Square).constData());
    const osg::GeometryPtr geometry = geometryOf(scene);
    scene.set("C", "point", "0 0 0, 5 0 0, 5 5 0, 0 5 0");
    QVERIFY(geometryOf(scene) == geometry); // the same object
    QCOMPARE(geometry->getBox().getMax(), osg::Pnt3f(5, 5, 0));
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QCOMPARE(high, osg::Pnt3f(5, 5, 0));
}

void tst_IndexedFaceSet::sharedCoordinateMovesBoth()
{
    CoreScene scene((shape(Square) +
                     "Transform { translation 10 0 0 children Shape { geometry IndexedFaceSet { "
                     "coord USE C coordIndex [ 0 1 2 ] } } }")
                        .constData());
    scene.set("C", "point", "0 0 0, 5 0 0, 5 5 0, 0 5 0");
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QCOMPARE(high, osg::Pnt3f(15, 5, 0));
}

void tst_IndexedFaceSet::doubleCoordinatesAreTaken()
{
    CoreScene scene(
        shape("coord CoordinateDouble { point [ 0 0 0, 2 0 0, 0 2 0 ] } coordIndex [ 0 1 2 ]").constData());
    QCOMPARE(triangleCount(scene), 1);
    QCOMPARE(geometryOf(scene)->getBox().getMax(), osg::Pnt3f(2, 2, 0));
}

void tst_IndexedFaceSet::setCoordIndexReplacesTheFaces()
{
    CoreScene scene(shape(Square).constData());
    scene.set("F", "set_coordIndex", "0 1 2 -1");
    QCOMPARE(triangleCount(scene), 1);
    QCOMPARE(scene.get("F", "coordIndex"), scene.get("F", "set_coordIndex"));
}

void tst_IndexedFaceSet::setColorIndexReplacesTheColors()
{
    CoreScene scene(shape(QByteArray(Square) +
                          " color Color { color [ 1 0 0, 0 1 0 ] } colorIndex [ 0 ] colorPerVertex FALSE")
                        .constData());
    QCOMPARE(geometryOf(scene)->getColors()->getValue(0), osg::Color3f(1, 0, 0));
    scene.set("F", "set_colorIndex", "1");
    QCOMPARE(geometryOf(scene)->getColors()->getValue(0), osg::Color3f(0, 1, 0));
}

void tst_IndexedFaceSet::normalsAreTakenAsGiven()
{
    CoreScene scene(shape(QByteArray(Square) + " normal Normal { vector [ 1 0 0, 0 1 0 ] } "
                                               "normalIndex [ 0 0 1 1 -1 ]")
                        .constData());
    const osg::GeometryPtr geometry = geometryOf(scene);
    for (osg::UInt32 i = 0; i < geometry->getPositions()->getSize(); ++i)
        QCOMPARE(geometry->getNormals()->getValue(i),
                 geometry->getPositions()->getValue(i)[1] > 0.5F ? osg::Vec3f(0, 1, 0) : osg::Vec3f(1, 0, 0));
}

void tst_IndexedFaceSet::creaseAngleSmoothes()
{
    const QByteArray ridge =
        "coord Coordinate { point [ 0 0 0, 1 0 0, 1 1 0, 1 0 -1 ] } coordIndex [ 0 1 2 -1 1 3 2 ]";
    CoreScene flat(shape(ridge).constData());
    QCOMPARE(geometryOf(flat)->getPositions()->getSize(), 6U);
    CoreScene smooth(shape(ridge + " creaseAngle 3.2").constData());
    QCOMPARE(geometryOf(smooth)->getPositions()->getSize(), 4U);
}

void tst_IndexedFaceSet::colorsWithAlphaCount()
{
    CoreScene scene(shape(QByteArray(Square) + " color ColorRGBA { color [ 1 0 0 0.5, 1 0 0 0.5, 1 0 0 0.5, "
                                               "1 0 0 0.5 ] }")
                        .constData());
    QVERIFY(geometryOf(scene)->getColors()->hasAlpha());
    CoreScene plain(
        shape(QByteArray(Square) + " color Color { color [ 1 0 0, 1 0 0, 1 0 0, 1 0 0 ] }").constData());
    QVERIFY(!geometryOf(plain)->getColors()->hasAlpha());
}

void tst_IndexedFaceSet::texCoordsAreTaken()
{
    CoreScene scene(shape(QByteArray(Square) +
                          " texCoord TextureCoordinate { point [ 0 0, 1 0, 1 1, 0 1, 3 3 ] } "
                          "texCoordIndex [ 4 1 2 3 -1 ]")
                        .constData());
    const osg::GeometryPtr geometry = geometryOf(scene);
    for (osg::UInt32 i = 0; i < geometry->getPositions()->getSize(); ++i) {
        const osg::Pnt3f p = geometry->getPositions()->getValue(i);
        const osg::Vec2f expected = p[0] + p[1] < 0.5F ? osg::Vec2f(3, 3) : osg::Vec2f(p[0], p[1]);
        QCOMPARE(geometry->getTexCoords()->getValue(i), expected);
    }
}

void tst_IndexedFaceSet::defaultTexCoordsComeWithATexture()
{
    CoreScene scene((shape(Square) + "DEF X Switch { children Shape { appearance DEF A Appearance { texture "
                                     "PixelTexture { image 1 1 1 0 } } } }")
                        .constData());
    QVERIFY(!geometryOf(scene)->getTexCoords());
    static_cast<SFNode&>(scene.field("S", "appearance")).setNode(0.0, &scene.node("A"), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QVERIFY(geometryOf(scene)->getTexCoords() != osg::NullFC);
    scene.set("C", "point", "0 0 0, 2 0 0, 2 1 0, 0 1 0");
    const osg::GeometryPtr geometry = geometryOf(scene);
    QCOMPARE(geometry->getTexCoords()->getSize(), geometry->getPositions()->getSize());
}

void tst_IndexedFaceSet::faultsAreReportedOnce_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<int>("triangles");
    const QByteArray coord = "coord DEF C Coordinate { point [ 0 0 0, 1 0 0, 1 1 0, 0 1 0 ] } ";
    QTest::newRow("out of range") << coord + "coordIndex [ 0 1 9 -1 0 1 8 -1 0 1 2 -1 ]" << 1;
    QTest::newRow("too few") << coord + "coordIndex [ 0 1 -1 0 -1 0 1 2 -1 ]" << 1;
    QTest::newRow("colour out of range")
        << coord + "coordIndex [ 0 1 2 -1 ] color Color { color [ 1 0 0 ] }" << 1;
    QTest::newRow("texture coordinate out of range")
        << coord + "coordIndex [ 0 1 2 -1 ] texCoord TextureCoordinate { point [ 0 0 ] }" << 1;
    QTest::newRow("normal out of range")
        << coord + "coordIndex [ 0 1 2 -1 ] normal Normal { vector [ 0 0 1 ] } normalIndex [ 0 0 5 ]" << 1;
    QTest::newRow("not drawable") << QByteArray("coord DEF C Coordinate { point [ 0 0 0, 1 0 0, 1e38 1 0 ] } "
                                                "coordIndex [ 0 1 2 -1 ]")
                                  << 0;
}

void tst_IndexedFaceSet::faultsAreReportedOnce()
{
    QFETCH(QByteArray, fields);
    QFETCH(int, triangles);
    CoreScene scene(shape(fields).constData());
    QCOMPARE(triangleCount(scene), triangles);
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.set("C", "point", "0 0 0, 1 0 0, 1e38 1 0");
    scene.set("C", "point", "0 0 0, 1 0 0, 1e38 2 0");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QVERIFY(std::isfinite(high[0]) && high[0] < 2.0F);
}

void tst_IndexedFaceSet::faultsNameNodeAndPlace()
{
    CoreScene scene("DEF S Shape { geometry DEF F IndexedFaceSet { coord Coordinate { point [ 0 0 0 ] } } }");
    setSourcePlace(scene.node("F"), 4, 7);
    scene.set("F", "set_coordIndex", "0 1 2 -1");
    const LoadMessage message = scene.context->loadReport().messages.at(0);
    QCOMPARE(message.text, std::string("IndexedFaceSet of F: expected sound faces and lines, found a face or "
                                       "line with an index that has no point "
                                       "(1 time, first at coordIndex[0])"));
    QCOMPARE(message.line, 4);
    QCOMPARE(message.column, 7);
}

void tst_IndexedFaceSet::withoutCoordThereIsNothing_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::newRow("nothing at all") << QByteArray();
    QTest::newRow("empty coord") << QByteArray("coord Coordinate { }");
    QTest::newRow("no faces") << QByteArray("coord Coordinate { point [ 0 0 0 ] }");
    QTest::newRow("end marks") << QByteArray("coordIndex [ -1 -1 -1 ]");
}

void tst_IndexedFaceSet::withoutCoordThereIsNothing()
{
    QFETCH(QByteArray, fields);
    CoreScene scene(shape(fields).constData());
    QCOMPARE(triangleCount(scene), 0);
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_IndexedFaceSet::coordTakenAway()
{
    CoreScene scene(shape(Square).constData());
    static_cast<SFNode&>(scene.field("F", "coord")).setNode(0.0, nullptr, Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(triangleCount(scene), 0);
}

void tst_IndexedFaceSet::manyTriangles()
{
    QByteArray points, index;
    constexpr int Size = 100;
    for (int y = 0; y < Size; ++y) {
        for (int x = 0; x < Size; ++x) {
            points += QByteArray::number(x) + ' ' + QByteArray::number(y) + " 0, ";
            if (x == 0 || y == 0)
                continue;
            const int corner = y * Size + x;
            for (const int i : {corner, corner - 1, corner - Size - 1, corner - Size, -1})
                index += QByteArray::number(i) + ' ';
        }
    }
    CoreScene scene(
        shape("coord Coordinate { point [ " + points + " ] } coordIndex [ " + index + " ]").constData());
    QCOMPARE(triangleCount(scene), 2 * (Size - 1) * (Size - 1));
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_IndexedFaceSet::wrongChildNodesAreHarmless()
{
    CoreScene scene(shape(Square).constData());
    const NodeRef group = createNode(*scene.context, *findType("Group"), HOST_NC);
    for (const char* field : {"coord", "color", "normal", "texCoord"})
        static_cast<SFNode&>(scene.field("F", field)).setNode(0.0, group.get(), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(triangleCount(scene), 0);
}

QTEST_GUILESS_MAIN(tst_IndexedFaceSet)
#include "tst_IndexedFaceSet.moc"
