#include "CoreScene.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGTriangleIterator.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

namespace {

const osg::Vec3f Away(0, 0, -1);

struct Hit
{
    Hit(CoreScene& scene, const osg::Pnt3f& from, const osg::Vec3f& direction)
    {
        hit = scene.proc().pick(osg::Line(from, direction), nodes, &point, &normal, &osgNode, &triangle,
                                &distance);
    }

    bool hit;
    std::vector<Node*> nodes;
    osg::Pnt3f point;
    osg::Vec3f normal;
    osg::NodePtr osgNode;
    unsigned int triangle = 0;
    float distance = 0;
};

} // namespace

class tst_ScenePick : public QObject
{
    Q_OBJECT

private slots:
    void hitGivesTheChain();
    void missGivesFalse();
    void nullResultsAreLeftOut();
    void nearestIsHit();
    void normalIsThatOfTheWorld();
    void sharedShapeIsHitInBothPlaces();
    void sharedGroupGivesTheChainOfItsPlace();
    void chainLeadsThroughLightsAndSwitches();
    void chainFollowsEdits();
    void triangleCanBeSought();
    void sceneNodeAnswersItsBehaviour();
};

void tst_ScenePick::hitGivesTheChain()
{
    CoreScene scene("DEF T Transform { translation 0 0 -5 children DEF G Group { children DEF S Shape { "
                    "geometry Box { } } } }");
    const Hit hit(scene, {0.5F, 0.25F, 10}, Away);
    QVERIFY(hit.hit);
    QCOMPARE(hit.nodes,
             (std::vector<Node*>{scene.root(), &scene.node("T"), &scene.node("G"), &scene.node("S")}));
    QVERIFY(hit.point.dist(osg::Pnt3f(0.5F, 0.25F, -4)) < 1e-4F);
    QVERIFY(hit.normal.equals(osg::Vec3f(0, 0, 1), 1e-5F));
    QVERIFY(std::abs(hit.distance - 14.0F) < 1e-4F);
    QVERIFY(hit.osgNode->getToWorld() == scene.procOf<GroupProc>("T").toWorld());
}

void tst_ScenePick::missGivesFalse()
{
    CoreScene scene("Shape { geometry Box { } }");
    QVERIFY(!Hit(scene, {5, 0, 10}, Away).hit);
    QVERIFY(!Hit(scene, {0, 0, 10}, -Away).hit);
    CoreScene empty("Group { }");
    QVERIFY(!Hit(empty, {0, 0, 10}, Away).hit);
}

void tst_ScenePick::nullResultsAreLeftOut()
{
    CoreScene scene("Shape { geometry Box { } }");
    std::vector<Node*> nodes;
    QVERIFY(scene.proc().pick(osg::Line(osg::Pnt3f(0, 0, 10), Away), nodes, nullptr, nullptr, nullptr,
                              nullptr, nullptr));
    QCOMPARE(nodes.size(), std::size_t(2));
}

void tst_ScenePick::nearestIsHit()
{
    CoreScene scene("DEF A Shape { geometry Sphere { } } "
                    "Transform { translation 0 0 3 children DEF B Shape { geometry Box { } } }");
    QCOMPARE(Hit(scene, {0, 0, 10}, Away).nodes.back(), &scene.node("B"));
    QCOMPARE(Hit(scene, {0.1F, 0.1F, -10}, -Away).nodes.back(), &scene.node("A"));
}

void tst_ScenePick::normalIsThatOfTheWorld()
{
    // A slope of 1 in 1 that is stretched to 2 in 1.
    CoreScene scene(
        "Transform { scale 1 2 1 children Shape { geometry IndexedFaceSet { coordIndex [ 0 1 2 3 ] "
        "coord Coordinate { point [ -1 -1 1, 1 -1 1, 1 1 -1, -1 1 -1 ] } } } }");
    const Hit hit(scene, {0, 0, 10}, Away);
    QVERIFY(hit.hit);
    QVERIFY(hit.normal.equals(osg::Vec3f(0, 1, 2) / std::sqrt(5.0F), 1e-4F));
}

void tst_ScenePick::sharedShapeIsHitInBothPlaces()
{
    CoreScene scene("DEF A Transform { translation -5 0 0 children DEF S Shape { geometry Box { } } }"
                    "DEF B Transform { translation 5 0 0 children USE S }");
    for (const float x : {-5.0F, 5.0F}) {
        const Hit hit(scene, {x, 0, 10}, Away);
        QVERIFY(hit.hit);
        const char* const group = x < 0 ? "A" : "B";
        QCOMPARE(hit.nodes, (std::vector<Node*>{scene.root(), &scene.node(group), &scene.node("S")}));
        QCOMPARE(hit.osgNode->getToWorld()[3][0], x);
        QVERIFY(osg::GeometryPtr::dcast(hit.osgNode->getCore()) != osg::NullFC);
    }
}

void tst_ScenePick::sharedGroupGivesTheChainOfItsPlace()
{
    CoreScene scene("DEF A Transform { translation -5 0 0 children DEF G Group { children DEF S Shape { "
                    "geometry Box { } } } } DEF B Transform { translation 5 0 0 children USE G }");
    const Hit hit(scene, {5, 0, 10}, Away);
    QCOMPARE(hit.nodes,
             (std::vector<Node*>{scene.root(), &scene.node("B"), &scene.node("G"), &scene.node("S")}));
}

void tst_ScenePick::chainLeadsThroughLightsAndSwitches()
{
    CoreScene scene("PointLight { } DirectionalLight { } DEF W Switch { whichChoice 1 children [ Group { } "
                    "DEF G Group { children [ DirectionalLight { } DEF S Shape { geometry Box { } } ] } ] }");
    const Hit hit(scene, {0, 0, 10}, Away);
    QCOMPARE(hit.nodes,
             (std::vector<Node*>{scene.root(), &scene.node("W"), &scene.node("G"), &scene.node("S")}));
}

void tst_ScenePick::chainFollowsEdits()
{
    CoreScene scene("DEF G Group { children DEF S Shape { geometry Box { } } } DEF T Transform { }");
    static_cast<MFNode&>(scene.field("T", "children")).addNode(0.0, &scene.node("S"), Field::EXTERNAL_CT);
    static_cast<MFNode&>(scene.field("G", "children")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    const Hit hit(scene, {0, 0, 10}, Away);
    QCOMPARE(hit.nodes, (std::vector<Node*>{scene.root(), &scene.node("T"), &scene.node("S")}));
}

void tst_ScenePick::triangleCanBeSought()
{
    CoreScene scene("Shape { geometry IndexedFaceSet { coordIndex [ 0 1 2 -1 0 2 3 -1 ] "
                    "coord Coordinate { point [ 0 0 0, 1 0 0, 1 1 0, 0 1 0 ] } } }");
    const Hit hit(scene, {0.25F, 0.75F, 10}, Away);
    QCOMPARE(hit.triangle, 1U);
    osg::TriangleIterator triangle(hit.osgNode);
    triangle.seek(static_cast<osg::Int32>(hit.triangle));
    QCOMPARE(triangle.getPosition(2), osg::Pnt3f(0, 1, 0));
}

void tst_ScenePick::sceneNodeAnswersItsBehaviour()
{
    CoreScene scene("Shape { geometry Box { } }");
    auto* const base = dynamic_cast<SceneBaseNode*>(scene.root());
    QVERIFY(base);
    std::vector<Node*> nodes;
    QVERIFY(base->getSceneBaseNodeProc()->pick(osg::Line(osg::Pnt3f(0, 0, 10), Away), nodes, nullptr, nullptr,
                                               nullptr, nullptr, nullptr));
    QCOMPARE(nodes.front(), scene.root());
}

QTEST_GUILESS_MAIN(tst_ScenePick)
#include "tst_ScenePick.moc"
