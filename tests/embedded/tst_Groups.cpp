#include "CoreScene.h"
#include "core/GroupProc.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <Orvane/MFNode.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

namespace {

osg::Matrix worldOf(CoreScene& scene, const char* name)
{
    return scene.procOf<GroupProc>(name).toWorld();
}

osg::Pnt3f moved(const osg::Matrix& matrix, const osg::Pnt3f& point)
{
    osg::Pnt3f result;
    matrix.multMatrixPnt(point, result);
    return result;
}

/// Corners of the box round all that is shown.
std::pair<osg::Pnt3f, osg::Pnt3f> boundsOf(CoreScene& scene)
{
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    return {low, high};
}

MFNode& childrenOf(CoreScene& scene, const char* name)
{
    return static_cast<MFNode&>(scene.field(name, "children"));
}

} // namespace

class tst_Groups : public QObject
{
    Q_OBJECT

private slots:
    void transformFollowsItsFormula();
    void nestedTransformsMultiply();
    void fieldEditMovesTheGroup();
    void badTransformsAreHarmless_data();
    void badTransformsAreHarmless();
    void zeroScaleCanBeUndone();
    void boundsFollowTheContent();
    void childAddedAndRemoved();
    void childListEditTouchesOnlyWhatChanged();
    void orderOfChildrenIsKept();
    void addChildrenIgnoresWhatIsThere();
    void removeChildrenIgnoresWhatIsNot();
    void usedTwiceIsShownTwice();
    void usedTwiceStaysWhenTheFirstPlaceGoes();
    void sharedGroupFollowsEdits();
    void groupInsideItselfIsHarmless();
    void switchShowsItsChoice();
    void switchChoiceCountsAllChildren();
    void movedGroupStandsWhereItIs();
    void switchChoosesBesideLights();
    void switchOutOfRangeShowsNothing();
    void lodShowsTheLevelOfItsDistance();
    void lodWithoutRangeShowsTheFirst();
    void invisibleGroupIsNotHit();
    void deadChildIsNotShown();
    void removingManyChildren();
};

void tst_Groups::transformFollowsItsFormula()
{
    CoreScene scene("DEF T Transform { translation 1 2 3 center 1 0 0 rotation 0 0 1 1.5707963 scale 2 1 1 "
                    "scaleOrientation 0 0 1 0 }");
    // (2, 0, 0): 1 right of the centre, stretched to 2, turned to 2 above it, moved.
    QVERIFY(moved(worldOf(scene, "T"), {2, 0, 0}).dist(osg::Pnt3f(2, 4, 3)) < 1e-5F);
    scene.set("T", "scaleOrientation", "0 0 1 1.5707963");
    // Now y is stretched: 1 above the centre becomes 2 to its left.
    QVERIFY(moved(worldOf(scene, "T"), {1, 1, 0}).dist(osg::Pnt3f(0, 2, 3)) < 1e-5F);
}

void tst_Groups::nestedTransformsMultiply()
{
    CoreScene scene("Transform { translation 10 0 0 children Transform { rotation 0 1 0 3.14159265 "
                    "children DEF T Transform { translation 1 0 0 } } }");
    QVERIFY(moved(worldOf(scene, "T"), {0, 0, 0}).dist(osg::Pnt3f(9, 0, 0)) < 1e-5F);
}

void tst_Groups::fieldEditMovesTheGroup()
{
    CoreScene scene("DEF T Transform { }");
    scene.set("T", "translation", "4 5 6");
    QCOMPARE(moved(worldOf(scene, "T"), {0, 0, 0}), osg::Pnt3f(4, 5, 6));
}

void tst_Groups::badTransformsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<int>("messages");
    QTest::newRow("huge") << QByteArray("translation 1e38 0 0") << 1;
    QTest::newRow("rotation without axis") << QByteArray("rotation 0 0 0 1") << 0;
    QTest::newRow("no scale") << QByteArray("scale 0 0 0") << 0;
    QTest::newRow("huge scale") << QByteArray("scale 1e38 1 1 center 1e38 0 0") << 1;
    QTest::newRow("tiny axis") << QByteArray("rotation 1e-30 0 0 1") << 0;
}

void tst_Groups::badTransformsAreHarmless()
{
    QFETCH(QByteArray, fields);
    QFETCH(int, messages);
    CoreScene scene(("DEF T Transform { " + fields + " children Shape { geometry Box { } } }").constData());
    const osg::Matrix matrix = worldOf(scene, "T");
    for (osg::UInt32 i = 0; i < 16; ++i)
        QVERIFY(std::isfinite(matrix.getValues()[i]));
    const auto [low, high] = boundsOf(scene);
    for (osg::UInt32 i = 0; i < 3; ++i)
        QVERIFY(std::isfinite(low[i]) && std::isfinite(high[i]));
    QCOMPARE(static_cast<int>(scene.messageCount()), messages);
}

void tst_Groups::zeroScaleCanBeUndone()
{
    CoreScene scene("DEF T Transform { scale 0 1 1 }");
    osg::Matrix inverse;
    QVERIFY(worldOf(scene, "T").inverse(inverse));
}

void tst_Groups::boundsFollowTheContent()
{
    CoreScene scene("DEF T Transform { translation 10 0 0 children Shape { geometry Box { size 2 4 6 } } }");
    QCOMPARE(boundsOf(scene).first, osg::Pnt3f(9, -2, -3));
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(11, 2, 3));
    scene.set("T", "translation", "0 0 0");
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(1, 2, 3));
}

void tst_Groups::childAddedAndRemoved()
{
    CoreScene scene("DEF G Group { } DEF H Switch { children DEF B Shape { geometry Box { } } }");
    QVERIFY(childrenOf(scene, "G").addNode(0.0, &scene.node("B"), Field::EXTERNAL_CT));
    scene.context->runFrame();
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(1, 1, 1));
    QVERIFY(childrenOf(scene, "G").removeNode(0.0, 0, Field::EXTERNAL_CT));
    scene.context->runFrame();
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
}

void tst_Groups::childListEditTouchesOnlyWhatChanged()
{
    CoreScene scene(
        "DEF G Group { children [ Shape { geometry Box { } } DEF M Shape { geometry Sphere { } } "
        "Shape { geometry Cone { } } ] } Switch { children DEF N Shape { geometry Cylinder { } } }");
    const osg::NodePtr content = scene.procOf<GroupProc>("G").tree();
    const osg::NodePtr first = content->getChild(0);
    const osg::NodePtr last = content->getChild(2);
    MFNode& children = childrenOf(scene, "G");
    children.removeNode(0.0, 1, Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(content->getNChildren(), 2U);
    QVERIFY(content->getChild(0) == first && content->getChild(1) == last);
    children.insertNode(0.0, 1, &scene.node("N"), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(content->getNChildren(), 3U);
    QVERIFY(content->getChild(0) == first && content->getChild(2) == last);
}

void tst_Groups::orderOfChildrenIsKept()
{
    CoreScene scene(
        "DEF G Group { children [ TimeSensor { } DEF A Group { } WorldInfo { } DEF B Group { } ] }");
    const osg::NodePtr content = scene.procOf<GroupProc>("G").tree();
    QCOMPARE(content->getNChildren(), 2U);
    QVERIFY(content->getChild(0) == scene.procOf<GroupProc>("A").tree());
    QVERIFY(content->getChild(1) == scene.procOf<GroupProc>("B").tree());
}

void tst_Groups::addChildrenIgnoresWhatIsThere()
{
    CoreScene scene("DEF G Group { children DEF A Group { } } Switch { children [ DEF B Group { } USE A ] }");
    auto& add = static_cast<MFNode&>(scene.field("G", "addChildren"));
    add.addNode(0.0, &scene.node("A"), Field::EXTERNAL_CT);
    add.addNode(0.0, &scene.node("B"), Field::EXTERNAL_CT);
    scene.context->runFrame();
    scene.context->runFrame();
    QCOMPARE(childrenOf(scene, "G").size(), 2U);
    QCOMPARE(childrenOf(scene, "G").elem(1).node(), &scene.node("B"));
    QCOMPARE(scene.procOf<GroupProc>("G").tree()->getNChildren(), 2U);
    QCOMPARE(add.size(), 0U); // an event leaves no link behind
}

void tst_Groups::removeChildrenIgnoresWhatIsNot()
{
    CoreScene scene("DEF G Group { children [ DEF A Group { } DEF C Group { } ] }"
                    "Switch { children [ DEF B Group { } USE A ] }");
    auto& remove = static_cast<MFNode&>(scene.field("G", "removeChildren"));
    remove.addNode(0.0, &scene.node("B"), Field::EXTERNAL_CT);
    remove.addNode(0.0, &scene.node("A"), Field::EXTERNAL_CT);
    scene.context->runFrame();
    scene.context->runFrame();
    QCOMPARE(childrenOf(scene, "G").size(), 1U);
    QCOMPARE(childrenOf(scene, "G").elem(0).node(), &scene.node("C"));
}

void tst_Groups::usedTwiceIsShownTwice()
{
    CoreScene scene("Transform { translation -10 0 0 children DEF B Shape { geometry Box { } } }"
                    "Transform { translation 10 0 0 children USE B }");
    QCOMPARE(boundsOf(scene).first, osg::Pnt3f(-11, -1, -1));
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(11, 1, 1));
}

void tst_Groups::usedTwiceStaysWhenTheFirstPlaceGoes()
{
    CoreScene scene("DEF P Transform { translation -10 0 0 children DEF B Shape { geometry Box { } } }"
                    "Transform { translation 10 0 0 children USE B }");
    childrenOf(scene, "P").removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(boundsOf(scene).first, osg::Pnt3f(9, -1, -1));
    // And the place can be taken again.
    childrenOf(scene, "P").addNode(0.0, &scene.node("B"), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(boundsOf(scene).first, osg::Pnt3f(-11, -1, -1));
}

void tst_Groups::sharedGroupFollowsEdits()
{
    CoreScene scene("DEF S Transform { children Shape { geometry Box { } } }"
                    "Transform { translation 10 0 0 children USE S }");
    boundsOf(scene); // so that volumes are up to date
    scene.set("S", "translation", "0 5 0");
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(11, 6, 1));
}

void tst_Groups::groupInsideItselfIsHarmless()
{
    CoreScene scene("DEF G Group { children [ DEF H Group { children Shape { geometry Box { } } } ] }");
    childrenOf(scene, "H").addNode(0.0, &scene.node("G"), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(1, 1, 1));
    std::vector<Node*> nodes;
    QVERIFY(scene.proc().pick(osg::Line(osg::Pnt3f(0, 0, 10), osg::Vec3f(0, 0, -1)), nodes, nullptr, nullptr,
                              nullptr, nullptr, nullptr));
}

void tst_Groups::switchShowsItsChoice()
{
    CoreScene scene("DEF S Switch { whichChoice 1 children [ Shape { geometry Box { } } "
                    "Shape { geometry Box { size 8 8 8 } } ] }");
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(4, 4, 4));
    scene.set("S", "whichChoice", "0");
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(1, 1, 1));
    scene.set("S", "whichChoice", "-1");
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
}

void tst_Groups::switchChoiceCountsAllChildren()
{
    CoreScene scene("DEF S Switch { whichChoice 2 children [ TimeSensor { } Shape { geometry Box { } } "
                    "Shape { geometry Box { size 8 8 8 } } ] }");
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(4, 4, 4));
    scene.set("S", "whichChoice", "0"); // a node that shows nothing
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
}

void tst_Groups::movedGroupStandsWhereItIs()
{
    CoreScene scene(
        "DEF S Transform { translation 1 0 0 children DEF G Group { children Shape { geometry Box { } "
        "} } } DEF T Transform { translation 5 0 0 }");
    auto& from = static_cast<MFNode&>(scene.field("S", "children"));
    auto& to = static_cast<MFNode&>(scene.field("T", "children"));
    // The second place first refers to it.
    to.addNode(0.0, &scene.node("G"), Field::EXTERNAL_CT);
    scene.runTo(0.1);
    QCOMPARE(scene.procOf<GroupProc>("G").toWorld()[3][0], 1.0F);
    from.removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.runTo(0.2);
    QCOMPARE(scene.procOf<GroupProc>("G").toWorld()[3][0], 5.0F);
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(6, 1, 1));
}

void tst_Groups::switchChoosesBesideLights()
{
    CoreScene scene("DEF S Switch { whichChoice 2 children [ DirectionalLight { } Shape { geometry Box { } } "
                    "Shape { geometry Box { size 8 8 8 } } ] }");
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(4, 4, 4));
    scene.set("S", "whichChoice", "1");
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(1, 1, 1));
    scene.set("S", "whichChoice", "0");
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
}

void tst_Groups::switchOutOfRangeShowsNothing()
{
    CoreScene scene("DEF S Switch { whichChoice 7 children Shape { geometry Box { } } }");
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
    scene.set("S", "whichChoice", "-2147483648");
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
}

void tst_Groups::lodShowsTheLevelOfItsDistance()
{
    CoreScene scene("DEF V Viewpoint { position 0 0 15 } Transform { scale 2 2 2 children DEF L LOD { "
                    "range [ 5 10 ] center 0 0 1 children [ Shape { geometry Box { } } "
                    "Shape { geometry Box { size 4 4 4 } } Shape { geometry Box { size 6 6 6 } } ] } }");
    // 15 away from the origin is 6.5 from the centre in the system of the node.
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(4, 4, 4));
    QCOMPARE(scene.get("L", "level_changed"), std::string("1"));
    scene.set("V", "position", "0 0 5");
    scene.context->runFrame();
    QCOMPARE(scene.get("L", "level_changed"), std::string("0"));
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(2, 2, 2));
    scene.set("V", "position", "0 0 500");
    scene.context->runFrame();
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(6, 6, 6));
}

void tst_Groups::lodWithoutRangeShowsTheFirst()
{
    CoreScene scene(
        "DEF L LOD { children [ Shape { geometry Box { } } Shape { geometry Sphere { radius 9 } } ] }"
        "LOD { range [ 1 2 3 ] } LOD { }");
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(1, 1, 1));
}

void tst_Groups::invisibleGroupIsNotHit()
{
    CoreScene scene("DEF G Group { visible FALSE children DEF S Shape { geometry Box { } } }");
    const osg::Line ray(osg::Pnt3f(0, 0, 10), osg::Vec3f(0, 0, -1));
    std::vector<Node*> nodes;
    QVERIFY(!scene.proc().pick(ray, nodes, nullptr, nullptr, nullptr, nullptr, nullptr));
    scene.set("G", "visible", "TRUE");
    QVERIFY(scene.proc().pick(ray, nodes, nullptr, nullptr, nullptr, nullptr, nullptr));
    scene.set("S", "visible", "FALSE");
    QVERIFY(!scene.proc().pick(ray, nodes, nullptr, nullptr, nullptr, nullptr, nullptr));
}

void tst_Groups::deadChildIsNotShown()
{
    CoreScene scene("DEF G Group { children [ Shape { geometry Box { } } Group { } ] }");
    childrenOf(scene, "G").removeNode(0.0, 0, Field::EXTERNAL_CT);
    // Even before the next frame.
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
}

void tst_Groups::removingManyChildren()
{
    QByteArray text = "DEF G Group { children [ DEF K Shape { geometry Box { } }";
    for (int i = 0; i < 200; ++i)
        text += i % 2 ? " USE K" : " Transform { translation 5 0 0 children USE K }";
    CoreScene scene((text + " ] }").constData());
    QCOMPARE(boundsOf(scene).second, osg::Pnt3f(6, 1, 1));
    MFNode& children = childrenOf(scene, "G");
    while (children.size() > 1)
        children.removeNode(0.0, static_cast<int>(children.size() / 2), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(scene.procOf<GroupProc>("G").tree()->getNChildren(), 1U);
}

QTEST_GUILESS_MAIN(tst_Groups)
#include "tst_Groups.moc"
