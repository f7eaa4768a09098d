#include "CoreScene.h"
#include "core/SceneProc.h"
#include <OpenSG/OSGSkyBackground.h>
#include <Orvane/MFNode.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

namespace {

osg::Pnt3f eyeOf(const SceneView& view)
{
    return osg::Pnt3f(view.viewpoint[3][0], view.viewpoint[3][1], view.viewpoint[3][2]);
}

} // namespace

class tst_Bindables : public QObject
{
    Q_OBJECT

private slots:
    void firstOfTheFileIsBound();
    void bindBringsToTheTop();
    void unbindingTheTopBindsTheNext();
    void unbindingBelowTheTopChangesNothing();
    void bindingTheBoundOneSendsNothing();
    void removedNodeGivesWay();
    void laterNodeIsBoundOnlyWhenNoneEverWas();
    void bindTimeIsThatOfTheFrame();
    void nothingBoundLooksFromTheFront();
    void viewpointMovesWithItsGroup();
    void scaleAboveAViewpointDoesNotScaleTheView();
    void badViewpointsAreHarmless_data();
    void badViewpointsAreHarmless();
    void orthoViewpointGivesItsWindow();
    void navigationInfoGivesLightAndLimits();
    void viewpointBindsItsNavigationInfo();
    void backgroundGivesItsColor();
    void stacksAreApart();
};

void tst_Bindables::firstOfTheFileIsBound()
{
    CoreScene scene(
        "Group { children DEF A Viewpoint { position 1 0 0 } } DEF B Viewpoint { position 2 0 0 }");
    QCOMPARE(scene.get("A", "isBound"), std::string("TRUE"));
    QCOMPARE(scene.get("B", "isBound"), std::string("FALSE"));
    QCOMPARE(eyeOf(scene.proc().view()), osg::Pnt3f(1, 0, 0));
}

void tst_Bindables::bindBringsToTheTop()
{
    CoreScene scene("DEF A Viewpoint { } DEF B Viewpoint { position 2 0 0 }");
    scene.set("B", "set_bind", "TRUE");
    QCOMPARE(scene.get("A", "isBound"), std::string("FALSE"));
    QCOMPARE(scene.get("B", "isBound"), std::string("TRUE"));
    QCOMPARE(eyeOf(scene.proc().view()), osg::Pnt3f(2, 0, 0));
}

void tst_Bindables::unbindingTheTopBindsTheNext()
{
    CoreScene scene("DEF A Viewpoint { } DEF B Viewpoint { } DEF C Viewpoint { }");
    scene.set("B", "set_bind", "TRUE");
    scene.set("C", "set_bind", "TRUE");
    scene.set("C", "set_bind", "FALSE");
    QCOMPARE(scene.get("B", "isBound"), std::string("TRUE"));
    QCOMPARE(scene.get("C", "isBound"), std::string("FALSE"));
    scene.set("B", "set_bind", "FALSE");
    scene.set("A", "set_bind", "FALSE");
    QCOMPARE(scene.get("A", "isBound"), std::string("FALSE"));
    QVERIFY(!scene.proc().stack(BindableKind::Viewpoint).bound());
}

void tst_Bindables::unbindingBelowTheTopChangesNothing()
{
    CoreScene scene("DEF A Viewpoint { } DEF B Viewpoint { }");
    scene.set("B", "set_bind", "TRUE");
    scene.set("A", "set_bind", "FALSE");
    QCOMPARE(scene.get("B", "isBound"), std::string("TRUE"));
    scene.set("B", "set_bind", "FALSE"); // A has left the stack
    QCOMPARE(scene.get("A", "isBound"), std::string("FALSE"));
}

void tst_Bindables::bindingTheBoundOneSendsNothing()
{
    CoreScene scene("DEF A Viewpoint { }");
    scene.runTo(5);
    scene.set("A", "set_bind", "TRUE");
    QVERIFY(scene.get("A", "bindTime") != std::string("1005"));
}

void tst_Bindables::removedNodeGivesWay()
{
    CoreScene scene("DEF G Group { children DEF A Background { skyColor 1 0 0 } } "
                    "DEF B Background { skyColor 0 1 0 }");
    scene.set("B", "set_bind", "TRUE");
    scene.set("A", "set_bind", "TRUE");
    static_cast<MFNode&>(scene.field("G", "children")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(scene.get("B", "isBound"), std::string("TRUE"));
    const auto background = osg::SkyBackgroundPtr::dcast(scene.proc().view().background);
    QCOMPARE(background->getSkyColor().at(0), osg::Color3f(0, 1, 0));
}

void tst_Bindables::laterNodeIsBoundOnlyWhenNoneEverWas()
{
    CoreScene scene("DEF G Group { }");
    MFNode& children = static_cast<MFNode&>(scene.field("G", "children"));
    const auto add = [&](const char* type) {
        const NodeRef node = createNode(*scene.context, *findType(type), HOST_NC);
        children.addNode(0.0, node.get(), Field::EXTERNAL_CT);
        scene.context->runFrame();
        return node->findField("isBound", Node::DECLARED_FSO)->valueToString();
    };
    QCOMPARE(add("Viewpoint"), std::string("TRUE"));
    QCOMPARE(add("Viewpoint"), std::string("FALSE"));
}

void tst_Bindables::bindTimeIsThatOfTheFrame()
{
    CoreScene scene("DEF A Viewpoint { } DEF B Viewpoint { }");
    scene.runTo(7);
    scene.set("B", "set_bind", "TRUE");
    QCOMPARE(scene.get("B", "bindTime"), std::string("1007"));
}

void tst_Bindables::nothingBoundLooksFromTheFront()
{
    CoreScene scene("Group { }");
    const SceneView view = scene.proc().view();
    QCOMPARE(eyeOf(view), osg::Pnt3f(0, 0, 10));
    QVERIFY(view.headlight);
    QVERIFY(view.background != osg::NullFC);
}

void tst_Bindables::viewpointMovesWithItsGroup()
{
    CoreScene scene("DEF T Transform { translation 0 5 0 rotation 0 1 0 1.5707963 "
                    "children Viewpoint { position 0 0 2 } }");
    QVERIFY(eyeOf(scene.proc().view()).dist(osg::Pnt3f(2, 5, 0)) < 1e-5F);
    scene.set("T", "translation", "0 0 0");
    QVERIFY(eyeOf(scene.proc().view()).dist(osg::Pnt3f(2, 0, 0)) < 1e-5F);
    // The camera looks along -x now: its own -z.
    const osg::Matrix matrix = scene.proc().view().viewpoint;
    QVERIFY(std::abs(matrix[2][0] - 1.0F) < 1e-5F);
}

void tst_Bindables::scaleAboveAViewpointDoesNotScaleTheView()
{
    CoreScene scene("Transform { scale 2 3 4 children Viewpoint { position 0 0 1 } }");
    const osg::Matrix matrix = scene.proc().view().viewpoint;
    QCOMPARE(eyeOf(scene.proc().view()), osg::Pnt3f(0, 0, 4));
    for (osg::UInt32 i = 0; i < 3; ++i)
        QVERIFY(std::abs(matrix[i][i] - 1.0F) < 1e-5F);
}

void tst_Bindables::badViewpointsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("scaled to nothing") << QByteArray("Transform { scale 0 0 0 children Viewpoint { } }");
    QTest::newRow("no angle") << QByteArray("Viewpoint { fieldOfView 0 }");
    QTest::newRow("huge angle") << QByteArray("Viewpoint { fieldOfView 100 }");
    QTest::newRow("far away") << QByteArray("Viewpoint { position 1e38 0 0 orientation 0 0 0 1 }");
    QTest::newRow("ortho without window") << QByteArray("OrthoViewpoint { fieldOfView [ 1 ] }");
    QTest::newRow("ortho inside out") << QByteArray("OrthoViewpoint { fieldOfView [ 1 1 -1 -1 ] }");
}

void tst_Bindables::badViewpointsAreHarmless()
{
    QFETCH(QByteArray, text);
    CoreScene scene(text.constData());
    const SceneView view = scene.proc().view();
    for (osg::UInt32 i = 0; i < 16; ++i)
        QVERIFY(std::isfinite(view.viewpoint.getValues()[i]));
    QVERIFY(std::abs(view.viewpoint.det()) > 0.5F);
    QVERIFY(view.fieldOfView > 0.0F && view.fieldOfView < 3.1416F);
    QVERIFY(view.fieldOfViewMax[0] > view.fieldOfViewMin[0]);
}

void tst_Bindables::orthoViewpointGivesItsWindow()
{
    CoreScene scene("OrthoViewpoint { fieldOfView [ -2 -1 4 3 ] }");
    const SceneView view = scene.proc().view();
    QVERIFY(view.orthographic);
    QCOMPARE(view.fieldOfViewMin[0], -2.0F);
    QCOMPARE(view.fieldOfViewMax[1], 3.0F);
}

void tst_Bindables::navigationInfoGivesLightAndLimits()
{
    CoreScene scene("DEF N NavigationInfo { headlight FALSE avatarSize [ 0.5 1 1 ] visibilityLimit 80 }");
    const SceneView view = scene.proc().view();
    QVERIFY(!view.headlight);
    QCOMPARE(view.avatarRadius, 0.5F);
    QCOMPARE(view.visibilityLimit, 80.0F);
    scene.set("N", "headlight", "TRUE");
    QVERIFY(scene.proc().view().headlight);
}

void tst_Bindables::viewpointBindsItsNavigationInfo()
{
    CoreScene scene("DEF M NavigationInfo { } DEF A Viewpoint { }"
                    "DEF B Viewpoint { navigationInfo DEF N NavigationInfo { headlight FALSE } }");
    QCOMPARE(scene.get("M", "isBound"), std::string("TRUE"));
    scene.set("B", "set_bind", "TRUE");
    QCOMPARE(scene.get("N", "isBound"), std::string("TRUE"));
    scene.set("B", "set_bind", "FALSE");
    QCOMPARE(scene.get("M", "isBound"), std::string("TRUE"));
}

void tst_Bindables::backgroundGivesItsColor()
{
    CoreScene scene("DEF B Background { skyColor [ 0.1 0.2 0.3, 1 1 1 ] skyAngle 1 transparency 0.25 }");
    const auto background = osg::SkyBackgroundPtr::dcast(scene.proc().view().background);
    QCOMPARE(background->getSkyColor().at(0), osg::Color3f(0.1F, 0.2F, 0.3F));
    QCOMPARE(background->getAlpha(), 0.75F);
    scene.set("B", "skyColor", "1 0 0");
    QCOMPARE(background->getSkyColor().at(0), osg::Color3f(1, 0, 0));
}

void tst_Bindables::stacksAreApart()
{
    CoreScene scene("DEF V Viewpoint { } DEF B Background { } DEF N NavigationInfo { } DEF F Fog { }");
    for (const char* name : {"V", "B", "N", "F"})
        QCOMPARE(scene.get(name, "isBound"), std::string("TRUE"));
    scene.set("B", "set_bind", "FALSE");
    for (const char* name : {"V", "N", "F"})
        QCOMPARE(scene.get(name, "isBound"), std::string("TRUE"));
}

QTEST_GUILESS_MAIN(tst_Bindables)
#include "tst_Bindables.moc"
