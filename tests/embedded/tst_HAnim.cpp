#include "CoreScene.h"
#include "base/ValueFields.h"
#include "core/GeometryProc.h"
#include "core/VectorListProc.h"
#include <OpenSG/OSGGeometry.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

/// Humanoids: a skeleton of transforms, and a skin that its joints bend.
class tst_HAnim : public QObject
{
    Q_OBJECT

private slots:
    void skeletonMovesSegments();
    void jointsBendTheSkin();
    void weightsAreShared();
    void jointsTakeWhatHangsBelowAlong();
    void normalsTurnWithTheSkin();
    void displacersMovePoints();
    void segmentDisplacersMoveItsMesh();
    void editsOfThePointsAreFollowed();
    void skinComesBackWithoutItsHumanoid();
    void fieldsKeepTheirValues();
    void badIndicesAreToldAndHarmless();
    void jointsInARingAreHarmless();

private:
    /// What a list shows: bent or as it is.
    static const std::vector<osg::Vec3f>& shown(const CoreScene& scene, const char* name)
    {
        static std::vector<osg::Vec3f> none;
        const auto* bent = scene.procOf<VectorListProc>(name).bent();
        return bent ? *bent : none;
    }
    static bool isNear(const osg::Vec3f& a, const osg::Vec3f& b) { return (a - b).length() < 1e-5F; }
};

namespace {

const char Arm[] =
    "DEF H HAnimHumanoid { skinCoord DEF C Coordinate { point [ 0 0 0, 1 0 0, 2 0 0 ] } "
    "skinNormal DEF N Normal { vector [ 0 1 0, 0 1 0, 0 1 0 ] } "
    "skin Shape { geometry DEF G IndexedFaceSet { coordIndex [ 0 1 2 ] coord USE C } } "
    "skeleton DEF A HAnimJoint { skinCoordIndex [ 0 1 ] skinCoordWeight [ 1 0.5 ] "
    "children DEF B HAnimJoint { center 1 0 0 skinCoordIndex [ 1 2 ] skinCoordWeight [ 0.5 1 ] } } }";

} // namespace

void tst_HAnim::skeletonMovesSegments()
{
    CoreScene scene(
        "HAnimHumanoid { translation 0 5 0 skeleton HAnimJoint { translation 1 0 0 children "
        "HAnimSegment { children HAnimSite { translation 0 0 2 children Shape { geometry Box { } } } } } }");
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QCOMPARE(low, osg::Pnt3f(0, 4, 1));
    QCOMPARE(high, osg::Pnt3f(2, 6, 3));
}

void tst_HAnim::jointsBendTheSkin()
{
    CoreScene scene(Arm);
    scene.set("B", "rotation", "0 0 1 1.5707963");
    QVERIFY(isNear(shown(scene, "C").at(0), osg::Vec3f(0, 0, 0)));
    QVERIFY(isNear(shown(scene, "C").at(1), osg::Vec3f(1, 0, 0)));
    QVERIFY(isNear(shown(scene, "C").at(2), osg::Vec3f(1, 1, 0)));
    const osg::GeometryPtr mesh = scene.procOf<GeometryProc>("G").geometry();
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QVERIFY(std::abs(high[1] - 1.0F) < 1e-5F);
    QVERIFY(mesh->getPositions()->getSize() >= 3);
}

void tst_HAnim::weightsAreShared()
{
    CoreScene scene(Arm);
    scene.set("B", "translation", "0 4 0");
    QVERIFY(isNear(shown(scene, "C").at(1), osg::Vec3f(1, 2, 0)));
    QVERIFY(isNear(shown(scene, "C").at(2), osg::Vec3f(2, 4, 0)));
}

void tst_HAnim::jointsTakeWhatHangsBelowAlong()
{
    CoreScene scene(Arm);
    scene.set("A", "rotation", "0 0 1 1.5707963");
    QVERIFY(isNear(shown(scene, "C").at(2), osg::Vec3f(0, 2, 0)));
    scene.set("H", "translation", "7 7 7"); // moves the skin as a whole
    QVERIFY(isNear(shown(scene, "C").at(2), osg::Vec3f(0, 2, 0)));
}

void tst_HAnim::normalsTurnWithTheSkin()
{
    CoreScene scene(Arm);
    scene.set("B", "rotation", "0 0 1 1.5707963");
    QVERIFY(isNear(shown(scene, "N").at(0), osg::Vec3f(0, 1, 0)));
    QVERIFY(isNear(shown(scene, "N").at(2), osg::Vec3f(-1, 0, 0)));
}

void tst_HAnim::displacersMovePoints()
{
    CoreScene scene(
        "HAnimHumanoid { skinCoord DEF C Coordinate { point [ 0 0 0, 1 0 0 ] } skeleton DEF J HAnimJoint { "
        "displacers DEF D HAnimDisplacer { coordIndex 1 displacements 0 2 0 weight 0.5 } } }");
    QVERIFY(isNear(shown(scene, "C").at(1), osg::Vec3f(1, 1, 0)));
    scene.set("D", "weight", "1");
    QVERIFY(isNear(shown(scene, "C").at(1), osg::Vec3f(1, 2, 0)));
}

void tst_HAnim::segmentDisplacersMoveItsMesh()
{
    CoreScene scene("HAnimSegment { coord DEF C Coordinate { point [ 0 0 0, 1 0 0 ] } "
                    "displacers DEF D HAnimDisplacer { coordIndex 0 displacements 0 2 0 } }");
    QVERIFY(isNear(shown(scene, "C").at(0), osg::Vec3f(0, 0, 0)));
    scene.set("D", "weight", "0.25");
    QVERIFY(isNear(shown(scene, "C").at(0), osg::Vec3f(0, 0.5F, 0)));
}

void tst_HAnim::editsOfThePointsAreFollowed()
{
    CoreScene scene(Arm);
    scene.set("B", "translation", "0 4 0");
    scene.set("C", "point", "[0 0 0, 1 0 0, 5 0 0]");
    QVERIFY(isNear(shown(scene, "C").at(2), osg::Vec3f(5, 4, 0)));
}

void tst_HAnim::skinComesBackWithoutItsHumanoid()
{
    CoreScene scene((std::string("DEF T Group { children [ ") + Arm +
                     " Shape { geometry IndexedFaceSet { coord USE C } } ] }")
                        .c_str());
    scene.set("B", "translation", "0 4 0");
    QVERIFY(scene.procOf<VectorListProc>("C").bent());
    const NodeRef points(&scene.node("C"));
    static_cast<MFNode&>(scene.field("T", "children")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    QVERIFY(!procAs<VectorListProc>(points.get())->bent());
}

void tst_HAnim::fieldsKeepTheirValues()
{
    CoreScene scene(Arm);
    const std::string before = scene.get("C", "point");
    scene.set("B", "rotation", "0 0 1 1");
    QCOMPARE(scene.get("C", "point"), before);
}

void tst_HAnim::badIndicesAreToldAndHarmless()
{
    CoreScene scene(Arm);
    auto& indices = static_cast<MFInt32&>(scene.field("B", "skinCoordIndex"));
    indices.editValues() = {2, -1, 3, 2147483647, -2147483647 - 1};
    indices.processValueChange(0.0, Field::EXTERNAL_CT);
    scene.set("B", "skinCoordWeight", "[1]");
    scene.set("B", "rotation", "0 0 1 1.5707963");
    QVERIFY(isNear(shown(scene, "C").at(2), osg::Vec3f(1, 1, 0)));
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.set("C", "point", "[]");
    QCOMPARE(shown(scene, "C").size(), std::size_t(0));
}

void tst_HAnim::jointsInARingAreHarmless()
{
    CoreScene scene(Arm);
    static_cast<MFNode&>(scene.field("B", "children")).addNode(0.0, &scene.node("A"), Field::EXTERNAL_CT);
    scene.context->runFrame();
    scene.set("B", "rotation", "0 0 1 1");
    QVERIFY(!shown(scene, "C").empty());
}

QTEST_GUILESS_MAIN(tst_HAnim)
#include "tst_HAnim.moc"
